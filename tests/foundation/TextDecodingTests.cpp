#include "foundation/TextDecoding.h"

#include <gtest/gtest.h>

namespace taliro {
namespace {

using namespace std::string_literals;

TEST(TextDecoding, FindsTheEncoding) {
    struct {
        char const* what;
        std::string bytes;
        char const* encoding;
        char const* utf8;
    } const cases[] = {
        {"nothing", "", "UTF-8", ""},
        {"plain", "plain\tand\nsimple", "UTF-8", "plain\tand\nsimple"},
        {"UTF-8", "cr\xC3\xA8me", "UTF-8", "crème"},
        {"a mark", "\xEF\xBB\xBFx", "UTF-8", "x"},
        {"cut in a character", "cr\xC3\xA8me \xE2\x82", "UTF-8", "crème "},
        {"marked UTF-16", "\xFF\xFEh\0i\0"s, "UTF-16LE", "hi"},
        {"marked UTF-16, big end", "\xFE\xFF\0h\0i"s, "UTF-16BE", "hi"},
        {"marked UTF-32", "\xFF\xFE\0\0h\0\0\0"s, "UTF-32LE", "h"},
        {"unmarked UTF-16", "h\0e\0l\0l\0o\0"s, "UTF-16LE", "hello"},
        {"unmarked UTF-16, big end", "\0h\0e\0l\0l\0o"s, "UTF-16BE", "hello"},
        {"French", "Le caf\xE9 \xE9tait d\xE9j\xE0 ferm\xE9, la cr\xE8me aussi. O\xF9 aller ?",
         "windows-1252", "Le café était déjà fermé, la crème aussi. Où aller ?"},
        {"Japanese",
         "\x82\xB1\x82\xEA\x82\xCD\x93\xFA\x96\x7B\x8C\xEA\x82\xCC\x95\xB6\x8F\xCD\x82\xC5\x82\xB7",
         "Shift_JIS", "これは日本語の文章です"},
    };
    for (auto const& [what, bytes, encoding, utf8] : cases) {
        auto const decoded = decodeText(bytes);
        ASSERT_TRUE(decoded) << what;
        EXPECT_EQ(decoded->encoding, encoding) << what;
        EXPECT_EQ(decoded->utf8, utf8) << what;
    }
}

TEST(TextDecoding, RefusesWhatIsNoText) {
    EXPECT_FALSE(decodeText("\x7F"
                            "ELF\x02\x01\x01\0\0\0\0\0\0\0\0\0"s));
    EXPECT_FALSE(decodeText("\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\x01"s));
    EXPECT_FALSE(decodeText(std::string(200, '\x01')));
}

} // namespace
} // namespace taliro
