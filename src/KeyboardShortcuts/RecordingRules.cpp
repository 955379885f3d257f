#include "KeyboardShortcuts/RecordingRules.h"

#include <algorithm>

namespace taliro {

namespace {

using Kind = RecordingVerdict::Kind;

bool hasOptionAlone(Shortcut const& shortcut) {
    return (shortcut.carbonModifiers() & ~carbonMask::shift) == carbonMask::option;
}

bool isListed(Shortcut const& shortcut, std::vector<Shortcut> const& list) {
    return std::ranges::find(list, shortcut) != list.end();
}

/// Nothing where the key, pressed without modifiers, has no meaning of its own to the recorder.
std::optional<Kind> plainKey(Key key) {
    switch (key) {
    case Key::tab:
        return Kind::endAndPassOn;
    case Key::escape:
        return Kind::end;
    case Key::delete_:
    case Key::deleteForward:
        return Kind::clear;
    default:
        return std::nullopt;
    }
}

} // namespace

RecordingVerdict judge(KeyEvent const& event, RecordingSurroundings const& surroundings) {
    if (isModifierKey(event.key))
        return {Kind::passOn};
    auto const held = event.modifiers.without(ModifierFlags::capsLock | ModifierFlags::numericPad);
    if (held == ModifierFlags{})
        if (auto const kind = plainKey(event.key))
            return {*kind};
    auto const shortcut = Shortcut::fromEvent(event);
    if (!shortcut || !shortcut->isApartFromTyping())
        return {Kind::beep};
    if (auto const title = surroundings.menuItemWithMatchingShortcut(*shortcut))
        return {Kind::usedByMenuItem, shortcut, *title};
    if (surroundings.forbidsOptionAlone && hasOptionAlone(*shortcut))
        return {Kind::disallowed, shortcut};
    bool const isPlainF12 = *shortcut == Shortcut(Key::f12, {});
    if (!isPlainF12 && isListed(*shortcut, surroundings.systemShortcuts()))
        return {Kind::usedBySystem, shortcut};
    return {Kind::store, shortcut};
}

} // namespace taliro
