// The sidebar: places, volumes, and what it says about mirroring the file manager's favorites.

#include "desktop/Desktop.h"
#include "support/ArchiveWriter.h"
#include "support/BinaryPropertyList.h"
#include "support/BookmarkWriter.h"
#include "support/DiskService.h"

#include <QMetaObject>
#include <QThread>

#include <gtest/gtest.h>
#include <sys/mount.h>

namespace taliro::testing {
namespace {

void click(Desktop& desktop, Accessible const& thing, int button = 1) {
    auto const place = thing.place();
    desktop.display().click(place.midX(), place.midY(), button);
}

bool waitUntilCurrent(Program& program, QString const& title) {
    return waitFor([&] {
        return program.tree().find(QStringLiteral("push button"), title).description() ==
               QStringLiteral("Current folder");
    });
}

/// A row of the sidebar, once it is there.
Accessible row(Program& program, char const* title) {
    return program.tree().expect(QStringLiteral("push button"), QString::fromUtf8(title));
}

/// Answers an alert, which keeps clicks from the other windows until it is gone.
void answer(Desktop& desktop, Program& program, QString const& message, char const* button) {
    auto const isAsked = [&] {
        return static_cast<bool>(
            program.tree().find([&](Accessible const& one) { return one.name().startsWith(message); }));
    };
    EXPECT_TRUE(waitFor(isAsked)) << message.toStdString();
    click(desktop, program.tree().expect(QStringLiteral("push button"), QString::fromUtf8(button)));
    EXPECT_TRUE(waitFor([&] { return !isAsked(); })) << message.toStdString();
}

/// Opens the context menu of `thing` and chooses its only command. Menus that pop up are in no accessibility
/// tree.
void chooseFromMenu(Desktop& desktop, Accessible const& thing) {
    auto const menus = [&] {
        return std::ranges::count_if(desktop.display().windows(), [](WindowInfo const& window) {
            return !window.isManaged && window.klass == "Taliro";
        });
    };
    auto const before = menus();
    click(desktop, thing, 3);
    EXPECT_TRUE(waitFor([&] { return menus() > before; })) << "no menu";
    desktop.display().key("Down");
    desktop.display().key("Return");
}

TEST(Sidebar, OpensPlacesAndForgetsFavorites) {
    Desktop desktop;
    // A desktop in German.
    std::ofstream(desktop.environment().at("XDG_CONFIG_HOME") + "/user-dirs.dirs")
        << "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n";
    desktop.write("Dokumente/plan.txt");
    desktop.write("Downloads/archive.zip");
    {
        Program program(desktop);
        desktop.display().expectWindow("panel");
        click(desktop, row(program, "Dokumente"));
        program.tree().expect({}, QStringLiteral("plan.txt"));
        EXPECT_TRUE(waitUntilCurrent(program, QStringLiteral("Dokumente")));
        click(desktop, row(program, "Downloads"));
        program.tree().expect({}, QStringLiteral("archive.zip"));
        EXPECT_TRUE(waitUntilCurrent(program, QStringLiteral("Downloads")));
        EXPECT_EQ(row(program, "Dokumente").description(), QString());

        chooseFromMenu(desktop, row(program, "Dokumente"));
        EXPECT_TRUE(program.tree().waitUntilGone(QStringLiteral("push button"), QStringLiteral("Dokumente")));
        row(program, "Downloads");
    }
    std::filesystem::rename(desktop.home() / "Downloads", desktop.home() / "Geladen");
    Program program(desktop);
    desktop.display().expectWindow("panel");
    click(desktop, row(program, "Geladen"));
    program.tree().expect({}, QStringLiteral("archive.zip"));
    EXPECT_FALSE(program.tree().find(QStringLiteral("push button"), QStringLiteral("Dokumente")));
}

TEST(Sidebar, MirrorsTheFavoritesOfTheFileManagerAndSaysWhenItCant) {
    Desktop desktop;
    desktop.makeFolder("Work");
    Program program(desktop);
    desktop.display().expectWindow("panel");

    click(desktop, row(program, "Enable"));
    answer(desktop, program, QStringLiteral("Full Disk Access Required"), "Later");
    EXPECT_TRUE(program.tree().waitUntilGone(QStringLiteral("push button"), QStringLiteral("Enable")));
    click(desktop, row(program, "Open Settings"));
    answer(desktop, program, QStringLiteral("This desktop has no settings page"), "OK");

    // A list comes up while the program runs.
    auto const list = desktop.environment().at("XDG_CONFIG_HOME") + "/gtk-3.0/bookmarks";
    std::filesystem::create_directories(std::filesystem::path(list).parent_path());
    auto const favor = [&](char const* label) {
        std::ofstream(list) << "file://" << (desktop.home() / "Work").string() << ' ' << label << '\n';
    };
    favor("Our work");
    row(program, "Our work");
    EXPECT_TRUE(program.tree().waitUntilGone(QStringLiteral("push button"), QStringLiteral("Turn off sync")));
    favor("Job");
    auto const job = row(program, "Job");
    EXPECT_TRUE(program.tree().waitUntilGone(QStringLiteral("push button"), QStringLiteral("Our work")));
    // It has no menu: the next click would do no more than close one.
    click(desktop, job, 3);
    click(desktop, job);
    EXPECT_TRUE(waitUntilCurrent(program, QStringLiteral("Job")));

    std::filesystem::remove(list);
    click(desktop, row(program, "Turn off sync"));
    click(desktop, row(program, "Dismiss"));
    EXPECT_TRUE(program.tree().waitUntilGone(QStringLiteral("push button"), QStringLiteral("Dismiss")));
    EXPECT_FALSE(
        program.tree().find(QStringLiteral("push button"), QStringLiteral("Turn off sync")).isShowing());
}

/// The favorites that a list file holds, by their paths, and the recent files before them.
std::string sharedList(std::vector<std::filesystem::path> const& favorites) {
    ArchiveWriter writer;
    std::vector<ArchiveWriter::Reference> items{
        writer.dictionary({{writer.text("Name"), writer.text("Recents")}})};
    for (auto const& path : favorites)
        items.push_back(
            writer.dictionary({{writer.text("Bookmark"), writer.add({BookmarkWriter::bookmark(path)})}}));
    auto const root = writer.dictionary({{writer.text("items"), writer.array(items)}});
    return BinaryPropertyList::write(writer.finish(root));
}

TEST(Sidebar, MirrorsASharedListOfFavorites) {
    Desktop desktop;
    desktop.write("Music/.directory", "[Desktop Entry]\nName=Songs\n");
    desktop.makeFolder("Work");
    desktop.write("letter.txt");
    auto const home = desktop.home();
    auto const store = [&](std::string const& bytes) {
        auto const folder = std::string("Library/Application Support/com.apple.sharedfilelist/");
        auto const written = desktop.write(folder + "new", bytes);
        std::filesystem::rename(written,
                                written.parent_path() / "com.apple.LSSharedFileList.FavoriteItems.sfl3");
    };
    store(sharedList({home / "Music", home / "letter.txt", home / "gone", home / "Work"}));
    Program program(desktop);
    desktop.display().expectWindow("panel");

    click(desktop, row(program, "Enable"));
    EXPECT_LT(row(program, "Songs").place().y, row(program, "Work").place().y);
    EXPECT_FALSE(program.tree().find(QStringLiteral("push button"), QStringLiteral("letter.txt")));
    EXPECT_FALSE(
        program.tree().find(QStringLiteral("push button"), QStringLiteral("Turn off sync")).isShowing());
    store(sharedList({home / "Work"}));
    EXPECT_TRUE(program.tree().waitUntilGone(QStringLiteral("push button"), QStringLiteral("Songs")));
    row(program, "Work");
    store("no list");
    row(program, "Turn off sync");
}

TEST(Sidebar, EjectsVolumesAndLeavesThemFirst) {
    Desktop desktop;
    auto const point = desktop.makeFolder("Backup disk");
    auto const home = QString::fromStdString(desktop.home().filename());
    // The session's bus stands for the system's, too.
    Program program(desktop, {},
                    {{"DBUS_SYSTEM_BUS_ADDRESS", desktop.environment().at("DBUS_SESSION_BUS_ADDRESS")}});
    desktop.display().expectWindow("panel");
    if (::mount("none", point.c_str(), "tmpfs", 0, "size=64k") != 0)
        GTEST_SKIP() << "needs the right to mount";
    std::ofstream(point / "saved.txt") << "text";

    auto const enter = [&] {
        click(desktop, row(program, "Backup disk"));
        EXPECT_TRUE(waitUntilCurrent(program, QStringLiteral("Backup disk")));
        program.tree().expect({}, QStringLiteral("saved.txt"));
    };
    enter();
    click(desktop,
          row(program, "Backup disk").expect(QStringLiteral("push button"), QStringLiteral("Eject")));
    answer(desktop, program, QStringLiteral("Couldn't eject “Backup disk”"), "OK");
    EXPECT_TRUE(waitUntilCurrent(program, home));
    EXPECT_TRUE(std::filesystem::exists(point / "saved.txt"));

    QThread thread;
    DiskService service(desktop.bus());
    service.disks = {
        {.name = QStringLiteral("sdb1"), .mountPoint = QByteArray::fromStdString(point), .label = {}}};
    // The kernel refuses as long as anybody is in there.
    service.onUnmount = [&] { EXPECT_TRUE(waitFor([&] { return ::umount(point.c_str()) == 0; })); };
    service.moveToThread(&thread);
    thread.start();
    enter();
    chooseFromMenu(desktop, row(program, "Backup disk"));
    EXPECT_TRUE(program.tree().waitUntilGone(QStringLiteral("push button"), QStringLiteral("Backup disk")));
    EXPECT_TRUE(waitUntilCurrent(program, home));
    EXPECT_FALSE(std::filesystem::exists(point / "saved.txt"));
    thread.quit();
    thread.wait();
    if (::testing::Test::HasFailure())
        ::umount2(point.c_str(), MNT_DETACH);
}

TEST(Sidebar, ShowsTheFilesUsedLast) {
    Desktop desktop;
    auto const use = [&](std::vector<std::string> const& names) {
        std::string list = "<xbel>";
        for (std::size_t i = 0; i < names.size(); ++i)
            list += "<bookmark href=\"file://" + (desktop.home() / names[i]).string() +
                    "\" modified=\"2026-01-0" + std::to_string(i + 1) + "T00:00:00Z\"/>";
        auto const folder = desktop.environment().at("XDG_DATA_HOME");
        std::filesystem::create_directories(folder);
        std::ofstream(folder + "/recently-used.xbel") << list << "</xbel>";
    };
    for (auto const* name : {"notes/a.txt", "notes/b.txt", "c.txt"})
        desktop.write(name);
    use({"c.txt", "notes/a.txt"});
    Program program(desktop);
    desktop.display().expectWindow("panel");
    click(desktop, row(program, "Recents"));

    auto const listed = [&] {
        std::vector<std::pair<int, std::string>> found;
        for (auto const* name : {"a.txt", "b.txt", "c.txt"})
            if (auto const item = program.tree().find({}, QString::fromUtf8(name)); item && item.isShowing())
                found.emplace_back(item.place().y, name);
        std::ranges::sort(found);
        std::string names;
        for (auto const& [y, name] : found)
            names += name;
        return names;
    };
    EXPECT_TRUE(waitFor([&] { return listed() == "a.txtc.txtb.txt"; })) << listed();
    use({"c.txt", "notes/a.txt", "notes/b.txt"});
    EXPECT_TRUE(waitFor([&] { return listed() == "b.txta.txtc.txt"; })) << listed();
}

} // namespace
} // namespace taliro::testing
