#include "browsing/Listing.h"

#include "browsing/DirectoryLoader.h"
#include "foundation/Parallel.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>
#include <numeric>
#include <unordered_map>

namespace taliro {

namespace {

/// Eight bytes of `text` from `start` as a number that orders like them; zeros where it has ended.
std::uint64_t eightBytes(std::string_view text, std::size_t start) {
    std::uint64_t bytes = 0;
    if (start < text.size())
        std::memcpy(&bytes, text.data() + start, std::min<std::size_t>(8, text.size() - start));
    return std::endian::native == std::endian::little ? std::byteswap(bytes) : bytes;
}

/// A slot with the start of its name's key: most comparisons need no more.
struct NameRow {
    NameRow() = default;
    NameRow(std::string_view key, std::uint32_t slot)
        : first(eightBytes(key, 0)), second(eightBytes(key, 8)), slot(slot) {}

    std::uint64_t first, second;
    std::uint32_t slot;
};

/// Adds what `write(slot, bytes)` appends for each slot from `texts.size()` up to `end`, on all cores.
template <typename Write>
void addTexts(TextList& texts, std::size_t end, Write const& write) {
    auto const start = texts.size();
    std::vector<TextList> pieces((end - start + pieceSize - 1) / pieceSize);
    forEachPiece(end - start, [&](std::size_t from, std::size_t to) {
        auto& piece = pieces[from / pieceSize];
        for (auto slot = start + from; slot < start + to; ++slot)
            piece.add([&](std::string& bytes) { write(slot, bytes); });
    });
    for (auto const& piece : pieces)
        texts.append(piece);
}

} // namespace

Listing::Listing(std::vector<FileEntry> entries)
    : m_entries(std::make_shared<RowList::Entries>(std::move(entries))) {
    writeNameKeys();
    m_byName = sortedByName(0);
}

void Listing::writeNameKeys() {
    addTexts(m_nameKeys, m_entries->size(), [this](std::size_t slot, std::string& bytes) {
        appendSortKey((*m_entries)[slot].nameView(), bytes);
    });
}

void Listing::writeLowercasedNames() {
    addTexts(m_lowercased, m_entries->size(), [this](std::size_t slot, std::string& bytes) {
        bytes += lowercased((*m_entries)[slot].nameView());
    });
}

/// The slots from `first` on.
Listing::Slots Listing::sortedByName(Slot first) const {
    std::vector<NameRow> rows(m_entries->size() - first);
    forEachPiece(rows.size(), [&](std::size_t begin, std::size_t end) {
        for (auto i = begin; i < end; ++i)
            rows[i] = NameRow(m_nameKeys[first + i], static_cast<Slot>(first + i));
    });
    stableSortInHalves(rows, [this](NameRow const& a, NameRow const& b) {
        if (a.first != b.first)
            return a.first < b.first;
        if (a.second != b.second)
            return a.second < b.second;
        return m_nameKeys[a.slot] < m_nameKeys[b.slot];
    });
    Slots slots(rows.size());
    std::ranges::transform(rows, slots.begin(), &NameRow::slot);
    return slots;
}

void Listing::update(std::vector<std::string> const& names, std::vector<FileEntry> present) {
    removeNames(names);
    auto const firstNew = static_cast<Slot>(m_entries->size());
    for (auto& entry : present)
        m_entries->add(std::move(entry));
    writeNameKeys();
    insertNames(sortedByName(firstNew));
    m_orderedBy.reset();
}

/// Where the item of exactly this name is in `m_byName`.
std::optional<std::size_t> Listing::placeByName(std::string_view name) const {
    std::string key;
    appendSortKey(name, key);
    auto const same = std::ranges::equal_range(m_byName, std::string_view(key), {},
                                               [this](Slot slot) { return m_nameKeys[slot]; });
    auto const found =
        std::ranges::find(same, name, [this](Slot slot) { return (*m_entries)[slot].nameView(); });
    if (found == same.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - m_byName.begin());
}

void Listing::removeNames(std::vector<std::string> const& names) {
    std::vector<std::size_t> places;
    for (auto const& name : names)
        if (auto const place = placeByName(name))
            places.push_back(*place);
    constexpr auto gone = static_cast<Slot>(-1);
    for (auto place : places)
        m_byName[place] = gone;
    std::erase(m_byName, gone);
}

/// `slots` are newer than those in `m_byName`, and in order by name.
void Listing::insertNames(Slots const& slots) {
    Slots merged;
    merged.reserve(m_byName.size() + slots.size());
    auto rest = m_byName.cbegin();
    for (auto slot : slots) {
        auto const place = std::ranges::upper_bound(rest, m_byName.cend(), m_nameKeys[slot], {},
                                                    [this](Slot other) { return m_nameKeys[other]; });
        merged.insert(merged.end(), rest, place);
        merged.push_back(slot);
        rest = place;
    }
    merged.insert(merged.end(), rest, m_byName.cend());
    m_byName = std::move(merged);
}

/// Names that compare the same stay in the file system's order.
Listing::Slots Listing::byNameDescending() const {
    Slots slots(m_byName.rbegin(), m_byName.rend());
    for (auto same = slots.begin(); same != slots.end();) {
        auto const key = m_nameKeys[*same];
        auto const next =
            std::find_if(same + 1, slots.end(), [&](Slot slot) { return m_nameKeys[slot] != key; });
        std::reverse(same, next);
        same = next;
    }
    return slots;
}

/// Each slot's kind as a number in the locale's order; an absent kind is the empty text.
std::vector<std::int64_t> Listing::kindRanks() const {
    InternedText const none("");
    std::unordered_map<InternedText, std::int64_t> rankOf;
    for (std::size_t slot = 0; slot < m_entries->size(); ++slot)
        rankOf.try_emplace((*m_entries)[slot].kind.value_or(none));

    std::vector<std::pair<std::string, InternedText>> keyed;
    for (auto const& [kind, rank] : rankOf)
        appendSortKey(kind, keyed.emplace_back(std::string(), kind).first);
    std::ranges::sort(
        keyed, {}, [](auto const& pair) -> auto const& { return pair.first; });
    std::int64_t rank = 0;
    for (std::size_t i = 0; i < keyed.size(); ++i)
        rankOf[keyed[i].second] = i > 0 && keyed[i].first != keyed[i - 1].first ? ++rank : rank;

    std::vector<std::int64_t> ranks(m_entries->size());
    for (std::size_t slot = 0; slot < ranks.size(); ++slot)
        ranks[slot] = rankOf[(*m_entries)[slot].kind.value_or(none)];
    return ranks;
}

/// What each slot is ordered by before its name.
std::vector<std::int64_t> Listing::values(SortKey key) const {
    if (key == SortKey::kind)
        return kindRanks();
    auto const nanoseconds = [](std::optional<Date> const& date) {
        return date.value_or(Date::min()).time_since_epoch().count();
    };
    auto const valueOf = [&](FileEntry const& entry) -> std::int64_t {
        switch (key) {
        case SortKey::dateModified:
            return nanoseconds(entry.modified);
        case SortKey::dateAdded:
            return nanoseconds(entry.added);
        case SortKey::size:
            return entry.size.value_or(0);
        case SortKey::name:
        case SortKey::kind:
            return 0;
        }
        return 0;
    };
    std::vector<std::int64_t> values(m_entries->size());
    for (std::size_t slot = 0; slot < values.size(); ++slot)
        values[slot] = valueOf((*m_entries)[slot]);
    return values;
}

Listing::Slots Listing::ordered(SortKey key, bool ascending) const {
    auto slots = ascending ? m_byName : byNameDescending();
    if (key == SortKey::name) { // Folders first in either direction.
        std::ranges::stable_partition(slots, [this](Slot slot) { return (*m_entries)[slot].isDirectory; });
        return slots;
    }
    struct Row {
        std::int64_t value;
        Slot slot;
    };
    auto const valueOf = values(key);
    std::vector<Row> rows(slots.size());
    std::ranges::transform(slots, rows.begin(), [&](Slot slot) { return Row{valueOf[slot], slot}; });
    stableSortInHalves(rows, [ascending](Row const& a, Row const& b) {
        return ascending ? a.value < b.value : b.value < a.value;
    });
    std::ranges::transform(rows, slots.begin(), &Row::slot);
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
    writeLowercasedNames();
    Slots matching;
    std::ranges::copy_if(m_ordered, std::back_inserter(matching), [&](Slot slot) {
        return m_lowercased[slot].find(wanted) != std::string_view::npos;
    });
    return RowList(m_entries, std::move(matching));
}

} // namespace taliro
