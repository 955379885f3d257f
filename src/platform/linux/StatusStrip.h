#pragma once

#include "platform/Screens.h"

#include <QIcon>
#include <QWidget>

namespace taliro {

/// A small window of our own at a screen's top right, above all others and on every workspace: what
/// stands in for a tray icon.
class StatusStrip : public QWidget {
    Q_OBJECT

public:
    StatusStrip(QIcon icon, QString const& description);

    /// `visible`: the screen without what docks cover of it.
    void placeIn(Rect const& visible);

Q_SIGNALS:
    void clicked(Qt::MouseButton button);

protected:
    void paintEvent(QPaintEvent*) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent*) override { update(); }
    void leaveEvent(QEvent*) override { update(); }

private:
    QIcon m_icon;
};

} // namespace taliro
