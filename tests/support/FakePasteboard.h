#pragma once

#include "dragdrop/Pasteboard.h"

#include <map>

namespace taliro::testing {

/// What a drag carries, as a list of formats and their bytes. Outlives the pasteboards made of it.
struct FakePasteboard {
    std::vector<std::pair<std::string, std::string>> carried;

    FakePasteboard(std::initializer_list<std::pair<std::string, std::string>> formats) : carried(formats) {}

    Pasteboard pasteboard() const {
        Pasteboard made;
        for (auto const& [format, bytes] : carried)
            made.formats.push_back(format);
        made.data = [copy = carried](std::string const& wanted) {
            auto const found = std::ranges::find(copy, wanted, [](auto const& item) { return item.first; });
            return found == copy.end() ? std::string() : found->second;
        };
        return made;
    }
};

} // namespace taliro::testing
