#pragma once

#include "platform/LoginItems.h"
#include "platform/OpenRequests.h"
#include "platform/Shell.h"
#include "platform/SoftwareUpdate.h"
#include "platform/UserDefaults.h"

#include <map>

namespace taliro::testing {

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

} // namespace taliro::testing
