#include "Fuzz.h"

#include "platform/linux/PropertyListFile.h"
#include "sidebar/KeyedArchive.h"

void taliro::tryBytes(std::string_view bytes) {
    auto list = parsePropertyList(bytes);
    auto const archive = list ? KeyedArchive::open(std::move(*list)) : std::nullopt;
    auto const root = archive ? archive->dictionary(archive->root()) : std::nullopt;
    if (!root)
        return;
    for (auto const& [key, object] : *root) {
        archive->string(object);
        archive->data(object);
        for (auto const item : archive->array(object).value_or(std::vector<KeyedArchive::Object>{}))
            archive->dictionary(item);
    }
}
