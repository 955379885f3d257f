#pragma once

#include <QPointer>
#include <QWidget>

#include <functional>

namespace taliro {

/// The one preferences window: made when first shown, only hidden when closed.
class PreferencesWindowController {
public:
    static PreferencesWindowController& shared();

    /// To the front, with the keyboard.
    void show();
    /// Null until first shown.
    QWidget* window() const { return m_window; }
    /// Called when the window is closed while it has the keyboard.
    std::function<void()> onClose;

private:
    PreferencesWindowController() = default;
    QWidget* makeWindow();

    QPointer<QWidget> m_window;
};

} // namespace taliro
