#include "dragdrop/QtPasteboard.h"

#include <QDropEvent>
#include <QMimeData>

namespace taliro {

Pasteboard pasteboardOf(QMimeData const& data) {
    Pasteboard pasteboard;
    for (auto const& format : data.formats())
        pasteboard.formats.push_back(format.toStdString());
    pasteboard.data = [&data](std::string const& format) {
        return data.data(QString::fromStdString(format)).toStdString();
    };
    return pasteboard;
}

bool isCommandHeld(Qt::KeyboardModifiers modifiers) {
    return modifiers.testAnyFlags(Qt::ControlModifier | Qt::MetaModifier);
}

DropOperation answerWithOperation(QDropEvent& event, bool carriesFiles) {
    auto operation = proposedOperation(carriesFiles, isCommandHeld(event.modifiers()));
    auto const possible = event.possibleActions();
    if (operation == DropOperation::move && possible.testFlag(Qt::MoveAction)) {
        event.setDropAction(Qt::MoveAction);
    } else {
        operation = DropOperation::copy;
        event.setDropAction(possible.testFlag(Qt::CopyAction) ? Qt::CopyAction : event.proposedAction());
    }
    event.accept();
    return operation;
}

} // namespace taliro
