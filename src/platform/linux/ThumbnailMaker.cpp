#include "platform/linux/ThumbnailMaker.h"

#include "platform/TypeCatalog.h"
#include "platform/linux/ImageReading.h"

#include <algorithm>

#include <QMimeDatabase>

namespace taliro {

std::optional<RenderKind> builtInKind(std::string const& mimeType) {
    if (mimeType.starts_with("image/svg"))
        return RenderKind::drawing;
    if (mimeType.starts_with("font/") || mimeType.starts_with("application/x-font-"))
        return RenderKind::font;
    auto const type = QMimeDatabase().mimeTypeForName(QString::fromStdString(mimeType));
    if (type.inherits(QStringLiteral("application/pdf")))
        return RenderKind::document;
    if (type.inherits(QStringLiteral("text/plain")))
        return RenderKind::text;
    return std::nullopt;
}

DrawingPlan ThumbnailMaker::planFor(std::string const& mimeType) {
    using Method = DrawingPlan::Method;
    if (isPlainImage(mimeType))
        return {.method = Method::image, .command = {}};
    if (auto const kind = builtInKind(mimeType))
        return {.method = Method::renderer, .kind = *kind, .command = {}};
    if (auto command = m_programs.commandFor(mimeType))
        return {.method = Method::renderer, .kind = RenderKind::program, .command = std::move(*command)};
    return {};
}

std::optional<QImage> ThumbnailMaker::draw(DrawingPlan const& plan, std::string const& path, int size,
                                           RendererClient& renderer, std::stop_token stop) {
    if (plan.method == DrawingPlan::Method::image) {
        auto read = readImage(path, {size, size});
        return read ? std::optional(std::move(read->image)) : std::nullopt;
    }
    auto drawn = renderer.draw({.kind = plan.kind,
                                .path = path,
                                .command = plan.command,
                                .width = size,
                                .height = size,
                                .page = 0,
                                .timeLimit = m_timeLimit},
                               std::move(stop));
    if (drawn)
        return std::move(drawn->image);
    return drawn.error() == RendererClient::Failure::badFile ? std::nullopt : std::optional(QImage());
}

std::optional<Picture> ThumbnailMaker::make(ThumbnailRequest const& request, RendererClient& renderer,
                                            std::stop_token stop) {
    auto const file = FileStamp::of(request.file.path());
    auto const plan = planFor(m_types.mimeType(request.file.lastPathComponent(), false));
    if (!file || file->size == 0 || plan.method == DrawingPlan::Method::none)
        return std::nullopt;
    auto const longest = std::max(request.width, request.height);
    auto image = m_store.find(*file, longest);
    if (!image) {
        if (m_store.hasFailed(*file))
            return std::nullopt;
        auto const size = ThumbnailStore::sizeFor(longest);
        image = draw(plan, file->path, size, renderer, stop);
        if (!image)
            m_store.storeFailure(*file);
        else if (!image->isNull())
            m_store.store(*file, *image, size);
    }
    if (!image || image->isNull() || stop.stop_requested())
        return std::nullopt;
    auto const fitting = shrunkToFit(image->size(), {request.width, request.height});
    if (fitting != image->size())
        image = image->scaled(fitting, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return toPicture(std::move(*image));
}

} // namespace taliro
