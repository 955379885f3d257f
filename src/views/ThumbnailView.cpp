#include "views/ThumbnailView.h"

#include "dragdrop/FileDragHost.h"
#include "platform/FileManager.h"
#include "platform/Platform.h"
#include "platform/Thumbnailer.h"
#include "views/Drawing.h"
#include "views/FileIcons.h"
#include "views/Names.h"
#include "views/Pictures.h"
#include "views/Theme.h"

#include <QPainter>
#include <QScreen>
#include <QtMath>

namespace taliro {

namespace {
constexpr int requestedPoints = 256;
constexpr int iconPoints = 96;
constexpr int largeIconPoints = 160;
constexpr int dots = 12;
constexpr int firstTurnAfter = 250; ///< milliseconds: what is quick needs no dots
constexpr int turnEvery = 80;       ///< milliseconds
} // namespace

ThumbnailView::ThumbnailView(Platform& platform, QWidget* parent) : QWidget(parent), m_platform(platform) {
    setFixedHeight(sizeHint().height());
    connect(&m_turning, &QTimer::timeout, this, [this] {
        m_turning.setInterval(turnEvery);
        m_turn = (m_turn + 1) % dots;
        update();
    });
    FileDragHost::Source source;
    source.urlAt = [this](QPoint) { return m_url; };
    new FileDragHost(*this, std::move(source), platform);
}

void ThumbnailView::setUrl(std::optional<Url> url) {
    bool const isSame = m_url == url;
    m_request.cancel();
    m_url = std::move(url);
    m_turn = -1;
    m_turning.stop();
    // What was shown of this file stays until its new picture is there.
    if (!isSame) {
        m_image = {};
        m_failed = false;
    }
    update();
    if (!m_url)
        return;
    setAccessibleName(tr("Preview of %1").arg(shownName(m_url->lastPathComponent())));
    m_isDirectory = m_url->hasDirectoryPath() || m_platform.fileManager.isDirectory(*m_url);
    if (m_isDirectory) {
        finish({});
        return;
    }
    m_turning.start(firstTurnAfter);
    auto const* main = QGuiApplication::primaryScreen();
    auto const pixels = qCeil(requestedPoints * (main ? main->devicePixelRatio() : 2.0));
    m_request = m_platform.thumbnailer.request(
        {*m_url, pixels, pixels},
        [this](std::optional<Picture> const& picture) { finish(picture ? toImage(*picture) : QImage()); });
}

void ThumbnailView::finish(QImage image) {
    m_turning.stop();
    m_image = std::move(image);
    m_failed = m_image.isNull();
    update();
}

void ThumbnailView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (!m_bare) {
        fillRounded(painter, rect(), metrics::radius, faded(colors().text1, .04));
        strokeRounded(painter, rect(), metrics::radius, colors().line, .5);
    }
    if (!m_image.isNull()) {
        drawFitted(painter, rect(), m_image);
    } else if (m_failed && m_url) {
        drawFileIcon(painter, rect(), *m_url, m_isDirectory, m_bare ? largeIconPoints : iconPoints);
    } else if (m_turn >= 0) {
        drawDots(painter);
    }
}

void ThumbnailView::drawDots(QPainter& painter) const {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.translate(QRectF(rect()).center());
    for (int i = 0; i < dots; ++i) {
        auto const age = (m_turn - i + dots) % dots;
        painter.setBrush(faded(colors().text2, 1.0 - 0.85 * age / dots));
        painter.save();
        painter.rotate(360.0 * i / dots);
        painter.drawRoundedRect(QRectF(-1, -11, 2, 5), 1, 1);
        painter.restore();
    }
}

} // namespace taliro
