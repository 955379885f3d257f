#pragma once

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace taliro::bench {

/// A file manager; started with a folder's path after its name, it shows that folder.
struct Program {
    std::string name;
    std::string command;
};
Program taliro();
/// Those that are installed here.
std::vector<Program> peers();

struct Memory {
    double resident = 0; ///< MiB in physical memory
    double share = 0;    ///< of it, what is its own and its part of what several share, in MiB
};
/// Nothing where the process is gone.
std::optional<Memory> memoryOf(pid_t process);

} // namespace taliro::bench
