#include "dragdrop/PasteboardDropHandler.h"

#include "browsing/DirectoryWatcher.h"
#include "dragdrop/FileDropHandler.h"
#include "dragdrop/FileNames.h"
#include "dragdrop/InAppDropLatch.h"
#include "dragdrop/ProgressCenter.h"
#include "dragdrop/ToastCenter.h"
#include "foundation/NotificationCenter.h"
#include "platform/Alerts.h"
#include "platform/DirectSave.h"
#include "platform/Downloads.h"
#include "platform/ImageCodec.h"
#include "platform/NewFiles.h"
#include "platform/Platform.h"
#include "platform/StandardFolders.h"

namespace taliro {

namespace {

struct ImageFormat {
    char const* mimeType;
    char const* extension;
    bool asPng; ///< bulky, and read by few programs: kept only where it can't be converted
};

/// In the order of preference.
constexpr ImageFormat imageFormats[] = {
    {"image/png", "png", false},   {"image/jpeg", "jpg", false},  {"image/jpg", "jpg", false},
    {"image/tiff", "tiff", true},  {"image/bmp", "bmp", true},    {"image/x-bmp", "bmp", true},
    {"image/heic", "heic", false}, {"image/heif", "heic", false}, {"image/gif", "gif", false},
    {"image/webp", "webp", false}, {"image/avif", "avif", false}, {"image/svg+xml", "svg", false},
};

} // namespace

struct PasteboardDropHandler::FileDrop {
    std::vector<Url> sources;
    Url folder;
    bool copy;
};

struct PasteboardDropHandler::Download {
    std::unique_ptr<ProgressCenter::Operation> card;
    std::unique_ptr<Downloads::Task> task;
};

PasteboardDropHandler::PasteboardDropHandler(Platform& platform, FileDropHandler& files, ToastCenter& toasts,
                                             ProgressCenter& progress, std::function<Date()> clock)
    : m_platform(platform),
      m_files(files),
      m_toasts(toasts),
      m_progress(progress),
      m_clock(std::move(clock)) {}

PasteboardDropHandler::~PasteboardDropHandler() = default;

PasteboardDropHandler& PasteboardDropHandler::shared() {
    // Never destroyed: its downloads belong to a platform that goes first.
    static auto& handler = *new PasteboardDropHandler(Platform::current(), FileDropHandler::shared(),
                                                      ToastCenter::shared(), ProgressCenter::shared());
    return handler;
}

bool PasteboardDropHandler::routeDrop(Pasteboard const& pasteboard, Url const& folder, bool copy) {
    InAppDropLatch::armed = true;
    if (takeFiles(pasteboard, folder, copy))
        return true;
    if (m_platform.standardFolders.isTrash(folder)) // nothing is made only to be thrown away
        return false;
    return takeImage(pasteboard, folder) || takePromise(pasteboard, folder) || takeLink(pasteboard, folder) ||
           takeText(pasteboard, folder);
}

bool PasteboardDropHandler::takeFiles(Pasteboard const& pasteboard, Url const& folder, bool copy) {
    auto sources = pasteboard.fileUrls();
    if (sources.empty())
        return false;
    m_fileDrops.push_back({std::move(sources), folder, copy});
    m_platform.mainQueue.async([this] { transferFiles(); });
    return true;
}

void PasteboardDropHandler::transferFiles() {
    // The event loop turns during a transfer; a drop that comes meanwhile waits for its turn.
    if (m_isTransferring)
        return;
    m_isTransferring = true;
    while (!m_fileDrops.empty()) {
        auto const drop = std::move(m_fileDrops.front());
        m_fileDrops.pop_front();
        m_files.performAll(drop.sources, drop.folder, drop.copy);
    }
    m_isTransferring = false;
}

bool PasteboardDropHandler::takeImage(Pasteboard const& pasteboard, Url const& folder) {
    for (auto const& format : imageFormats) {
        auto const bytes = pasteboard.read(format.mimeType);
        if (!bytes)
            continue;
        auto const png = format.asPng ? m_platform.imageCodec.png(*bytes) : std::nullopt;
        writeData(png ? *png : *bytes, "image", png ? "png" : format.extension, folder);
        return true;
    }
    return false;
}

bool PasteboardDropHandler::takePromise(Pasteboard const& pasteboard, Url const& folder) {
    if (!pasteboard.has(DirectSave::format))
        return false;
    auto const promised = m_platform.directSave.promisedName();
    auto const name = promised ? plainFileName(*promised) : std::nullopt;
    if (!name)
        return false;
    auto const destination = uniqueDestination(m_platform.fileManager, *name, folder);
    m_platform.directSave.setDestination(destination);
    auto const answer = pasteboard.data(DirectSave::format);
    if (answer == "S") {
        announce(destination, folder);
        return true;
    }
    auto const bytes = answer == "F" ? pasteboard.read("application/octet-stream") : std::nullopt;
    if (!bytes)
        return false;
    writeNamed(*bytes, *name, folder);
    return true;
}

bool PasteboardDropHandler::takeLink(Pasteboard const& pasteboard, Url const& folder) {
    auto const link = pasteboard.webLink();
    if (link)
        downloadAndSave(*link, folder);
    return link.has_value();
}

bool PasteboardDropHandler::takeText(Pasteboard const& pasteboard, Url const& folder) {
    for (auto const* format : {"text/rtf", "application/rtf", "text/richtext"}) {
        if (auto const bytes = pasteboard.read(format)) {
            writeData(*bytes, "Snippet", "rtf", folder);
            return true;
        }
    }
    if (auto const html = pasteboard.html()) {
        writeData(*html, "Snippet", "html", folder);
        return true;
    }
    if (auto const text = pasteboard.text()) {
        writeData(*text, "Clipping", "txt", folder);
        return true;
    }
    return false;
}

void PasteboardDropHandler::writeData(std::string_view bytes, std::string_view base,
                                      std::string_view extension, Url const& folder) {
    writeNamed(bytes, timeStampedName(base, m_clock(), extension), folder);
}

void PasteboardDropHandler::writeNamed(std::string_view bytes, std::string_view name, Url const& folder) {
    saveAs(name, folder,
           [&](Url const& destination) { return m_platform.newFiles.write(destination, bytes); });
}

void PasteboardDropHandler::saveAs(std::string_view name, Url const& folder, Save const& save) {
    constexpr int mostRaces = 100;
    for (int race = 0; race < mostRaces; ++race) {
        auto const destination = uniqueDestination(m_platform.fileManager, name, folder);
        auto const saved = save(destination);
        if (saved)
            return announce(destination, folder);
        if (saved.error() != std::errc::file_exists) // else someone was quicker: try the next name
            break;
    }
    m_platform.alerts.beep();
}

void PasteboardDropHandler::downloadAndSave(Url const& link, Url const& folder) {
    auto const place = m_downloads.emplace(m_downloads.end());
    auto const ended = [this, place] { m_downloads.erase(place); };
    auto const title = "Downloading “" + legible(downloadName({}, link)) + "”";
    place->card = m_progress.begin(title, ended);
    Downloads::Callbacks callbacks;
    callbacks.onProgress = [place](Downloads::Progress progress) {
        place->card->update(progress.received, progress.expected);
    };
    callbacks.onEnd = [this, link, folder, ended](std::optional<Downloads::Downloaded> const& downloaded) {
        if (downloaded)
            keep(*downloaded, link, folder);
        ended();
    };
    place->task = m_platform.downloads.start(link, folder, std::move(callbacks));
}

void PasteboardDropHandler::keep(Downloads::Downloaded const& downloaded, Url const& link,
                                 Url const& folder) {
    saveAs(downloadName(downloaded.contentDisposition, link), folder, [&](Url const& destination) {
        return m_platform.newFiles.keep(downloaded.temporary, destination);
    });
    m_platform.newFiles.discard(downloaded.temporary);
}

void PasteboardDropHandler::announce(Url const& destination, Url const& folder) {
    NotificationCenter::standard().post(taliroFolderDidChange, folder);
    m_toasts.show("Saved " + legible(destination.lastPathComponent()) + " to " +
                      legible(folder.lastPathComponent()),
                  ToastCenter::success);
}

} // namespace taliro
