// Going to a folder by typing its path.

#include "desktop/Desktop.h"

#include <gtest/gtest.h>

#define explicit explicit_ // The header has a field of this name.
#include <xcb/xkb.h>
#undef explicit

namespace taliro::testing {
namespace {

/// Hears when the server rings its bell.
class Bell {
public:
    explicit Bell(std::string const& display) : m_connection(xcb_connect(display.c_str(), nullptr)) {
        free(xcb_xkb_use_extension_reply(m_connection, xcb_xkb_use_extension(m_connection, 1, 0), nullptr));
        constexpr std::uint16_t bell = XCB_XKB_EVENT_TYPE_BELL_NOTIFY;
        xcb_xkb_select_events(m_connection, XCB_XKB_ID_USE_CORE_KBD, bell, 0, bell, 0, 0, nullptr);
        free(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection),
                                       nullptr)); // Done by now.
    }
    ~Bell() { xcb_disconnect(m_connection); }
    Bell(Bell const&) = delete;
    Bell& operator=(Bell const&) = delete;

    bool rings() {
        auto const first = xcb_get_extension_data(m_connection, &xcb_xkb_id)->first_event;
        return waitFor([&] {
            std::unique_ptr<xcb_generic_event_t, decltype(&free)> const event(
                xcb_poll_for_event(m_connection), &free);
            // Its kind is the second byte of each of the extension's events.
            return event && (event->response_type & 0x7F) == first && event->pad0 == XCB_XKB_BELL_NOTIFY;
        });
    }

private:
    xcb_connection_t* m_connection;
};

struct GoTo : ::testing::Test {
    Desktop desktop;
    std::optional<Program> program;
    Accessible field;

    void start() {
        desktop.write("Documents/Letters/inside.txt");
        desktop.makeFolder("Documents/Lists");
        desktop.makeFolder("Downloads");
        desktop.write("Docs");
        program.emplace(desktop);
        desktop.display().expectWindow("panel");
        program->tree().expect("", "Documents");
    }
    void open(std::string const& keys) {
        desktop.display().key(keys);
        field = program->tree().expect("text", "Go to folder");
        EXPECT_TRUE(waitFor([&] { return field.has(Accessible::State::focused); }));
    }
    std::string inHome(std::string const& path) const { return (desktop.home() / path).string(); }
    bool fieldHolds(std::string const& text) const {
        return waitFor([&] { return field.text().toStdString() == text; });
    }
    std::vector<std::string> suggestions() {
        std::vector<std::string> names;
        auto const list = program->tree().find("list", "Suggestions");
        if (list.isShowing())
            for (auto const& row : list.children())
                names.push_back(row.name().toStdString());
        return names;
    }
    bool suggests(std::vector<std::string> const& names) {
        return waitFor([&] { return suggestions() == names; });
    }
    bool isClosed() { return program->tree().waitUntilGone("text", "Go to folder"); }
};

TEST_F(GoTo, CompletesAndGoesThere) {
    start();
    auto& display = desktop.display();
    open("Control+Shift+g");
    EXPECT_TRUE(fieldHolds(inHome("")));
    EXPECT_TRUE(suggests({inHome("Documents"), inHome("Downloads")}));

    display.type("doc");
    EXPECT_TRUE(suggests({inHome("Documents")})) << "folders alone, whatever the case";
    display.key("Down");
    display.key("Return");
    EXPECT_TRUE(fieldHolds(inHome("Documents/")));
    EXPECT_TRUE(suggests({inHome("Documents/Letters"), inHome("Documents/Lists")}));
    display.type("Letters");
    EXPECT_TRUE(fieldHolds(inHome("Documents/Letters")));
    display.key("Return");
    program->tree().expect("", "inside.txt");
    EXPECT_TRUE(isClosed());

    open("Super+Shift+g");
    EXPECT_TRUE(fieldHolds(inHome("Documents/Letters/")));
    auto const recent = program->tree().expect("", "Recent paths").place();
    auto const windows = display.windows().size();
    display.click(recent.midX(), recent.midY());
    EXPECT_TRUE(waitFor([&] { return display.windows().size() > windows; }));
    display.key("Down"); // the menu's first entry
    display.key("Return");
    EXPECT_TRUE(fieldHolds(inHome("Documents/Letters")));
}

TEST_F(GoTo, StaysOpenOverWhatIsNoFolderUntilEscape) {
    start();
    auto& display = desktop.display();
    program->tree().expect("", "Go to folder… (⌘⇧G)").act();
    field = program->tree().expect("text", "Go to folder");
    EXPECT_TRUE(waitFor([&] { return field.has(Accessible::State::focused); }));
    display.type("Docs");
    EXPECT_TRUE(suggests({}));
    Bell bell(desktop.displayName());
    display.key("Return");
    EXPECT_TRUE(bell.rings());
    display.type("x");
    EXPECT_TRUE(fieldHolds(inHome("Docsx"))) << "a file is no folder to go to";
    display.key("Escape");
    EXPECT_TRUE(isClosed());
    EXPECT_TRUE(display.window("panel")) << "Escape closes the bar alone";
    program->tree().expect("", "Documents");
}

TEST_F(GoTo, RemembersWhatWasTypedWhenStartedAnew) {
    start();
    auto& display = desktop.display();
    for (auto const* typed : {"~/Downloads", "~/Documents"}) {
        open("Control+Shift+g");
        display.key("Control+a");
        display.type(typed);
        EXPECT_TRUE(fieldHolds(typed));
        display.key("Return");
        EXPECT_TRUE(isClosed());
    }
    program->tree().expect("list item", "Letters");
    program->process().terminate();
    program.emplace(desktop);
    display.expectWindow("panel");
    program->tree().expect("", "Documents");
    open("Control+Shift+g");
    auto const recent = program->tree().expect("", "Recent paths").place();
    auto const windows = display.windows().size();
    display.click(recent.midX(), recent.midY());
    EXPECT_TRUE(waitFor([&] { return display.windows().size() > windows; }));
    display.key("Down");
    display.key("Down"); // the one before the last
    display.key("Return");
    EXPECT_TRUE(fieldHolds("~/Downloads"));
}

} // namespace
} // namespace taliro::testing
