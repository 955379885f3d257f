#include "browsing/ThumbnailCache.h"

#include "platform/Platform.h"

#include <algorithm>
#include <cmath>

namespace taliro {

ThumbnailCache::ThumbnailCache(Platform& platform) : m_platform(platform) {}

ThumbnailCache& ThumbnailCache::shared() {
    static auto* cache = new ThumbnailCache(Platform::current());
    return *cache;
}

std::string ThumbnailCache::key(Url const& url, double size) {
    return url.absoluteString() + "|" + std::to_string(static_cast<long long>(size));
}

std::optional<Picture> ThumbnailCache::cached(Url const& url, double size) const {
    auto const found = m_cache.find(key(url, size));
    return found == m_cache.end() ? std::nullopt : std::optional(found->second);
}

void ThumbnailCache::load(Url const& url, double size, std::function<void(Picture const&)> completion) {
    auto const name = key(url, size);
    if (auto const found = m_cache.find(name); found != m_cache.end()) {
        auto const picture = found->second;
        completion(picture);
        return;
    }
    auto const [inflight, isNew] = m_inflight.try_emplace(name, Inflight{url, {}});
    if (!isNew)
        return;
    auto const pixels = static_cast<int>(std::ceil(size * backingScale(m_platform.screens)));
    auto const finish = [this, url, name,
                         completion = std::move(completion)](std::optional<Picture> picture) {
        // What ends here holds this very function: it goes once the function is done.
        auto const ended = m_inflight.extract(name);
        if (!picture)
            return;
        m_cache.insert_or_assign(name, *picture);
        m_known[url].keys.insert(name);
        completion(*picture);
    };
    inflight->second.request = m_platform.thumbnailer.request({url, pixels, pixels}, finish);
}

void ThumbnailCache::cancelExcept(std::unordered_set<Url> const& wanted) {
    std::erase_if(m_inflight, [&](auto const& item) { return !wanted.contains(item.second.url); });
}

void ThumbnailCache::noteModified(Url const& url, std::optional<Date> modified) {
    auto const [found, isNew] = m_known.try_emplace(url);
    auto& known = found->second;
    if (std::exchange(known.modified, modified) == modified || isNew)
        return;
    for (auto const& name : std::exchange(known.keys, {}))
        m_cache.erase(name);
    std::erase_if(m_inflight, [&](auto const& item) { return item.second.url == url; });
}

double backingScale(Screens& screens) {
    auto const all = screens.all();
    auto const main = std::ranges::find_if(all, &ScreenInfo::isMain);
    return main == all.end() ? 2.0 : main->scale;
}

Size fittedImage(Size image, Size box) {
    if (image.width <= 0 || image.height <= 0)
        return image;
    auto const scale =
        std::min(std::max(box.width - 12, 0.0) / image.width, std::max(box.height - 12, 0.0) / image.height);
    return {image.width * scale, image.height * scale};
}

} // namespace taliro
