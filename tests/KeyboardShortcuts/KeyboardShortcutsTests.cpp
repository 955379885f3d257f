#include "KeyboardShortcuts/KeyboardShortcuts.h"

#include "foundation/NotificationCenter.h"
#include "support/FakePlatform.h"

namespace taliro::testing {
namespace {

constexpr auto key = "KeyboardShortcuts_togglePicker";
constexpr auto defaultJson = R"({"carbonKeyCode":35,"carbonModifiers":6400})";
Shortcut const other(Key::f5, {});

struct KeyboardShortcutsTest : ::testing::Test {
    FakePlatform fake;
    KeyboardShortcuts shortcuts{fake.userDefaults, fake.hotKeys, fake.keyboardLayout, fake.systemShortcuts};
    std::vector<std::string> changed; ///< names told by the notification
    Subscription observer = NotificationCenter::standard().observe(
        KeyboardShortcuts::shortcutByNameDidChange, [this](Notification const& notification) {
            changed.push_back(std::any_cast<Name>(notification.userInfo.at("name")).rawValue());
        });

    Name toggle() { return togglePicker(shortcuts); }
    bool press(Shortcut const& shortcut, HotKeys::Phase phase = HotKeys::Phase::pressed) {
        return fake.hotKeys.press(static_cast<std::uint32_t>(shortcut.carbonKeyCode()),
                                  static_cast<std::uint32_t>(shortcut.carbonModifiers()), phase);
    }
    std::vector<std::uint32_t> registeredIds() const {
        std::vector<std::uint32_t> ids;
        for (auto const& [id, combination] : fake.hotKeys.registered)
            ids.push_back(id);
        return ids;
    }
    /// What a call prints on standard output.
    template <typename Call>
    static std::string printed(Call call) {
        ::testing::internal::CaptureStdout();
        call();
        return ::testing::internal::GetCapturedStdout();
    }
};
using Ids = std::vector<std::uint32_t>;

TEST_F(KeyboardShortcutsTest, ADefaultIsStoredOnceAndStaysRemoved) {
    auto const name = toggle();
    EXPECT_EQ(fake.userDefaults.string(key), defaultJson);
    EXPECT_EQ(shortcuts.getShortcut(name), Shortcut(35, 0x1900));
    EXPECT_EQ(fake.hotKeys.registered,
              (std::map<std::uint32_t, FakeHotKeys::Combination>{{1, {35, 0x1900}}}));

    shortcuts.setShortcut({}, name);
    EXPECT_EQ(fake.userDefaults.object(key), PropertyValue{false});
    EXPECT_FALSE(shortcuts.getShortcut(toggle()));
    EXPECT_TRUE(fake.hotKeys.registered.empty());
    changed.clear();
    shortcuts.setShortcut({}, name);
    EXPECT_TRUE(changed.empty()) << "nothing was removed";

    shortcuts.reset({name});
    EXPECT_EQ(fake.userDefaults.string(key), defaultJson);
    EXPECT_EQ(changed, std::vector<std::string>{"togglePicker"});
    EXPECT_EQ(registeredIds(), Ids{2});
}

TEST_F(KeyboardShortcutsTest, ANameWithoutDefaultLeavesNothingBehind) {
    auto const name = shortcuts.name("plain");
    EXPECT_FALSE(shortcuts.userDefaultsContains(name));
    shortcuts.setShortcut(other, name);
    EXPECT_EQ(shortcuts.getShortcut(name), other);
    shortcuts.reset({name});
    EXPECT_FALSE(shortcuts.userDefaultsContains(name));
    EXPECT_EQ(changed, (std::vector<std::string>{"plain", "plain"}));
    EXPECT_EQ(shortcuts.name("plain", other), name) << "the text alone tells names apart";
}

TEST_F(KeyboardShortcutsTest, AStoreEditedByHandNeverGrabsTyping) {
    struct Case {
        PropertyValue stored;
        bool isShortcut;
        char const* line; ///< what registering it prints
    };
    using namespace std::string_literals;
    for (auto const& [stored, isShortcut, line] : {
             Case{{true}, false, ""},
             Case{{std::int64_t{35}}, false, ""},
             Case{{"⌃⌥⌘P"s}, false, ""},
             Case{{R"({"carbonKeyCode":35})"s}, false, ""},
             Case{{PropertyValue::Dictionary{{"carbonKeyCode", {std::int64_t{35}}}}}, false, ""},
             Case{{R"({"carbonKeyCode":35,"carbonModifiers":0})"s},
                  true,
                  "Error registering hotkey P: -9879\n"},
             Case{{R"({"carbonKeyCode":35,"carbonModifiers":512})"s},
                  true,
                  "Error registering hotkey ⇧P: -9879\n"},
             Case{{R"({"carbonKeyCode":4294967296,"carbonModifiers":256})"s},
                  true,
                  "Error registering hotkey ⌘\uFFFD: -9879\n"},
             Case{{R"({"carbonKeyCode":-1,"carbonModifiers":256})"s},
                  true,
                  "Error registering hotkey ⌘\uFFFD: -9879\n"},
             Case{{R"({"carbonKeyCode":59,"carbonModifiers":256})"s},
                  true,
                  "Error registering hotkey ⌘\uFFFD: -9879\n"},
         }) {
        FakePlatform hand;
        hand.userDefaults.values[key] = stored;
        KeyboardShortcuts edited(hand.userDefaults, hand.hotKeys, hand.keyboardLayout, hand.systemShortcuts);
        auto const output = printed([&] {
            auto const name = togglePicker(edited);
            EXPECT_EQ(edited.getShortcut(name).has_value(), isShortcut);
            edited.onKeyDown(name, [] {});
            edited.onKeyDown(name, [] {});
        });
        EXPECT_EQ(output, line);
        EXPECT_TRUE(hand.hotKeys.attempts.empty());
        EXPECT_EQ(hand.userDefaults.object(key), stored) << "stays until the next write";
    }
}

TEST_F(KeyboardShortcutsTest, HandlersAddUpInOrderForBothDirections) {
    auto const name = toggle();
    std::string calls;
    shortcuts.onKeyDown(name, [&] { calls += "a"; });
    shortcuts.onKeyDown(name, [&] { calls += "b"; });
    shortcuts.onKeyUp(name, [&] { calls += "u"; });
    EXPECT_EQ(fake.hotKeys.attempts, Ids{1}) << "registered already";
    {
        auto const stream = shortcuts.events(name, [&](KeyboardShortcuts::EventType type) {
            calls += type == KeyboardShortcuts::EventType::keyDown ? "(" : ")";
        });
        EXPECT_TRUE(press(Shortcut(35, 6400)));
        EXPECT_TRUE(press(Shortcut(35, 6400), HotKeys::Phase::released));
    }
    EXPECT_EQ(calls, "ab(u)");
    press(Shortcut(35, 6400));
    EXPECT_EQ(calls, "ab(u)ab");

    shortcuts.isPaused = true;
    EXPECT_TRUE(press(Shortcut(35, 6400))) << "swallowed, though nothing is done";
    EXPECT_EQ(calls, "ab(u)ab");
    EXPECT_FALSE(fake.hotKeys.handler(77, HotKeys::Phase::pressed)) << "not one of ours";
}

TEST_F(KeyboardShortcutsTest, NamesMayShareAShortcutAndHandlersMayChangeIt) {
    auto const first = toggle();
    auto const second = shortcuts.name("second");
    shortcuts.setShortcut(Shortcut(35, 6400), second);
    EXPECT_EQ(fake.hotKeys.attempts, Ids{1});
    int calls = 0;
    shortcuts.onKeyDown(first, [&] {
        ++calls;
        shortcuts.setShortcut(other, first);
        shortcuts.onKeyDown(first, [&] { calls += 100; });
    });
    shortcuts.onKeyDown(second, [&] { ++calls; });
    press(Shortcut(35, 6400));
    EXPECT_EQ(calls, 2);
    press(other);
    EXPECT_EQ(calls, 103);
}

TEST_F(KeyboardShortcutsTest, GivesHotKeysBackWhileDisabledOrInAMenu) {
    auto const name = toggle();
    auto const second = shortcuts.name("second");
    shortcuts.setShortcut(other, second);
    int calls = 0;
    shortcuts.onKeyDown(name, [&] { ++calls; });

    shortcuts.setEnabled(false);
    EXPECT_TRUE(fake.hotKeys.registered.empty());
    EXPECT_FALSE(fake.hotKeys.rawKeyHandler);
    shortcuts.setEnabled(true);
    EXPECT_EQ(registeredIds(), (Ids{1, 2}));

    auto& center = NotificationCenter::standard();
    center.post(KeyboardShortcuts::menuDidBeginTracking);
    EXPECT_TRUE(fake.hotKeys.registered.empty());
    ASSERT_TRUE(fake.hotKeys.rawKeyHandler);
    using Phase = HotKeys::RawKey::Phase;
    EXPECT_TRUE(fake.hotKeys.rawKeyHandler({Phase::down, 35, 0x1900 | 0x400})) << "caps lock doesn't count";
    EXPECT_TRUE(fake.hotKeys.rawKeyHandler({Phase::repeat, 35, 0x1900}));
    EXPECT_TRUE(fake.hotKeys.rawKeyHandler({Phase::up, 35, 0x1900}));
    EXPECT_FALSE(fake.hotKeys.rawKeyHandler({Phase::down, 35, 0}));
    EXPECT_EQ(calls, 1);

    // The other program that takes one meanwhile keeps it.
    fake.hotKeys.refuse = 10;
    auto const lines = printed([&] { center.post(KeyboardShortcuts::menuDidEndTracking); });
    EXPECT_EQ(lines, "Error registering hotkey ⌃⌥⌘P: 10\nError registering hotkey F5: 10\n");
    EXPECT_FALSE(fake.hotKeys.rawKeyHandler);
    fake.hotKeys.refuse = 0;
    auto const attempts = fake.hotKeys.attempts.size();
    center.post(KeyboardShortcuts::menuDidBeginTracking);
    center.post(KeyboardShortcuts::menuDidEndTracking);
    EXPECT_EQ(fake.hotKeys.attempts.size(), attempts) << "not tried again until changed";
    shortcuts.setShortcut(other, second);
    EXPECT_EQ(registeredIds(), Ids{3});
}

TEST_F(KeyboardShortcutsTest, ARefusalIsOneLineAndIdsAreNeverReused) {
    fake.hotKeys.refuse = 10;
    auto const lines = printed([&] {
        auto const name = toggle();
        shortcuts.onKeyDown(name, [] {});
    });
    EXPECT_EQ(lines, "Error registering hotkey ⌃⌥⌘P: 10\n");
    EXPECT_EQ(fake.userDefaults.string(key), defaultJson) << "stays stored";
    fake.hotKeys.refuse = 0;
    shortcuts.setShortcut(other, toggle());
    EXPECT_EQ(registeredIds(), Ids{2});
}

} // namespace
} // namespace taliro::testing
