#include "Fuzz.h"

#include "platform/linux/PlacesFiles.h"

void taliro::tryBytes(std::string_view bytes) {
    parseGtkBookmarks(bytes);
    parseKdePlaces(bytes);
}
