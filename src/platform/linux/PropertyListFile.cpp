#include "platform/linux/PropertyListFile.h"

#include <cstdlib>
#include <memory>
#include <plist/plist.h>

namespace taliro {

namespace {

using Node = std::unique_ptr<void, decltype(&plist_free)>;

constexpr std::size_t largest = 64 * 1024 * 1024;
constexpr int deepest = 256;
/// libplist counts from 2001-01-01 00:00 UTC.
constexpr std::chrono::sys_seconds epoch{std::chrono::seconds(978307200)};

/// libplist descends without a limit of its own: how deep a list nests is bounded before it is handed over.
/// And it ends the process over a text that holds a zero.
bool isSafeXml(std::string_view bytes) {
    if (bytes.find('\0') != std::string_view::npos)
        return false;
    int depth = 0;
    for (auto at = bytes.find('<'); at != std::string_view::npos; at = bytes.find('<', at + 1)) {
        auto const tag = bytes.substr(at + 1, 6);
        bool const opens = tag.starts_with("array>") || tag.starts_with("dict>");
        bool const closes = tag.starts_with("/array") || tag.starts_with("/dict");
        depth += opens ? 1 : closes ? -1 : 0;
        if (depth > deepest)
            return false;
    }
    return true;
}

std::uint64_t bigEndian(std::string_view bytes) {
    std::uint64_t value = 0;
    for (unsigned char byte : bytes)
        value = value << 8 | byte;
    return value;
}

/// Walks a binary list's object table as libplist will, so that it meets neither cycles nor depth nor a size
/// that the file doesn't have. The layout: "bplist00", objects, offset table, and a trailer of 32 bytes.
class BinaryCheck {
public:
    explicit BinaryCheck(std::string_view bytes) : m_bytes(bytes) {}

    bool passes() {
        if (m_bytes.size() < 8 + 32)
            return false;
        auto const trailer = m_bytes.substr(m_bytes.size() - 32);
        m_offsetSize = static_cast<unsigned char>(trailer[6]);
        m_referenceSize = static_cast<unsigned char>(trailer[7]);
        m_count = bigEndian(trailer.substr(8, 8));
        auto const top = bigEndian(trailer.substr(16, 8));
        m_table = bigEndian(trailer.substr(24, 8));
        if (m_offsetSize < 1 || m_offsetSize > 8 || m_referenceSize < 1 || m_referenceSize > 8)
            return false;
        if (m_count == 0 || m_count > m_bytes.size() || m_table < 8 || m_table > m_bytes.size() - 32 ||
            m_count > (m_bytes.size() - 32 - m_table) / m_offsetSize)
            return false;
        m_budget = 4 * m_bytes.size() + 4096;
        return visit(top, 0);
    }

private:
    /// `m_budget` bounds the tree that shared references unfold into: its objects and their bytes.
    bool visit(std::uint64_t object, int depth) {
        if (object >= m_count || depth > deepest || m_budget == 0)
            return false;
        --m_budget;
        auto at = bigEndian(m_bytes.substr(m_table + object * m_offsetSize, m_offsetSize));
        if (at < 8 || at >= m_table)
            return false;
        auto const marker = static_cast<unsigned char>(m_bytes[at++]);
        auto const kind = marker >> 4;
        std::uint64_t length = marker & 15;
        if (kind <= 3 || kind == 8)
            return at + (kind == 0 ? 0 : kind == 8 ? length + 1 : std::uint64_t{1} << length) <= m_table;
        if (length == 15 && !readLength(at, length))
            return false;
        auto const room = m_table - at;
        switch (kind) {
        case 4:
            return length <= room && spend(length);
        case 5:
        case 7:
            return length <= room && spend(length) && !holdsZero(at, length, 1);
        case 6:
            return length <= room / 2 && spend(length * 2) && !holdsZero(at, length, 2);
        case 10:
        case 12:
            return visitAll(at, length, room, depth);
        case 13:
            return length <= room / 2 && visitAll(at, length * 2, room, depth);
        }
        return false;
    }

    /// Content that many objects share is copied for each.
    bool spend(std::uint64_t bytes) {
        bool const affordable = bytes <= m_budget;
        m_budget -= affordable ? bytes : 0;
        return affordable;
    }

    /// Whether one of `count` characters is zero.
    bool holdsZero(std::uint64_t at, std::uint64_t count, std::uint64_t width) const {
        for (; count > 0; --count, at += width)
            if (bigEndian(m_bytes.substr(at, width)) == 0)
                return true;
        return false;
    }

    bool readLength(std::uint64_t& at, std::uint64_t& length) const {
        if (at >= m_table)
            return false;
        auto const marker = static_cast<unsigned char>(m_bytes[at++]);
        auto const size = std::uint64_t{1} << (marker & 15);
        if ((marker >> 4) != 1 || size > 8 || size > m_table - at)
            return false;
        length = bigEndian(m_bytes.substr(at, size));
        at += size;
        return true;
    }

    bool visitAll(std::uint64_t at, std::uint64_t count, std::uint64_t room, int depth) {
        if (count > room / m_referenceSize)
            return false;
        for (std::uint64_t i = 0; i < count; ++i)
            if (!visit(bigEndian(m_bytes.substr(at + i * m_referenceSize, m_referenceSize)), depth + 1))
                return false;
        return true;
    }

