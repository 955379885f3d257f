#include "platform/linux/X11HotKeys.h"

#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "KeyboardShortcuts/MenuTracking.h"
#include "keyboard/Typist.h"
#include "keyboard/XServer.h"
#include "platform/linux/XkbKeyboardLayout.h"
#include "support/FakePlatform.h"
#include "support/WaitUntil.h"

#include <QApplication>
#include <QMenu>

namespace taliro::testing {
namespace {

using Phase = HotKeys::Phase;
constexpr std::uint32_t toggleModifiers = carbonMask::control | carbonMask::option | carbonMask::command;
constexpr int badAccess = 10;

struct X11HotKeysTest : ::testing::Test {
    XKeyboard keyboard;
    XkbKeyboardLayout layout{keyboard};
    X11HotKeys hotKeys{keyboard, layout};
    Typist typist;
    std::vector<std::pair<std::uint32_t, Phase>> heard;
    int repeats = -1; ///< presses that came from the server, less the first
    Subscription counting = keyboard.keyEvents.add(
        [this](XKeyboard::KeyEvent const& event) { repeats += event.isPress ? 1 : 0; });

    X11HotKeysTest() {
        hotKeys.setHandler([this](std::uint32_t id, Phase phase) {
            heard.emplace_back(id, phase);
            return true;
        });
        typist.takeFocus();
    }
    ~X11HotKeysTest() override {
        for (auto lock : {Typist::capsLock, Typist::numLock})
            if (typist.lockedModifiers() & (lock == Typist::capsLock ? 0x2 : 0x10))
                typist.type({lock});
        run({"setxkbmap", "-layout", "us", "-option", "", "-keycodes", "evdev+aliases(qwerty)"});
    }
    auto toggle(std::uint32_t id = 1) {
        return hotKeys.registerHotKey(static_cast<std::uint32_t>(Key::p), toggleModifiers, id);
    }
    void typeToggle() { typist.type({Typist::leftControl, Typist::leftAlt, Typist::leftSuper, Typist::p}); }
    bool hear(std::vector<std::pair<std::uint32_t, Phase>> const& expected) {
        bool const came = waitUntil([&] { return heard.size() >= expected.size(); }) && heard == expected;
        heard.clear();
        return came;
    }
};

TEST_F(X11HotKeysTest, WorkInOtherProgramsWithEveryLock) {
    auto const registration = toggle();
    ASSERT_TRUE(registration);
    using Keys = std::vector<std::uint8_t>;
    for (auto const& locks : {Keys{}, Keys{Typist::capsLock}, Keys{Typist::numLock}, Keys{Typist::scrollLock},
                              Keys{Typist::capsLock, Typist::numLock, Typist::scrollLock}}) {
        for (auto lock : locks)
            typist.type({lock});
        EXPECT_EQ(typist.lockedModifiers() & 0x12, locks.size() == 3                 ? 0x12
                                                   : locks == Keys{Typist::capsLock} ? 0x02
                                                   : locks == Keys{Typist::numLock}  ? 0x10
                                                                                     : 0);
        typist.received();
        ASSERT_TRUE(typist.hasFocus());
        typeToggle();
        EXPECT_TRUE(hear({{1, Phase::pressed}, {1, Phase::released}}));
        EXPECT_EQ(typist.received(), (Keys{Typist::leftControl, Typist::leftAlt, Typist::leftSuper}))
            << "the key itself reaches nobody else";
        for (auto lock : locks)
            typist.type({lock});
    }
    // One modifier more or less is another combination.
    typist.received();
    typist.type({Typist::leftControl, Typist::leftAlt, Typist::p});
    typist.type({Typist::leftControl, Typist::leftAlt, Typist::leftSuper, Typist::leftShift, Typist::p});
    EXPECT_EQ(std::ranges::count(typist.received(), Typist::p), 2);
    typeToggle();
    EXPECT_TRUE(hear({{1, Phase::pressed}, {1, Phase::released}})) << "nothing of the two before was heard";
}

TEST_F(X11HotKeysTest, HeldDownArePressedOnce) {
    auto const registration = toggle();
    typist.press(Typist::leftControl);
    typist.press(Typist::leftAlt);
    typist.press(Typist::leftSuper);
    typist.press(Typist::p);
    ASSERT_TRUE(waitUntil([&] { return repeats >= 5; }));
    EXPECT_EQ(heard, (std::vector<std::pair<std::uint32_t, Phase>>{{1, Phase::pressed}}));
    // The modifiers may be let go first.
    for (auto key : {Typist::leftSuper, Typist::leftAlt, Typist::leftControl, Typist::p})
        typist.release(key);
    EXPECT_TRUE(hear({{1, Phase::pressed}, {1, Phase::released}}));
}

TEST_F(X11HotKeysTest, AreRefusedWhereAnotherProgramHasThem) {
    constexpr std::uint16_t controlAltSuper = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
    // It needs to have but one of the lock states.
    for (auto const locks : {0, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2}) {
        auto const held = static_cast<std::uint16_t>(controlAltSuper | locks);
        ASSERT_TRUE(waitUntil([&] { return typist.grab(Typist::p, held); }));
        auto const refused = toggle();
        ASSERT_FALSE(refused);
        EXPECT_EQ(refused.error(), badAccess);
        typist.ungrab(Typist::p, held);
    }
    {
        auto const registration = toggle(2);
        ASSERT_TRUE(registration) << "a refusal leaves no lock state behind";
        EXPECT_FALSE(typist.grab(Typist::p, controlAltSuper));
    }
    EXPECT_TRUE(waitUntil([&] { return typist.grab(Typist::p, controlAltSuper); })) << "given back";
    typist.ungrab(Typist::p, controlAltSuper);
    EXPECT_EQ(hotKeys.registerHotKey(9999, toggleModifiers, 3).error(), 2) << "no such key";
}

TEST_F(X11HotKeysTest, ShareACombinationUntilTheLastIsGone) {
    auto first = toggle(1);
    auto second = toggle(2);
    typeToggle();
    EXPECT_TRUE(hear({{1, Phase::pressed}, {2, Phase::pressed}, {1, Phase::released}, {2, Phase::released}}));
    first->reset();
    typeToggle();
    EXPECT_TRUE(hear({{2, Phase::pressed}, {2, Phase::released}}));
}

TEST_F(X11HotKeysTest, StayOnTheirPhysicalKeyWhenTheMapChanges) {
    auto const registration = toggle();
    auto const arrow =
        hotKeys.registerHotKey(static_cast<std::uint32_t>(Key::upArrow), carbonMask::control, 2);
    int maps = 0;
    auto const counter = keyboard.mapChanged.add([&] { ++maps; });
    auto const changeMap = [&](std::vector<std::string> command) {
        maps = 0;
        ASSERT_EQ(run(command), 0);
        ASSERT_TRUE(waitUntil([&] { return maps > 0; }));
    };
    changeMap({"setxkbmap", "-layout", "us,ru"});
    typist.lockLayout(1);
    typeToggle();
    EXPECT_TRUE(hear({{1, Phase::pressed}, {1, Phase::released}}));
    typist.lockLayout(0);

    changeMap({"setxkbmap", "-option", "altwin:swap_alt_win"});
    // Each of the two keys is the other now; the combination has both, the arrow shows that others still
    // work.
    typeToggle();
    EXPECT_TRUE(hear({{1, Phase::pressed}, {1, Phase::released}}));

    changeMap({"setxkbmap", "-keycodes", "xfree86"}); // The arrow key has another number there.
    constexpr std::uint8_t upThere = 98;
    typist.type({Typist::leftControl, upThere});
    EXPECT_TRUE(hear({{2, Phase::pressed}, {2, Phase::released}}));
    typist.received();
    typist.type({Typist::leftControl, Typist::up});
    EXPECT_EQ(std::ranges::count(typist.received(), Typist::up), 1) << "the former number is free again";
}

TEST_F(X11HotKeysTest, WorkWhileAMenuOfOursIsOpen) {
    FakeUserDefaults defaults;
    FakeSystemShortcuts systemShortcuts;
    MenuTracking const tracking(*QCoreApplication::instance());
    KeyboardShortcuts shortcuts(defaults, hotKeys, layout, systemShortcuts);
    int toggled = 0;
    shortcuts.onKeyDown(togglePicker(shortcuts), [&] { ++toggled; });
    typeToggle();
    ASSERT_TRUE(waitUntil([&] { return toggled == 1; }));

    QMenu menu;
    int chosen = 0;
    menu.addAction(QStringLiteral("&Apple"), [&] { ++chosen; });
    menu.addAction(QStringLiteral("&Pear"), [&] { ++chosen; });
    menu.popup({100, 100});
    ASSERT_TRUE(
        waitUntil([&] { return QApplication::activePopupWidget() == &menu && menu.isActiveWindow(); }));
    typeToggle();
    EXPECT_TRUE(waitUntil([&] { return toggled == 2; }));
    EXPECT_TRUE(menu.isVisible());
    EXPECT_EQ(chosen, 0) << "the key did not reach the menu";
    typist.type({Typist::a});
    EXPECT_TRUE(waitUntil([&] { return chosen == 1; })) << "other keys do";
    ASSERT_TRUE(waitUntil([&] { return !menu.isVisible(); }));
    typeToggle();
    EXPECT_TRUE(waitUntil([&] { return toggled == 3; }));
}

} // namespace
} // namespace taliro::testing
