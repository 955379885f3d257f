#include "platform/linux/Accelerators.h"

#include "platform/CarbonModifiers.h"
#include "platform/linux/DesktopShortcuts.h"
#include "platform/linux/XKeyboard.h"
#include "platform/linux/XkbKeyboardLayout.h"
#include "support/TemporaryFolder.h"

namespace taliro::testing {
namespace {

using Parser = std::optional<Accelerator> (*)(QString const&);
constexpr auto control = carbonMask::control;
constexpr auto option = carbonMask::option;
constexpr auto shift = carbonMask::shift;
constexpr auto command = carbonMask::command;

TEST(Accelerators, AreReadAsEachDesktopWritesThem) {
    struct Case {
        Parser parse;
        char const* text;
        std::optional<Accelerator> read;
    };
    for (auto const& [parse, text, read] : {
             Case{parseGtkAccelerator, "<Super>d", Accelerator{"d", command}},
             Case{parseGtkAccelerator, "<Primary><Alt>Delete", Accelerator{"Delete", control | option}},
             Case{parseGtkAccelerator, "<Shift><Control>F5", Accelerator{"F5", shift | control}},
             Case{parseGtkAccelerator, "<Alt>Above_Tab", Accelerator{"grave", option}},
             Case{parseGtkAccelerator, "XF86AudioMute", Accelerator{"XF86AudioMute", 0}},
             Case{parseGtkAccelerator, "<Hyper>d", {}}, // no modifier of ours
             Case{parseGtkAccelerator, "<Super", {}},
             Case{parseGtkAccelerator, "<Super>", {}},
             Case{parseGtkAccelerator, "disabled", {}},
             Case{parseGtkAccelerator, "", {}},
             Case{parseQtAccelerator, "Meta+D", Accelerator{"D", command}},
             Case{parseQtAccelerator, "Ctrl+Alt+Del", Accelerator{"Delete", control | option}},
             Case{parseQtAccelerator, "Meta++", Accelerator{"plus", command}},
             Case{parseQtAccelerator, "+", Accelerator{"plus", 0}},
             Case{parseQtAccelerator, "Volume Mute", Accelerator{"XF86AudioMute", 0}},
             Case{parseQtAccelerator, "Num+5", {}},
             Case{parseOpenboxKey, "W-e", Accelerator{"e", command}},
             Case{parseOpenboxKey, "C-A-S-Left", Accelerator{"Left", control | option | shift}},
             Case{parseOpenboxKey, "W-minus", Accelerator{"minus", command}},
             Case{parseOpenboxKey, "H-e", {}},
         })
        EXPECT_EQ(parse(QString::fromUtf8(text)), read) << text;
}

TEST(Accelerators, AreFoundInSettingsFiles) {
    EXPECT_EQ(kdeAccelerators(QStringLiteral("[kwin]\n"
                                             "_k_friendly_name=KWin\n"
                                             "Overview=Meta+W\\tMeta+Tab,Meta+W,Toggle Overview\n"
                                             "Expose=none,Ctrl+F9,Toggle Present Windows\n"
                                             "Comma=Meta+\\,,none,Comma\n"
                                             "Empty=,none,Nothing\n"
                                             "\n"
                                             "[services][org.kde.konsole.desktop]\n"
                                             "_launch=Ctrl+Alt+T\n")),
              (QStringList{"Meta+W", "Meta+Tab", "Meta+,", "Ctrl+Alt+T"}));
    auto const xfce = [](char const* customs) {
        return QByteArray(R"(<?xml version="1.0"?><channel name="xfce4-keyboard-shortcuts">
<property name="commands" type="empty"><property name="default" type="empty">
  <property name="&lt;Alt&gt;F1" type="empty"/>
  <property name="&lt;Alt&gt;F2" type="string" value="run"><property name="startup-notify" type="bool" value="true"/></property>
</property>)") +
               customs + "</property></channel>";
    };
    EXPECT_EQ(xfceAccelerators(xfce("")), QStringList{"<Alt>F2"});
    EXPECT_EQ(xfceAccelerators(xfce(R"(<property name="custom" type="empty">
  <property name="&lt;Super&gt;r" type="string" value="run"/>
  <property name="override" type="bool" value="true"/></property>)")),
              QStringList{"<Super>r"});
    EXPECT_EQ(openboxKeys(R"(<openbox_config><keyboard><keybind key="W-x C-x"><keybind key="a"/></keybind>
<keybind key="W-y"/></keyboard></openbox_config>)"),
              (QStringList{"W-x", "C-x", "W-y"}));
    for (auto const* broken : {"", "<", "<channel><property name='a' type='string' value='b'>", "\xff\xfe"}) {
        EXPECT_TRUE(xfceAccelerators(broken).isEmpty()) << broken;
        EXPECT_TRUE(openboxKeys(broken).isEmpty()) << broken;
    }
}

TEST(DesktopShortcuts, AreThoseOfTheDesktopThatRuns) {
    ::unsetenv("DISPLAY");
    TemporaryFolder folder;
    folder.write("kglobalshortcutsrc", "[kwin]\nOverview=Meta+W,Meta+W,Toggle\nBad=Meta+NoSuchKey,,\n");
    folder.write("xfce4/xfconf/xfce-perchannel-xml/xfce4-keyboard-shortcuts.xml",
                 R"(<channel><property name="xfwm4"><property name="custom">
<property name="&lt;Alt&gt;F4" type="string" value="close_window_key"/></property></property></channel>)");
    folder.write("schemas/taliro.gschema.xml", R"(<schemalist>
<schema id="org.gnome.desktop.wm.keybindings" path="/org/gnome/desktop/wm/keybindings/">
  <key name="close" type="as"><default>['&lt;Alt&gt;F4', '&lt;Super&gt;q']</default></key></schema>
<schema id="org.gnome.settings-daemon.plugins.media-keys" path="/org/gnome/settings-daemon/plugins/media-keys/">
  <key name="active" type="b"><default>true</default></key>
  <key name="custom-keybindings" type="as"><default>['/custom/0/', 'broken']</default></key></schema>
<schema id="org.gnome.settings-daemon.plugins.media-keys.custom-keybinding">
  <key name="binding" type="s"><default>'&lt;Primary&gt;F7'</default></key></schema>
</schemalist>)");
    ASSERT_EQ(std::system(("glib-compile-schemas " + (folder / "schemas").string()).c_str()), 0);
    ::setenv("GSETTINGS_SCHEMA_DIR", (folder / "schemas").c_str(), 1);
    ::setenv("GSETTINGS_BACKEND", "memory", 1);
    ::setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1);

    XKeyboard keyboard;
    XkbKeyboardLayout layout(keyboard);
    DesktopShortcuts shortcuts(keyboard, layout);
    constexpr std::int64_t f4 = 118, f7 = 98, w = 13, q = 12;
    using Entries = std::vector<SystemShortcuts::Entry>;
    for (auto const& [desktop, entries] : {
             std::pair<char const*, Entries>{"KDE", {{w, command}}},
             {"XFCE", {{f4, option}}},
             {"ubuntu:GNOME", {{f4, option}, {q, command}, {f7, control}}},
             {"X-Cinnamon", {}}, // has no settings here
             {"Other", {}},
         }) {
        ::setenv("XDG_CURRENT_DESKTOP", desktop, 1);
        EXPECT_EQ(shortcuts.enabled(), entries) << desktop;
    }
}

} // namespace
} // namespace taliro::testing
