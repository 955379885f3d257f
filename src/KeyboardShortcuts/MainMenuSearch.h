#pragma once

#include "KeyboardShortcuts/Shortcut.h"

#include <QList>

class QAction;

namespace taliro {

/// The first item, depth first, whose key equivalent is `shortcut`; null where there is none. In our windows
/// Ctrl does what Super does, so a shortcut with Super meets an equivalent with either.
QAction* menuItemWithMatchingShortcut(QList<QAction*> const& items, Shortcut const& shortcut,
                                      KeyboardLayout& layout);

} // namespace taliro
