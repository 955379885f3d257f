#include "sidebar/SidebarLabels.h"

#include "views/Drawing.h"
#include "views/Symbols.h"

#include <QPainter>

namespace taliro {

ThemedLabel::ThemedLabel(QString const& text, QFont const& font, ColorRole color, qreal opacity,
                         QWidget* parent)
    : QLabel(text, parent), m_color(color), m_opacity(opacity) {
    setTextFormat(Qt::PlainText);
    setFont(font);
}

ThemedLabel* ThemedLabel::symbol(std::string_view name, qreal points, ColorRole color, QWidget* parent) {
    auto* label = new ThemedLabel(QString(), Theme::current().font(), color, 1, parent);
    label->m_symbol = name;
    label->m_points = points;
    label->setFixedSize(qRound(points), qRound(points));
    return label;
}

void ThemedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    auto const color = faded(colors().*m_color, m_opacity);
    if (!m_symbol.empty()) {
        drawSymbol(painter, rect(), m_symbol, m_points, color);
        return;
    }
    painter.setPen(color);
    painter.setFont(font());
    painter.drawText(contentsRect(), (wordWrap() ? Qt::TextWordWrap : 0) | static_cast<int>(alignment()),
                     text());
}

TextButton::TextButton(QString const& text, Look look, QWidget* parent)
    : QAbstractButton(parent), m_look(std::move(look)) {
    setText(text);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::ArrowCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize TextButton::sizeHint() const {
    QFontMetrics const metrics(m_look.font);
    return {metrics.horizontalAdvance(text()) + 2 * m_look.paddingX, metrics.height() + 2 * m_look.paddingY};
}

void TextButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (m_look.background)
        fillRounded(painter, rect(), metrics::radius, faded(colors().*m_look.background, isDown() ? .8 : 1));
    painter.setFont(m_look.font);
    painter.setPen(faded(colors().*m_look.color, isDown() && !m_look.background ? .6 : 1));
    painter.drawText(rect(), Qt::AlignCenter, text());
    if (hasFocus())
        drawFocusRing(painter, rect(), metrics::radius);
}

} // namespace taliro
