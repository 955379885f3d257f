#pragma once

#include "platform/PropertyLists.h"
#include "platform/linux/PropertyListFile.h"

namespace taliro {

class PlistPropertyLists : public PropertyLists {
public:
    std::optional<PropertyValue> parse(std::string_view bytes) override { return parsePropertyList(bytes); }
};

} // namespace taliro
