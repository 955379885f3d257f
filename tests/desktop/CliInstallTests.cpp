// The row of the preferences that makes the tool a command, with a /usr/local/bin of the tests' own.

#include "desktop/Desktop.h"
#include "desktop/PrivateRoot.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace taliro::testing {
namespace {

namespace fs = std::filesystem;

std::string refusal; ///< why there is no private root

fs::path const link = "/usr/local/bin/taliro";

struct CliInstall : ::testing::Test {
    TemporaryFolder folder;
    fs::path tool;
    std::unique_ptr<Desktop> desktop;
    std::unique_ptr<Program> program;

    void SetUp() override {
        if (!refusal.empty())
            GTEST_SKIP() << refusal;
        setLinkFolderWritable(true);
        fs::remove(link);
        auto const bundle = folder / "it's a \"b\\c\" $(d)";
        fs::copy(Program::built().parent_path(), bundle, fs::copy_options::recursive);
        tool = bundle / "Resources/taliro";
        // What the commands need, so that a pkexec of the system's is not found.
        fs::create_directory(folder / "bin");
        for (std::string const name : {"ln", "mkdir", "mount", "rm"})
            fs::create_symlink("/bin/" + name, folder / ("bin/" + name));
        desktop = std::make_unique<Desktop>();
        program = std::make_unique<Program>(*desktop, std::vector<std::string>{},
                                            Environment{{"PATH", folder / "bin"}}, bundle / "Taliro");
        EXPECT_TRUE(waitFor([&] {
            auto const panel = desktop->display().window("panel");
            return panel && desktop->display().focused() == panel->id;
        }));
        showRow();
        program->tree().expect("radio button", "Advanced").act("Toggle");
        shows("Not installed");
    }

    void showRow() {
        desktop->display().key("Control+comma");
        desktop->display().expectWindow("preferences");
    }
    /// The row looks afresh when it is shown.
    void showRowAgain() {
        program->tree().expect("radio button", "Advanced");
        desktop->display().key("Escape");
        EXPECT_TRUE(desktop->display().waitUntilGone("preferences"));
        showRow();
    }
    void shows(char const* label) { program->tree().expect("label", QString::fromUtf8(label)); }
    void press(char const* button) { program->tree().expect("push button", QString::fromUtf8(button)).act(); }
    void standIn(std::string const& pkexec) {
        auto const file = folder.write("bin/pkexec", "#!/bin/sh\n" + pkexec);
        fs::permissions(file, fs::perms::owner_all);
    }
};

TEST_F(CliInstall, LinksReplacesAndRemoves) {
    struct {
        char const* what;
        std::function<void()> there;
    } const cases[]{
        {"another tool", [&] { fs::create_symlink("/bin/true", link); }},
        {"a link to nowhere", [&] { fs::create_symlink("/moved/away/taliro", link); }},
        {"a plain file", [&] { std::ofstream(link) << "old"; }},
    };
    press("Install…");
    shows("Installed");
    EXPECT_EQ(fs::canonical(link), tool);
    for (auto const& one : cases) {
        SCOPED_TRACE(one.what);
        press("Uninstall");
        shows("Not installed");
        EXPECT_FALSE(fs::is_symlink(link));
        one.there();
        showRowAgain();
        shows("Another taliro is on your PATH");
        press("Replace");
        shows("Installed");
        EXPECT_EQ(fs::canonical(link), tool);
    }
}

TEST_F(CliInstall, AsksForRightsWhereItHasNone) {
    setLinkFolderWritable(false);
    struct {
        char const* pkexec;
        char const* message;
    } const refusals[]{
        {nullptr, "Administrator rights are asked for through pkexec, which isn't installed."},
        {"exit 126", "The request for administrator rights was cancelled."},
        {"echo 'Error: No agent found.' >&2; exit 127", "Error: No agent found."},
        {"exit 127", "You are not authorized to do this."},
        {"exit 1", "Install failed."},
    };
    for (auto const& one : refusals) {
        if (one.pkexec)
            standIn(one.pkexec);
        press("Install…");
        shows(one.message);
        shows("Not installed");
    }
    showRowAgain();
    EXPECT_TRUE(program->tree().waitUntilGone("label", "Install failed."));

    standIn("mount -o remount,bind,rw /usr/local/bin && \"$@\"; result=$?\n"
            "mount -o remount,bind,ro /usr/local/bin; exit $result");
    press("Install…");
    shows("Installed");
    EXPECT_EQ(fs::canonical(link), tool);
    press("Uninstall");
    shows("Not installed");
    EXPECT_FALSE(fs::is_symlink(link));
}

} // namespace
} // namespace taliro::testing

int main(int argc, char** argv) {
    taliro::testing::refusal = taliro::testing::enterPrivateRoot();
    QCoreApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
