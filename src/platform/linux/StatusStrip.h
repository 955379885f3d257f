#pragma once

#include <QIcon>
#include <QWidget>

namespace taliro {

/// A small window of our own at the primary screen's top right, above all others and on every workspace: what
/// stands in for a tray icon.
class StatusStrip : public QWidget {
    Q_OBJECT

public:
    StatusStrip(QIcon icon, QString const& description);

Q_SIGNALS:
    void clicked(Qt::MouseButton button);

protected:
    void paintEvent(QPaintEvent*) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent*) override { update(); }
    void leaveEvent(QEvent*) override { update(); }

private:
    void place();

    QIcon m_icon;
};

} // namespace taliro
