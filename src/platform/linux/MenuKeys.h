#pragma once

#include "platform/HotKeys.h"

#include <QObject>

namespace taliro {

class KeyboardLayout;

/// Lets the hot keys see key events of our own windows before these do: a menu has the keyboard to itself, so
/// that system-wide keys are silent while one is open.
class MenuKeys : public QObject {
    Q_OBJECT

public:
    explicit MenuKeys(KeyboardLayout& layout) : m_layout(layout) {}

    /// Nothing stops it.
    void setHandler(HotKeys::RawKeyHandler handler);
    bool isActive() const { return static_cast<bool>(m_handler); }
    bool handle(HotKeys::RawKey const& key) const { return m_handler && m_handler(key); }

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    KeyboardLayout& m_layout;
    HotKeys::RawKeyHandler m_handler;
};

} // namespace taliro
