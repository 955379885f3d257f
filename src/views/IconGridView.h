#pragma once

#include "views/BrowserKeys.h"
#include "views/ItemView.h"

#include <QTextLayout>

#include <memory>
#include <string>
#include <unordered_map>

namespace taliro {

/// The rows of the current location as a grid of large icons with names.
class IconGridView : public ItemView {
public:
    IconGridView(Platform& platform, BrowserState& state, QWidget* parent = nullptr);

    bool handleKey(QKeyEvent const& event);
    /// Cells beside each other where the grid is `width` points wide.
    static int columnsFor(int width);

protected:
    QRect cellRect(int row) const override;
    int rowAt(QPoint point) const override;
    int contentHeight() const override;
    std::pair<int, int> rowsBetween(int top, int bottom) const override;
    int scrollStep() const override;
    void paintCell(QPainter& painter, QRect const& cell, FileEntry const& entry, bool selected) override;
    bool isCut(QRect const& cell, FileEntry const& entry) const override;
    std::optional<Url> const& alsoSelected() const override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    /// A name broken into at most two lines, ready to be painted.
    struct Name {
        std::unique_ptr<QTextLayout> layout;
        bool isCut = false;
    };
    void recomputeColumns(int width);
    Name const& nameOf(FileEntry const& entry) const;
    void paintImage(QPainter& painter, QRect const& box, FileEntry const& entry);
    void paintName(QPainter& painter, QRect const& cell, Name const& name, bool selected) const;
    std::optional<std::size_t> targetOf(QKeyEvent const& event) const;

    BrowserKeys m_keys;
    int m_gridColumns = 1;
    /// What was shown last: to break a name takes longer than to paint it.
    mutable std::unordered_map<std::string, Name> m_names;
};

} // namespace taliro
