#include "app/PickerPanel.h"

#include "app/AppSettings.h"
#include "app/MainMenu.h"
#include "app/RootView.h"
#include "app/TitlebarMenu.h"
#include "foundation/MainQueue.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"
#include "views/Theme.h"
#include "views/ToolButton.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QMenuBar>
#include <QMouseEvent>
#include <QWindow>

#include <cmath>
#include <sstream>

namespace taliro {

namespace {

using namespace std::chrono_literals;

constexpr char frameKey[] = "TaliroPanel";
/// While a window is dragged about, its frame is not stored at every step.
constexpr auto saveDelay = 200ms;
constexpr int titleBarHeight = 26;
/// With the thin strip at the browser's top.
constexpr int titleHeight = 33;

QRect toQRect(Rect const& rect) {
    return {static_cast<int>(std::lround(rect.x)), static_cast<int>(std::lround(rect.y)),
            static_cast<int>(std::lround(rect.width)), static_cast<int>(std::lround(rect.height))};
}

Rect toRect(QRect const& rect) {
    return {static_cast<double>(rect.x()), static_cast<double>(rect.y()), static_cast<double>(rect.width()),
            static_cast<double>(rect.height())};
}

std::optional<Rect> parseFrame(std::string const& text) {
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    Rect frame;
    stream >> frame.x >> frame.y >> frame.width >> frame.height;
    if (stream.fail() || frame.width <= 0 || frame.height <= 0)
        return std::nullopt;
    return frame;
}

std::string frameText(QRect const& frame) {
    return std::to_string(frame.x()) + ' ' + std::to_string(frame.y()) + ' ' + std::to_string(frame.width()) +
           ' ' + std::to_string(frame.height());
}

QSize toQSize(Size size) {
    return {static_cast<int>(size.width), static_cast<int>(size.height)};
}

} // namespace

PickerPanel::PickerPanel(Platform& platform, AppSettings& settings, MainMenu& menu)
    : FloatingWindow(platform, QStringLiteral("Taliro")), m_settings(settings), m_grips(*this) {
    setWindowRole(QStringLiteral("panel"));
    addTitleBar(menu);
    setFrameLimits(toQSize(Placement::minimumSize), toQSize(Placement::maximumSize));
    restoreFrame();
    connect(this, &FloatingWindow::frameChanged, this, &PickerPanel::frameDidChange);
    connect(qApp, &QCoreApplication::aboutToQuit, this, &PickerPanel::saveFrame);
    m_subscriptions.push_back(platform.screens.observeChanges([this] { comeBackOnScreen(); }));
    m_settings.updateLayoutMode(frame().width());
}

void PickerPanel::addTitleBar(MainMenu& menu) {
    auto* bar = new QWidget(this);
    bar->setFixedHeight(titleBarHeight);
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(8, 4, 0, 0);
    row->setSpacing(4);
    auto* close = new ToolButton("xmark", tr("Close"), 11, bar);
    close->setFocusPolicy(Qt::NoFocus);
    connect(close, &QAbstractButton::clicked, this, &QWidget::close);
    m_menuBar = menu.makeBar(bar);
    m_menuBar->setFont(Theme::current().font(metrics::list));
    // Lower than it wants to be, the bar would hide its menus; it may stand over the strip below.
    m_menuBar->setFixedHeight(m_menuBar->sizeHint().height());
    m_menuBar->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    m_menuBar->setNativeMenuBar(false);
    m_menuBar->setVisible(false);
    row->addWidget(close);
    row->addWidget(m_menuBar);
    row->addStretch();
    row->addWidget(new TitlebarMenu(m_settings, bar));
    rows()->addWidget(bar);
}

void PickerPanel::setContent(RootView* content) {
    m_content = content;
    rows()->addWidget(content, 1);
    content->show();
    m_grips.lieAlong(surface());
}

void PickerPanel::focusContent() {
    m_content->focusBrowser();
}

WindowManager::Taskbar PickerPanel::taskbar() const {
    return m_regular ? WindowManager::Taskbar::shown : WindowManager::Taskbar::skipped;
}

void PickerPanel::setRegular(bool regular) {
    m_regular = regular;
    m_menuBar->setVisible(regular);
    if (isVisible())
        platform().windowManager.setTaskbar(winId(), taskbar());
}

void PickerPanel::moveFrame(Point origin) {
    setFrame({QPoint(static_cast<int>(std::lround(origin.x)), static_cast<int>(std::lround(origin.y))),
              frame().size()});
}

void PickerPanel::restoreFrame() {
    auto const stored = platform().userDefaults.string(frameKey);
    auto const remembered = stored ? parseFrame(*stored) : std::nullopt;
    auto const screens = platform().screens.all();
    if (!remembered) {
        setFrame(toQRect(Placement::centered(screens, Placement::initialSize)));
        return;
    }
    auto const size = Placement::clampedSize({remembered->width, remembered->height});
    setFrame(toQRect(Placement::reachable(screens, {remembered->x, remembered->y, size.width, size.height})));
}

void PickerPanel::comeBackOnScreen() {
    auto const there = Placement::reachable(platform().screens.all(), toRect(frame()));
    if (toQRect(there) != frame())
        setFrame(toQRect(there));
}

void PickerPanel::resizeEvent(QResizeEvent* event) {
    FloatingWindow::resizeEvent(event);
    m_grips.lieAlong(surface());
    m_settings.updateLayoutMode(frame().width());
}

void PickerPanel::frameDidChange() {
    m_pendingSave = platform().mainQueue.after(saveDelay, [this] { saveFrame(); });
}

void PickerPanel::saveFrame() {
    m_pendingSave.cancel();
    auto const text = frameText(frame());
    if (platform().userDefaults.string(frameKey) != text)
        platform().userDefaults.setString(frameKey, text);
}

/// A press that nothing in the title strip took.
void PickerPanel::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || event->position().y() >= surface().top() + titleHeight)
        return;
    if (!movesItself())
        windowHandle()->startSystemMove();
    else
        m_heldAt = event->globalPosition().toPoint() - frame().topLeft();
}

void PickerPanel::mouseMoveEvent(QMouseEvent* event) {
    if (m_heldAt)
        setFrame({event->globalPosition().toPoint() - *m_heldAt, frame().size()});
}

void PickerPanel::mouseReleaseEvent(QMouseEvent*) {
    m_heldAt.reset();
}

void PickerPanel::hideEvent(QHideEvent* event) {
    FloatingWindow::hideEvent(event);
    saveFrame();
}

/// The panel is only hidden: it comes back as it was.
void PickerPanel::closeEvent(QCloseEvent* event) {
    event->ignore();
    hide();
}

} // namespace taliro
