#pragma once

#include "views/Theme.h"

#include <QAbstractButton>
#include <QLabel>

#include <string_view>

namespace taliro {

/// A text or a symbol in a colour that follows the theme.
class ThemedLabel : public QLabel {
    Q_OBJECT

public:
    ThemedLabel(QString const& text, QFont const& font, ColorRole color, qreal opacity = 1,
                QWidget* parent = nullptr);
    static ThemedLabel* symbol(std::string_view name, qreal points, ColorRole color, QWidget* parent);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    std::string m_symbol;
    qreal m_points = 0;
    ColorRole m_color;
    qreal m_opacity;
};

/// A text that is a button: bare, or on a rounded background.
class TextButton : public QAbstractButton {
    Q_OBJECT

public:
    struct Look {
        QFont font;
        ColorRole color;
        ColorRole background = nullptr; ///< none where bare
        int paddingX = 0;
        int paddingY = 0;
    };
    TextButton(QString const& text, Look look, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent*) override;

private:
    Look m_look;
};

} // namespace taliro
