#pragma once

#include "foundation/Subscription.h"

#include <QWidget>

#include <vector>

namespace taliro {

class AppSettings;
class HotkeyCaps;
class ToolButton;

/// The controls at the title's end: the shortcut that calls the browser, popover or window, and what else
/// there is.
class TitlebarMenu : public QWidget {
    Q_OBJECT

public:
    TitlebarMenu(AppSettings& settings, QWidget* parent);

private:
    void showMode(bool popover);
    void addOverflowMenu();

    AppSettings& m_settings;
    HotkeyCaps* m_caps;
    ToolButton* m_toggle;
    ToolButton* m_overflow;
    std::vector<Subscription> m_subscriptions;
};

} // namespace taliro
