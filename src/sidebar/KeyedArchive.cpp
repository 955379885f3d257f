#include "sidebar/KeyedArchive.h"

#include <algorithm>

namespace taliro {

namespace {

PropertyValue const* find(PropertyValue::Dictionary const& dictionary, std::string_view key) {
    auto const found = dictionary.find(key);
    return found == dictionary.end() ? nullptr : &found->second;
}

template <typename T>
T const* find(PropertyValue::Dictionary const& dictionary, std::string_view key) {
    auto const* value = find(dictionary, key);
    return value ? value->as<T>() : nullptr;
}

} // namespace

std::optional<KeyedArchive> KeyedArchive::open(PropertyValue list) {
    auto* parts = std::get_if<PropertyValue::Dictionary>(&list.value);
    auto const* archiver = parts ? find<std::string>(*parts, "$archiver") : nullptr;
    auto const* top = parts ? find<PropertyValue::Dictionary>(*parts, "$top") : nullptr;
    if (!archiver || *archiver != "NSKeyedArchiver" || !top || !find<PropertyValue::List>(*parts, "$objects"))
        return std::nullopt;
    KeyedArchive archive;
    archive.m_objects = std::move(std::get<PropertyValue::List>(parts->find("$objects")->second.value));
    archive.m_root = archive.referred(find(*top, "root"));
    return archive;
}

PropertyValue const* KeyedArchive::at(Object object) const {
    return object ? &m_objects[*object] : nullptr;
}

/// The first object of the table stands for none.
KeyedArchive::Object KeyedArchive::referred(PropertyValue const* reference) const {
    auto const* uid = reference ? reference->as<PropertyValue::Uid>() : nullptr;
    return uid && uid->index > 0 && uid->index < m_objects.size() ? Object(uid->index) : std::nullopt;
}

/// The object as an instance of one of `classes`.
PropertyValue::Dictionary const*
KeyedArchive::instance(Object object, std::initializer_list<std::string_view> classes) const {
    auto const* value = at(object);
    auto const* parts = value ? value->as<PropertyValue::Dictionary>() : nullptr;
    auto const* type = parts ? at(referred(find(*parts, "$class"))) : nullptr;
    auto const* typeParts = type ? type->as<PropertyValue::Dictionary>() : nullptr;
    auto const* name = typeParts ? find<std::string>(*typeParts, "$classname") : nullptr;
    return name && std::ranges::find(classes, *name) != classes.end() ? parts : nullptr;
}

std::optional<std::vector<KeyedArchive::Object>>
KeyedArchive::references(PropertyValue::Dictionary const& instance, std::string_view key) const {
    auto const* list = find<PropertyValue::List>(instance, key);
    if (!list)
        return std::nullopt;
    std::vector<Object> objects;
    objects.reserve(list->size());
    for (auto const& reference : *list)
        objects.push_back(referred(&reference));
    return objects;
}

std::optional<KeyedArchive::Dictionary> KeyedArchive::dictionary(Object object) const {
    auto const* parts = instance(object, {"NSDictionary", "NSMutableDictionary"});
    auto const keys = parts ? references(*parts, "NS.keys") : std::nullopt;
    auto const values = parts ? references(*parts, "NS.objects") : std::nullopt;
    if (!keys || !values || keys->size() != values->size())
        return std::nullopt;
    Dictionary dictionary;
    for (std::size_t i = 0; i < keys->size(); ++i) {
        auto key = string((*keys)[i]);
        if (!key)
            return std::nullopt;
        dictionary.emplace(std::move(*key), (*values)[i]);
    }
    return dictionary;
}

std::optional<std::vector<KeyedArchive::Object>> KeyedArchive::array(Object object) const {
    auto const* parts = instance(object, {"NSArray", "NSMutableArray"});
    return parts ? references(*parts, "NS.objects") : std::nullopt;
}

/// Immutable values lie in the table as they are, mutable ones within an instance.
template <typename T>
std::optional<T> KeyedArchive::plainOrWrapped(Object object, std::initializer_list<std::string_view> classes,
                                              std::string_view key) const {
    auto const* value = at(object);
    auto const* plain = value ? value->as<T>() : nullptr;
    if (auto const* parts = plain ? nullptr : instance(object, classes))
        plain = find<T>(*parts, key);
    return plain ? std::optional(*plain) : std::nullopt;
}

std::optional<std::string> KeyedArchive::string(Object object) const {
    return plainOrWrapped<std::string>(object, {"NSString", "NSMutableString"}, "NS.string");
}

std::optional<PropertyValue::Data> KeyedArchive::data(Object object) const {
    return plainOrWrapped<PropertyValue::Data>(object, {"NSData", "NSMutableData"}, "NS.data");
}

} // namespace taliro
