#pragma once

#include "platform/PropertyValue.h"

#include <optional>
#include <string_view>

namespace taliro {

/// Reads the property lists of other programs.
class PropertyLists {
public:
    virtual ~PropertyLists() = default;
    /// XML or binary; nothing where the bytes, which may be any, are no property list.
    virtual std::optional<PropertyValue> parse(std::string_view bytes) = 0;
};

} // namespace taliro
