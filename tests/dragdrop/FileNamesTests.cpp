#include "dragdrop/FileNames.h"

#include "support/FakePlatform.h"

namespace taliro::testing {
namespace {

using namespace std::string_literals;

TEST(FileNamesTest, TimeStampsAreInUtcWithoutColons) {
    auto const at = [](std::int64_t seconds) { return Date(std::chrono::seconds(seconds)); };
    EXPECT_EQ(timeStampedName("image", at(1794836929), "png"), "image-2026-11-16T13-48-49Z.png");
    EXPECT_EQ(timeStampedName("Clipping", at(0), "txt"), "Clipping-1970-01-01T00-00-00Z.txt");
    EXPECT_EQ(timeStampedName("Snippet", at(-1), "rtf"), "Snippet-1969-12-31T23-59-59Z.rtf");
}

TEST(FileNamesTest, TakenNamesAreNumbered) {
    FakeFileManager files;
    auto const folder = files.addFolder("/f");
    for (auto const* name : {"report.pdf", "report 2.pdf", "plain", ".profile", "a.tar.gz", "trailing."})
        files.addFile("/f/"s + name);
    auto const longName = std::string(251, 'x') + ".txt";
    files.addFile("/f/" + longName);
    std::pair<std::string, std::string> const cases[] = {
        {"free.txt", "free.txt"},
        {"report.pdf", "report 3.pdf"},
        {"plain", "plain 2"},
        {".profile", ".profile 2"},
        {"a.tar.gz", "a.tar 2.gz"},
        {"trailing.", "trailing. 2"},
        {longName, std::string(249, 'x') + " 2.txt"},
    };
    for (auto const& [name, unique] : cases)
        EXPECT_EQ(uniqueDestination(files, name, folder).lastPathComponent(), unique);
}

TEST(FileNamesTest, ServersSuggestNames) {
    std::pair<std::string, std::optional<std::string>> const cases[] = {
        {"attachment; filename=report.pdf", "report.pdf"},
        {"attachment; filename=\"a \\\"b\\\"; c.pdf\"; size=3", "a \"b\"; c.pdf"},
        {"ATTACHMENT;FileName = x.txt ;foo", "x.txt"},
        {"inline; filename*=UTF-8''na%C3%AFve%20file.txt", "naïve file.txt"},
        {"inline; filename=\"fallback.txt\"; filename*=utf-8'de'Gr%C3%BC%C3%9Fe.txt", "Grüße.txt"},
        {"inline; filename*=iso-8859-1'en'%A3.txt; filename=x", "£.txt"},
        {"inline; filename*=broken; filename=x", "x"},
        {"attachment; filename=Gr\xC3\xBC\xC3\x9F"
         "e.txt",
         "Grüße.txt"},
        {"attachment; filename=caf\xE9.txt", "café.txt"},
        {"attachment; filename=a%20b.txt", "a b.txt"},
        {"attachment; filename=\"unterminated", "unterminated"},
        {"attachment", std::nullopt},
        {"attachment; filename=", std::nullopt},
        {"attachment; filename", std::nullopt},
        {"", std::nullopt},
        {";=;=\";", std::nullopt},
    };
    for (auto const& [header, name] : cases)
        EXPECT_EQ(suggestedFileName(header), name) << header;
}

TEST(FileNamesTest, ForeignNamesAreMadeHarmless) {
    std::pair<std::string, std::optional<std::string>> const cases[] = {
        {"plain.txt", "plain.txt"},
        {"../../.ssh/authorized_keys", "authorized_keys"},
        {"C:\\temp\\x.doc", "x.doc"},
        {".bashrc", "bashrc"},
        {"...", std::nullopt},
        {"", std::nullopt},
        {"dir/", std::nullopt},
        {"a\nb\x01\x7F\xC2\x85.txt", "ab.txt"},
        {"nul\0.txt"s, "nul.txt"},
        {"  spaced .txt ", "spaced .txt"},
        {std::string(300, 'x') + ".pdf", std::string(251, 'x') + ".pdf"},
        {std::string(254, 'x') + "é", std::string(254, 'x')},
        {"x." + std::string(300, 'y'), "x." + std::string(253, 'y')},
        {"bad\xFFname", "badÿname"},
    };
    for (auto const& [name, plain] : cases)
        EXPECT_EQ(plainFileName(name), plain) << name;
}

TEST(FileNamesTest, DownloadsAreNamedByServerThenLinkThenAsSuch) {
    struct Case {
        std::string header, link, name;
    };
    Case const cases[] = {
        {"attachment; filename=report.pdf", "https://x.org/page", "report.pdf"},
        {"attachment; filename=\"..\"", "https://x.org/a%20b.txt?q=/c#d", "a b.txt"},
        {"", "https://x.org/dir/", "dir"},
        {"", "https://x.org/", "download"},
        {"", "https://x.org", "download"},
        {"", "https://x.org?file=/etc/passwd", "download"},
        {"", "https://x.org/..%2F..%2Fetc%2Fpasswd", "passwd"},
        {"", "https://x.org/%00", "download"},
    };
    for (auto const& [header, link, name] : cases)
        EXPECT_EQ(downloadName(header, *Url::parse(link)), name) << link;
}

} // namespace
} // namespace taliro::testing
