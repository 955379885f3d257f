#pragma once

#include "browsing/Listing.h"

#include <QAbstractListModel>

namespace taliro {

/// Rows of files for Qt's views and for assistive tools.
class RowModel : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    RowList const& rows() const { return m_rows; }
    void setRows(RowList rows);

    int rowCount(QModelIndex const& parent = {}) const override;
    QVariant data(QModelIndex const& index, int role) const override;

private:
    RowList m_rows;
};

} // namespace taliro
