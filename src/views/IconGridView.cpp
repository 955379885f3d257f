#include "views/IconGridView.h"

#include "browsing/ThumbnailCache.h"
#include "views/Drawing.h"
#include "views/FileIcons.h"
#include "views/Names.h"
#include "views/Pictures.h"
#include "views/Theme.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPointer>

#include <cmath>

namespace taliro {

namespace {

constexpr int margin = 12;
constexpr int cellSize = 92;
constexpr int widestCell = 110;
constexpr int columnGap = 8;
constexpr int rowGap = 12;
constexpr int rowPitch = cellSize + rowGap;
constexpr int imageSize = 64;
constexpr int nameGap = 4;   ///< between image and name
constexpr int nameInset = 3; ///< left and right of the name, within its background
constexpr int nameWidth = cellSize - 2 * nameInset;
constexpr std::size_t mostNamesKept = 1000;

/// Breaks the text into at most two lines; where the second one begins, and how much of the text both hold.
std::pair<int, int> breakLines(QTextLayout& layout, int lineHeight) {
    layout.beginLayout();
    int second = 0;
    int end = 0;
    for (int i = 0; i < 2; ++i) {
        auto line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(nameWidth);
        line.setPosition({0, static_cast<qreal>(i * lineHeight)});
        second = line.textStart();
        end = second + line.textLength();
    }
    layout.endLayout();
    return {second, end};
}

} // namespace

IconGridView::IconGridView(Platform& platform, BrowserState& state, QWidget* parent)
    : ItemView(platform, state, tr("Files"), parent), m_keys(platform, state) {
    setFont(Theme::current().font(metrics::small));
    connect(this, &ItemView::entryClicked, this, [this](FileEntry const& entry, Qt::KeyboardModifiers held) {
        m_keys.click(entry.url, held, rows());
    });
    connect(this, &ItemView::entryDoubleClicked, this,
            [this](FileEntry const& entry) { m_keys.open(entry.url); });
    connect(this, &ItemView::emptyClicked, this, [&state] { state.clearSelection(); });
}

int IconGridView::columnsFor(int width) {
    return std::max(1, (std::max(width - 2 * margin, 0) + columnGap) / (cellSize + columnGap));
}

void IconGridView::recomputeColumns(int width) {
    m_gridColumns = columnsFor(width);
}

void IconGridView::resizeEvent(QResizeEvent* event) {
    recomputeColumns(viewport()->width());
    ItemView::resizeEvent(event);
    viewport()->update();
}

QRect IconGridView::cellRect(int row) const {
    // The cells share the width up to their widest; what is left stays on both sides.
    int const available = viewport()->width() - 2 * margin - (m_gridColumns - 1) * columnGap;
    int const column = std::clamp(available / m_gridColumns, cellSize, widestCell);
    int const used = m_gridColumns * column + (m_gridColumns - 1) * columnGap;
    int const left = std::max(margin, (viewport()->width() - used) / 2);
    int const x = left + row % m_gridColumns * (column + columnGap) + (column - cellSize) / 2;
    return {x, margin + row / m_gridColumns * rowPitch, cellSize, cellSize};
}

int IconGridView::rowAt(QPoint point) const {
    auto const [first, last] = rowsBetween(point.y(), point.y());
    for (int row = first; row < last; ++row)
        if (cellRect(row).contains(point))
            return row;
    return -1;
}

int IconGridView::contentHeight() const {
    int const lines = (rowCount() + m_gridColumns - 1) / m_gridColumns;
    return 2 * margin + std::max(0, lines * rowPitch - rowGap);
}

std::pair<int, int> IconGridView::rowsBetween(int top, int bottom) const {
    // A cell's second line of text reaches into the gap below it.
    int const first = std::max(0, (top - margin) / rowPitch) * m_gridColumns;
    int const last = std::max(0, (bottom - margin) / rowPitch + 1) * m_gridColumns;
    return {std::min(first, rowCount()), std::min(last, rowCount())};
}

int IconGridView::scrollStep() const {
    return rowPitch / 3;
}

std::optional<Url> const& IconGridView::alsoSelected() const {
    return state().selection.get();
}

void IconGridView::paintCell(QPainter& painter, QRect const& cell, FileEntry const& entry, bool selected) {
    QRect const image(cell.left() + (cell.width() - imageSize) / 2, cell.top(), imageSize, imageSize);
    paintImage(painter, image, entry);
    paintName(painter, cell, nameOf(entry), selected);
}

/// The file's thumbnail, once there is one; a folder has none.
void IconGridView::paintImage(QPainter& painter, QRect const& box, FileEntry const& entry) {
    auto& thumbnails = ThumbnailCache::shared();
    if (!entry.isDirectory)
        thumbnails.noteModified(entry.url, entry.modified);
    auto const known = entry.isDirectory ? std::nullopt : thumbnails.cached(entry.url, imageSize);
    if (!known) {
        FileIcons::shared().draw(painter, box, entry);
        if (!entry.isDirectory)
            thumbnails.load(entry.url, imageSize, [view = QPointer(this), url = entry.url](Picture const&) {
                if (view)
                    view->updateItem(url);
            });
        return;
    }
    // On whole points, where an image that needs no scaling is merely copied.
    auto const image = toImage(*known);
    QRect target(QPoint(), image.size().scaled(box.size(), Qt::KeepAspectRatio).expandedTo({1, 1}));
    target.moveCenter(box.center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, image);
    painter.setPen(colors().line); // A white page would be lost on a white ground.
    painter.setBrush(Qt::NoBrush);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.drawRect(target.adjusted(0, 0, -1, -1));
    painter.setRenderHint(QPainter::Antialiasing);
}

/// What was scrolled past needs no thumbnail any more.
void IconGridView::scrollContentsBy(int dx, int dy) {
    ItemView::scrollContentsBy(dx, dy);
    std::unordered_set<Url> visible;
    auto const [first, last] = visibleRows();
    for (int row = first; row < last; ++row)
        visible.insert(rows()[static_cast<std::size_t>(row)].url);
    ThumbnailCache::shared().cancelExcept(visible);
}

IconGridView::Name const& IconGridView::nameOf(FileEntry const& entry) const {
    if (m_names.size() > mostNamesKept)
        m_names.clear();
    auto const [found, isNew] = m_names.try_emplace(std::string(entry.nameView()));
    auto& name = found->second;
    if (!isNew)
        return name;
    auto const text = shownName(entry);
    name.layout = std::make_unique<QTextLayout>(text, font());
    name.layout->setCacheEnabled(true);
    QTextOption option(Qt::AlignHCenter);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    name.layout->setTextOption(option);
    auto const [second, end] = breakLines(*name.layout, fontMetrics().height());
    name.isCut = end < text.size();
    if (name.isCut) { // In its middle: the end tells as much as the beginning.
        name.layout->setText(text.left(second).trimmed() + QChar::LineSeparator +
                             fontMetrics().elidedText(text.mid(second), Qt::ElideMiddle, nameWidth));
        breakLines(*name.layout, fontMetrics().height());
    }
    return name;
}

void IconGridView::paintName(QPainter& painter, QRect const& cell, Name const& name, bool selected) const {
    auto const& layout = *name.layout;
    QPointF const origin(cell.left() + nameInset, cell.top() + imageSize + nameGap + 1);
    if (selected) {
        qreal width = 0;
        for (int i = 0; i < layout.lineCount(); ++i)
            width = std::max(width, layout.lineAt(i).naturalTextWidth());
        QRectF box(0, origin.y() - 1, std::ceil(width) + 2 * nameInset,
                   layout.lineCount() * fontMetrics().height() + 2);
        box.moveLeft(cell.left() + (cell.width() - box.width()) / 2);
        fillRounded(painter, box, 4, colors().accent);
    }
    painter.setPen(selected ? colors().onAccent : colors().text1);
    layout.draw(&painter, origin);
}

bool IconGridView::isCut(QRect const&, FileEntry const& entry) const {
    return nameOf(entry).isCut;
}

/// Where a key leads: left and right in reading order, up and down by a line.
std::optional<std::size_t> IconGridView::targetOf(QKeyEvent const& event) const {
    if (rows().empty())
        return std::nullopt;
    auto const last = rows().size() - 1;
    auto const& selection = state().selection.get();
    auto const at = selection ? rows().indexOf(*selection) : std::nullopt;
    auto const step = [&](int delta) {
        auto const next = ArrowKeyNav::step(rows(), selection, delta);
        return next ? rows().indexOf(*next) : std::nullopt;
    };
    int const page = std::max(1, viewport()->height() / rowPitch) * m_gridColumns;
    switch (event.key()) {
    case Qt::Key_Up:
        return step(-m_gridColumns);
    case Qt::Key_Down:
        return step(m_gridColumns);
    case Qt::Key_Left:
        return !at ? last : *at == 0 ? 0 : *at - 1;
    case Qt::Key_Right:
        return !at ? 0 : std::min(*at + 1, last);
    case Qt::Key_PageUp:
        return step(-page);
    case Qt::Key_PageDown:
        return step(page);
    case Qt::Key_Home:
        return 0;
    case Qt::Key_End:
        return last;
    default:
        return std::nullopt;
    }
}

bool IconGridView::handleKey(QKeyEvent const& event) {
    if (auto const outcome = m_keys.handle(event); outcome != BrowserKeys::Outcome::unknown)
        return outcome == BrowserKeys::Outcome::consumed;
    if (auto const target = targetOf(event)) {
        state().selectSingle(rows()[*target].url);
        return true;
    }
    if (event.key() >= Qt::Key_Home && event.key() <= Qt::Key_PageDown)
        return true; // Nothing to go to.
    auto const found = m_keys.typed(event, rows(), state().selection.get());
    if (found)
        state().selectSingle(*found);
    return found.has_value();
}

} // namespace taliro
