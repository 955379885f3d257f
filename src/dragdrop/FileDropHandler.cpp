#include "dragdrop/FileDropHandler.h"

#include "browsing/DirectoryWatcher.h"
#include "dragdrop/ToastCenter.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Text.h"
#include "platform/Alerts.h"
#include "platform/FileManager.h"
#include "platform/FileOperations.h"
#include "platform/Platform.h"
#include "platform/StandardFolders.h"

namespace taliro {

struct FileDropHandler::Request {
    Request(Url source, Url into, bool copy, bool intoTrash)
        : source(std::move(source)),
          into(std::move(into)),
          destination(this->into.appending(this->source.lastPathComponent())),
          copy(copy),
          intoTrash(intoTrash) {}

    Url source;
    Url into;
    Url destination;
    bool copy;
    bool intoTrash;

    Url sourceFolder() const { return source.deletingLastPathComponent(); }
    std::string name() const { return legible(source.lastPathComponent()); }
    std::string folder() const { return intoTrash ? "Trash" : legible(into.lastPathComponent()); }
    std::string title() const { return (copy ? "Copying “" : "Moving “") + name() + "”"; }
    bool leavesItsFolder() const { return sourceFolder().standardized() != into.standardized(); }
    bool isInPlaceAlready() const {
        return destination.standardized() == source.standardized() || (!copy && !leavesItsFolder());
    }
};

FileDropHandler::FileDropHandler(Platform& platform, ToastCenter& toasts, ProgressCenter& progress)
    : m_platform(platform), m_toasts(toasts), m_progress(progress) {}

FileDropHandler& FileDropHandler::shared() {
    // Never destroyed: what it stands on goes before any static object does.
    static auto& handler =
        *new FileDropHandler(Platform::current(), ToastCenter::shared(), ProgressCenter::shared());
    return handler;
}

FileDropHandler::Outcome FileDropHandler::perform(Url source, Url into, bool copy) {
    bool const intoTrash = m_platform.standardFolders.isTrash(into);
    Request const request(std::move(source), std::move(into), copy, intoTrash);
    return perform(request, *m_progress.begin(request.title()));
}

void FileDropHandler::performAll(std::vector<Url> sources, Url into, bool copy) {
    auto const operation = m_progress.begin("");
    auto const count = numberText(static_cast<std::int64_t>(sources.size()));
    bool const intoTrash = m_platform.standardFolders.isTrash(into);
    for (std::size_t i = 0; i < sources.size() && !operation->isCancelled(); ++i) {
        Request const request(sources[i], into, copy, intoTrash);
        auto const position = numberText(static_cast<std::int64_t>(i) + 1) + " of " + count;
        operation->setTitle(sources.size() == 1 ? request.title() : request.title() + " (" + position + ")");
        perform(request, *operation);
    }
}

FileDropHandler::Outcome FileDropHandler::perform(Request const& request,
                                                  ProgressCenter::Operation& operation) {
    if (!request.source.isFile() || !request.into.isFile() || request.isInPlaceAlready())
        return Outcome::nothing;
    if (isRefused(request))
        return Outcome::refused;
    return transfer(request, operation);
}

bool FileDropHandler::isRefused(Request const& request) {
    if (request.destination.standardized().isWithin(request.source.standardized())) {
        m_toasts.show("Can't place “" + request.name() + "” inside itself", ToastCenter::failure);
        return true;
    }
    if (request.intoTrash) { // where names may repeat, and from where everything can go back to its place
        if (request.copy)
            m_toasts.show("Can't copy “" + request.name() + "” to the Trash", ToastCenter::failure);
        return request.copy;
    }
    if (m_platform.fileManager.exists(request.destination)) {
        m_toasts.show("“" + request.name() + "” already exists in “" + request.folder() + "”",
                      ToastCenter::failure);
        return true;
    }
    return false;
}

FileDropHandler::Outcome FileDropHandler::transfer(Request const& request,
                                                   ProgressCenter::Operation& operation) {
    auto const report = [&](TransferProgress const& progress) {
        operation.update(progress.bytesDone, progress.bytesTotal);
        return operation.isCancelled() ? TransferAnswer::cancel : TransferAnswer::carryOn;
    };
    auto& files = m_platform.fileOperations;
    auto const result = request.intoTrash ? files.trash(request.source)
                        : request.copy    ? files.copy(request.source, request.destination, report)
                                          : files.move(request.source, request.destination, report);
    if (result) {
        announce(request);
        return Outcome::done;
    }
    if (result.error() == std::errc::operation_canceled)
        return Outcome::cancelled;
    m_platform.alerts.beep();
    return Outcome::failed;
}

void FileDropHandler::announce(Request const& request) {
    auto& notifications = NotificationCenter::standard();
    notifications.post(taliroFolderDidChange, request.into);
    if (!request.copy && request.leavesItsFolder())
        notifications.post(taliroFolderDidChange, request.sourceFolder());
    m_toasts.show((request.copy ? "Copied " : "Moved ") + request.name() + " to " + request.folder(),
                  ToastCenter::success);
}

} // namespace taliro
