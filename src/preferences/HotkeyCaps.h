#pragma once

#include "foundation/Subscription.h"
#include "preferences/KeyCap.h"

#include <QWidget>

#include <vector>

namespace taliro {

class KeyboardShortcuts;

/// The shortcut that shows and hides the browser, as key caps; empty and without width where there is none.
class HotkeyCaps : public QWidget {
    Q_OBJECT

public:
    explicit HotkeyCaps(KeyboardShortcuts& shortcuts, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent*) override;
    void showEvent(QShowEvent*) override;

private:
    void refresh();

    KeyboardShortcuts& m_shortcuts;
    std::vector<KeyCap> m_caps;
    std::vector<Subscription> m_subscriptions;
};

} // namespace taliro
