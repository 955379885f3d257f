#pragma once

#include "foundation/Subscription.h"
#include "foundation/Text.h"
#include "foundation/Url.h"
#include "platform/Picture.h"
#include "platform/Screens.h"
#include "platform/Thumbnailer.h"

#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace taliro {

struct Platform;

/// The small thumbnails seen so far, by file and size. Main thread only.
class ThumbnailCache {
public:
    explicit ThumbnailCache(Platform& platform);
    static ThumbnailCache& shared();

    /// The finished thumbnail; nothing, and nothing done, where there is none yet. `size` in points.
    std::optional<Picture> cached(Url const& url, double size) const;
    /// Asks for a thumbnail. `completion` is called once there is one: at once if it is known, never on
    /// failure, and never while an earlier request for the same is under way.
    void load(Url const& url, double size, std::function<void(Picture const&)> completion);
    /// Takes back what was asked for and is not wanted any more; it may be asked for again.
    void cancelExcept(std::unordered_set<Url> const& wanted);
    /// Says when the file was changed last. What is known of an earlier content is dropped.
    void noteModified(Url const& url, std::optional<Date> modified);

    /// The address, "|" and the size without its fraction.
    static std::string key(Url const& url, double size);

private:
    struct Inflight {
        Url url;
        Subscription request;
    };

    Platform& m_platform;
    std::unordered_map<std::string, Picture> m_cache;
    std::unordered_map<std::string, Inflight> m_inflight;
    struct Known {
        std::optional<Date> modified;
        std::unordered_set<std::string> keys;
    };
    std::unordered_map<Url, Known> m_known;
};

/// The scale of the main screen; 2 where there is no screen.
double backingScale(Screens& screens);

/// The size at which an image of size `image` fills `box` but for a margin of 6 points around, its
/// proportions kept. Small images grow; one without a size is drawn as it is.
Size fittedImage(Size image, Size box);

} // namespace taliro
