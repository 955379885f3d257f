#include "foundation/Text.h"

#include <algorithm>
#include <array>
#include <memory>
#include <unicode/brkiter.h>
#include <unicode/coll.h>
#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/numberformatter.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

namespace taliro {

namespace {

icu::UnicodeString unicode(std::string_view text) {
    return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
}

std::string utf8(icu::UnicodeString const& text) {
    std::string bytes;
    text.toUTF8String(bytes);
    return bytes;
}

/// The POSIX locale orders by code point; people without a locale want the languages' common order all the
/// same.
icu::Locale collationLocale() {
    auto const& locale = icu::Locale::getDefault();
    return std::string_view(locale.getVariant()) == "POSIX" ? icu::Locale::getRoot() : locale;
}

/// Case differences are ignored, accents count: secondary strength.
std::unique_ptr<icu::Collator> makeCollator() {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(collationLocale(), status));
    if (U_FAILURE(status)) {
        status = U_ZERO_ERROR;
        collator.reset(icu::Collator::createInstance(icu::Locale::getRoot(), status));
    }
    if (collator)
        collator->setStrength(icu::Collator::SECONDARY);
    return collator;
}

icu::Collator& collator() {
    thread_local std::unique_ptr<icu::Collator> const instance = makeCollator();
    return *instance;
}

bool isAscii(std::string_view text) {
    for (unsigned char byte : text)
        if (byte >= 0x80)
            return false;
    return true;
}

char asciiLower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter | 0x20) : letter;
}

std::string decimalText(double value, int fractionDigits) {
    UErrorCode status = U_ZERO_ERROR;
    auto const text = icu::number::NumberFormatter::withLocale(icu::Locale::getDefault())
                          .precision(icu::number::Precision::minMaxFraction(0, fractionDigits))
                          .formatDouble(value, status)
                          .toString(status);
    return U_FAILURE(status) ? std::to_string(value) : utf8(text);
}

} // namespace

std::strong_ordering localizedCaseInsensitiveCompare(std::string_view a, std::string_view b) {
    UErrorCode status = U_ZERO_ERROR;
    auto const result =
        collator().compareUTF8(icu::StringPiece(a.data(), static_cast<int32_t>(a.size())),
                               icu::StringPiece(b.data(), static_cast<int32_t>(b.size())), status);
    return static_cast<int>(result) <=> 0;
}

std::string lowercased(std::string_view text) {
    if (isAscii(text)) {
        std::string lower(text);
        for (char& letter : lower)
            letter = asciiLower(letter);
        return lower;
    }
    return utf8(unicode(text).toLower(icu::Locale::getDefault()));
}

std::string capitalized(std::string_view text) {
    return utf8(unicode(text).toTitle(nullptr, icu::Locale::getDefault()));
}

std::vector<std::string> characters(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> breaks(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status))
        return {std::string(text)};
    auto const whole = unicode(text);
    breaks->setText(whole);
    std::vector<std::string> parts;
    for (auto start = breaks->first(), end = breaks->next(); end != icu::BreakIterator::DONE;
         start = end, end = breaks->next())
        parts.push_back(utf8(whole.tempSubStringBetween(start, end)));
    return parts;
}

bool containsLowercased(std::string_view text, std::string_view lowercasedPart) {
    if (lowercasedPart.empty())
        return true;
    if (!isAscii(text))
        return lowercased(text).find(lowercasedPart) != std::string::npos;
    if (text.size() < lowercasedPart.size())
        return false;
    auto const last = text.size() - lowercasedPart.size();
    for (std::size_t start = 0; start <= last; ++start) {
        std::size_t i = 0;
        while (i < lowercasedPart.size() && asciiLower(text[start + i]) == lowercasedPart[i])
            ++i;
        if (i == lowercasedPart.size())
            return true;
    }
    return false;
}

void appendSortKey(std::string_view text, std::string& key) {
    auto const name = unicode(text);
    auto const start = key.size();
    auto const write = [&](std::size_t room) {
        key.resize(start + room);
        return static_cast<std::size_t>(collator().getSortKey(
            name, reinterpret_cast<std::uint8_t*>(key.data() + start), static_cast<int32_t>(room)));
    };
    auto const enough = 4 * text.size() + 16; // for nearly all
    auto length = write(enough);
    if (length > enough)
        length = write(length);
    key.resize(start + std::max<std::size_t>(length, 1) - 1); // The last byte is the terminating zero.
}

std::string_view trimmingWhitespace(std::string_view text) {
    auto const first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string_view trimmingWhitespaceAndNewlines(std::string_view text) {
    auto const first = text.find_first_not_of(" \t\r\n\v\f");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n\v\f") - first + 1);
}

bool isValidUtf8(std::string_view bytes) {
    auto const* data = reinterpret_cast<std::uint8_t const*>(bytes.data());
    auto const length = static_cast<int32_t>(bytes.size());
    for (int32_t i = 0; i < length;) {
        UChar32 point = 0;
        U8_NEXT(data, i, length, point);
        if (point < 0)
            return false;
    }
    return true;
}

std::string lowercasedAscii(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c; });
    return lower;
}

std::string legible(std::string_view bytes) {
    bool plain = true;
    for (unsigned char byte : bytes)
        plain = plain && byte >= 0x20 && byte < 0x7f;
    if (plain)
        return std::string(bytes);
    auto text = unicode(bytes);
    for (int32_t i = 0; i < text.length(); ++i) {
        char16_t const unit = text[i];
        if (unit < 0x20)
            text.setCharAt(i, static_cast<char16_t>(0x2400 + unit));
        else if (unit == 0x7f)
            text.setCharAt(i, u'\u2421');
        else if ((unit >= 0x202a && unit <= 0x202e) || (unit >= 0x2066 && unit <= 0x2069))
            text.setCharAt(i, u'\ufffd'); // Marks that turn the text around could disguise an extension.
    }
    return utf8(text);
}

std::string byteCountText(std::int64_t bytes) {
    if (bytes <= 0)
        return "Zero KB";
    if (bytes == 1)
        return "1 byte";
    if (bytes < 1000)
        return decimalText(static_cast<double>(bytes), 0) + " bytes";
    static constexpr std::array units{"KB", "MB", "GB", "TB", "PB", "EB"};
    double value = static_cast<double>(bytes) / 1000;
    std::size_t unit = 0;
    // Kilobytes are shown whole, megabytes with one digit, larger units with two.
    auto digits = [&] { return unit == 0 ? 0 : unit == 1 ? 1 : 2; };
    auto limit = [&] { return unit == 0 ? 999.5 : unit == 1 ? 999.95 : 999.995; };
    while (value >= limit() && unit + 1 < units.size()) {
        value /= 1000;
        ++unit;
    }
    return decimalText(value, digits()) + " " + units[unit];
}

std::string dateText(Date date) {
    thread_local std::unique_ptr<icu::DateFormat> const format(icu::DateFormat::createDateTimeInstance(
        icu::DateFormat::kMedium, icu::DateFormat::kShort, icu::Locale::getDefault()));
    if (!format)
        return {};
    icu::UnicodeString text;
    auto const seconds = std::chrono::duration<double, std::milli>(date.time_since_epoch());
    format->format(seconds.count(), text);
    return utf8(text);
}

std::string numberText(std::int64_t number) {
    return decimalText(static_cast<double>(number), 0);
}

} // namespace taliro
