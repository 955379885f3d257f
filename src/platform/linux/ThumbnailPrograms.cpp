#include "platform/linux/ThumbnailPrograms.h"

#include "foundation/Text.h"

#include <filesystem>
#include <fstream>

#include <QStandardPaths>

namespace taliro {

std::vector<std::string> ThumbnailPrograms::standardFolders() {
    std::vector<std::string> folders;
    for (auto const& folder : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation))
        folders.push_back(folder.toStdString() + "/thumbnailers");
    return folders;
}

std::optional<std::string> ThumbnailPrograms::commandFor(std::string_view mimeType) {
    std::call_once(m_once, [this] { readAll(); });
    auto const found = m_commands.find(mimeType);
    return found == m_commands.end() ? std::nullopt : std::optional(found->second);
}

void ThumbnailPrograms::readAll() {
    for (auto const& folder : m_folders) {
        std::error_code error;
        std::vector<std::string> paths;
        for (auto const& file : std::filesystem::directory_iterator(folder, error))
            if (file.path().extension() == ".thumbnailer")
                paths.push_back(file.path().string());
        std::ranges::sort(paths);
        for (auto const& path : paths)
            read(path);
    }
}

void ThumbnailPrograms::read(std::string const& path) {
    std::ifstream file(path);
    std::map<std::string, std::string, std::less<>> values;
    bool inEntry = false;
    for (std::string line; std::getline(file, line);) {
        auto const text = trimmingWhitespaceAndNewlines(line);
        if (text.starts_with('[')) {
            inEntry = text == "[Thumbnailer Entry]";
            continue;
        }
        auto const equals = text.find('=');
        if (inEntry && equals != std::string_view::npos && !text.starts_with('#'))
            values[std::string(trimmingWhitespace(text.substr(0, equals)))] =
                trimmingWhitespace(text.substr(equals + 1));
    }
    auto const& command = values["Exec"];
    auto const& tried = values["TryExec"];
    if (command.empty() ||
        (!tried.empty() && QStandardPaths::findExecutable(QString::fromStdString(tried)).isEmpty()))
        return;
    std::string_view types = values["MimeType"];
    while (!types.empty()) {
        auto const end = std::min(types.find(';'), types.size());
        if (end > 0)
            m_commands.emplace(types.substr(0, end), command);
        types.remove_prefix(std::min(end + 1, types.size()));
    }
}

} // namespace taliro
