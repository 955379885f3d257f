#include "platform/linux/XkbKeyboardLayout.h"

#include "KeyboardShortcuts/Key.h"
#include "keyboard/Typist.h"
#include "keyboard/XServer.h"
#include "support/WaitUntil.h"

namespace taliro::testing {
namespace {

TEST(XkbKeyboardLayout, TellsWhatKeysTypeInTheCurrentLayout) {
    struct Case {
        std::vector<std::string> setxkbmap;
        std::uint8_t layout; ///< which of them is in use
        Key key;
        std::optional<std::string> typed;
    };
    XKeyboard keyboard;
    XkbKeyboardLayout layout(keyboard);
    Typist typist;
    int changes = 0;
    auto const counter = layout.observeChanges([&] { ++changes; });
    for (auto const& [arguments, current, key, typed] : {
             Case{{"-layout", "de"}, 0, Key::z, "y"},
             Case{{"-layout", "us"}, 0, Key::z, "z"},
             Case{{"-layout", "us"}, 0, Key::mute, {}},
             Case{{"-layout", "de"}, 0, Key::semicolon, "ö"},
             Case{{"-layout", "de"}, 0, Key::backtick, "^"}, // a dead key
             Case{{"-layout", "fr"}, 0, Key::q, "a"},
             Case{{"-layout", "fr"}, 0, Key::one, "&"},
             Case{{"-layout", "us", "-variant", "dvorak"}, 0, Key::q, "'"},
             Case{{"-layout", "ru", "-variant", ""}, 0, Key::q, "q"}, // the US layout stands in
             Case{{"-layout", "ru,fr"}, 0, Key::q, "a"},              // the user's other one does
             Case{{"-layout", "us,de"}, 1, Key::y, "z"},              // switched to
             Case{{"-layout", "us,ru,de"}, 1, Key::y, "z"},           // the next that types letters
             Case{{"-layout", "us"}, 0, Key{9999}, {}},
             Case{{"-layout", "us"}, 0, Key{-1}, {}},
         }) {
        changes = 0;
        std::vector<std::string> command{"setxkbmap"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        ASSERT_EQ(run(command), 0);
        typist.lockLayout(current);
        auto const named = ::testing::PrintToString(arguments);
        EXPECT_TRUE(waitUntil([&] { return layout.character(static_cast<std::int64_t>(key)) == typed; }))
            << named << " types " << layout.character(static_cast<std::int64_t>(key)).value_or("nothing");
    }
    EXPECT_EQ(layout.keyCode(Typist::p), static_cast<std::int64_t>(Key::p));
    EXPECT_EQ(layout.keyCode(Typist::f5), static_cast<std::int64_t>(Key::f5));
    EXPECT_FALSE(layout.keyCode(0));
    EXPECT_FALSE(layout.keyCode(300));
    EXPECT_EQ(layout.keyCodeTyping("Delete"), static_cast<std::int64_t>(Key::deleteForward));
    EXPECT_EQ(layout.keyCodeTyping("D"), static_cast<std::int64_t>(Key::d));
    EXPECT_EQ(layout.keyCodeTyping("exclam"), static_cast<std::int64_t>(Key::one));
    EXPECT_FALSE(layout.keyCodeTyping("no such key"));
}

} // namespace
} // namespace taliro::testing
