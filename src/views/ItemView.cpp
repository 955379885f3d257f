#include "views/ItemView.h"

#include "platform/Platform.h"
#include "views/Names.h"
#include "views/RowModel.h"

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>

namespace taliro {

namespace {

constexpr int scrollMilliseconds = 120;
constexpr double dragThreshold = 3; ///< points that the pointer may move in a click

} // namespace

ItemView::ItemView(Platform& platform, BrowserState& state, QString const& label, QWidget* parent)
    : QListView(parent),
      m_state(state),
      m_model(new RowModel(this)),
      m_selectionRefresher(platform.mainQueue, [this] { showSelection(); }),
      m_scrolling(verticalScrollBar(), "value") {
    setModel(m_model);
    setAccessibleName(label);
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAutoScroll(false);
    setMinimumSize(0, 0);
    m_scrolling.setDuration(scrollMilliseconds);
    m_scrolling.setEasingCurve(QEasingCurve::OutCubic);
    m_selectionRefresher.dependOn(state.selection);
    m_selectionRefresher.dependOn(state.selectedURLs);
}

RowList const& ItemView::rows() const {
    return m_model->rows();
}

void ItemView::setRows(RowList rows, Scroll scroll) {
    if (scroll == Scroll::keep && rows.isSameAs(this->rows()))
        return;
    auto const topRow = rowsBetween(verticalOffset(), verticalOffset()).first;
    std::optional<Url> top;
    int shift = 0;
    if (scroll == Scroll::keep && verticalOffset() > 0 && topRow < rowCount()) {
        top = this->rows()[static_cast<std::size_t>(topRow)].url;
        shift = verticalOffset() - cellRect(topRow).top();
    }
    bool const wasScrolling = m_scrolling.state() == QPropertyAnimation::Running;
    m_scrolling.stop();
    m_model->setRows(std::move(rows));
    doItemsLayout();
    auto const found = top ? this->rows().indexOf(*top, static_cast<std::size_t>(topRow)) : std::nullopt;
    if (found)
        verticalScrollBar()->setValue(cellRect(static_cast<int>(*found)).top() + shift);
    else if (scroll == Scroll::toTop)
        verticalScrollBar()->setValue(0);
    if (wasScrolling)
        m_shownSelection.reset(); // It was on its way into sight.
    showSelection();
}

std::optional<FileEntry> ItemView::entryAt(QPoint position) const {
    int const row = rowAt(position + QPoint(0, verticalOffset()));
    return row < 0 ? std::nullopt : std::optional(rows()[static_cast<std::size_t>(row)]);
}

QRect ItemView::rectOf(Url const& url) const {
    auto const row = rows().indexOf(url, m_rowGuess);
    if (!row)
        return {};
    m_rowGuess = *row;
    return cellRect(static_cast<int>(*row)).translated(0, -verticalOffset());
}

std::pair<int, int> ItemView::visibleRows(int beyond) const {
    return rowsBetween(verticalOffset() - beyond, verticalOffset() + viewport()->height() + beyond);
}

void ItemView::updateItem(Url const& url) {
    auto const [first, last] = visibleRows();
    for (int row = first; row < last; ++row)
        if (rows()[static_cast<std::size_t>(row)].url == url)
            viewport()->update(cellRect(row).translated(0, -verticalOffset()));
}

void ItemView::reveal(Url const& url, Place place) {
    auto const cell = rectOf(url);
    if (cell.isNull())
        return;
    int const top = cell.top() + verticalOffset();
    int const height = viewport()->height();
    int target = verticalOffset();
    if (place == Place::centre)
        target = top + cell.height() / 2 - height / 2;
    else if (cell.top() < 0)
        target = top;
    else if (cell.bottom() >= height)
        target = top + cell.height() - height;
    target = std::clamp(target, 0, verticalScrollBar()->maximum());
    m_scrolling.stop();
    if (target == verticalOffset())
        return;
    if (!isVisible()) {
        verticalScrollBar()->setValue(target);
        return;
    }
    m_scrolling.setStartValue(verticalOffset());
    m_scrolling.setEndValue(target);
    m_scrolling.start();
}

void ItemView::showSelection() {
    syncSelectionModel();
    viewport()->update();
    auto const& selection = m_state.selection.get();
    if (!selection) {
        m_shownSelection.reset();
    } else if (selection != m_shownSelection && !rectOf(*selection).isNull()) { // Else when its row comes.
        m_shownSelection = selection;
        revealSelection(*selection);
    }
}

std::optional<Url> const& ItemView::alsoSelected() const {
    static std::optional<Url> const none;
    return none;
}

bool ItemView::isSelected(Url const& url) const {
    return m_state.selectedURLs->contains(url) || alsoSelected() == url;
}

/// Tells assistive tools what is selected.
void ItemView::syncSelectionModel() {
    auto const index = [this](std::size_t row) { return m_model->index(static_cast<int>(row)); };
    auto const& selected = m_state.selectedURLs.get();
    auto const& primary = m_state.selection.get();
    QItemSelection chosen;
    auto const choose = [&](Url const& url) {
        if (auto const row = rows().indexOf(url, m_rowGuess)) {
            m_rowGuess = *row;
            chosen.merge(QItemSelection(index(*row), index(*row)), QItemSelectionModel::Select);
        }
    };
    if (selected.size() <= 1) {
        std::ranges::for_each(selected, choose);
        if (alsoSelected())
            choose(*alsoSelected());
    } else {
        for (std::size_t row = 0; row < rows().size(); ++row) {
            auto const first = row;
            while (row < rows().size() && isSelected(rows()[row].url))
                ++row;
            if (row > first)
                chosen.select(index(first), index(row - 1));
        }
    }
    selectionModel()->select(chosen, QItemSelectionModel::ClearAndSelect);
    auto const current = primary ? rows().indexOf(*primary, m_rowGuess) : std::nullopt;
    selectionModel()->setCurrentIndex(current ? index(*current) : QModelIndex(),
                                      QItemSelectionModel::NoUpdate);
}

QRect ItemView::visualRect(QModelIndex const& index) const {
    return index.isValid() ? cellRect(index.row()).translated(0, -verticalOffset()) : QRect();
}

QModelIndex ItemView::indexAt(QPoint const& position) const {
    return m_model->index(rowAt(position + QPoint(0, verticalOffset())));
}

void ItemView::scrollTo(QModelIndex const& index, ScrollHint) {
    if (index.isValid())
        reveal(rows()[static_cast<std::size_t>(index.row())].url, Place::nearest);
}

void ItemView::doItemsLayout() {
    QAbstractItemView::doItemsLayout(); // Skips the list view's own, which visits every row.
}

void ItemView::updateGeometries() {
    auto* bar = verticalScrollBar();
    bar->setRange(0, std::max(0, contentHeight() - viewport()->height()));
    bar->setPageStep(viewport()->height());
    bar->setSingleStep(scrollStep());
}

void ItemView::scrollContentsBy(int, int dy) {
    viewport()->scroll(0, dy);
}

int ItemView::verticalOffset() const {
    return verticalScrollBar()->value();
}

QRegion ItemView::visualRegionForSelection(QItemSelection const&) const {
    return viewport()->rect();
}

void ItemView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.fillRect(event->rect(), colors().*ground());
    painter.setRenderHint(QPainter::Antialiasing);
    auto const [first, last] =
        rowsBetween(event->rect().top() + verticalOffset(), event->rect().bottom() + verticalOffset());
    for (int row = first; row < last; ++row) {
        auto const& entry = rows()[static_cast<std::size_t>(row)];
        paintCell(painter, cellRect(row).translated(0, -verticalOffset()), entry, isSelected(entry.url));
    }
}

