#pragma once

#include "browsing/FileEntry.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string_view>
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
    using Slot = std::uint32_t;
    using Order = std::vector<Slot>;

    /// What the rows are chosen from. More can be added; those there stay where they are.
    class Entries {
    public:
        explicit Entries(std::vector<FileEntry> first) : m_first(std::move(first)) {}

        std::size_t size() const { return m_first.size() + m_added.size(); }
        FileEntry const& operator[](std::size_t slot) const {
            return slot < m_first.size() ? m_first[slot] : m_added[slot - m_first.size()];
        }
        void add(FileEntry entry) { m_added.push_back(std::move(entry)); }

    private:
        std::vector<FileEntry> m_first;
        std::deque<FileEntry> m_added;
    };

    RowList(std::shared_ptr<Entries const> entries, Order order);

    std::shared_ptr<Entries const> m_entries;
    std::shared_ptr<Order const> m_order;
};

} // namespace taliro
