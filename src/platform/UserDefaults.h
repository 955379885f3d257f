#pragma once

#include "platform/PropertyValue.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace taliro {

/// The user's stored settings: typed values under text keys. A value set is stored when the call returns, or
/// the failure has been reported once on standard error and the value holds for this run.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    /// The value under `key`; nothing where the key is absent.
    virtual std::optional<PropertyValue> object(std::string_view key) const = 0;
    virtual void set(std::string_view key, PropertyValue value) = 0;
    virtual void remove(std::string_view key) = 0;

    bool boolean(std::string_view key, bool absent = false) const {
        auto const value = object(key);
        return value ? value->truth() : absent;
    }
    /// 0 where absent or not a number.
    double real(std::string_view key) const {
        auto const value = object(key);
        return value ? value->number().value_or(0) : 0;
    }
    std::optional<std::string> string(std::string_view key) const {
        auto const value = object(key);
        auto const* text = value ? value->as<std::string>() : nullptr;
        return text ? std::optional(*text) : std::nullopt;
    }
    std::optional<std::vector<std::string>> strings(std::string_view key) const {
        auto const value = object(key);
        return value ? value->strings() : std::nullopt;
    }
    void setBoolean(std::string_view key, bool value) { set(key, PropertyValue{value}); }
    void setReal(std::string_view key, double value) { set(key, PropertyValue{value}); }
    void setString(std::string_view key, std::string value) { set(key, PropertyValue{std::move(value)}); }
    void setStrings(std::string_view key, std::vector<std::string> const& values) {
        PropertyValue::List list;
        for (auto const& text : values)
            list.push_back({text});
        set(key, PropertyValue{std::move(list)});
    }
};

} // namespace taliro
