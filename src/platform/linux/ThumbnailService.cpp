#include "platform/linux/ThumbnailService.h"

#include "platform/linux/BackgroundAnswer.h"

#include <algorithm>
#include <thread>

namespace taliro {

namespace {
int threadCount(int asked) {
    return asked > 0 ? asked : std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, 4);
}
} // namespace

ThumbnailService::ThumbnailService(MainQueue& queue, TypeCatalog& types, Options options)
    : m_queue(queue),
      m_maker(types, std::move(options.storeFolder), std::move(options.programFolders), options.timeLimit),
      m_pool(std::make_shared<WorkerPool>(WorkerPool::Options{.threads = threadCount(options.threads),
                                                              .limit = options.limit,
                                                              .renderer = std::move(options.renderer)})) {}

Subscription ThumbnailService::request(ThumbnailRequest request,
                                       std::function<void(std::optional<Picture>)> completion) {
    BackgroundAnswer<std::optional<Picture>> const answer(m_queue, std::move(completion));
    return answerFrom(
        m_pool, answer,
        {.run = [this, request = std::move(request),
                 answer](RendererClient& renderer,
                         std::stop_token stop) { answer.give(m_maker.make(request, renderer, stop)); },
         .dropped = [answer] { answer.give(std::nullopt); }});
}

} // namespace taliro
