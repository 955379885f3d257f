#include "platform/linux/Accelerators.h"

#include "platform/CarbonModifiers.h"

#include <QTextStream>
#include <QXmlStreamReader>

#include <array>

namespace taliro {

namespace {

struct ModifierName {
    char const* name;
    std::int64_t mask;
};
constexpr std::array gtkModifiers{
    ModifierName{"primary", carbonMask::control}, ModifierName{"control", carbonMask::control},
    ModifierName{"ctrl", carbonMask::control},    ModifierName{"ctl", carbonMask::control},
    ModifierName{"alt", carbonMask::option},      ModifierName{"mod1", carbonMask::option},
    ModifierName{"shift", carbonMask::shift},     ModifierName{"shft", carbonMask::shift},
    ModifierName{"super", carbonMask::command},   ModifierName{"mod4", carbonMask::command},
};
constexpr std::array qtModifiers{
    ModifierName{"ctrl", carbonMask::control},
    ModifierName{"alt", carbonMask::option},
    ModifierName{"shift", carbonMask::shift},
    ModifierName{"meta", carbonMask::command},
};
constexpr std::array openboxModifiers{
    ModifierName{"c", carbonMask::control},     ModifierName{"control", carbonMask::control},
    ModifierName{"a", carbonMask::option},      ModifierName{"alt", carbonMask::option},
    ModifierName{"mod1", carbonMask::option},   ModifierName{"s", carbonMask::shift},
    ModifierName{"shift", carbonMask::shift},   ModifierName{"w", carbonMask::command},
    ModifierName{"super", carbonMask::command}, ModifierName{"mod4", carbonMask::command},
};

template <std::size_t count>
std::optional<std::int64_t> modifierMask(std::array<ModifierName, count> const& names, QStringView name) {
    for (auto const& known : names)
        if (name.compare(QLatin1String(known.name), Qt::CaseInsensitive) == 0)
            return known.mask;
    return std::nullopt;
}

/// Modifiers and then a key, with `separator` between them; the key may be the separator itself.
template <std::size_t count>
std::optional<Accelerator> parseSeparated(QString const& text, QChar separator,
                                          std::array<ModifierName, count> const& modifiers) {
    Accelerator parsed;
    auto const last = text.lastIndexOf(separator, -2);
    if (last > 0)
        for (auto const& name : text.left(last).split(separator)) {
            auto const mask = modifierMask(modifiers, name);
            if (!mask)
                return std::nullopt;
            parsed.carbonModifiers |= *mask;
        }
    parsed.keysymName = text.mid(last + 1).toStdString();
    return parsed.keysymName.empty() ? std::nullopt : std::optional(parsed);
}

/// Qt's own names of keys, where they differ from X's.
std::string keysymOfQtKey(std::string const& name) {
    struct Renamed {
        char const *qt, *x;
    };
    constexpr std::array renamed{
        Renamed{"Del", "Delete"},
        Renamed{"Ins", "Insert"},
        Renamed{"Esc", "Escape"},
        Renamed{"PgUp", "Page_Up"},
        Renamed{"PgDown", "Page_Down"},
        Renamed{"Backspace", "BackSpace"},
        Renamed{"Backtab", "Tab"},
        Renamed{"Space", "space"},
        Renamed{"Enter", "KP_Enter"},
        Renamed{"+", "plus"},
        Renamed{"-", "minus"},
        Renamed{"`", "grave"},
        Renamed{",", "comma"},
        Renamed{".", "period"},
        Renamed{"/", "slash"},
        Renamed{"=", "equal"},
        Renamed{"[", "bracketleft"},
        Renamed{"]", "bracketright"},
        Renamed{";", "semicolon"},
        Renamed{"'", "apostrophe"},
        Renamed{"\\", "backslash"},
        Renamed{"Volume Mute", "XF86AudioMute"},
        Renamed{"Volume Up", "XF86AudioRaiseVolume"},
        Renamed{"Volume Down", "XF86AudioLowerVolume"},
    };
    for (auto const& [qt, x] : renamed)
        if (name == qt)
            return x;
    return name;
}

} // namespace

std::optional<Accelerator> parseGtkAccelerator(QString const& text) {
    Accelerator parsed;
    qsizetype at = 0;
    while (at < text.size() && text[at] == QLatin1Char('<')) {
        auto const end = text.indexOf(QLatin1Char('>'), at);
        auto const mask =
            end < 0 ? std::nullopt : modifierMask(gtkModifiers, QStringView(text).mid(at + 1, end - at - 1));
        if (!mask)
            return std::nullopt;
        parsed.carbonModifiers |= *mask;
        at = end + 1;
    }
    parsed.keysymName = text.mid(at).toStdString();
    if (parsed.keysymName == "Above_Tab")
        parsed.keysymName = "grave";
    return parsed.keysymName.empty() || parsed.keysymName == "disabled" ? std::nullopt
                                                                        : std::optional(parsed);
}

std::optional<Accelerator> parseQtAccelerator(QString const& text) {
    auto parsed = parseSeparated(text, QLatin1Char('+'), qtModifiers);
    if (parsed)
        parsed->keysymName = keysymOfQtKey(parsed->keysymName);
    return parsed;
}

std::optional<Accelerator> parseOpenboxKey(QString const& text) {
    return parseSeparated(text, QLatin1Char('-'), openboxModifiers);
}

/// Lines "action=current,default,title", of services "_launch=current"; several shortcuts stand with a tab
/// between.
QStringList kdeAccelerators(QString const& kglobalshortcutsrc) {
    QStringList found;
    for (auto const& line : kglobalshortcutsrc.split(QLatin1Char('\n'))) {
        auto const equals = line.indexOf(QLatin1Char('='));
        if (equals <= 0 || line.startsWith(QLatin1Char('[')) || line.startsWith(QLatin1String("_k_")))
            continue;
        auto value = line.mid(equals + 1);
        // The shortcut "Meta+," is written with a backslash before its comma.
        value.replace(QLatin1String("\\\\,"), QLatin1String("\x01"))
            .replace(QLatin1String("\\,"), QLatin1String("\x01"));
        auto current = value.section(QLatin1Char(','), 0, 0);
        current.replace(QLatin1Char('\x01'), QLatin1Char(','))
            .replace(QLatin1String("\\t"), QLatin1String("\t"));
        for (auto const& shortcut : current.split(QLatin1Char('\t'), Qt::SkipEmptyParts))
            if (shortcut != QLatin1String("none"))
                found.append(shortcut);
    }
    return found;
}

/// Groups "commands" and "xfwm4", each with "default" and "custom" shortcuts; the custom ones replace the
/// default ones where there are any.
QStringList xfceAccelerators(QByteArray const& keyboardShortcutsXml) {
    QXmlStreamReader xml(keyboardShortcutsXml);
    QStringList path;
    QStringList defaults;
    QStringList custom;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isEndElement() && !path.isEmpty())
            path.removeLast();
        if (!xml.isStartElement())
            continue;
        auto const attributes = xml.attributes();
        auto const name = attributes.value(QLatin1String("name")).toString();
        bool const isBound = attributes.value(QLatin1String("type")) == QLatin1String("string") &&
                             !attributes.value(QLatin1String("value")).isEmpty();
        if (isBound && path.size() == 3) // channel, group, default or custom
            (path.last() == QLatin1String("custom") ? custom : defaults).append(name);
        path.append(name);
    }
    if (xml.hasError())
        return {};
    return custom.isEmpty() ? defaults : custom;
}

/// Key bindings of the top level: one within another is the second key of a chain.
QStringList openboxKeys(QByteArray const& rcXml) {
    QXmlStreamReader xml(rcXml);
    QStringList keys;
    int depth = 0; // of key bindings
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.name() != QLatin1String("keybind"))
            continue;
        if (xml.isEndElement())
            --depth;
        else if (xml.isStartElement() && depth++ == 0)
            keys += xml.attributes()
                        .value(QLatin1String("key"))
                        .toString()
                        .split(QLatin1Char(' '), Qt::SkipEmptyParts);
    }
    return xml.hasError() ? QStringList() : keys;
}

} // namespace taliro
