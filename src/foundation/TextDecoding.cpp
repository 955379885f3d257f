#include "foundation/TextDecoding.h"

#include "foundation/Text.h"

#include <algorithm>

#include <unicode/ucnv.h>
#include <unicode/ucsdet.h>
#include <unicode/unistr.h>

namespace taliro {

namespace {

using Detector = std::unique_ptr<UCharsetDetector, decltype(&ucsdet_close)>;
using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

struct Mark {
    std::string_view bytes;
    char const* encoding;
};
// The longer mark of UTF-32 begins with UTF-16's.
constexpr Mark marks[] = {{{"\xEF\xBB\xBF", 3}, "UTF-8"},
                          {{"\xFF\xFE\0\0", 4}, "UTF-32LE"},
                          {{"\0\0\xFE\xFF", 4}, "UTF-32BE"},
                          {{"\xFF\xFE", 2}, "UTF-16LE"},
                          {{"\xFE\xFF", 2}, "UTF-16BE"}};

/// Takes off the start of a UTF-8 character that the end of the bytes cut through.
std::string_view withoutCutCharacter(std::string_view bytes) {
    auto start = bytes.size();
    while (start > 0 && bytes.size() - start < 4) {
        auto const byte = static_cast<unsigned char>(bytes[--start]);
        if (byte < 0x80)
            return bytes;
        if (byte >= 0xC0) {
            auto const length = byte >= 0xF0 ? 4u : byte >= 0xE0 ? 3u : 2u;
            return bytes.size() - start < length ? bytes.substr(0, start) : bytes;
        }
    }
    return bytes;
}

std::optional<std::string> convert(std::string_view bytes, char const* encoding) {
    auto status = U_ZERO_ERROR;
    Converter const converter(ucnv_open(encoding, &status), &ucnv_close);
    if (U_FAILURE(status))
        return std::nullopt;
    icu::UnicodeString const text(bytes.data(), static_cast<std::int32_t>(bytes.size()), converter.get(),
                                  status);
    if (U_FAILURE(status))
        return std::nullopt;
    std::string utf8;
    text.toUTF8String(utf8);
    return utf8;
}

/// How many zero bytes stand at even and at odd places: ASCII letters in UTF-16 have theirs all at one.
std::pair<std::size_t, std::size_t> zeros(std::string_view bytes) {
    std::size_t counts[2] = {0, 0};
    for (std::size_t i = 0; i < bytes.size(); ++i)
        counts[i % 2] += bytes[i] == '\0' ? 1 : 0;
    return {counts[0], counts[1]};
}

/// UTF-16 without a mark, among bytes that may be anything.
char const* unmarkedWide(std::string_view bytes) {
    auto const [even, odd] = zeros(bytes);
    auto const enough = bytes.size() / 5;
    if (odd > enough && even == 0)
        return "UTF-16LE";
    if (even > enough && odd == 0)
        return "UTF-16BE";
    return nullptr;
}

/// The same among what is known to be text: there, few zeros say enough.
char const* likelyWide(std::string_view text) {
    auto const [even, odd] = zeros(text.substr(0, 512));
    if (text.size() % 2 != 0 || even == odd)
        return nullptr;
    return odd > even ? "UTF-16LE" : "UTF-16BE";
}

/// A few odd control characters are forgiven, as in captured terminal output; many are the sign of other
/// data.
bool looksBinary(std::string_view bytes) {
    auto const isOdd = [](char c) {
        auto const byte = static_cast<unsigned char>(c);
        return byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r' && byte != '\f' && byte != 0x1B;
    };
    return static_cast<std::size_t>(std::ranges::count_if(bytes, isOdd)) > bytes.size() / 50;
}

std::string detectEncoding(std::string_view bytes) {
    constexpr std::size_t enough = 32 * 1024;
    auto const sample = bytes.substr(0, enough);
    auto status = U_ZERO_ERROR;
    Detector const detector(ucsdet_open(&status), &ucsdet_close);
    ucsdet_setText(detector.get(), sample.data(), static_cast<std::int32_t>(sample.size()), &status);
    auto const* match = U_SUCCESS(status) ? ucsdet_detect(detector.get(), &status) : nullptr;
    auto const* name = match && U_SUCCESS(status) ? ucsdet_getName(match, &status) : nullptr;
    std::string const found = name && U_SUCCESS(status) ? name : "windows-1252";
    return found == "ISO-8859-1" ? "windows-1252" : found;
}

std::string withoutTrailingNuls(std::string text) {
    text.erase(text.find_last_not_of('\0') + 1);
    return text;
}

} // namespace

std::optional<DecodedText> decodeText(std::string_view bytes) {
    for (auto const& mark : marks) {
        if (!bytes.starts_with(mark.bytes))
            continue;
        auto text = convert(bytes.substr(mark.bytes.size()), mark.encoding);
        return text ? std::optional(DecodedText{std::move(*text), mark.encoding}) : std::nullopt;
    }
    auto const whole = withoutCutCharacter(bytes);
    if (whole.find('\0') == std::string_view::npos && isValidUtf8(whole)) {
        if (looksBinary(whole))
            return std::nullopt;
        return DecodedText{std::string(whole), "UTF-8"};
    }
    auto const* wide = unmarkedWide(bytes);
    if (!wide && looksBinary(bytes))
        return std::nullopt;
    auto const encoding = wide ? std::string(wide) : detectEncoding(bytes);
    auto text = convert(bytes, encoding.c_str());
    return text ? std::optional(DecodedText{std::move(*text), encoding}) : std::nullopt;
}

std::string textAsUtf8(std::string_view bytes, std::string_view charset) {
    for (auto const& mark : marks)
        if (bytes.starts_with(mark.bytes))
            return withoutTrailingNuls(convert(bytes.substr(mark.bytes.size()), mark.encoding).value_or(""));
    auto const* const wide = likelyWide(bytes);
    std::string named(charset);
    if (charset == "utf-16" || charset == "iso-10646-ucs-2")
        named = wide ? wide : "UTF-16LE"; // The name leaves the order open; this is most machines'.
    auto text = named.empty() ? std::nullopt : convert(bytes, named.c_str());
    if (!text)
        text = convert(bytes, wide ? wide : isValidUtf8(bytes) ? "UTF-8" : "windows-1252");
    return withoutTrailingNuls(text ? std::move(*text) : std::string(bytes));
}

} // namespace taliro
