#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace taliro {
/// Feeds the parser under trial.
void tryBytes(std::string_view bytes);
} // namespace taliro

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    taliro::tryBytes({reinterpret_cast<char const*>(data), size});
    return 0;
}
