#include "dragdrop/Pasteboard.h"

#include "foundation/Text.h"

#include <unicode/ucnv.h>

#include <algorithm>
#include <cctype>

namespace taliro {

namespace {

/// Nothing where ICU doesn't know the encoding.
std::optional<std::string> converted(std::string_view bytes, char const* charset) {
    auto error = U_ZERO_ERROR;
    auto const capacity = static_cast<std::int32_t>(bytes.size() * 4 + 4);
    std::string utf8(static_cast<std::size_t>(capacity), '\0');
    auto const length = ucnv_convert("UTF-8", charset, utf8.data(), capacity, bytes.data(),
                                     static_cast<std::int32_t>(bytes.size()), &error);
    if (U_FAILURE(error))
        return std::nullopt;
    utf8.resize(static_cast<std::size_t>(length));
    return utf8;
}

/// The encoding that the byte order mark names, and how long the mark is.
std::pair<char const*, std::size_t> byteOrderMark(std::string_view bytes) {
    using namespace std::string_view_literals;
    if (bytes.starts_with("\xEF\xBB\xBF"sv))
        return {"UTF-8", 3};
    if (bytes.starts_with("\xFF\xFE"sv))
        return {"UTF-16LE", 2};
    if (bytes.starts_with("\xFE\xFF"sv))
        return {"UTF-16BE", 2};
    return {nullptr, 0};
}

/// UTF-16 without a mark shows by the zero halves of its ASCII letters.
char const* guessedEncoding(std::string_view bytes) {
    std::size_t zeros[2] = {0, 0};
    auto const looked = std::min<std::size_t>(bytes.size(), 512);
    for (std::size_t i = 0; i < looked; ++i)
        zeros[i % 2] += bytes[i] == '\0';
    if (bytes.size() >= 2 && bytes.size() % 2 == 0 && zeros[0] != zeros[1])
        return zeros[1] > zeros[0] ? "UTF-16LE" : "UTF-16BE";
    return isValidUtf8(bytes) ? "UTF-8" : "windows-1252";
}

std::string withoutTrailingNuls(std::string text) {
    text.erase(text.find_last_not_of('\0') + 1);
    return text;
}

std::string lowercasedAscii(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](unsigned char c) { return std::tolower(c); });
    return lower;
}

/// `text/plain;charset=utf-16` → `utf-16`
std::string charsetOf(std::string_view format) {
    auto const lower = lowercasedAscii(format);
    auto const at = lower.find("charset=");
    if (at == std::string::npos)
        return {};
    auto value = lower.substr(at + 8);
    value = value.substr(0, value.find(';'));
    std::erase(value, '"');
    return value;
}

void appendLines(std::vector<Url>& urls, std::string_view text, std::size_t lineLimit) {
    while (!text.empty() && urls.size() < lineLimit) {
        auto const end = text.find_first_of("\r\n");
        auto const line = trimmingWhitespace(text.substr(0, end));
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
        if (line.empty() || line.front() == '#')
            continue;
        if (auto url = Url::parse(line))
            urls.push_back(std::move(*url));
    }
}

bool declaresCharset(std::string_view html) {
    return lowercasedAscii(html.substr(0, 1024)).find("charset") != std::string::npos;
}

} // namespace

std::string textAsUtf8(std::string_view bytes, std::string_view charset) {
    if (auto const [encoding, length] = byteOrderMark(bytes); encoding)
        return withoutTrailingNuls(converted(bytes.substr(length), encoding).value_or(std::string()));
    if (!charset.empty()) {
        // Without a mark, UTF-16 comes in this machine's order or in the one that the bytes show.
        auto const plainUtf16 = charset == "utf-16" || charset == "iso-10646-ucs-2";
        auto const* const guess = plainUtf16 ? guessedEncoding(bytes) : nullptr;
        auto const named = !guess                               ? std::string(charset)
                           : guess[0] == 'U' && guess[4] == '1' ? guess
                                                                : "UTF-16LE";
        if (auto text = converted(bytes, named.c_str()))
            return withoutTrailingNuls(std::move(*text));
    }
    return withoutTrailingNuls(converted(bytes, guessedEncoding(bytes)).value_or(std::string(bytes)));
}

bool Pasteboard::has(std::string_view format) const {
    return std::ranges::find(formats, format) != formats.end();
}

std::optional<std::string> Pasteboard::read(std::string_view format) const {
    if (!has(format))
        return std::nullopt;
    auto bytes = data(std::string(format));
    return bytes.empty() ? std::nullopt : std::optional(std::move(bytes));
}

std::vector<Url> Pasteboard::urls() const {
    std::vector<Url> urls;
    if (auto const list = read("text/uri-list"))
        appendLines(urls, textAsUtf8(*list), std::string::npos);
    // An address, then its title on the next line.
    for (auto const* format : {"text/x-moz-url", "_NETSCAPE_URL"}) {
        if (!urls.empty())
            break;
        if (auto const link = read(format))
            appendLines(urls, textAsUtf8(*link), 1);
    }
    return urls;
}

std::vector<Url> Pasteboard::fileUrls() const {
    auto files = urls();
    std::erase_if(files, [](Url const& url) { return !url.isFile(); });
    return files;
}

std::optional<Url> Pasteboard::webLink() const {
    auto const all = urls();
    auto const found = std::ranges::find_if(all, [](Url const& url) { return !url.isFile(); });
    return found == all.end() ? std::nullopt : std::optional(*found);
}

std::optional<std::string> Pasteboard::html() const {
    auto const bytes = read("text/html");
    if (!bytes)
        return std::nullopt;
    auto html = textAsUtf8(*bytes);
    auto const ascii = std::ranges::all_of(html, [](char c) { return static_cast<unsigned char>(c) < 128; });
    if (!ascii && !declaresCharset(html))
        html.insert(0, "<meta charset=\"utf-8\">\n");
    return html;
}

std::optional<std::string> Pasteboard::text() const {
    std::vector<std::string_view> candidates{"text/plain;charset=utf-8", "text/plain"};
    for (auto const& format : formats)
        if (format.starts_with("text/plain"))
            candidates.push_back(format);
    for (auto const format : candidates)
        if (auto const bytes = read(format))
            return textAsUtf8(*bytes, charsetOf(format));
    return std::nullopt;
}

DropOperation proposedOperation(bool carriesFiles, bool commandHeld) {
    return carriesFiles && !commandHeld ? DropOperation::move : DropOperation::copy;
}

} // namespace taliro
