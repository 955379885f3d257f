#include "views/ToolButton.h"

#include "views/Drawing.h"
#include "views/Symbols.h"

#include <QPainter>

namespace taliro {

ToolButton::ToolButton(std::string_view symbol, QString const& label, qreal symbolPoints, QWidget* parent)
    : QToolButton(parent), m_symbol(symbol), m_points(symbolPoints) {
    setLabel(label);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
}

void ToolButton::setSymbol(std::string_view symbol) {
    m_symbol = symbol;
    update();
}

void ToolButton::setLabel(QString const& label) {
    setToolTip(label);
    setAccessibleName(label);
}

void ToolButton::setMenu(QMenu* menu) {
    // Only then: to assistive tools, such a button can't be pressed.
    setPopupMode(QToolButton::InstantPopup);
    QToolButton::setMenu(menu);
}

void ToolButton::setTint(ColorRole tint) {
    m_tint = tint;
    update();
}

void ToolButton::setFrame(Frame frame) {
    m_frame = frame;
    update();
}

QColor ToolButton::symbolColor() const {
    if (!isEnabled())
        return faded(colors().text2, .45);
    return isChecked() ? colors().accent : colors().*m_tint;
}

void ToolButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    auto const& c = colors();
    if (m_frame == Frame::bordered) {
        fillRounded(painter, rect(), metrics::radius, c.control);
        strokeRounded(painter, rect(), metrics::radius, c.controlBorder);
    }
    if (isEnabled() && (isDown() || underMouse()))
        fillRounded(painter, rect(), metrics::radius, isDown() ? c.pressed : c.hover);
    drawSymbol(painter, rect(), m_symbol, m_points, symbolColor());
    if (hasFocus())
        drawFocusRing(painter, rect(), metrics::radius);
}

} // namespace taliro
