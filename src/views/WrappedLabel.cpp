#include "views/WrappedLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QTextLayout>
#include <QToolTip>

namespace taliro {

namespace {

/// Lays `text` out in lines of `width`; the number of lines.
int layOut(QTextLayout& layout, qreal width) {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    qreal y = 0;
    for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, y});
        y += line.height();
    }
    layout.endLayout();
    return layout.lineCount();
}

} // namespace

WrappedLabel::WrappedLabel(QFont const& font, ColorRole color, int mostLines, QWidget* parent)
    : QLabel(parent), m_color(color), m_mostLines(mostLines) {
    setFont(font);
    setTextFormat(Qt::PlainText);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

QString WrappedLabel::shownText(int width) const {
    auto shown = text();
    // Each step cuts more, since where lines break decides how much fits.
    for (qreal room = width * m_mostLines; room > width / 2.0; room -= width * 0.1) {
        QTextLayout layout(shown, font());
        if (layOut(layout, width) <= m_mostLines)
            break;
        shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, qRound(room));
    }
    return shown;
}

int WrappedLabel::heightForWidth(int width) const {
    QTextLayout layout(text(), font());
    return std::clamp(layOut(layout, width), 1, m_mostLines) * fontMetrics().lineSpacing() + 1;
}

QSize WrappedLabel::sizeHint() const {
    return {fontMetrics().horizontalAdvance(text()) + 1, fontMetrics().lineSpacing() + 1};
}

QSize WrappedLabel::minimumSizeHint() const {
    return {20, fontMetrics().lineSpacing() + 1};
}

void WrappedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(colors().*m_color);
    QTextLayout layout(shownText(width()), font());
    layOut(layout, width());
    layout.draw(&painter, {0, 0});
}

bool WrappedLabel::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        auto const* help = static_cast<QHelpEvent*>(event);
        if (shownText(width()) != text())
            QToolTip::showText(help->globalPos(), text(), this);
        return true;
    }
    return QLabel::event(event);
}

} // namespace taliro
