#pragma once

#include "platform/DirectSave.h"
#include "platform/Downloads.h"
#include "platform/ImageCodec.h"

namespace taliro::testing {

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

} // namespace taliro::testing
