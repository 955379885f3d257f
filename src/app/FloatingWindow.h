#pragma once

#include "app/Placement.h"
#include "foundation/Subscription.h"
#include "platform/WindowManager.h"

#include <QWidget>

namespace taliro {

struct Platform;

/// A frameless window above all others that draws its own surface: rounded and with a shadow where windows may be
/// translucent, else square with a border. Its frame is that of the surface, without shadow and arrow.
class FloatingWindow : public QWidget {
    Q_OBJECT

public:
    FloatingWindow(Platform& platform, QString const& title);

    QRect frame() const;
    void setFrame(QRect const& frame);
    void setFrameLimits(QSize minimum, QSize maximum);

    /// Shows the window above the others; with the keyboard, if `focused`.
    void present(bool focused);
    virtual WindowManager::Taskbar taskbar() const { return WindowManager::Taskbar::skipped; }

    /// Ends the editing of a text field of this window that `globalPosition` is outside of.
    void endEditingOutside(QPoint globalPosition);
    /// The text field being edited in this window.
    QWidget* editedField() const;

Q_SIGNALS:
    void frameChanged();

protected:
    using ArrowEdge = Placement::Hanging::ArrowEdge;
    /// Space above and below the surface for an arrow, and where its tip is.
    void setArrow(ArrowEdge edge, int x);
    Platform& platform() const { return m_platform; }

    void paintEvent(QPaintEvent*) override;
    void resizeEvent(QResizeEvent*) override;
    void moveEvent(QMoveEvent*) override;
    void showEvent(QShowEvent*) override;
    bool event(QEvent* event) override;

private:
    class Corners;

    QMargins margins() const;
    QRect surface() const;
    QPainterPath outline() const;
    void paintShadow(QPainter& painter) const;
    void updateShape();

    Platform& m_platform;
    ArrowEdge m_arrowEdge = ArrowEdge::none;
    int m_arrowX = 0;
    bool m_composited;
    QSize m_minimum;
    QSize m_maximum;
    Corners* m_corners;
    Subscription m_compositing;
};

} // namespace taliro
