#pragma once

#include "platform/Alerts.h"
#include "platform/Bookmarks.h"
#include "platform/ColorScheme.h"
#include "platform/DesktopPlaces.h"
#include "platform/DirectSave.h"
#include "platform/DirectoryEvents.h"
#include "platform/Downloads.h"
#include "platform/FileManager.h"
#include "platform/FileOperations.h"
#include "platform/ImageCodec.h"
#include "platform/LoginItems.h"
#include "platform/MetadataQuery.h"
#include "platform/NewFiles.h"
#include "platform/OpenRequests.h"
#include "platform/Platform.h"
#include "platform/PointerEvents.h"
#include "platform/PreviewService.h"
#include "platform/PropertyLists.h"
#include "platform/Screens.h"
#include "platform/Shell.h"
#include "platform/SoftwareUpdate.h"
#include "platform/StandardFolders.h"
#include "platform/StatusBar.h"
#include "platform/Thumbnailer.h"
#include "platform/TypeCatalog.h"
#include "platform/UserDefaults.h"
#include "platform/Volumes.h"
#include "platform/WindowManager.h"
#include "platform/Workspace.h"
#include "support/FakeKeyboard.h"
#include "support/HandQueue.h"

#include <map>
#include <set>

namespace taliro::testing {

struct FakeAlerts : Alerts {
    std::vector<std::pair<std::string, std::string>> warnings;
    int beeps = 0;
    int answer = 0; ///< the button that questions are answered with
    void warn(std::string const& message, std::string const& text) override {
        warnings.emplace_back(message, text);
    }
    int ask(std::string const& message, std::string const& text, std::vector<std::string> const&) override {
        warnings.emplace_back(message, text);
        return answer;
    }
    void beep() override { ++beeps; }
};

struct FakeDirectoryEvents : DirectoryEvents {
    struct FakeSource : Source {
        FakeSource(FakeDirectoryEvents& owner, std::string path, std::function<void(Changed const&)> onEvent)
            : owner(owner), path(std::move(path)), onEvent(std::move(onEvent)) {
            owner.sources.insert(this);
        }
        ~FakeSource() override { owner.sources.erase(this); }
        FakeDirectoryEvents& owner;
        std::string path;
        std::function<void(Changed const&)> onEvent;
    };
    std::set<FakeSource*> sources;
    int watches = 0;   ///< how often a watch was asked for
    bool fail = false; ///< as where no more watches are to be had

    std::expected<std::unique_ptr<Source>, std::errc>
    watch(Url const& folder, std::function<void(Changed const&)> onEvent) override {
        ++watches;
        if (fail)
            return std::unexpected(std::errc::no_space_on_device);
        return std::make_unique<FakeSource>(*this, folder.path(), std::move(onEvent));
    }
    void change(std::string const& path, Changed const& names = std::nullopt) {
        auto const current = sources;
        for (auto* source : current)
            if (sources.contains(source) && source->path == path)
                source->onEvent(names);
    }
};

/// A file system in memory: paths and what is known of them.
struct FakeFileManager : FileManager {
    std::map<std::string, FileAttributes> tree{{"/", {.isDirectory = true}},
                                               {"/home", {.isDirectory = true}},
                                               {"/home/mira", {.isDirectory = true}}};
    std::map<std::string, std::string> contentsOf; ///< bytes by path
    std::set<std::string> unreadable;
    std::errc createError{};
    int listings = 0;

    Url addFolder(std::string const& path, FileAttributes known = {}) {
        known.isDirectory = true;
        tree[path] = known;
        return Url::file(path, true);
    }
    Url addFile(std::string const& path, FileAttributes known = {.isRegular = true}) {
        tree[path] = known;
        return Url::file(path, false);
    }

