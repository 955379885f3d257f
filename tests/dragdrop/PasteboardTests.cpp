#include "dragdrop/Pasteboard.h"

#include "support/FakePasteboard.h"

namespace taliro::testing {
namespace {

using namespace std::string_literals;

std::string utf16le(std::u16string_view text) {
    std::string bytes;
    for (auto const unit : text) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

TEST(PasteboardTest, AddressesComeFromWhateverTheSourceOffers) {
    struct Case {
        FakePasteboard carried;
        std::vector<std::string> urls;
    };
    Case const cases[] = {
        {{{"text/uri-list", "# from a file manager\r\nfile:///a%20b\r\n\r\nfile:///c/\r\n"}},
         {"file:///a%20b", "file:///c/"}},
        {{{"text/uri-list", "file:///a\nnonsense\nhttps://x.org/y"}}, {"file:///a", "https://x.org/y"}},
        {{{"text/uri-list", "file:///bad%FFname"}}, {"file:///bad%FFname"}},
        {{{"text/x-moz-url", utf16le(u"https://x.org/y\nThe title: http://z")}}, {"https://x.org/y"}},
        {{{"_NETSCAPE_URL", "https://x.org/y\nThe title"}}, {"https://x.org/y"}},
        {{{"text/uri-list", "file:///a"}, {"text/x-moz-url", utf16le(u"https://x.org/y\nt")}}, {"file:///a"}},
        {{{"text/uri-list", ""}, {"text/plain", "https://x.org"}}, {}},
    };
    for (auto const& [carried, expected] : cases) {
        std::vector<std::string> found;
        for (auto const& url : carried.pasteboard().urls())
            found.push_back(url.absoluteString());
        EXPECT_EQ(found, expected);
    }
}

TEST(PasteboardTest, FilesAreMovedAndTheRestIsCopied) {
    struct Case {
        FakePasteboard carried;
        bool commandHeld;
        DropOperation operation;
    };
    Case const cases[] = {
        {{{"text/uri-list", "file:///a"}}, false, DropOperation::move},
        {{{"text/uri-list", "file:///a"}}, true, DropOperation::copy},
        {{{"text/uri-list", "https://x.org\nfile:///a"}}, false, DropOperation::move},
        {{{"text/uri-list", "https://x.org"}}, false, DropOperation::copy},
        {{{"image/png", "…"}}, false, DropOperation::copy},
        {{{"text/plain", "file:///a"}}, false, DropOperation::copy},
    };
    for (auto const& [carried, commandHeld, operation] : cases)
        EXPECT_EQ(proposedOperation(!carried.pasteboard().fileUrls().empty(), commandHeld), operation);
}

TEST(PasteboardTest, HtmlTellsItsEncoding) {
    auto const html = [](std::string bytes) {
        return FakePasteboard{{{"text/html", bytes}}}.pasteboard().html();
    };
    EXPECT_EQ(html("<b>plain</b>"), "<b>plain</b>");
    EXPECT_EQ(html(utf16le(u"<b>Grüße</b>")), "<meta charset=\"utf-8\">\n<b>Grüße</b>");
    EXPECT_EQ(html("<META CHARSET=utf-8><b>Grüße</b>"), "<META CHARSET=utf-8><b>Grüße</b>");
    EXPECT_EQ(html(""), std::nullopt);
}

TEST(PasteboardTest, TextPrefersUtf8) {
    auto const text = [](FakePasteboard const& carried) { return carried.pasteboard().text(); };
    EXPECT_EQ(text({{"text/plain", "latin"}, {"text/plain;charset=utf-8", "good"}}), "good");
    EXPECT_EQ(text({{"text/plain;charset=\"KOI8-R\"", "\xD0"}}), "п");
    EXPECT_EQ(text({{"text/html", "<b>"}}), std::nullopt);
}

} // namespace
} // namespace taliro::testing
