#pragma once

#include "foundation/Subscription.h"

#include <QWidget>

#include <vector>

class QStackedLayout;

namespace taliro {

class AppSettings;
class BrowserState;
class DirectoryWatcher;
class TitlebarMenu;
struct Platform;

/// What both the popover and the panel show: a title area, the browser in its full or its compact layout, and over
/// them the messages.
class RootView : public QWidget {
    Q_OBJECT

public:
    RootView(Platform& platform, BrowserState& browser, DirectoryWatcher& watcher, AppSettings& settings);

    /// Gives the keyboard to the rows of files.
    void focusBrowser();

protected:
    void resizeEvent(QResizeEvent*) override;
    void showEvent(QShowEvent*) override;

private:
    void showTitle();
    void showBrowser();
    QWidget* makeFull();
    QWidget* makeMini();
    void crossFade(QPixmap before);
    void placeOverlays();

    Platform& m_platform;
    BrowserState& m_browser;
    DirectoryWatcher& m_watcher;
    AppSettings& m_settings;
    QWidget* m_title;
    QStackedLayout* m_stack;
    QWidget* m_full = nullptr;
    QWidget* m_mini = nullptr;
    std::vector<QWidget*> m_overlays;
    std::vector<Subscription> m_subscriptions;
};

} // namespace taliro
