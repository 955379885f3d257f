#include "platform/linux/HomeMetadataQuery.h"

#include "platform/linux/Dates.h"
#include "platform/linux/HomeWalk.h"
#include "platform/linux/RecentlyUsedFile.h"
#include "platform/linux/XdgStandardFolders.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <ranges>
#include <sys/stat.h>
#include <unordered_map>
#include <unordered_set>

namespace taliro {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr char listName[] = "recently-used.xbel";
constexpr char legacyListName[] = ".recently-used.xbel";
constexpr std::size_t maxListBytes = 32 << 20;
/// What the user works with most likely lies there.
constexpr std::array firstFolders{StandardFolder::desktop,   StandardFolder::documents,
                                  StandardFolder::downloads, StandardFolder::pictures,
                                  StandardFolder::movies,    StandardFolder::music};
/// More than the user is shown, for what the caller leaves out.
constexpr std::size_t keptItems = 1000;
/// As many results' folders are watched.
constexpr std::size_t watchedResults = 100;
/// Looks at changed folders come apart by this, and by so many times what one takes.
constexpr std::chrono::milliseconds rescanDelay = 300ms;
constexpr int rescanShare = 10;
/// Walks come apart by this, and by so many times what one takes.
constexpr std::chrono::milliseconds walkInterval = 10min;
constexpr int walkShare = 200;

std::optional<Date> contentChangeDate(std::string const& path) {
    struct statx status {};
    if (::statx(AT_FDCWD, path.c_str(), AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC, STATX_MTIME, &status) != 0)
        return std::nullopt;
    return dateFrom(status.stx_mtime.tv_sec, status.stx_mtime.tv_nsec);
}

/// The lists' files below `home` that match, each with its latest use.
std::vector<MetadataItem> readUsed(FileManager& files, std::vector<Url> const& lists, std::string const& home,
                                   Date changedSince) {
    std::unordered_map<std::string, Date> lastUse;
    for (auto const& list : lists) {
        auto const bytes = files.readFile(list, maxListBytes);
        for (auto& file : bytes ? parseRecentlyUsed(*bytes) : std::vector<UsedFile>()) {
            if (!file.path.starts_with(home + "/"))
                continue;
            auto& latest = lastUse.try_emplace(std::move(file.path), file.lastUsed).first->second;
            latest = std::max(latest, file.lastUsed);
        }
    }
    std::vector<MetadataItem> items;
    for (auto const& [path, used] : lastUse)
        if (auto const changed = contentChangeDate(path); changed && *changed >= changedSince)
            items.push_back({path, used, *changed});
    return items;
}

/// Those used last first, then those changed last; the path only so that the order stays.
bool comesBefore(MetadataItem const& a, MetadataItem const& b) {
    if (a.lastUsed != b.lastUsed)
        return a.lastUsed > b.lastUsed;
    return a.contentChanged != b.contentChanged ? a.contentChanged > b.contentChanged : a.path < b.path;
}

std::chrono::milliseconds timeSince(Clock::time_point begin) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
}

std::string_view folderOf(std::string_view path) {
    return path.substr(0, path.rfind('/'));
}

} // namespace

HomeMetadataQuery::HomeMetadataQuery(MainQueue& queue, DirectoryEvents& events, FileManager& files,
                                     StandardFolders& folders)
    : m_queue(queue), m_events(events), m_files(files), m_folders(folders), m_rescanDelay(rescanDelay) {
    m_pool.setMaxThreadCount(2); // One walks while the other answers changes.
}

HomeMetadataQuery::~HomeMetadataQuery() {
    m_stop.request_stop();
    m_self.reset();
    m_pool.waitForDone();
}

void HomeMetadataQuery::inBackground(std::function<std::function<void()>()> work) {
    m_pool.start([this, &queue = m_queue, self = std::weak_ptr(m_self), work = std::move(work)] {
        HomeWalk::becomeBackground();
        queue.async([self, then = work()] {
            if (self.lock())
                then();
        });
    });
}

void HomeMetadataQuery::start(Definition definition, std::function<void()> onResults) {
    m_definition = std::move(definition);
    m_onResults = std::move(onResults);
    m_home = m_files.homeDirectory().path();
    watchLists();
    readLists();
    walk();
}

void HomeMetadataQuery::enableUpdates() {
    if (--m_disabled == 0 && std::exchange(m_updatePending, false))
        update();
}

/// The user's list, where it was once, and those of sandboxed programs, which have a data folder each.
void HomeMetadataQuery::watchLists() {
    m_lists = {userDataFolder(m_files).appending(listName),
               m_files.homeDirectory().appending(legacyListName)};
    auto const sandboxes = m_files.homeDirectory().appending(".var/app", true);
    if (auto const programs = m_files.contents(sandboxes, Hidden::skip))
        for (auto const& program : *programs)
            m_lists.push_back(
                sandboxes.appending(program.name, true).appending("data", true).appending(listName));
    for (auto const& list : m_lists)
        m_listWatches.push_back(
            std::make_unique<FileWatch>(m_events, m_files, list, [this] { readLists(); }));
}

