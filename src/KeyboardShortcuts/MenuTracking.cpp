#include "KeyboardShortcuts/MenuTracking.h"

#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "foundation/NotificationCenter.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

namespace taliro {

MenuTracking::MenuTracking(QCoreApplication& application) : QObject(&application) {
    application.installEventFilter(this);
}

bool MenuTracking::eventFilter(QObject* receiver, QEvent* event) {
    bool const shown = event->type() == QEvent::Show;
    if (!shown && event->type() != QEvent::Hide)
        return false;
    auto const* widget = qobject_cast<QWidget const*>(receiver);
    if (widget && widget->windowType() == Qt::Popup)
        setOpen(widget, shown);
    return false;
}

void MenuTracking::setOpen(QWidget const* popup, bool open) {
    bool const wereOpen = !m_open.isEmpty();
    if (open)
        m_open.insert(popup);
    else
        m_open.remove(popup);
    bool const areOpen = !m_open.isEmpty();
    if (wereOpen != areOpen)
        NotificationCenter::standard().post(areOpen ? KeyboardShortcuts::menuDidBeginTracking
                                                    : KeyboardShortcuts::menuDidEndTracking);
}

} // namespace taliro
