#include "views/MiniRowsView.h"

#include "browsing/ThumbnailCache.h"
#include "platform/Platform.h"
#include "platform/Thumbnailer.h"
#include "views/Drawing.h"
#include "views/InfoPopover.h"
#include "views/Names.h"
#include "views/Pictures.h"
#include "views/Symbols.h"

#include <QMouseEvent>
#include <QPainter>
#include <QtMath>

#include <unordered_set>

namespace taliro {

namespace {

constexpr int rowHeight = 34;
constexpr int inset = 10;
constexpr int gap = 8;
constexpr QSize thumbnailSize(26, 22);
constexpr int iconPoints = 20;
constexpr int infoSize = 15;
constexpr int infoTarget = 24; ///< what can be hit of the mark
constexpr int chevronSize = 10;
constexpr QSize requestedPoints(220, 160);
constexpr std::size_t mostKept = 200; ///< thumbnails

} // namespace

MiniRowsView::MiniRowsView(Platform& platform, BrowserState& state, QWidget* parent)
    : ItemView(platform, state, tr("Files"), parent), m_platform(platform) {
    setFont(Theme::current().font());
    viewport()->setMouseTracking(true);
}

QRect MiniRowsView::cellRect(int row) const {
    return {0, row * rowHeight, viewport()->width(), rowHeight};
}

int MiniRowsView::rowAt(QPoint point) const {
    int const row = point.y() < 0 ? -1 : point.y() / rowHeight;
    return row < rowCount() ? row : -1;
}

int MiniRowsView::contentHeight() const {
    return rowCount() * rowHeight;
}

std::pair<int, int> MiniRowsView::rowsBetween(int top, int bottom) const {
    return {std::clamp(top / rowHeight, 0, rowCount()), std::clamp(bottom / rowHeight + 1, 0, rowCount())};
}

int MiniRowsView::scrollStep() const {
    return rowHeight;
}

QRect MiniRowsView::infoRect(QRect const& cell, FileEntry const& entry) const {
    int const right = cell.right() + 1 - inset - (entry.isDirectory ? chevronSize + gap : 0);
    int const middle = right - infoSize / 2;
    return {middle - infoTarget / 2, cell.top() + (cell.height() - infoTarget) / 2, infoTarget, infoTarget};
}

QRect MiniRowsView::nameRect(QRect const& cell, FileEntry const& entry) const {
    return cell.adjusted(inset + thumbnailSize.width() + gap, 0,
                         infoRect(cell, entry).left() - cell.right() - 1, 0);
}

bool MiniRowsView::isCut(QRect const& cell, FileEntry const& entry) const {
    return fontMetrics().horizontalAdvance(shownName(entry)) > nameRect(cell, entry).width();
}

void MiniRowsView::paintCell(QPainter& painter, QRect const& cell, FileEntry const& entry, bool selected) {
    if (selected)
        painter.fillRect(cell, colors().accent);
    else if (m_hovered == entry.url)
        painter.fillRect(cell, faded(colors().accent, .12));
    paintThumbnail(
        painter,
        {QPoint(cell.left() + inset, cell.top() + (rowHeight - thumbnailSize.height()) / 2), thumbnailSize},
        entry);

    auto const name = nameRect(cell, entry);
    painter.setFont(font());
    painter.setPen(selected ? colors().onAccent : colors().text1);
    painter.drawText(name, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                     fontMetrics().elidedText(shownName(entry), Qt::ElideMiddle, name.width()));
    auto const mark = selected ? faded(colors().onAccent, .85) : colors().text2;
    drawSymbol(painter, infoRect(cell, entry), "info.circle", infoSize, mark);
    if (entry.isDirectory) {
        QRect const chevron(cell.right() + 1 - inset - chevronSize, cell.top(), chevronSize, cell.height());
        drawSymbol(painter, chevron, "chevron.right", chevronSize,
                   selected ? colors().onAccent : colors().text2);
    }
}

void MiniRowsView::paintThumbnail(QPainter& painter, QRect const& box, FileEntry const& entry) {
    auto const drawIcon = [&] { drawFileIcon(painter, box, entry.url, entry.isDirectory, iconPoints); };
    if (entry.isDirectory) {
        drawIcon();
        return;
    }
    auto const& known = thumbnail(entry);
    if (known.failed) {
        drawIcon();
    } else if (known.pixmap.isNull()) {
        fillRounded(painter, box, 3, faded(colors().text1, .06));
    } else {
        QRectF target(QPointF(), known.pixmap.deviceIndependentSize());
        target.moveCenter(QRectF(box).center());
        painter.drawPixmap(target, known.pixmap, known.pixmap.rect());
        strokeRounded(painter, target, 0, colors().line);
    }
}

MiniRowsView::Thumbnail const& MiniRowsView::thumbnail(FileEntry const& entry) {
    auto const [found, isNew] = m_thumbnails.try_emplace(entry.url);
    auto& known = found->second;
    if (!isNew && known.modified == entry.modified)
        return known;
    known.modified = entry.modified;
    auto const pixels = QSizeF(requestedPoints) * devicePixelRatioF();
    known.request = m_platform.thumbnailer.request(
        {entry.url, qCeil(pixels.width()), qCeil(pixels.height())},
        [this, url = entry.url](std::optional<Picture> const& picture) { finish(url, picture); });
    return known;
}

void MiniRowsView::finish(Url const& url, std::optional<Picture> const& picture) {
    auto const found = m_thumbnails.find(url);
    if (found == m_thumbnails.end())
        return;
    auto& known = found->second;
    known.failed = !picture;
    if (picture) {
        constexpr double margin = 12; // What fitting leaves around a picture.
        auto const image = toImage(*picture);
        auto const fitted =
            fittedImage({static_cast<double>(image.width()), static_cast<double>(image.height())},
                        {thumbnailSize.width() + margin, thumbnailSize.height() + margin});
        auto const scale = devicePixelRatioF();
        QSize const pixels(qMax(1, qRound(fitted.width * scale)), qMax(1, qRound(fitted.height * scale)));
        known.pixmap =
            QPixmap::fromImage(image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        known.pixmap.setDevicePixelRatio(scale);
    }
    updateItem(url);
}

void MiniRowsView::forgetDistant() {
    if (m_thumbnails.size() <= mostKept)
        return;
    std::unordered_set<Url> near;
    auto const [first, last] = visibleRows(height());
    for (int row = first; row < last; ++row)
        near.insert(rows()[static_cast<std::size_t>(row)].url);
    std::erase_if(m_thumbnails, [&](auto const& kept) { return !near.contains(kept.first); });
}

void MiniRowsView::paintEvent(QPaintEvent* event) {
    ItemView::paintEvent(event);
    forgetDistant();
}

bool MiniRowsView::pressInfo(QPoint position) {
    auto const entry = entryAt(position);
    if (!entry || !infoRect(rectOf(entry->url), *entry).contains(position))
        return false;
    toggleInfo(entry->url);
    return true;
}

void MiniRowsView::toggleInfo(Url const& item) {
    auto const row = rectOf(item);
    if (row.isEmpty())
        return;
    if (!m_info)
        m_info = new InfoPopover(m_platform, this);
    m_info->toggle(item, QRect(viewport()->mapToGlobal(row.topLeft()), row.size()));
}

void MiniRowsView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !pressInfo(event->pos()))
        ItemView::mousePressEvent(event);
}

void MiniRowsView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !pressInfo(event->pos()))
        ItemView::mouseDoubleClickEvent(event);
}

void MiniRowsView::mouseMoveEvent(QMouseEvent* event) {
    auto const entry = entryAt(event->pos());
    setHovered(entry ? std::optional(entry->url) : std::nullopt);
    ItemView::mouseMoveEvent(event);
}

bool MiniRowsView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Leave)
        setHovered(std::nullopt);
    return ItemView::viewportEvent(event);
}

void MiniRowsView::setHovered(std::optional<Url> url) {
    if (m_hovered == url)
        return;
    m_hovered = std::move(url);
    viewport()->update();
}

void MiniRowsView::hideEvent(QHideEvent* event) {
    ItemView::hideEvent(event);
    m_thumbnails.clear();
}

} // namespace taliro
