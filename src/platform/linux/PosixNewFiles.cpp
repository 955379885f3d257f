#include "platform/linux/PosixNewFiles.h"

#include "platform/linux/HiddenFile.h"

#include <cerrno>
#include <unistd.h>

namespace taliro {

NewFiles::Result PosixNewFiles::write(Url const& destination, std::string_view bytes) {
    auto file = HiddenFile::create(destination.deletingLastPathComponent());
    if (!file)
        return std::unexpected(file.error());
    if (auto const written = file->append(bytes); !written)
        return written;
    if (::fsync(file->descriptor()) != 0)
        return std::unexpected(static_cast<std::errc>(errno));
    auto const renamed = renameWithoutReplacing(file->url().path(), destination.path());
    if (renamed)
        file->release();
    return renamed;
}

NewFiles::Result PosixNewFiles::keep(Url const& temporary, Url const& destination) {
    return renameWithoutReplacing(temporary.path(), destination.path());
}

void PosixNewFiles::discard(Url const& temporary) {
    ::unlink(temporary.path().c_str());
}

} // namespace taliro
