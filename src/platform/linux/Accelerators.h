#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <string>

namespace taliro {

/// A key combination as desktops write it in their settings.
struct Accelerator {
    std::string keysymName; ///< "Delete", "d"
    std::int64_t carbonModifiers = 0;
    bool operator==(Accelerator const&) const = default;
};

// Nothing where the text isn't one, or has a modifier that shortcuts don't know.
std::optional<Accelerator> parseGtkAccelerator(QString const& text); ///< "<Super>d", "<Primary><Alt>Delete"
std::optional<Accelerator> parseQtAccelerator(QString const& text);  ///< "Meta+D", "Ctrl+Alt+Del"
std::optional<Accelerator> parseOpenboxKey(QString const& text);     ///< "W-d", "C-A-Delete"

// The accelerators that a settings file has in force; empty where it can't be read.
QStringList kdeAccelerators(QString const& kglobalshortcutsrc);
QStringList xfceAccelerators(QByteArray const& keyboardShortcutsXml);
QStringList openboxKeys(QByteArray const& rcXml);

} // namespace taliro
