#pragma once

#include "browsing/GoToPath.h"
#include "browsing/Rows.h"
#include "dragdrop/ItemViewDragDrop.h"
#include "views/BrowserLayout.h"

#include <QPointer>

class QHBoxLayout;
class QLabel;

namespace taliro {

class AppSettings;
class BrowserToolbar;
class ColumnPane;
class ColumnsView;
class FileListView;
class IconGridView;
class PathBar;
class SmartFolderLabel;

/// The full browser: sidebar, toolbar, the current folder in the current view mode, inspector and path bar.
class FileBrowserView : public BrowserLayout {
public:
    FileBrowserView(Platform& platform, BrowserState& state, DirectoryWatcher& watcher, AppSettings& settings,
                    QWidget* parent = nullptr);

    void openGoToPath();
    void focusContent() override;

protected:
    void showRows() override;
    bool contentHandlesKey(QKeyEvent const& event) override;

private:
    enum class Content { icons, list, columns };

    QWidget* buildMain(AppSettings& settings);
    QWidget* buildPathRow();
    void buildCommands();
    void observe();
    Content wantedContent() const;
    void showContent(Content content);
    ItemViewFolder currentFolder();
    void attachToPane(ColumnPane& pane, std::size_t index);
    void refreshPathRow();
    void toggleInspector(bool show);
    std::size_t itemCount();

    Rows m_rows;
    GoToPath m_goToPath;
    Published<bool> m_showInspector;
    Refresher m_pathRefresher;
    Subscription m_onShowInspector;

    BrowserToolbar* m_toolbar = nullptr;
    QWidget* m_inspector = nullptr;
    QHBoxLayout* m_contentRow = nullptr;
    std::optional<Url> m_shownLocation;
    std::optional<Content> m_content; ///< which of the following there is
    QPointer<FileListView> m_list;
    QPointer<IconGridView> m_grid;
    QPointer<ColumnsView> m_columns;
    PathBar* m_pathBar = nullptr;
    SmartFolderLabel* m_smartFolder = nullptr;
    QLabel* m_itemCount = nullptr;
};

} // namespace taliro
