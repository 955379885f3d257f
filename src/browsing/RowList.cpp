#include "browsing/RowList.h"

#include "browsing/DirectoryLoader.h"

#include <algorithm>
#include <numeric>

namespace taliro {

RowList::RowList() : m_order(std::make_shared<Order const>()) {}

RowList::RowList(std::vector<FileEntry> entries) {
    Order order(entries.size());
    std::iota(order.begin(), order.end(), Slot{0});
    *this = RowList(std::make_shared<Entries const>(std::move(entries)), std::move(order));
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

} // namespace taliro
