#include "browsing/Listing.h"

#include "browsing/DirectoryLoader.h"

#include <algorithm>
#include <future>
#include <map>
#include <numeric>
#include <thread>

namespace taliro {

namespace {

/// Below this a second thread costs more than it saves.
constexpr std::size_t splitFrom = 4000;

/// Calls `work(begin, end)` for two halves at once where there is enough to do.
template <typename Work>
void inHalves(std::size_t begin, std::size_t end, Work const& work) {
    if (end - begin < splitFrom || std::thread::hardware_concurrency() < 2) {
        work(begin, end);
        return;
    }
    auto const middle = begin + (end - begin) / 2;
    auto upper = std::async(std::launch::async, [&] { work(middle, end); });
    work(begin, middle);
    upper.get();
}

/// The first bytes of a key as a number that orders like them: most comparisons need no more.
std::uint64_t leadingBytes(std::string const& key) {
    std::uint64_t bytes = 0;
    for (std::size_t i = 0; i < 8; ++i)
        bytes = bytes << 8 | (i < key.size() ? static_cast<unsigned char>(key[i]) : 0);
    return bytes;
}

} // namespace

RowList::RowList() : m_order(std::make_shared<Order const>()) {}

RowList::RowList(std::vector<FileEntry> entries)
    : m_entries(std::make_shared<Entries>(std::make_move_iterator(entries.begin()),
                                          std::make_move_iterator(entries.end()))) {
    Order order(m_entries->size());
    std::iota(order.begin(), order.end(), 0u);
    m_order = std::make_shared<Order const>(std::move(order));
}

RowList::RowList(std::shared_ptr<Entries const> entries, Order order)
    : m_entries(std::move(entries)), m_order(std::make_shared<Order const>(std::move(order))) {}

std::optional<std::size_t> RowList::indexOf(Url const& url, std::size_t guess) const {
    if (guess < size() && (*this)[guess].url == url)
        return guess;
    for (std::size_t row = 0; row < size(); ++row)
        if ((*this)[row].url == url)
            return row;
    return std::nullopt;
}

std::vector<Url> RowList::urls() const {
    std::vector<Url> urls;
    urls.reserve(size());
    for (auto slot : *m_order)
        urls.push_back((*m_entries)[slot].url);
    return urls;
}

std::vector<FileEntry> RowList::entries() const {
    std::vector<FileEntry> entries;
    entries.reserve(size());
    for (auto slot : *m_order)
        entries.push_back((*m_entries)[slot]);
    return entries;
}

RowList RowList::filtered(std::string_view filter) const {
    auto const wanted = DirectoryLoader::normalizedFilter(filter);
    if (wanted.empty())
        return *this;
    Order matching;
    std::ranges::copy_if(*m_order, std::back_inserter(matching), [&](auto slot) {
        return DirectoryLoader::matches((*m_entries)[slot].nameView(), wanted);
    });
    return RowList(m_entries, std::move(matching));
}

Listing::Listing(std::vector<FileEntry> entries)
    : m_entries(std::make_shared<RowList::Entries>(std::make_move_iterator(entries.begin()),
                                                   std::make_move_iterator(entries.end()))) {
    writeNames(0);
    sortByName();
    rankNames();
}

void Listing::writeNames(std::size_t from) {
    m_nameKeys.resize(m_entries->size());
    m_lowercased.resize(m_entries->size());
    inHalves(from, m_entries->size(), [this](std::size_t begin, std::size_t end) {
        SortKeyWriter writer;
        for (auto slot = begin; slot < end; ++slot) {
            auto const name = (*m_entries)[slot].nameView();
            writer.append(name, m_nameKeys[slot]);
            m_lowercased[slot] = lowercased(name);
        }
    });
}

void Listing::sortByName() {
    struct Row {
        std::uint64_t leading;
        Slot slot;
    };
    std::vector<Row> rows(m_entries->size());
    auto before = [this](Row const& a, Row const& b) {
        if (a.leading != b.leading)
            return a.leading < b.leading;
        auto const order = m_nameKeys[a.slot].compare(m_nameKeys[b.slot]);
        return order != 0 ? order < 0 : a.slot < b.slot;
    };
    auto const at = [&rows](std::size_t i) { return rows.begin() + static_cast<std::ptrdiff_t>(i); };
    inHalves(0, rows.size(), [&](std::size_t begin, std::size_t end) {
        for (auto slot = begin; slot < end; ++slot)
            rows[slot] = {leadingBytes(m_nameKeys[slot]), static_cast<Slot>(slot)};
        std::sort(at(begin), at(end), before);
    });
    if (rows.size() >= splitFrom)
        std::inplace_merge(rows.begin(), std::is_sorted_until(rows.begin(), rows.end(), before), rows.end(),
                           before);
    m_byName.reserve(rows.size());
    for (auto const& row : rows)
        m_byName.push_back(row.slot);
}

void Listing::rankNames() {
    m_nameRank.resize(m_entries->size());
    Slot rank = 0;
    for (std::size_t i = 0; i < m_byName.size(); ++i) {
        if (i > 0 && m_nameKeys[m_byName[i]] != m_nameKeys[m_byName[i - 1]])
            ++rank;
        m_nameRank[m_byName[i]] = rank;
    }
    m_orderedBy.reset();
}

void Listing::insertByName(Slot slot) {
    auto const place =
        std::ranges::upper_bound(m_byName, m_nameKeys[slot], {},
                                 [this](Slot other) -> std::string const& { return m_nameKeys[other]; });
    m_byName.insert(place, slot);
}

void Listing::update(std::unordered_set<std::string_view> const& names, std::vector<FileEntry> present) {
    std::erase_if(m_byName, [&](Slot slot) { return names.contains((*m_entries)[slot].nameView()); });
    auto const firstNew = m_entries->size();
    std::ranges::move(present, std::back_inserter(*m_entries));
    writeNames(firstNew);
    for (auto slot = firstNew; slot < m_entries->size(); ++slot)
        insertByName(static_cast<Slot>(slot));
    rankNames();
}

/// Each slot's kind as a number in the locale's order; an absent kind is the empty text.
std::vector<std::int64_t> Listing::kindRanks() const {
    std::map<std::string, std::int64_t> byKey;
    std::unordered_map<std::string_view, std::string> keys;
    SortKeyWriter writer;
    auto const kindOf = [this](Slot slot) {
        auto const& kind = (*m_entries)[slot].kind;
        return kind ? std::string_view(*kind) : std::string_view();
    };
    for (auto slot : m_byName) {
        auto const [key, isNew] = keys.try_emplace(kindOf(slot));
        if (!isNew)
            continue;
        writer.append(key->first, key->second);
        byKey[key->second] = 0;
    }
    std::int64_t rank = 0;
    for (auto& [key, place] : byKey)
        place = rank++;
    std::unordered_map<std::string_view, std::int64_t> rankOf;
    for (auto const& [kind, key] : keys)
        rankOf[kind] = byKey[key];
    std::vector<std::int64_t> ranks(m_entries->size());
    for (auto slot : m_byName)
        ranks[slot] = rankOf[kindOf(slot)];
    return ranks;
}

std::vector<Listing::Slot> Listing::ordered(SortKey key, bool ascending) const {
    struct Row {
        std::int64_t primary;
        Slot nameRank;
        Slot slot;
    };
    auto const kinds = key == SortKey::kind ? kindRanks() : std::vector<std::int64_t>();
    auto const primaryOf = [&](Slot slot) -> std::int64_t {
        auto const& entry = (*m_entries)[slot];
        switch (key) {
        case SortKey::name:
            return entry.isDirectory == ascending ? 0 : 1; // Folders first in either direction.
        case SortKey::dateModified:
            return entry.modified.value_or(Date::min()).time_since_epoch().count();
        case SortKey::dateAdded:
            return entry.added.value_or(Date::min()).time_since_epoch().count();
        case SortKey::size:
            return entry.size.value_or(0);
        case SortKey::kind:
            return kinds[slot];
        }
        return 0;
    };
    std::vector<Row> rows;
    rows.reserve(m_byName.size());
    for (auto slot : m_byName)
        rows.push_back({primaryOf(slot), m_nameRank[slot], slot});
    std::ranges::sort(rows, [ascending](Row const& a, Row const& b) {
        if (a.primary != b.primary)
            return ascending == (a.primary < b.primary);
        if (a.nameRank != b.nameRank)
            return ascending == (a.nameRank < b.nameRank);
        return a.slot < b.slot;
    });
    std::vector<Slot> slots;
    slots.reserve(rows.size());
    for (auto const& row : rows)
        slots.push_back(row.slot);
    return slots;
}

RowList Listing::rows(std::string_view filter, SortKey key, bool ascending) {
    if (m_orderedBy != std::pair(key, ascending)) {
        m_ordered = ordered(key, ascending);
        m_orderedBy = std::pair(key, ascending);
    }
    auto const wanted = DirectoryLoader::normalizedFilter(filter);
    if (wanted.empty())
        return RowList(m_entries, m_ordered);
    RowList::Order matching;
    std::ranges::copy_if(m_ordered, std::back_inserter(matching),
                         [&](Slot slot) { return m_lowercased[slot].find(wanted) != std::string::npos; });
    return RowList(m_entries, std::move(matching));
}

} // namespace taliro
