#include "views/QuickLookWindow.h"

#include "platform/FileManager.h"
#include "platform/Platform.h"
#include "platform/PreviewService.h"
#include "platform/Thumbnailer.h"
#include "platform/TypeCatalog.h"
#include "platform/WindowManager.h"
#include "platform/Workspace.h"
#include "views/Drawing.h"
#include "views/ImagePreview.h"
#include "views/MediaPreview.h"
#include "views/Names.h"
#include "views/PagesPreview.h"
#include "views/Pictures.h"
#include "views/PushButton.h"
#include "views/SummaryPreview.h"
#include "views/TextPreviewPane.h"
#include "views/Theme.h"
#include "views/ToolButton.h"
#include "views/WrappedLabel.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QStackedWidget>
#include <QWindow>

namespace taliro {

namespace {

constexpr int barHeight = 34;
constexpr int border = 1;
constexpr int grip = 6; ///< points at the edges that resize the window
constexpr QSize smallest(320, 220);
constexpr QSize summarySize(560, 300);
constexpr QSize textSize(680, 720);
constexpr QSize drawingSize(560, 560);
constexpr int thumbnailPixels = 512;

/// The floating panel or the popover, whichever shows the browser.
QWidget* browserWindow() {
    for (auto* const window : QApplication::topLevelWidgets()) {
        std::string_view const name = window->metaObject()->className();
        if (window->isVisible() && (name == "taliro::PickerPanel" || name == "taliro::Popover"))
            return window;
    }
    return nullptr;
}

} // namespace

QuickLookWindow::QuickLookWindow(Platform& platform)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint), m_platform(platform) {
    setMouseTracking(true);
    setMinimumSize(smallest);
    setWindowRole(QStringLiteral("preview"));
    makeTitle();
    makeContents();
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(border, border, border, border);
    column->setSpacing(0);
    column->addWidget(m_bar);
    column->addWidget(m_contents, 1);
}

void QuickLookWindow::makeTitle() {
    auto const& theme = Theme::current();
    m_bar = new QWidget(this);
    m_bar->setFixedHeight(barHeight);
    m_bar->setMouseTracking(true);
    m_close = new ToolButton("xmark", tr("Close"), 12, m_bar);
    m_title = new WrappedLabel(theme.headline(), &Colors::text1, 1, m_bar);
    m_subtitle = new QLabel(m_bar);
    m_subtitle->setFont(theme.font(metrics::small));
    m_subtitle->setForegroundRole(QPalette::PlaceholderText);
    m_open = new PushButton(tr("Open"), PushButton::Kind::plain, m_bar);
    for (auto* const widget : {static_cast<QWidget*>(m_close), static_cast<QWidget*>(m_open)})
        widget->setFocusPolicy(Qt::NoFocus);
    for (auto* const label : {static_cast<QLabel*>(m_title), m_subtitle})
        label->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    auto* const row = new QHBoxLayout(m_bar);
    row->setContentsMargins(8, 0, 8, 0);
    row->setSpacing(8);
    row->addWidget(m_close);
    row->addWidget(m_title, 1);
    row->addWidget(m_subtitle);
    row->addWidget(m_open);
    connect(m_close, &QAbstractButton::clicked, this, [this] { orderOut(); });
    connect(m_open, &QAbstractButton::clicked, this, [this] {
        if (m_item && m_platform.workspace.open(*m_item))
            orderOut();
    });
}

void QuickLookWindow::makeContents() {
    m_contents = new QStackedWidget(this);
    m_nothing = new QWidget(m_contents);
    m_image = new ImagePreview(m_contents);
    m_pages = new PagesPreview(m_platform, m_contents);
    m_text = new TextPreviewPane(m_platform, m_contents);
    m_media = new MediaPreview(m_platform, m_contents);
    m_summary = new SummaryPreview(m_platform, m_contents);
    for (auto* const pane :
         std::initializer_list<QWidget*>{m_nothing, m_image, m_pages, m_text, m_media, m_summary})
        m_contents->addWidget(pane);
    connect(m_image, &ImagePreview::needsMore, this, [this] { requestImage(m_image->neededPixels()); });
    connect(m_pages, &PagesPreview::pageShown, this,
            [this](int page, int pages) { setSubtitle(tr("%1 of %2").arg(page).arg(pages)); });
    connect(m_text, &TextPreviewPane::described, this, &QuickLookWindow::setSubtitle);
    auto const showFacts = [this] {
        if (m_item)
            showSummary(*m_item, false);
    };
    connect(m_pages, &PagesPreview::failed, this, showFacts);
    connect(m_text, &TextPreviewPane::failed, this, showFacts);
    connect(m_media, &MediaPreview::failed, this, showFacts);
}

void QuickLookWindow::clearContents() {
    m_thumbnailRequest.cancel();
    m_imageRequest.cancel();
    m_requestedPixels = {};
    m_image->clear();
    m_pages->clear();
    m_text->clear();
    m_media->clear();
    m_summary->clear();
}

