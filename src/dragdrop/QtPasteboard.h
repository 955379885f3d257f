#pragma once

#include "dragdrop/Pasteboard.h"

#include <Qt>

class QDropEvent;
class QMimeData;

namespace taliro {

/// What a drag over one of our widgets carries; valid as long as the event.
Pasteboard pasteboardOf(QMimeData const& data);

/// Control or the logo key: what the command key is inside our windows.
bool isCommandHeld(Qt::KeyboardModifiers modifiers);

/// Answers the drag's source with the proposed operation, as far as the source allows: files that it won't
/// have moved are copied.
DropOperation answerWithOperation(QDropEvent& event, bool carriesFiles);

} // namespace taliro