    std::expected<std::vector<ListedItem>, std::errc> contents(Url const& folder, Hidden hidden) override {
        ++listings;
        auto const path = folder.path();
        auto const found = tree.find(path);
        if (found == tree.end())
            return std::unexpected(std::errc::no_such_file_or_directory);
        if (!found->second.isDirectory)
            return std::unexpected(std::errc::not_a_directory);
        if (unreadable.contains(path))
            return std::unexpected(std::errc::permission_denied);
        std::vector<ListedItem> listed;
        auto const prefix = path == "/" ? path : path + "/";
        for (auto const& [item, known] : tree) {
            if (!item.starts_with(prefix) || item.size() == prefix.size())
                continue;
            auto name = item.substr(prefix.size());
            if (name.find('/') != std::string::npos || (hidden == Hidden::skip && name.starts_with('.')))
                continue;
            listed.push_back(
                {std::move(name), unreadable.contains(item) ? std::nullopt : std::optional(known)});
        }
        return listed;
    }
    std::vector<ListedItem> contents(Url const& folder, std::vector<std::string> const& names,
                                     Hidden hidden) override {
        std::vector<ListedItem> found;
        for (auto const& name : names)
            if (auto const item = folder.appending(name);
                exists(item) && (hidden == Hidden::include || name[0] != '.'))
                found.push_back({name, attributes(item)});
        return found;
    }
    std::optional<std::vector<std::string>> subfolders(Url const& folder, Hidden hidden) override {
        auto const listed = contents(folder, hidden);
        if (!listed)
            return std::nullopt;
        std::vector<std::string> names;
        for (auto const& item : *listed)
            if (item.attributes && item.attributes->isDirectory)
                names.push_back(item.name);
        return names;
    }
    std::optional<FileAttributes> attributes(Url const& item) override {
        auto const found = tree.find(item.path());
        return found == tree.end() || unreadable.contains(item.path()) ? std::nullopt
                                                                       : std::optional(found->second);
    }
    bool exists(Url const& item) override { return item.isFile() && tree.contains(item.path()); }
    bool isDirectory(Url const& item) override {
        auto const found = tree.find(item.path());
        return item.isFile() && found != tree.end() && found->second.isDirectory;
    }
    bool isWritable(Url const& folder) override { return isDirectory(folder); }
    std::expected<void, std::errc> createDirectory(Url const& folder) override {
        if (createError != std::errc{})
            return std::unexpected(createError);
        if (exists(folder))
            return std::unexpected(std::errc::file_exists);
        addFolder(folder.path());
        return {};
    }
    Url homeDirectory() override { return Url::file("/home/mira", true); }
    std::optional<std::string> readFile(Url const& file, std::size_t limit) override {
        auto const found = contentsOf.find(file.path());
        return found == contentsOf.end() ? std::nullopt : std::optional(found->second.substr(0, limit));
    }
};

struct FakeLoginItems : LoginItems {
    LoginItemStatus current = LoginItemStatus::notRegistered;
    std::string failure; ///< told instead of doing what was asked
    int calls = 0;
    LoginItemStatus status() override { return current; }
    std::expected<void, std::string> registerItem() override { return change(LoginItemStatus::enabled); }
    std::expected<void, std::string> unregisterItem() override {
        return change(LoginItemStatus::notRegistered);
    }

private:
    std::expected<void, std::string> change(LoginItemStatus to) {
        ++calls;
        if (!failure.empty())
            return std::unexpected(failure);
        current = to;
        return {};
    }
};

struct FakeOpenRequests : OpenRequests {
    std::function<void(std::vector<Url>)> open;
    std::function<void()> activate;
    void start(std::function<void(std::vector<Url>)> onOpen, std::function<void()> onActivate) override {
        open = std::move(onOpen);
        activate = std::move(onActivate);
    }
};

struct FakeScreens : Screens {
    std::vector<ScreenInfo> screens{{{0, 0, 1440, 900}, {0, 24, 1440, 876}, true}};
    Point mouse;
    Observers<> observers;
    std::vector<ScreenInfo> all() override { return screens; }
    Point mouseLocation() override { return mouse; }
    Subscription observeChanges(std::function<void()> observer) override {
        return observers.add(std::move(observer));
    }
};

struct FakeScriptInterpreter : ScriptInterpreter {
    std::vector<std::string> sources;
    std::expected<void, std::string> answer;
    std::function<void()> effect; ///< what a script that runs does
    std::expected<void, std::string> run(std::string const& source) override {
        sources.push_back(source);
        if (answer && effect)
            effect();
        return answer;
    }
};

struct FakeShell : Shell {
    std::vector<std::string> commands;
    std::int32_t exitStatus = 0;
    std::function<void()> effect; ///< what a command that succeeds does
    std::map<std::string, std::string> links;
    std::optional<std::string> tool = "/opt/Taliro/Resources/taliro";
    std::int32_t runShell(std::string const& command) override {
        commands.push_back(command);
        if (exitStatus == 0 && effect)
            effect();
        return exitStatus;
    }
    std::string resolvingSymlinks(std::string const& path) override {
        auto const found = links.find(path);
        return found == links.end() ? path : resolvingSymlinks(found->second);
    }
    std::optional<std::string> bundledResource(std::string const&) override { return tool; }
};

struct FakeSoftwareUpdate : SoftwareUpdate {
    int starts = 0;
    int checks = 0;
    void start() override { ++starts; }
    void checkForUpdates() override { ++checks; }
};

struct FakeStatusItem : StatusItem {
    bool visible = true;
    std::optional<Rect> place = Rect{1200, 0, 24, 24};
    std::vector<StatusMenuEntry> menu;
    void setVisible(bool value) override { visible = value; }
    std::optional<Rect> frame() override { return place; }
    bool contains(Point point) override { return place && place->contains(point); }
    void showMenu(std::vector<StatusMenuEntry> entries) override { menu = std::move(entries); }
};

struct FakeStatusBar : StatusBar {
    FakeStatusItem* item = nullptr; ///< the one made last
    std::unique_ptr<StatusItem> makeItem(std::string const&, std::string const&,
                                         std::string const&) override {
        auto made = std::make_unique<FakeStatusItem>();
        item = made.get();
        return made;
    }
};

struct FakeTypeCatalog : TypeCatalog {
    PixelSize pixels;
    std::string mimeType(std::string_view name, bool isDirectory) override {
        return isDirectory ? "inode/directory" : name.ends_with(".png") ? "image/png" : "text/plain";
    }
    std::string kind(std::string_view name, bool isDirectory) override {
        auto const dot = name.rfind('.');
        if (isDirectory)
            return "Folder";
        return dot == std::string_view::npos ? "Document" : std::string(name.substr(dot + 1)) + " document";
    }
    std::string iconName(std::string_view) override { return "text-plain"; }
    std::string genericIconName(std::string_view) override { return "text-x-generic"; }
    PixelSize pixelSize(Url const&) override { return pixels; }
};

struct FakeUserDefaults : UserDefaults {
    PropertyValue::Dictionary values;
    std::vector<std::string> writes; ///< keys in the order they were set or removed
    std::optional<PropertyValue> object(std::string_view key) const override {
        auto const found = values.find(key);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }
    void set(std::string_view key, PropertyValue value) override {
        writes.emplace_back(key);
        values.insert_or_assign(std::string(key), std::move(value));
    }
    void remove(std::string_view key) override {
        writes.emplace_back(key);
        if (auto const found = values.find(key); found != values.end())
            values.erase(found);
    }
};

struct FakeWorkspace : Workspace {
    std::vector<Url> opened;
    std::vector<Url> revealed;
    std::vector<Url> terminals;
    bool canOpen = true;
    bool open(Url const& item) override {
        opened.push_back(item);
        return canOpen;
    }
    void reveal(std::vector<Url> const& items) override { revealed = items; }
    bool openTerminal(Url const& folder) override {
        terminals.push_back(folder);
        return canOpen;
    }
    bool openPrivacySettings() override { return false; }
};

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

/// No previews at all.
struct FakePreviews : PreviewService {
    PreviewKind previewKind(Url const&, bool isDirectory) override {
        return isDirectory ? PreviewKind::folder : PreviewKind::other;
    }
    Subscription page(PageRequest, std::function<void(std::optional<PagePicture>)>) override { return {}; }
    Subscription text(Url const&, std::size_t, std::function<void(std::optional<TextPreview>)>) override {
        return {};
    }
    Subscription summary(Url const&, std::function<void(ContentSummary const&)>) override { return {}; }
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

struct FakeColorScheme : ColorScheme {
    bool dark = false;
    Observers<bool> observers;
    bool isDark() const override { return dark; }
    Subscription observe(std::function<void(bool)> observer) override {
        return observers.add(std::move(observer));
    }
};

struct FakePointerEvents : PointerEvents {
    Observers<Point> presses;
    Subscription observeGlobalMouseDown(std::function<void(Point)> observer) override {
        return presses.add(std::move(observer));
    }
};

struct FakeWindowManager : WindowManager {
    bool composited = false;
    WindowId focused = 0;
    Observers<> compositing;
    Observers<> workspace;
    void floatEverywhere(WindowId, Taskbar) override {}
    void setTaskbar(WindowId, Taskbar) override {}
    void focus(WindowId window) override { focused = window; }
    void raise(WindowId) override {}
    void setVisibleArea(WindowId, Rect, Size) override {}
    bool isComposited() override { return composited; }
    Subscription observeCompositing(std::function<void()> observer) override {
        return compositing.add(std::move(observer));
    }
    Subscription observeWorkspace(std::function<void()> observer) override {
        return workspace.add(std::move(observer));
    }
};

/// Copies and moves within a `FakeFileManager`, at once.
struct FakeFileOperations : FileOperations {
    explicit FakeFileOperations(FakeFileManager& files) : files(files) {}

