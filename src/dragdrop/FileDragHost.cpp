#include "dragdrop/FileDragHost.h"

#include "dragdrop/FileDrag.h"
#include "dragdrop/FileDragSession.h"
#include "dragdrop/ItemContextMenu.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QWidget>
#include <cmath>
#include <utility>

namespace taliro {

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
        auto const& url = *m_pressedUrl;
        startFileDrag(m_surface, url, m_source.urlsForDrag ? m_source.urlsForDrag(url) : std::vector<Url>(),
                      m_platform);
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

} // namespace taliro
