#pragma once

#include "foundation/Url.h"

#include <vector>

namespace taliro {

class MainQueue;

/// Posted when a drag of ours ended in another program.
inline constexpr char fileDragDidComplete[] = "Taliro.fileDragDidComplete";

/// How far the pointer moves, in points, before a press becomes a drag; up to that it is a click.
inline constexpr double dragThreshold = 3.0;

/// What is dragged from `leading`: the caller's choice with the item under the pointer in front, or that item
/// alone where nothing was chosen. An item that was not chosen is not added.
std::vector<Url> draggedUrls(Url const& leading, std::vector<Url> chosen);

enum class DragEnd { nothing, copied, linked, moved };

/// Tells what follows from a drag of `leading`: that its folder changed, and (in the next turn) that it ended
/// outside.
void fileDragEnded(Url const& leading, DragEnd end, MainQueue& queue);

} // namespace taliro
