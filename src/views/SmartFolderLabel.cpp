#include "views/SmartFolderLabel.h"

#include "browsing/SmartFolders.h"
#include "views/Names.h"
#include "views/Symbols.h"

#include <QPainter>

namespace taliro {

SmartFolderLabel::SmartFolderLabel(QWidget* parent) : QWidget(parent) {
    setFont(Theme::current().font(metrics::list));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFixedHeight(22);
}

void SmartFolderLabel::setLocation(Url const& location, std::optional<Url> const& selection) {
    m_isRecents = location == SmartFolders::recents();
    m_selected = selection ? shownName(selection->lastPathComponent()) : QString();
    setAccessibleName(m_isRecents ? tr("Recents") : QString());
    setAccessibleDescription(m_selected);
    update();
}

void SmartFolderLabel::paintEvent(QPaintEvent*) {
    constexpr int iconPoints = 12;
    constexpr int gap = 6;
    QPainter painter(this);
    int x = 0;
    auto const symbol = [&](std::string_view name, int points, QColor const& color) {
        drawSymbol(painter, QRectF(x, 0, points, height()), name, points, color);
        x += points + gap;
    };
    auto const text = [&](QString const& words) {
        auto const cut = fontMetrics().elidedText(words, Qt::ElideMiddle, std::max(0, width() - x));
        painter.setPen(colors().text1);
        painter.drawText(QRect(x, 0, width() - x, height()), Qt::AlignVCenter | Qt::TextSingleLine, cut);
        x += fontMetrics().horizontalAdvance(cut) + gap;
    };
    symbol(m_isRecents ? "clock" : "folder", iconPoints, colors().text2);
    if (m_isRecents)
        text(tr("Recents"));
    if (!m_selected.isEmpty()) {
        symbol("chevron.right", 9, colors().text3);
        text(m_selected);
    }
}

} // namespace taliro
