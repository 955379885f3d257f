#pragma once

#include "platform/HotKeys.h"
#include "platform/KeyboardLayout.h"
#include "platform/SystemShortcuts.h"

#include <map>

namespace taliro::testing {

/// Hot keys that the test presses.
struct FakeHotKeys : HotKeys {
    using Combination = std::pair<std::uint32_t, std::uint32_t>;
    struct FakeRegistration : Registration {
        FakeRegistration(FakeHotKeys& owner, std::uint32_t id) : owner(owner), id(id) {}
        ~FakeRegistration() override { owner.registered.erase(id); }
        FakeHotKeys& owner;
        std::uint32_t id;
    };
    std::map<std::uint32_t, Combination> registered; ///< by id
    std::vector<std::uint32_t> attempts;             ///< ids, in order
    int refuse = 0;                                  ///< the status that registering fails with
    bool optionAloneForbidden = false;
    Handler handler;
    RawKeyHandler rawKeyHandler;

    std::expected<std::unique_ptr<Registration>, int>
    registerHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers, std::uint32_t id) override {
        attempts.push_back(id);
        if (refuse != 0)
            return std::unexpected(refuse);
        registered[id] = {keyCode, carbonModifiers};
        return std::make_unique<FakeRegistration>(*this, id);
    }
    void setHandler(Handler to) override { handler = std::move(to); }
    void setRawKeyHandler(RawKeyHandler to) override { rawKeyHandler = std::move(to); }
    bool forbidsOptionAlone() const override { return optionAloneForbidden; }

    /// Whether anyone took it.
    bool press(std::uint32_t keyCode, std::uint32_t carbonModifiers, Phase phase = Phase::pressed) {
        auto const now = registered;
        bool taken = false;
        for (auto const& [id, combination] : now)
            if (combination == Combination{keyCode, carbonModifiers})
                taken |= handler && handler(id, phase);
        return taken;
    }
};

/// A US keyboard as far as tests type on it.
struct FakeKeyboardLayout : KeyboardLayout {
    std::map<std::int64_t, std::string> typed{{35, "p"}, {12, "q"}, {10, "ß"}, {50, "`"}};
    Observers<> observers;
    std::optional<std::string> character(std::int64_t keyCode) override {
        auto const found = typed.find(keyCode);
        return found == typed.end() ? std::nullopt : std::optional(found->second);
    }
    std::optional<std::int64_t> keyCode(std::uint32_t nativeScanCode) override { return nativeScanCode; }
    Subscription observeChanges(std::function<void()> observer) override {
        return observers.add(std::move(observer));
    }
};

struct FakeSystemShortcuts : SystemShortcuts {
    std::vector<Entry> entries;
    std::vector<Entry> enabled() override { return entries; }
};

} // namespace taliro::testing
