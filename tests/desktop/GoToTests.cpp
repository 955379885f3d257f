// Going to a folder by typing its path.

#include "desktop/Desktop.h"

#include <gtest/gtest.h>

namespace taliro::testing {
namespace {

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
    display.key("Return");
    display.type("x");
    EXPECT_TRUE(fieldHolds(inHome("Docsx"))) << "a file is no folder to go to";
    display.key("Escape");
    EXPECT_TRUE(isClosed());
    EXPECT_TRUE(display.window("panel")) << "Escape closes the bar alone";
    program->tree().expect("", "Documents");
}

} // namespace
} // namespace taliro::testing
