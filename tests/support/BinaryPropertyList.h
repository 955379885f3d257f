#pragma once

#include "platform/PropertyValue.h"

#include <cstdlib>
#include <plist/plist.h>
#include <string>

namespace taliro::testing {

/// A property list's binary form, as archives are stored: of texts, numbers, bytes, references and what holds
/// them.
class BinaryPropertyList {
public:
    static std::string write(PropertyValue const& value) {
        auto const root = std::visit(BinaryPropertyList(), value.value);
        char* bytes = nullptr;
        std::uint32_t length = 0;
        plist_to_bin(root, &bytes, &length);
        std::string written(bytes, length);
        std::free(bytes);
        plist_free(root);
        return written;
    }

    plist_t operator()(std::string const& text) const { return plist_new_string(text.c_str()); }
    plist_t operator()(std::int64_t number) const {
        return plist_new_uint(static_cast<std::uint64_t>(number));
    }
    plist_t operator()(PropertyValue::Data const& bytes) const {
        return plist_new_data(reinterpret_cast<char const*>(bytes.data()), bytes.size());
    }
    plist_t operator()(PropertyValue::Uid uid) const { return plist_new_uid(uid.index); }
    plist_t operator()(PropertyValue::List const& list) const {
        auto const node = plist_new_array();
        for (auto const& item : list)
            plist_array_append_item(node, std::visit(*this, item.value));
        return node;
    }
    plist_t operator()(PropertyValue::Dictionary const& dictionary) const {
        auto const node = plist_new_dict();
        for (auto const& [key, item] : dictionary)
            plist_dict_set_item(node, key.c_str(), std::visit(*this, item.value));
        return node;
    }
    plist_t operator()(auto const&) const { return plist_new_bool(0); }
};

} // namespace taliro::testing
