#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace taliro {

/// Where something is: a file's path, kept as the bytes the file system has, or an address of another scheme.
/// Equality is exact: `/a` and `/a/` differ, since the slash says that a folder is meant.
class Url {
public:
    /// The root folder.
    Url() : Url("/", true) {}

    /// A file URL. A slash at the end of `path` makes it a folder's; repeated ones are dropped.
    static Url file(std::string_view path);
    static Url file(std::string_view path, bool isDirectory);
    /// Reads `scheme://…` with percent escapes; an absolute path is taken as a file's. Nothing where it is
    /// neither.
    static std::optional<Url> parse(std::string_view text);

    std::string_view scheme() const { return m_scheme ? std::string_view(*m_scheme) : "file"; }
    bool isFile() const { return !m_scheme; }
    /// Host and path of another scheme than "file" hold here together: `//host/path`.
    /// A file's path has no slash at its end but for the root.
    std::string const& path() const { return m_path; }
    bool hasDirectoryPath() const { return m_directory; }

    /// The name, in the file system's own bytes; "/" for the root.
    std::string lastPathComponent() const;
    /// Without the dot, as written; empty where there is none.
    std::string pathExtension() const;
    /// The containing folder; the root contains itself.
    Url deletingLastPathComponent() const;
    Url appending(std::string_view component, bool isDirectory = false) const;
    /// Dots and repeated slashes removed and no slash at the end; symbolic links are not followed.
    Url standardized() const;
    /// The same place named as a folder's.
    Url asDirectory() const;
    /// Percent-escaped, as other programs take it.
    std::string absoluteString() const;
    /// Whether this is `folder` or lies somewhere below it, by name alone.
    bool isWithin(Url const& folder) const;

    bool operator==(Url const& other) const {
        return m_directory == other.m_directory && m_path == other.m_path && scheme() == other.scheme();
    }

private:
    Url(std::string path, bool isDirectory) : m_path(std::move(path)), m_directory(isDirectory) {}

    std::string m_path;
    std::shared_ptr<std::string const> m_scheme; ///< none for "file": there are many of those, and few others
    bool m_directory = false;
};

/// Percent escapes undone; a percent sign without two hex digits stays.
std::string percentDecoded(std::string_view text);
/// Every byte outside the unreserved set and `/` escaped.
std::string percentEncoded(std::string_view bytes);

} // namespace taliro

template <>
struct std::hash<taliro::Url> {
    std::size_t operator()(taliro::Url const& url) const noexcept {
        return std::hash<std::string>{}(url.path()) * 2 + (url.hasDirectoryPath() ? 1 : 0);
    }
};
