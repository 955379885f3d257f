#include "views/FilmView.h"

#include "views/Theme.h"

#include <QMouseEvent>
#include <QPainter>

namespace taliro {

void FilmView::setImage(QImage image) {
    m_image = std::move(image);
    update();
}

void FilmView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), colors().content);
    if (m_image.isNull())
        return;
    QRectF target(QPointF(), QSizeF(m_image.size()).scaled(size(), Qt::KeepAspectRatio));
    target.moveCenter(QRectF(rect()).center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, m_image);
}

void FilmView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        Q_EMIT clicked();
}

} // namespace taliro
