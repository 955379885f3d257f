#include "KeyboardShortcuts/RecorderCocoa.h"

#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "foundation/NotificationCenter.h"
#include "keyboard/Typist.h"
#include "keyboard/XServer.h"
#include "platform/linux/DesktopShortcuts.h"
#include "platform/linux/X11HotKeys.h"
#include "platform/linux/XkbKeyboardLayout.h"
#include "support/FakePlatform.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

#include <QAction>
#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include <filesystem>

namespace taliro::testing {
namespace {

constexpr auto windowManagerKeys = R"(<?xml version="1.0"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
<focus><focusNew>yes</focusNew></focus><keyboard>
<keybind key="W-e"><action name="ToggleShowDesktop"/></keybind>
</keyboard></openbox_config>)";

/// A form with a recorder and a field after it, under a window manager that has a shortcut of its own.
struct RecorderTest : ::testing::Test {
    TemporaryFolder folder;
    std::string configuration = folder.write("rc.xml", windowManagerKeys);
    Process windowManager;
    Typist typist;
    XKeyboard keyboard;
    XkbKeyboardLayout layout{keyboard};
    X11HotKeys hotKeys{keyboard, layout};
    DesktopShortcuts systemShortcuts{keyboard, layout};
    FakeUserDefaults defaults;
    FakeAlerts alerts;
    KeyboardShortcuts shortcuts{defaults, hotKeys, layout, systemShortcuts};
    Name name = togglePicker(shortcuts);
    int toggled = 0;
    std::vector<std::optional<Shortcut>> changes;
    std::string activity; ///< what the recorder tells of itself
    Subscription activityObserver = NotificationCenter::standard().observe(
        KeyboardShortcuts::recorderActiveStatusDidChange, [this](Notification const& notification) {
            activity += std::any_cast<bool>(notification.userInfo.at("isActive")) ? "(" : ")";
        });
    QWidget window;
    RecorderCocoa recorder{shortcuts, alerts, name, &window};
    QLineEdit next{&window};
    QAction quit{QStringLiteral("&Quit Taliro")};

    void SetUp() override {
        // Windows shown before it is ready would be lost on it.
        std::string const ready = folder / "ready";
        windowManager = start({"openbox", "--config-file", configuration, "--startup", "touch " + ready});
        ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(ready); }));
        shortcuts.onKeyDown(name, [this] { ++toggled; });
        recorder.onChange = [this](auto const& shortcut) { changes.push_back(shortcut); };
        quit.setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
        RecorderCocoa::setMainMenu([this] { return QList<QAction*>{&quit}; });
        auto* column = new QVBoxLayout(&window);
        column->addWidget(&recorder);
        column->addWidget(&next);
        window.resize(300, 120);
        window.show();
        ASSERT_TRUE(waitUntil([&] { return window.isActiveWindow(); }));
    }
    void TearDown() override {
        RecorderCocoa::setMainMenu(nullptr);
        window.hide();
    }

    bool click(QWidget& widget) {
        auto const middle = widget.mapToGlobal(widget.rect().center());
        typist.click(middle.x(), middle.y());
        return true;
    }
    bool startRecording() {
        click(recorder);
        return waitUntil([&] { return recorder.isRecording(); });
    }
    bool ended() {
        return waitUntil([&] { return !recorder.isRecording(); });
    }
    QMessageBox* alert() {
        waitUntil([] { return QApplication::activeModalWidget() != nullptr; });
        return qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    }
    bool isOver(QPointer<QMessageBox> const& box) {
        return waitUntil([&] { return !box && window.isActiveWindow(); });
    }
    std::string stored() { return recorder.text().toStdString(); }
};

