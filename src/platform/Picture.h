#pragma once

#include <cstdint>
#include <memory>

namespace taliro {

/// A finished picture, shared and never changed: premultiplied 0xAARRGGBB, row after row from the top left.
struct Picture {
    int width = 0;  ///< pixels
    int height = 0; ///< pixels
    std::shared_ptr<std::uint32_t const[]> pixels;

    bool isEmpty() const { return width <= 0 || height <= 0 || !pixels; }
};

} // namespace taliro
