#pragma once

#include "platform/Screens.h"
#include "platform/linux/X11Connection.h"

namespace taliro {

/// What docks and panels keep to themselves along the edges of the whole desktop: the numbers of their
/// `_NET_WM_STRUT_PARTIAL`, in pixels.
using X11Strut = std::array<std::uint32_t, 12>;

std::vector<X11Strut> struts(X11Connection& x);

/// `screen` without what the struts take of it. All in pixels; `desktop` is all screens' size.
Rect visiblePart(Rect screen, Size desktop, std::vector<X11Strut> const& struts);

} // namespace taliro
