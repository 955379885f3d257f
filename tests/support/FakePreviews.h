#pragma once

#include "platform/PreviewService.h"
#include "platform/Thumbnailer.h"
#include "platform/TypeCatalog.h"

#include <map>

namespace taliro::testing {

/// No previews at all; those of pages are counted while they are under way.
struct FakePreviews : PreviewService {
    PreviewKind fileKind = PreviewKind::other;
    int pagesAsked = 0;
    int pagesUnderWay = 0;
    PreviewKind previewKind(Url const&, bool isDirectory) override {
        return isDirectory ? PreviewKind::folder : fileKind;
    }
    Subscription page(PageRequest, std::function<void(std::optional<PagePicture>)>) override {
        ++pagesAsked;
        ++pagesUnderWay;
        return Subscription([this] { --pagesUnderWay; });
    }
    Subscription text(Url const&, std::size_t, std::function<void(std::optional<TextPreview>)>) override {
        return {};
    }
    Subscription summary(Url const&, std::function<void(ContentSummary const&)>) override { return {}; }
    std::unique_ptr<Playback> playback(Url const&, int, int, PlaybackEvents) override { return nullptr; }
};

/// Thumbnails that come when the test says so.
struct FakeThumbnailer : Thumbnailer {
    struct Pending {
        ThumbnailRequest request;
        std::function<void(std::optional<Picture>)> completion;
    };
    std::map<int, Pending> pending; ///< by the order of the requests
    int requests = 0;

    Subscription request(ThumbnailRequest request,
                         std::function<void(std::optional<Picture>)> completion) override {
        auto const id = requests++;
        pending.emplace(id, Pending{std::move(request), std::move(completion)});
        return Subscription([this, id] { pending.erase(id); });
    }
    void answerAll(std::optional<Picture> const& picture) {
        for (auto const& [id, asked] : std::exchange(pending, {}))
            asked.completion(picture);
    }
};

struct FakeTypeCatalog : TypeCatalog {
    PixelSize pixels;
    std::string mimeType(std::string_view name, bool isDirectory) override {
        return isDirectory ? "inode/directory" : name.ends_with(".png") ? "image/png" : "text/plain";
    }
    InternedText kind(std::string_view name, bool isDirectory) override {
        auto const dot = name.rfind('.');
        if (isDirectory)
            return "Folder";
        return dot == std::string_view::npos ? "Document" : std::string(name.substr(dot + 1)) + " document";
    }
    std::string iconName(std::string_view) override { return "text-plain"; }
    std::string genericIconName(std::string_view) override { return "text-x-generic"; }
    PixelSize pixelSize(Url const&) override { return pixels; }
};

} // namespace taliro::testing
