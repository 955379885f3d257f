#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace taliro {

class UserDefaults;

/// Paths typed into the go-to bar, the latest first, as typed: a `~` stays one.
class PathHistoryStore {
public:
    explicit PathHistoryStore(UserDefaults& defaults) : m_defaults(defaults) {}

    static constexpr char key[] = "goToPathHistory";
    static constexpr std::size_t limit = 50;

    void record(std::string_view path);
    /// Each path once. Where the desktop's file manager keeps a history of its own, it would follow ours; on
    /// Linux none does.
    std::vector<std::string> combined() const;

private:
    UserDefaults& m_defaults;
};

} // namespace taliro
