#include "views/Overlay.h"

#include <QEvent>

namespace taliro {

Overlay::Overlay(QWidget* parent) : QWidget(parent) {
    hide();
    parent->installEventFilter(this);
    setGeometry(parent->rect());
}

bool Overlay::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parent() && event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

void Overlay::showEvent(QShowEvent* event) {
    raise();
    QWidget::showEvent(event);
}

} // namespace taliro
