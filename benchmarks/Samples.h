#pragma once

#include <filesystem>
#include <string>

namespace taliro::bench {

/// A name as people and cameras give them, in no order; different for each `index` below `count`.
std::string sampleName(int index, int count);
/// Makes `count` files in `folder`; false, with a line on standard error, where that can't be done.
[[nodiscard]] bool makeSampleFiles(std::filesystem::path const& folder, int count);
/// A home folder as most look: a few folders and some files of several kinds.
[[nodiscard]] bool makeSampleHome(std::filesystem::path const& folder);

} // namespace taliro::bench
