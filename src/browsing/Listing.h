#pragma once

#include "browsing/FileEntry.h"
#include "browsing/RowList.h"
#include "foundation/TextList.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace taliro {

/// What a folder holds, read once. Hands out its rows in any order and under any filter without asking the
/// disk again, and takes in what changed one item at a time. Rows handed out before stay as they were.
class Listing {
public:
    /// `entries` in the file system's order.
    explicit Listing(std::vector<FileEntry> entries);

    /// Items in use; what was replaced or removed is kept for the rows handed out and counted in `slots`.
    std::size_t size() const { return m_byName.size(); }
    std::size_t slots() const { return m_entries->size(); }

    /// Rows whose names contain `filter`, ordered as `sortsBefore` says; ties stay in the file system's
    /// order.
    RowList rows(std::string_view filter, SortKey key, bool ascending);
    /// The items called `names` are now `present`, which leaves out those that are gone.
    void update(std::vector<std::string> const& names, std::vector<FileEntry> present);

private:
    using Slot = RowList::Slot;
    using Slots = RowList::Order;

    void writeNameKeys();
    void writeLowercasedNames();
    Slots sortedByName(Slot first) const;
    std::optional<std::size_t> placeByName(std::string_view name) const;
    void removeNames(std::vector<std::string> const& names);
    void insertNames(Slots const& slots);

    Slots ordered(SortKey key, bool ascending) const;
    Slots byNameDescending() const;
    std::vector<std::int64_t> values(SortKey key) const;
    std::vector<std::int64_t> kindRanks() const;

    std::shared_ptr<RowList::Entries> m_entries; ///< only ever added to
    TextList m_nameKeys;                         ///< a slot's name as the locale orders it
    TextList m_lowercased;                       ///< a slot's name as it is searched; written when needed
    Slots m_byName;                              ///< slots in use; names that compare the same by slot

    Slots m_ordered; ///< by the order asked for last
    std::optional<std::pair<SortKey, bool>> m_orderedBy;
};

} // namespace taliro
