#pragma once

#include <QColor>
#include <QFont>
#include <QObject>

class QApplication;

namespace taliro {

/// What each colour is for. The accent is for what is selected, and for nothing else.
struct Colors {
    QColor window;        ///< behind controls: title bar, toolbar, inspector, dialogs
    QColor content;       ///< behind rows of files
    QColor sidebar;       ///< behind the sidebar's rows
    QColor line;          ///< between panes
    QColor hair;          ///< the faintest border, within a pane
    QColor text1;         ///< what is read first
    QColor text2;         ///< labels, quiet symbols
    QColor text3;         ///< placeholders, folder chevrons, disabled text
    QColor accent;        ///< what is selected
    QColor onAccent;      ///< text and symbols over the accent
    QColor control;       ///< inside fields and buttons
    QColor controlBorder; ///< around fields and buttons
    QColor cap;           ///< inside a key cap
    QColor hover;         ///< over a flat control under the pointer
    QColor pressed;       ///< over a flat control held down, or checked
    QColor success;
    QColor warning;
    QColor failure;
    QColor shadow;

    bool operator==(Colors const&) const = default;
};

/// Names a colour that is looked up when painting, so that it follows the theme: `&Colors::text2`.
using ColorRole = QColor Colors::*;

/// Sizes in points (device-independent pixels).
namespace metrics {
inline constexpr int grid = 4;
inline constexpr int radius = 6;
inline constexpr int controlHeight = 24;
inline constexpr qreal body = 13;
inline constexpr qreal list = 12;
inline constexpr qreal small = 11;
} // namespace metrics

/// The one look of every window: colours, light or dark, and fonts.
class Theme : public QObject {
    Q_OBJECT

public:
    static Theme& current();

    /// Gives `application` our style, palette and fonts, now and whenever the theme changes.
    void install(QApplication& application);

    bool isDark() const { return m_dark; }
    /// Repaints every window in the other colours, if they differ.
    void setDark(bool dark);

    Colors const& colors() const;
    static Colors const& colors(bool dark);

    /// Inter where it is installed, else the desktop's sans serif. `points` may be fractional.
    QFont font(qreal points = metrics::body, QFont::Weight weight = QFont::Normal) const;
    QFont headline() const { return font(metrics::body, QFont::DemiBold); }

Q_SIGNALS:
    /// After the palette was exchanged. Only for what is not painted anew by that, such as a kept picture.
    void changed();

private:
    Theme() = default;
    void apply();

    QApplication* m_application = nullptr;
    bool m_dark = false;
};

/// Short for `Theme::current().colors()`.
Colors const& colors();

/// `color` at `opacity` (0 to 1) of its own opacity.
QColor faded(QColor color, qreal opacity);

} // namespace taliro
