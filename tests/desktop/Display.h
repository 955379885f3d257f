#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace taliro::testing {

struct Place {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    int maxX() const { return x + width; }
    int maxY() const { return y + height; }
    int midX() const { return x + width / 2; }
    int midY() const { return y + height / 2; }
    bool operator==(Place const&) const = default;
};
std::ostream& operator<<(std::ostream& stream, Place const& place);

/// A window as the X server knows it.
struct WindowInfo {
    xcb_window_t id = XCB_NONE;
    std::string name;  ///< its title
    std::string klass; ///< the second part of WM_CLASS
    std::string role;  ///< WM_WINDOW_ROLE
    Place place;       ///< on the screen, without a frame
    bool isManaged = false;
};

/// The test's own connection to the display under test: looks at windows, presses keys, moves the pointer.
class Display {
public:
    explicit Display(std::string const& name);
    ~Display();
    Display(Display const&) = delete;
    Display& operator=(Display const&) = delete;

    xcb_connection_t* connection() const { return m_connection; }
    xcb_window_t root() const { return m_screen->root; }
    xcb_atom_t atom(std::string_view name);
    std::vector<std::uint32_t> values(xcb_window_t window, std::string_view property);
    std::string text(xcb_window_t window, std::string_view property);
    bool hasOwner(std::string_view selection);
    /// Waits until the server did all that was asked.
    void sync();

    /// Every window that can be seen, the lowest first.
    std::vector<WindowInfo> windows();
    std::optional<WindowInfo> window(std::string_view role);
    /// The window with this role once it can be seen; a failure of the test where it doesn't come.
    WindowInfo expectWindow(std::string_view role);
    bool waitUntilGone(std::string_view role);
    xcb_window_t focused();
    /// The innermost window under the pointer: who gets a press there.
    xcb_window_t underPointer();
    /// Of a point of the screen, as it is shown.
    std::uint32_t colour(int x, int y);
    /// Whether some program has the keyboard to itself, as menus do.
    bool isKeyboardGrabbed();
    bool hasState(xcb_window_t window, std::string_view state);

    /// "Return", "a", "Control+Shift+z": held in order, let go in reverse. Names are those of keysyms.
    void key(std::string_view chord);
    void keyDown(std::string_view name) { sendKey(name, true); }
    void keyUp(std::string_view name) { sendKey(name, false); }
    /// ASCII text.
    void type(std::string_view text);
    void move(int x, int y);
    void button(int number, bool down);
    void click(int x, int y, int button = 1, int times = 1);
    /// With the left button held, in steps small enough for a program to follow.
    void drag(int fromX, int fromY, int toX, int toY);

private:
    void collect(xcb_window_t window, bool isManaged, std::vector<WindowInfo>& found);
    void sendButton(int number, bool down);
    void sendKey(std::string_view name, bool down);
    void sendKeysym(std::uint32_t keysym, bool down);

    xcb_connection_t* m_connection;
    xcb_screen_t* m_screen;
    xcb_keycode_t m_minKeycode;
    int m_symsPerKeycode = 0;
    std::vector<std::uint32_t> m_keysyms;
};

/// A window of another program. It is a plain one, which the window manager frames.
class ForeignWindow {
public:
    ForeignWindow(std::string const& display, Place const& place);
    ~ForeignWindow();
    ForeignWindow(ForeignWindow const&) = delete;
    ForeignWindow& operator=(ForeignWindow const&) = delete;

private:
    xcb_connection_t* m_connection;
};

} // namespace taliro::testing
