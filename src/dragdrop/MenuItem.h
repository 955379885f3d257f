#pragma once

#include <functional>
#include <string>

namespace taliro {

/// One line of a context menu; a separator where the title is empty.
struct MenuItem {
    std::string title;
    std::function<void()> action;
};

} // namespace taliro
