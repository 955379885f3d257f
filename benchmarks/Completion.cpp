#include "Comparison.h"

#include "browsing/BrowserState.h"
#include "browsing/GoToPath.h"
#include "browsing/PathCompletion.h"
#include "platform/Platform.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <cstdio>

#include <glob.h>

namespace taliro::bench {

namespace {

constexpr int folderCount = 50'000;

std::size_t globbed(std::string const& path) {
    glob_t found{};
    ::glob((path + "*").c_str(), GLOB_ONLYDIR, nullptr, &found);
    auto const count = found.gl_pathc;
    ::globfree(&found);
    return std::min(count, PathCompletion::mostSuggestions);
}

} // namespace

bool measureCompletion() {
    // In memory: some disks take minutes to remove so many folders.
    testing::TemporaryFolder const folder("/dev/shm");
    for (int i = 0; i < folderCount; ++i)
        if (std::error_code failed;
            !std::filesystem::create_directory(folder / ("Project " + std::to_string(i) + " plan"), failed)) {
            std::fprintf(stderr, "%s\n", failed.message().c_str());
            return false;
        }
    BrowserState state(Url::file(folder.path().string(), true));
    GoToPath goTo(Platform::current(), state);
    goTo.open();
    auto const path = (folder / "Pro").string(); // All of them begin like this.
    auto const type = [&] {
        goTo.setText(path);
        return goTo.suggestions->size();
    };
    auto const clear = [&] { goTo.setText(path.substr(0, path.size() - 1)); };
    return compare("complete a path among 50,000 folders", {"ours", type, clear},
                   {{"glob(3), folders only", [&] { return globbed(path); }}});
}

} // namespace taliro::bench
