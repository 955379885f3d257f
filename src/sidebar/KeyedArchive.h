#pragma once

#include "platform/PropertyValue.h"

#include <cstddef>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace taliro {

/// A keyed archive: a property list that holds a graph of objects, each a reference into one table. Objects
/// are looked at one at a time, so that cycles and shared objects cost nothing. The list may be any.
class KeyedArchive {
public:
    /// A place in the object table; none stands for an object that is absent.
    using Object = std::optional<std::size_t>;
    using Dictionary = std::map<std::string, Object, std::less<>>;

    /// Nothing where the list is no keyed archive.
    static std::optional<KeyedArchive> open(PropertyValue list);

    /// The object that was archived.
    Object root() const { return m_root; }

    // Nothing where the object is of another type.
    std::optional<Dictionary> dictionary(Object object) const; ///< all its keys are strings
    std::optional<std::vector<Object>> array(Object object) const;
    std::optional<std::string> string(Object object) const;
    std::optional<PropertyValue::Data> data(Object object) const;

private:
    KeyedArchive() = default;

    PropertyValue const* at(Object object) const;
    Object referred(PropertyValue const* reference) const;
    PropertyValue::Dictionary const* instance(Object object,
                                              std::initializer_list<std::string_view> classes) const;
    std::optional<std::vector<Object>> references(PropertyValue::Dictionary const& instance,
                                                  std::string_view key) const;
    template <typename T>
    std::optional<T> plainOrWrapped(Object object, std::initializer_list<std::string_view> classes,
                                    std::string_view key) const;

    PropertyValue::List m_objects;
    Object m_root;
};

} // namespace taliro
