#pragma once

#include "foundation/MainQueue.h"
#include "platform/DirectoryEvents.h"
#include "platform/FileManager.h"
#include "platform/MetadataQuery.h"
#include "platform/StandardFolders.h"
#include "platform/linux/FileWatch.h"

#include <QThreadPool>

#include <map>
#include <memory>
#include <set>
#include <stop_token>
#include <string>

namespace taliro {

/// When files were used: the desktop's lists of recently used files. When they changed: a walk through the
/// home folder in the background. Afterwards the lists and the folders of the first results are watched, and
/// the walk is repeated now and then.
class HomeMetadataQuery : public MetadataQuery {
public:
    HomeMetadataQuery(MainQueue& queue, DirectoryEvents& events, FileManager& files,
                      StandardFolders& folders);
    ~HomeMetadataQuery() override;

    void start(Definition definition, std::function<void()> onResults) override;
    void disableUpdates() override { ++m_disabled; }
    void enableUpdates() override;
    std::vector<MetadataItem> const& results() const override { return m_results; }

private:
    /// Does `work` on another thread, and what it returns on the main thread.
    void inBackground(std::function<std::function<void()>()> work);

    void watchLists();
    void readLists();

    void walk();
    void walked(std::vector<MetadataItem> const& newest, std::chrono::milliseconds taken);
    void takeWalked(std::vector<MetadataItem> newest);

    void folderChanged(std::string const& folder);
    void rescanTouched();
    void takeFolders(std::set<std::string> const& folders, std::vector<MetadataItem> const& found);

    void update();
    void watchFolders();

    MainQueue& m_queue;
    DirectoryEvents& m_events;
    FileManager& m_files;
    StandardFolders& m_folders;
    Definition m_definition;
    std::function<void()> m_onResults;
    std::string m_home;

    std::vector<MetadataItem> m_used;    ///< in the lists
    std::vector<MetadataItem> m_changed; ///< found by walking, the newest first
    std::vector<MetadataItem> m_results;
    bool m_hasResults = false;
    int m_disabled = 0;
    bool m_updatePending = false;

    std::vector<Url> m_lists;
    std::vector<std::unique_ptr<FileWatch>> m_listWatches;
    bool m_isReadingLists = false;
    bool m_listsChanged = false;
    bool m_isWalking = false;
    bool m_hasWalked = false;
    std::map<std::string, std::unique_ptr<DirectoryEvents::Source>> m_watched; ///< by folder
    std::set<std::string> m_touched;                                           ///< folders to look at again
    std::set<std::string> m_touchedDuringWalk; ///< that the walk may have seen before their change
    std::chrono::milliseconds m_rescanDelay;
    WorkItem m_rescan;
    WorkItem m_nextWalk;

    std::stop_source m_stop;
    std::shared_ptr<bool> m_self = std::make_shared<bool>(); ///< gone with this
    QThreadPool m_pool;
};

} // namespace taliro
