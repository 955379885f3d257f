#include "platform/linux/HomeWalk.h"

#include "platform/Packages.h"
#include "platform/linux/Dates.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/MountTable.h"
#include "platform/linux/RawEntry.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <sched.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <unistd.h>
#include <unordered_set>

namespace taliro {

namespace {

using std::string_view_literals::operator""sv;
using Clock = std::chrono::steady_clock;

constexpr std::size_t maxDepth = 100;
constexpr std::size_t listingBytes = 32 * 1024;
constexpr std::size_t entriesBetweenChecks = 512;
constexpr int openFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW | O_NOATIME;

/// What programs make by the thousand and nobody opens.
constexpr std::array generatedFolders{"node_modules"sv, "__pycache__"sv, "lost+found"sv};
/// The mark of a folder that can be made anew at any time.
constexpr char cacheMark[] = "CACHEDIR.TAG";

/// One folder being listed, a buffer at a time.
class Listing {
public:
    explicit Listing(FileDescriptor folder) : m_folder(std::move(folder)) {}

    int descriptor() const { return m_folder.get(); }
    /// Good until the next call; none at the end.
    RawEntry const* next() {
        if (m_at == m_end) {
            auto const read = ::syscall(SYS_getdents64, m_folder.get(), m_buffer.get(), listingBytes);
            if (read <= 0)
                return nullptr;
            m_at = 0;
            m_end = static_cast<std::size_t>(read);
        }
        auto const* entry = reinterpret_cast<RawEntry const*>(m_buffer.get() + m_at);
        m_at += entry->length;
        return entry;
    }

private:
    FileDescriptor m_folder;
    std::unique_ptr<char[]> m_buffer = std::make_unique_for_overwrite<char[]>(listingBytes);
    std::size_t m_at = 0;
    std::size_t m_end = 0;
};

/// `O_NOATIME` is refused for folders of others.
FileDescriptor openFolder(int parent, char const* name) {
    int descriptor = ::openat(parent, name, openFlags);
    if (descriptor < 0 && errno == EPERM)
        descriptor = ::openat(parent, name, openFlags & ~O_NOATIME);
    return FileDescriptor(descriptor);
}

std::optional<struct statx> look(int folder, char const* name, unsigned fields) {
    struct statx status {};
    constexpr int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC;
    return ::statx(folder, name, flags, fields, &status) == 0 ? std::optional(status) : std::nullopt;
}

Date changeDate(struct statx const& status) {
    return dateFrom(status.stx_mtime.tv_sec, status.stx_mtime.tv_nsec);
}

std::uint64_t deviceOf(struct statx const& status) {
    return std::uint64_t{status.stx_dev_major} << 32 | status.stx_dev_minor;
}

bool isNewer(MetadataItem const& a, MetadataItem const& b) {
    return a.contentChanged > b.contentChanged;
}

bool isGenerated(std::string_view folderName) {
    return std::ranges::find(generatedFolders, folderName) != generatedFolders.end();
}

/// Whether it passes for one file: a folder may, too.
bool isFile(struct statx const& status, std::string_view name) {
    return S_ISREG(status.stx_mode) || (S_ISDIR(status.stx_mode) && isPackageName(name));
}

/// The newest files met, as a heap with the oldest of them on top.
class Newest {
public:
    Newest(Date since, std::size_t keep) : m_since(since), m_keep(keep) {}

    bool wants(Date changed) const {
        return changed >= m_since && (m_items.size() < m_keep || changed > m_items.front().contentChanged);
    }
    void add(std::string path, Date changed) {
        if (m_items.size() == m_keep) {
            std::ranges::pop_heap(m_items, isNewer);
            m_items.pop_back();
        }
        m_items.push_back({std::move(path), std::nullopt, changed});
        std::ranges::push_heap(m_items, isNewer);
    }
    std::vector<MetadataItem> const& items() const { return m_items; }
    std::vector<MetadataItem> takeSorted() {
        std::ranges::sort(m_items, isNewer);
        return std::move(m_items);
    }

private:
    Date m_since;
    std::size_t m_keep;
    std::vector<MetadataItem> m_items;
};

bool isNetworkFileSystem(std::string const& folder) {
    constexpr std::array<std::uint32_t, 10> types{0x6969,     0x517B,     0xFE534D42, 0xFF534D42, 0x65735546,
                                                  0x5346414F, 0x73757245, 0x00C36400, 0x01021997, 0x65735543};
    struct statfs status {};
    return ::statfs(folder.c_str(), &status) == 0 &&
           std::ranges::find(types, static_cast<std::uint32_t>(status.f_type)) != types.end();
}

/// What is mounted in `folder`. Merely to look at such a place may mean to wait for a server that sleeps.
std::vector<std::string> mountPointsIn(std::string const& folder) {
    std::error_code unresolved;
    auto const real = std::filesystem::canonical(folder, unresolved).string() + "/";
    std::ifstream file("/proc/self/mountinfo");
    std::string const table(std::istreambuf_iterator<char>(file), {});
    std::vector<std::string> points;
    for (auto const& mount : parseMounts(table))
        if (mount.point.starts_with(real))
            points.push_back(folder + "/" + mount.point.substr(real.size()));
    return points;
}

class Walker {
public:
    Walker(HomeWalk::Options const& options, std::stop_token const& stop, HomeWalk::Progress const& progress)
        : m_options(options),
          m_stop(stop),
          m_progress(progress),
          m_newest(options.changedSince, options.keep),
          m_skipped(options.leaveOut.begin(), options.leaveOut.end()) {
        for (auto& point : mountPointsIn(options.folder))
            m_skipped.insert(std::move(point));
    }

