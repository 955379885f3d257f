#include "app/AppDelegate.h"

#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "KeyboardShortcuts/MenuTracking.h"
#include "KeyboardShortcuts/RecorderCocoa.h"
#include "app/AppCommands.h"
#include "app/AppSettings.h"
#include "app/FactoryReset.h"
#include "app/OpenRequest.h"
#include "app/PickerPanel.h"
#include "app/Popover.h"
#include "app/Updater.h"
#include "browsing/QuickLookCoordinator.h"
#include "dragdrop/FileDrag.h"
#include "foundation/MainQueue.h"
#include "foundation/NotificationCenter.h"
#include "platform/OpenRequests.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"
#include "platform/WindowManager.h"
#include "preferences/PreferencesWindowController.h"
#include "views/QuickLookWindow.h"

#include <QApplication>

namespace taliro {

AppDelegate::AppDelegate(Platform& platform, AppSettings& settings, BrowserState& browser)
    : m_platform(platform), m_settings(settings), m_browser(browser), m_mainMenu([this] { dismiss(); }) {}

AppDelegate::~AppDelegate() {
    QuickLookCoordinator::provide({});
}

void AppDelegate::applicationDidFinishLaunching() {
    resetToFactoryDefaultsIfNeeded(m_platform.userDefaults,
                                   [] { KeyboardShortcuts::shared().reset({togglePicker()}); });
    Updater::shared();
    AppCommands::shared().showPreferences = [this] { showPreferences(); };
    AppCommands::shared().checkForUpdates = [] { Updater::shared().checkForUpdates(); };
    QuickLookCoordinator::provide([this] {
        if (!m_quickLook)
            m_quickLook = std::make_unique<QuickLookWindow>(m_platform);
        return m_quickLook.get();
    });
    installStatusItem();
    observeNotifications();
    m_statusItem->setVisible(m_settings.showMenuBarIcon);
    observeSettings();
    installShortcut();
    m_platform.openRequests.start([this](std::vector<Url> const& urls) { openURLs(urls); },
                                  [this] { applicationShouldHandleReopen(); });
    presentOnceItemIsPlaced();
}

/// A popover waits a moment for the tray to take its icon in, or it would jump.
void AppDelegate::presentOnceItemIsPlaced() {
    if (!m_settings.popoverMode || !m_settings.showMenuBarIcon || m_statusItem->frame()) {
        present();
        return;
    }
    using namespace std::chrono_literals;
    m_firstPresentation = m_platform.mainQueue.after(500ms, [this] { present(); });
}

void AppDelegate::installStatusItem() {
    m_statusItem = m_platform.statusBar.makeItem("TaliroMenuBarIcon", "folder", "Taliro");
    m_statusItem->onLeftClick = [this] { toggle(); };
    m_statusItem->onRightClick = [this] { showMenu(); };
    auto const& commands = AppCommands::shared();
    m_statusItem->setMenu({{"Preferences…", "Ctrl+,", commands.showPreferences},
                           {"Check for Updates…", "", commands.checkForUpdates},
                           {},
                           {"Quit Taliro", "Ctrl+Q", commands.quit}});
    m_statusItem->onDragEntered = [] { NotificationCenter::standard().post(statusItemFileDragEntered); };
    m_statusItem->onPlaced = [this] {
        if (m_firstPresentation.isPending()) {
            m_firstPresentation.cancel();
            present();
        }
        if (m_popover)
            m_popover->anchor(m_statusItem->frame());
    };
}

void AppDelegate::observeNotifications() {
    auto const onMainQueue = [this](char const* name, void (AppDelegate::*handler)()) {
        m_cancellables.push_back(NotificationCenter::standard().observe(name, [this, handler](auto const&) {
            m_platform.mainQueue.async([guard = QPointer(this), handler] {
                if (guard)
                    (guard->*handler)();
            });
        }));
    };
    onMainQueue(statusItemFileDragEntered, &AppDelegate::presentForDrag);
    onMainQueue(fileDragDidComplete, &AppDelegate::dismissAfterDrag);
}

void AppDelegate::presentForDrag() {
    m_dragInFlight = true;
    present();
}

void AppDelegate::dismissAfterDrag() {
    if (m_settings.popoverMode && m_popover)
        m_popover->hide();
}

/// Changes take effect in a later turn, when what caused them is over.
void AppDelegate::observeSettings() {
    auto const later = [this](Published<bool>& property, std::function<void(bool)> apply) {
        m_cancellables.push_back(property.observe([this, apply = std::move(apply)](bool value) {
            m_platform.mainQueue.async([guard = QPointer(this), apply, value] {
                if (guard)
                    apply(value);
            });
        }));
    };
    later(m_settings.showMenuBarIcon, [this](bool show) { m_statusItem->setVisible(show); });
    later(m_settings.popoverMode, [this](bool) { swapPresentation(); });
    later(m_settings.showInDock, [this](bool show) { applyDockVisibility(show); });
    m_cancellables.push_back(m_platform.windowManager.observeWorkspace([this] {
        if (m_settings.showInDock && m_panel && m_panel->isVisible())
            m_platform.windowManager.raise(m_panel->winId());
    }));
    later(m_settings.miniMode, [this](bool) {
        updatePopoverSize();
        refreshResizeHandleVisibility();
    });
}

void AppDelegate::installShortcut() {
    new MenuTracking(*qApp);
    RecorderCocoa::setMainMenu([this] { return m_mainMenu.items(); });
    KeyboardShortcuts::shared().onKeyDown(togglePicker(), [guard = QPointer(this)] {
        if (guard)
            guard->toggleFromHotkey();
    });
}

void AppDelegate::toggle() {
    // Where the tray doesn't tell the icon's place, the click on it first closed the popover as one outside.
    using namespace std::chrono_literals;
    bool const wasClosedByThis = m_platform.mainQueue.now() - m_closedByClickAt < 400ms;
    if (isPresentationVisible())
        dismiss();
    else if (wasClosedByThis)
        m_closedByClickAt = -1'000'000ms;
    else if (m_settings.popoverMode)
        showPopover();
    else
        showPanel(m_statusItem->frame(), false);
}

void AppDelegate::showPreferences() {
    auto& preferences = PreferencesWindowController::shared();
    bool const isNew = !preferences.window();
    preferences.show();
    if (!isNew)
        return;
    m_mainMenu.attachTo(*preferences.window());
    preferences.onClose = [this] {
        // In a later turn, when the window is gone.
        m_platform.mainQueue.async([guard = QPointer(this)] {
            if (guard && guard->isPresentationVisible())
                guard->present();
        });
    };
}

void AppDelegate::showMenu() {
    m_statusItem->showMenu();
}

void AppDelegate::openURLs(std::vector<Url> const& urls) {
    showRequested(urls, m_browser, m_platform.fileManager);
    present();
}

bool AppDelegate::applicationShouldHandleReopen() {
    present();
    return true;
}

} // namespace taliro
