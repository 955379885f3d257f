#pragma once

#include "views/Theme.h"

#include <QToolButton>

#include <string>
#include <string_view>

namespace taliro {

/// A flat button that shows one symbol. Its label is its tooltip and its accessible name.
/// With a menu, a click opens the menu.
class ToolButton : public QToolButton {
    Q_OBJECT

public:
    enum class Frame { none, bordered };

    /// `symbolPoints`: the symbol's width. The button is 22 by 22 points, or as `setFixedSize` says.
    ToolButton(std::string_view symbol, QString const& label, qreal symbolPoints = 16,
               QWidget* parent = nullptr);

    void setSymbol(std::string_view symbol);
    void setLabel(QString const& label);
    /// The symbol's colour while the button is neither disabled nor checked; at first `Colors::text2`.
    void setTint(ColorRole tint);
    void setFrame(Frame frame);
    void setMenu(QMenu* menu);

    QSize sizeHint() const override { return {22, 22}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QColor symbolColor() const;

    std::string m_symbol;
    qreal m_points;
    ColorRole m_tint = &Colors::text2;
    Frame m_frame = Frame::none;
};

} // namespace taliro
