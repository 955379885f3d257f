#include "platform/linux/X11Struts.h"

#include <algorithm>

namespace taliro {

namespace {

/// In the property's order: how far each edge's strut reaches in, then from where to where along the edge.
enum Part {
    left,
    right,
    top,
    bottom,
    leftFrom,
    leftTo,
    rightFrom,
    rightTo,
    topFrom,
    topTo,
    bottomFrom,
    bottomTo
};

} // namespace

std::vector<X11Strut> struts(X11Connection& x) {
    std::vector<xcb_get_property_cookie_t> asked;
    auto const property = x.atom("_NET_WM_STRUT_PARTIAL");
    for (auto const window : x.values(x.root(), x.atom("_NET_CLIENT_LIST")))
        asked.push_back(
            xcb_get_property(x, false, window, property, XCB_ATOM_CARDINAL, 0, std::tuple_size_v<X11Strut>));
    std::vector<X11Strut> found;
    for (auto const& cookie : asked) {
        Reply<xcb_get_property_reply_t> const reply(xcb_get_property_reply(x, cookie, nullptr));
        if (!reply || reply->format != 32 || reply->value_len != std::tuple_size_v<X11Strut>)
            continue;
        auto const* first = static_cast<std::uint32_t const*>(xcb_get_property_value(reply.get()));
        auto& strut = found.emplace_back();
        std::copy_n(first, strut.size(), strut.begin());
    }
    return found;
}

Rect visiblePart(Rect screen, Size desktop, std::vector<X11Strut> const& struts) {
    double fromX = screen.x;
    double toX = screen.maxX();
    double fromY = screen.y;
    double toY = screen.maxY();
    // A strut is told from the desktop's edge: one that reaches through other screens only is theirs.
    auto const isWithin = [](double edge, double from, double to) { return edge > from && edge < to; };
    for (auto const& strut : struts) {
        bool const besideLeft = strut[leftFrom] < screen.maxY() && strut[leftTo] >= screen.y;
        bool const besideRight = strut[rightFrom] < screen.maxY() && strut[rightTo] >= screen.y;
        bool const alongTop = strut[topFrom] < screen.maxX() && strut[topTo] >= screen.x;
        bool const alongBottom = strut[bottomFrom] < screen.maxX() && strut[bottomTo] >= screen.x;
        if (besideLeft && isWithin(strut[left], fromX, toX))
            fromX = strut[left];
        if (besideRight && isWithin(desktop.width - strut[right], fromX, toX))
            toX = desktop.width - strut[right];
        if (alongTop && isWithin(strut[top], fromY, toY))
            fromY = strut[top];
        if (alongBottom && isWithin(desktop.height - strut[bottom], fromY, toY))
            toY = desktop.height - strut[bottom];
    }
    return {fromX, fromY, toX - fromX, toY - fromY};
}

} // namespace taliro
