#pragma once

#include "app/MainMenu.h"
#include "foundation/Subscription.h"
#include "foundation/Url.h"
#include "foundation/WorkItem.h"
#include "platform/Screens.h"
#include "platform/StatusBar.h"

#include <QObject>
#include <QPointer>

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

class QWindow;

namespace taliro {

class AppSettings;
class BrowserState;
class PickerPanel;
class Popover;
class QuickLookWindow;
class RootView;
struct Platform;

/// Posted when a drag of files or images comes over the status item.
inline constexpr char statusItemFileDragEntered[] = "Taliro.statusItemFileDragEntered";

/// Brings the parts together: what happens at start, and how the browser comes and goes, as a popover under
/// the status item or as a panel.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    AppDelegate(Platform& platform, AppSettings& settings, BrowserState& browser);
    ~AppDelegate() override;

    void applicationDidFinishLaunching();
    /// Shows the places and, whether or not there are any, the browser.
    void openURLs(std::vector<Url> const& urls);
    bool applicationShouldHandleReopen();

    // How the browser comes and goes.
    bool isPresentationVisible() const;
    void present();
    void dismiss();
    void toggleFromHotkey();
    void showPopover();
    /// At the pointer, or under `item`, or, with neither, where it was last.
    void showPanel(std::optional<Rect> item, bool atCursor);
    void swapPresentation();
    void applyDockVisibility(bool show);
    void updatePopoverSize();
    void refreshResizeHandleVisibility();

protected:
    /// Hears mouse and keys before our windows do, while the popover is shown.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void installStatusItem();
    void presentOnceItemIsPlaced();
    void observeNotifications();
    void observeSettings();
    void installShortcut();
    void presentForDrag();
    void dismissAfterDrag();
    void toggle();
    void showPreferences();
    void showMenu();

    RootView& rootView();
    PickerPanel& panel();
    void makePopover();
    void popoverDidShow();
    void installPopoverClickMonitor();
    void removePopoverClickMonitor();
    void handlePopoverClick(QWindow* window, QPoint globalPosition);
    void handleOutsideClick(Point position);
    bool closePopoverOnEscape(QWindow* window);

    Platform& m_platform;
    AppSettings& m_settings;
    BrowserState& m_browser;
    MainMenu m_mainMenu;
    RootView* m_rootView = nullptr; ///< owned by the window that shows it
    std::unique_ptr<StatusItem> m_statusItem;
    std::unique_ptr<PickerPanel> m_panel;
    std::unique_ptr<Popover> m_popover;
    std::unique_ptr<QuickLookWindow> m_quickLook;
    std::vector<Subscription> m_cancellables;
    std::optional<Subscription> m_popoverGlobalClickMonitor;
    WorkItem m_firstPresentation; ///< while it waits for the status item
    bool m_dragInFlight = false;
    std::chrono::milliseconds m_closedByClickAt{-1'000'000};
    std::chrono::milliseconds m_swappedAt{-1'000'000}; ///< when the popover took the panel's place
};

} // namespace taliro
