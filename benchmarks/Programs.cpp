#include "Programs.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace taliro::bench {

namespace {

bool isInstalled(std::string const& command) {
    std::istringstream path(std::getenv("PATH") ? std::getenv("PATH") : "/usr/bin:/bin");
    for (std::string folder; std::getline(path, folder, ':');)
        if (std::filesystem::exists(std::filesystem::path(folder) / command))
            return true;
    return false;
}

} // namespace

Program taliro() {
    return {"ours", TALIRO_PROGRAM};
}

std::vector<Program> peers() {
    std::vector<Program> found{
        {"PCManFM-Qt", "pcmanfm-qt"}, {"Thunar", "thunar"}, {"Dolphin", "dolphin"}, {"Nautilus", "nautilus"}};
    std::erase_if(found, [](Program const& program) { return !isInstalled(program.command); });
    return found;
}

std::optional<Memory> memoryOf(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/smaps_rollup");
    Memory memory;
    std::string line;
    while (std::getline(file, line)) {
        std::istringstream words(line);
        std::string key;
        double kibibytes = 0;
        words >> key >> kibibytes;
        if (key == "Rss:")
            memory.resident = kibibytes / 1024;
        else if (key == "Pss:")
            memory.share = kibibytes / 1024;
    }
    return memory.resident > 0 ? std::optional(memory) : std::nullopt;
}

} // namespace taliro::bench
