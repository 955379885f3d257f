#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>

#include "support/RiffFiles.h"

#include <QBuffer>
#include <QImage>

namespace taliro::testing {

// Files of many kinds, made in memory.

/// Blue sky above green grass: which way is up can be told.
inline QImage landscape(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        auto const color = y < height / 2 ? qRgb(90, 160, 90 + 160 * y / height) : qRgb(70, 150, 60);
        std::fill_n(reinterpret_cast<QRgb*>(image.scanLine(y)), width,
                    y < height / 2 ? qRgb(70, 130, 230) : color);
    }
    return image;
}

inline std::string encoded(QImage const& image, char const* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes.toStdString();
}

/// A JPEG whose camera noted that it was held at `orientation` (1 to 8, as Exif 2.3 numbers them).
inline std::string photo(QImage const& image, char orientation) {
    using namespace std::string_literals;
    auto const jpeg = encoded(image, "jpg");
    auto const exif = "\xFF\xE1\x00\x22"s + "Exif\0\0"s + "II*\0\x08\0\0\0"s +            // header
                      "\x01\0"s + "\x12\x01\x03\0\x01\0\0\0"s + orientation + "\0\0\0"s + // one entry
                      "\0\0\0\0"s;                                                        // and no more
    return jpeg.substr(0, 2) + exif + jpeg.substr(2);
}

/// A4 pages, each with a dark bar.
inline std::string pdf(int pages = 1, std::string const& content = "0.2 0.3 0.6 rg 60 600 400 120 re f") {
    std::string result = "%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n";
    std::string kids;
    for (int i = 0; i < pages; ++i)
        kids += std::to_string(4 + i) + " 0 R ";
    result += "2 0 obj<</Type/Pages/Count " + std::to_string(pages) + "/Kids[" + kids + "]>>endobj\n";
    result += "3 0 obj<</Length " + std::to_string(content.size()) + ">>stream\n" + content +
              "\nendstream endobj\n";
    for (int i = 0; i < pages; ++i)
        result += std::to_string(4 + i) +
                  " 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 595 842]/Contents 3 0 R" +
                  "/Resources<<>>>>endobj\n";
    return result + "trailer<</Root 1 0 R>>\n%%EOF\n";
}

inline std::string svg(std::string_view inner = "<circle cx='50' cy='30' r='25' fill='teal'/>") {
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='100' "
           "height='60'>" +
           std::string(inner) + "</svg>";
}

/// A drawing of ten levels, each of which shows the one below ten times.
inline std::string endlessSvg() {
    std::string inner = "<defs><g id='l0'><circle r='9' fill='red'/></g>";
    for (int level = 1; level <= 10; ++level) {
        inner += "<g id='l" + std::to_string(level) + "'>";
        for (int i = 0; i < 10; ++i)
            inner += "<use xlink:href='#l" + std::to_string(level - 1) + "'/>";
        inner += "</g>";
    }
    return svg(inner + "</defs><use xlink:href='#l10'/>");
}

/// A PNG of a few kilobytes and 400 million pixels.
inline std::string pngBomb() {
    QImage image(20'000, 20'000, QImage::Format_Mono);
    image.fill(0);
    return encoded(image, "png");
}

/// An AVI of JPEG pictures, ten a second: the first half is red, the second blue.
inline std::string film(int seconds, int width = 64, int height = 48) {
    auto const count = static_cast<std::uint32_t>(seconds) * 10;
    auto const w = static_cast<std::uint32_t>(width);
    auto const h = static_cast<std::uint32_t>(height);
    std::string frames;
    std::string index;
    for (std::uint32_t i = 0; i < count; ++i) {
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(i < count / 2 ? Qt::red : Qt::blue);
        auto const frame = chunk("00dc", encoded(image, "jpg"));
        index += "00dc" + littleEndian(0x10) + littleEndian(static_cast<std::uint32_t>(frames.size()) + 4) +
                 littleEndian(static_cast<std::uint32_t>(frame.size()) - 8);
        frames += frame;
    }
    auto const numbers = [](std::initializer_list<std::uint32_t> list) {
        std::string result;
        for (auto const number : list)
            result += littleEndian(number);
        return result;
    };
    auto const main = numbers({100'000, 0, 0, 0x10, count, 0, 1, 0, w, h, 0, 0, 0, 0});
    auto const stream = "vidsMJPG" + numbers({0, 0, 0, 1, 10, 0, count, 0, 0xFFFFFFFF, 0, 0, 0});
    auto const picture = numbers({40, w, h}) + littleEndian(1, 2) + littleEndian(24, 2) + "MJPG" +
                         numbers({w * h * 3, 0, 0, 0, 0});
    auto const header =
        chunk("avih", main) + chunk("LIST", "strl" + chunk("strh", stream) + chunk("strf", picture));
    return chunk("RIFF", "AVI " + chunk("LIST", "hdrl" + header) + chunk("LIST", "movi" + frames) +
                             chunk("idx1", index));
}

/// The first font of the machine; empty where it has none.
inline std::filesystem::path anyFont() {
    std::error_code error;
    for (auto const& file : std::filesystem::recursive_directory_iterator("/usr/share/fonts", error))
        if (file.path().extension() == ".ttf" || file.path().extension() == ".otf")
            return file.path();
    return {};
}

/// As if last written an hour ago.
inline void makeOld(std::filesystem::path const& file) {
    std::filesystem::last_write_time(file,
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
}

} // namespace taliro::testing
