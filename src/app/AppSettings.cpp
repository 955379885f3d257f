#include "app/AppSettings.h"

#include "app/LoginItem.h"
#include "browsing/BrowserState.h"
#include "platform/LoginItems.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"

namespace taliro {

namespace {

constexpr double miniBelow = 516;
constexpr double searchHiddenBelow = 700;

double storedSize(UserDefaults const& defaults, char const* key, double fallback) {
    auto const stored = defaults.real(key);
    return stored > 0 ? stored : fallback;
}

} // namespace

AppSettings::AppSettings(Platform& platform, BrowserState& browser)
    : m_platform(platform), m_browser(browser) {
    auto const& defaults = platform.userDefaults;
    popoverMode = defaults.boolean("popoverMode");
    showInDock = defaults.boolean("showInDock");
    showWindowAtCursorOnHotkey = defaults.boolean("showWindowAtCursorOnHotkey");
    startAtLogin = loadStartAtLogin();
    showMenuBarIcon = defaults.boolean("showMenuBarIcon", true);
    closePopoverOnOutsideClick = defaults.boolean("closePopoverOnOutsideClick", true);
    popoverWidth = storedSize(defaults, "popoverWidth", 720);
    popoverHeight = storedSize(defaults, "popoverHeight", 460);
    miniMode = popoverWidth.get() < miniBelow;
    searchHidden = popoverWidth.get() < searchHiddenBelow;
}

AppSettings& AppSettings::shared() {
    static AppSettings settings(Platform::current(), BrowserState::shared());
    return settings;
}

bool AppSettings::loadStartAtLogin() const {
    switch (m_platform.loginItems.status()) {
    case LoginItemStatus::notRegistered:
    case LoginItemStatus::notFound:
        return false;
    case LoginItemStatus::enabled:
    case LoginItemStatus::requiresApproval:
        return true;
    case LoginItemStatus::unknown:
        break;
    }
    return m_platform.userDefaults.boolean("startAtLogin");
}

void AppSettings::setPopoverMode(bool value) {
    popoverMode = value;
    m_platform.userDefaults.setBoolean("popoverMode", value);
    if (value && !showMenuBarIcon.get())
        setShowMenuBarIcon(true);
}

void AppSettings::setShowInDock(bool value) {
    showInDock = value;
    m_platform.userDefaults.setBoolean("showInDock", value);
}

void AppSettings::setShowWindowAtCursorOnHotkey(bool value) {
    showWindowAtCursorOnHotkey = value;
    m_platform.userDefaults.setBoolean("showWindowAtCursorOnHotkey", value);
}

void AppSettings::setStartAtLogin(bool value) {
    startAtLogin = value;
    m_platform.userDefaults.setBoolean("startAtLogin", value);
    LoginItem::setEnabled(m_platform, value);
}

void AppSettings::setShowMenuBarIcon(bool value) {
    showMenuBarIcon = value;
    m_platform.userDefaults.setBoolean("showMenuBarIcon", value);
    if (!value && popoverMode.get())
        setPopoverMode(false);
}

void AppSettings::setClosePopoverOnOutsideClick(bool value) {
    closePopoverOnOutsideClick = value;
    m_platform.userDefaults.setBoolean("closePopoverOnOutsideClick", value);
}

void AppSettings::setPopoverWidth(double points) {
    popoverWidth = points;
    m_platform.userDefaults.setReal("popoverWidth", points);
    updateLayoutMode(points);
}

void AppSettings::setPopoverHeight(double points) {
    popoverHeight = points;
    m_platform.userDefaults.setReal("popoverHeight", points);
}

void AppSettings::updateLayoutMode(double points) {
    bool const mini = points < miniBelow;
    if (mini != miniMode.get())
        miniMode = mini;
    bool const hide = points < searchHiddenBelow;
    if (hide == searchHidden.get())
        return;
    searchHidden = hide;
    if (hide)
        m_browser.searchText = std::string();
}

} // namespace taliro
