#include "platform/linux/PhysicalKeys.h"

#include <array>
#include <cstring>
#include <xkbcommon/xkbcommon.h>

namespace taliro {

namespace {

constexpr std::array keys{
    PhysicalKey{0, "AC01"},   PhysicalKey{1, "AC02"},   PhysicalKey{2, "AC03"},   PhysicalKey{3, "AC04"},
    PhysicalKey{4, "AC06"},   PhysicalKey{5, "AC05"},   PhysicalKey{6, "AB01"},   PhysicalKey{7, "AB02"},
    PhysicalKey{8, "AB03"},   PhysicalKey{9, "AB04"},   PhysicalKey{10, "LSGT"},  PhysicalKey{11, "AB05"},
    PhysicalKey{12, "AD01"},  PhysicalKey{13, "AD02"},  PhysicalKey{14, "AD03"},  PhysicalKey{15, "AD04"},
    PhysicalKey{16, "AD06"},  PhysicalKey{17, "AD05"},  PhysicalKey{18, "AE01"},  PhysicalKey{19, "AE02"},
    PhysicalKey{20, "AE03"},  PhysicalKey{21, "AE04"},  PhysicalKey{22, "AE06"},  PhysicalKey{23, "AE05"},
    PhysicalKey{24, "AE12"},  PhysicalKey{25, "AE09"},  PhysicalKey{26, "AE07"},  PhysicalKey{27, "AE11"},
    PhysicalKey{28, "AE08"},  PhysicalKey{29, "AE10"},  PhysicalKey{30, "AD12"},  PhysicalKey{31, "AD09"},
    PhysicalKey{32, "AD07"},  PhysicalKey{33, "AD11"},  PhysicalKey{34, "AD08"},  PhysicalKey{35, "AD10"},
    PhysicalKey{36, "RTRN"},  PhysicalKey{37, "AC09"},  PhysicalKey{38, "AC07"},  PhysicalKey{39, "AC11"},
    PhysicalKey{40, "AC08"},  PhysicalKey{41, "AC10"},  PhysicalKey{42, "BKSL"},  PhysicalKey{43, "AB08"},
    PhysicalKey{44, "AB10"},  PhysicalKey{45, "AB06"},  PhysicalKey{46, "AB07"},  PhysicalKey{47, "AB09"},
    PhysicalKey{48, "TAB"},   PhysicalKey{49, "SPCE"},  PhysicalKey{50, "TLDE"},  PhysicalKey{51, "BKSP"},
    PhysicalKey{53, "ESC"},   PhysicalKey{54, "RWIN"},  PhysicalKey{55, "LWIN"},  PhysicalKey{56, "LFSH"},
    PhysicalKey{57, "CAPS"},  PhysicalKey{58, "LALT"},  PhysicalKey{59, "LCTL"},  PhysicalKey{60, "RTSH"},
    PhysicalKey{61, "RALT"},  PhysicalKey{62, "RCTL"},  PhysicalKey{64, "FK17"},  PhysicalKey{65, "KPDL"},
    PhysicalKey{67, "KPMU"},  PhysicalKey{69, "KPAD"},  PhysicalKey{71, "NMLK"},  PhysicalKey{72, "VOL+"},
    PhysicalKey{73, "VOL-"},  PhysicalKey{74, "MUTE"},  PhysicalKey{75, "KPDV"},  PhysicalKey{76, "KPEN"},
    PhysicalKey{78, "KPSU"},  PhysicalKey{79, "FK18"},  PhysicalKey{80, "FK19"},  PhysicalKey{81, "KPEQ"},
    PhysicalKey{82, "KP0"},   PhysicalKey{83, "KP1"},   PhysicalKey{84, "KP2"},   PhysicalKey{85, "KP3"},
    PhysicalKey{86, "KP4"},   PhysicalKey{87, "KP5"},   PhysicalKey{88, "KP6"},   PhysicalKey{89, "KP7"},
    PhysicalKey{90, "FK20"},  PhysicalKey{91, "KP8"},   PhysicalKey{92, "KP9"},   PhysicalKey{93, "AE13"},
    PhysicalKey{94, "AB11"},  PhysicalKey{96, "FK05"},  PhysicalKey{97, "FK06"},  PhysicalKey{98, "FK07"},
    PhysicalKey{99, "FK03"},  PhysicalKey{100, "FK08"}, PhysicalKey{101, "FK09"}, PhysicalKey{103, "FK11"},
    PhysicalKey{105, "FK13"}, PhysicalKey{106, "FK16"}, PhysicalKey{107, "FK14"}, PhysicalKey{109, "FK10"},
    PhysicalKey{111, "FK12"}, PhysicalKey{113, "FK15"}, PhysicalKey{114, "INS"},  PhysicalKey{115, "HOME"},
    PhysicalKey{116, "PGUP"}, PhysicalKey{117, "DELE"}, PhysicalKey{118, "FK04"}, PhysicalKey{119, "END"},
    PhysicalKey{120, "FK02"}, PhysicalKey{121, "PGDN"}, PhysicalKey{122, "FK01"}, PhysicalKey{123, "LEFT"},
    PhysicalKey{124, "RGHT"}, PhysicalKey{125, "DOWN"}, PhysicalKey{126, "UP"},
};

} // namespace

std::span<PhysicalKey const> physicalKeys() {
    return keys;
}

std::optional<std::uint32_t> nativeScanCode(xkb_keymap* keymap, std::int64_t keyCode) {
    auto const key = std::ranges::find(keys, keyCode, &PhysicalKey::keyCode);
    if (key == keys.end() || !keymap)
        return std::nullopt;
    auto const code = xkb_keymap_key_by_name(keymap, key->xkbName);
    return code == XKB_KEYCODE_INVALID ? std::nullopt : std::optional<std::uint32_t>(code);
}

std::optional<std::int64_t> physicalKeyCode(xkb_keymap* keymap, std::uint32_t nativeScanCode) {
    auto const* name = keymap ? xkb_keymap_key_get_name(keymap, nativeScanCode) : nullptr;
    if (!name)
        return std::nullopt;
    for (auto const& key : keys)
        if (std::strcmp(key.xkbName, name) == 0 ||
            xkb_keymap_key_by_name(keymap, key.xkbName) == nativeScanCode)
            return key.keyCode;
    return std::nullopt;
}

} // namespace taliro
