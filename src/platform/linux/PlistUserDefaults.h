#pragma once

#include "platform/UserDefaults.h"

#include <string>

namespace taliro {

/// The defaults store in one XML property list, readable by its owner alone. Every change is written at once,
/// in one step. A file that can't be read as a property list is set aside under another name, and its loss
/// told once.
class PlistUserDefaults : public UserDefaults {
public:
    /// `path`: the list's file; its folders are made when first needed.
    explicit PlistUserDefaults(std::string path);
    /// `$XDG_CONFIG_HOME/taliro/defaults.plist`.
    static std::string standardPath();

    std::optional<PropertyValue> object(std::string_view key) const override;
    void set(std::string_view key, PropertyValue value) override;
    void remove(std::string_view key) override;

private:
    void load();
    void setAside(char const* reason);
    void save();
    void report(std::string const& problem);

    std::string m_path;
    PropertyValue::Dictionary m_values;
    bool m_mayWrite = true; ///< false where a damaged or unreadable file stands that could not be set aside
    bool m_reported = false;
};

} // namespace taliro
