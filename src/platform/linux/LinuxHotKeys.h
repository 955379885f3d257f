#pragma once

#include "platform/HotKeys.h"

#include <memory>

namespace taliro {

class XKeyboard;
class XkbKeyboardLayout;

/// The hot keys that work in this session: the portal's under Wayland, where keys of other programs never
/// reach us, else those of the X server.
std::unique_ptr<HotKeys> makeHotKeys(XKeyboard& keyboard, XkbKeyboardLayout& layout);

} // namespace taliro
