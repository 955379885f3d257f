#include "views/PagesPreview.h"

#include "platform/Platform.h"
#include "platform/PreviewService.h"
#include "views/Pictures.h"
#include "views/Theme.h"

#include <QPainter>
#include <QScrollBar>
#include <QtMath>

namespace taliro {

namespace {
constexpr int margin = 12;
constexpr int gap = 10;
constexpr int widestPage = 1100;  ///< points
constexpr int pagesAround = 2;    ///< kept out of sight, above and below
constexpr int longestPage = 8192; ///< pixels
constexpr int settleTime = 120;   ///< milliseconds
} // namespace

PagesPreview::PagesPreview(Platform& platform, QWidget* parent)
    : QAbstractScrollArea(parent), m_platform(platform) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_settled.setSingleShot(true);
    connect(&m_settled, &QTimer::timeout, this, [this] { requestVisible(); });
}

void PagesPreview::clear() {
    m_document.reset();
    m_kept.clear();
    m_pages = 0;
    m_settled.stop();
    viewport()->update();
}

void PagesPreview::setDocument(Url document) {
    clear();
    m_document = std::move(document);
    verticalScrollBar()->setValue(0);
    updateBars();
    requestVisible();
}

int PagesPreview::pageWidth() const {
    return std::clamp(viewport()->width() - 2 * margin, 50, widestPage);
}

int PagesPreview::pageHeight() const {
    return std::max(1, qRound(pageWidth() * m_heightOfWidth));
}

QRect PagesPreview::pageRect(int page) const {
    auto const width = pageWidth();
    return {(viewport()->width() - width) / 2,
            margin + page * (pageHeight() + gap) - verticalScrollBar()->value(), width, pageHeight()};
}

std::pair<int, int> PagesPreview::visiblePages() const {
    auto const step = pageHeight() + gap;
    auto const top = verticalScrollBar()->value() - margin;
    auto const last = std::max(m_pages, 1) - 1;
    return {std::clamp(top / step, 0, last), std::clamp((top + viewport()->height()) / step, 0, last)};
}

void PagesPreview::updateBars() {
    auto const height = 2 * margin + std::max(m_pages, 1) * (pageHeight() + gap) - gap;
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setSingleStep(40);
    verticalScrollBar()->setRange(0, std::max(0, height - viewport()->height()));
    viewport()->update();
}

void PagesPreview::requestVisible() {
    if (!m_document)
        return;
    auto const [first, last] = visiblePages();
    std::erase_if(m_kept, [&, first = first, last = last](auto const& kept) {
        return kept.first < first - pagesAround || kept.first > last + pagesAround;
    });
    auto const width = qCeil(pageWidth() * devicePixelRatioF());
    for (int page = last; page >= first; --page) {
        auto& kept = m_kept[page];
        if (kept.drawnFor == width)
            continue;
        kept.drawnFor = width;
        kept.request = m_platform.previews.page(
            {*m_document, page, width, longestPage},
            [this, page, width](std::optional<PagePicture> const& picture) { finish(page, picture, width); });
    }
    if (m_pages > 0)
        Q_EMIT pageShown((first + last) / 2 + 1, m_pages);
}

void PagesPreview::finish(int page, std::optional<PagePicture> const& picture, int width) {
    auto& kept = m_kept[page];
    kept.drawnFor = width;
    kept.failed = !picture;
    if (picture)
        kept.image = toImage(picture->picture);
    if (!picture && page == 0 && m_pages == 0) {
        Q_EMIT failed();
        return;
    }
    if (picture && m_pages == 0) {
        m_pages = picture->pages;
        m_heightOfWidth = static_cast<qreal>(kept.image.height()) / kept.image.width();
        updateBars();
        m_settled.start(0);
    }
    viewport()->update();
}

void PagesPreview::paintEvent(QPaintEvent*) {
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), colors().sidebar);
    if (!m_document)
        return;
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    auto const [first, last] = visiblePages();
    for (int page = first; page <= last; ++page) {
        auto const place = pageRect(page);
        painter.fillRect(place.adjusted(-1, -1, 1, 1), colors().line);
        painter.fillRect(place, Qt::white);
        auto const kept = m_kept.find(page);
        if (kept == m_kept.end() || kept->second.image.isNull())
            continue;
        // A page of other proportions than the first is shown whole.
        auto const& image = kept->second.image;
        QRect target(QPoint(), image.size().scaled(place.size(), Qt::KeepAspectRatio));
        target.moveCenter(place.center());
        painter.drawImage(target, image);
    }
}

void PagesPreview::resizeEvent(QResizeEvent*) {
    updateBars();
    m_settled.start(settleTime);
}

void PagesPreview::scrollContentsBy(int, int) {
    viewport()->update();
    if (!m_settled.isActive())
        m_settled.start(settleTime / 4);
}

} // namespace taliro
