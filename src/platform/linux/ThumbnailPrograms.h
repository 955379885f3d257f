#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace taliro {

/// The thumbnailers that are installed, by what their `.thumbnailer` files say. Any thread may call.
class ThumbnailPrograms {
public:
    /// `folders`: where the files lie; an earlier one wins.
    explicit ThumbnailPrograms(std::vector<std::string> folders) : m_folders(std::move(folders)) {}

    /// The command line, field codes unexpanded, for files of the type; nothing where no program takes it.
    std::optional<std::string> commandFor(std::string_view mimeType);

    /// The `thumbnailers` folders of the desktop's data directories.
    static std::vector<std::string> standardFolders();

private:
    void readAll();
    void read(std::string const& path);

    std::vector<std::string> m_folders;
    std::once_flag m_once;
    std::map<std::string, std::string, std::less<>> m_commands;
};

} // namespace taliro
