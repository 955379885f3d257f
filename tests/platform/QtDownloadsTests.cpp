#include "platform/linux/QtDownloads.h"

#include "platform/linux/PosixNewFiles.h"
#include "support/HttpServer.h"
#include "support/TemporaryFolder.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <sys/stat.h>

namespace taliro::testing {
namespace {

using namespace std::chrono_literals;

struct QtDownloadsTest : ::testing::Test {
    HttpServer server;
    TemporaryFolder folder;
    QtDownloads downloads{{.redirects = 3, .bytes = 100000, .silence = 30s}};
    QtDownloads impatient{{.redirects = 3, .bytes = 100000, .silence = 300ms}};
    int progressReports = 0;

    std::optional<Downloads::Downloaded> fetch(std::string const& address) {
        return fetch(address, downloads);
    }
    std::optional<Downloads::Downloaded> fetch(std::string const& address, QtDownloads& by) {
        QEventLoop loop;
        std::optional<Downloads::Downloaded> result;
        bool started = false;
        auto const task = by.start(*Url::parse(address), Url::file(folder.path().string(), true),
                                   {.onProgress = [&](auto const&) { ++progressReports; },
                                    .onEnd =
                                        [&](auto downloaded) {
                                            EXPECT_TRUE(started) << "never ends before it returns";
                                            result = std::move(downloaded);
                                            loop.quit();
                                        }});
        started = true;
        QTimer::singleShot(20s, &loop, [&] {
            ADD_FAILURE() << address << " never ends";
            loop.quit();
        });
        loop.exec();
        return result;
    }
    bool isFolderEmpty() const { return std::filesystem::is_empty(folder.path()); }
};

TEST_F(QtDownloadsTest, AFileArrivesWholeAndHidden) {
    QByteArray const body(90000, 'x');
    server.answers["/file"] = {HttpServer::response(
        "Content-Length: 90000\r\nContent-Disposition: attachment; filename=a.bin\r\n", body)};
    server.answers["/moved"] = {
        "HTTP/1.1 302 Found\r\nConnection: close\r\nContent-Length: 0\r\nLocation: /file\r\n\r\n"};
    auto const downloaded = fetch(server.address("/moved"));
    ASSERT_TRUE(downloaded);
    EXPECT_EQ(downloaded->contentDisposition, "attachment; filename=a.bin");
    EXPECT_TRUE(downloaded->temporary.lastPathComponent().starts_with("."));
    EXPECT_EQ(contentsOf(downloaded->temporary.path()), body.toStdString());
    EXPECT_GT(progressReports, 0);

    PosixNewFiles files;
    auto const taken = Url::file(folder.write("taken", "mine").string());
    EXPECT_EQ(files.keep(downloaded->temporary, taken), std::unexpected(std::errc::file_exists));
    EXPECT_EQ(contentsOf(taken.path()), "mine");
    auto const kept = Url::file((folder / "a.bin").string());
    EXPECT_TRUE(files.keep(downloaded->temporary, kept));
    EXPECT_EQ(contentsOf(kept.path()), body.toStdString());
    EXPECT_FALSE(std::filesystem::exists(downloaded->temporary.path()));
}

TEST_F(QtDownloadsTest, WhatFailsLeavesNothingBehind) {
    auto const ok = [](QByteArray const& headers, QByteArray const& body) {
        return HttpServer::response(headers, body);
    };
    auto const redirect = [](QByteArray const& to) {
        return "HTTP/1.1 302 Found\r\nConnection: close\r\nContent-Length: 0\r\nLocation: " + to + "\r\n\r\n";
    };
    struct Case {
        char const* what;
        HttpServer::Answer answer;
    };
    Case const cases[] = {
        {"stalls before its answer", {"", false}},
        {"stalls within its answer", {ok("Content-Length: 1000\r\n", "some"), false}},
        {"ends before the length it told", {ok("Content-Length: 1000\r\n", "some")}},
        {"ends within a chunk", {ok("Transfer-Encoding: chunked\r\n", "ff\r\nsome")}},
        {"sends more than is allowed", {ok("", QByteArray(200000, 'x'))}},
        {"tells of an error",
         {"HTTP/1.1 404 Not Found\r\nConnection: close\r\nContent-Length: 4\r\n\r\nsome"}},
        {"is no web server", {"220 mail ready\r\n"}},
        {"goes round in circles", {redirect("/")}},
        {"leads to a file here", {redirect("file:///etc/passwd")}},
        {"closes at once", {""}},
    };
    for (auto const& [what, answer] : cases) {
        server.answers["/"] = answer;
        EXPECT_FALSE(fetch(server.address("/"), impatient)) << what;
        EXPECT_TRUE(isFolderEmpty()) << what;
    }
    EXPECT_FALSE(fetch("file:///etc/passwd"));
    EXPECT_FALSE(fetch("ftp://127.0.0.1/x"));
    EXPECT_FALSE(fetch("http://127.0.0.1:1/refused"));
    EXPECT_TRUE(isFolderEmpty());
}

TEST_F(QtDownloadsTest, CancellingLeavesNothingBehind) {
    server.answers["/"] = {HttpServer::response("Content-Length: 1000\r\n", "some"), false};
    QEventLoop loop;
    bool ended = false;
    auto task = downloads.start(
        *Url::parse(server.address("/")), Url::file(folder.path().string(), true),
        {.onProgress = [&](auto const&) { loop.quit(); }, .onEnd = [&](auto) { ended = true; }});
    loop.exec();
    EXPECT_FALSE(isFolderEmpty());
    task.reset();
    EXPECT_TRUE(isFolderEmpty());
    QCoreApplication::processEvents();
    EXPECT_FALSE(ended);
}

TEST_F(QtDownloadsTest, AFolderThatCantBeWrittenToEndsIt) {
    server.answers["/"] = {HttpServer::response("Content-Length: 4\r\n", "some")};
    std::filesystem::remove_all(folder.path());
    EXPECT_FALSE(fetch(server.address("/")));
}

TEST(PosixNewFilesTest, FilesAppearWholeAndNeverReplace) {
    TemporaryFolder folder;
    PosixNewFiles files;
    auto const file = Url::file((folder / "new").string());
    EXPECT_TRUE(files.write(file, "content"));
    EXPECT_EQ(contentsOf(file.path()), "content");
    struct stat status {};
    ASSERT_EQ(::stat(file.path().c_str(), &status), 0);
    auto const mask = ::umask(0);
    ::umask(mask);
    EXPECT_EQ(status.st_mode & 0777, 0666 & ~mask);
    EXPECT_EQ(files.write(file, "other"), std::unexpected(std::errc::file_exists));
    EXPECT_EQ(contentsOf(file.path()), "content");
    auto const tooLong = Url::file((folder / std::string(300, 'x')).string());
    EXPECT_EQ(files.write(tooLong, "x"), std::unexpected(std::errc::filename_too_long));
    EXPECT_EQ(files.write(Url::file((folder / "no/such").string()), "x"),
              std::unexpected(std::errc::no_such_file_or_directory));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1)
        << "no half-made file is left";
}

} // namespace
} // namespace taliro::testing
