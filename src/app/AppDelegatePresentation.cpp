// How the browser comes and goes: the part of the delegate that is about its windows.

#include "app/AppDelegate.h"

#include "app/AppSettings.h"
#include "app/PickerPanel.h"
#include "app/Popover.h"
#include "app/RootView.h"
#include "browsing/BrowserState.h"
#include "browsing/DirectoryWatcher.h"
#include "foundation/MainQueue.h"
#include "platform/Platform.h"
#include "platform/PointerEvents.h"
#include "platform/WindowManager.h"
#include "preferences/PreferencesWindowController.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWindow>

namespace taliro {

bool AppDelegate::isPresentationVisible() const {
    return m_settings.popoverMode ? m_popover && m_popover->isVisible() : m_panel && m_panel->isVisible();
}

void AppDelegate::present() {
    if (m_settings.popoverMode)
        showPopover();
    else
        showPanel(std::nullopt, false);
}

void AppDelegate::dismiss() {
    if (m_panel)
        m_panel->hide();
    if (m_popover)
        m_popover->hide();
}

void AppDelegate::toggleFromHotkey() {
    if (isPresentationVisible())
        dismiss();
    else if (m_settings.popoverMode)
        showPopover();
    else
        showPanel(std::nullopt, m_settings.showWindowAtCursorOnHotkey);
}

void AppDelegate::swapPresentation() {
    if (m_settings.popoverMode) {
        if (m_panel)
            m_panel->hide();
        showPopover();
        m_swappedAt = m_platform.mainQueue.now();
    } else {
        if (m_popover)
            m_popover->hide();
        showPanel(m_statusItem->frame(), false);
    }
}

RootView& AppDelegate::rootView() {
    if (!m_rootView)
        m_rootView = new RootView(m_platform, m_browser, DirectoryWatcher::shared(), m_settings);
    return *m_rootView;
}

void AppDelegate::showPopover() {
    if (!m_statusItem) {
        showPanel(std::nullopt, false);
        return;
    }
    if (!m_popover)
        makePopover();
    m_popover->setContent(&rootView());
    m_popover->showAt(m_statusItem->frame(), !m_dragInFlight);
}

void AppDelegate::makePopover() {
    m_popover = std::make_unique<Popover>(m_platform, m_settings);
    m_mainMenu.attachTo(*m_popover);
    connect(m_popover.get(), &Popover::didShow, this, &AppDelegate::popoverDidShow);
    connect(m_popover.get(), &Popover::didClose, this, &AppDelegate::removePopoverClickMonitor);
}

void AppDelegate::popoverDidShow() {
    installPopoverClickMonitor();
    m_dragInFlight = false;
    refreshResizeHandleVisibility();
}

void AppDelegate::updatePopoverSize() {
    if (m_popover)
        m_popover->updateSize();
}

void AppDelegate::refreshResizeHandleVisibility() {
    if (m_popover)
        m_popover->setHandlesVisible(m_settings.popoverMode);
}

PickerPanel& AppDelegate::panel() {
    if (!m_panel) {
        m_panel = std::make_unique<PickerPanel>(m_platform, m_settings, m_mainMenu);
        m_panel->setRegular(m_settings.showInDock);
        m_mainMenu.attachTo(*m_panel);
    }
    return *m_panel;
}

void AppDelegate::showPanel(std::optional<Rect> item, bool atCursor) {
    auto& window = panel();
    window.setContent(&rootView());
    auto const frame = window.frame();
    Size const size{static_cast<double>(frame.width()), static_cast<double>(frame.height())};
    auto const screens = m_platform.screens.all();
    if (atCursor)
        window.moveFrame(Placement::originAtCursor(screens, m_platform.screens.mouseLocation(), size));
    else if (item)
        window.moveFrame(Placement::panelOrigin(screens, item, size));
    window.present();
}

void AppDelegate::applyDockVisibility(bool show) {
    if (m_panel)
        m_panel->setRegular(show);
    if (show && isPresentationVisible())
        present();
}

void AppDelegate::installPopoverClickMonitor() {
    removePopoverClickMonitor();
    qApp->installEventFilter(this);
    m_popoverGlobalClickMonitor = m_platform.pointerEvents.observeGlobalMouseDown(
        [this](Point position) { handleOutsideClick(position); });
}

void AppDelegate::removePopoverClickMonitor() {
    qApp->removeEventFilter(this);
    m_popoverGlobalClickMonitor.reset();
}

namespace {

/// Menus, tooltips and dialogs of the popover count as the popover itself.
bool belongsTo(QWindow const* window, QWindow const* owner) {
    for (; window; window = window->transientParent())
        if (window == owner)
            return true;
    return false;
}

QWidget* visiblePreferences() {
    auto* window = PreferencesWindowController::shared().window();
    return window && window->isVisible() ? window : nullptr;
}

/// Its frame belongs to the window manager, so presses on it come as those in other programs' windows.
bool isOverPreferences(Point position) {
    auto const* window = visiblePreferences();
    return window && window->frameGeometry().contains(qRound(position.x), qRound(position.y));
}

} // namespace

/// A press in another program's window.
void AppDelegate::handleOutsideClick(Point position) {
    m_platform.mainQueue.async([guard = QPointer(this), position] {
        if (!guard || !guard->m_settings.closePopoverOnOutsideClick || !guard->m_popover->isVisible())
            return;
        // The status item belongs to the tray's program; its click toggles.
        if (guard->m_statusItem->contains(position) || isOverPreferences(position))
            return;
        // The other press of a double click on the button that brought the popover.
        std::chrono::milliseconds const doubleClick(QApplication::doubleClickInterval());
        if (guard->m_platform.mainQueue.now() - guard->m_swappedAt < doubleClick)
            return;
        guard->m_popover->hide();
        guard->m_closedByClickAt = guard->m_platform.mainQueue.now();
    });
}

bool AppDelegate::eventFilter(QObject* watched, QEvent* event) {
    // Windows get the events first, then pass them on to their widgets: hear each once.
    if (!watched->isWindowType() || !m_popover || !m_popover->isVisible())
        return false;
    if (event->type() == QEvent::MouseButtonPress) {
        auto const* press = static_cast<QMouseEvent*>(event);
        if (press->button() == Qt::LeftButton)
            handlePopoverClick(static_cast<QWindow*>(watched), press->globalPosition().toPoint());
    } else if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        return closePopoverOnEscape(static_cast<QWindow*>(watched));
    }
    return false;
}

void AppDelegate::handlePopoverClick(QWindow* window, QPoint globalPosition) {
    if (!m_settings.closePopoverOnOutsideClick || belongsTo(window, m_popover->windowHandle()))
        return;
    if (QApplication::activePopupWidget() || QApplication::activeModalWidget())
        return;
    if (auto const* preferences = visiblePreferences();
        preferences && belongsTo(window, preferences->windowHandle()))
        return;
    if (m_statusItem->contains(
            {static_cast<double>(globalPosition.x()), static_cast<double>(globalPosition.y())}))
        return;
    m_popover->hide();
}

bool AppDelegate::closePopoverOnEscape(QWindow* window) {
    if (window != m_popover->windowHandle() || QApplication::activePopupWidget() || m_popover->editedField())
        return false;
    m_popover->hide();
    return true;
}

} // namespace taliro
