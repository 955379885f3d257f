#include "dragdrop/FileNames.h"

#include "foundation/Text.h"
#include "foundation/TextDecoding.h"
#include "platform/FileManager.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>

namespace taliro {

namespace {

constexpr std::size_t longestName = 255; // bytes, on every common file system

struct SplitName {
    std::string_view stem;
    std::string_view extension; ///< with its dot; empty where there is none
};

SplitName split(std::string_view name) {
    auto const dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0 || dot + 1 == name.size())
        return {name, {}};
    return {name.substr(0, dot), name.substr(dot)};
}

/// The first `limit` bytes, or fewer, so that no character is cut in two.
std::string_view cutAtCharacter(std::string_view text, std::size_t limit) {
    if (text.size() <= limit)
        return text;
    while (limit > 0 && (static_cast<unsigned char>(text[limit]) & 0xC0) == 0x80)
        --limit;
    return text.substr(0, limit);
}

/// Stem, ending and extension together in at most 255 bytes, at the stem's cost.
std::string fitted(SplitName name, std::string_view ending) {
    auto const extension = name.extension.size() > 64 ? std::string_view() : name.extension;
    auto const stem =
        extension.empty() ? std::string(name.stem) + std::string(name.extension) : std::string(name.stem);
    return std::string(cutAtCharacter(stem, longestName - ending.size() - extension.size())) +
           std::string(ending) + std::string(extension);
}

void removeControlCharacters(std::string& utf8) {
    std::erase_if(utf8, [](unsigned char c) { return c < 32 || c == 127; });
    // U+0080 to U+009F are two bytes: C2 and themselves.
    for (std::size_t i = 0; i + 1 < utf8.size();) {
        auto const second = static_cast<unsigned char>(utf8[i + 1]);
        if (utf8[i] == '\xC2' && second >= 0x80 && second <= 0x9F)
            utf8.erase(i, 2);
        else
            ++i;
    }
}

/// `; name=value; name="quoted \" value"` read into lower-case names.
std::map<std::string, std::string> headerParameters(std::string_view text) {
    std::map<std::string, std::string> parameters;
    while (!text.empty()) {
        auto const end = text.find_first_of("=;");
        if (end == std::string_view::npos)
            break;
        auto const name = lowercasedAscii(trimmingWhitespace(text.substr(0, end)));
        auto const hasValue = text[end] == '=';
        text.remove_prefix(end + 1);
        if (!hasValue)
            continue;
        while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
            text.remove_prefix(1);
        std::string value;
        if (!text.empty() && text.front() == '"') {
            std::size_t i = 1;
            for (; i < text.size() && text[i] != '"'; ++i) {
                if (text[i] == '\\' && i + 1 < text.size())
                    ++i;
                value += text[i];
            }
            text.remove_prefix(std::min(i + 1, text.size()));
            text.remove_prefix(std::min(text.find(';'), text.size()));
        } else {
            value = trimmingWhitespace(text.substr(0, text.find(';')));
            text.remove_prefix(std::min(text.find(';'), text.size()));
        }
        if (!text.empty())
            text.remove_prefix(1);
        parameters.emplace(name, std::move(value));
    }
    return parameters;
}

/// `UTF-8'en'na%C3%AFve.txt` → `naïve.txt`
std::optional<std::string> extendedValue(std::string_view value) {
    auto const language = value.find('\'');
    auto const text = language == std::string_view::npos ? language : value.find('\'', language + 1);
    if (text == std::string_view::npos)
        return std::nullopt;
    return textAsUtf8(percentDecoded(value.substr(text + 1)), lowercasedAscii(value.substr(0, language)));
}

} // namespace

std::string timeStampedName(std::string_view base, Date now, std::string_view extension) {
    auto const seconds = std::chrono::floor<std::chrono::seconds>(now);
    auto const day = std::chrono::floor<std::chrono::days>(seconds);
    std::chrono::year_month_day const date(day);
    std::chrono::hh_mm_ss const time(seconds - day);
    char stamp[64];
    std::snprintf(stamp, sizeof stamp, "%04d-%02u-%02uT%02d-%02d-%02dZ", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return std::string(base) + "-" + stamp + "." + std::string(extension);
}

Url uniqueDestination(FileManager& fileManager, std::string_view name, Url const& folder) {
    auto destination = folder.appending(name);
    for (int n = 2; fileManager.exists(destination); ++n)
        destination = folder.appending(fitted(split(name), " " + std::to_string(n)));
    return destination;
}

std::optional<std::string> suggestedFileName(std::string_view contentDisposition) {
    auto const end = contentDisposition.find(';');
    if (end == std::string_view::npos)
        return std::nullopt;
    auto const parameters = headerParameters(contentDisposition.substr(end + 1));
    if (auto const found = parameters.find("filename*"); found != parameters.end())
        if (auto name = extendedValue(found->second); name && !name->empty())
            return name;
    auto const found = parameters.find("filename");
    if (found == parameters.end() || found->second.empty())
        return std::nullopt;
    // Many servers send UTF-8 or Latin-1 bytes, or percent escapes, where only ASCII is foreseen.
    return textAsUtf8(found->second.find('%') == std::string::npos ? found->second
                                                                   : percentDecoded(found->second));
}

std::optional<std::string> plainFileName(std::string_view name) {
    name = name.substr(name.find_last_of("/\\") + 1);
    auto plain = isValidUtf8(name) ? std::string(name) : textAsUtf8(name);
    removeControlCharacters(plain);
    auto const begin = plain.find_first_not_of(". \t");
    if (begin == std::string::npos)
        return std::nullopt;
    plain.erase(0, begin);
    plain.erase(plain.find_last_not_of(" \t") + 1);
    return fitted(split(plain), {});
}

std::string downloadName(std::string_view contentDisposition, Url const& link) {
    if (auto const suggested = suggestedFileName(contentDisposition))
        if (auto name = plainFileName(*suggested))
            return *name;
    // A link's path holds its host as well: `//host/path?query#part`.
    std::string_view path = link.path();
    path = path.substr(0, path.find_first_of("?#"));
    while (path.ends_with('/'))
        path.remove_suffix(1);
    auto const host = path.starts_with("//") ? path.find('/', 2) : 0;
    if (host != std::string_view::npos)
        if (auto name = plainFileName(percentDecoded(path.substr(path.rfind('/') + 1))))
            return *name;
    return "download";
}

} // namespace taliro
