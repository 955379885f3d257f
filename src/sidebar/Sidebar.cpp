#include "sidebar/Sidebar.h"

#include "browsing/BrowserState.h"
#include "dragdrop/FileDropTarget.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"
#include "platform/Volumes.h"
#include "sidebar/FavoritesStore.h"
#include "sidebar/Locations.h"
#include "sidebar/SidebarLabels.h"
#include "sidebar/SidebarNotices.h"
#include "sidebar/SidebarRow.h"

#include <QMenu>
#include <QPainter>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

namespace taliro {

namespace {
constexpr int padding = 8;
constexpr int sectionSpacing = 14;
} // namespace

Sidebar::Sidebar(Platform& platform, BrowserState& state, QWidget* parent)
    : QWidget(parent),
      m_platform(platform),
      m_state(state),
      m_favorites(FavoritesStore::shared()),
      m_banner(new SyncBanner),
      m_footer(new AccessFooter),
      m_refresher(platform.mainQueue, [this] { refresh(); }) {
    setAccessibleName(QStringLiteral("Sidebar"));
    auto* content = new QWidget;
    auto* sections = new QVBoxLayout(content);
    sections->setContentsMargins(padding, 10, padding, 10);
    sections->setSpacing(sectionSpacing);
    m_favoritesLayout = addSection(sections, QStringLiteral("Favorites"));
    m_locationsLayout = addSection(sections, QStringLiteral("Locations"));
    sections->addStretch();

    auto* scroller = new QScrollArea;
    scroller->setWidget(content);
    scroller->setWidgetResizable(true);
    scroller->setFrameShape(QFrame::NoFrame);
    scroller->setFocusPolicy(Qt::NoFocus);
    scroller->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroller->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(scroller, 1);
    auto* notices = new QVBoxLayout;
    notices->setContentsMargins(padding, 0, padding, 10);
    notices->addWidget(m_banner);
    notices->addWidget(m_footer);
    column->addLayout(notices);

    m_fixedRows.push_back(addRow(m_locationsLayout, 0, Locations::startupDisk()));
    if (auto const trash = Locations::trash(m_platform))
        m_fixedRows.push_back(addRow(m_locationsLayout, 1, *trash));

    connect(m_banner, &SyncBanner::enabled, this, [this] { FinderSync::enable(m_platform, m_favorites); });
    connect(m_banner, &SyncBanner::dismissed, this, [this] {
        m_platform.userDefaults.setBoolean(favoritesKeys::dismissedSyncSuggestion, true);
        refreshNotices();
    });
    connect(m_footer, &AccessFooter::settingsWanted, this,
            [this] { FinderSync::openFullDiskAccessSettings(m_platform); });
    connect(m_footer, &AccessFooter::turnedOff, this, [this] { FinderSync::turnOff(m_favorites); });

    m_refresher.dependOn(m_state.currentURL);
    m_refresher.dependOn(m_favorites.items);
    m_refresher.dependOn(m_favorites.syncWithFinder);
    m_refresher.dependOn(m_favorites.finderAccessDenied);
    m_volumesChanged = m_platform.volumes.observeChanges([this] { reloadVolumes(); });
    refresh();
}

Sidebar::~Sidebar() = default;

QVBoxLayout* Sidebar::addSection(QVBoxLayout* column, QString const& title) {
    auto* section = new QVBoxLayout;
    section->setSpacing(0);
    auto* header =
        new ThemedLabel(title, Theme::current().font(metrics::small, QFont::DemiBold), &Colors::text2);
    header->setContentsMargins(8, 0, 8, 2);
    section->addWidget(header);
    auto* rows = new QVBoxLayout;
    rows->setSpacing(0);
    section->addLayout(rows);
    column->addLayout(section);
    return rows;
}

SidebarRow* Sidebar::addRow(QVBoxLayout* layout, int index, SidebarItem const& item) {
    auto* row = new SidebarRow(this);
    row->setItem(item);
    layout->insertWidget(index, row);
    connect(row, &QAbstractButton::clicked, this, [this, row] { m_state.navigate(row->item().url); });
    attachFolderDrop(
        *row, [row] { return row->item().url; }, m_state, m_platform);
    return row;
}

void Sidebar::refresh() {
    refreshFavorites();
    refreshNotices();
    markCurrent();
}

/// Rows stay where they are and show another item, so that the keyboard stays where it is.
void Sidebar::refreshFavorites() {
    auto const& items = m_favorites.items.get();
    while (m_favoriteRows.size() > items.size()) {
        m_favoriteRows.back()->hide();
        m_favoriteRows.back()->deleteLater(); // Its own menu may be what removed it.
        m_favoriteRows.pop_back();
    }
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i < m_favoriteRows.size()) {
            m_favoriteRows[i]->setItem(items[i]);
            continue;
        }
        auto* row = addRow(m_favoritesLayout, static_cast<int>(i), items[i]);
        row->fillMenu = [this, row](QMenu& menu) {
            if (!m_favorites.syncWithFinder)
                menu.addAction(QStringLiteral("Remove from Favorites"), &menu,
                               [this, item = row->item()] { m_favorites.removeFavorite(item); });
        };
        m_favoriteRows.push_back(row);
    }
}

void Sidebar::refreshNotices() {
    bool const dismissed = m_platform.userDefaults.boolean(favoritesKeys::dismissedSyncSuggestion);
    m_banner->setShown(!m_favorites.syncWithFinder && !dismissed, isVisible());
    m_footer->setVisible(m_favorites.syncWithFinder && m_favorites.finderAccessDenied);
}

void Sidebar::reloadVolumes() {
    auto const items = Locations::volumes(m_platform);
    if (std::ranges::equal(items, m_volumeRows, {}, {}, &SidebarRow::item))
        return; // What has the keyboard, or a menu open, stays.
    for (auto* row : std::exchange(m_volumeRows, {})) {
        row->hide();
        row->deleteLater();
    }
    for (auto const& item : items) {
        auto* row = addRow(m_locationsLayout, 1 + static_cast<int>(m_volumeRows.size()), item);
        auto const eject = [this, url = item.url] { Locations::eject(m_platform, m_state, url); };
        row->setEjectable(eject);
        row->fillMenu = [eject, title = row->text()](QMenu& menu) {
            menu.addAction(QStringLiteral("Eject “%1”").arg(title), &menu, eject);
        };
        m_volumeRows.push_back(row);
    }
    markCurrent();
}

void Sidebar::markCurrent() {
    auto const& current = m_state.currentURL.get();
    for (auto const* rows : {&m_favoriteRows, &m_fixedRows, &m_volumeRows})
        for (auto* row : *rows)
            row->setCurrent(row->item().url == current);
}

void Sidebar::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), colors().sidebar);
}

void Sidebar::showEvent(QShowEvent*) {
    reloadVolumes();
}

} // namespace taliro
