#include "Comparison.h"
#include "Samples.h"

#include "browsing/DirectoryLoader.h"
#include "browsing/Listing.h"
#include "platform/Platform.h"
#include "support/TemporaryFolder.h"

#include <QCollator>
#include <QDateTime>
#include <QDir>
#include <QMimeDatabase>

#include <gio/gio.h>

#include <array>
#include <cstdio>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace taliro::bench {

namespace {

constexpr int itemCount = 100'000;

/// What the kernel takes: every name and its attributes, unsorted and thrown away.
std::size_t bareKernel(char const* folder) {
    int const fd = ::open(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return 0;
    alignas(dirent64) static std::array<char, 256 * 1024> buffer;
    std::size_t items = 0;
    for (long length; (length = ::syscall(SYS_getdents64, fd, buffer.data(), buffer.size())) > 0;)
        for (long at = 0; at < length;) {
            auto const* entry = reinterpret_cast<dirent64 const*>(buffer.data() + at);
            at += entry->d_reclen;
            struct statx attributes;
            if (entry->d_name[0] != '.' &&
                ::statx(fd, entry->d_name, 0, STATX_BASIC_STATS | STATX_BTIME, &attributes) == 0)
                ++items;
        }
    ::close(fd);
    return items;
}

std::size_t qtDirectory(QString const& folder) {
    auto const items = QDir(folder).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot,
                                                  QDir::Name | QDir::DirsFirst | QDir::LocaleAware);
    QMimeDatabase const types;
    qint64 facts = 0;
    for (auto const& item : items)
        facts += item.size() + item.lastModified().toMSecsSinceEpoch() +
                 types.mimeTypeForFile(item.fileName(), QMimeDatabase::MatchExtension).comment().size();
    return facts ? static_cast<std::size_t>(items.size()) : 0;
}

std::size_t gioEnumeration(char const* folder) {
    GFile* const file = g_file_new_for_path(folder);
    GFileEnumerator* const found =
        g_file_enumerate_children(file,
                                  "standard::name,standard::display-name,standard::type,standard::size,"
                                  "standard::fast-content-type,time::modified",
                                  G_FILE_QUERY_INFO_NONE, nullptr, nullptr);
    std::vector<std::pair<std::string, GFileInfo*>> rows;
    while (auto* info = g_file_enumerator_next_file(found, nullptr, nullptr)) {
        auto const* type = g_file_info_get_attribute_string(info, "standard::fast-content-type");
        g_free(g_content_type_get_description(type));
        char* const key = g_utf8_collate_key_for_filename(g_file_info_get_display_name(info), -1);
        rows.emplace_back(key, info);
        g_free(key);
    }
    std::sort(rows.begin(), rows.end());
    for (auto const& row : rows)
        g_object_unref(row.second);
    g_object_unref(found);
    g_object_unref(file);
    return rows.size();
}

std::size_t qtSort(QStringList names) {
    QCollator collator;
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::vector<std::pair<QCollatorSortKey, QString>> keyed;
    keyed.reserve(static_cast<std::size_t>(names.size()));
    for (auto const& name : names)
        keyed.emplace_back(collator.sortKey(name), name);
    std::sort(keyed.begin(), keyed.end(), [](auto const& a, auto const& b) { return a.first < b.first; });
    return keyed.size();
}

std::size_t qtFilter(QStringList const& names, QString const& text) {
    return static_cast<std::size_t>(names.filter(text, Qt::CaseInsensitive).size());
}

} // namespace

bool measureListing() {
    testing::TemporaryFolder const folder;
    if (!makeSampleFiles(folder.path(), itemCount))
        return false;
    auto& platform = Platform::current();
    auto const path = folder.path().string();
    auto const url = Url::file(path, true);
    auto const entries = DirectoryLoader::list(platform, url);
    QStringList names;
    for (auto const& entry : entries)
        names.append(QString::fromStdString(entry.name()));
    Listing listing(entries);
    std::vector<FileEntry> unsorted;

    return compare(
               "open a folder of 100,000, sorted by name",
               {"ours", [&] { return DirectoryLoader::load(platform, url, "", SortKey::name, true).size(); }},
               {{"getdents64 + statx, nothing else", [&] { return bareKernel(path.c_str()); }},
                {"QDir, locale-aware, with kinds", [&] { return qtDirectory(QString::fromStdString(path)); }},
                {"GIO, collation keys, with kinds", [&] { return gioEnumeration(path.c_str()); }}}) &&
           compare("sort 100,000 entries by name",
                   {"ours", [&] { return Listing(std::move(unsorted)).rows("", SortKey::name, true).size(); },
                    [&] { unsorted = entries; }},
                   {{"QCollator, sort keys", [&] { return qtSort(names); }}}) &&
           compare("filter 100,000 rows as one types",
                   {"ours", [&] { return listing.rows("ÜBUNG 9", SortKey::name, true).size(); }},
                   {{"QStringList::filter", [&] { return qtFilter(names, QStringLiteral("übung 9")); }}});
}

} // namespace taliro::bench
