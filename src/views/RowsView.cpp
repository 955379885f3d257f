#include "views/RowsView.h"

#include "views/FileIcons.h"
#include "views/Names.h"
#include "views/Symbols.h"

#include <QPainter>

namespace taliro {

RowsView::RowsView(Platform& platform, BrowserState& state, QString const& label, Style const& style,
                   QWidget* parent)
    : ItemView(platform, state, label, parent), m_style(style) {
    setFont(Theme::current().font(style.fontPoints));
}

QRect RowsView::cellRect(int row) const {
    return {0, m_style.margin + row * m_style.rowHeight, viewport()->width(), m_style.rowHeight};
}

int RowsView::rowAt(QPoint point) const {
    int const y = point.y() - m_style.margin;
    int const row = y < 0 ? -1 : y / m_style.rowHeight;
    return row < rowCount() ? row : -1;
}

int RowsView::contentHeight() const {
    return 2 * m_style.margin + rowCount() * m_style.rowHeight;
}

std::pair<int, int> RowsView::rowsBetween(int top, int bottom) const {
    int const first = std::max(0, (top - m_style.margin) / m_style.rowHeight);
    int const last = std::max(0, (bottom - m_style.margin) / m_style.rowHeight + 1);
    return {std::min(first, rowCount()), std::min(last, rowCount())};
}

QRect RowsView::nameRect(QRect const& cell, FileEntry const& entry) const {
    int const left = m_style.inset + m_style.iconSize + m_style.spacing;
    int const right = m_style.inset + (entry.isDirectory ? static_cast<int>(m_style.chevronPoints) + 4 : 0);
    return cell.adjusted(left, 0, -right, 0);
}

bool RowsView::isCut(QRect const& cell, FileEntry const& entry) const {
    return fontMetrics().horizontalAdvance(shownName(entry)) > nameRect(cell, entry).width();
}

void RowsView::paintCell(QPainter& painter, QRect const& cell, FileEntry const& entry, bool selected) {
    if (selected)
        painter.fillRect(cell, colors().accent);
    QRect const icon(cell.left() + m_style.inset, cell.top() + (cell.height() - m_style.iconSize) / 2,
                     m_style.iconSize, m_style.iconSize);
    FileIcons::shared().draw(painter, icon, entry);

    auto const name = nameRect(cell, entry);
    painter.setFont(font());
    painter.setPen(selected ? colors().onAccent : colors().text1);
    painter.drawText(name, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                     fontMetrics().elidedText(shownName(entry), Qt::ElideMiddle, name.width()));
    if (entry.isDirectory) {
        QRectF const chevron(cell.right() + 1 - m_style.inset - m_style.chevronPoints, cell.top(),
                             m_style.chevronPoints, cell.height());
        drawSymbol(painter, chevron, "chevron.right", m_style.chevronPoints, chevronColor(selected));
    }
}

} // namespace taliro
