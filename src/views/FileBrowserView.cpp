#include "views/FileBrowserView.h"

#include "app/AppSettings.h"
#include "browsing/RecentsStore.h"
#include "dragdrop/FileDropTarget.h"
#include "dragdrop/NewFolderCoordinator.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"
#include "sidebar/Sidebar.h"
#include "views/BrowserKeys.h"
#include "views/BrowserToolbar.h"
#include "views/ColumnsView.h"
#include "views/Commands.h"
#include "views/FileListView.h"
#include "views/GoToBar.h"
#include "views/IconGridView.h"
#include "views/InspectorPane.h"
#include "views/Line.h"
#include "views/PathBar.h"
#include "views/SmartFolderLabel.h"
#include "views/Theme.h"
#include "views/ToolButton.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QTimer>
#include <QVBoxLayout>

namespace taliro {

namespace {

constexpr int sidebarWidth = 200;
constexpr int inspectorWidth = 210;
constexpr int pathRowHeight = 30;
constexpr char showInspectorKey[] = "showInspector";

template <typename Layout>
Layout* tightLayout(QWidget* widget) {
    auto* layout = new Layout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    return layout;
}

/// A label in the colour of what is read second.
class QuietLabel : public QLabel {
public:
    using QLabel::QLabel;

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setPen(colors().text2);
        painter.drawText(rect(), Qt::AlignCenter, text());
    }
};

} // namespace

FileBrowserView::FileBrowserView(Platform& platform, BrowserState& state, DirectoryWatcher& watcher,
                                 AppSettings& settings, QWidget* parent)
    : BrowserLayout(platform, state, watcher, parent),
      m_rows(platform, state, watcher, m_recents.entries),
      m_goToPath(platform, state),
      m_showInspector(platform.userDefaults.boolean(showInspectorKey, true)),
      m_pathRefresher(platform.mainQueue, [this] { refreshPathRow(); }) {
    auto* rows = tightLayout<QVBoxLayout>(this);
    rows->addWidget(buildMain(settings), 1);
    rows->addWidget(new Line(Line::horizontal, this));
    rows->addWidget(buildPathRow());
    new GoToBar(m_goToPath, this);
    buildCommands();
    observe();
}

QWidget* FileBrowserView::buildMain(AppSettings& settings) {
    auto* main = new QWidget(this);
    auto* row = tightLayout<QHBoxLayout>(main);
    auto* sidebar = new Sidebar(m_platform, m_state, main);
    sidebar->setFixedWidth(sidebarWidth);
    row->addWidget(sidebar);
    row->addWidget(new Line(Line::vertical, main));

    auto* browser = new QWidget(main);
    row->addWidget(browser, 1);
    auto* column = tightLayout<QVBoxLayout>(browser);
    m_toolbar = new BrowserToolbar(m_platform, m_state, settings, m_showInspector, browser);
    column->addWidget(m_toolbar);
    column->addWidget(new Line(Line::horizontal, browser));
    auto* content = new QWidget(browser);
    column->addWidget(content, 1);
    m_contentRow = tightLayout<QHBoxLayout>(content);

    m_inspector = new QWidget(content);
    auto* inspectorRow = tightLayout<QHBoxLayout>(m_inspector);
    inspectorRow->addWidget(new Line(Line::vertical, m_inspector));
    inspectorRow->addWidget(new InspectorPane(m_platform, m_state, m_inspector), 1);
    m_inspector->setFixedWidth(inspectorWidth);
    m_inspector->setVisible(m_showInspector.get());
    m_contentRow->addWidget(m_inspector);
    return main;
}

QWidget* FileBrowserView::buildPathRow() {
    auto* row = new QWidget(this);
    row->setFixedHeight(pathRowHeight);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(12, 4, 12, 4);
    layout->setSpacing(8);
    m_pathBar = new PathBar(row);
    m_pathBar->onNavigate = [this](Url const& url) {
        if (url.hasDirectoryPath())
            m_state.navigate(url);
        else
            m_state.selectSingle(url);
    };
    m_pathBar->onComponentMade = [this](QWidget& component, Url const& url) {
        if (url.hasDirectoryPath())
            attachFolderDrop(
                component, [url] { return url; }, m_state, m_platform);
    };
    m_smartFolder = new SmartFolderLabel(row);
    layout->addWidget(m_pathBar, 1);
    layout->addWidget(m_smartFolder, 1);
    auto* goTo = new ToolButton("arrow.right.circle", tr("Go to folder… (⌘⇧G)"), 15, row);
    connect(goTo, &QToolButton::clicked, this, [this] { openGoToPath(); });
    layout->addWidget(goTo);
    m_itemCount = new QuietLabel(row);
    m_itemCount->setFont(Theme::current().font(metrics::list));
    m_itemCount->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    layout->addWidget(m_itemCount);
    return row;
}

void FileBrowserView::buildCommands() {
    addCommand(*this, tr("New Folder"), QStringLiteral("Shift+N"), [this] {
        if (m_state.currentURL->isFile())
            NewFolderCoordinator::shared().prompt(m_state.currentURL.get());
    });
    addCommand(*this, tr("Go to Folder…"), QStringLiteral("Shift+G"), [this] { openGoToPath(); });
}

