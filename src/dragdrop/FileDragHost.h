#pragma once

#include "dragdrop/MenuItem.h"
#include "foundation/Url.h"

#include <QObject>
#include <QPoint>
#include <functional>
#include <optional>
#include <vector>

class QContextMenuEvent;
class QMouseEvent;
class QWidget;

namespace taliro {

struct Platform;

/// Takes the mouse over a widget's items and tells a click from a double click from a drag, starts drags of
/// files, and offers the items' context menu. What happens beside the items is left to the widget. Owned by
/// the widget.
class FileDragHost : public QObject {
public:
    struct Source {
        std::function<std::optional<Url>(QPoint)> urlAt; ///< the item under a point of the surface
        /// On release, so that a press that becomes a drag changes no selection. Without it, presses and
        /// clicks go to the widget as well.
        std::function<void(Url const&, Qt::KeyboardModifiers)> onClick;
        std::function<void(Url const&)> onDoubleClick;
        /// What is dragged from an item; where empty, the item alone.
        std::function<std::vector<Url>(Url const&)> urlsForDrag;
        std::function<std::vector<MenuItem>(Url const&)> extraMenuItems;
        /// The item that the menu key means: the selected one. May be empty.
        std::function<std::optional<Url>()> selectedUrl;
    };

    FileDragHost(QWidget& surface, Source source, Platform& platform);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool mouseDown(QMouseEvent const& event, bool isSecond);
    bool mouseDragged(QMouseEvent const& event);
    bool mouseUp(QMouseEvent const& event);
    bool showMenu(QContextMenuEvent const& event);

    QWidget& m_surface;
    Source m_source;
    Platform& m_platform;
    std::optional<Url> m_pressedUrl;
    std::optional<QPointF> m_mouseDownPoint;
    bool m_isDoubleClick = false;
    bool m_dragging = false;
};

} // namespace taliro
