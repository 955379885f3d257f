#pragma once

#include "foundation/Url.h"

#include <functional>

namespace taliro {

class BrowserState;
class ItemView;
struct Platform;

/// What a view of files stands for, as drags and menus see it.
struct ItemViewFolder {
    std::function<Url()> shown;           ///< the folder listed
    std::function<void(Url const&)> open; ///< opens one of its folders, as a spring does
    std::function<void(bool)> onTargeted; ///< a drop would go into the folder listed; may be empty
};

/// Makes the view's items drag out, take drops and spring open, and gives items and background their context
/// menus.
void attachDragDrop(ItemView& view, ItemViewFolder folder, BrowserState& state, Platform& platform);

} // namespace taliro