void FileBrowserView::observe() {
    m_onShowInspector = m_showInspector.observe([this](bool show) { toggleInspector(show); });
    m_refresher.dependOn(m_state.viewMode);
    m_refresher.dependOn(m_state.searchText);
    m_pathRefresher.dependOn(m_state.selection);
    connect(m_toolbar, &BrowserToolbar::focusFreed, this, [this] { focusContent(); });
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        // Keys that are nobody's are the rows'. Deferred, since focus passes through nobody on its way.
        if (!now)
            QTimer::singleShot(0, this, [this] {
                if (isVisible() && window()->isActiveWindow() && !QApplication::focusWidget())
                    focusContent();
            });
    });
}

FileBrowserView::Content FileBrowserView::wantedContent() const {
    if (m_state.currentURL.get() == SmartFolders::recents())
        return Content::list;
    switch (m_state.viewMode.get()) {
    case ViewMode::icons:
        return Content::icons;
    case ViewMode::list:
        return Content::list;
    case ViewMode::columns:
        return Content::columns;
    }
    return Content::list;
}

void FileBrowserView::showRows() {
    showContent(wantedContent());
    bool const sameLocation = m_shownLocation == m_state.currentURL.get();
    m_shownLocation = m_state.currentURL.get();
    auto const scroll = sameLocation ? ItemView::Scroll::keep : ItemView::Scroll::toTop;
    if (m_list)
        m_list->setRows(m_rows.current(), scroll);
    if (m_grid)
        m_grid->setRows(m_rows.current(), scroll);
    refreshPathRow();
}

void FileBrowserView::showContent(Content content) {
    if (m_content == content)
        return;
    m_content = content;
    bool const hadFocus = m_contentRow->parentWidget()->isAncestorOf(QApplication::focusWidget());
    for (QWidget* old :
         {static_cast<QWidget*>(m_list), static_cast<QWidget*>(m_grid), static_cast<QWidget*>(m_columns)})
        delete old;
    auto* parent = m_contentRow->parentWidget();
    QWidget* shown = nullptr;
    switch (content) {
    case Content::icons:
        shown = m_grid = new IconGridView(m_platform, m_state, parent);
        attachDragDrop(*m_grid, currentFolder(), m_state, m_platform);
        break;
    case Content::list:
        shown = m_list = new FileListView(m_platform, m_state, parent);
        attachDragDrop(*m_list, currentFolder(), m_state, m_platform);
        break;
    case Content::columns:
        shown = m_columns = new ColumnsView(m_platform, m_state, parent);
        m_columns->onRowsChanged = [this] { refreshPathRow(); };
        m_columns->onPaneMade = [this](ColumnPane& pane, std::size_t index) { attachToPane(pane, index); };
        break;
    }
    m_contentRow->insertWidget(0, shown, 1);
    shown->show();
    if (hadFocus || !QApplication::focusWidget())
        focusContent();
}

ItemViewFolder FileBrowserView::currentFolder() {
    return {.shown = [this] { return m_state.currentURL.get().asDirectory(); },
            .open = [this](Url const& folder) { m_state.navigate(folder); },
            .onTargeted = {}};
}

void FileBrowserView::attachToPane(ColumnPane& pane, std::size_t index) {
    ItemViewFolder const folder{
        .shown = [&pane] { return pane.root().asDirectory(); },
        .open = [this, index](Url const& opened) { m_columns->open(opened, index); },
        .onTargeted = [this, index](bool targeted) { m_columns->setPaneTargeted(index, targeted); }};
    attachDragDrop(pane, folder, m_state, m_platform);
}

std::size_t FileBrowserView::itemCount() {
    if (m_columns && m_columns->deepestRoot() == m_state.currentURL.get())
        return m_columns->deepestRows().size(); // Listed already.
    return m_rows.current().size();
}

void FileBrowserView::refreshPathRow() {
    auto const& location = m_state.currentURL.get();
    m_pathBar->setVisible(location.isFile());
    m_smartFolder->setVisible(!location.isFile());
    if (location.isFile())
        m_pathBar->setUrl(location);
    else
        m_smartFolder->setLocation(location, m_state.selection.get());
    m_itemCount->setText(QString::fromStdString(itemCountLabel(itemCount())));
}

void FileBrowserView::toggleInspector(bool show) {
    m_platform.userDefaults.setBoolean(showInspectorKey, show);
    m_inspector->setVisible(show);
}

void FileBrowserView::openGoToPath() {
    m_goToPath.open();
}

void FileBrowserView::focusContent() {
    if (m_list)
        m_list->setFocus();
    else if (m_grid)
        m_grid->setFocus();
    else if (m_columns)
        m_columns->setFocus();
}

bool FileBrowserView::contentHandlesKey(QKeyEvent const& event) {
    if (m_list)
        return m_list->handleKey(event);
    if (m_grid)
        return m_grid->handleKey(event);
    return m_columns && m_columns->handleKey(event);
}

} // namespace taliro