    std::string_view m_bytes;
    std::uint64_t m_offsetSize = 0;
    std::uint64_t m_referenceSize = 0;
    std::uint64_t m_count = 0;
    std::uint64_t m_table = 0;
    std::uint64_t m_budget = 0;
};

std::optional<PropertyValue> fromNode(plist_t node);

std::string takeText(char* text) {
    std::unique_ptr<char, decltype(&std::free)> const owned(text, &std::free);
    return owned ? std::string(owned.get()) : std::string();
}

std::optional<PropertyValue> fromList(plist_t node) {
    PropertyValue::List list;
    auto const count = plist_array_get_size(node);
    list.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i)
        if (auto item = fromNode(plist_array_get_item(node, i)))
            list.push_back(std::move(*item));
    return PropertyValue{std::move(list)};
}

std::optional<PropertyValue> fromDictionary(plist_t node) {
    PropertyValue::Dictionary dictionary;
    plist_dict_iter position = nullptr;
    plist_dict_new_iter(node, &position);
    std::unique_ptr<void, decltype(&std::free)> const owned(position, &std::free);
    for (;;) {
        char* key = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(node, position, &key, &value);
        if (!key)
            break;
        auto name = takeText(key);
        if (auto item = value ? fromNode(value) : std::nullopt)
            dictionary.insert_or_assign(std::move(name), std::move(*item));
    }
    return PropertyValue{std::move(dictionary)};
}

PropertyValue fromDate(plist_t node) {
    std::int32_t seconds = 0;
    std::int32_t microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    return {Date(epoch + std::chrono::seconds(seconds)) + std::chrono::microseconds(microseconds)};
}

std::optional<PropertyValue> fromNode(plist_t node) {
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        std::uint8_t flag = 0;
        plist_get_bool_val(node, &flag);
        return PropertyValue{flag != 0};
    }
    case PLIST_UINT: {
        std::uint64_t number = 0;
        plist_get_uint_val(node, &number);
        return PropertyValue{static_cast<std::int64_t>(number)};
    }
    case PLIST_REAL: {
        double number = 0;
        plist_get_real_val(node, &number);
        return PropertyValue{number};
    }
    case PLIST_STRING: {
        std::uint64_t length = 0;
        auto const* text = plist_get_string_ptr(node, &length);
        return PropertyValue{text ? std::string(text, length) : std::string()};
    }
    case PLIST_DATA: {
        std::uint64_t length = 0;
        auto const* bytes = reinterpret_cast<std::uint8_t const*>(plist_get_data_ptr(node, &length));
        return PropertyValue{bytes ? PropertyValue::Data(bytes, bytes + length) : PropertyValue::Data()};
    }
    case PLIST_UID: {
        std::uint64_t index = 0;
        plist_get_uid_val(node, &index);
        return PropertyValue{PropertyValue::Uid{index}};
    }
    case PLIST_DATE:
        return fromDate(node);
    case PLIST_ARRAY:
        return fromList(node);
    case PLIST_DICT:
        return fromDictionary(node);
    default:
        return std::nullopt;
    }
}

struct NodeMaker {
    plist_t operator()(bool flag) const { return plist_new_bool(flag); }
    plist_t operator()(std::int64_t number) const {
        return plist_new_uint(static_cast<std::uint64_t>(number));
    }
    plist_t operator()(double number) const { return plist_new_real(number); }
    plist_t operator()(std::string const& text) const {
        return isValidUtf8(text) ? plist_new_string(text.c_str()) : nullptr;
    }
    plist_t operator()(PropertyValue::Data const& bytes) const {
        return plist_new_data(reinterpret_cast<char const*>(bytes.data()), bytes.size());
    }
    plist_t operator()(Date date) const {
        auto const since = std::chrono::floor<std::chrono::seconds>(date) - epoch;
        return plist_new_date(static_cast<std::int32_t>(since.count()), 0);
    }
    plist_t operator()(PropertyValue::Uid uid) const { return plist_new_uid(uid.index); }
    plist_t operator()(PropertyValue::List const& list) const {
        auto node = plist_new_array();
        for (auto const& item : list)
            if (auto child = std::visit(*this, item.value))
                plist_array_append_item(node, child);
        return node;
    }
    plist_t operator()(PropertyValue::Dictionary const& dictionary) const {
        auto node = plist_new_dict();
        for (auto const& [key, item] : dictionary)
            if (isValidUtf8(key))
                if (auto child = std::visit(*this, item.value))
                    plist_dict_set_item(node, key.c_str(), child);
        return node;
    }
};

} // namespace

std::optional<PropertyValue> parsePropertyList(std::string_view bytes) {
    if (bytes.size() > largest)
        return std::nullopt;
    bool const binary = bytes.starts_with("bplist00");
    if (binary ? !BinaryCheck(bytes).passes() : !isSafeXml(bytes) || !isValidUtf8(bytes))
        return std::nullopt;
    plist_t root = nullptr;
    auto const length = static_cast<std::uint32_t>(bytes.size());
    if (binary)
        plist_from_bin(bytes.data(), length, &root);
    else
        plist_from_xml(bytes.data(), length, &root);
    Node const owned(root, &plist_free);
    return root ? fromNode(root) : std::nullopt;
}

std::string writePropertyListXml(PropertyValue const& value) {
    Node const root(std::visit(NodeMaker{}, value.value), &plist_free);
    char* text = nullptr;
    std::uint32_t length = 0;
    plist_to_xml(root.get(), &text, &length);
    std::unique_ptr<char, decltype(&std::free)> const owned(text, &std::free);
    return text ? std::string(text, length) : std::string();
}

} // namespace taliro
