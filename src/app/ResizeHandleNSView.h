#pragma once

#include <QPoint>
#include <QWidget>

#include <optional>

namespace taliro {

enum class ResizeCorner { bottomLeft, bottomRight };

/// The popover's handle in one of its lower corners.
class ResizeHandleNSView : public QWidget {
    Q_OBJECT

public:
    static constexpr int side = 18;

    ResizeHandleNSView(ResizeCorner corner, QWidget* parent);
    ResizeCorner corner() const { return m_corner; }

Q_SIGNALS:
    /// The pointer moved by so much to the right and down with the handle held.
    void dragged(QPoint by);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    ResizeCorner m_corner;
    std::optional<QPoint> m_last; ///< the pointer while the handle is held
};

} // namespace taliro
