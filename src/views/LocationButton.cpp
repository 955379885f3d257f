#include "views/LocationButton.h"

#include "views/Drawing.h"
#include "views/Symbols.h"

#include <QPainter>

namespace taliro {

namespace {
constexpr int inset = 4;
constexpr int symbolSize = 15;
constexpr int spacing = 6;
constexpr int chevronSize = 10;
constexpr int buttonHeight = 24;
} // namespace

LocationButton::LocationButton(QWidget* parent) : QToolButton(parent) {
    setFont(Theme::current().font(metrics::body, QFont::Medium));
    setPopupMode(QToolButton::InstantPopup);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    setFocusPolicy(Qt::TabFocus);
}

void LocationButton::setPlace(std::string symbol, QString const& name) {
    m_symbol = std::move(symbol);
    setText(name);
    setAccessibleName(name);
    setToolTip(name);
    updateGeometry();
    update();
}

QSize LocationButton::sizeHint() const {
    auto const text = fontMetrics().horizontalAdvance(this->text());
    return {inset + symbolSize + spacing + text + 1 + spacing + chevronSize + inset, buttonHeight};
}

QSize LocationButton::minimumSizeHint() const {
    return {inset + symbolSize + spacing + 40, buttonHeight};
}

void LocationButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (opensMenu() && (underMouse() || isDown()))
        fillRounded(painter, rect(), metrics::radius, isDown() ? colors().pressed : colors().hover);
    if (hasFocus())
        drawFocusRing(painter, rect(), metrics::radius);
    auto box = QRectF(rect()).adjusted(inset, 0, -inset, 0);
    drawSymbol(painter, {box.left(), box.top(), symbolSize, box.height()}, m_symbol, symbolSize,
               colors().accent);
    box.setLeft(box.left() + symbolSize + spacing);
    auto const room = box.width() - (opensMenu() ? spacing + chevronSize : 0);
    auto const shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, static_cast<int>(room) + 1);
    painter.setFont(font());
    painter.setPen(colors().text1);
    painter.drawText(box, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, shown);
    if (!opensMenu())
        return;
    auto const left = box.left() + fontMetrics().horizontalAdvance(shown) + spacing;
    drawSymbol(painter, {left, box.top(), chevronSize, box.height()}, "chevron.down", chevronSize,
               colors().text2);
}

} // namespace taliro
