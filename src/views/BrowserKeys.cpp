#include "views/BrowserKeys.h"

#include "browsing/QuickLookCoordinator.h"
#include "foundation/MainQueue.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"

#include <QAbstractSpinBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace taliro {

namespace {

constexpr Qt::KeyboardModifiers allModifiers =
    Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;

} // namespace

bool isCommand(Qt::KeyboardModifiers modifiers) {
    return modifiers & (Qt::ControlModifier | Qt::MetaModifier);
}

bool isRevealInFinder(QKeyEvent const& event) {
    auto const held = event.modifiers() & allModifiers;
    return event.key() == Qt::Key_R && (held == Qt::ControlModifier || held == Qt::MetaModifier);
}

bool isEditingText(QWidget const* focus) {
    return qobject_cast<QLineEdit const*>(focus) || qobject_cast<QTextEdit const*>(focus) ||
           qobject_cast<QPlainTextEdit const*>(focus) || qobject_cast<QAbstractSpinBox const*>(focus);
}

void BrowserKeys::open(Url const& url) {
    if (url.hasDirectoryPath())
        m_state.navigate(url);
    else
        m_platform.workspace.open(url);
}

void BrowserKeys::click(Url const& url, Qt::KeyboardModifiers modifiers, RowList const& ordered) {
    if (modifiers & Qt::ShiftModifier)
        m_state.extendSelection(url, ordered.urls());
    else if (isCommand(modifiers))
        m_state.toggleSelection(url);
    else
        m_state.selectSingle(url);
}

BrowserKeys::Outcome BrowserKeys::handle(QKeyEvent const& event) {
    auto const selection = m_state.selection.get();
    if (isRevealInFinder(event)) {
        if (selection)
            m_platform.workspace.reveal({*selection});
        return Outcome::consumed;
    }
    if (event.modifiers() & (Qt::ControlModifier | Qt::MetaModifier | Qt::AltModifier))
        return Outcome::ignored;
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (selection)
            open(*selection);
        return Outcome::consumed;
    case Qt::Key_Space:
        if (selection)
            QuickLookCoordinator::shared().toggle(*selection);
        return Outcome::consumed;
    default:
        return Outcome::unknown;
    }
}

std::optional<Url> BrowserKeys::typed(QKeyEvent const& event, RowList const& rows,
                                      std::optional<Url> const& current) {
    auto const text = event.text();
    if (text.isEmpty() || !text.at(0).isPrint())
        return std::nullopt;
    return m_typeAhead.type(text.toStdString(), m_platform.mainQueue.now(), rows, current);
}

} // namespace taliro