TEST_F(RecorderTest, RecordsWhatIsPressed) {
    EXPECT_FALSE(recorder.isRecording()) << "coming to the front is not enough";
    EXPECT_EQ(stored(), "⌃⌥⌘P");

    // The very shortcut that is in force is recorded, not carried out.
    ASSERT_TRUE(startRecording());
    EXPECT_TRUE(shortcuts.isPaused);
    typist.type({Typist::leftControl, Typist::leftAlt, Typist::leftSuper, Typist::p});
    ASSERT_TRUE(ended());
    EXPECT_EQ(changes, std::vector{std::optional(Shortcut(35, 6400))});
    EXPECT_EQ(toggled, 0);
    EXPECT_FALSE(shortcuts.isPaused);

    ASSERT_TRUE(startRecording());
    typist.type({Typist::p});
    typist.type({Typist::leftShift, Typist::p});
    ASSERT_TRUE(waitUntil([&] { return alerts.beeps == 2; }));
    EXPECT_TRUE(recorder.isRecording());
    typist.type({Typist::f5});
    ASSERT_TRUE(ended());
    EXPECT_EQ(stored(), "F5");
    EXPECT_EQ(shortcuts.getShortcut(name), Shortcut(Key::f5, {}));

    // It works at once, and the former one no more.
    typist.type({Typist::leftControl, Typist::leftAlt, Typist::leftSuper, Typist::p});
    typist.type({Typist::f5});
    ASSERT_TRUE(waitUntil([&] { return toggled > 0; }));
    EXPECT_EQ(toggled, 1);
    EXPECT_EQ(activity, "()()");
}

TEST_F(RecorderTest, EscapeTabAndClicksElsewhereChangeNothing) {
    ASSERT_TRUE(startRecording());
    typist.type({Typist::escape});
    ASSERT_TRUE(ended());
    EXPECT_FALSE(recorder.hasFocus());

    ASSERT_TRUE(startRecording());
    typist.type({Typist::tab});
    ASSERT_TRUE(ended());
    EXPECT_TRUE(waitUntil([&] { return next.hasFocus(); }));

    ASSERT_TRUE(startRecording());
    typist.click(window.mapToGlobal(QPoint(2, 2)).x(), window.mapToGlobal(QPoint(2, 2)).y());
    ASSERT_TRUE(ended());
    EXPECT_EQ(activity, "()()()");
    EXPECT_TRUE(changes.empty());
    EXPECT_EQ(stored(), "⌃⌥⌘P");
    EXPECT_EQ(alerts.beeps, 0);
}

TEST_F(RecorderTest, DeleteClearsAndRecordingGoesOn) {
    ASSERT_TRUE(startRecording());
    typist.type({Typist::backspace});
    ASSERT_TRUE(waitUntil([&] { return changes.size() == 1; }));
    EXPECT_FALSE(changes[0]);
    EXPECT_EQ(defaults.object("KeyboardShortcuts_togglePicker"), PropertyValue{false});
    EXPECT_EQ(recorder.placeholderText().toStdString(), "Press Shortcut");
    EXPECT_TRUE(recorder.isRecording());
    typist.type({Typist::leftControl, Typist::tab});
    ASSERT_TRUE(ended());
    EXPECT_EQ(stored(), "⌃⇥");
    EXPECT_EQ(recorder.placeholderText().toStdString(), "Record Shortcut");
}

TEST_F(RecorderTest, RefusesMenuItemsAndOffersWhatTheDesktopHas) {
    ASSERT_TRUE(startRecording());
    typist.type({Typist::leftSuper, Typist::q}); // In our windows Super does what Ctrl does.
    QPointer<QMessageBox> box = alert();
    ASSERT_TRUE(box);
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_TRUE(box->text().contains(QStringLiteral("“Quit Taliro”"))) << box->text().toStdString();
    ASSERT_TRUE(waitUntil([&] { return box->isActiveWindow(); }));
    typist.type({Typist::escape});
    ASSERT_TRUE(isOver(box));

    constexpr std::uint8_t e = 26;
    for (bool const force : {false, true}) {
        ASSERT_TRUE(startRecording());
        typist.type({Typist::leftSuper, e});
        box = alert();
        ASSERT_TRUE(box);
        EXPECT_TRUE(changes.empty());
        ASSERT_EQ(box->buttons().size(), 2);
        ASSERT_TRUE(waitUntil([&] { return box->isActiveWindow(); }));
        for (auto* button : box->buttons())
            if (button->text().remove(QLatin1Char('&')) == QLatin1String(force ? "Use Anyway" : "OK"))
                click(*button);
        ASSERT_TRUE(isOver(box));
    }
    EXPECT_EQ(changes, std::vector{std::optional(Shortcut(Key::e, ModifierFlags::command))});
    EXPECT_EQ(stored(), "⌘E");
    EXPECT_EQ(activity, "()()()");
}

} // namespace
} // namespace taliro::testing