    HomeWalk::Outcome run() {
        auto const home = m_options.folder + "/."; // Followed if it is a link.
        auto const status = look(AT_FDCWD, home.c_str(), STATX_INO);
        if (status && !isNetworkFileSystem(home)) {
            m_device = deviceOf(*status);
            for (auto const& folder : m_options.first) {
                if (isLeftOut(folder))
                    continue;
                walk(folder, folder);
                m_skipped.insert(folder);
            }
            walk(home, m_options.folder);
        }
        m_outcome.isComplete = !m_stop.stop_requested();
        m_outcome.newest = m_newest.takeSorted();
        return std::move(m_outcome);
    }

private:
    struct Level {
        Listing listing;
        std::size_t pathLength; ///< of `m_path` without this folder's part
    };

    /// Whether `folder` is in a part of the home folder that is left out, or not in it at all.
    bool isLeftOut(std::string folder) const {
        if (!folder.starts_with(m_options.folder + "/"))
            return true;
        for (; folder.size() > m_options.folder.size(); folder.resize(folder.rfind('/')))
            if (m_skipped.contains(folder))
                return true;
        return false;
    }

    /// Walks through `folder`, opened as `place`.
    void walk(std::string const& place, std::string_view folder) {
        auto const status = look(AT_FDCWD, place.c_str(), STATX_INO);
        if (!status || deviceOf(*status) != m_device)
            return;
        m_path.clear();
        enter(AT_FDCWD, place.c_str(), folder);
        while (!m_levels.empty() && !shouldStop()) {
            auto const* entry = m_levels.back().listing.next();
            if (entry) {
                visit(*entry);
            } else {
                m_path.resize(m_levels.back().pathLength);
                m_levels.pop_back();
            }
        }
        m_levels.clear();
    }

    void enter(int parent, char const* name, std::string_view part) {
        auto folder = openFolder(parent, name);
        if (!folder || ::faccessat(folder.get(), cacheMark, F_OK, 0) == 0)
            return;
        ++m_outcome.folders;
        m_levels.push_back({Listing(std::move(folder)), m_path.size()});
        m_path.append(part);
    }

    void visit(RawEntry const& entry) {
        // Hidden ones, and the folder itself and the one above.
        if (entry.name[0] == '.' ||
            (entry.type != DT_REG && entry.type != DT_DIR && entry.type != DT_UNKNOWN))
            return;
        std::string_view const name = entry.name;
        auto const part = entry.type == DT_REG ? std::string() : "/" + std::string(name);
        if (entry.type != DT_REG && (isGenerated(name) || m_skipped.contains(m_path + part)))
            return;
        auto const status = look(m_levels.back().listing.descriptor(), entry.name, STATX_TYPE | STATX_MTIME);
        if (!status)
            return;
        bool const isFolder = S_ISDIR(status->stx_mode);
        if (isFile(*status, name)) {
            ++m_outcome.files;
            if (auto const changed = changeDate(*status); m_newest.wants(changed))
                m_newest.add(m_path + "/" + entry.name, changed);
        } else if (isFolder && deviceOf(*status) == m_device && m_levels.size() < maxDepth) {
            enter(m_levels.back().listing.descriptor(), entry.name, part);
        }
    }

    bool shouldStop() {
        if (++m_sinceCheck < entriesBetweenChecks)
            return false;
        m_sinceCheck = 0;
        if (auto const now = Clock::now(); m_progress && now - m_lastProgress >= m_options.progressInterval) {
            m_lastProgress = now;
            m_progress(m_newest.items());
        }
        return m_stop.stop_requested();
    }

    HomeWalk::Options const& m_options;
    std::stop_token const& m_stop;
    HomeWalk::Progress const& m_progress;
    Newest m_newest;
    std::unordered_set<std::string> m_skipped;
    HomeWalk::Outcome m_outcome;
    std::uint64_t m_device = 0;
    std::vector<Level> m_levels;
    std::string m_path; ///< of the folder being listed
    std::size_t m_sinceCheck = 0;
    Clock::time_point m_lastProgress = Clock::now();
};

} // namespace

HomeWalk::Outcome HomeWalk::run(Options const& options, std::stop_token const& stop,
                                Progress const& progress) {
    return Walker(options, stop, progress).run();
}

std::vector<MetadataItem> HomeWalk::list(std::string const& folder, Date changedSince, std::size_t keep) {
    Newest newest(changedSince, keep);
    auto opened = openFolder(AT_FDCWD, folder.c_str());
    if (!opened)
        return {};
    Listing listing(std::move(opened));
    while (auto const* entry = listing.next()) {
        std::string_view const name = entry->name;
        bool const mayBeFile = entry->type == DT_REG || entry->type == DT_UNKNOWN ||
                               (entry->type == DT_DIR && isPackageName(name));
        if (name.starts_with('.') || !mayBeFile)
            continue;
        auto const status = look(listing.descriptor(), entry->name, STATX_TYPE | STATX_MTIME);
        if (!status || !isFile(*status, name))
            continue;
        if (auto const changed = changeDate(*status); newest.wants(changed))
            newest.add(folder + "/" + entry->name, changed);
    }
    return newest.takeSorted();
}

void HomeWalk::becomeBackground() {
    // From linux/ioprio.h, which user programs don't get: the idle class, for the calling thread.
    constexpr int ioprioWhoProcess = 1;
    constexpr int ioprioIdle = 3 << 13;
    ::syscall(SYS_ioprio_set, ioprioWhoProcess, 0, ioprioIdle);
    sched_param const none{};
    ::sched_setscheduler(0, SCHED_BATCH, &none);
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), 19);
}

} // namespace taliro