void HomeMetadataQuery::readLists() {
    if (m_isReadingLists) {
        m_listsChanged = true;
        return;
    }
    m_isReadingLists = true;
    m_listsChanged = false;
    inBackground([this, &files = m_files, lists = m_lists, home = m_home, since = m_definition.changedSince] {
        return [this, used = readUsed(files, lists, home, since)] {
            m_isReadingLists = false;
            m_used = used;
            update();
            if (m_listsChanged)
                readLists();
        };
    });
}

void HomeMetadataQuery::walk() {
    m_isWalking = true;
    HomeWalk::Options options{.folder = m_home, .changedSince = m_definition.changedSince, .keep = keptItems};
    for (auto const folder : firstFolders)
        if (auto const url = m_folders.url(folder))
            options.first.push_back(url->path());
    for (auto const& folder : m_definition.leaveOut)
        options.leaveOut.push_back(folder.path());

    HomeWalk::Progress progress;
    if (!m_hasWalked) // Later walks have something to show already.
        progress = [this, &queue = m_queue,
                    self = std::weak_ptr(m_self)](std::vector<MetadataItem> const& newest) {
            queue.async([this, self, newest] {
                if (self.lock())
                    takeWalked(newest);
            });
        };
    inBackground([this, options = std::move(options), progress = std::move(progress),
                  stop = m_stop.get_token()] {
        auto const begin = Clock::now();
        auto outcome = HomeWalk::run(options, stop, progress);
        return
            [this, newest = std::move(outcome.newest), taken = timeSince(begin)] { walked(newest, taken); };
    });
}

void HomeMetadataQuery::walked(std::vector<MetadataItem> const& newest, std::chrono::milliseconds taken) {
    m_isWalking = false;
    m_hasWalked = true;
    takeWalked(newest);
    for (auto const& folder : std::exchange(m_touchedDuringWalk, {}))
        folderChanged(folder);
    m_nextWalk = m_queue.after(std::max(walkInterval, taken * walkShare), [this] { walk(); });
}

void HomeMetadataQuery::takeWalked(std::vector<MetadataItem> newest) {
    m_changed = std::move(newest);
    update();
}

void HomeMetadataQuery::folderChanged(std::string const& folder) {
    m_touched.insert(folder);
    if (m_isWalking)
        m_touchedDuringWalk.insert(folder);
    if (!m_rescan.isPending())
        m_rescan = m_queue.after(m_rescanDelay, [this] { rescanTouched(); });
}

void HomeMetadataQuery::rescanTouched() {
    inBackground([this, folders = std::exchange(m_touched, {}), since = m_definition.changedSince] {
        auto const begin = Clock::now();
        std::vector<MetadataItem> found;
        for (auto const& folder : folders)
            std::ranges::move(HomeWalk::list(folder, since, keptItems), std::back_inserter(found));
        return [this, folders, found = std::move(found), taken = timeSince(begin)] {
            m_rescanDelay = std::max(rescanDelay, taken * rescanShare);
            takeFolders(folders, found);
        };
    });
    readLists(); // Their files may have changed or gone.
}

void HomeMetadataQuery::takeFolders(std::set<std::string> const& folders,
                                    std::vector<MetadataItem> const& found) {
    std::erase_if(m_changed, [&](MetadataItem const& item) {
        return folders.contains(std::string(folderOf(item.path)));
    });
    m_changed.insert(m_changed.end(), found.begin(), found.end());
    if (m_changed.size() > keptItems) {
        std::ranges::partial_sort(m_changed, m_changed.begin() + keptItems, std::greater(),
                                  &MetadataItem::contentChanged);
        m_changed.resize(keptItems);
    }
    update();
}

void HomeMetadataQuery::update() {
    if (m_disabled > 0) {
        m_updatePending = true;
        return;
    }
    auto merged = m_used;
    std::unordered_set<std::string_view> used;
    for (auto const& item : m_used)
        used.insert(item.path);
    std::ranges::copy_if(m_changed, std::back_inserter(merged),
                         [&](MetadataItem const& item) { return !used.contains(item.path); });
    std::ranges::sort(merged, comesBefore);
    if (merged.size() > keptItems)
        merged.resize(keptItems);
    if (std::exchange(m_hasResults, true) && merged == m_results)
        return;
    m_results = std::move(merged);
    watchFolders();
    m_onResults();
}

/// Watches the folders of the first results and those in which new files come up most.
void HomeMetadataQuery::watchFolders() {
    std::set<std::string> wanted;
    for (auto const& item : m_results | std::views::take(watchedResults))
        wanted.emplace(folderOf(item.path));
    for (auto const folder : firstFolders)
        if (auto const url = m_folders.url(folder); url && url->path().starts_with(m_home + "/"))
            wanted.insert(url->path());
    std::erase_if(m_watched, [&](auto const& entry) { return !wanted.contains(entry.first); });
    for (auto const& folder : wanted) {
        if (m_watched.contains(folder))
            continue;
        if (auto source = m_events.watch(Url::file(folder, true),
                                         [this, folder](auto const&) { folderChanged(folder); }))
            m_watched.emplace(folder, std::move(*source));
    }
}

} // namespace taliro
