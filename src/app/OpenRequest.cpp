#include "app/OpenRequest.h"

#include "browsing/BrowserState.h"
#include "platform/FileManager.h"

namespace taliro {

namespace {

/// The path alone: of an address with a host, what follows the host.
std::string pathOf(Url const& url) {
    auto const& path = url.path();
    if (url.isFile() || !path.starts_with("//"))
        return path;
    auto const slash = path.find('/', 2);
    return slash == std::string::npos ? std::string() : percentDecoded(path.substr(slash));
}

} // namespace

void showRequested(std::vector<Url> const& urls, BrowserState& browser, FileManager& files) {
    for (auto const& url : urls) {
        auto const path = pathOf(url);
        if (!path.starts_with('/'))
            continue;
        auto const item = Url::file(path, false);
        if (!files.exists(item))
            continue;
        bool const isDirectory = files.isDirectory(item);
        browser.navigate(isDirectory ? item.asDirectory() : item.deletingLastPathComponent());
        if (!isDirectory)
            browser.selectSingle(item);
    }
}

} // namespace taliro
