#include "Fuzz.h"

#include "platform/linux/PropertyListFile.h"

/// What was read is written and read again: the settings store lives by that.
void taliro::tryBytes(std::string_view bytes) {
    auto const list = parsePropertyList(bytes);
    if (!list || !list->as<PropertyValue::Dictionary>())
        return;
    auto const written = writePropertyListXml(*list);
    auto const again = parsePropertyList(written);
    if (!again || writePropertyListXml(*again) != written)
        __builtin_trap();
}
