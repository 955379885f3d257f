#include "platform/linux/FilePreviews.h"

#include "foundation/TextDecoding.h"
#include "platform/TypeCatalog.h"
#include "platform/linux/BackgroundAnswer.h"
#include "platform/linux/FolderSummary.h"
#include "platform/linux/ImageReading.h"
#include "platform/linux/ProcessPlayback.h"
#include "platform/linux/ThumbnailMaker.h"

#include <algorithm>
#include <array>

#include <QFile>
#include <QMimeDatabase>

namespace taliro {

namespace {

constexpr std::array archiveTypes{"application/zip",
                                  "application/x-tar",
                                  "application/x-7z-compressed",
                                  "application/vnd.rar",
                                  "application/x-rar",
                                  "application/x-cd-image",
                                  "application/x-cpio",
                                  "application/java-archive",
                                  "application/x-iso9660-image",
                                  "application/vnd.debian.binary-package",
                                  "application/x-deb",
                                  "application/x-rpm",
                                  "application/x-lha",
                                  "application/x-xar",
                                  "application/x-archive",
                                  "application/vnd.ms-cab-compressed"};

bool isArchive(std::string const& mimeType) {
    auto const isTar = mimeType.starts_with("application/x-") && mimeType.ends_with("-compressed-tar");
    return isTar || mimeType == "application/x-compressed-tar" ||
           std::ranges::find(archiveTypes, mimeType) != archiveTypes.end();
}

std::optional<TextPreview> readText(std::string const& path, std::size_t limit) {
    auto const descriptor = openPlainFile(path);
    QFile file;
    if (!descriptor || !file.open(descriptor.get(), QIODevice::ReadOnly))
        return std::nullopt;
    auto const bytes = file.read(static_cast<qint64>(limit));
    auto decoded = decodeText({bytes.data(), static_cast<std::size_t>(bytes.size())});
    if (!decoded)
        return std::nullopt;
    return TextPreview{std::move(decoded->utf8), std::move(decoded->encoding), !file.atEnd()};
}

} // namespace

FilePreviews::FilePreviews(MainQueue& queue, TypeCatalog& types, Programs programs)
    : m_queue(queue),
      m_types(types),
      m_player(std::move(programs.player)),
      m_pool(std::make_shared<WorkerPool>(
          WorkerPool::Options{.threads = 2, .limit = 16, .renderer = std::move(programs.renderer)})) {}

PreviewKind FilePreviews::previewKind(Url const& item, bool isDirectory) {
    auto const mimeType = m_types.mimeType(item.lastPathComponent(), isDirectory);
    if (isDirectory)
        return PreviewKind::folder;
    if (isPlainImage(mimeType))
        return PreviewKind::image;
    // What its name says nothing of may be text (LICENSE); reading it tells.
    if (mimeType == "application/octet-stream")
        return PreviewKind::text;
    if (mimeType == "text/markdown")
        return PreviewKind::markdown;
    if (isArchive(mimeType))
        return PreviewKind::archive;
    if (mimeType.starts_with("audio/"))
        return PreviewKind::sound;
    if (mimeType.starts_with("video/"))
        return PreviewKind::film;
    switch (builtInKind(mimeType).value_or(RenderKind::program)) {
    case RenderKind::drawing:
    case RenderKind::font:
        return PreviewKind::image;
    case RenderKind::document:
        return PreviewKind::pages;
    case RenderKind::text:
        return PreviewKind::text;
    case RenderKind::program:
    case RenderKind::archive:
        break;
    }
    return PreviewKind::other;
}

std::optional<PagePicture> FilePreviews::makePage(PageRequest const& request, RendererClient& renderer,
                                                  std::stop_token stop) {
    auto const mimeType = m_types.mimeType(request.file.lastPathComponent(), false);
    if (isPlainImage(mimeType)) {
        auto read = readImage(request.file.path(), {request.width, request.height});
        if (!read)
            return std::nullopt;
        auto const full = read->fullSize;
        return PagePicture{toPicture(std::move(read->image)), 1, full.width(), full.height()};
    }
    auto const kind = builtInKind(mimeType);
    if (!kind)
        return std::nullopt;
    auto drawn = renderer.draw({.kind = *kind,
                                .path = request.file.path(),
                                .command = {},
                                .width = std::min(request.width, longestSide),
                                .height = std::min(request.height, longestSide),
                                .page = request.page},
                               std::move(stop));
    if (!drawn)
        return std::nullopt;
    return PagePicture{toPicture(std::move(drawn->image)), drawn->pages, 0, 0};
}

Subscription FilePreviews::page(PageRequest request,
                                std::function<void(std::optional<PagePicture>)> completion) {
    BackgroundAnswer<std::optional<PagePicture>> const answer(m_queue, std::move(completion));
    return answerFrom(
        m_pool, answer,
        {.run = [this, request = std::move(request),
                 answer](RendererClient& renderer,
                         std::stop_token stop) { answer.give(makePage(request, renderer, std::move(stop))); },
         .dropped = [answer] { answer.give(std::nullopt); }});
}

Subscription FilePreviews::text(Url const& file, std::size_t limit,
                                std::function<void(std::optional<TextPreview>)> completion) {
    BackgroundAnswer<std::optional<TextPreview>> const answer(m_queue, std::move(completion));
    return answerFrom(m_pool, answer,
                      {.run = [path = file.path(), limit, answer](
                                  RendererClient&, std::stop_token) { answer.give(readText(path, limit)); },
                       .dropped = [answer] { answer.give(std::nullopt); }});
}

Subscription FilePreviews::summary(Url const& item, std::function<void(ContentSummary const&)> update) {
    BackgroundAnswer<ContentSummary> const answer(m_queue, std::move(update));
    auto const tell = [answer](ContentSummary const& summary) { answer.give(summary); };
    ContentSummary const unfinished{.names = {}, .finished = true, .damaged = true};
    auto const run = [tell, unfinished, path = item.path(),
                      isFolder = item.hasDirectoryPath()](RendererClient& renderer, std::stop_token stop) {
        if (isFolder)
            summarizeFolder(path, tell, stop);
        else if (!renderer.summarize(path, tell, stop) && !stop.stop_requested())
            tell(unfinished);
    };
    return answerFrom(m_pool, answer, {.run = run, .dropped = [tell, unfinished] { tell(unfinished); }});
}

std::unique_ptr<Playback> FilePreviews::playback(Url const& file, int width, int height,
                                                 PlaybackEvents events) {
    return std::make_unique<ProcessPlayback>(
        m_player, m_queue, ProcessPlayback::Film{file.path(), width, height}, std::move(events));
}

} // namespace taliro
