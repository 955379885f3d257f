#include "KeyboardShortcuts/Shortcut.h"

#include "KeyboardShortcuts/RecordingRules.h"
#include "support/FakeKeyboard.h"

namespace taliro::testing {
namespace {

constexpr auto control = ModifierFlags::control;
constexpr auto option = ModifierFlags::option;
constexpr auto shift = ModifierFlags::shift;
constexpr auto command = ModifierFlags::command;
constexpr auto function = ModifierFlags::function;

TEST(Shortcut, ConvertsModifiersBothWaysAndDropsTheRest) {
    struct Case {
        ModifierFlags flags;
        std::int64_t carbon;
    };
    for (auto const& [flags, carbon] :
         {Case{control, 0x1000}, Case{option, 0x800}, Case{shift, 0x200}, Case{command, 0x100},
          Case{function, 0x20000}, Case{control | option | shift | command | function, 0x21B00}}) {
        EXPECT_EQ(flags.carbon(), carbon);
        EXPECT_EQ(ModifierFlags::fromCarbon(carbon), flags);
    }
    EXPECT_EQ(Shortcut(35, 0xFFFFFFFF).carbonModifiers(), 0x21B00);
    EXPECT_EQ(Shortcut(35, -1).carbonModifiers(), 0x21B00);
    EXPECT_EQ(Shortcut(Key::p, ModifierFlags{~0ull}).carbonModifiers(), 0x21B00);
}

TEST(Shortcut, ReadsAsPeopleWriteIt) {
    struct Case {
        Key key;
        ModifierFlags modifiers;
        char const* text;
    };
    FakeKeyboardLayout layout;
    layout.typed[36] = "must not be asked for";
    layout.typed[1] = "ab";
    for (auto const& [key, modifiers, text] :
         {Case{Key::p, control | option | command, "⌃⌥⌘P"}, Case{Key::return_, command | shift, "⇧⌘↩"},
          Case{Key::f5, {}, "F5"}, Case{Key::keypad1, option, "⌥1⃣"},
          Case{Key::space, control | option | shift | command | function, "⌃⌥⇧⌘🌐︎Space"},
          Case{Key::help, command, "⌘?⃝"}, Case{Key::keypadClear, {}, "☒⃣"}, Case{Key::keypadEnter, {}, "↩⃣"},
          Case{Key::keypadDecimal, {}, ".⃣"}, Case{Key::end, {}, "↘"}, Case{Key::f20, shift, "⇧F20"},
          Case{Key::backtick, command, "⌘`"},
          Case{Key{10}, command, "⌘Ss"},       // one letter whose capital is two
          Case{Key::mute, command, "⌘\uFFFD"}, // types nothing
          Case{Key::s, command, "⌘\uFFFD"},    // types two characters
          Case{Key{-1}, {}, "\uFFFD"}, Case{Key{0x10000}, {}, "\uFFFD"}})
        EXPECT_EQ(Shortcut(key, modifiers).presentableDescription(layout), text);
}

TEST(Shortcut, ComesFromKeysGoingDownOrUpWithoutTheFunctionFlag) {
    using Type = KeyEvent::Type;
    auto const expected = Shortcut(Key::upArrow, command);
    for (auto type : {Type::keyDown, Type::keyUp})
        EXPECT_EQ(Shortcut::fromEvent({type, Key::upArrow, command | function | ModifierFlags::numericPad}),
                  expected);
    EXPECT_FALSE(Shortcut::fromEvent({Type::other, Key::upArrow, command}));
}

TEST(Shortcut, IsStoredAsJson) {
    EXPECT_EQ(encode(Shortcut(35, 6400)), R"({"carbonKeyCode":35,"carbonModifiers":6400})");
    struct Case {
        char const* text;
        std::optional<Shortcut> shortcut;
    };
    for (auto const& [text, shortcut] :
         {Case{R"({"carbonKeyCode":35,"carbonModifiers":6400})", Shortcut(35, 6400)},
          Case{R"( { "carbonModifiers" : 6400 , "carbonKeyCode" : 35, "other": [1] } )", Shortcut(35, 6400)},
          Case{R"({"carbonKeyCode":35.0,"carbonModifiers":-1})", Shortcut(35, 0x21B00)},
          Case{R"({"carbonKeyCode":-9223372036854775808,"carbonModifiers":0})", Shortcut(INT64_MIN, 0)},
          Case{R"({"carbonKeyCode":9223372036854775808,"carbonModifiers":0})", {}},
          Case{R"({"carbonKeyCode":1e99,"carbonModifiers":0})", {}},
          Case{R"({"carbonKeyCode":35.5,"carbonModifiers":0})", {}},
          Case{R"({"carbonKeyCode":"35","carbonModifiers":0})", {}},
          Case{R"({"carbonKeyCode":null,"carbonModifiers":0})", {}},
          Case{R"({"carbonKeyCode":true,"carbonModifiers":0})", {}}, Case{R"({"carbonKeyCode":35})", {}},
          Case{R"([35,6400])", {}}, Case{R"({"carbonKeyCode":35,)", {}}, Case{"false", {}}, Case{"", {}},
          Case{"\xff", {}}})
        EXPECT_EQ(decodeShortcut(text), shortcut) << text;
    EXPECT_FALSE(decodeShortcut(std::string(100000, '[')));
}

TEST(RecordingRules, AreAskedInOrder) {
    using Kind = RecordingVerdict::Kind;
    constexpr auto locks = ModifierFlags::capsLock | ModifierFlags::numericPad;
    struct Case {
        Key key;
        ModifierFlags modifiers;
        Kind kind;
        bool forbidsOptionAlone = false;
    };
    RecordingSurroundings surroundings;
    surroundings.menuItemWithMatchingShortcut = [](Shortcut const& shortcut) {
        return shortcut == Shortcut(Key::q, command) ? std::optional<std::string>("Quit") : std::nullopt;
    };
    surroundings.systemShortcuts = [] {
        return std::vector{Shortcut(Key::d, command), Shortcut(Key::q, command), Shortcut(Key::f12, {}),
                           Shortcut(Key::f12, command), Shortcut(Key::x, option)};
    };
    for (auto const& [key, modifiers, kind, forbids] : {
             Case{Key::rightControl, control, Kind::passOn},
             Case{Key::capsLock, {}, Kind::passOn},
             Case{Key::tab, locks, Kind::endAndPassOn},
             Case{Key::tab, shift, Kind::beep},
             Case{Key::tab, control, Kind::store},
             Case{Key::escape, {}, Kind::end},
             Case{Key::escape, command, Kind::store},
             Case{Key::delete_, locks, Kind::clear},
             Case{Key::deleteForward, {}, Kind::clear},
             Case{Key::delete_, option, Kind::store},
             Case{Key::p, {}, Kind::beep},
             Case{Key::p, locks, Kind::beep},
             Case{Key::p, shift, Kind::beep},
             Case{Key::upArrow, function, Kind::beep},
             Case{Key::p, control | option | command, Kind::store},
             Case{Key::f5, {}, Kind::store},
             Case{Key::f20, shift, Kind::store},
             Case{Key::q, command, Kind::usedByMenuItem},
             Case{Key::x, option, Kind::usedBySystem},
             Case{Key::x, option, Kind::disallowed, true},
             Case{Key::y, option | shift, Kind::disallowed, true},
             Case{Key::y, option | control, Kind::store, true},
             Case{Key::y, option | shift, Kind::store},
             Case{Key::d, command, Kind::usedBySystem},
             Case{Key::f12, {}, Kind::store},
             Case{Key::f12, command, Kind::usedBySystem},
         }) {
        surroundings.forbidsOptionAlone = forbids;
        auto const verdict = judge({KeyEvent::Type::keyDown, key, modifiers}, surroundings);
        EXPECT_EQ(verdict.kind, kind) << std::to_underlying(key) << " with " << modifiers.rawValue;
        if (kind == Kind::store) {
            EXPECT_EQ(verdict.shortcut, Shortcut(key, modifiers.without(locks)));
        }
        if (kind == Kind::usedByMenuItem) {
            EXPECT_EQ(verdict.menuItemTitle, "Quit");
        }
    }
}

} // namespace
} // namespace taliro::testing
