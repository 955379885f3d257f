#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <QImage>

namespace taliro {

/// What a stored thumbnail must match to be the file's.
struct FileStamp {
    std::string path;
    std::string uri;
    std::int64_t modified = 0; ///< seconds since 1970
    std::int64_t size = 0;     ///< bytes

    /// Nothing where there is no plain file at `path`.
    static std::optional<FileStamp> of(std::string const& path);
};

/// The thumbnails that all programs of the desktop share, as the Thumbnail Managing Standard lays them down
/// (freedesktop.org, 0.9): PNG files named by the MD5 of the file's address, in a folder for each size.
/// Any thread may call.
class ThumbnailStore {
public:
    /// `folder`: usually `~/.cache/thumbnails`.
    explicit ThumbnailStore(std::string folder) : m_folder(std::move(folder)) {}

    /// The longest side that the standard has for pictures of `pixels`: 128, 256, 512 or 1024.
    static int sizeFor(int pixels);

    /// A thumbnail of the file as it is now, with a longest side of at least `pixels` if the file has that
    /// many.
    std::optional<QImage> find(FileStamp const& file, int pixels) const;
    /// Keeps a thumbnail made for `size`. A failure to write is no one's loss.
    void store(FileStamp const& file, QImage image, int size) const;

    /// Whether this program has tried the file as it is now, in vain.
    bool hasFailed(FileStamp const& file) const;
    void storeFailure(FileStamp const& file) const;

private:
    std::string pathOf(FileStamp const& file, std::string const& folder) const;
    void write(FileStamp const& file, QImage& image, std::string const& folder) const;

    std::string m_folder;
};

} // namespace taliro
