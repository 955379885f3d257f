#include "KeyboardShortcuts/Shortcut.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>

namespace taliro {

namespace {

using Json = nlohmann::json;

/// A whole number that fits; 35.0 is one.
std::optional<std::int64_t> wholeNumber(Json const& object, char const* member) {
    auto const found = object.find(member);
    if (found == object.end() || !found->is_number())
        return std::nullopt;
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    if (found->is_number_unsigned()) {
        auto const number = found->get<std::uint64_t>();
        return number <= static_cast<std::uint64_t>(most) ? std::optional<std::int64_t>(number)
                                                          : std::nullopt;
    }
    if (found->is_number_integer())
        return found->get<std::int64_t>();
    auto const real = found->get<double>();
    if (std::trunc(real) != real || std::abs(real) >= 0x1p63)
        return std::nullopt;
    return static_cast<std::int64_t>(real);
}

} // namespace

std::string encode(Shortcut const& shortcut) {
    return Json{{"carbonKeyCode", shortcut.carbonKeyCode()}, {"carbonModifiers", shortcut.carbonModifiers()}}
        .dump();
}

std::optional<Shortcut> decodeShortcut(std::string const& json) {
    auto const object = Json::parse(json, nullptr, false);
    if (!object.is_object())
        return std::nullopt;
    auto const keyCode = wholeNumber(object, "carbonKeyCode");
    auto const modifiers = wholeNumber(object, "carbonModifiers");
    if (!keyCode || !modifiers)
        return std::nullopt;
    return Shortcut(*keyCode, *modifiers);
}

} // namespace taliro
