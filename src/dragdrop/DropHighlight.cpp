#include "dragdrop/DropHighlight.h"

#include "views/Theme.h"

#include <QEvent>
#include <QPainter>
#include <cmath>

namespace taliro {

namespace {

constexpr qreal cornerRadius = 4;
constexpr qreal lineWidth = 2;
constexpr int easeMilliseconds = 80;

/// `rect` with the outline's outer edge one point inside.
QRectF outlineIn(QRectF const& rect) {
    constexpr qreal inset = 1 + lineWidth / 2;
    return rect.adjusted(inset, inset, -inset, -inset);
}

} // namespace

DropHighlight::DropHighlight(QWidget& surface) : QWidget(&surface), m_surface(surface) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
    hide();
    m_animation.setDuration(easeMilliseconds);
    m_animation.setEasingCurve(QEasingCurve::OutCubic);
    m_animation.setStartValue(0.0);
    m_animation.setEndValue(1.0);
    connect(&m_animation, &QVariantAnimation::valueChanged, this, [this](QVariant const& value) {
        m_now = {std::lerp(m_from.fill, m_to.fill, value.toDouble()),
                 std::lerp(m_from.stroke, m_to.stroke, value.toDouble())};
        update();
    });
    surface.installEventFilter(this);
}

void DropHighlight::setFramed(bool framed) {
    if (m_framed == framed)
        return;
    m_framed = framed;
    updateShown();
}

void DropHighlight::setRow(QRect row, double fillOpacity, double strokeOpacity, bool animated) {
    Opacities const wanted{fillOpacity, strokeOpacity};
    if (row == m_row && wanted == m_to)
        return;
    auto const eases = animated && row == m_row && m_now != wanted;
    m_row = row;
    m_from = m_now;
    m_to = wanted;
    m_animation.stop();
    if (eases)
        m_animation.start();
    else
        m_now = m_to;
    updateShown();
}

void DropHighlight::updateShown() {
    bool const shown = m_framed || m_to != Opacities{} || m_animation.state() == QAbstractAnimation::Running;
    if (shown)
        follow();
    setVisible(shown);
    if (shown)
        raise();
    update();
}

void DropHighlight::follow() {
    auto* const beside = m_surface.parentWidget() ? m_surface.parentWidget() : &m_surface;
    if (parentWidget() != beside)
        setParent(beside);
    auto const topLeft = beside == &m_surface ? QPoint() : m_surface.mapTo(beside, QPoint());
    setGeometry(QRect(topLeft, m_surface.size()));
}

bool DropHighlight::eventFilter(QObject*, QEvent* event) {
    if (isVisible() && (event->type() == QEvent::Resize || event->type() == QEvent::Move))
        follow();
    return false;
}

void DropHighlight::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    auto const accent = colors().accent;
    if (m_framed) {
        painter.setPen(QPen(accent, lineWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(outlineIn(rect()), cornerRadius, cornerRadius);
    }
    if (m_row.isEmpty())
        return;
    if (m_now.fill > 0) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(faded(accent, m_now.fill));
        painter.drawRoundedRect(QRectF(m_row).adjusted(1, 1, -1, -1), cornerRadius, cornerRadius);
    }
    if (m_now.stroke > 0) {
        painter.setPen(QPen(faded(accent, m_now.stroke), lineWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(outlineIn(m_row), cornerRadius, cornerRadius);
    }
}

} // namespace taliro
