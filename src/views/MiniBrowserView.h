#pragma once

#include "browsing/FolderRows.h"
#include "views/BrowserKeys.h"
#include "views/BrowserLayout.h"

class QLabel;
class QMenu;

namespace taliro {

class AppSettings;
class FavoritesStore;
class LocationButton;
class MiniRowsView;
class ToolButton;

/// The compact browser: one line to get about, and one list. Shares the browser's state with the full layout,
/// but for its search.
class MiniBrowserView : public BrowserLayout {
    Q_OBJECT

public:
    MiniBrowserView(Platform& platform, BrowserState& state, DirectoryWatcher& watcher, AppSettings& settings,
                    QWidget* parent = nullptr);

    void focusContent() override;
    MiniRowsView& list() const { return *m_list; }

protected:
    void showRows() override;
    bool contentHandlesKey(QKeyEvent const& event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* makeHeader();
    void makeCommands();
    void refreshHeader();
    RowList entries();
    std::string folderSymbol(Url const& url) const;
    void fillAncestors(QMenu& menu);
    void fillFavorites(QMenu& menu);
    void click(FileEntry const& entry);
    void doubleClick(FileEntry const& entry);
    bool step(int delta);
    void goToParent();

    FavoritesStore& m_favorites;
    FolderRows m_rows;
    BrowserKeys m_keys;
    std::optional<Url> m_listed;  ///< where the rows are from
    std::optional<Url> m_clicked; ///< what the first click of a double click was on

    ToolButton* m_back = nullptr;
    ToolButton* m_forward = nullptr;
    LocationButton* m_location = nullptr;
    MiniRowsView* m_list = nullptr;
    QLabel* m_empty = nullptr;
};

} // namespace taliro
