#include "platform/linux/BookmarkRecords.h"

#include <algorithm>
#include <string_view>

namespace taliro {

namespace {

using Bytes = std::span<std::uint8_t const>;
using Number = std::uint32_t;

constexpr std::string_view magic = "book";
constexpr Number tableMark = 0xFFFFFFFE;
constexpr Number pathKey = 0x1004;
constexpr Number stringType = 0x0101;
constexpr Number arrayType = 0x0601;
constexpr int maxTables = 16;
constexpr std::size_t maxPathBytes = 4096;

/// The number at `offset`, where there are bytes enough.
std::optional<Number> numberAt(Bytes bytes, std::size_t offset) {
    if (offset > bytes.size() || bytes.size() - offset < 4)
        return std::nullopt;
    Number value = 0;
    for (std::size_t i = 4; i-- > 0;)
        value = value << 8 | bytes[offset + i];
    return value;
}

/// The content of the record at `offset`, if it is of `type`.
std::optional<Bytes> record(Bytes data, Number offset, Number type) {
    auto const length = numberAt(data, offset);
    auto const found = numberAt(data, std::size_t{offset} + 4);
    auto const start = std::size_t{offset} + 8;
    if (!length || found != type || *length > data.size() - start)
        return std::nullopt;
    return data.subspan(start, *length);
}

/// Where the value of `key` is, by the first table that has it.
std::optional<Number> find(Bytes data, Number key) {
    auto table = numberAt(data, 0);
    for (int i = 0; i < maxTables && table && *table != 0; ++i) {
        std::size_t const start = *table;
        auto const count = numberAt(data, start + 16);
        if (!count || numberAt(data, start + 4) != tableMark)
            return std::nullopt;
        for (std::size_t entry = start + 20, n = 0; n < *count; ++n, entry += 12) {
            auto const name = numberAt(data, entry);
            if (!name)
                return std::nullopt;
            if (*name == key)
                return numberAt(data, entry + 4);
        }
        table = numberAt(data, start + 12);
    }
    return std::nullopt;
}

bool isComponent(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string_view::npos &&
           name.find('\0') == std::string_view::npos;
}

} // namespace

bool isBookmarkRecords(Bytes bytes) {
    return bytes.size() >= magic.size() && std::equal(magic.begin(), magic.end(), bytes.begin());
}

std::optional<std::string> pathOfBookmarkRecords(Bytes bytes) {
    auto const dataOffset = numberAt(bytes, 12);
    if (!isBookmarkRecords(bytes) || !dataOffset || *dataOffset > bytes.size())
        return std::nullopt;
    auto const data = bytes.subspan(*dataOffset);
    auto const pathOffset = find(data, pathKey);
    auto const components = pathOffset ? record(data, *pathOffset, arrayType) : std::nullopt;
    if (!components)
        return std::nullopt;
    std::string path;
    for (std::size_t i = 0; i + 4 <= components->size(); i += 4) {
        auto const component = record(data, *numberAt(*components, i), stringType);
        if (!component)
            return std::nullopt;
        std::string_view const name(reinterpret_cast<char const*>(component->data()), component->size());
        if (!isComponent(name) || path.size() + 1 + name.size() > maxPathBytes)
            return std::nullopt;
        path.append("/").append(name);
    }
    return path.empty() ? "/" : path;
}

} // namespace taliro
