#pragma once

#include "platform/linux/FileDescriptor.h"

#include <string>

namespace taliro::transfer {

/// The copies that are being made, noted on disk, so that those of a process that was killed are found again.
/// A note is a file in `folder`, named as the copy's temporary item, locked by the process that makes the
/// copy.
class Leftovers {
public:
    /// A note; destroying it takes it back.
    class Note {
    public:
        Note() = default;
        Note(std::string path, FileDescriptor lock) : m_path(std::move(path)), m_lock(std::move(lock)) {}
        Note(Note&& other) noexcept
            : m_path(std::exchange(other.m_path, {})), m_lock(std::move(other.m_lock)) {}
        Note& operator=(Note&&) = delete;
        ~Note();
        /// The item could not be removed: a later start tries again.
        void keep() { m_path.clear(); }

    private:
        std::string m_path;
        FileDescriptor m_lock;
    };

    explicit Leftovers(std::string folder) : m_folder(std::move(folder)) {}

    /// A hidden name that nothing has.
    static std::string temporaryName();
    /// Notes that `name` in `folder`, an absolute path, is half-made. Where notes can't be kept, a crash
    /// leaves it.
    Note note(std::string const& folder, std::string const& name) const;
    /// Removes what dead processes left. What lies on a volume that is absent waits for a later start.
    void removeStale() const;

private:
    void removeNoted(std::string const& name) const;

    std::string m_folder;
};

} // namespace taliro::transfer
