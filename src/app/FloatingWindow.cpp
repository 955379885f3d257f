#include "app/FloatingWindow.h"

#include "app/WindowShadow.h"
#include "foundation/MainQueue.h"
#include "platform/Platform.h"
#include "views/TabOrder.h"
#include "views/Theme.h"

#include <QGuiApplication>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <QVBoxLayout>
#include <QWindow>

namespace taliro {

namespace {

constexpr int border = 1;

bool isTextField(QWidget* widget) {
    return qobject_cast<QLineEdit*>(widget) || qobject_cast<QTextEdit*>(widget) ||
           qobject_cast<QPlainTextEdit*>(widget);
}

QColor borderColor() {
    return Theme::current().isDark() ? QColor(72, 73, 79) : QColor(176, 177, 183);
}

} // namespace

/// Lies over the content and rounds its corners off.
class FloatingWindow::Corners : public QWidget {
public:
    explicit Corners(FloatingWindow& window) : QWidget(&window), m_window(window) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

    void lieOver(QRect const& surface) {
        setGeometry(surface);
        constexpr int size = WindowShadow::cornerRadius;
        QRect const corner(0, 0, size, size);
        QRegion corners;
        for (int const x : {0, width() - size})
            for (int const y : {0, height() - size})
                corners += corner.translated(x, y);
        setMask(corners);
        raise();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QPainterPath outside;
        outside.addRect(rect());
        outside.addRoundedRect(rect(), WindowShadow::cornerRadius, WindowShadow::cornerRadius);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
        painter.fillPath(outside, Qt::black);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
        WindowShadow::paint(painter, rect());
    }

private:
    FloatingWindow& m_window;
};

FloatingWindow::FloatingWindow(Platform& platform, QString const& title)
    : QWidget(nullptr, Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      m_platform(platform),
      m_rows(new QVBoxLayout(this)),
      m_composited(platform.windowManager.isComposited()),
      m_corners(new Corners(*this)) {
    setWindowTitle(title);
    setAttribute(Qt::WA_TranslucentBackground);
    m_rows->setSpacing(0);
    // The content takes what size the window has, never the other way round.
    m_rows->setSizeConstraint(QLayout::SetNoConstraint);
    m_compositing = platform.windowManager.observeCompositing([this] {
        auto const kept = frame();
        m_composited = m_platform.windowManager.isComposited();
        layOut();
        setFrame(kept);
    });
    layOut();
}

bool FloatingWindow::movesItself() {
    return QGuiApplication::platformName() != QLatin1String("wayland");
}

QMargins FloatingWindow::margins() const {
    if (m_composited)
        return WindowShadow::reach;
    return {0, m_arrowEdge == ArrowEdge::top ? static_cast<int>(Placement::arrowHeight) : 0, 0,
            m_arrowEdge == ArrowEdge::bottom ? static_cast<int>(Placement::arrowHeight) : 0};
}

void FloatingWindow::layOut() {
    auto const around = margins();
    m_rows->setContentsMargins(m_composited ? around : around + border);
    m_corners->setVisible(m_composited);
    setFrameLimits(m_minimum, m_maximum);
    updateShape();
    update();
}

void FloatingWindow::setFrame(QRect const& frame) {
    setGeometry(frame.marginsAdded(margins()));
}

void FloatingWindow::setFrameLimits(QSize minimum, QSize maximum) {
    m_minimum = minimum;
    m_maximum = maximum;
    auto const around = margins();
    if (!minimum.isEmpty())
        setMinimumSize(minimum.grownBy(around));
    if (!maximum.isEmpty())
        setMaximumSize(maximum.grownBy(around));
}

void FloatingWindow::setArrow(ArrowEdge edge, int x) {
    if (edge == m_arrowEdge && x == m_arrowX)
        return;
    m_arrowEdge = edge;
    m_arrowX = x;
    layOut();
}

void FloatingWindow::present(bool focused) {
    setAttribute(Qt::WA_ShowWithoutActivating, !focused);
    m_platform.windowManager.floatEverywhere(winId(), taskbar());
    updateShape();
    windowHandle()->installEventFilter(this);
    show();
    raise();
    if (!focused)
        return;
    auto const takeKeyboard = [this] {
        if (!isVisible())
            return;
        focusContent();
        m_platform.windowManager.focus(winId());
    };
    activateWindow();
    takeKeyboard();
    // Showing may still move the focus to a text field.
    m_platform.mainQueue.async(takeKeyboard);
}

QPainterPath FloatingWindow::arrowPath() const {
    QPainterPath path;
    if (m_arrowEdge == ArrowEdge::none)
        return path;
    auto const frame = QRectF(surface());
    auto const tip = frame.left() + m_arrowX;
    bool const up = m_arrowEdge == ArrowEdge::top;
    auto const base = up ? frame.top() + border : frame.bottom() - border;
    auto const peak = up ? frame.top() - Placement::arrowHeight : frame.bottom() + Placement::arrowHeight;
    path.moveTo(tip - Placement::arrowWidth / 2, base);
    path.lineTo(tip, peak);
    path.lineTo(tip + Placement::arrowWidth / 2, base);
    return path;
}

void FloatingWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing, m_composited);
    auto const frame = surface();
    auto const& fill = colors().window;
    if (m_composited) {
        WindowShadow::paint(painter, frame);
        painter.setPen(Qt::NoPen);
        painter.setBrush(fill);
        painter.drawRoundedRect(frame, WindowShadow::cornerRadius, WindowShadow::cornerRadius);
    } else {
        painter.fillRect(rect(), borderColor());
        painter.fillRect(frame.adjusted(border, border, -border, -border), fill);
    }
    auto const arrow = arrowPath();
    painter.fillPath(arrow, fill);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.strokePath(arrow, QPen(m_composited ? QColor(0, 0, 0, 40) : borderColor(), 1));
}

/// Tells the desktop which part of the window is more than shadow; without translucency, cuts the arrow out.
void FloatingWindow::updateShape() {
    if (m_composited || m_arrowEdge == ArrowEdge::none)
        clearMask();
    else
        setMask(QRegion(surface()) + QRegion(arrowPath().toFillPolygon().toPolygon()));
    if (!windowHandle())
        return;
    auto const ratio = devicePixelRatioF();
    auto const area = m_composited ? surface() : rect();
    m_platform.windowManager.setVisibleArea(
        winId(), {area.x() * ratio, area.y() * ratio, area.width() * ratio, area.height() * ratio},
        {width() * ratio, height() * ratio});
}

void FloatingWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (m_composited)
        m_corners->lieOver(surface());
    updateShape();
    Q_EMIT frameChanged();
}

void FloatingWindow::moveEvent(QMoveEvent*) {
    Q_EMIT frameChanged();
}

QWidget* FloatingWindow::editedField() const {
    auto* focused = focusWidget();
    return isTextField(focused) ? focused : nullptr;
}

void FloatingWindow::endEditingOutside(QPoint globalPosition) {
    auto* field = editedField();
    if (field && !field->rect().contains(field->mapFromGlobal(globalPosition)))
        focusContent();
}

bool FloatingWindow::focusNextPrevChild(bool next) {
    auto* const control = nextInTabOrder(*this, focusWidget(), next);
    if (control)
        control->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return control != nullptr;
}

bool FloatingWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == windowHandle() && event->type() == QEvent::MouseButtonPress) {
        auto const* press = static_cast<QMouseEvent*>(event);
        if (press->button() == Qt::LeftButton)
            endEditingOutside(press->globalPosition().toPoint());
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace taliro
