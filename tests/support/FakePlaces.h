#pragma once

#include "platform/Bookmarks.h"
#include "platform/DesktopPlaces.h"
#include "platform/MetadataQuery.h"
#include "platform/PropertyLists.h"
#include "platform/StandardFolders.h"
#include "platform/Volumes.h"
#include "support/FakeFiles.h"

#include <map>

namespace taliro::testing {

/// Bookmarks that are the path itself, good as long as the item is there.
struct FakeBookmarks : Bookmarks {
    explicit FakeBookmarks(FakeFileManager& files) : files(files) {}
    FakeFileManager& files;
    std::map<std::string, std::string> renamed; ///< new paths by old
    std::optional<Data> make(Url const& item) override {
        return files.exists(item) ? std::optional(Data(item.path().begin(), item.path().end()))
                                  : std::nullopt;
    }
    std::optional<Url> resolve(Data const& bookmark) override {
        std::string path(bookmark.begin(), bookmark.end());
        if (auto const found = renamed.find(path); found != renamed.end())
            path = found->second;
        auto url = Url::parse(path);
        if (!url || (url->isFile() && !files.exists(*url)))
            return std::nullopt;
        return files.isDirectory(*url) ? url->asDirectory() : *url;
    }
};

struct FakeDesktopPlaces : DesktopPlaces {
    std::optional<std::vector<DesktopPlace>> places;
    Observers<> observers;
    std::optional<std::vector<DesktopPlace>> read() override { return places; }
    Subscription observeChanges(std::function<void()> observer) override {
        return observers.add(std::move(observer));
    }
};

struct FakeMetadataQuery : MetadataQuery {
    std::vector<MetadataItem> items;
    Definition definition;
    std::function<void()> onResults;
    int starts = 0;
    int disabled = 0;
    void start(Definition asked, std::function<void()> callback) override {
        ++starts;
        definition = std::move(asked);
        onResults = std::move(callback);
    }
    void disableUpdates() override { ++disabled; }
    void enableUpdates() override { --disabled; }
    std::vector<MetadataItem> const& results() const override { return items; }
};

/// Lists by the bytes that stand for them.
struct FakePropertyLists : PropertyLists {
    std::map<std::string, PropertyValue, std::less<>> lists;
    std::optional<PropertyValue> parse(std::string_view bytes) override {
        auto const found = lists.find(bytes);
        return found == lists.end() ? std::nullopt : std::optional(found->second);
    }
};

struct FakeStandardFolders : StandardFolders {
    std::map<StandardFolder, Url> folders;
    std::map<std::string, std::string> localizedNames; ///< by path
    std::optional<Url> url(StandardFolder folder) override {
        auto const found = folders.find(folder);
        return found == folders.end() ? std::nullopt : std::optional(found->second);
    }
    std::optional<std::string> localizedName(Url const& folder) override {
        auto const found = localizedNames.find(folder.path());
        return found == localizedNames.end() ? std::nullopt : std::optional(found->second);
    }
};

struct FakeVolumes : Volumes {
    std::vector<Volume> volumes;
    Observers<> observers;
    std::vector<Url> ejected;
    std::string failure; ///< told instead of ejecting
    std::vector<Volume> mounted() override { return volumes; }
    Subscription observeChanges(std::function<void()> observer) override {
        return observers.add(std::move(observer));
    }
    void eject(Url const& mountPoint, Ejected done) override {
        ejected.push_back(mountPoint);
        if (failure.empty())
            done({});
        else
            done(std::unexpected(failure));
    }
};

} // namespace taliro::testing
