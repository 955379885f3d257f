#pragma once

#include "foundation/Published.h"
#include "views/Switch.h"
#include "views/Theme.h"

#include <QLabel>

#include <functional>
#include <string_view>

class QVBoxLayout;

namespace taliro {

/// A switch in step with a setting, both ways.
class SettingSwitch : public Switch {
    Q_OBJECT

public:
    /// `set` is called when the user turned the switch.
    SettingSwitch(QString const& label, Published<bool>& setting, std::function<void(bool)> set,
                  QWidget* parent = nullptr);

private:
    bool m_isFollowing = false;
    Subscription m_subscription;
};

/// A text in one of the theme's colours, as rich text, broken into lines.
class FormText : public QLabel {
    Q_OBJECT

public:
    FormText(QString const& html, ColorRole color, qreal points, QWidget* parent = nullptr);

    void setColor(ColorRole color);

    /// As a rich text's monospaced word.
    static QString code(QString const& text);

private:
    void applyColor();

    ColorRole m_color;
};

/// A symbol in one of the theme's colours.
class FormSymbol : public QWidget {
    Q_OBJECT

public:
    FormSymbol(std::string_view name, qreal points, ColorRole color, QWidget* parent = nullptr);

    void setSymbol(std::string_view name, ColorRole color);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    std::string_view m_name;
    qreal m_points;
    ColorRole m_color;
};

/// A titled box of rows.
class FormSection : public QWidget {
    Q_OBJECT

public:
    FormSection(QString const& title, QWidget* parent);

    /// The setting's name at the left and its switch at the right; a click on either turns it.
    SettingSwitch* addSwitch(QString const& label, Published<bool>& setting, std::function<void(bool)> set);
    /// What a setting does, in small print under it.
    FormText* addHelp(QString const& html);
    void add(QWidget* row);

private:
    QWidget* m_box;
    QVBoxLayout* m_rows;
};

namespace form {
inline constexpr int rowHeight = 36;
inline constexpr int inset = 12;      ///< between a box's edge and its rows
inline constexpr int helpBottom = 10; ///< below small print
} // namespace form

} // namespace taliro
