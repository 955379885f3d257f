#pragma once

#include "browsing/FileEntry.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace taliro {

/// Rows in the order they are shown. Never changed once made, so copies share what they hold.
class RowList {
public:
    RowList();
    /// The entries as they are.
    explicit RowList(std::vector<FileEntry> entries);

    std::size_t size() const { return m_order->size(); }
    bool empty() const { return m_order->empty(); }
    FileEntry const& operator[](std::size_t row) const { return (*m_entries)[(*m_order)[row]]; }
    /// Whether both are copies of one list; quick.
    bool isSameAs(RowList const& other) const { return m_order == other.m_order; }

    /// Where `url` is; quick when that is `guess`.
    std::optional<std::size_t> indexOf(Url const& url, std::size_t guess = 0) const;
    std::vector<Url> urls() const;
    std::vector<FileEntry> entries() const;
    /// The rows whose names contain `filter`, in the same order.
    RowList filtered(std::string_view filter) const;

private:
    friend class Listing;
    using Entries = std::deque<FileEntry>;
    using Order = std::vector<std::uint32_t>;

    RowList(std::shared_ptr<Entries const> entries, Order order);

    std::shared_ptr<Entries const> m_entries;
    std::shared_ptr<Order const> m_order;
};

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
    void update(std::unordered_set<std::string_view> const& names, std::vector<FileEntry> present);

private:
    using Slot = std::uint32_t;

    void writeNames(std::size_t from);
    void sortByName();
    void rankNames();
    void insertByName(Slot slot);
    std::vector<Slot> ordered(SortKey key, bool ascending) const;
    std::vector<std::int64_t> kindRanks() const;

    std::shared_ptr<RowList::Entries> m_entries; ///< only ever appended to
    std::vector<std::string> m_nameKeys;         ///< a slot's name as the locale orders it
    std::vector<std::string> m_lowercased;       ///< a slot's name as it is searched
    std::vector<Slot> m_byName;                  ///< slots in use
    std::vector<Slot> m_nameRank; ///< a slot's place by name; names that compare the same share it

    std::vector<Slot> m_ordered; ///< by the order asked for last
    std::optional<std::pair<SortKey, bool>> m_orderedBy;
};

} // namespace taliro
