#include "Fuzz.h"

#include "platform/linux/MountTable.h"

void taliro::tryBytes(std::string_view bytes) {
    for (auto const& mount : parseMounts(bytes)) {
        isForBrowsing(mount, "/home/mira");
        isRemote(mount);
    }
}
