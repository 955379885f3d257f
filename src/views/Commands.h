#pragma once

#include <QAction>
#include <QWidget>

#include <functional>

namespace taliro {

/// A command of the window that `owner` is in, given by Control or the Super key with `keys` ("Shift+N")
/// while `owner` is on screen.
inline QAction* addCommand(QWidget& owner, QString const& label, QString const& keys,
                           std::function<void()> action) {
    auto* command = new QAction(label, &owner);
    command->setShortcuts(
        {QKeySequence(QStringLiteral("Ctrl+") + keys), QKeySequence(QStringLiteral("Meta+") + keys)});
    QObject::connect(command, &QAction::triggered, &owner, std::move(action));
    owner.addAction(command);
    return command;
}

} // namespace taliro
