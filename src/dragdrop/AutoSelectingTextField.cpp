#include "dragdrop/AutoSelectingTextField.h"

#include <QKeyEvent>
#include <QTimer>

namespace taliro {

namespace {

bool isSubmit(QKeyEvent const& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

bool isCancel(QKeyEvent const& event) {
    return event.key() == Qt::Key_Escape;
}

} // namespace

AutoSelectingTextField::AutoSelectingTextField(QWidget* parent) : QLineEdit(parent) {}

void AutoSelectingTextField::takeFocusSoon() {
    QTimer::singleShot(0, this, [this] {
        window()->activateWindow();
        setFocus(Qt::OtherFocusReason);
        selectAll();
    });
}

bool AutoSelectingTextField::event(QEvent* event) {
    // Ours before a shortcut of the window takes them.
    if (event->type() == QEvent::ShortcutOverride) {
        auto const& key = static_cast<QKeyEvent&>(*event);
        if (isSubmit(key) || isCancel(key)) {
            event->accept();
            return true;
        }
    }
    return QLineEdit::event(event);
}

void AutoSelectingTextField::keyPressEvent(QKeyEvent* event) {
    if (isSubmit(*event) && onSubmit)
        onSubmit();
    else if (isCancel(*event) && onCancel)
        onCancel();
    else
        QLineEdit::keyPressEvent(event);
}

} // namespace taliro
