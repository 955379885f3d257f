#pragma once

#include "browsing/BrowserState.h"
#include "browsing/Listing.h"
#include "foundation/Refresher.h"
#include "views/Theme.h"

#include <QListView>
#include <QPropertyAnimation>

#include <optional>

namespace taliro {

class RowModel;
struct Platform;

/// The rows of one folder, painted cell by cell: a hundred thousand cost what ten do. The selection is the
/// browser state's; this view shows it and tells of clicks, and its owner decides what they mean.
///
/// A list view by class, so that assistive tools see one, with a geometry of its own that needs no layout.
class ItemView : public QListView {
    Q_OBJECT

public:
    /// `label` is the accessible name.
    ItemView(Platform& platform, BrowserState& state, QString const& label, QWidget* parent = nullptr);

    RowList const& rows() const;
    enum class Scroll { keep, toTop };
    /// With `keep`, what is on top stays there, unless it is gone.
    void setRows(RowList rows, Scroll scroll = Scroll::keep);

    /// What is at `position`, in the viewport's coordinates.
    std::optional<FileEntry> entryAt(QPoint position) const;
    /// Where `url` is in the viewport's coordinates, be it out of sight; empty where it isn't listed.
    QRect rectOf(Url const& url) const;

    enum class Place { nearest, centre };
    void reveal(Url const& url, Place place);

    QRect visualRect(QModelIndex const& index) const override;
    QModelIndex indexAt(QPoint const& position) const override;
    void scrollTo(QModelIndex const& index, ScrollHint hint = EnsureVisible) override;
    void doItemsLayout() override;

Q_SIGNALS:
    void entryClicked(taliro::FileEntry const& entry, Qt::KeyboardModifiers modifiers);
    void entryDoubleClicked(taliro::FileEntry const& entry);
    void emptyClicked();
    /// The pointer left the entry with its button down; `position` is where it was pressed, in the viewport.
    void dragStarted(taliro::FileEntry const& entry, QPoint position);
    /// For the entry, or for the folder shown where there is none.
    void menuRequested(std::optional<taliro::FileEntry> const& entry, QPoint globalPosition);

protected:
    // Geometry, with the origin at the top left of all rows. Asked while the view is being made, too.
    virtual QRect cellRect(int) const { return {}; }
    virtual int rowAt(QPoint) const { return -1; } ///< -1 where there is none
    virtual int contentHeight() const { return 0; }
    /// First and one past the last row that touch the lines from `top` to `bottom`.
    virtual std::pair<int, int> rowsBetween(int /*top*/, int /*bottom*/) const { return {0, 0}; }
    virtual int scrollStep() const { return 1; }

    virtual ColorRole ground() const { return &Colors::content; }

    virtual void paintCell(QPainter& painter, QRect const& cell, FileEntry const& entry, bool selected) = 0;
    /// Whether the name in `cell` is cut off, so that a tooltip is of use.
    virtual bool isCut(QRect const& cell, FileEntry const& entry) const = 0;

    /// A row shown as selected beside those that the browser's state says.
    virtual std::optional<Url> const& alsoSelected() const;
    /// How a newly selected row comes into sight.
    virtual void revealSelection(Url const& url) { reveal(url, Place::nearest); }
    void showSelection();

    /// First and one past the last row in sight, or no further than `beyond` points from it.
    std::pair<int, int> visibleRows(int beyond = 0) const;
    /// Paints the item anew, if it is in sight: looks no further than that.
    void updateItem(Url const& url);

    int rowCount() const { return static_cast<int>(rows().size()); }
    BrowserState& state() const { return m_state; }

    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void startDrag(Qt::DropActions) override {}
    bool viewportEvent(QEvent* event) override;
    void updateGeometries() override;
    void scrollContentsBy(int dx, int dy) override;
    int horizontalOffset() const override { return 0; }
    int verticalOffset() const override;
    QRegion visualRegionForSelection(QItemSelection const& selection) const override;

private:
    void press(QMouseEvent const& event, int clicks);
    bool isSelected(Url const& url) const;
    void syncSelectionModel();

    BrowserState& m_state;
    RowModel* m_model;
    Refresher m_selectionRefresher;
    std::optional<Url> m_shownSelection;
    mutable std::size_t m_rowGuess = 0; ///< where a row was found last
    QPropertyAnimation m_scrolling;

    struct Press {
        std::optional<FileEntry> entry;
        QPoint position;
        int clicks = 1;
        bool dragged = false;
    };
    std::optional<Press> m_press;
};

} // namespace taliro
