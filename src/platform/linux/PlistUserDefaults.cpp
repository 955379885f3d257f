#include "platform/linux/PlistUserDefaults.h"

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/PosixFileManager.h"
#include "platform/linux/PropertyListFile.h"
#include "platform/linux/WriteFile.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

namespace taliro {

PlistUserDefaults::PlistUserDefaults(std::string path) : m_path(std::move(path)) {
    load();
}

std::string PlistUserDefaults::standardPath() {
    char const* configured = std::getenv("XDG_CONFIG_HOME");
    auto const folder = configured && configured[0] == '/'
                            ? std::string(configured)
                            : PosixFileManager().homeDirectory().path() + "/.config";
    return folder + "/taliro/defaults.plist";
}

void PlistUserDefaults::load() {
    PosixFileManager files;
    auto const file = Url::file(m_path, false);
    struct stat status {};
    if (::stat(m_path.c_str(), &status) != 0 && errno == ENOENT && !files.exists(file))
        return;
    auto const bytes = files.readFile(file, 64 * 1024 * 1024);
    if (!bytes) {
        m_mayWrite = false;
        report("can't be read; settings are not kept this time");
        return;
    }
    if (auto value = parsePropertyList(*bytes))
        if (auto* dictionary = std::get_if<PropertyValue::Dictionary>(&value->value)) {
            m_values = std::move(*dictionary);
            return;
        }
    setAside("is damaged");
}

void PlistUserDefaults::setAside(char const* reason) {
    auto aside = m_path + ".damaged";
    for (int number = 2; PosixFileManager().exists(Url::file(aside, false)); ++number)
        aside = m_path + ".damaged-" + std::to_string(number);
    if (::rename(m_path.c_str(), aside.c_str()) == 0) {
        std::fprintf(stderr, "Taliro: %s %s; kept as %s, starting with default settings\n", m_path.c_str(),
                     reason, aside.c_str());
        return;
    }
    m_mayWrite = false;
    report(std::string(reason) + " and can't be set aside; settings are not kept this time");
}

void PlistUserDefaults::report(std::string const& problem) {
    if (std::exchange(m_reported, true))
        return;
    std::fprintf(stderr, "Taliro: %s %s\n", m_path.c_str(), problem.c_str());
}

std::optional<PropertyValue> PlistUserDefaults::object(std::string_view key) const {
    auto const found = m_values.find(key);
    return found == m_values.end() ? std::nullopt : std::optional(found->second);
}

void PlistUserDefaults::set(std::string_view key, PropertyValue value) {
    auto const found = m_values.find(key);
    if (found != m_values.end() && found->second == value)
        return;
    m_values.insert_or_assign(std::string(key), std::move(value));
    save();
}

void PlistUserDefaults::remove(std::string_view key) {
    auto const found = m_values.find(key);
    if (found == m_values.end())
        return;
    m_values.erase(found);
    save();
}

void PlistUserDefaults::save() {
    if (!m_mayWrite)
        return;
    auto const folder = m_path.substr(0, m_path.rfind('/'));
    auto made = makeFolders(folder, 0700);
    auto const written = made ? writeFileAtomically(m_path, writePropertyListXml({m_values}), 0600)
                              : std::unexpected(made.error());
    if (!written)
        report("can't be written: " + std::make_error_code(written.error()).message());
}

} // namespace taliro
