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

TEST(TextDecoding, KnownTextBecomesUtf8) {
    struct Case {
        std::string bytes, charset, text;
    };
    Case const cases[] = {
        {"plain", "", "plain"},
        {"naïve €", "", "naïve €"},
        {"\xEF\xBB\xBFmarked", "", "marked"},
        {"caf\xE9", "", "café"},
        {"\x93quoted\x94 \x80", "", "“quoted” €"},
        {"caf\xE9", "iso-8859-1", "café"},
        {"\xD0\xD2\xC9\xD7\xC5\xD4", "koi8-r", "привет"},
        {"G\0r\0\xFC\0\xDF\0e\0 \0=\xD8\0\xDE"s, "", "Grüße 😀"},
        {"\xFF\xFEG\0r\0\xFC\0\xDF\0e\0"s, "", "Grüße"},
        {"\xFE\xFF\0G\0r\0\xFC"s, "utf-8", "Grü"},
        {"\0G\0r\0\xFC"s, "", "Grü"},
        {"\x3F\x04\x40\x04\x38\x04\x32\x04\x35\x04\x42\x04", "utf-16", "привет"},
        {"\0G\0r\0\xFC"s, "utf-16", "Grü"},
        {"text\0"s, "", "text"},
        {"caf\xE9", "no-such-charset", "café"},
        {"", "", ""},
        {"\xFF\xFE", "", ""},
        {"odd\xFF", "utf-8", "odd\uFFFD"},
    };
    for (auto const& [bytes, charset, text] : cases)
        EXPECT_EQ(textAsUtf8(bytes, charset), text) << text << " " << charset;
}

} // namespace
} // namespace taliro
