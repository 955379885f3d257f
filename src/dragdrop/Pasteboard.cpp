#include "dragdrop/Pasteboard.h"

#include "foundation/Text.h"
#include "foundation/TextDecoding.h"

#include <algorithm>

namespace taliro {

namespace {

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
