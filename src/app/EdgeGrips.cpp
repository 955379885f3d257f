#include "app/EdgeGrips.h"

#include "app/FloatingWindow.h"

#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

namespace taliro {

namespace {

constexpr int inside = 4;
/// Beyond the surface, where there is a shadow to lie on.
constexpr int outside = 3;
constexpr int cornerLength = 12;

Qt::CursorShape cursorFor(Qt::Edges edges) {
    if (edges == (Qt::LeftEdge | Qt::TopEdge) || edges == (Qt::RightEdge | Qt::BottomEdge))
        return Qt::SizeFDiagCursor;
    if (edges == (Qt::RightEdge | Qt::TopEdge) || edges == (Qt::LeftEdge | Qt::BottomEdge))
        return Qt::SizeBDiagCursor;
    return edges & (Qt::LeftEdge | Qt::RightEdge) ? Qt::SizeHorCursor : Qt::SizeVerCursor;
}

} // namespace

class EdgeGrips::Grip : public QWidget {
public:
    Grip(QWidget& window, Qt::Edges edges) : QWidget(&window), m_edges(edges) { setCursor(cursorFor(edges)); }

    Qt::Edges edges() const { return m_edges; }

protected:
    void mousePressEvent(QMouseEvent* event) override {
        if (event->button() != Qt::LeftButton)
            return;
        if (!FloatingWindow::movesItself()) {
            window()->windowHandle()->startSystemResize(m_edges);
            return;
        }
        m_start = window()->geometry();
        m_pressedAt = event->globalPosition().toPoint();
    }

    void mouseMoveEvent(QMouseEvent* event) override {
        if (m_start.isNull() || !(event->buttons() & Qt::LeftButton))
            return;
        auto const by = event->globalPosition().toPoint() - m_pressedAt;
        auto const least = window()->minimumSize();
        auto const most = window()->maximumSize();
        auto const width = [&](int change) {
            return qBound(least.width(), m_start.width() + change, most.width());
        };
        auto const height = [&](int change) {
            return qBound(least.height(), m_start.height() + change, most.height());
        };
        auto frame = m_start;
        if (m_edges & Qt::LeftEdge)
            frame.setLeft(m_start.right() + 1 - width(-by.x()));
        if (m_edges & Qt::RightEdge)
            frame.setWidth(width(by.x()));
        if (m_edges & Qt::TopEdge)
            frame.setTop(m_start.bottom() + 1 - height(-by.y()));
        if (m_edges & Qt::BottomEdge)
            frame.setHeight(height(by.y()));
        window()->setGeometry(frame);
    }

    void mouseReleaseEvent(QMouseEvent*) override { m_start = {}; }

private:
    Qt::Edges m_edges;
    QRect m_start;
    QPoint m_pressedAt;
};

EdgeGrips::EdgeGrips(QWidget& window) : QObject(&window) {
    // Corners last: they lie over the ends of the edges.
    for (Qt::Edges const edges :
         {Qt::Edges(Qt::LeftEdge), Qt::Edges(Qt::RightEdge), Qt::Edges(Qt::TopEdge),
          Qt::Edges(Qt::BottomEdge), Qt::LeftEdge | Qt::TopEdge, Qt::RightEdge | Qt::TopEdge,
          Qt::LeftEdge | Qt::BottomEdge, Qt::RightEdge | Qt::BottomEdge})
        m_grips.push_back(new Grip(window, edges));
}

void EdgeGrips::lieAlong(QRect const& surface) {
    auto const outer = surface.adjusted(-outside, -outside, outside, outside);
    for (auto* grip : m_grips) {
        auto const edges = grip->edges();
        bool const isCorner =
            (edges & (Qt::LeftEdge | Qt::RightEdge)) && (edges & (Qt::TopEdge | Qt::BottomEdge));
        int const thickness = isCorner ? cornerLength : inside + outside;
        auto place = outer;
        if (edges & Qt::LeftEdge)
            place.setWidth(thickness);
        if (edges & Qt::RightEdge)
            place.setLeft(outer.right() + 1 - thickness);
        if (edges & Qt::TopEdge)
            place.setHeight(thickness);
        if (edges & Qt::BottomEdge)
            place.setTop(outer.bottom() + 1 - thickness);
        grip->setGeometry(place);
        grip->raise();
    }
}

} // namespace taliro
