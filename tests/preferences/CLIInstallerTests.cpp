#include "preferences/CLIInstaller.h"

#include "support/FakePlatform.h"

namespace taliro::testing {
namespace {

struct CLIInstallerTest : ::testing::Test {
    FakePlatform fake;
    CLIInstaller installer{fake.platform};
    using Status = CLIInstaller::Status;

    void linkTo(std::string const& target) {
        fake.fileManager.addFile(CLIInstaller::linkPath);
        fake.shell.links[CLIInstaller::linkPath] = target;
    }
};

TEST_F(CLIInstallerTest, TellsWhatStandsAtTheLink) {
    installer.refreshStatus();
    EXPECT_EQ(installer.status(), Status::notInstalled);
    for (auto const& [target, status] : {std::pair{*fake.shell.tool, Status::installed},
                                         {std::string("/old/taliro"), Status::installedStale},
                                         {std::string(CLIInstaller::linkPath), Status::installedStale}}) {
        fake.shell.links.clear();
        fake.fileManager.addFile(CLIInstaller::linkPath);
        if (target != CLIInstaller::linkPath) // else a plain file
            linkTo(target);
        installer.refreshStatus();
        EXPECT_EQ(installer.status(), status) << target;
    }
    fake.shell.tool.reset();
    installer.refreshStatus();
    EXPECT_EQ(installer.status(), Status::notInstalled);
}

TEST_F(CLIInstallerTest, InstallsPlainlyWhereItMay) {
    fake.shell.effect = [this] { linkTo(*fake.shell.tool); };
    installer.install();
    EXPECT_EQ(
        fake.shell.commands,
        std::vector<std::string>{
            "mkdir -p /usr/local/bin && ln -sf '/opt/Taliro/Resources/taliro' '/usr/local/bin/taliro'"});
    EXPECT_EQ(installer.status(), Status::installed);
    EXPECT_TRUE(fake.scriptInterpreter.sources.empty());
}

TEST_F(CLIInstallerTest, AsksForRightsAndKeepsTheReasonOfARefusal) {
    fake.shell.exitStatus = 1;
    fake.shell.tool = "/it's \"a\\b\"/taliro";
    fake.scriptInterpreter.answer = std::unexpected("Cancelled.");
    installer.install();
    EXPECT_EQ(fake.scriptInterpreter.sources.back(),
              "do shell script \"mkdir -p /usr/local/bin && ln -sf '/it'\\\\''s \\\"a\\\\b\\\"/taliro' "
              "'/usr/local/bin/taliro'\" with administrator privileges");
    EXPECT_EQ(installer.errorMessage(), "Cancelled.");
    EXPECT_EQ(installer.status(), Status::notInstalled);
    installer.refreshStatus();
    EXPECT_EQ(installer.errorMessage(), "Cancelled.");

    fake.scriptInterpreter.answer = std::unexpected("");
    installer.uninstall();
    EXPECT_EQ(installer.errorMessage(), "Uninstall failed.");
    EXPECT_EQ(fake.scriptInterpreter.sources.back(),
              "do shell script \"rm -f '/usr/local/bin/taliro'\" with administrator privileges");
    fake.scriptInterpreter.answer = {};
    installer.uninstall();
    EXPECT_FALSE(installer.errorMessage());
}

} // namespace
} // namespace taliro::testing
