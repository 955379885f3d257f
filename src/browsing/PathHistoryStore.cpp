#include "browsing/PathHistoryStore.h"

#include "foundation/Text.h"
#include "platform/UserDefaults.h"

#include <algorithm>

namespace taliro {

void PathHistoryStore::record(std::string_view path) {
    std::string const typed(trimmingWhitespaceAndNewlines(path));
    if (typed.empty())
        return;
    auto paths = m_defaults.strings(key).value_or(std::vector<std::string>());
    std::erase(paths, typed);
    paths.insert(paths.begin(), typed);
    if (paths.size() > limit)
        paths.resize(limit);
    m_defaults.setStrings(key, paths);
}

std::vector<std::string> PathHistoryStore::combined() const {
    std::vector<std::string> unique;
    for (auto& path : m_defaults.strings(key).value_or(std::vector<std::string>()))
        if (std::ranges::find(unique, path) == unique.end())
            unique.push_back(std::move(path));
    return unique;
}

} // namespace taliro
