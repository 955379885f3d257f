#pragma once

#include "foundation/Subscription.h"
#include "foundation/Url.h"
#include "platform/Picture.h"
#include "platform/Playback.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace taliro {

/// How a file is best shown large.
enum class PreviewKind { image, pages, text, markdown, folder, archive, sound, film, other };

struct PageRequest {
    Url file;
    int page = 0;   ///< counted from 0; pictures have one
    int width = 0;  ///< pixels that the page may take at most
    int height = 0; ///< pixels
};

struct PagePicture {
    Picture picture;
    int pages = 1;      ///< of the whole document
    int fullWidth = 0;  ///< pixels of an image at its own size; 0 for drawings and pages
    int fullHeight = 0; ///< pixels
};

struct TextPreview {
    std::string text;     ///< UTF-8
    std::string encoding; ///< the name of what the file was written in: "UTF-8", "windows-1252"
    bool truncated = false;
};

/// What is inside of a folder or an archive, as far as it has been counted.
struct ContentSummary {
    std::int64_t files = 0;
    std::int64_t folders = 0;
    std::int64_t bytes = 0;
    std::vector<std::string> names; ///< the first of the outermost ones
    bool finished = false;
    bool damaged = false; ///< the counting ended early: unreadable or broken
};

/// Large pictures and contents of one file, read in the background. Callbacks come on the main thread and end
/// with the returned subscription, which also ends the work.
class PreviewService {
public:
    virtual ~PreviewService() = default;

    /// Judged by the name, without reading the file; `text` also where the name says nothing.
    virtual PreviewKind previewKind(Url const& item, bool isDirectory) = 0;
    /// Nothing where the page can't be drawn. An image is never enlarged beyond its own size.
    [[nodiscard]] virtual Subscription page(PageRequest request,
                                            std::function<void(std::optional<PagePicture>)> completion) = 0;
    /// The start of a text, at most `limit` bytes of it; nothing where the file is unreadable or holds no
    /// text.
    [[nodiscard]] virtual Subscription text(Url const& file, std::size_t limit,
                                            std::function<void(std::optional<TextPreview>)> completion) = 0;
    /// `update` is called several times a second while counting and once when `finished`.
    [[nodiscard]] virtual Subscription summary(Url const& folderOrArchive,
                                               std::function<void(ContentSummary const&)> update) = 0;
    /// Plays a sound or a film, its pictures shrunk to `width` and `height` pixels.
    [[nodiscard]] virtual std::unique_ptr<Playback> playback(Url const& file, int width, int height,
                                                             PlaybackEvents events) = 0;
};

} // namespace taliro
