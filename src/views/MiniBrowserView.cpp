#include "views/MiniBrowserView.h"

#include "browsing/AncestorChain.h"
#include "browsing/RecentsStore.h"
#include "dragdrop/ItemViewDragDrop.h"
#include "platform/Platform.h"
#include "sidebar/FavoritesStore.h"
#include "views/Commands.h"
#include "views/Line.h"
#include "views/LocationButton.h"
#include "views/MiniRowsView.h"
#include "views/Names.h"
#include "views/Symbols.h"
#include "views/ToolButton.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>

namespace taliro {

namespace {
constexpr int headerHeight = 34;
} // namespace

MiniBrowserView::MiniBrowserView(Platform& platform, BrowserState& state, DirectoryWatcher& watcher,
                                 AppSettings&, QWidget* parent)
    : BrowserLayout(platform, state, watcher, parent),
      m_favorites(FavoritesStore::shared()),
      m_rows(platform, watcher),
      m_keys(platform, state) {
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(makeHeader());
    column->addWidget(new Line(Line::horizontal, this));
    m_list = new MiniRowsView(platform, state, this);
    column->addWidget(m_list, 1);
    m_empty = new QLabel(tr("Empty folder"), this);
    m_empty->setAlignment(Qt::AlignCenter);
    m_empty->setForegroundRole(QPalette::PlaceholderText);
    m_empty->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_empty->hide();
    makeCommands();
    m_refresher.dependOn(m_favorites.items);
}

QWidget* MiniBrowserView::makeHeader() {
    auto* const header = new QWidget(this);
    header->setFixedHeight(headerHeight);
    m_back = new ToolButton("chevron.left", tr("Back"), 13, header);
    m_forward = new ToolButton("chevron.right", tr("Forward"), 13, header);
    m_location = new LocationButton(header);
    auto* const favorites = new ToolButton("heart", tr("Favorites"), 15, header);
    auto const setMenu = [](auto& button, std::function<void(QMenu&)> fill) {
        auto* const menu = new QMenu(&button);
        QObject::connect(menu, &QMenu::aboutToShow, menu, [menu, fill = std::move(fill)] {
            menu->clear();
            fill(*menu);
        });
        button.setMenu(menu);
    };
    setMenu(*m_location, [this](QMenu& menu) { fillAncestors(menu); });
    setMenu(*favorites, [this](QMenu& menu) { fillFavorites(menu); });
    connect(m_back, &QToolButton::clicked, this, [this] { m_state.goBack(); });
    connect(m_forward, &QToolButton::clicked, this, [this] { m_state.goForward(); });

    auto* const row = new QHBoxLayout(header);
    row->setContentsMargins(8, 0, 8, 0);
    row->setSpacing(2);
    row->addWidget(m_back);
    row->addWidget(m_forward);
    row->addWidget(m_location, 1);
    row->addStretch();
    row->addWidget(favorites);
    return header;
}

void MiniBrowserView::makeCommands() {
    addCommand(*this, tr("Back"), QStringLiteral("["), [this] { m_state.goBack(); });
    addCommand(*this, tr("Forward"), QStringLiteral("]"), [this] { m_state.goForward(); });
    addCommand(*this, tr("Information"), QStringLiteral("I"), [this] {
        if (auto const selection = m_state.selection.get())
            m_list->toggleInfo(*selection);
    });
    connect(m_list, &ItemView::entryClicked, this, [this](FileEntry const& entry) { click(entry); });
    connect(m_list, &ItemView::entryDoubleClicked, this,
            [this](FileEntry const& entry) { doubleClick(entry); });
    attachDragDrop(*m_list,
                   {.shown = [this] { return m_state.currentURL.get().asDirectory(); },
                    .open = [this](Url const& folder) { m_state.navigate(folder); },
                    .onTargeted = {}},
                   m_state, m_platform);
}

RowList MiniBrowserView::entries() {
    auto const& location = m_state.currentURL.get();
    if (location == SmartFolders::recents())
        return RowList(m_recents.entries.get());
    return m_rows.rows(location, {{}, m_state.sortKey.get(), m_state.sortAscending.get()});
}

void MiniBrowserView::showRows() {
    auto const& location = m_state.currentURL.get();
    m_list->setRows(entries(), m_listed == location ? ItemView::Scroll::keep : ItemView::Scroll::toTop);
    m_listed = location;
    m_empty->setVisible(m_list->rows().empty());
    refreshHeader();
}

void MiniBrowserView::refreshHeader() {
    auto const& location = m_state.currentURL.get();
    m_back->setEnabled(!m_state.backStack().empty());
    m_forward->setEnabled(!m_state.forwardStack().empty());
    bool const isRecents = location == SmartFolders::recents();
    m_location->setEnabled(!isRecents);
    if (isRecents)
        m_location->setPlace("clock", tr("Recents"));
    else
        m_location->setPlace(folderSymbol(location), shownName(displayName(location)));
}

std::string MiniBrowserView::folderSymbol(Url const& url) const {
    auto const& favorites = m_favorites.items.get();
    auto const found = std::ranges::find_if(
        favorites, [&](SidebarItem const& item) { return item.url.asDirectory() == url.asDirectory(); });
    if (found != favorites.end())
        return found->symbol;
    return url.path() == "/" ? "internaldrive" : "folder";
}

void MiniBrowserView::fillAncestors(QMenu& menu) {
    for (auto const& folder : ancestorChain(m_state.currentURL.get()))
        menu.addAction(symbolIcon(folderSymbol(folder)),
                       shownName(displayName(folder)).replace(u'&', QStringLiteral("&&")), this,
                       [this, folder] { m_state.navigate(folder); });
}

void MiniBrowserView::fillFavorites(QMenu& menu) {
    for (auto const& item : m_favorites.items.get())
        menu.addAction(symbolIcon(item.symbol), shownName(item.title).replace(u'&', QStringLiteral("&&")),
                       this, [this, url = item.url] { m_state.navigate(url); });
    if (menu.isEmpty())
        menu.addAction(tr("No Favorites"))->setEnabled(false);
}

void MiniBrowserView::click(FileEntry const& entry) {
    m_clicked = entry.url;
    if (entry.isDirectory)
        m_state.navigate(entry.url);
    else
        m_state.selectSingle(entry.url);
}

void MiniBrowserView::doubleClick(FileEntry const& entry) {
    // The first click may have gone into a folder: then the second hit what lies there, which nobody meant.
    if (m_clicked == entry.url)
        m_keys.open(entry.url);
}

bool MiniBrowserView::step(int delta) {
    if (auto const next = ArrowKeyNav::step(m_list->rows(), m_state.selection.get(), delta))
        m_state.selectSingle(*next);
    return true;
}

void MiniBrowserView::goToParent() {
    auto const& location = m_state.currentURL.get();
    auto const parent = location.deletingLastPathComponent();
    if (!SmartFolders::isSmart(location) && parent.path() != location.path())
        m_state.navigate(parent);
}

bool MiniBrowserView::contentHandlesKey(QKeyEvent const& event) {
    if (auto const outcome = m_keys.handle(event); outcome != BrowserKeys::Outcome::unknown)
        return outcome == BrowserKeys::Outcome::consumed;
    switch (event.key()) {
    case Qt::Key_Up:
        return step(-1);
    case Qt::Key_Down:
        return step(1);
    case Qt::Key_Right:
        if (auto const selection = m_state.selection.get())
            m_keys.open(*selection);
        return true;
    case Qt::Key_Left:
        goToParent();
        return true;
    default:
        break;
    }
    auto const found = m_keys.typed(event, m_list->rows(), m_state.selection.get());
    if (found)
        m_state.selectSingle(*found);
    return found.has_value();
}

void MiniBrowserView::focusContent() {
    m_list->setFocus();
}

void MiniBrowserView::showEvent(QShowEvent* event) {
    BrowserLayout::showEvent(event);
    if (auto const selection = m_state.selection.get())
        m_list->reveal(*selection, ItemView::Place::nearest);
}

void MiniBrowserView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_empty->setGeometry(0, headerHeight, width(), height() - headerHeight);
}

} // namespace taliro
