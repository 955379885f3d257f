#include "dragdrop/FileDragHost.h"

#include "dragdrop/FileDrag.h"
#include "dragdrop/FileDragMime.h"
#include "dragdrop/InAppDropLatch.h"
#include "dragdrop/ItemContextMenu.h"
#include "platform/Platform.h"

#include <QContextMenuEvent>
#include <QDrag>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QWidget>
#include <algorithm>

namespace taliro {

namespace {

constexpr int iconPoints = 48;
constexpr int fanPoints = 4;          // each further icon lies this much right of and below the one before
constexpr std::size_t mostIcons = 12; // more can't be told apart

DragEnd dragEndOf(Qt::DropAction action) {
    switch (action) {
    case Qt::CopyAction:
        return DragEnd::copied;
    case Qt::LinkAction:
        return DragEnd::linked;
    case Qt::MoveAction:
    case Qt::TargetMoveAction:
        return DragEnd::moved;
    case Qt::ActionMask:
    case Qt::IgnoreAction:
        return DragEnd::nothing;
    }
    return DragEnd::nothing;
}

} // namespace

FileDragHost::FileDragHost(QWidget& surface, Source source, Platform& platform)
    : QObject(&surface), m_surface(surface), m_source(std::move(source)), m_platform(platform) {
    surface.installEventFilter(this);
}

bool FileDragHost::eventFilter(QObject*, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return mouseDown(static_cast<QMouseEvent&>(*event), event->type() == QEvent::MouseButtonDblClick);
    case QEvent::MouseMove:
        return mouseDragged(static_cast<QMouseEvent&>(*event));
    case QEvent::MouseButtonRelease:
        return mouseUp(static_cast<QMouseEvent&>(*event));
    case QEvent::ContextMenu:
        return showMenu(static_cast<QContextMenuEvent&>(*event));
    default:
        return false;
    }
}

bool FileDragHost::mouseDown(QMouseEvent const& event, bool isSecond) {
    auto const url = m_source.urlAt(event.position().toPoint());
    if (!url)
        return false;
    if (event.button() != Qt::LeftButton)
        return m_source.onClick != nullptr;
    m_pressedUrl = url;
    m_mouseDownPoint = event.position();
    m_isDoubleClick = isSecond;
    m_dragging = false;
    return m_source.onClick != nullptr;
}

bool FileDragHost::mouseDragged(QMouseEvent const& event) {
    if (!m_mouseDownPoint || !event.buttons().testFlag(Qt::LeftButton))
        return false;
    auto const moved = event.position() - *m_mouseDownPoint;
    if (!m_dragging && std::hypot(moved.x(), moved.y()) > dragThreshold) {
        m_dragging = true;
        beginDrag(*m_pressedUrl);
    }
    return true;
}

bool FileDragHost::mouseUp(QMouseEvent const& event) {
    if (event.button() != Qt::LeftButton || !m_mouseDownPoint)
        return false;
    auto const url = *m_pressedUrl;
    auto const wasDragging = std::exchange(m_dragging, false);
    m_mouseDownPoint.reset();
    m_pressedUrl.reset();
    if (!m_source.onClick)
        return false;
    if (wasDragging)
        return true;
    // A copy: a click may destroy the surface, and this with it.
    if (m_isDoubleClick && m_source.onDoubleClick) {
        auto const onDoubleClick = m_source.onDoubleClick;
        onDoubleClick(url);
    } else {
        auto const onClick = m_source.onClick;
        onClick(url, event.modifiers());
    }
    return true;
}

bool FileDragHost::showMenu(QContextMenuEvent const& event) {
    auto const byMouse = event.reason() == QContextMenuEvent::Mouse;
    auto const url = byMouse                ? m_source.urlAt(event.pos())
                     : m_source.selectedUrl ? m_source.selectedUrl()
                                            : std::nullopt;
    if (!url)
        return false;
    auto extra = m_source.extraMenuItems ? m_source.extraMenuItems(*url) : std::vector<MenuItem>();
    makeItemContextMenu(*url, std::move(extra), m_platform, &m_surface)->popup(event.globalPos());
    return true;
}

void FileDragHost::beginDrag(Url const& url) {
    auto const leading = url;
    auto urls =
        draggedUrls(leading, m_source.urlsForDrag ? m_source.urlsForDrag(leading) : std::vector<Url>());
    auto* const drag = new QDrag(&m_surface); // Qt deletes it
    drag->setPixmap(fanOf(urls));
    drag->setHotSpot({iconPoints / 2, iconPoints / 2});
    drag->setMimeData(new FileDragMime(std::move(urls), m_platform));
    InAppDropLatch::armed = false; // by a drag of another program, whose end we don't hear of

    QPointer<FileDragHost> const alive(this);
    auto& queue = m_platform.mainQueue;
    auto const action = drag->exec(Qt::CopyAction | Qt::LinkAction | Qt::MoveAction, Qt::CopyAction);
    fileDragEnded(leading, dragEndOf(action), queue);
    if (!alive)
        return;
    // The drag took the release that would have ended the press.
    m_mouseDownPoint.reset();
    m_pressedUrl.reset();
    m_dragging = false;
}

/// The first item's icon in front, the others fanned out behind it.
QPixmap FileDragHost::fanOf(std::vector<Url> const& urls) const {
    auto const count = std::min(urls.size(), mostIcons);
    auto const side = iconPoints + fanPoints * static_cast<int>(count - 1);
    auto const ratio = m_surface.devicePixelRatioF();
    QPixmap fan(QSize(side, side) * ratio);
    fan.setDevicePixelRatio(ratio);
    fan.fill(Qt::transparent);
    if (!m_source.icon)
        return fan;
    QPainter painter(&fan);
    for (auto i = count; i-- > 0;) {
        auto const offset = fanPoints * static_cast<int>(i);
        painter.drawPixmap(QRect(offset, offset, iconPoints, iconPoints), m_source.icon(urls[i], iconPoints));
    }
    return fan;
}

} // namespace taliro
