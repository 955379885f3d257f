#include "browsing/GoToPath.h"

#include "browsing/BrowserState.h"
#include "browsing/PathCompletion.h"
#include "foundation/Text.h"
#include "platform/Alerts.h"
#include "platform/FileManager.h"
#include "platform/Platform.h"

#include <algorithm>

namespace taliro {

namespace {

constexpr std::size_t mostRecentPaths = 20;

std::string withSlash(Url const& folder) {
    auto const& path = folder.path();
    return path.ends_with('/') ? path : path + "/";
}

} // namespace

GoToPath::GoToPath(Platform& platform, BrowserState& browser)
    : m_platform(platform), m_browser(browser), m_history(platform.userDefaults) {}

void GoToPath::open() {
    auto const& current = m_browser.currentURL.get();
    setText(withSlash(current.isFile() ? current : m_platform.fileManager.homeDirectory()));
    highlighted = std::optional<std::size_t>();
    isOpen = true;
}

void GoToPath::close() {
    isOpen = false;
    text = std::string();
    suggestions = std::vector<Url>();
    highlighted = std::optional<std::size_t>();
}

void GoToPath::commit() {
    std::string const typed(trimmingWhitespaceAndNewlines(text.get()));
    if (typed.empty()) {
        close();
        return;
    }
    auto const path = expandingTilde(typed, m_platform.fileManager.homeDirectory());
    auto const folder = Url::file(path, true).standardized().asDirectory();
    if (!path.starts_with('/') || !m_platform.fileManager.isDirectory(folder)) {
        m_platform.alerts.beep();
        return;
    }
    m_history.record(typed);
    m_browser.navigate(folder);
    close();
}

void GoToPath::setText(std::string typed) {
    text = std::move(typed);
    updateSuggestions();
}

void GoToPath::updateSuggestions() {
    if (trimmingWhitespace(text.get()).empty()) {
        suggestions = std::vector<Url>();
        return;
    }
    highlighted = std::optional<std::size_t>();
    suggestions = PathCompletion::suggestions(m_platform, text.get());
}

void GoToPath::choose(Url const& suggestion) {
    setText(withSlash(suggestion));
}

bool GoToPath::pressReturn() {
    auto const index = highlighted.get();
    if (!isOpen.get() || !index || *index >= suggestions->size())
        return false;
    choose(Url(suggestions.get()[*index]));
    return true;
}

bool GoToPath::pressDown() {
    if (!isOpen.get() || suggestions->empty())
        return false;
    auto const index = highlighted.get();
    highlighted = std::optional(index ? std::min(*index + 1, suggestions->size() - 1) : std::size_t{0});
    return true;
}

bool GoToPath::pressUp() {
    auto const index = highlighted.get();
    if (!isOpen.get() || suggestions->empty() || !index)
        return false;
    highlighted = *index == 0 ? std::optional<std::size_t>() : std::optional(*index - 1);
    return true;
}

std::vector<std::string> GoToPath::recentPaths() const {
    auto paths = m_history.combined();
    if (paths.size() > mostRecentPaths)
        paths.resize(mostRecentPaths);
    return paths;
}

} // namespace taliro
