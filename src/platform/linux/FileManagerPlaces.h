#pragma once

#include "foundation/Subscription.h"
#include "platform/DesktopPlaces.h"
#include "platform/linux/FileWatch.h"

#include <memory>

namespace taliro {

/// The places of GTK's file managers or, where that list holds none, of KDE's.
class FileManagerPlaces : public DesktopPlaces {
public:
    FileManagerPlaces(DirectoryEvents& events, FileManager& files) : m_events(events), m_files(files) {}

    std::optional<std::vector<DesktopPlace>> read() override;
    Subscription observeChanges(std::function<void()> observer) override;

private:
    Url gtkBookmarks() const;
    Url kdePlaces() const;

    DirectoryEvents& m_events;
    FileManager& m_files;
    Observers<> m_observers;
    // From the first observer on.
    std::unique_ptr<FileWatch> m_gtkWatch;
    std::unique_ptr<FileWatch> m_kdeWatch;
};

} // namespace taliro
