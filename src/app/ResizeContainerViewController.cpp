#include "app/ResizeContainerViewController.h"

namespace taliro {

namespace {
constexpr int inset = 4;
}

ResizeContainerViewController::ResizeContainerViewController(QWidget* parent)
    : QWidget(parent),
      m_bottomLeftHandle(new ResizeHandleNSView(ResizeCorner::bottomLeft, this)),
      m_bottomRightHandle(new ResizeHandleNSView(ResizeCorner::bottomRight, this)) {
    for (auto* handle : {m_bottomLeftHandle, m_bottomRightHandle})
        connect(handle, &ResizeHandleNSView::dragged, this,
                [this, handle](QPoint by) { Q_EMIT handleDragged(handle->corner(), by); });
}

void ResizeContainerViewController::host(QWidget* view) {
    m_hosted = view;
    view->setParent(this);
    view->show();
    layOut();
}

void ResizeContainerViewController::setHandlesVisible(bool visible) {
    m_bottomLeftHandle->setVisible(visible);
    m_bottomRightHandle->setVisible(visible);
}

void ResizeContainerViewController::resizeEvent(QResizeEvent*) {
    layOut();
}

void ResizeContainerViewController::layOut() {
    if (m_hosted && m_hosted->parent() == this)
        m_hosted->setGeometry(rect());
    auto const y = height() - ResizeHandleNSView::side - inset;
    m_bottomLeftHandle->move(inset, y);
    m_bottomRightHandle->move(width() - ResizeHandleNSView::side - inset, y);
    m_bottomLeftHandle->raise();
    m_bottomRightHandle->raise();
}

} // namespace taliro
