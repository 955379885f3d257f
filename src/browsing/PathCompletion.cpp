#include "browsing/PathCompletion.h"

#include "foundation/Text.h"
#include "platform/FileManager.h"
#include "platform/Platform.h"

#include <algorithm>

namespace taliro {

namespace {

/// The folder whose children are offered, and how their names have to begin.
struct Wanted {
    Url folder;
    std::string partialName;
};

Wanted wantedFor(FileManager& files, std::string const& path) {
    auto const url = Url::file(path);
    if (path.ends_with('/') || files.isDirectory(url))
        return {url.asDirectory(), {}};
    return {url.deletingLastPathComponent(), url.lastPathComponent()};
}

} // namespace

std::string expandingTilde(std::string_view path, Url const& home) {
    if (path != "~" && !path.starts_with("~/"))
        return std::string(path);
    auto const rest = path.substr(1);
    return home.path() == "/" ? std::string(rest.empty() ? "/" : rest) : home.path() + std::string(rest);
}

std::vector<Url> PathCompletion::suggestions(Platform& platform, std::string_view text) {
    auto& files = platform.fileManager;
    auto const path = expandingTilde(trimmingWhitespace(text), files.homeDirectory());
    if (!path.starts_with('/'))
        return {};
    auto const [folder, partialName] = wantedFor(files, path);
    auto names = files.subfolders(folder, partialName.starts_with('.') ? Hidden::include : Hidden::skip);
    if (!names)
        return {};
    auto const beginning = lowercased(partialName);
    std::erase_if(*names, [&](std::string const& name) { return !lowercased(name).starts_with(beginning); });

    auto const count = std::min(names->size(), mostSuggestions);
    auto const end = names->begin() + static_cast<std::ptrdiff_t>(count);
    std::ranges::partial_sort(*names, end, [](std::string const& a, std::string const& b) {
        return localizedCaseInsensitiveCompare(a, b) < 0;
    });
    std::vector<Url> suggestions;
    for (std::size_t i = 0; i < count; ++i)
        suggestions.push_back(folder.appending((*names)[i], true));
    return suggestions;
}

} // namespace taliro
