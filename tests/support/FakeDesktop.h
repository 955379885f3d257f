#pragma once

#include "platform/Alerts.h"
#include "platform/ColorScheme.h"
#include "platform/PointerEvents.h"
#include "platform/Screens.h"
#include "platform/StatusBar.h"
#include "platform/WindowManager.h"
#include "platform/Workspace.h"

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

struct FakeStatusItem : StatusItem {
    bool visible = true;
    std::optional<Rect> place = Rect{1200, 0, 24, 24};
    std::vector<StatusMenuEntry> menu;
    void setVisible(bool value) override { visible = value; }
    std::optional<Rect> frame() override { return place; }
    bool contains(Point point) override { return place && place->contains(point); }
    void setMenu(std::vector<StatusMenuEntry> const& entries) override { menu = entries; }
    void showMenu() override {}
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

} // namespace taliro::testing
