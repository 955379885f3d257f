#pragma once

#include "KeyboardShortcuts/Shortcut.h"
#include "foundation/Subscription.h"

#include <QWidget>

#include <optional>

namespace taliro {

class KeyboardShortcuts;
class PushButton;

/// The global shortcut: records another, and goes back to the one it was at first.
class ShortcutRow : public QWidget {
    Q_OBJECT

public:
    explicit ShortcutRow(KeyboardShortcuts& shortcuts, QWidget* parent = nullptr);

private:
    bool isDefault() const;
    void setShortcut(std::optional<Shortcut> const& shortcut);
    void reset();

    KeyboardShortcuts& m_shortcuts;
    std::optional<Shortcut> m_shortcut;
    PushButton* m_reset;
    Subscription m_subscription;
};

} // namespace taliro
