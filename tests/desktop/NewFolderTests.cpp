// The prompt for a new folder, over the browser.

#include "desktop/Desktop.h"

#include <gtest/gtest.h>

namespace taliro::testing {
namespace {

constexpr char fieldName[] = "Name of the new folder";

/// Opens the prompt by its keys; its field, once it has the keyboard.
Accessible openPrompt(Desktop& desktop, Program& program) {
    desktop.display().key("Control+Shift+n");
    auto const field = program.tree().expect("text", fieldName);
    EXPECT_TRUE(waitFor([&] { return field.has(Accessible::State::focused); }));
    return field;
}

TEST(NewFolder, TakesTheNameTypedOverTheProposedOne) {
    Desktop desktop;
    desktop.makeFolder("untitled folder");
    desktop.write("notes.md");
    Program program(desktop);
    auto& display = desktop.display();
    display.expectWindow("panel");
    program.tree().expect("", "notes.md");
    auto const closed = [&] { return program.tree().waitUntilGone("text", fieldName); };

    auto field = openPrompt(desktop, program);
    EXPECT_EQ(field.text(), "untitled folder 2");
    display.key("Escape");
    EXPECT_TRUE(closed());
    EXPECT_FALSE(std::filesystem::exists(desktop.home() / "untitled folder 2"));

    openPrompt(desktop, program);
    display.type("  Reports ");
    display.key("Return");
    EXPECT_TRUE(closed());
    EXPECT_TRUE(waitFor([&] { return std::filesystem::is_directory(desktop.home() / "Reports"); }));
    EXPECT_TRUE(waitFor([&] {
        return static_cast<bool>(program.tree().find([](Accessible const& one) {
            return one.name() == "Reports" && one.has(Accessible::State::selected);
        }));
    }));

    openPrompt(desktop, program);
    display.type(" ");
    EXPECT_TRUE(waitFor(
        [&] { return !program.tree().expect("push button", "Create").has(Accessible::State::enabled); }));
    display.key("Return");
    EXPECT_TRUE(closed());

    // A click beside the card cancels, and reaches nothing below.
    openPrompt(desktop, program);
    auto const panel = display.expectWindow("panel").place;
    display.click(panel.midX(), panel.maxY() - 12);
    EXPECT_TRUE(closed());
    EXPECT_FALSE(std::filesystem::exists(desktop.home() / "untitled folder 2"));
}

} // namespace
} // namespace taliro::testing
