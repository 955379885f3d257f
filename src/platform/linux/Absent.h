#pragma once

#include "platform/Bookmarks.h"
#include "platform/DesktopPlaces.h"
#include "platform/MetadataQuery.h"
#include "platform/StandardFolders.h"
#include "platform/Volumes.h"

namespace taliro {

// Services that aren't there: each answers that it knows nothing.

struct AbsentBookmarks : Bookmarks {
    std::optional<Data> make(Url const&) override { return std::nullopt; }
    std::optional<Url> resolve(Data const&) override { return std::nullopt; }
};
struct AbsentDesktopPlaces : DesktopPlaces {
    std::optional<std::vector<DesktopPlace>> read() override { return std::nullopt; }
    Subscription observeChanges(std::function<void()>) override { return {}; }
};
struct AbsentMetadataQuery : MetadataQuery {
    std::vector<MetadataItem> none;
    void start(Definition, std::function<void()>) override {}
    void disableUpdates() override {}
    void enableUpdates() override {}
    std::vector<MetadataItem> const& results() const override { return none; }
};
struct AbsentStandardFolders : StandardFolders {
    std::optional<Url> url(StandardFolder) override { return std::nullopt; }
    std::optional<std::string> localizedName(Url const&) override { return std::nullopt; }
};
struct AbsentVolumes : Volumes {
    std::vector<Volume> mounted() override { return {}; }
    Subscription observeChanges(std::function<void()>) override { return {}; }
    void eject(Url const&, Ejected done) override { done(std::unexpected("This can't be ejected.")); }
};

} // namespace taliro
