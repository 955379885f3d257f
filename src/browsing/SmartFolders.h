#pragma once

#include "foundation/Url.h"

namespace taliro {

/// Places that are browsed like folders but gathered from elsewhere.
namespace SmartFolders {

/// The files used last: "taliro:///recents".
inline Url const& recents() {
    static Url const url = *Url::parse("taliro:///recents");
    return url;
}
inline bool isSmart(Url const& url) {
    return url.scheme() == "taliro";
}

} // namespace SmartFolders

} // namespace taliro
