#include "platform/linux/MenuKeys.h"

#include "platform/CarbonModifiers.h"
#include "platform/KeyboardLayout.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace taliro {

namespace {

std::uint32_t carbonModifiers(Qt::KeyboardModifiers held) {
    std::int64_t mask = 0;
    if (held & Qt::ControlModifier)
        mask |= carbonMask::control;
    if (held & Qt::AltModifier)
        mask |= carbonMask::option;
    if (held & Qt::ShiftModifier)
        mask |= carbonMask::shift;
    if (held & Qt::MetaModifier)
        mask |= carbonMask::command;
    return static_cast<std::uint32_t>(mask);
}

} // namespace

void MenuKeys::setHandler(HotKeys::RawKeyHandler handler) {
    bool const wasActive = isActive();
    m_handler = std::move(handler);
    auto* application = QCoreApplication::instance();
    if (!application || wasActive == isActive())
        return;
    if (isActive())
        application->installEventFilter(this);
    else
        application->removeEventFilter(this);
}

bool MenuKeys::eventFilter(QObject* receiver, QEvent* event) {
    bool const isPress = event->type() == QEvent::KeyPress;
    // A window is told first, its widgets after it.
    if ((!isPress && event->type() != QEvent::KeyRelease) || !receiver->isWindowType())
        return false;
    auto const& key = static_cast<QKeyEvent const&>(*event);
    if (key.key() == Qt::Key_Alt)
        return true; // The menu would close before the rest of the combination comes.
    auto const code = m_layout.keyCode(key.nativeScanCode());
    if (!code)
        return false;
    using Phase = HotKeys::RawKey::Phase;
    auto const phase = key.isAutoRepeat() ? Phase::repeat : isPress ? Phase::down : Phase::up;
    auto const handler = m_handler; // which the call may replace
    return handler && handler({phase, static_cast<std::uint32_t>(*code), carbonModifiers(key.modifiers())});
}

} // namespace taliro
