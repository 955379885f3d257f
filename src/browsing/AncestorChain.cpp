#include "browsing/AncestorChain.h"

namespace taliro {

std::vector<Url> ancestorChain(Url const& url) {
    constexpr std::size_t most = 64;
    std::vector<Url> chain;
    auto current = url;
    while (chain.size() < most) {
        chain.push_back(current);
        auto parent = current.deletingLastPathComponent();
        if (parent.path().size() >= current.path().size())
            break;
        current = std::move(parent);
    }
    return chain;
}

std::string displayName(Url const& url) {
    auto name = url.lastPathComponent();
    return name.empty() || name == "/" ? url.path() : name;
}

} // namespace taliro
