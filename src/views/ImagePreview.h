#pragma once

#include <QAbstractScrollArea>
#include <QImage>

#include <functional>

namespace taliro {

/// One picture, fitted into the view or zoomed into: with the wheel and Control, a double click, the keys + -
/// 0.
class ImagePreview : public QAbstractScrollArea {
    Q_OBJECT

public:
    explicit ImagePreview(QWidget* parent = nullptr);

    void clear();
    /// `fullSize`: of the picture itself, in its own pixels; empty for a drawing, which has none.
    /// A new picture is fitted; a sharper one of the same is shown at the same zoom.
    void setImage(QImage image, QSize fullSize, bool isSame);
    bool hasImage() const { return !m_image.isNull(); }

    /// What the view would need to be sharp at its zoom, in pixels.
    QSize neededPixels() const;

    void zoomBy(qreal factor, QPointF around);
    void zoomToFit();
    void zoomToFull();

Q_SIGNALS:
    /// The zoom or the view's size changed, so that more pixels than it has may be of use.
    void needsMore();

protected:
    void paintEvent(QPaintEvent*) override;
    void resizeEvent(QResizeEvent*) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    QSizeF naturalSize() const; ///< points at 100 percent
    qreal fittingScale() const;
    qreal scale() const { return m_scale > 0 ? m_scale : fittingScale(); }
    QRectF target() const;
    void updateBars();

    QImage m_image;
    QSize m_fullSize;
    qreal m_scale = 0; ///< 0: as fits
    QPoint m_grabbed;
};

} // namespace taliro
