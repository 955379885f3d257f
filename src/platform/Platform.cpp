#include "platform/Platform.h"

#include <cassert>

namespace taliro {

namespace {
Platform* installed = nullptr;
}

Platform& Platform::current() {
    assert(installed && "a platform is installed before the shared objects are used");
    return *installed;
}

void Platform::install(Platform& platform) {
    installed = &platform;
}

} // namespace taliro
