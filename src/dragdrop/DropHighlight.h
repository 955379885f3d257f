#pragma once

#include <QVariantAnimation>
#include <QWidget>

namespace taliro {

/// Draws where a drop would go, over a widget's content: a frame around all of it, and the look of one row.
/// Lets every click through.
class DropHighlight : public QWidget {
public:
    /// Lies over `surface`, beside it in the widget tree so that scrolling doesn't move it.
    explicit DropHighlight(QWidget& surface);

    void setFramed(bool framed);
    /// `row` in the surface's coordinates. Opacities from 0 to 1; `animated` eases towards them.
    void setRow(QRect row, double fillOpacity, double strokeOpacity, bool animated);

protected:
    void paintEvent(QPaintEvent*) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Opacities {
        double fill = 0;
        double stroke = 0;
        bool operator==(Opacities const&) const = default;
    };

    void follow();
    void updateShown();

    QWidget& m_surface;
    bool m_framed = false;
    QRect m_row;
    Opacities m_from;
    Opacities m_to;
    Opacities m_now;
    QVariantAnimation m_animation;
};

} // namespace taliro
