#include "Fuzz.h"

#include "platform/linux/BookmarkRecords.h"

void taliro::tryBytes(std::string_view bytes) {
    auto const path =
        pathOfBookmarkRecords({reinterpret_cast<std::uint8_t const*>(bytes.data()), bytes.size()});
    if (path && (path->front() != '/' || path->size() > 4096))
        __builtin_trap();
}
