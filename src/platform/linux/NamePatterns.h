#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace taliro {

/// The installed MIME types' patterns for names without an extension, such as `makefile`, `readme*` and `*~`.
class NamePatterns {
public:
    NamePatterns();

    bool match(std::string_view name) const;

private:
    std::unordered_set<std::string> m_names; ///< in lower case
    std::vector<std::string> m_patterns;
};

} // namespace taliro
