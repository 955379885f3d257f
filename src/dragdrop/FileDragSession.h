#pragma once

#include "foundation/Url.h"

#include <vector>

class QWidget;

namespace taliro {

struct Platform;

/// Starts a drag of files from a widget in the next turn, if the button is still down then. `chosen` is what
/// the selection says: see `draggedUrls`. The widget may go during the drag.
void startFileDrag(QWidget& from, Url const& leading, std::vector<Url> chosen, Platform& platform);

} // namespace taliro
