#include "views/RowModel.h"

#include "views/Names.h"

namespace taliro {

void RowModel::setRows(RowList rows) {
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

int RowModel::rowCount(QModelIndex const& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant RowModel::data(QModelIndex const& index, int role) const {
    auto const row = static_cast<std::size_t>(index.row());
    if (!index.isValid() || row >= m_rows.size())
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return shownName(m_rows[row]);
    case Qt::AccessibleDescriptionRole:
        return m_rows[row].kind ? QString::fromStdString(m_rows[row].kind->text()) : QString();
    default:
        return {};
    }
}

} // namespace taliro
