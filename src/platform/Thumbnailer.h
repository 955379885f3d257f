#pragma once

#include "foundation/Subscription.h"
#include "foundation/Url.h"
#include "platform/Picture.h"

#include <functional>
#include <optional>

namespace taliro {

struct ThumbnailRequest {
    Url file;
    int width = 0;  ///< pixels that the picture may take at most
    int height = 0; ///< pixels
};

/// Small pictures of what files contain, made in the background. The latest request comes first, since it is
/// for what is on the screen now; where too many wait, the oldest fails.
class Thumbnailer {
public:
    virtual ~Thumbnailer() = default;

    /// `completion` is called once, in a later turn of the main thread, with nothing where the file has no
    /// thumbnail; not at all once the returned subscription has ended, which also takes the request back.
    [[nodiscard]] virtual Subscription request(ThumbnailRequest request,
                                               std::function<void(std::optional<Picture>)> completion) = 0;
};

} // namespace taliro
