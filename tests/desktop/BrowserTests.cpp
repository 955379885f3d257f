// The browser's views by keyboard and mouse, as seen through the accessibility tree.

#include "desktop/Desktop.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace taliro::testing {
namespace {

using State = Accessible::State;

/// A browser at a home folder that holds Archive (old.txt), Reports (may.odt, Year (sum.ods)), a.txt, b.txt
/// and c.pdf.
struct Browser {
    Desktop desktop;
    std::unique_ptr<Program> program;
    Display& display = desktop.display();

    Browser() {
        desktop.write("Archive/old.txt");
        desktop.write("Reports/may.odt");
        desktop.write("Reports/Year/sum.ods");
        desktop.write("a.txt", std::string(3000, 'a'));
        desktop.write("b.txt", std::string(10, 'b'));
        desktop.write("c.pdf", std::string(500, 'c'));
        program = std::make_unique<Program>(desktop);
        auto const panel = display.expectWindow("panel");
        program->tree().expect("list item", "Archive");
        EXPECT_TRUE(waitFor([&] { return display.focused() == panel.id; }));
    }

    /// The file views' rows, those of one column after the other's.
    std::vector<Accessible> rows() {
        auto rows = program->tree().findAll("list item");
        std::erase_if(rows, [](Accessible const& row) { return !row.isShowing(); });
        return rows;
    }
    std::string names(std::function<bool(Accessible const&)> const& wanted) {
        std::string text;
        for (auto const& row : rows())
            if (wanted(row))
                text += row.name().toStdString() + " ";
        return text;
    }
    std::string shown() {
        return names([](Accessible const&) { return true; });
    }
    std::string selected() {
        return names([](Accessible const& row) { return row.has(State::selected); });
    }
    void expectShown(std::string const& expected) {
        EXPECT_TRUE(waitFor([&] { return shown() == expected; })) << shown();
    }
    void expectSelected(std::string const& expected) {
        EXPECT_TRUE(waitFor([&] { return selected() == expected; })) << selected();
    }
    void key(std::string_view chord, std::string const& expected) {
        display.key(chord);
        SCOPED_TRACE(std::string(chord));
        expectSelected(expected);
    }
    /// Where it is once it moves no more.
    Place settledPlace(QString const& role, QString const& name) {
        auto const one = program->tree().expect(role, name);
        Place place;
        EXPECT_TRUE(waitFor([&] { return std::exchange(place, one.place()) == place; }));
        return place;
    }
    void click(QString const& row, int times = 1) {
        auto const place = settledPlace("list item", row);
        display.click(place.midX(), place.midY(), 1, times);
    }
    void clickHolding(char const* modifier, QString const& row) {
        display.keyDown(modifier);
        click(row);
        display.keyUp(modifier);
    }
    void useList() {
        display.key("Control+2");
        expectShown("Archive Reports a.txt b.txt c.pdf ");
        program->tree().expect("list", "Files");
    }
};

TEST(Browser, TheListIsUsedByKeyboard) {
    Browser browser;
    browser.useList();
    browser.key("Up", "c.pdf ");
    browser.key("Down", "c.pdf ");
    browser.key("Home", "Archive ");
    browser.key("Shift+Down", "Reports ");
    browser.key("Control+Down", "Reports ");
    browser.key("Home", "Archive ");
    browser.key("r", "Reports ");
    browser.display.key("Return");
    browser.expectShown("Year may.odt ");
    browser.key("Down", "Year ");
    browser.display.key("Return");
    browser.expectShown("sum.ods ");
    browser.display.key("Control+bracketleft");
    browser.expectShown("Year may.odt ");
    browser.display.key("Control+bracketleft");
    browser.expectShown("Archive Reports a.txt b.txt c.pdf ");
    EXPECT_TRUE(
        waitFor([&] { return !browser.program->tree().find("push button", "Back").has(State::enabled); }));
    browser.display.key("Super_L+bracketright");
    browser.expectShown("Year may.odt ");
}

TEST(Browser, TheListIsUsedByMouse) {
    Browser browser;
    browser.useList();
    browser.click("a.txt");
    browser.expectSelected("a.txt ");
    browser.clickHolding("Control_L", "c.pdf");
    browser.expectSelected("a.txt c.pdf ");
    browser.clickHolding("Shift_L", "Reports");
    browser.expectSelected("Reports a.txt b.txt c.pdf ");
    browser.clickHolding("Control_L", "a.txt");
    browser.expectSelected("Reports b.txt c.pdf ");
    auto const last = browser.program->tree().expect("list item", "c.pdf").place();
    browser.display.click(last.midX(), last.maxY() + 40);
    browser.expectSelected("");
    browser.click("Reports", 2);
    browser.expectShown("Year may.odt ");
    auto const home =
        browser.program->tree()
            .expect("push button", QString::fromStdString(browser.desktop.home().filename().string()))
            .place();
    browser.display.click(home.midX(), home.midY());
    browser.expectShown("Archive Reports a.txt b.txt c.pdf ");
}

TEST(Browser, SearchNarrowsTheRowsAndGivesTheKeyboardBack) {
    Browser browser;
    browser.useList();
    browser.program->tree().expect("label", "5 items");
    browser.display.key("Control+f");
    EXPECT_TRUE(
        waitFor([&] { return browser.program->tree().find("text", "Find in folder").has(State::focused); }));
    browser.display.type("TXT");
    browser.expectShown("a.txt b.txt ");
    browser.program->tree().expect("label", "2 items");
    browser.display.key("BackSpace");
    browser.display.type("t");
    browser.display.key("Return");
    EXPECT_TRUE(
        waitFor([&] { return !browser.program->tree().find("text", "Find in folder").has(State::focused); }));
    browser.key("Down", "a.txt ");
}

TEST(Browser, TheSortMenuChangesKeyAndDirection) {
    Browser browser;
    browser.useList();
    auto const choose = [&](int item) {
        auto const button = browser.settledPlace("", "Sort");
        auto const windows = browser.display.windows().size();
        browser.display.click(button.midX(), button.midY());
        EXPECT_TRUE(waitFor([&] { return browser.display.windows().size() > windows; })) << "no menu";
        for (int i = 0; i < item; ++i)
            browser.display.key("Down");
        browser.display.key("Return");
        EXPECT_TRUE(waitFor([&] { return browser.display.windows().size() == windows; })) << "the menu stays";
    };
    constexpr int byName = 1;
    constexpr int bySize = 4;
    choose(bySize);
    browser.expectShown("Archive Reports b.txt c.pdf a.txt ");
    choose(bySize);
    browser.expectShown("a.txt c.pdf b.txt Reports Archive ");
    choose(byName);
    browser.expectShown("Reports Archive c.pdf b.txt a.txt ");
}

TEST(Browser, ColumnsOpenByKeyboardAndMouse) {
    Browser browser;
    auto const toggle = browser.settledPlace("push button", "Hide info for selected item");
    browser.display.click(toggle.midX(), toggle.midY()); // Room for two columns.
    browser.key("Down", "Archive ");
    browser.expectShown("Archive Reports a.txt b.txt c.pdf old.txt ");
    browser.key("Down", "Reports ");
    browser.key("Right", "Reports Year ");
    browser.expectShown("Archive Reports a.txt b.txt c.pdf Year may.odt sum.ods ");
    browser.program->tree().expect("label", "1 item");
    browser.key("Down", "Reports may.odt ");
    browser.key("Left", "Reports ");
    browser.expectShown("Archive Reports a.txt b.txt c.pdf Year may.odt ");
    browser.click("Year");
    browser.expectSelected("Reports Year ");
    browser.expectShown("Archive Reports a.txt b.txt c.pdf Year may.odt sum.ods ");
    browser.click("may.odt");
    browser.expectSelected("Reports may.odt ");
    browser.expectShown("Archive Reports a.txt b.txt c.pdf Year may.odt ");
    EXPECT_FALSE(browser.program->tree().find("push button", "Back").has(State::enabled))
        << "columns leave no history";
}

/// Has text files opened by a program that notes their paths in the file it returns.
std::filesystem::path noteOpenedFiles(Desktop& desktop) {
    auto const note = desktop.home().parent_path() / "opened";
    auto const opener = note.string() + ".sh";
    std::ofstream(opener) << "#!/bin/sh\necho \"$1\" >" << note.string() << "\n";
    std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
    std::filesystem::path const applications = desktop.environment().at("XDG_DATA_HOME") + "/applications";
    std::filesystem::create_directories(applications);
    std::ofstream(applications / "opener.desktop")
        << "[Desktop Entry]\nType=Application\nName=Opener\nExec=" << opener << " %f\n";
    std::ofstream(desktop.environment().at("XDG_CONFIG_HOME") + "/mimeapps.list")
        << "[Default Applications]\ntext/plain=opener.desktop\n";
    return note;
}

/// The desktop's file manager, as far as it is asked to show items.
class FileManagerService : public QDBusVirtualObject {
public:
    explicit FileManagerService(QDBusConnection bus) : m_bus(std::move(bus)) {
        m_bus.registerVirtualObject(QStringLiteral("/org/freedesktop/FileManager1"), this);
        EXPECT_TRUE(m_bus.registerService(QStringLiteral("org.freedesktop.FileManager1")));
    }
    ~FileManagerService() override {
        m_bus.unregisterObject(QStringLiteral("/org/freedesktop/FileManager1"));
    }
    QString introspect(QString const&) const override { return {}; }
    bool handleMessage(QDBusMessage const& message, QDBusConnection const& bus) override {
        if (message.member() == QStringLiteral("ShowItems"))
            shown = message.arguments().value(0).toStringList();
        return bus.send(message.createReply());
    }

