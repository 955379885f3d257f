#pragma once

#include "foundation/Text.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace taliro {

/// A value of a property list: what the defaults store keeps and keyed archives are made of.
struct PropertyValue {
    using Data = std::vector<std::uint8_t>;
    using List = std::vector<PropertyValue>;
    using Dictionary = std::map<std::string, PropertyValue, std::less<>>;
    struct Uid {
        std::uint64_t index = 0; ///< a reference into a keyed archive's object table
        bool operator==(Uid const&) const = default;
    };

    std::variant<bool, std::int64_t, double, std::string, Data, Date, List, Dictionary, Uid> value;

    bool operator==(PropertyValue const&) const = default;

    template <typename T>
    T const* as() const {
        return std::get_if<T>(&value);
    }
    /// A boolean, or a number other than zero.
    bool truth() const;
    /// A whole or real number.
    std::optional<double> number() const;
    /// The strings of a list that holds nothing else.
    std::optional<std::vector<std::string>> strings() const;
};

} // namespace taliro