void QuickLookWindow::reloadData(std::optional<QLItem> const& item) {
    clearContents();
    m_item = item ? std::optional(item->url) : std::nullopt;
    auto const name = item ? shownName(item->title()) : QString();
    setWindowTitle(name);
    m_title->setText(name);
    setSubtitle({});
    m_open->setEnabled(item.has_value());
    if (item)
        showContents(item->url);
    else
        m_contents->setCurrentWidget(m_nothing);
}

void QuickLookWindow::setSubtitle(QString const& text) {
    m_subtitle->setText(text);
}

void QuickLookWindow::showContents(Url const& item) {
    bool const isFolder = item.hasDirectoryPath() || m_platform.fileManager.isDirectory(item);
    auto const kind = m_platform.previews.previewKind(item, isFolder);
    switch (kind) {
    case PreviewKind::image:
        showImage(item);
        break;
    case PreviewKind::pages:
        m_contents->setCurrentWidget(m_pages);
        m_pages->setDocument(item);
        break;
    case PreviewKind::text:
    case PreviewKind::markdown:
        m_contents->setCurrentWidget(m_text);
        m_text->setFile(item, kind == PreviewKind::markdown);
        break;
    case PreviewKind::folder:
    case PreviewKind::archive:
        showSummary(isFolder ? item.asDirectory() : item, true);
        break;
    case PreviewKind::sound:
    case PreviewKind::film:
        m_contents->setCurrentWidget(m_media);
        m_media->setFile(item, kind == PreviewKind::film);
        break;
    case PreviewKind::other:
        showSummary(item, false);
        break;
    }
}

void QuickLookWindow::showSummary(Url const& item, bool holdsOthers) {
    m_summary->setItem(item, holdsOthers);
    m_contents->setCurrentWidget(m_summary);
}

void QuickLookWindow::showImage(Url const& item) {
    m_contents->setCurrentWidget(m_image);
    auto const pixels = m_platform.typeCatalog.pixelSize(item);
    QSize const full(pixels.width, pixels.height);
    if (!full.isEmpty())
        setSubtitle(tr("%1 × %2").arg(full.width()).arg(full.height()));
    // The thumbnail is there at once; the picture takes its place when it is decoded.
    m_thumbnailRequest = m_platform.thumbnailer.request(
        {item, thumbnailPixels, thumbnailPixels}, [this, full](std::optional<Picture> const& picture) {
            if (picture && !m_image->hasImage())
                m_image->setImage(toImage(*picture), full, false);
        });
    auto const room = (full.isEmpty() ? drawingSize : full).boundedTo(screen()->size());
    requestImage(room.expandedTo(m_image->size()) * devicePixelRatioF());
}

void QuickLookWindow::requestImage(QSize pixels) {
    // Nothing is gained by a few more.
    if (!m_item ||
        (pixels.width() <= m_requestedPixels.width() && pixels.height() <= m_requestedPixels.height()))
        return;
    bool const isFirst = m_requestedPixels.isEmpty();
    m_requestedPixels = pixels;
    m_imageRequest = m_platform.previews.page({*m_item, 0, pixels.width(), pixels.height()},
                                              [this, isFirst](std::optional<PagePicture> const& page) {
                                                  if (page)
                                                      m_image->setImage(toImage(page->picture),
                                                                        {page->fullWidth, page->fullHeight},
                                                                        m_image->hasImage());
                                                  else if (isFirst)
                                                      showSummary(*m_item, false);
                                              });
}

void QuickLookWindow::attachToBrowserWindow() {
    auto* const browser = browserWindow();
    if (m_browser != browser) {
        if (m_browser)
            m_browser->removeEventFilter(this);
        m_browser = browser;
        if (browser)
            browser->installEventFilter(this);
        create();
        windowHandle()->setTransientParent(browser ? browser->windowHandle() : nullptr);
    }
    if (browser)
        m_browserAt = browser->pos();
    if (!isVisible())
        placeOverBrowser();
}

void QuickLookWindow::makeKeyAndOrderFront() {
    m_platform.windowManager.floatEverywhere(winId(), WindowManager::Taskbar::skipped);
    show();
    raise();
    activateWindow();
    m_platform.windowManager.focus(winId());
}

QSize QuickLookWindow::preferredSize() const {
    auto const* shown = m_contents->currentWidget();
    if (shown == m_summary || shown == m_nothing)
        return summarySize;
    if (shown == m_media)
        return m_media->sizeHint();
    if (shown != m_image)
        return textSize;
    auto const pixels = m_item ? m_platform.typeCatalog.pixelSize(*m_item) : PixelSize{};
    if (pixels.width <= 0 || pixels.height <= 0)
        return drawingSize;
    QSize const room = screen()->availableSize() * 0.66;
    auto size = QSizeF(pixels.width, pixels.height) / devicePixelRatioF();
    if (size.width() > room.width() || size.height() > room.height())
        size.scale(room, Qt::KeepAspectRatio);
    return size.toSize() + QSize(2 * border, 2 * border + barHeight);
}

