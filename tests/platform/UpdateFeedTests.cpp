#include "platform/linux/UpdateFeed.h"

#include <gtest/gtest.h>

namespace taliro::testing {
namespace {

QByteArray feed(QByteArray const& items) {
    return "<?xml version='1.0'?><rss version='2.0' "
           "xmlns:sparkle='http://www.andymatuschak.org/xml-namespaces/sparkle'><channel><title>Taliro</"
           "title>" +
           items + "</channel></rss>";
}

TEST(UpdateFeed, OffersTheNewestVersionForThisSystem) {
    auto const release = newestRelease(feed(
        "<item><sparkle:version>9.0</sparkle:version><sparkle:os>macos</sparkle:os>"
        "<link>https://example.org/mac</link></item>"
        "<item><title>old</title><enclosure url='https://example.org/1.9.tar.xz' "
        "sparkle:version='1.9'/></item>"
        "<item><sparkle:shortVersionString> 1.10.2 "
        "</sparkle:shortVersionString><sparkle:version>77</sparkle:version>"
        "<description>&lt;b&gt;Faster&lt;/b&gt;</description><link>https://example.org/new</link></item>"));
    ASSERT_TRUE(release);
    EXPECT_EQ(release->version, QStringLiteral("1.10.2"));
    EXPECT_EQ(release->notesHtml, QStringLiteral("<b>Faster</b>"));
    EXPECT_EQ(release->page, QUrl(QStringLiteral("https://example.org/new")));
}

TEST(UpdateFeed, TakesNothingFromBadOnes) {
    QByteArray const good =
        "<item><sparkle:version>2</sparkle:version><link>https://example.org/</link></item>";
    ASSERT_TRUE(newestRelease(feed(good)));
    for (auto const& bytes :
         {QByteArray(), QByteArray("not xml"), QByteArray("<html/>"), feed(""), feed(good).chopped(20),
          feed("<item><link>https://example.org/</link></item>"),
          feed("<item><sparkle:version>2</sparkle:version></item>"),
          feed("<item><sparkle:version>2</sparkle:version><link>http://example.org/</link></item>"),
          feed("<item><sparkle:version>2</sparkle:version><link>javascript:alert(1)</link></item>")})
        EXPECT_FALSE(newestRelease(bytes)) << bytes.constData();
}

TEST(UpdateFeed, ComparesVersionsByTheirNumbers) {
    auto compare = [](char const* a, char const* b) {
        return compareVersions(QString::fromLatin1(a), QString::fromLatin1(b));
    };
    EXPECT_LT(compare("1.9", "1.10"), 0);
    EXPECT_EQ(compare("1.0", "1.0.0"), 0);
    EXPECT_GT(compare("2.0", "2.0-beta"), 0);
    EXPECT_LT(compare("2.0-alpha", "2.0-beta"), 0);
    EXPECT_GT(compare("0.1.1", "0.1"), 0);
}

} // namespace
} // namespace taliro::testing
