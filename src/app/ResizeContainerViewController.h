#pragma once

#include "app/ResizeHandleNSView.h"

#include <QWidget>

namespace taliro {

/// What the popover holds: the browser, filling it, and over it a handle in each lower corner.
class ResizeContainerViewController : public QWidget {
    Q_OBJECT

public:
    explicit ResizeContainerViewController(QWidget* parent);

    void host(QWidget* view);
    void setHandlesVisible(bool visible);

Q_SIGNALS:
    void handleDragged(ResizeCorner corner, QPoint by);

protected:
    void resizeEvent(QResizeEvent*) override;

private:
    void layOut();

    QWidget* m_hosted = nullptr;
    ResizeHandleNSView* m_bottomLeftHandle;
    ResizeHandleNSView* m_bottomRightHandle;
};

} // namespace taliro
