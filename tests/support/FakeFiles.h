#pragma once

#include "platform/DirectoryEvents.h"
#include "platform/FileManager.h"
#include "platform/FileOperations.h"
#include "platform/NewFiles.h"

#include <map>
#include <set>

namespace taliro::testing {

struct FakeDirectoryEvents : DirectoryEvents {
    struct FakeSource : Source {
        FakeSource(FakeDirectoryEvents& owner, std::string path, std::function<void(Changed const&)> onEvent)
            : owner(owner),
              path(std::move(path)),
              onEvent(std::move(onEvent)),
              number(owner.identities[this->path]) {
            owner.sources.insert(this);
        }
        ~FakeSource() override { owner.sources.erase(this); }
        int identity() const override { return number; }
        FakeDirectoryEvents& owner;
        std::string path;
        std::function<void(Changed const&)> onEvent;
        int number;
    };
    std::set<FakeSource*> sources;
    std::map<std::string, int> identities; ///< by path; another number for a folder in its place
    std::set<std::string> missing;
    std::map<std::string, Changed> pending; ///< by path; what the system tells in a later turn
    int watches = 0;                        ///< how often a watch was asked for
    bool fail = false;                      ///< as where no more watches are to be had

    std::expected<std::unique_ptr<Source>, std::errc>
    watch(Url const& folder, std::function<void(Changed const&)> onEvent) override {
        ++watches;
        if (fail)
            return std::unexpected(std::errc::no_space_on_device);
        if (missing.contains(folder.path()))
            return std::unexpected(std::errc::no_such_file_or_directory);
        return std::make_unique<FakeSource>(*this, folder.path(), std::move(onEvent));
    }
    void change(std::string const& path, Changed const& names = std::nullopt) {
        auto const current = sources;
        for (auto* source : current)
            if (sources.contains(source) && source->path == path)
                std::function(source->onEvent)(names); // It may end its own watch.
    }
    void deliverPending() override {
        for (auto const& [path, names] : std::exchange(pending, {}))
            change(path, names);
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

} // namespace taliro::testing
