#include "Fuzz.h"

#include "platform/linux/ThumbnailPrograms.h"
#include "support/TemporaryFolder.h"

void taliro::tryBytes(std::string_view bytes) {
    static testing::TemporaryFolder const folder;
    folder.write("x.thumbnailer", bytes);
    ThumbnailPrograms({folder.path()}).commandFor("image/png");
}
