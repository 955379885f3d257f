#pragma once

#include "foundation/Url.h"
#include "platform/DirectoryEvents.h"
#include "platform/FileManager.h"

#include <functional>
#include <memory>

namespace taliro {

/// Tells when one file changed: was written, replaced, made or removed, also where its folder isn't there
/// yet. Other files of a busy folder go unheard.
class FileWatch {
public:
    FileWatch(DirectoryEvents& events, FileManager& files, Url file, std::function<void()> onChange);

private:
    void check();
    void watchNearestFolder();

    DirectoryEvents& m_events;
    FileManager& m_files;
    Url m_file;
    std::function<void()> m_onChange;
    std::optional<FileAttributes> m_known;
    Url m_watched; ///< the file's folder or, where it isn't there, the nearest one above
    std::unique_ptr<DirectoryEvents::Source> m_source;
};

} // namespace taliro
