#include "platform/linux/FileManagerPlaces.h"

#include "platform/linux/PlacesFiles.h"
#include "platform/linux/XdgStandardFolders.h"

namespace taliro {

namespace {
constexpr std::size_t maxFileBytes = 4 << 20;
}

Url FileManagerPlaces::gtkBookmarks() const {
    return userConfigFolder(m_files).appending("gtk-3.0/bookmarks");
}

Url FileManagerPlaces::kdePlaces() const {
    return userDataFolder(m_files).appending("user-places.xbel");
}

std::optional<std::vector<DesktopPlace>> FileManagerPlaces::read() {
    std::optional<std::vector<DesktopPlace>> places;
    if (auto const bytes = m_files.readFile(gtkBookmarks(), maxFileBytes))
        places = parseGtkBookmarks(*bytes);
    if (places && !places->empty())
        return places;
    if (auto const bytes = m_files.readFile(kdePlaces(), maxFileBytes))
        places = parseKdePlaces(*bytes);
    return places;
}

Subscription FileManagerPlaces::observeChanges(std::function<void()> observer) {
    auto const watch = [this](Url const& file) {
        return std::make_unique<FileWatch>(m_events, m_files, file, [this] { m_observers.notify(); });
    };
    if (!m_gtkWatch) {
        m_gtkWatch = watch(gtkBookmarks());
        m_kdeWatch = watch(kdePlaces());
    }
    return m_observers.add(std::move(observer));
}

} // namespace taliro
