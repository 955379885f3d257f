#pragma once

#include "platform/FileManager.h"

namespace taliro {

/// Folders by `getdents64`, attributes by `statx`. A large folder's attributes are read on all cores while
/// its names still come in.
class PosixFileManager : public FileManager {
public:
    std::expected<std::vector<ListedItem>, std::errc> contents(Url const& folder, Hidden hidden) override;
    std::vector<ListedItem> contents(Url const& folder, std::vector<std::string> const& names,
                                     Hidden hidden) override;
    std::optional<std::vector<std::string>> subfolders(Url const& folder, Hidden hidden) override;
    std::optional<FileAttributes> attributes(Url const& item) override;
    bool exists(Url const& item) override;
    bool isDirectory(Url const& item) override;
    bool isWritable(Url const& folder) override;
    std::expected<void, std::errc> createDirectory(Url const& folder) override;
    Url homeDirectory() override;
    std::optional<std::string> readFile(Url const& file, std::size_t limit) override;
};

} // namespace taliro
