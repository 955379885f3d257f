#pragma once

#include "browsing/FolderRows.h"
#include "foundation/Refresher.h"
#include "views/BrowserKeys.h"

#include <QWidget>

class QLabel;
class QMenu;

namespace taliro {

class AppSettings;
class FavoritesStore;
class LocationButton;
class MiniRowsView;
class RecentsStore;
class ToolButton;

/// The compact browser: one line to get about, and one list. Shares the browser's state with the full layout,
/// but for its search.
class MiniBrowserView : public QWidget {
    Q_OBJECT

public:
    MiniBrowserView(Platform& platform, BrowserState& state, DirectoryWatcher& watcher, AppSettings& settings,
                    QWidget* parent = nullptr);

    /// Gives the keyboard to the rows.
    void focusContent();
    MiniRowsView& list() const { return *m_list; }

protected:
    void showEvent(QShowEvent* event) override;
    void focusInEvent(QFocusEvent*) override { focusContent(); }
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* makeHeader();
    void makeCommands();
    void observe();
    void locationChanged(Url const& location);
    void refresh();
    void refreshHeader();
    RowList entries();
    std::string folderSymbol(Url const& url) const;
    void fillAncestors(QMenu& menu);
    void fillFavorites(QMenu& menu);
    void click(FileEntry const& entry);
    void doubleClick(FileEntry const& entry);
    bool handleKey(QKeyEvent const& event);
    bool step(int delta);
    void goToParent();

    Platform& m_platform;
    BrowserState& m_state;
    DirectoryWatcher& m_watcher;
    RecentsStore& m_recents;
    FavoritesStore& m_favorites;
    FolderRows m_rows;
    BrowserKeys m_keys;
    Refresher m_refresher;
    Subscription m_onLocation;
    std::optional<Url> m_listed;  ///< where the rows are from
    std::optional<Url> m_clicked; ///< what the first click of a double click was on

    ToolButton* m_back = nullptr;
    ToolButton* m_forward = nullptr;
    LocationButton* m_location = nullptr;
    MiniRowsView* m_list = nullptr;
    QLabel* m_empty = nullptr;
};

} // namespace taliro