void ItemView::press(QMouseEvent const& event, int clicks) {
    if (event.button() == Qt::LeftButton)
        m_press = Press{entryAt(event.pos()), event.pos(), clicks, false};
}

void ItemView::mousePressEvent(QMouseEvent* event) {
    press(*event, 1);
}

void ItemView::mouseDoubleClickEvent(QMouseEvent* event) {
    press(*event, 2);
}

void ItemView::mouseMoveEvent(QMouseEvent* event) {
    if (!m_press || m_press->dragged || !m_press->entry || !(event->buttons() & Qt::LeftButton))
        return;
    auto const moved = QPointF(event->pos() - m_press->position);
    if (std::hypot(moved.x(), moved.y()) <= dragThreshold)
        return;
    m_press->dragged = true;
    auto const press = *m_press; // The drag runs an event loop.
    Q_EMIT dragStarted(*press.entry, press.position);
}

void ItemView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !m_press)
        return;
    auto const press = *std::exchange(m_press, std::nullopt);
    if (press.dragged)
        return;
    if (!press.entry)
        Q_EMIT emptyClicked();
    else if (press.clicks == 1)
        Q_EMIT entryClicked(*press.entry, event->modifiers());
    else
        Q_EMIT entryDoubleClicked(*press.entry);
}

void ItemView::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() != QContextMenuEvent::Keyboard) {
        Q_EMIT menuRequested(entryAt(viewport()->mapFromGlobal(event->globalPos())), event->globalPos());
        return;
    }
    auto const& selection = m_state.selection.get();
    auto const row = selection ? rows().indexOf(*selection, m_rowGuess) : std::nullopt;
    auto const cell = row ? rectOf(*selection) : QRect(viewport()->rect().center(), QSize(1, 1));
    Q_EMIT menuRequested(row ? std::optional(rows()[*row]) : std::nullopt,
                         viewport()->mapToGlobal(cell.center()));
}

void ItemView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F10 &&
        event->modifiers() == Qt::ShiftModifier) { // Qt knows the Menu key only.
        QContextMenuEvent menu(QContextMenuEvent::Keyboard, QPoint(), QPoint());
        return contextMenuEvent(&menu);
    }
    event->ignore(); // Other keys are the whole browser's.
}

bool ItemView::viewportEvent(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QListView::viewportEvent(event);
    auto const* help = static_cast<QHelpEvent*>(event);
    auto const entry = entryAt(help->pos());
    if (auto const cell = entry ? rectOf(entry->url) : QRect(); entry && isCut(cell, *entry))
        QToolTip::showText(help->globalPos(), shownName(*entry), viewport(), cell);
    else
        QToolTip::hideText();
    return true;
}

} // namespace taliro
