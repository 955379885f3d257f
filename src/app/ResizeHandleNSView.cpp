#include "app/ResizeHandleNSView.h"

#include <QMouseEvent>

namespace taliro {

ResizeHandleNSView::ResizeHandleNSView(ResizeCorner corner, QWidget* parent)
    : QWidget(parent), m_corner(corner) {
    bool const right = corner == ResizeCorner::bottomRight;
    setFixedSize(side, side);
    setCursor(right ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor);
    setAccessibleName(right ? tr("Resize from the lower right") : tr("Resize from the lower left"));
}

void ResizeHandleNSView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        m_last = event->globalPosition().toPoint();
}

void ResizeHandleNSView::mouseMoveEvent(QMouseEvent* event) {
    if (!m_last)
        return;
    auto const now = event->globalPosition().toPoint();
    auto const by = now - *m_last;
    m_last = now;
    if (!by.isNull())
        Q_EMIT dragged(by);
}

void ResizeHandleNSView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        m_last.reset();
}

} // namespace taliro
