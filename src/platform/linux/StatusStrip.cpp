#include "platform/linux/StatusStrip.h"

#include <QMouseEvent>
#include <QPainter>

namespace taliro {

namespace {
constexpr QSize stripSize(32, 26);
constexpr int iconSize = 18;
constexpr int cornerMargin = 12;
} // namespace

StatusStrip::StatusStrip(QIcon icon, QString const& description)
    : QWidget(nullptr, Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus),
      m_icon(std::move(icon)) {
    // A dock stays above other windows and on every workspace, and never takes the keyboard.
    setAttribute(Qt::WA_X11NetWmWindowTypeDock);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowRole(QStringLiteral("status item"));
    setWindowTitle(description);
    setAccessibleName(description);
    setToolTip(description);
    setFixedSize(stripSize);
}

void StatusStrip::placeIn(Rect const& visible) {
    move(static_cast<int>(visible.maxX()) - width() - cornerMargin, static_cast<int>(visible.y));
}

void StatusStrip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    auto const colors = palette();
    painter.fillRect(rect(), colors.color(underMouse() ? QPalette::Midlight : QPalette::Window));
    painter.setPen(colors.color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    QRect icon(0, 0, iconSize, iconSize);
    icon.moveCenter(rect().center());
    m_icon.paint(&painter, icon);
}

void StatusStrip::mouseReleaseEvent(QMouseEvent* event) {
    if (rect().contains(event->position().toPoint()))
        Q_EMIT clicked(event->button());
}

} // namespace taliro
