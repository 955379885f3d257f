#include "Samples.h"

#include <array>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace taliro::bench {

namespace {

bool makeFile(std::filesystem::path const& path) {
    int const file = ::open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
    if (file >= 0)
        ::close(file);
    else
        std::perror(path.c_str());
    return file >= 0;
}

} // namespace

std::string sampleName(int index, int count) {
    constexpr std::array patterns{"IMG_%05d.JPG", "Report %d (final).odt", "été %d.pdf", "notes-%d.md",
                                  "Übung %d.txt"};
    std::array<char, 64> name{};
    auto const shuffled = static_cast<int>((index * 7919LL) % count);
    std::snprintf(name.data(), name.size(), patterns[static_cast<std::size_t>(index) % patterns.size()],
                  shuffled);
    return name.data();
}

bool makeSampleFiles(std::filesystem::path const& folder, int count) {
    for (int i = 0; i < count; ++i)
        if (!makeFile(folder / sampleName(i, count)))
            return false;
    return true;
}

bool makeSampleHome(std::filesystem::path const& folder) {
    for (auto const* name : {"Desktop", "Documents", "Downloads", "Music", "Pictures", "Videos", "Projects"})
        if (std::error_code failed; !std::filesystem::create_directory(folder / name, failed) && failed)
            return false;
    for (auto const* name :
         {"todo.md", "letter.odt", "budget.ods", "me.jpg", "song.mp3", "talk.pdf", "backup.sh", "table.csv",
          "page.html", "photos.tar.gz", "clip.mp4", "logo.svg", "data.json", "notes.txt"})
        if (!makeFile(folder / name))
            return false;
    return true;
}

} // namespace taliro::bench
