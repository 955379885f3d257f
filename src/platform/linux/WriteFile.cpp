#include "platform/linux/WriteFile.h"

#include "platform/linux/FileDescriptor.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

namespace taliro {

namespace {

std::errc lastError() {
    return static_cast<std::errc>(errno);
}

/// Where a link at `path` leads; `path` itself where it is none.
std::string resolved(std::string const& path) {
    std::unique_ptr<char, decltype(&std::free)> const real(::realpath(path.c_str(), nullptr), &std::free);
    return real ? std::string(real.get()) : path;
}

std::string folderOf(std::string const& path) {
    auto const slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        auto const written = ::write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

} // namespace

std::expected<void, std::errc> writeFileAtomically(std::string const& path, std::string_view bytes,
                                                   unsigned mode) {
    auto const target = resolved(path);
    struct stat old {};
    if (::stat(target.c_str(), &old) == 0)
        mode = old.st_mode & 07777;

    auto temporary = target + ".XXXXXX";
    FileDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!file)
        return std::unexpected(lastError());
    bool const written = ::fchmod(file.get(), mode) == 0 && writeAll(file.get(), bytes) &&
                         ::fsync(file.get()) == 0 && ::rename(temporary.c_str(), target.c_str()) == 0;
    if (!written) {
        auto const error = lastError();
        ::unlink(temporary.c_str());
        return std::unexpected(error);
    }
    if (FileDescriptor const folder(::open(folderOf(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        folder)
        ::fsync(folder.get());
    return {};
}

std::expected<void, std::errc> makeFolders(std::string const& path, unsigned mode) {
    for (auto slash = path.find('/', 1);; slash = path.find('/', slash + 1)) {
        auto const part = path.substr(0, slash);
        if (::mkdir(part.c_str(), mode) != 0 && errno != EEXIST)
            return std::unexpected(lastError());
        if (slash == std::string::npos)
            return {};
    }
}

} // namespace taliro
