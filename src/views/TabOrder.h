#pragma once

class QWidget;

namespace taliro {

/// What the Tab key leads to from `current` in `window`, or where not `forward` Shift and Tab: the controls
/// follow one another as they are read, one container after the other, whenever they were made. Null where
/// there is no other.
QWidget* nextInTabOrder(QWidget const& window, QWidget const* current, bool forward);

} // namespace taliro
