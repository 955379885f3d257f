#pragma once

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/transfer/Transfer.h"

#include <map>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace taliro::transfer {

/// An item as it was when it was copied: what may be removed after a move is exactly that.
struct CopiedItem {
    std::string name;
    struct stat status {};
    std::vector<CopiedItem> children;
};

/// Whether two descriptions are of the same item, not written to in between.
bool isUnchanged(struct stat const& before, struct stat const& after);

enum class Purpose {
    copy, ///< a file that is written to meanwhile is copied once more, then taken as it is
    move, ///< the source has to be removable and to stay as it is; every copied item is recorded
};

/// Copies one item, or a tree with all that is in it: plain files, folders, links as links, pipes, sockets,
/// devices. One engine a copy, since it remembers which names share a file. Stops at the first fault and
/// leaves what it has made so far to its caller.
class CopyEngine {
public:
    CopyEngine(Purpose purpose, Sink& sink) : m_purpose(purpose), m_sink(sink) {}

    /// Copies `name` in the open folder `from` as the new `copyName` in `to`.
    std::expected<CopiedItem, std::errc> copy(int from, std::string const& name, int to,
                                              std::string const& copyName);

private:
    struct Place {
        int from; ///< the folder of the source
        int to;   ///< the folder of the copy
        std::string const& name;
        std::string const& copyName;
    };
    enum class Repeat { no, yes };

    Result copyItem(Place const& place, unsigned char type, CopiedItem& item);
    Result copyFile(Place const& place, CopiedItem& item);
    Result copyOpenFile(int source, Place const& place, CopiedItem& item);
    std::expected<Repeat, std::errc> checkUnchanged(int source, int pass, CopiedItem& item) const;
    Result copyFolder(Place const& place, CopiedItem& item);
    Result copyChildren(int source, int copy, CopiedItem& item);
    Result checkRemovable(int source, Place const& place) const;
    Result copyLink(Place const& place, CopiedItem const& item);
    Result makeSpecial(Place const& place, CopiedItem const& item);
    /// True where the copy is now one more name of a file copied before.
    bool linkToEarlierCopy(Place const& place, struct stat const& status);

    Purpose const m_purpose;
    Sink& m_sink;
    int m_root = -1;                                   ///< the folder that holds the whole copy
    std::string m_path;                                ///< of the copy being made, below the root
    std::optional<std::pair<dev_t, ino_t>> m_copyRoot; ///< the copy itself, where it is a folder
    std::map<std::pair<dev_t, ino_t>, std::string> m_copiesOfLinked; ///< paths below the root
};

/// Removes `name` and all below it, also from folders that refuse writing. Links are not followed.
Result removeTree(int folder, std::string const& name);

} // namespace taliro::transfer
