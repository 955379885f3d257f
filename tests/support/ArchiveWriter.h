#pragma once

#include "platform/PropertyValue.h"

#include <utility>

namespace taliro::testing {

/// Writes keyed archives, as property list values.
class ArchiveWriter {
public:
    using Reference = PropertyValue::Uid;

    PropertyValue::List objects{{std::string("$null")}};

    Reference add(PropertyValue value) {
        objects.push_back(std::move(value));
        return {objects.size() - 1};
    }
    Reference text(std::string value) { return add({std::move(value)}); }
    Reference data(std::string_view bytes) { return add({PropertyValue::Data(bytes.begin(), bytes.end())}); }
    Reference array(std::vector<Reference> const& items, std::string const& type = "NSArray") {
        return instance(type, {{"NS.objects", {list(items)}}});
    }
    Reference dictionary(std::vector<std::pair<Reference, Reference>> const& items,
                         std::string const& type = "NSDictionary") {
        std::vector<Reference> keys;
        std::vector<Reference> values;
        for (auto const& [key, value] : items) {
            keys.push_back(key);
            values.push_back(value);
        }
        return instance(type, {{"NS.keys", {list(keys)}}, {"NS.objects", {list(values)}}});
    }
    Reference instance(std::string const& type, PropertyValue::Dictionary parts) {
        parts["$class"] = {add({PropertyValue::Dictionary{{"$classname", {type}}}})};
        return add({std::move(parts)});
    }

    /// The archive whose root is `root`.
    PropertyValue finish(Reference root) const {
        return {PropertyValue::Dictionary{{"$archiver", {std::string("NSKeyedArchiver")}},
                                          {"$version", {std::int64_t{100000}}},
                                          {"$top", {PropertyValue::Dictionary{{"root", {root}}}}},
                                          {"$objects", {objects}}}};
    }

    static PropertyValue::List list(std::vector<Reference> const& references) {
        PropertyValue::List values;
        for (auto const reference : references)
            values.push_back({reference});
        return values;
    }
};

} // namespace taliro::testing