    FakeFileManager& files;
    std::vector<std::pair<std::string, std::string>> copies; ///< tried: from, to
    std::vector<std::pair<std::string, std::string>> moves;
    std::vector<std::string> trashed;
    std::map<std::string, std::errc> failures;              ///< by the source's path
    std::function<TransferAnswer(Report const&)> meanwhile; ///< what happens while the bytes are moved
    bool leftoversRemoved = false;

    Result copy(Url source, Url destination, Report report) override {
        copies.emplace_back(source.path(), destination.path());
        return transfer(source.path(), destination.path(), report, true);
    }
    Result move(Url source, Url destination, Report report) override {
        moves.emplace_back(source.path(), destination.path());
        return transfer(source.path(), destination.path(), report, false);
    }
    Result trash(Url item) override {
        trashed.push_back(item.path());
        return transfer(item.path(), "/trashed/" + std::to_string(trashed.size()), {}, false);
    }
    void removeLeftovers() override { leftoversRemoved = true; }

private:
    Result transfer(std::string const& from, std::string const& to, Report const& report, bool keep) {
        if (meanwhile && meanwhile(report) == TransferAnswer::cancel)
            return std::unexpected(std::errc::operation_canceled);
        if (auto const failure = failures.find(from); failure != failures.end())
            return std::unexpected(failure->second);
        if (!files.tree.contains(from))
            return std::unexpected(std::errc::no_such_file_or_directory);
        if (files.tree.contains(to))
            return std::unexpected(std::errc::file_exists);
        auto const before = files.tree;
        for (auto const& [path, known] : before) {
            if (path != from && !path.starts_with(from + "/"))
                continue;
            files.tree[to + path.substr(from.size())] = known;
            if (auto const bytes = files.contentsOf.find(path); bytes != files.contentsOf.end())
                files.contentsOf[to + path.substr(from.size())] = bytes->second;
            if (!keep) {
                files.tree.erase(path);
                files.contentsOf.erase(path);
            }
        }
        return {};
    }
};

struct FakeDirectSave : DirectSave {
    std::optional<std::string> name;
    std::optional<Url> destination;
    std::optional<std::string> promisedName() override { return name; }
    void setDestination(Url const& url) override { destination = url; }
};

/// Downloads that go on when the test says so.
struct FakeDownloads : Downloads {
    struct FakeTask : Task {
        FakeTask(FakeDownloads& owner, Url link, Url folder, Callbacks callbacks)
            : owner(owner),
              link(std::move(link)),
              folder(std::move(folder)),
              callbacks(std::move(callbacks)) {
            owner.tasks.push_back(this);
        }
        ~FakeTask() override { std::erase(owner.tasks, this); }
        FakeDownloads& owner;
        Url link;
        Url folder;
        Callbacks callbacks;
    };
    std::vector<FakeTask*> tasks; ///< those running
    std::unique_ptr<Task> start(Url const& link, Url const& folder, Callbacks callbacks) override {
        return std::make_unique<FakeTask>(*this, link, folder, std::move(callbacks));
    }
    /// Ends the oldest.
    void end(std::optional<Downloaded> downloaded) {
        auto const onEnd = tasks.front()->callbacks.onEnd;
        onEnd(std::move(downloaded));
    }
};

struct FakeImageCodec : ImageCodec {
    std::optional<std::string> result; ///< what every picture becomes
    std::optional<std::string> png(std::string_view) override { return result; }
};

/// Writes into the file system in memory.
struct FakeNewFiles : NewFiles {
    explicit FakeNewFiles(FakeFileManager& files) : files(files) {}
    FakeFileManager& files;
    std::vector<std::errc> failures; ///< of the next calls
    std::vector<Url> discarded;
    Result write(Url const& destination, std::string_view bytes) override {
        if (!failures.empty())
            return fail();
        files.addFile(destination.path());
        files.contentsOf[destination.path()] = bytes;
        return {};
    }
    Result keep(Url const& temporary, Url const& destination) override {
        return write(destination, files.contentsOf[temporary.path()]);
    }
    void discard(Url const& temporary) override { discarded.push_back(temporary); }

private:
    Result fail() {
        auto const error = failures.front();
        failures.erase(failures.begin());
        return std::unexpected(error);
    }
};

/// A desktop that the test holds in its hands: each service is a stand-in whose state is open.
struct FakePlatform {
    FakeFileManager fileManager;
    FakeAlerts alerts;
    FakeBookmarks bookmarks{fileManager};
    FakeColorScheme colorScheme;
    FakeDesktopPlaces desktopPlaces;
    FakeDirectSave directSave;
    FakeDirectoryEvents directoryEvents;
    FakeDownloads downloads;
    FakeFileOperations fileOperations{fileManager};
    FakeHotKeys hotKeys;
    FakeImageCodec imageCodec;
    FakeKeyboardLayout keyboardLayout;
    FakeLoginItems loginItems;
    HandQueue mainQueue;
    FakeMetadataQuery metadataQuery;
    FakeNewFiles newFiles{fileManager};
    FakeOpenRequests openRequests;
    FakePointerEvents pointerEvents;
    FakePreviews previews;
    FakePropertyLists propertyLists;
    FakeScreens screens;
    FakeScriptInterpreter scriptInterpreter;
    FakeShell shell;
    FakeSoftwareUpdate softwareUpdate;
    FakeStandardFolders standardFolders;
    FakeStatusBar statusBar;
    FakeSystemShortcuts systemShortcuts;
    FakeThumbnailer thumbnailer;
    FakeTypeCatalog typeCatalog;
    FakeUserDefaults userDefaults;
    FakeVolumes volumes;
    FakeWindowManager windowManager;
    FakeWorkspace workspace;

    Platform platform{
        .alerts = alerts,
        .bookmarks = bookmarks,
        .colorScheme = colorScheme,
        .desktopPlaces = desktopPlaces,
        .directoryEvents = directoryEvents,
        .directSave = directSave,
        .downloads = downloads,
        .fileManager = fileManager,
        .fileOperations = fileOperations,
        .hotKeys = hotKeys,
        .imageCodec = imageCodec,
        .keyboardLayout = keyboardLayout,
        .loginItems = loginItems,
        .mainQueue = mainQueue,
        .metadataQuery = metadataQuery,
        .newFiles = newFiles,
        .openRequests = openRequests,
        .pointerEvents = pointerEvents,
        .previews = previews,
        .propertyLists = propertyLists,
        .screens = screens,
        .scriptInterpreter = scriptInterpreter,
        .shell = shell,
        .softwareUpdate = softwareUpdate,
        .standardFolders = standardFolders,
        .statusBar = statusBar,
        .systemShortcuts = systemShortcuts,
        .thumbnailer = thumbnailer,
        .typeCatalog = typeCatalog,
        .userDefaults = userDefaults,
        .volumes = volumes,
        .windowManager = windowManager,
        .workspace = workspace,
    };
};

} // namespace taliro::testing
