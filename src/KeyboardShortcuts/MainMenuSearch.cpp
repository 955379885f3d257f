#include "KeyboardShortcuts/MainMenuSearch.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>

#include <array>

namespace taliro {

namespace {

struct MenuKey {
    Key key;
    Qt::Key qt;
};
/// What special keys are called in menus; F1 to F20 follow one another.
constexpr std::array menuKeys{
    MenuKey{Key::return_, Qt::Key_Return},    MenuKey{Key::keypadEnter, Qt::Key_Enter},
    MenuKey{Key::delete_, Qt::Key_Backspace}, MenuKey{Key::deleteForward, Qt::Key_Delete},
    MenuKey{Key::end, Qt::Key_End},           MenuKey{Key::escape, Qt::Key_Escape},
    MenuKey{Key::help, Qt::Key_Insert},       MenuKey{Key::home, Qt::Key_Home},
    MenuKey{Key::space, Qt::Key_Space},       MenuKey{Key::tab, Qt::Key_Tab},
    MenuKey{Key::pageUp, Qt::Key_PageUp},     MenuKey{Key::pageDown, Qt::Key_PageDown},
    MenuKey{Key::upArrow, Qt::Key_Up},        MenuKey{Key::rightArrow, Qt::Key_Right},
    MenuKey{Key::downArrow, Qt::Key_Down},    MenuKey{Key::leftArrow, Qt::Key_Left},
    MenuKey{Key::keypadClear, Qt::Key_Clear},
};

int menuKey(Key key, KeyboardLayout& layout) {
    for (auto const& known : menuKeys)
        if (known.key == key)
            return known.qt;
    auto const special = QString::fromUtf8(specialKeyText(key));
    if (isFunctionKey(key))
        return Qt::Key_F1 + special.mid(1).toInt() - 1;
    // A keypad key is drawn as its character in a key cap.
    auto const typed = special.isEmpty() ? QString::fromStdString(keyToCharacter(key, layout).value_or(""))
                                         : special.left(1);
    return typed.isEmpty() ? 0 : static_cast<int>(typed.toUpper().toUcs4().first());
}

Qt::KeyboardModifiers menuModifiers(Shortcut const& shortcut, Qt::KeyboardModifier command) {
    auto const held = shortcut.modifiers();
    Qt::KeyboardModifiers modifiers;
    modifiers.setFlag(Qt::ControlModifier, held.contains(ModifierFlags::control));
    modifiers.setFlag(Qt::AltModifier, held.contains(ModifierFlags::option));
    modifiers.setFlag(Qt::ShiftModifier, held.contains(ModifierFlags::shift));
    if (held.contains(ModifierFlags::command))
        modifiers.setFlag(command);
    return modifiers;
}

QAction* find(QList<QAction*> const& items, QList<QKeyCombination> const& keys) {
    for (auto* item : items) {
        for (auto const& sequence : item->shortcuts())
            if (sequence.count() == 1 && keys.contains(sequence[0]))
                return item;
        if (auto const* submenu = item->menu())
            if (auto* found = find(submenu->actions(), keys))
                return found;
    }
    return nullptr;
}

} // namespace

QAction* menuItemWithMatchingShortcut(QList<QAction*> const& items, Shortcut const& shortcut,
                                      KeyboardLayout& layout) {
    auto const key = static_cast<Qt::Key>(menuKey(shortcut.key(), layout));
    if (key == 0)
        return nullptr;
    return find(items, {QKeyCombination(menuModifiers(shortcut, Qt::MetaModifier), key),
                        QKeyCombination(menuModifiers(shortcut, Qt::ControlModifier), key)});
}

} // namespace taliro
