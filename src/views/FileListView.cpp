#include "views/FileListView.h"

#include "views/Theme.h"

#include <QKeyEvent>
#include <QPainter>

namespace taliro {

namespace {

constexpr RowsView::Style look{.rowHeight = 29,
                               .iconSize = 18,
                               .inset = 12,
                               .spacing = 8,
                               .fontPoints = metrics::body,
                               .chevronPoints = 10};

} // namespace

FileListView::FileListView(Platform& platform, BrowserState& state, QWidget* parent)
    : RowsView(platform, state, tr("Files"), look, parent), m_keys(platform, state) {
    connect(this, &ItemView::entryClicked, this, [this](FileEntry const& entry, Qt::KeyboardModifiers held) {
        m_keys.click(entry.url, held, rows());
    });
    connect(this, &ItemView::entryDoubleClicked, this,
            [this](FileEntry const& entry) { m_keys.open(entry.url); });
    connect(this, &ItemView::emptyClicked, this, [&state] { state.clearSelection(); });
}

bool FileListView::handleKey(QKeyEvent const& event) {
    if (auto const outcome = m_keys.handle(event); outcome != BrowserKeys::Outcome::unknown)
        return outcome == BrowserKeys::Outcome::consumed;
    auto const& selection = state().selection.get();
    auto const step = [&](int delta) {
        if (auto const next = ArrowKeyNav::step(rows(), selection, delta))
            state().selectSingle(*next);
        return true;
    };
    auto const select = [&](std::size_t row) {
        if (row < rows().size())
            state().selectSingle(rows()[row].url);
        return true;
    };
    int const page = std::max(1, viewport()->height() / scrollStep() - 1);
    switch (event.key()) {
    case Qt::Key_Up:
        return step(-1);
    case Qt::Key_Down:
        return step(1);
    case Qt::Key_PageUp:
        return step(-page);
    case Qt::Key_PageDown:
        return step(page);
    case Qt::Key_Home:
        return select(0);
    case Qt::Key_End:
        return select(rows().size() - 1);
    default:
        break;
    }
    auto const found = m_keys.typed(event, rows(), selection);
    if (found)
        state().selectSingle(*found);
    return found.has_value();
}

void FileListView::paintCell(QPainter& painter, QRect const& cell, FileEntry const& entry, bool selected) {
    RowsView::paintCell(painter, cell.adjusted(0, 0, 0, -1), entry, selected);
    painter.fillRect(QRect(cell.left(), cell.bottom(), cell.width(), 1), faded(colors().line, .4));
}

QColor FileListView::chevronColor(bool selected) const {
    return selected ? faded(colors().onAccent, .85) : colors().text3;
}

} // namespace taliro
