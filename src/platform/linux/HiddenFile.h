#pragma once

#include "foundation/Url.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/transfer/Leftovers.h"

#include <expected>
#include <string>
#include <string_view>
#include <system_error>

namespace taliro {

/// A file that is being made, under a hidden name of its own in its folder. It goes with its owner unless
/// released.
class HiddenFile {
public:
    static std::expected<HiddenFile, std::errc> create(Url const& folder);
    HiddenFile(HiddenFile&&) = default;
    HiddenFile& operator=(HiddenFile&&) = delete;
    ~HiddenFile();

    Url const& url() const { return m_url; }
    int descriptor() const { return m_file.get(); }
    std::expected<void, std::errc> append(std::string_view bytes);
    /// From now on the file stays; closes it.
    Url release();

private:
    HiddenFile(Url url, FileDescriptor file, transfer::Leftovers::Note note)
        : m_url(std::move(url)), m_file(std::move(file)), m_note(std::move(note)) {}

    Url m_url;
    FileDescriptor m_file;
    transfer::Leftovers::Note m_note;
};

/// Gives `from` the name `to` in the same folder and makes that last; `file_exists` where the name is taken.
std::expected<void, std::errc> renameWithoutReplacing(std::string const& from, std::string const& to);

} // namespace taliro
