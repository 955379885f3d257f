#include "platform/linux/transfer/Leftovers.h"

#include "platform/linux/WriteFile.h"
#include "platform/linux/transfer/CopyEngine.h"

#include <array>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <unistd.h>
#include <vector>

namespace taliro::transfer {

namespace {

constexpr std::string_view prefix = ".taliro-";
constexpr std::string_view suffix = ".part";
constexpr std::string_view hexDigits = "0123456789abcdef";
constexpr std::size_t digits = 16;

/// Only what we may have made ourselves is ever removed.
bool isTemporaryName(std::string_view name) {
    return name.size() == prefix.size() + digits + suffix.size() && name.starts_with(prefix) &&
           name.ends_with(suffix) &&
           name.substr(prefix.size(), digits).find_first_not_of(hexDigits) == std::string_view::npos;
}

std::vector<std::string> namesIn(std::string const& folder) {
    std::vector<std::string> names;
    if (auto* const directory = ::opendir(folder.c_str())) {
        while (auto const* entry = ::readdir(directory))
            names.emplace_back(entry->d_name);
        ::closedir(directory);
    }
    return names;
}

std::string readAll(int file) {
    std::string text;
    std::array<char, 4096> bytes;
    for (ssize_t count = 0; (count = ::read(file, bytes.data(), bytes.size())) > 0;)
        text.append(bytes.data(), static_cast<std::size_t>(count));
    return text;
}

} // namespace

Leftovers::Note::~Note() {
    if (!m_path.empty())
        ::unlink(m_path.c_str());
}

std::string Leftovers::temporaryName() {
    std::array<unsigned char, digits / 2> bytes{};
    if (::getrandom(bytes.data(), bytes.size(), 0) < 0)
        bytes[0] = static_cast<unsigned char>(::getpid()); // the name is made exclusively all the same
    std::string name(prefix);
    for (auto const byte : bytes) {
        name += hexDigits[byte >> 4];
        name += hexDigits[byte & 15];
    }
    return name + std::string(suffix);
}

Leftovers::Note Leftovers::note(std::string const& folder, std::string const& name) const {
    if (!makeFolders(m_folder, 0700))
        return {};
    auto path = m_folder + "/" + name;
    FileDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!file)
        return {};
    auto const complete =
        ::flock(file.get(), LOCK_EX) == 0 &&
        ::write(file.get(), folder.data(), folder.size()) == static_cast<ssize_t>(folder.size());
    Note noted(std::move(path), std::move(file));
    return complete ? std::move(noted) : Note();
}

void Leftovers::removeStale() const {
    for (auto const& name : namesIn(m_folder))
        if (isTemporaryName(name))
            removeNoted(name);
}

void Leftovers::removeNoted(std::string const& name) const {
    auto const path = m_folder + "/" + name;
    FileDescriptor const file(::open(path.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC));
    if (!file || ::flock(file.get(), LOCK_EX | LOCK_NB) != 0)
        return; // its process is at work
    auto const folder = readAll(file.get());
    if (!folder.starts_with('/')) { // killed while noting, before anything was made
        ::unlink(path.c_str());
        return;
    }
    FileDescriptor const place(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!place)
        return;
    auto const removed = removeTree(place.get(), name);
    if (removed || removed.error() == std::errc::no_such_file_or_directory)
        ::unlink(path.c_str());
}

} // namespace taliro::transfer
