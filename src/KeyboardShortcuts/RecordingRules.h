#pragma once

#include "KeyboardShortcuts/Shortcut.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace taliro {

/// What a recorder does with a key pressed while it records.
struct RecordingVerdict {
    enum class Kind {
        passOn,       ///< not for the recorder: a modifier key by itself
        endAndPassOn, ///< the key moves on to the next control
        end,
        clear,
        beep,           ///< and keep recording
        usedByMenuItem, ///< refused; `menuItemTitle` says by which
        disallowed,     ///< refused: option alone
        usedBySystem,   ///< the user may take `shortcut` nevertheless
        store,
    };
    Kind kind = Kind::passOn;
    std::optional<Shortcut> shortcut = {};
    std::string menuItemTitle = {};
};

/// What else listens to shortcuts. Asked only as far as the rules get.
struct RecordingSurroundings {
    std::function<std::optional<std::string>(Shortcut const&)> menuItemWithMatchingShortcut;
    std::function<std::vector<Shortcut>()> systemShortcuts;
    bool forbidsOptionAlone = false;
};

RecordingVerdict judge(KeyEvent const& event, RecordingSurroundings const& surroundings);

} // namespace taliro
