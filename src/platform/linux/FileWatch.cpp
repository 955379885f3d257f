#include "platform/linux/FileWatch.h"

#include <algorithm>

namespace taliro {

FileWatch::FileWatch(DirectoryEvents& events, FileManager& files, Url file, std::function<void()> onChange)
    : m_events(events),
      m_files(files),
      m_file(std::move(file)),
      m_onChange(std::move(onChange)),
      m_known(files.attributes(m_file)) {
    watchNearestFolder();
}

void FileWatch::check() {
    watchNearestFolder();
    auto known = m_files.attributes(m_file);
    if (known == m_known)
        return;
    m_known = std::move(known);
    m_onChange();
}

void FileWatch::watchNearestFolder() {
    auto folder = m_file.deletingLastPathComponent();
    while (!m_files.isDirectory(folder) && folder.path() != "/")
        folder = folder.deletingLastPathComponent();
    if (m_source && folder == m_watched)
        return;
    m_watched = folder;
    m_source.reset();
    // Of the watched folder's items, the file or the folder that it will lie in.
    auto const next = m_file.path().substr(folder.path().size() + (folder.path() == "/" ? 0 : 1));
    auto const name = next.substr(0, next.find('/'));
    auto const concerns = [name](DirectoryEvents::Changed const& changed) {
        return !changed || changed->empty() || std::ranges::find(*changed, name) != changed->end();
    };
    if (auto source = m_events.watch(folder, [this, concerns](auto const& changed) {
            if (concerns(changed))
                check();
        }))
        m_source = std::move(*source);
}

} // namespace taliro
