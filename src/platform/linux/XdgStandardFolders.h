#pragma once

#include "platform/FileManager.h"
#include "platform/StandardFolders.h"

namespace taliro {

/// The user directories of the desktop (`user-dirs.dirs`), the home trash, and the names that `.directory`
/// files give.
class XdgStandardFolders : public StandardFolders {
public:
    explicit XdgStandardFolders(FileManager& files) : m_files(files) {}

    std::optional<Url> url(StandardFolder folder) override;
    std::optional<std::string> localizedName(Url const& folder) override;

private:
    FileManager& m_files;
};

/// `$XDG_CONFIG_HOME` and `$XDG_DATA_HOME` or what stands for them.
Url userConfigFolder(FileManager& files);
Url userDataFolder(FileManager& files);

} // namespace taliro
