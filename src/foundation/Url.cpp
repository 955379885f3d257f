#include "foundation/Url.h"

#include <vector>

namespace taliro {

namespace {

bool isUnreserved(unsigned char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
           std::string_view("-._~/!$&'()*+,;=:@").find(static_cast<char>(byte)) != std::string_view::npos;
}

int hexValue(char digit) {
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    if (digit >= 'a' && digit <= 'f')
        return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F')
        return digit - 'A' + 10;
    return -1;
}

/// The path without trailing slashes, but for the root.
std::string_view withoutTrailingSlashes(std::string_view path) {
    while (path.size() > 1 && path.back() == '/')
        path.remove_suffix(1);
    return path;
}

bool isSchemeName(std::string_view text) {
    if (text.empty() || !((text[0] >= 'a' && text[0] <= 'z') || (text[0] >= 'A' && text[0] <= 'Z')))
        return false;
    return text.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+-.") ==
           std::string_view::npos;
}

} // namespace

std::string percentDecoded(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() && hexValue(text[i + 1]) >= 0 &&
            hexValue(text[i + 2]) >= 0) {
            bytes += static_cast<char>(hexValue(text[i + 1]) * 16 + hexValue(text[i + 2]));
            i += 2;
        } else {
            bytes += text[i];
        }
    }
    return bytes;
}

std::string percentEncoded(std::string_view bytes) {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(bytes.size());
    for (unsigned char byte : bytes) {
        if (isUnreserved(byte)) {
            text += static_cast<char>(byte);
        } else {
            text += '%';
            text += digits[byte >> 4];
            text += digits[byte & 15];
        }
    }
    return text;
}

Url Url::file(std::string_view path) {
    return file(path, !path.empty() && path.back() == '/');
}

Url Url::file(std::string_view path, bool isDirectory) {
    auto const bare = withoutTrailingSlashes(path);
    return Url(std::string(bare), isDirectory || bare == "/");
}

std::optional<Url> Url::parse(std::string_view text) {
    if (!text.empty() && text.front() == '/')
        return file(text);
    auto const colon = text.find(':');
    if (colon == std::string_view::npos || !isSchemeName(text.substr(0, colon)))
        return std::nullopt;
    std::string scheme(text.substr(0, colon));
    for (char& letter : scheme)
        letter = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    auto rest = text.substr(colon + 1);
    if (scheme == "file") {
        if (rest.starts_with("//")) {
            rest.remove_prefix(2);
            auto const slash = rest.find('/');
            if (slash == std::string_view::npos)
                return std::nullopt;
            auto const host = rest.substr(0, slash);
            if (!host.empty() && host != "localhost" && host.find('.') != std::string_view::npos)
                return std::nullopt;
            rest.remove_prefix(slash);
        }
        if (rest.empty() || rest.front() != '/')
            return std::nullopt;
        return file(percentDecoded(rest.substr(0, rest.find_first_of("?#"))));
    }
    Url url(std::string(rest), !rest.empty() && rest.back() == '/');
    url.m_scheme = std::make_shared<std::string const>(std::move(scheme));
    return url;
}

std::string Url::lastPathComponent() const {
    auto const path = withoutTrailingSlashes(m_path);
    if (path == "/")
        return "/";
    auto const slash = path.rfind('/');
    return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

std::string Url::pathExtension() const {
    auto const name = lastPathComponent();
    auto const dot = name.rfind('.');
    return dot == std::string::npos || dot == 0 || dot + 1 == name.size() ? std::string()
                                                                          : name.substr(dot + 1);
}

Url Url::deletingLastPathComponent() const {
    Url parent = *this;
    auto const path = withoutTrailingSlashes(m_path);
    auto const slash = path.rfind('/');
    parent.m_directory = true;
    if (slash == std::string_view::npos)
        parent.m_path = isFile() ? "/" : "";
    else
        parent.m_path = slash == 0 ? "/" : std::string(path.substr(0, slash));
    return parent;
}

Url Url::appending(std::string_view component, bool isDirectory) const {
    std::string path;
    path.reserve(m_path.size() + 1 + component.size());
    path = m_path;
    if (path.empty() || path.back() != '/')
        path += '/';
    path += component;
    Url url(std::move(path), isDirectory);
    url.m_scheme = m_scheme;
    return url;
}

Url Url::standardized() const {
    if (!isFile())
        return *this;
    std::vector<std::string_view> parts;
    std::string_view rest = m_path;
    while (!rest.empty()) {
        auto const slash = rest.find('/');
        auto const part = rest.substr(0, slash);
        rest = slash == std::string_view::npos ? std::string_view() : rest.substr(slash + 1);
        if (part == ".." && !parts.empty())
            parts.pop_back();
        else if (!part.empty() && part != "." && part != "..")
            parts.push_back(part);
    }
    std::string path;
    for (auto part : parts) {
        path += '/';
        path += part;
    }
    return file(path.empty() ? "/" : path, false);
}

Url Url::asDirectory() const {
    Url url = *this;
    url.m_directory = true;
    return url;
}

std::string Url::absoluteString() const {
    if (!isFile())
        return std::string(scheme()) + ":" + m_path;
    auto text = "file://" + percentEncoded(m_path);
    if (m_directory && m_path != "/")
        text += '/';
    return text;
}

bool Url::isWithin(Url const& folder) const {
    if (scheme() != folder.scheme())
        return false;
    auto const outer = withoutTrailingSlashes(folder.m_path);
    if (outer == "/" || m_path == outer)
        return true;
    return m_path.size() > outer.size() && m_path.starts_with(outer) && m_path[outer.size()] == '/';
}

} // namespace taliro
