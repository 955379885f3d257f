#include "dragdrop/FileDropTarget.h"

#include "browsing/BrowserState.h"
#include "dragdrop/DropHighlight.h"
#include "dragdrop/PasteboardDropHandler.h"
#include "dragdrop/QtPasteboard.h"
#include "platform/Platform.h"

#include <QAbstractScrollArea>
#include <QCursor>
#include <QDropEvent>
#include <QScrollBar>
#include <QTimerEvent>

namespace taliro {

namespace {

constexpr int restMilliseconds = 40;
constexpr int edgeHeight = 20; // points within which a resting drag scrolls
constexpr int scrollStep = 8;  // points a rest

} // namespace

FileDropTarget::FileDropTarget(QWidget& surface, Places places, Platform& platform,
                               PasteboardDropHandler& handler)
    : QObject(&surface),
      m_surface(surface),
      m_places(std::move(places)),
      m_handler(handler),
      m_highlight(new DropHighlight(surface)),
      m_spring(platform.mainQueue) {
    surface.setAcceptDrops(true);
    surface.installEventFilter(this);
}

FileDropTarget::~FileDropTarget() {
    delete m_highlight; // which lies beside the surface, not in it
}

bool FileDropTarget::eventFilter(QObject*, QEvent* event) {
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
        return dragMoved(static_cast<QDropEvent&>(*event));
    case QEvent::DragLeave:
    case QEvent::Hide:
        dragLeft();
        return event->type() == QEvent::DragLeave;
    case QEvent::Drop:
        return dropped(static_cast<QDropEvent&>(*event));
    default:
        return false;
    }
}

bool FileDropTarget::dragMoved(QDropEvent& event) {
    // Asked for once: each look at what is carried is a question to the other program.
    if (event.type() == QEvent::DragEnter)
        m_carriesFiles = !pasteboardOf(*event.mimeData()).fileUrls().empty();
    m_resting.start(restMilliseconds, this);
    track(event.position().toPoint());
    // Entering goes on elsewhere in the surface, whatever is under the pointer first.
    if (isTarget() || event.type() == QEvent::DragEnter)
        answerWithOperation(event, m_carriesFiles);
    else
        event.ignore();
    return true;
}

void FileDropTarget::dragLeft() {
    m_resting.stop();
    leaveRow();
    setTargeted(false);
}

bool FileDropTarget::dropped(QDropEvent& event) {
    track(event.position().toPoint());
    m_resting.stop();
    std::optional<Url> target;
    if (m_row)
        target = m_spring.drop(m_places.currentFolder ? m_places.currentFolder() : m_row->folder);
    else if (isTarget())
        target = m_places.destination();
    dragLeft();
    auto const pasteboard = pasteboardOf(*event.mimeData());
    auto const operation = answerWithOperation(event, !pasteboard.fileUrls().empty());
    if (!target || !m_handler.routeDrop(pasteboard, *target, operation == DropOperation::copy))
        event.ignore();
    return true;
}

void FileDropTarget::track(QPoint position) {
    m_position = position;
    auto const row = m_places.folderRowAt ? m_places.folderRowAt(position) : std::nullopt;
    if (row && isDropTarget(row->folder)) {
        if (m_row && m_row->folder == row->folder) {
            m_row->rect = row->rect;
            showRow();
        } else {
            enterRow(*row);
        }
        return;
    }
    leaveRow();
    setTargeted(isTarget());
}

void FileDropTarget::enterRow(FolderRow const& row) {
    leaveRow();
    m_row = row;
    m_spring.enter(
        {.folder = row.folder,
         .singleStage = m_places.singleStage,
         .parentTargeting = [this](bool targeted) { setTargeted(targeted && m_places.destination); },
         .onOpen = [open = m_places.onOpen, folder = row.folder] { open(folder); },
         .onLookChanged = [this] { showRow(); }});
}

void FileDropTarget::leaveRow() {
    if (!m_row)
        return;
    m_spring.exit();
    m_row.reset();
    showRow();
}

/// Whether a drop here and now would go anywhere.
bool FileDropTarget::isTarget() const {
    return m_row || (m_places.destination && isDropTarget(m_places.destination()));
}

void FileDropTarget::setTargeted(bool targeted) {
    if (m_targeted == targeted)
        return;
    m_targeted = targeted;
    m_highlight->setFramed(targeted);
    if (m_places.onTargeted)
        m_places.onTargeted(targeted);
}

void FileDropTarget::showRow() {
    auto const blinkChanged = m_spring.blinking() != m_wasBlinking;
    m_wasBlinking = m_spring.blinking();
    m_highlight->setRow(m_row ? m_row->rect : QRect(), m_spring.fillOpacity(), m_spring.strokeOpacity(),
                        blinkChanged);
}

void FileDropTarget::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_resting.timerId())
        return QObject::timerEvent(event);
    // The surface itself may have moved under the pointer, so the last event's position won't do.
    m_position = m_surface.mapFromGlobal(QCursor::pos());
    if (!m_surface.rect().contains(m_position)) {
        leaveRow();
        setTargeted(false);
        return;
    }
    scrollAtEdges();
    track(m_position);
}

void FileDropTarget::scrollAtEdges() {
    auto* const area = qobject_cast<QAbstractScrollArea*>(m_surface.parentWidget());
    if (!area || area->viewport() != &m_surface)
        return;
    auto* const bar = area->verticalScrollBar();
    if (m_position.y() < edgeHeight)
        bar->setValue(bar->value() - scrollStep);
    else if (m_position.y() >= m_surface.height() - edgeHeight)
        bar->setValue(bar->value() + scrollStep);
}

void attachFolderDrop(QWidget& widget, std::function<Url()> folder, BrowserState& state, Platform& platform) {
    FileDropTarget::Places places;
    places.folderRowAt = [&widget, folder = std::move(folder)](QPoint) {
        return std::optional(FileDropTarget::FolderRow{folder(), widget.rect()});
    };
    places.currentFolder = [&state] { return state.currentURL.get().asDirectory(); };
    places.onOpen = [&state](Url const& opened) { state.navigate(opened); };
    places.singleStage = true;
    new FileDropTarget(widget, std::move(places), platform, PasteboardDropHandler::shared());
}

} // namespace taliro
