#include "platform/linux/DesktopShortcuts.h"

#include "platform/linux/Accelerators.h"
#include "platform/linux/XKeyboard.h"
#include "platform/linux/XkbKeyboardLayout.h"

#include <QFile>
#include <QStandardPaths>

#include <gio/gio.h>

namespace taliro {

namespace {

/// Opens only what is installed: GIO ends the program over a schema that isn't.
GSettings* openSettings(char const* schema, char const* path = nullptr) {
    auto* source = g_settings_schema_source_get_default();
    auto* found = source ? g_settings_schema_source_lookup(source, schema, true) : nullptr;
    if (!found)
        return nullptr;
    // One without a place of its own needs to be told of one, and the other way round.
    bool const fits = (g_settings_schema_get_path(found) == nullptr) == (path != nullptr);
    auto* settings = fits ? g_settings_new_full(found, nullptr, path) : nullptr;
    g_settings_schema_unref(found);
    return settings;
}

QStringList textsOf(GVariant* value) {
    QStringList texts;
    if (g_variant_is_of_type(value, G_VARIANT_TYPE_STRING))
        texts.append(QString::fromUtf8(g_variant_get_string(value, nullptr)));
    if (g_variant_is_of_type(value, G_VARIANT_TYPE_STRING_ARRAY))
        for (gsize i = 0; i < g_variant_n_children(value); ++i) {
            auto* child = g_variant_get_child_value(value, i);
            texts.append(QString::fromUtf8(g_variant_get_string(child, nullptr)));
            g_variant_unref(child);
        }
    return texts;
}

/// The texts of all the schema's keys.
QStringList settingsTexts(char const* schema, char const* path = nullptr) {
    QStringList texts;
    auto* settings = openSettings(schema, path);
    if (!settings)
        return texts;
    GSettingsSchema* opened = nullptr;
    g_object_get(settings, "settings-schema", &opened, nullptr);
    auto** keys = g_settings_schema_list_keys(opened);
    for (auto** key = keys; *key; ++key) {
        auto* value = g_settings_get_value(settings, *key);
        texts += textsOf(value);
        g_variant_unref(value);
    }
    g_strfreev(keys);
    g_settings_schema_unref(opened);
    g_object_unref(settings);
    return texts;
}

QStringList gnomeAccelerators() {
    QStringList found;
    for (auto const* schema : {"org.gnome.desktop.wm.keybindings", "org.gnome.mutter.keybindings",
                               "org.gnome.shell.keybindings", "org.gnome.settings-daemon.plugins.media-keys"})
        found += settingsTexts(schema);
    for (auto const& text : QStringList(found)) // The user's own are listed by where they are stored.
        if (text.startsWith(QLatin1Char('/')) && text.endsWith(QLatin1Char('/')))
            found += settingsTexts("org.gnome.settings-daemon.plugins.media-keys.custom-keybinding",
                                   text.toUtf8().constData());
    return found;
}

QStringList cinnamonAccelerators() {
    QStringList found;
    for (auto const* schema :
         {"org.cinnamon.desktop.keybindings.wm", "org.cinnamon.desktop.keybindings.media-keys"})
        found += settingsTexts(schema);
    for (auto const& name : settingsTexts("org.cinnamon.desktop.keybindings"))
        if (name.startsWith(QLatin1String("custom")))
            found += settingsTexts("org.cinnamon.desktop.keybindings.custom-keybinding",
                                   QStringLiteral("/org/cinnamon/desktop/keybindings/custom-keybindings/%1/")
                                       .arg(name)
                                       .toUtf8()
                                       .constData());
    return found;
}

/// The first file of this name among the user's and the system's settings.
QByteArray configFile(QString const& name) {
    QFile file(QStandardPaths::locate(QStandardPaths::GenericConfigLocation, name));
    constexpr qint64 limit = 4 << 20;
    return file.open(QIODevice::ReadOnly) ? file.read(limit) : QByteArray();
}

QStringList openboxAccelerators(XKeyboard& keyboard) {
    auto const named = keyboard.rootText("_OB_CONFIG_FILE");
    if (!named)
        return openboxKeys(configFile(QStringLiteral("openbox/rc.xml")));
    QFile file(QFile::decodeName(QByteArray::fromStdString(*named)));
    return file.open(QIODevice::ReadOnly) ? openboxKeys(file.readAll()) : QStringList();
}

using Parser = std::optional<Accelerator> (*)(QString const&);

} // namespace

std::vector<SystemShortcuts::Entry> DesktopShortcuts::enabled() {
    std::vector<Entry> entries;
    auto const add = [&](QStringList const& texts, Parser parse) {
        for (auto const& text : texts) {
            auto const accelerator = parse(text);
            auto const key = accelerator ? m_layout.keyCodeTyping(accelerator->keysymName) : std::nullopt;
            if (key)
                entries.push_back({*key, accelerator->carbonModifiers});
        }
    };
    auto const desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").toLower().split(QLatin1Char(':'));
    auto const runs = [&](char const* desktop) { return desktops.contains(QLatin1String(desktop)); };
    if (runs("gnome") || runs("unity"))
        add(gnomeAccelerators(), parseGtkAccelerator);
    if (runs("x-cinnamon") || runs("cinnamon"))
        add(cinnamonAccelerators(), parseGtkAccelerator);
    if (runs("kde"))
        add(kdeAccelerators(QString::fromUtf8(configFile(QStringLiteral("kglobalshortcutsrc")))),
            parseQtAccelerator);
    if (runs("xfce"))
        add(xfceAccelerators(
                configFile(QStringLiteral("xfce4/xfconf/xfce-perchannel-xml/xfce4-keyboard-shortcuts.xml"))),
            parseGtkAccelerator);
    if (m_keyboard.rootText("_OPENBOX_PID"))
        add(openboxAccelerators(m_keyboard), parseOpenboxKey);
    return entries;
}

} // namespace taliro
