#include "Fuzz.h"

#include "platform/linux/RecentlyUsedFile.h"

void taliro::tryBytes(std::string_view bytes) {
    parseRecentlyUsed(bytes);
}