    QStringList shown;

private:
    QDBusConnection m_bus;
};

TEST(Browser, ColumnsOpenRevealAndPassCommandKeysOn) {
    Browser browser;
    auto const opened = noteOpenedFiles(browser.desktop);
    FileManagerService fileManager(browser.desktop.bus());
    auto const file = browser.desktop.home() / "b.txt";
    browser.key("End", "c.pdf ");
    browser.key("Up", "b.txt ");
    browser.display.key("Return");
    EXPECT_TRUE(waitFor([&] { return contentsOf(opened) == file.string() + "\n"; })) << contentsOf(opened);
    browser.display.key("Control+r");
    EXPECT_TRUE(waitFor([&] {
        QCoreApplication::processEvents();
        return fileManager.shown == QStringList{QStringLiteral("file://") + QString::fromStdString(file)};
    }));
    browser.key("Control+Up", "b.txt ");
    browser.key("Home", "Archive ");
    browser.key("Return", "Archive "); // It stands open in the next pane.
    browser.expectShown("Archive Reports a.txt b.txt c.pdf old.txt ");
}

TEST(Browser, FollowsAFolderThatGoesAndComesBack) {
    Browser browser;
    browser.useList();
    auto const reports = browser.desktop.home() / "Reports";
    browser.key("r", "Reports ");
    browser.display.key("Return");
    browser.expectShown("Year may.odt ");
    std::filesystem::rename(reports, browser.desktop.home() / "Elsewhere");
    browser.expectShown("");
    browser.desktop.write("Reports/new.txt");
    browser.expectShown("new.txt ");
    std::filesystem::remove_all(reports);
    browser.expectShown("");
    browser.desktop.write("Reports/again.txt");
    browser.expectShown("again.txt ");
}

TEST(Browser, AStormOfNewFilesEndsWithTheRightRows) {
    Browser browser;
    browser.useList();
    browser.display.key("Control+f");
    EXPECT_TRUE(
        waitFor([&] { return browser.program->tree().find("text", "Find in folder").has(State::focused); }));
    std::jthread creator([home = browser.desktop.home()] {
        for (int i = 0; i < 20000; ++i)
            std::ofstream(home / ("n" + std::to_string(i)));
    });
    browser.display.type("n1999");
    std::string expected = "n1999 ";
    for (int i = 19990; i < 20000; ++i)
        expected += "n" + std::to_string(i) + " ";
    creator.join();
    browser.expectShown(expected);
}

TEST(Browser, TheGridIsUsedByKeyboardAndFollowsTheFolder) {
    Browser browser;
    browser.display.key("Control+1");
    browser.program->tree().expect("list", "Files");
    browser.key("Left", "c.pdf ");
    browser.key("Right", "c.pdf ");
    browser.key("Home", "Archive ");
    browser.key("Right", "Reports ");
    browser.click("b.txt");
    browser.expectSelected("b.txt ");
    browser.desktop.write("aa.txt");
    browser.expectShown("Archive Reports a.txt aa.txt b.txt c.pdf ");
    browser.expectSelected("b.txt ");
    std::filesystem::remove(browser.desktop.home() / "a.txt");
    browser.expectShown("Archive Reports aa.txt b.txt c.pdf ");
    browser.key("Left", "aa.txt ");
}

} // namespace
} // namespace taliro::testing
