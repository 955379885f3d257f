#include "platform/linux/renderer/Renderers.h"

#include "platform/linux/ImageReading.h"

#include <chrono>
#include <memory>
#include <unordered_set>

#include <archive.h>
#include <archive_entry.h>

namespace taliro {

namespace {

constexpr std::int64_t mostEntries = 5'000'000;
constexpr std::chrono::milliseconds reportEvery{150};

using Archive = std::unique_ptr<archive, decltype(&archive_read_free)>;

std::string_view outermost(std::string_view path) {
    while (path.starts_with("./"))
        path.remove_prefix(2);
    while (path.starts_with('/'))
        path.remove_prefix(1);
    return path.substr(0, path.find('/'));
}

} // namespace

void listArchive(std::string const& path,
                 std::function<bool(SummaryReply const&, std::string_view)> const& report) {
    SummaryReply counts;
    auto const finish = [&](bool damaged) {
        counts.finished = 1;
        counts.damaged = damaged ? 1 : 0;
        counts.nameLength = 0;
        report(counts, {});
    };
    auto const file = openPlainFile(path);
    Archive const archive(archive_read_new(), &archive_read_free);
    archive_read_support_filter_all(archive.get());
    archive_read_support_format_all(archive.get());
    if (!file || archive_read_open_fd(archive.get(), file.get(), 1 << 16) != ARCHIVE_OK) {
        finish(true);
        return;
    }
    std::unordered_set<std::string> seen;
    auto lastReport = std::chrono::steady_clock::now();
    archive_entry* entry = nullptr;
    int state = archive_read_next_header(archive.get(), &entry);
    for (; state == ARCHIVE_OK || state == ARCHIVE_WARN;
         state = archive_read_next_header(archive.get(), &entry)) {
        bool const isFolder = archive_entry_filetype(entry) == AE_IFDIR;
        ++(isFolder ? counts.folders : counts.files);
        counts.bytes += isFolder ? 0 : std::max<std::int64_t>(archive_entry_size(entry), 0);
        auto const* raw = archive_entry_pathname_utf8(entry);
        if (!raw)
            raw = archive_entry_pathname(entry);
        auto const name = outermost(raw ? raw : "");
        bool const isNew = !name.empty() && name.size() < longestText && seen.size() < mostNames &&
                           seen.insert(std::string(name)).second;
        auto const now = std::chrono::steady_clock::now();
        if (isNew || now - lastReport >= reportEvery) {
            lastReport = now;
            counts.nameLength = isNew ? static_cast<std::uint32_t>(name.size()) : 0;
            if (!report(counts, isNew ? name : std::string_view()))
                return;
        }
        if (counts.files + counts.folders >= mostEntries)
            break;
    }
    finish(state != ARCHIVE_EOF);
}

} // namespace taliro
