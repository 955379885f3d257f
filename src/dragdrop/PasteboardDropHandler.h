#pragma once

#include "dragdrop/Pasteboard.h"
#include "foundation/Text.h"
#include "foundation/Url.h"
#include "platform/Downloads.h"
#include "platform/NewFiles.h"

#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <string_view>

namespace taliro {

class FileDropHandler;
class ProgressCenter;
class ToastCenter;
struct Platform;

/// Takes every drop on the browser: files are moved or copied, and what else can be made a file becomes one.
class PasteboardDropHandler {
public:
    PasteboardDropHandler(
        Platform& platform, FileDropHandler& files, ToastCenter& toasts, ProgressCenter& progress,
        std::function<Date()> clock = [] { return Date(std::chrono::system_clock::now()); });
    ~PasteboardDropHandler();
    static PasteboardDropHandler& shared();

    /// Whether the drop was taken. The pasteboard is read before it returns; files are transferred in a later
    /// turn, so that the source of the drag is free, one drop after the other.
    bool routeDrop(Pasteboard const& pasteboard, Url const& folder, bool copy);

private:
    struct FileDrop;
    struct Download;
    using Save = std::function<NewFiles::Result(Url const& destination)>;

    bool takeFiles(Pasteboard const& pasteboard, Url const& folder, bool copy);
    bool takeImage(Pasteboard const& pasteboard, Url const& folder);
    bool takePromise(Pasteboard const& pasteboard, Url const& folder);
    bool takeLink(Pasteboard const& pasteboard, Url const& folder);
    bool takeText(Pasteboard const& pasteboard, Url const& folder);

    void transferFiles();
    void writeData(std::string_view bytes, std::string_view base, std::string_view extension,
                   Url const& folder);
    void writeNamed(std::string_view bytes, std::string_view name, Url const& folder);
    void downloadAndSave(Url const& link, Url const& folder);
    void keep(Downloads::Downloaded const& downloaded, Url const& link, Url const& folder);
    /// Saves under `name`, or the next free one, and tells what became of it.
    void saveAs(std::string_view name, Url const& folder, Save const& save);
    void announce(Url const& destination, Url const& folder);

    Platform& m_platform;
    FileDropHandler& m_files;
    ToastCenter& m_toasts;
    ProgressCenter& m_progress;
    std::function<Date()> m_clock;
    std::deque<FileDrop> m_fileDrops;
    bool m_isTransferring = false;
    std::list<Download> m_downloads;
};

} // namespace taliro
