#pragma once

#include "foundation/Refresher.h"
#include "sidebar/SidebarItem.h"

#include <QWidget>

#include <functional>
#include <vector>

class QVBoxLayout;

namespace taliro {

class AccessFooter;
class BrowserState;
class FavoritesStore;
class SidebarRow;
class SyncBanner;
struct Platform;

/// The browser's left column: favorites, the startup disk, volumes and the trash, each opened by a click.
/// Below them what there is to say about mirroring the file manager's favorites.
class Sidebar : public QWidget {
    Q_OBJECT

public:
    Sidebar(Platform& platform, BrowserState& state, QWidget* parent = nullptr);
    ~Sidebar() override;

protected:
    void paintEvent(QPaintEvent*) override;
    void showEvent(QShowEvent*) override;

private:
    QVBoxLayout* addSection(QVBoxLayout* column, QString const& title);
    SidebarRow* addRow(QVBoxLayout* layout, int index, SidebarItem const& item);
    void refresh();
    void refreshFavorites();
    void refreshNotices();
    void reloadVolumes();
    void markCurrent();

    Platform& m_platform;
    BrowserState& m_state;
    FavoritesStore& m_favorites;
    std::vector<SidebarRow*> m_favoriteRows;
    std::vector<SidebarRow*> m_fixedRows;
    std::vector<SidebarRow*> m_volumeRows;
    QVBoxLayout* m_favoritesLayout = nullptr;
    QVBoxLayout* m_locationsLayout = nullptr;
    SyncBanner* m_banner;
    AccessFooter* m_footer;
    Refresher m_refresher;
    Subscription m_volumesChanged;
};

} // namespace taliro
