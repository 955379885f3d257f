#include "sidebar/KeyedArchive.h"

#include "sidebar/BinaryPlistCheck.h"

#include <plist/plist.h>

#include <cstdlib>
#include <initializer_list>

namespace taliro {

namespace {

struct Freed {
    void operator()(char* text) const { std::free(text); }
};
struct Unreferenced {
    void operator()(void* list) const { plist_free(list); }
};
using List = std::unique_ptr<void, Unreferenced>;

bool isA(plist_t node, plist_type type) {
    return node && plist_get_node_type(node) == type;
}

std::optional<std::string> stringOf(plist_t node) {
    if (!isA(node, PLIST_STRING))
        return std::nullopt;
    std::uint64_t length = 0;
    auto const* text = plist_get_string_ptr(node, &length);
    return text ? std::optional(std::string(text, length)) : std::nullopt;
}

std::optional<std::vector<std::uint8_t>> dataOf(plist_t node) {
    if (!isA(node, PLIST_DATA))
        return std::nullopt;
    std::uint64_t length = 0;
    auto const* bytes = reinterpret_cast<std::uint8_t const*>(plist_get_data_ptr(node, &length));
    return bytes ? std::vector<std::uint8_t>(bytes, bytes + length) : std::vector<std::uint8_t>();
}

std::vector<plist_t> itemsOf(plist_t array) {
    std::vector<plist_t> items;
    if (!isA(array, PLIST_ARRAY))
        return items;
    items.reserve(plist_array_get_size(array));
    plist_array_iter position = nullptr;
    plist_array_new_iter(array, &position);
    std::unique_ptr<char, Freed> const owner(static_cast<char*>(position));
    for (plist_t item = nullptr; plist_array_next_item(array, position, &item), item;)
        items.push_back(item);
    return items;
}

} // namespace

struct KeyedArchive::Table {
    List list;
    plist_t top = nullptr;
    std::vector<plist_t> objects; ///< owned by `list`

    plist_t at(Object object) const {
        return object && *object < objects.size() ? objects[*object] : nullptr;
    }

    /// What a reference node refers to. The first object stands for none.
    Object referred(plist_t node) const {
        if (!isA(node, PLIST_UID))
            return std::nullopt;
        std::uint64_t index = 0;
        plist_get_uid_val(node, &index);
        return index > 0 && index < objects.size() ? Object(index) : std::nullopt;
    }

    std::optional<std::string> className(plist_t object) const {
        auto const type =
            isA(object, PLIST_DICT) ? at(referred(plist_dict_get_item(object, "$class"))) : nullptr;
        return isA(type, PLIST_DICT) ? stringOf(plist_dict_get_item(type, "$classname")) : std::nullopt;
    }

    /// The object as an instance of one of `classes`, or nothing.
    plist_t instance(Object object, std::initializer_list<std::string_view> classes) const {
        auto const node = at(object);
        auto const name = className(node);
        return name && std::find(classes.begin(), classes.end(), *name) != classes.end() ? node : nullptr;
    }

    /// The objects that an instance refers to under `key`.
    std::vector<Object> references(plist_t instance, char const* key) const {
        std::vector<Object> found;
        for (auto const node : itemsOf(plist_dict_get_item(instance, key)))
            found.push_back(referred(node));
        return found;
    }
};

KeyedArchive::KeyedArchive(std::unique_ptr<Table> table) : m_table(std::move(table)) {}
KeyedArchive::KeyedArchive(KeyedArchive&&) noexcept = default;
KeyedArchive::~KeyedArchive() = default;

std::optional<KeyedArchive> KeyedArchive::open(std::string_view bytes) {
    if (!isSoundBinaryPlist(bytes))
        return std::nullopt;
    plist_t parsed = nullptr;
    plist_from_bin(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &parsed);
    auto table = std::make_unique<Table>();
    table->list.reset(parsed);
    if (!isA(parsed, PLIST_DICT) || stringOf(plist_dict_get_item(parsed, "$archiver")) != "NSKeyedArchiver")
        return std::nullopt;
    table->top = plist_dict_get_item(parsed, "$top");
    auto const objects = plist_dict_get_item(parsed, "$objects");
    if (!isA(table->top, PLIST_DICT) || !isA(objects, PLIST_ARRAY))
        return std::nullopt;
    table->objects = itemsOf(objects);
    return KeyedArchive(std::move(table));
}

KeyedArchive::Object KeyedArchive::root() const {
    return m_table->referred(plist_dict_get_item(m_table->top, "root"));
}

std::optional<KeyedArchive::Dictionary> KeyedArchive::dictionary(Object object) const {
    auto const instance = m_table->instance(object, {"NSDictionary", "NSMutableDictionary"});
    if (!instance)
        return std::nullopt;
    auto const keys = m_table->references(instance, "NS.keys");
    auto const values = m_table->references(instance, "NS.objects");
    if (keys.size() != values.size())
        return std::nullopt;
    Dictionary dictionary;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        auto key = string(keys[i]);
        if (!key)
            return std::nullopt;
        dictionary.emplace(std::move(*key), values[i]);
    }
    return dictionary;
}

std::optional<std::vector<KeyedArchive::Object>> KeyedArchive::array(Object object) const {
    auto const instance = m_table->instance(object, {"NSArray", "NSMutableArray"});
    return instance ? std::optional(m_table->references(instance, "NS.objects")) : std::nullopt;
}

std::optional<std::string> KeyedArchive::string(Object object) const {
    if (auto text = stringOf(m_table->at(object)))
        return text;
    auto const instance = m_table->instance(object, {"NSString", "NSMutableString"});
    return instance ? stringOf(plist_dict_get_item(instance, "NS.string")) : std::nullopt;
}

std::optional<std::vector<std::uint8_t>> KeyedArchive::data(Object object) const {
    if (auto bytes = dataOf(m_table->at(object)))
        return bytes;
    auto const instance = m_table->instance(object, {"NSData", "NSMutableData"});
    return instance ? dataOf(plist_dict_get_item(instance, "NS.data")) : std::nullopt;
}

} // namespace taliro
