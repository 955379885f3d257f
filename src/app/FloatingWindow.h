#pragma once

#include "app/Placement.h"
#include "foundation/Subscription.h"
#include "platform/WindowManager.h"

#include <QPixmap>
#include <QWidget>

class QVBoxLayout;

namespace taliro {

struct Platform;

/// A frameless window above all others that draws its own surface: rounded and with a shadow where windows
/// may be translucent, else square with a border. Its frame is that of the surface, without shadow and arrow.
class FloatingWindow : public QWidget {
    Q_OBJECT

public:
    FloatingWindow(Platform& platform, QString const& title);

    QRect frame() const { return geometry().marginsRemoved(margins()); }
    void setFrame(QRect const& frame);
    void setFrameLimits(QSize minimum, QSize maximum);

    /// Whether windows can be placed by the program. If not, the desktop moves and resizes them on request.
    static bool movesItself();

    /// Shows the window above the others; with the keyboard, if `focused`.
    void present(bool focused);

    /// The text field being edited in this window, if any.
    QWidget* editedField() const;

Q_SIGNALS:
    void frameChanged();

protected:
    using ArrowEdge = Placement::Hanging::ArrowEdge;

    QVBoxLayout* rows() const { return m_rows; }
    /// The surface, in the window's coordinates.
    QRect surface() const { return rect().marginsRemoved(margins()); }
    /// Where an arrow points out of the surface; `x` is its tip, from the frame's left edge.
    void setArrow(ArrowEdge edge, int x);
    ArrowEdge arrowEdge() const { return m_arrowEdge; }
    virtual WindowManager::Taskbar taskbar() const { return WindowManager::Taskbar::skipped; }
    /// Gives the keyboard to what has it when no text field has.
    virtual void focusContent() = 0;
    Platform& platform() const { return m_platform; }

    void paintEvent(QPaintEvent*) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent*) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    class Corners;
    friend class Corners;

    QMargins margins() const;
    QPainterPath arrowPath() const;
    void layOut();
    void updateShape();
    void endEditingOutside(QPoint globalPosition);

    Platform& m_platform;
    QVBoxLayout* m_rows;
    ArrowEdge m_arrowEdge = ArrowEdge::none;
    int m_arrowX = 0;
    bool m_composited;
    QSize m_minimum;
    QSize m_maximum;
    Corners* m_corners;
    Subscription m_compositing;
};

} // namespace taliro
