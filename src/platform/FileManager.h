#pragma once

#include "foundation/Text.h"
#include "foundation/Url.h"

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace taliro {

/// What a file system tells of one item.
struct FileAttributes {
    bool isDirectory = false; ///< a folder, or a symbolic link to one
    bool isRegular = false;   ///< a plain file, or a symbolic link to one
    bool isSymlink = false;
    std::int64_t size = 0;      ///< bytes of content; 0 for folders
    std::int64_t allocated = 0; ///< bytes taken on disk
    std::optional<Date> modified = std::nullopt;
    std::optional<Date> added =
        std::nullopt; ///< when the item came into its folder, as far as the file system knows
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    bool operator==(FileAttributes const&) const = default;
};

struct ListedItem {
    std::string name; ///< the file system's own bytes
    /// Absent where they could not be read.
    std::optional<FileAttributes> attributes = std::nullopt;
};

enum class Hidden { skip, include };

/// The file system, as far as browsing reads it. Reads block.
class FileManager {
public:
    virtual ~FileManager() = default;

    /// The items directly in `folder`, in the file system's order. Hidden are names that start with a dot and
    /// those the folder's `.hidden` file lists.
    virtual std::expected<std::vector<ListedItem>, std::errc> contents(Url const& folder, Hidden hidden) = 0;
    /// Those of `names` that are in `folder`, as `contents` tells of them.
    virtual std::vector<ListedItem> contents(Url const& folder, std::vector<std::string> const& names,
                                             Hidden hidden) = 0;
    /// Names of the folders directly in `folder`, links to folders among them; nothing where it can't be
    /// read. Reads no attributes where the listing itself tells what is a folder.
    virtual std::optional<std::vector<std::string>> subfolders(Url const& folder, Hidden hidden) = 0;
    /// Links followed; a link that leads nowhere is described itself. Nothing where the item can't be read.
    virtual std::optional<FileAttributes> attributes(Url const& item) = 0;
    /// Whether something is there, be it a link that leads nowhere.
    virtual bool exists(Url const& item) = 0;
    virtual bool isDirectory(Url const& item) = 0;
    virtual bool isWritable(Url const& folder) = 0;
    /// Makes one folder; `file_exists` where the name is taken.
    virtual std::expected<void, std::errc> createDirectory(Url const& folder) = 0;
    virtual Url homeDirectory() = 0;
    /// At most `limit` bytes from the start of a plain file; nothing where it can't be read.
    virtual std::optional<std::string> readFile(Url const& file, std::size_t limit) = 0;
};

} // namespace taliro
