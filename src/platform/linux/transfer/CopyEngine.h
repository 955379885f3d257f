#pragma once

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/transfer/Transfer.h"

#include <map>
#include <mutex>
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
/// leaves what it has made so far to its caller. Many files of one folder are copied on two threads; the sink
/// is told from both, but never at once.
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
    struct Entry {
        std::string name;
        unsigned char type; ///< as `readdir` tells it
    };
    enum class Repeat { no, yes };
    /// Tells the caller's sink from one thread at a time.
    class SharedSink : public Sink {
    public:
        explicit SharedSink(Sink& sink) : m_sink(sink) {}
        void began(std::string_view name) override;
        bool advance(std::int64_t bytes) override;

    private:
        Sink& m_sink;
        std::mutex m_mutex;
    };

    Result copyItem(Place const& place, unsigned char type, CopiedItem& item);
    Result copyFile(Place const& place, CopiedItem& item);
    Result copyOpenFile(int source, Place const& place, CopiedItem& item);
    std::expected<Repeat, std::errc> checkUnchanged(int source, int pass, CopiedItem& item) const;
    Result copyFolder(Place const& place, CopiedItem& item);
    Result copyChildren(int source, int copy, CopiedItem& item);
    /// Plain files first, then the folders and what else there is.
    Result copyEntries(std::vector<Entry> entries, int source, int copy, CopiedItem& item);
    Result checkRemovable(int source, Place const& place) const;
    Result copyLink(Place const& place, CopiedItem const& item);
    Result makeSpecial(Place const& place, CopiedItem const& item);
    /// True where the copy is now one more name of a file copied before.
    bool linkToEarlierCopy(Place const& place, struct stat const& status);
    std::string pathOf(Place const& place) const;

    Purpose const m_purpose;
    SharedSink m_sink;
    int m_root = -1;    ///< the folder that holds the whole copy
    std::string m_path; ///< of the folder being copied, below the root; with a slash at its end
    std::optional<std::pair<dev_t, ino_t>> m_copyRoot; ///< the copy itself, where it is a folder
    std::mutex m_linkedMutex;                          ///< held while a file of several names is copied
    std::map<std::pair<dev_t, ino_t>, std::string> m_copiesOfLinked; ///< paths below the root
};

/// Removes `name` and all below it, also from folders that refuse writing. Links are not followed.
Result removeTree(int folder, std::string const& name);

} // namespace taliro::transfer
