#pragma once

#include <cstdint>
#include <string>

namespace taliro::testing {

/// Numbers and tags as RIFF files hold them.
inline std::string littleEndian(std::uint32_t number, std::size_t bytes = 4) {
    std::string result;
    for (std::size_t i = 0; i < bytes; ++i)
        result += static_cast<char>(number >> (8 * i));
    return result;
}
inline std::string chunk(std::string const& tag, std::string const& content) {
    return tag + littleEndian(static_cast<std::uint32_t>(content.size())) + content +
           std::string(content.size() % 2, '\0');
}

/// Silence, 8 bits at 8 kHz.
inline std::string wav(int seconds) {
    auto const format = littleEndian(1, 2) + littleEndian(1, 2) + littleEndian(8000) + littleEndian(8000) +
                        littleEndian(1, 2) + littleEndian(8, 2);
    return chunk("RIFF", "WAVE" + chunk("fmt ", format) +
                             chunk("data", std::string(static_cast<std::size_t>(seconds) * 8000, '\x80')));
}

} // namespace taliro::testing
