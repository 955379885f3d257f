#pragma once

#include "app/EdgeGrips.h"
#include "app/FloatingWindow.h"
#include "foundation/WorkItem.h"

#include <optional>
#include <vector>

class QMenuBar;

namespace taliro {

class AppSettings;
class MainMenu;
class RootView;

/// The browser as a window of its own that floats above others, takes the keyboard without bringing anything
/// else forward, and remembers its frame.
class PickerPanel : public FloatingWindow {
    Q_OBJECT

public:
    PickerPanel(Platform& platform, AppSettings& settings, MainMenu& menu);

    void setContent(RootView* content);
    /// Whether the application is one of the taskbar, with a menu bar.
    void setRegular(bool regular);
    void moveFrame(Point origin);
    void present() { FloatingWindow::present(true); }

protected:
    void resizeEvent(QResizeEvent* event) override;
    // The title strip is where the panel is moved by.
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void focusContent() override;
    WindowManager::Taskbar taskbar() const override;

private:
    void addTitleBar(MainMenu& menu);
    void restoreFrame();
    void frameDidChange();
    void saveFrame();
    void comeBackOnScreen();

    AppSettings& m_settings;
    RootView* m_content = nullptr;
    QMenuBar* m_menuBar = nullptr;
    EdgeGrips m_grips;
    bool m_regular = false;
    std::optional<QPoint> m_heldAt; ///< from the frame's corner, while the panel is moved
    WorkItem m_pendingSave;
    std::vector<Subscription> m_subscriptions;
};

} // namespace taliro
