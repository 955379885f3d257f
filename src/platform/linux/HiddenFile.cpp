#include "platform/linux/HiddenFile.h"

#include "platform/linux/BackgroundFileOperations.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace taliro {

namespace {

std::unexpected<std::errc> lastError() {
    return std::unexpected(static_cast<std::errc>(errno));
}

} // namespace

std::expected<HiddenFile, std::errc> HiddenFile::create(Url const& folder) {
    auto const name = transfer::Leftovers::temporaryName();
    auto note = transfer::Leftovers(BackgroundFileOperations::defaultStateFolder()).note(folder.path(), name);
    auto url = folder.appending(name);
    FileDescriptor file(::open(url.path().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (!file)
        return lastError();
    return HiddenFile(std::move(url), std::move(file), std::move(note));
}

HiddenFile::~HiddenFile() {
    if (m_file)
        ::unlink(m_url.path().c_str());
}

std::expected<void, std::errc> HiddenFile::append(std::string_view bytes) {
    while (!bytes.empty()) {
        auto const written = ::write(m_file.get(), bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return lastError();
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return {};
}

Url HiddenFile::release() {
    m_file.reset();
    return m_url;
}

std::expected<void, std::errc> renameWithoutReplacing(std::string const& from, std::string const& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) != 0) {
        if (errno != EINVAL && errno != ENOSYS)
            return lastError();
        // A file system that can't: a hard link is never made over something either.
        if (::link(from.c_str(), to.c_str()) != 0)
            return lastError();
        ::unlink(from.c_str());
    }
    auto const folder = Url::file(to).deletingLastPathComponent().path();
    if (FileDescriptor const opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)); opened)
        ::fsync(opened.get());
    return {};
}

} // namespace taliro
