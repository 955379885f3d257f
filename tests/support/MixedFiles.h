#pragma once

#include "support/SampleFiles.h"
#include "support/TemporaryFolder.h"

#include <QImageWriter>

#include <vector>

namespace taliro::testing {

/// One file of a folder such as people have, where kinds are mixed and some files are damaged.
struct MixedFile {
    std::filesystem::path path;
    char const* mimeType;
    bool isDamaged = false; ///< so that nothing can be drawn of it
    bool isBomb = false;    ///< a few bytes that unpack to more than a program has memory for
};

struct MixedContent {
    std::string extension;
    char const* mimeType;
    std::string bytes;
    bool isDamaged = false;
    bool isBomb = false;
};

/// Every kind, in the numbers in which it may be met: photos most, damaged files least.
inline std::vector<MixedContent> mixedContents() {
    auto const picture = landscape(1600, 1200);
    std::vector<MixedContent> contents;
    for (char orientation = 1; orientation <= 8; ++orientation)
        contents.push_back({".jpg", "image/jpeg", photo(picture, orientation)});
    auto const png = encoded(picture, "png");
    auto const jpeg = encoded(picture, "jpg");
    contents.push_back({".png", "image/png", png});
    if (QImageWriter::supportedImageFormats().contains("webp"))
        contents.push_back({".webp", "image/webp", encoded(picture, "webp")});
    contents.push_back({".pdf", "application/pdf", pdf()});
    contents.push_back({".pdf", "application/pdf", pdf(12)});
    contents.push_back({".txt", "text/plain", std::string(3000, 'a') + "\nand more\n"});
    contents.push_back({".cpp", "text/x-c++src", "int main() {\n    return 0;\n}\n"});
    contents.push_back({".svg", "image/svg+xml", svg()});
    if (auto const font = anyFont(); !font.empty())
        contents.push_back({".ttf", "font/ttf", contentsOf(font)});
    contents.push_back({".jpg", "image/jpeg", jpeg.substr(0, 100), true});
    contents.push_back({".png", "image/png", std::string(4000, '\x5A'), true});
    contents.push_back({".webp", "image/webp", std::string(4000, '\x5A'), true});
    contents.push_back({".png", "image/png", pngBomb(), true, true});
    contents.push_back({".pdf", "application/pdf", pdf().substr(0, 60), true});
    contents.push_back({".svg", "image/svg+xml", svg().substr(0, 80), true});
    contents.push_back({".ttf", "font/ttf", std::string(3000, '\x01'), true});
    contents.push_back({".txt", "text/plain", std::string("\0\x01\x02\x03\x04\x05", 6), true});
    return contents;
}

/// `count` files in `folder`, as if last written an hour ago.
inline std::vector<MixedFile> makeMixedFiles(TemporaryFolder const& folder, std::size_t count) {
    auto const contents = mixedContents();
    std::vector<MixedFile> files;
    for (std::size_t i = 0; i < count; ++i) {
        auto const& content = contents[i % contents.size()];
        auto const path = folder.write("file " + std::to_string(i) + content.extension, content.bytes);
        makeOld(path);
        files.push_back({path, content.mimeType, content.isDamaged, content.isBomb});
    }
    return files;
}

} // namespace taliro::testing
