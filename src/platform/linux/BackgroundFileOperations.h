#pragma once

#include "platform/FileOperations.h"
#include "platform/linux/transfer/Leftovers.h"

namespace taliro {

/// Copies and moves on a thread of their own, while the caller's event loop turns.
class BackgroundFileOperations : public FileOperations {
public:
    /// `stateFolder`: where running copies are noted, an absolute path.
    explicit BackgroundFileOperations(std::string stateFolder = defaultStateFolder());

    /// `$XDG_STATE_HOME/taliro/transfers`
    static std::string defaultStateFolder();

    Result copy(Url source, Url destination, Report report) override;
    Result move(Url source, Url destination, Report report) override;
    Result trash(Url item) override;
    void removeLeftovers() override;

private:
    transfer::Leftovers m_leftovers;
};

} // namespace taliro
