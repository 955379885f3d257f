#include "platform/linux/NamePatterns.h"

#include <QStandardPaths>

#include <algorithm>
#include <fnmatch.h>
#include <fstream>

namespace taliro {

namespace {

char lowered(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

} // namespace

/// Reads the globs2 files of the shared MIME database; a line is `weight:type:pattern`, flags may follow.
NamePatterns::NamePatterns() {
    auto const files =
        QStandardPaths::locateAll(QStandardPaths::GenericDataLocation, QStringLiteral("mime/globs2"));
    for (auto const& file : files) {
        std::ifstream stream(file.toStdString());
        for (std::string line; std::getline(stream, line);) {
            auto const type = line.find(':');
            auto const start = type == std::string::npos ? type : line.find(':', type + 1);
            if (line.starts_with('#') || start == std::string::npos)
                continue;
            auto pattern = line.substr(start + 1, line.find(':', start + 1) - start - 1);
            if (pattern.find('.') != std::string::npos)
                continue;
            std::ranges::transform(pattern, pattern.begin(), lowered);
            if (pattern.find_first_of("*?[") == std::string::npos)
                m_names.insert(std::move(pattern));
            else
                m_patterns.push_back(std::move(pattern));
        }
    }
}

bool NamePatterns::match(std::string_view name) const {
    std::string text(name);
    std::ranges::transform(text, text.begin(), lowered);
    return m_names.contains(text) || std::ranges::any_of(m_patterns, [&](std::string const& pattern) {
               return ::fnmatch(pattern.c_str(), text.c_str(), 0) == 0;
           });
}

} // namespace taliro