void QuickLookWindow::placeOverBrowser() {
    auto const* const on = m_browser ? m_browser->screen() : screen();
    auto const room = on->availableGeometry();
    QRect frame(QPoint(), preferredSize().expandedTo(smallest).boundedTo(room.size() * 0.92));
    frame.moveCenter(room.center());
    setGeometry(frame);
}

bool QuickLookWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_browser && isVisible()) {
        if (event->type() == QEvent::Move) {
            auto const at = m_browser->pos();
            move(pos() + at - std::exchange(m_browserAt, at));
        } else if (event->type() == QEvent::Hide) {
            orderOut();
        }
    }
    return QWidget::eventFilter(watched, event);
}

void QuickLookWindow::hideEvent(QHideEvent* event) {
    clearContents();
    QWidget::hideEvent(event);
    if (m_browser && m_browser->isVisible())
        m_platform.windowManager.focus(m_browser->winId());
}

QScrollBar* QuickLookWindow::scrollBar() const {
    auto* const shown = m_contents->currentWidget();
    if (shown == m_text)
        return m_text->verticalScrollBar();
    auto* const area = qobject_cast<QAbstractScrollArea*>(shown);
    return area ? area->verticalScrollBar() : nullptr;
}

bool QuickLookWindow::scroll(QKeyEvent const& event) {
    auto* const bar = scrollBar();
    if (!bar)
        return false;
    switch (event.key()) {
    case Qt::Key_PageUp:
        bar->triggerAction(QScrollBar::SliderPageStepSub);
        return true;
    case Qt::Key_PageDown:
        bar->triggerAction(QScrollBar::SliderPageStepAdd);
        return true;
    case Qt::Key_Home:
        bar->triggerAction(QScrollBar::SliderToMinimum);
        return true;
    case Qt::Key_End:
        bar->triggerAction(QScrollBar::SliderToMaximum);
        return true;
    default:
        return false;
    }
}

bool QuickLookWindow::zoom(QKeyEvent const& event) {
    if (m_contents->currentWidget() != m_image)
        return false;
    constexpr qreal step = 1.25;
    auto const middle = QRectF(m_image->viewport()->rect()).center();
    switch (event.key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        m_image->zoomBy(step, middle);
        return true;
    case Qt::Key_Minus:
        m_image->zoomBy(1 / step, middle);
        return true;
    case Qt::Key_0:
        m_image->zoomToFit();
        return true;
    case Qt::Key_1:
        m_image->zoomToFull();
        return true;
    default:
        return false;
    }
}

bool QuickLookWindow::play(QKeyEvent const& event) {
    return m_contents->currentWidget() == m_media && m_media->handleKey(event);
}

bool QuickLookWindow::forwardToBrowser(QKeyEvent const& event) {
    bool const isArrow = event.key() >= Qt::Key_Left && event.key() <= Qt::Key_Down;
    auto* const target = m_browser ? m_browser->focusWidget() : nullptr;
    if (!isArrow || !target)
        return false;
    QKeyEvent copy(QEvent::KeyPress, event.key(), event.modifiers(), event.text(), event.isAutoRepeat());
    QApplication::sendEvent(target, &copy);
    return true;
}

void QuickLookWindow::keyPressEvent(QKeyEvent* event) {
    bool const closes = event->key() == Qt::Key_Space || event->matches(QKeySequence::Cancel) ||
                        event->matches(QKeySequence::Close);
    if (closes)
        orderOut();
    else if (event->matches(QKeySequence::Copy))
        m_text->copy();
    else if (!scroll(*event) && !zoom(*event) && !play(*event) && !forwardToBrowser(*event))
        QWidget::keyPressEvent(event);
}

Qt::Edges QuickLookWindow::edgesAt(QPoint position) const {
    Qt::Edges edges;
    edges.setFlag(Qt::LeftEdge, position.x() < grip);
    edges.setFlag(Qt::RightEdge, position.x() >= width() - grip);
    edges.setFlag(Qt::TopEdge, position.y() < grip);
    edges.setFlag(Qt::BottomEdge, position.y() >= height() - grip);
    return edges;
}

void QuickLookWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    auto const position = event->position().toPoint();
    if (auto const edges = edgesAt(position))
        windowHandle()->startSystemResize(edges);
    else if (position.y() < barHeight)
        windowHandle()->startSystemMove();
}

void QuickLookWindow::mouseMoveEvent(QMouseEvent* event) {
    auto const edges = edgesAt(event->position().toPoint());
    bool const horizontal = edges & (Qt::LeftEdge | Qt::RightEdge);
    bool const vertical = edges & (Qt::TopEdge | Qt::BottomEdge);
    if (horizontal && vertical) {
        bool const falling = edges.testFlag(Qt::LeftEdge) == edges.testFlag(Qt::TopEdge);
        setCursor(falling ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor);
    } else {
        setCursor(horizontal ? Qt::SizeHorCursor : vertical ? Qt::SizeVerCursor : Qt::ArrowCursor);
    }
}

void QuickLookWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), colors().window);
    painter.fillRect(QRect(border, barHeight, width() - 2 * border, 1), colors().line);
    strokeRounded(painter, rect(), 0, colors().controlBorder);
}

} // namespace taliro
