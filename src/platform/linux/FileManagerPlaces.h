#pragma once

#include "foundation/Subscription.h"
#include "platform/DesktopPlaces.h"
#include "platform/linux/FileWatch.h"

#include <memory>

namespace taliro {

/// The places of GTK's file managers or, where that list holds none, of KDE's.
class FileManagerPlaces : public DesktopPlaces {
public:
    FileManagerPlaces(DirectoryEvents& events, FileManager& files);

    std::optional<std::vector<DesktopPlace>> read() override;
    Subscription observeChanges(std::function<void()> observer) override;

private:
    DirectoryEvents& m_events;
    FileManager& m_files;
    Url m_gtkBookmarks;
    Url m_kdePlaces;
    Observers<> m_observers;
    // From the first observer on.
    std::unique_ptr<FileWatch> m_gtkWatch;
    std::unique_ptr<FileWatch> m_kdeWatch;
};

} // namespace taliro
