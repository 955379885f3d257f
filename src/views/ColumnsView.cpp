#include "views/ColumnsView.h"

#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "views/Theme.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

namespace taliro {

namespace {

constexpr int scrollMilliseconds = 180;
constexpr int pitch = ColumnPane::paneWidth + 1; ///< a pane and the line after it

/// What the panes stand on; it draws the lines between them.
class PaneRow : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), colors().content);
        for (auto const* pane : children())
            if (auto const* widget = qobject_cast<ItemView const*>(pane))
                painter.fillRect(QRect(widget->geometry().right() + 1, 0, 1, height()), colors().line);
    }
};

} // namespace

ColumnsView::ColumnsView(Platform& platform, BrowserState& state, QWidget* parent)
    : QScrollArea(parent),
      m_platform(platform),
      m_state(state),
      m_keys(platform, state),
      m_chain(state, platform.mainQueue,
              [this](std::size_t pane) {
                  m_refresher.flush();
                  return pane < m_panes.size() ? m_panes[pane]->currentRows() : RowList();
              }),
      m_refresher(platform.mainQueue, [this] { syncPanes(); }),
      m_scrolling(horizontalScrollBar(), "value") {
    setAccessibleName(tr("Columns"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidget(new PaneRow);
    m_scrolling.setDuration(scrollMilliseconds);
    m_scrolling.setEasingCurve(QEasingCurve::OutCubic);
    m_chain.onChange = [this] { m_refresher.schedule(); };
    m_refresher.dependOn(state.searchText);
    m_refresher.schedule();
}

void ColumnsView::addPane(Url const& root) {
    auto const index = m_panes.size();
    auto* pane = new ColumnPane(m_platform, m_state, root, widget());
    m_panes.push_back(pane);
    connect(pane, &ItemView::entryClicked, this,
            [this, pane, index](FileEntry const& entry, Qt::KeyboardModifiers held) {
                if ((held & Qt::ShiftModifier) || isCommand(held))
                    m_keys.click(entry.url, held, pane->rows());
                else
                    m_chain.select(entry.url, index);
            });
    connect(pane, &ItemView::entryDoubleClicked, this,
            [this, index](FileEntry const& entry) { open(entry.url, index); });
    connect(pane, &ItemView::emptyClicked, this, [this, index] { m_chain.clearSelection(index); });
    connect(pane->model(), &QAbstractItemModel::modelReset, this, [this, pane] {
        if (onRowsChanged && pane == m_panes.back())
            onRowsChanged();
    });
    if (onPaneMade)
        onPaneMade(*pane, index);
    pane->show();
}

/// Makes the panes what the chain says, keeping those that stay.
void ColumnsView::syncPanes() {
    auto const roots = m_chain.columnRoots();
    auto const countBefore = m_panes.size();
    bool hadFocus = false;
    while (m_panes.size() > roots.size()) {
        hadFocus = hadFocus || m_panes.back()->hasFocus();
        m_panes.back()->hide();
        m_panes.back()->deleteLater(); // It may be what called.
        m_panes.pop_back();
    }
    while (m_panes.size() < roots.size())
        addPane(roots[m_panes.size()]);
    for (std::size_t i = 0; i < m_panes.size(); ++i)
        m_panes[i]->present(roots[i], m_chain.isDeepest(i) ? m_state.searchText.get() : std::string(),
                            m_chain.selectionAt(i));
    setFocusProxy(m_panes[std::min(m_chain.activeColumnIndex(), m_panes.size() - 1)]);
    if (hadFocus)
        focusProxy()->setFocus();
    layOutPanes();
    if (m_panes.size() != countBefore)
        scrollToEnd();
    if (onRowsChanged)
        onRowsChanged();
}

RowList const& ColumnsView::deepestRows() {
    m_refresher.flush();
    return m_panes.back()->currentRows();
}

void ColumnsView::layOutPanes() {
    int const height = viewport()->height();
    for (std::size_t i = 0; i < m_panes.size(); ++i)
        m_panes[i]->setGeometry(static_cast<int>(i) * pitch, 0, ColumnPane::paneWidth, height);
    widget()->resize(std::max(viewport()->width(), static_cast<int>(m_panes.size()) * pitch), height);
    widget()->update();
}

void ColumnsView::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    layOutPanes();
}

void ColumnsView::scrollToEnd() {
    auto* bar = horizontalScrollBar();
    m_scrolling.stop();
    if (!isVisible()) {
        bar->setValue(bar->maximum());
        return;
    }
    m_scrolling.setStartValue(bar->value());
    m_scrolling.setEndValue(bar->maximum());
    m_scrolling.start();
}

void ColumnsView::open(Url const& url, std::size_t pane) {
    if (url.hasDirectoryPath())
        m_chain.select(url, pane);
    else
        m_platform.workspace.open(url);
}

void ColumnsView::keyPressEvent(QKeyEvent* event) {
    event->ignore();
}

bool ColumnsView::handleKey(QKeyEvent const& event) {
    if (auto const outcome = m_keys.handle(event); outcome != BrowserKeys::Outcome::unknown)
        return outcome == BrowserKeys::Outcome::consumed;
    m_refresher.flush();
    auto const pane = m_chain.activeColumnIndex();
    int const page = std::max(1, viewport()->height() / 22 - 1);
    auto const move = [&](int delta) {
        m_chain.moveWithinColumn(pane, delta);
        return true;
    };
    auto const select = [&](bool first) {
        auto const rows = m_panes[pane]->currentRows();
        if (!rows.empty())
            m_chain.select(rows[first ? 0 : rows.size() - 1].url, pane);
        return true;
    };
    switch (event.key()) {
    case Qt::Key_Left:
        if (pane > 0)
            m_chain.clearSelection(pane);
        return true;
    case Qt::Key_Right:
        m_chain.drillRight(pane);
        return true;
    case Qt::Key_Up:
        return move(-1);
    case Qt::Key_Down:
        return move(1);
    case Qt::Key_PageUp:
        return move(-page);
    case Qt::Key_PageDown:
        return move(page);
    case Qt::Key_Home:
        return select(true);
    case Qt::Key_End:
        return select(false);
    default:
        break;
    }
    if (pane >= m_panes.size())
        return false;
    auto const found = m_keys.typed(event, m_panes[pane]->currentRows(), m_chain.selectionAt(pane));
    if (found)
        m_chain.select(*found, pane);
    return found.has_value();
}

} // namespace taliro
