#include "platform/linux/QtSoftwareUpdate.h"
#include "support/FakePlatform.h"
#include "support/HttpServer.h"
#include "support/WaitUntil.h"

#include <QApplication>
#include <QDesktopServices>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTextBrowser>

#include <gtest/gtest.h>

namespace taliro::testing {
namespace {

using namespace std::chrono_literals;

QByteArray feedOffering(QByteArray const& version) {
    return HttpServer::response(
        "", "<?xml version='1.0'?><rss version='2.0' "
            "xmlns:sparkle='http://www.andymatuschak.org/xml-namespaces/sparkle'><channel><item>"
            "<sparkle:version>" +
                version +
                "</sparkle:version><description>&lt;ul&gt;&lt;li&gt;Quicker&lt;/li&gt;&lt;/ul&gt;"
                "</description><link>https://example.org/</link></item></channel></rss>");
}

struct SoftwareUpdateTest : ::testing::Test {
    Identity const& identity = madeOnce();
    HttpServer server{identity};
    FakeUserDefaults defaults;
    HandQueue queue;
    QtSoftwareUpdate update{defaults, queue, QString::fromStdString(server.address("/feed")),
                            QStringLiteral("1.2")};

    void SetUp() override {
        ASSERT_FALSE(identity.key.isNull());
        identity.setTrusted(true);
    }
    static Identity const& madeOnce() {
        static auto const identity = Identity::make();
        return identity;
    }
    static QWidget* window() {
        for (auto* one : QApplication::topLevelWidgets())
            if (one->isVisible() && one->windowTitle() == QLatin1String("Software Update"))
                return one;
        return nullptr;
    }
    template <typename Widget>
    static std::string texts() {
        std::string all;
        if (auto const* shown = window())
            for (auto const* one : shown->findChildren<Widget*>())
                if (one->isVisible())
                    all += "[" + one->text().toStdString() + "]";
        return all;
    }
    static bool says(std::string const& words) {
        return waitUntil([&] { return texts<QLabel>() == words; });
    }
    static void press(char const* text) {
        for (auto* button : window()->findChildren<QPushButton*>())
            if (button->isVisible() && button->text() == QLatin1String(text))
                return button->click();
        ADD_FAILURE() << "no button " << text << " among " << texts<QPushButton>();
    }
    /// As a day does, with the program running.
    void dailyCheck() {
        auto const before = server.requests;
        defaults.setReal("lastUpdateCheck", 0);
        update.start();
        queue.advance(60s);
        EXPECT_TRUE(
            waitUntil([&] { return server.requests == before + 1 && defaults.real("lastUpdateCheck") > 0; }));
    }
};

TEST_F(SoftwareUpdateTest, AnswersWhoeverAsks) {
    struct {
        QByteArray answer;
        char const* words;
        char const* buttons;
    } const cases[] = {
        {feedOffering("1.10"), "[Taliro 1.10 is available][You have 1.2.]",
         "[Skip This Version][Later][Open Download Page]"},
        {feedOffering("1.2"), "[You're up to date][Taliro 1.2 is the newest version.]", "[OK]"},
        {HttpServer::response("", "<html>"), "[Couldn't check for updates][The update feed can't be read.]",
         "[OK]"},
    };
    for (auto const& one : cases) {
        server.answers["/feed"] = {one.answer};
        update.checkForUpdates();
        EXPECT_EQ(texts<QLabel>(), "[Checking for updates…]");
        EXPECT_TRUE(says(one.words)) << texts<QLabel>();
        EXPECT_EQ(texts<QPushButton>(), one.buttons);
        int prominent = 0;
        for (auto const* button : window()->findChildren<QPushButton*>())
            prominent += button->isVisible() && button->isDefault();
        EXPECT_EQ(prominent, 1) << one.words;
    }
}

TEST_F(SoftwareUpdateTest, SaysWhyTheFeedCouldNotBeHad) {
    HttpServer plain;
    plain.answers["/feed"] = {feedOffering("6.6")};
    auto const fails = [&](char const* reason) {
        update.checkForUpdates();
        EXPECT_TRUE(waitUntil([&] { return texts<QLabel>().starts_with("[Couldn't check for updates]"); }));
        EXPECT_NE(texts<QLabel>().find(reason), std::string::npos) << texts<QLabel>();
    };
    server.answers["/feed"] = {"HTTP/1.1 404 Not Found\r\nConnection: close\r\n\r\n"};
    fails("Not Found");
    server.answers["/feed"] = {"HTTP/1.1 302 Found\r\nConnection: close\r\nLocation: " +
                               QByteArray::fromStdString(plain.address("/feed")) + "\r\n\r\n"};
    fails("nsecure");
    EXPECT_EQ(plain.requests, 0);

    press("OK"); // There is one window to look at.
    EXPECT_TRUE(waitUntil([] { return !window(); }));
    identity.setTrusted(false);
    QtSoftwareUpdate doubting(defaults, queue, QString::fromStdString(server.address("/feed")), "1.2");
    auto const before = server.requests;
    doubting.checkForUpdates();
    EXPECT_TRUE(says("[Couldn't check for updates][The server's certificate isn't trusted.]"))
        << texts<QLabel>();
    EXPECT_EQ(server.requests, before);
}

TEST_F(SoftwareUpdateTest, DailyCheckSpeaksOnlyOfWhatIsNewAndNotSkipped) {
    server.answers["/feed"] = {feedOffering("1.2")};
    dailyCheck();
    EXPECT_FALSE(window());

    server.answers["/feed"] = {feedOffering("1.3")};
    dailyCheck();
    ASSERT_TRUE(waitUntil([] { return window(); }));
    EXPECT_EQ(window()->findChild<QTextBrowser*>()->toPlainText(), QStringLiteral("Quicker"));
    press("Skip This Version");
    EXPECT_TRUE(waitUntil([] { return !window(); }));
    dailyCheck();
    EXPECT_FALSE(window());

    update.checkForUpdates();
    EXPECT_TRUE(says("[Taliro 1.3 is available][You have 1.2.]")) << "skipped, but asked for";
    press("Later");
    server.answers["/feed"] = {feedOffering("1.4")};
    dailyCheck();
    EXPECT_TRUE(says("[Taliro 1.4 is available][You have 1.2.]"));
    QTextBrowser opened;
    QDesktopServices::setUrlHandler("https", &opened, "setSource");
    press("Open Download Page");
    QDesktopServices::unsetUrlHandler("https");
    EXPECT_EQ(opened.source(), QUrl("https://example.org/"));
}

TEST_F(SoftwareUpdateTest, AClosedWindowStaysClosedWhenTheAnswerComes) {
    server.answers["/feed"] = {"", false};
    update.checkForUpdates();
    ASSERT_TRUE(waitUntil([&] { return server.requests == 1; }));
    press("Cancel");
    EXPECT_TRUE(waitUntil([] { return !window(); }));
    EXPECT_TRUE(waitUntil([&] { return server.open() == 0; })) << "nothing is waited for any more";
    EXPECT_FALSE(window());
}

TEST_F(SoftwareUpdateTest, AsksTheNetworkNothingWithoutASecureFeed) {
    QtSoftwareUpdate packaged(defaults, queue, QString(), QStringLiteral("1.2"));
    packaged.start();
    queue.advance(48h);
    packaged.checkForUpdates();
    EXPECT_TRUE(says("[Updates come with your system][This copy of Taliro 1.2 is updated by your system's "
                     "package manager.]"));

    HttpServer plain;
    QtSoftwareUpdate insecure(defaults, queue, QString::fromStdString(plain.address("/feed")),
                              QStringLiteral("1.2"));
    press("OK");
    EXPECT_TRUE(waitUntil([] { return !window(); }));
    insecure.checkForUpdates();
    EXPECT_TRUE(says("[Couldn't check for updates][The update feed's address isn't secure.]"));
    EXPECT_EQ(server.requests + plain.requests, 0);
}

} // namespace
} // namespace taliro::testing

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QApplication application(argc, argv);
    application.setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
