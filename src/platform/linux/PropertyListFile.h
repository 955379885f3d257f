#pragma once

#include "platform/PropertyValue.h"

#include <optional>
#include <string>
#include <string_view>

namespace taliro {

/// Reads a property list, XML or binary, of at most 64 MiB. Nothing where the bytes are not one; any bytes
/// are safe.
std::optional<PropertyValue> parsePropertyList(std::string_view bytes);

/// As XML. Invalid UTF-8 in strings and keys can't be told in XML: such strings are left out.
std::string writePropertyListXml(PropertyValue const& value);

} // namespace taliro
