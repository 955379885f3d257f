#include "preferences/PreferencesWindowController.h"

#include "app/AppSettings.h"
#include "foundation/MainQueue.h"
#include "platform/Platform.h"
#include "platform/WindowManager.h"
#include "preferences/PreferencesView.h"
#include "preferences/PrefsToolbar.h"
#include "sidebar/FavoritesStore.h"
#include "views/Theme.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

namespace taliro {

namespace {

/// A dialog of the whole application: in front of its other windows.
constexpr auto dialogFlags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                             Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint;

class PreferencesWindow : public QWidget {
public:
    PreferencesWindow() : QWidget(nullptr, dialogFlags) {
        setWindowTitle(QStringLiteral("Taliro Preferences"));
        setWindowRole(QStringLiteral("preferences"));
        setFocusPolicy(Qt::ClickFocus);
        auto* close = new QAction(this);
        close->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_W), QKeySequence(Qt::META | Qt::Key_W)});
        connect(close, &QAction::triggered, this, &QWidget::close);
        addAction(close);
    }

    std::function<void()> onClose;

protected:
    void closeEvent(QCloseEvent* event) override {
        bool const hadKeyboard = isActiveWindow();
        QWidget::closeEvent(event);
        if (hadKeyboard && onClose)
            onClose();
    }
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Escape)
            close();
        else
            QWidget::keyPressEvent(event);
    }
    void paintEvent(QPaintEvent* event) override { QPainter(this).fillRect(event->rect(), colors().window); }
};

} // namespace

PreferencesWindowController& PreferencesWindowController::shared() {
    // Never destroyed: the window goes with the application.
    static auto& controller = *new PreferencesWindowController;
    return controller;
}

QWidget* PreferencesWindowController::makeWindow() {
    auto& selection = PreferencesTabSelection::shared();
    auto* window = new PreferencesWindow;
    window->onClose = [this] {
        if (onClose)
            onClose();
    };
    auto* column = new QVBoxLayout(window);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->addWidget(new PrefsToolbar(selection, window));
    column->addWidget(new PreferencesView(Platform::current(), FavoritesStore::shared(),
                                          AppSettings::shared(), selection, window));
    window->adjustSize();
    auto frame = window->geometry();
    frame.moveCenter(window->screen()->availableGeometry().center());
    window->move(frame.topLeft());
    // The browser comes to the front when it gets the keyboard; this stays before it.
    QObject::connect(qApp, &QGuiApplication::focusWindowChanged, window, [window](QWindow* focused) {
        bool const isOther = focused && focused != window->windowHandle() && !focused->transientParent();
        if (isOther && window->isVisible())
            Platform::current().windowManager.raise(window->winId());
    });
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, window, &QObject::deleteLater);
    return window;
}

void PreferencesWindowController::show() {
    if (!m_window)
        m_window = makeWindow();
    auto& desktop = Platform::current().windowManager;
    desktop.floatEverywhere(m_window->winId(), WindowManager::Taskbar::skipped);
    m_window->show();
    if (!m_window->focusWidget())
        m_window->setFocus(); // No control has the keyboard until one is chosen.
    m_window->raise();
    m_window->activateWindow();
    desktop.focus(m_window->winId());
    // Again once the window is there: until then, the desktop may have given the keyboard to another.
    Platform::current().mainQueue.async([&desktop, window = m_window] {
        if (window && window->isVisible())
            desktop.focus(window->winId());
    });
}

} // namespace taliro
