#include "platform/linux/FolderSummary.h"

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/renderer/Protocol.h"

#include <algorithm>
#include <chrono>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace taliro {

namespace {

constexpr std::chrono::milliseconds reportEvery{150};
struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

class Counter {
public:
    Counter(std::function<void(ContentSummary const&)> const& update, std::stop_token stop)
        : m_update(update), m_stop(std::move(stop)) {}

    void count(std::string const& top) {
        struct stat status {};
        if (stat(top.c_str(), &status) == 0)
            m_device = status.st_dev;
        m_pending.push_back(top);
        bool isTop = true;
        while (!m_pending.empty() && !m_stop.stop_requested()) {
            auto const folder = std::move(m_pending.back());
            m_pending.pop_back();
            countFolder(folder, std::exchange(isTop, false));
        }
        if (m_stop.stop_requested())
            return;
        m_summary.finished = true;
        m_update(m_summary);
    }

private:
    void countFolder(std::string const& path, bool isTop) {
        FileDescriptor descriptor(
            open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | (isTop ? 0 : O_NOFOLLOW)));
        Directory const directory(descriptor ? fdopendir(descriptor.get()) : nullptr);
        if (!directory) {
            m_summary.damaged = true;
            return;
        }
        descriptor.release();
        while (auto const* entry = readdir(directory.get())) {
            std::string_view const name(entry->d_name);
            if (name == "." || name == ".." || m_stop.stop_requested())
                continue;
            struct stat status {};
            if (fstatat(dirfd(directory.get()), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
                continue;
            add(path, name, status);
            if (isTop && !name.starts_with('.'))
                m_summary.names.emplace_back(name);
        }
        if (isTop)
            keepFirstNames();
    }

    void add(std::string const& folder, std::string_view name, struct stat const& status) {
        if (S_ISDIR(status.st_mode)) {
            ++m_summary.folders;
            if (status.st_dev == m_device)
                m_pending.push_back(folder + "/" + std::string(name));
        } else {
            ++m_summary.files;
            m_summary.bytes += status.st_size;
        }
        auto const now = std::chrono::steady_clock::now();
        if (now - m_lastReport < reportEvery)
            return;
        m_lastReport = now;
        m_update(m_summary);
    }

    void keepFirstNames() {
        auto& names = m_summary.names;
        auto const kept = std::min(names.size(), mostNames);
        std::ranges::partial_sort(names, names.begin() + static_cast<std::ptrdiff_t>(kept));
        names.resize(kept);
    }

    std::function<void(ContentSummary const&)> const& m_update;
    std::stop_token m_stop;
    std::vector<std::string> m_pending;
    ContentSummary m_summary;
    dev_t m_device = 0;
    std::chrono::steady_clock::time_point m_lastReport = std::chrono::steady_clock::now();
};

} // namespace

void summarizeFolder(std::string const& path, std::function<void(ContentSummary const&)> const& update,
                     std::stop_token stop) {
    Counter(update, std::move(stop)).count(path);
}

} // namespace taliro
