#pragma once

#include "views/ItemView.h"

namespace taliro {

/// Rows of one height, each as wide as the view.
class RowsView : public ItemView {
public:
    /// Sizes in points.
    struct Style {
        int rowHeight;
        int iconSize;
        int inset;   ///< left and right of a row's content
        int spacing; ///< between icon and name
        qreal fontPoints;
        qreal chevronPoints;
        int margin = 0; ///< above the first and below the last row
    };
    RowsView(Platform& platform, BrowserState& state, QString const& label, Style const& style,
             QWidget* parent = nullptr);

protected:
    QRect cellRect(int row) const override;
    int rowAt(QPoint point) const override;
    int contentHeight() const override;
    std::pair<int, int> rowsBetween(int top, int bottom) const override;
    int scrollStep() const override { return m_style.rowHeight; }
    void paintCell(QPainter& painter, QRect const& cell, FileEntry const& entry, bool selected) override;
    bool isCut(QRect const& cell, FileEntry const& entry) const override;

    /// The mark of a folder at the row's end.
    virtual QColor chevronColor(bool selected) const = 0;

private:
    QRect nameRect(QRect const& cell, FileEntry const& entry) const;

    Style m_style;
};

} // namespace taliro
