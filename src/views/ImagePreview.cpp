#include "views/ImagePreview.h"

#include "views/Theme.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

namespace taliro {

namespace {
constexpr qreal largestScale = 16;
constexpr qreal smallestScale = 0.02;
} // namespace

ImagePreview::ImagePreview(QWidget* parent) : QAbstractScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
}

void ImagePreview::clear() {
    m_image = {};
    m_fullSize = {};
    m_scale = 0;
    updateBars();
}

void ImagePreview::setImage(QImage image, QSize fullSize, bool isSame) {
    m_image = std::move(image);
    m_fullSize = fullSize;
    if (!isSame)
        m_scale = 0;
    updateBars();
}

QSizeF ImagePreview::naturalSize() const {
    if (m_fullSize.isEmpty())
        return QSizeF(m_image.size()) / devicePixelRatioF();
    return QSizeF(m_fullSize) / devicePixelRatioF();
}

qreal ImagePreview::fittingScale() const {
    auto const natural = naturalSize();
    if (natural.isEmpty())
        return 1;
    auto const room = QSizeF(viewport()->size());
    auto const fit = std::min(room.width() / natural.width(), room.height() / natural.height());
    // A drawing grows to any size, a small picture would only grow coarse.
    return m_fullSize.isEmpty() ? fit : std::min(fit, 1.0);
}

QRectF ImagePreview::target() const {
    QRectF target(QPointF(), naturalSize() * scale());
    auto const room = QSizeF(viewport()->size());
    auto const place = [](qreal size, qreal room, int scrolled) {
        return size <= room ? (room - size) / 2 : -scrolled;
    };
    target.moveTo(place(target.width(), room.width(), horizontalScrollBar()->value()),
                  place(target.height(), room.height(), verticalScrollBar()->value()));
    return target;
}

QSize ImagePreview::neededPixels() const {
    auto const needed = (naturalSize() * scale() * devicePixelRatioF()).toSize();
    return m_fullSize.isEmpty() ? needed : needed.boundedTo(m_fullSize);
}

void ImagePreview::updateBars() {
    auto const size = naturalSize() * scale();
    auto const room = viewport()->size();
    auto const set = [](QScrollBar& bar, qreal size, int room) {
        bar.setPageStep(room);
        bar.setSingleStep(20);
        bar.setRange(0, std::max(0, qRound(size) - room));
    };
    set(*horizontalScrollBar(), size.width(), room.width());
    set(*verticalScrollBar(), size.height(), room.height());
    viewport()->setCursor(m_scale > 0 ? Qt::OpenHandCursor : Qt::ArrowCursor);
    viewport()->update();
}

void ImagePreview::zoomBy(qreal factor, QPointF around) {
    if (m_image.isNull())
        return;
    auto const before = target();
    auto const inImage = (around - before.topLeft()) / scale();
    m_scale = std::clamp(scale() * factor, smallestScale, largestScale);
    if (factor < 1 && m_scale <= fittingScale())
        m_scale = 0;
    updateBars();
    auto const wanted = inImage * scale() - around;
    horizontalScrollBar()->setValue(qRound(wanted.x()));
    verticalScrollBar()->setValue(qRound(wanted.y()));
    Q_EMIT needsMore();
}

void ImagePreview::zoomToFit() {
    m_scale = 0;
    updateBars();
}

void ImagePreview::zoomToFull() {
    zoomBy(1 / scale(), QRectF(viewport()->rect()).center());
}

void ImagePreview::paintEvent(QPaintEvent*) {
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), colors().content);
    if (m_image.isNull())
        return;
    auto const shown = target();
    // Enlarged beyond its pixels, a picture shows them.
    bool const coarse =
        shown.width() * devicePixelRatioF() > 3.0 * m_image.width() && m_image.size() == m_fullSize;
    painter.setRenderHint(QPainter::SmoothPixmapTransform, !coarse);
    painter.drawImage(shown, m_image);
}

void ImagePreview::resizeEvent(QResizeEvent*) {
    updateBars();
    if (hasImage())
        Q_EMIT needsMore();
}

void ImagePreview::wheelEvent(QWheelEvent* event) {
    if (event->modifiers() & Qt::ControlModifier)
        zoomBy(std::pow(1.0015, event->angleDelta().y()), event->position());
    else
        QAbstractScrollArea::wheelEvent(event);
}

void ImagePreview::mousePressEvent(QMouseEvent* event) {
    m_grabbed = event->position().toPoint();
}

void ImagePreview::mouseMoveEvent(QMouseEvent* event) {
    auto const position = event->position().toPoint();
    auto const moved = position - m_grabbed;
    m_grabbed = position;
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - moved.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() - moved.y());
}

void ImagePreview::mouseDoubleClickEvent(QMouseEvent* event) {
    if (m_scale > 0)
        zoomToFit();
    else
        zoomBy(1 / scale(), event->position());
}

} // namespace taliro
