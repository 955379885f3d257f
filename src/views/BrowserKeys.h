#pragma once

#include "browsing/ArrowKeyNav.h"
#include "browsing/BrowserState.h"

#include <Qt>
#include <optional>

class QKeyEvent;
class QWidget;

namespace taliro {

struct Platform;

/// Control or the Super key: what commands are given with.
bool isCommand(Qt::KeyboardModifiers modifiers);
/// Command and R, nothing else.
bool isRevealInFinder(QKeyEvent const& event);
/// Whether `focus` is a field in which text is being edited.
bool isEditingText(QWidget const* focus);

/// What the list, the grid and the columns do alike: open, reveal, preview, and what keys do that.
class BrowserKeys {
public:
    BrowserKeys(Platform& platform, BrowserState& state) : m_platform(platform), m_state(state) {}

    /// A folder is shown, anything else is opened with its default application.
    void open(Url const& url);
    /// A click on a row: with shift a range among `ordered`, with command one more or less, else this one
    /// alone.
    void click(Url const& url, Qt::KeyboardModifiers modifiers, RowList const& ordered);

    enum class Outcome { consumed, ignored, unknown };
    /// Reveal, open, preview; `unknown` is a key that may mean something to the view, none of command or
    /// option held.
    Outcome handle(QKeyEvent const& event);
    /// The row that begins with what was typed; nothing where `event` types nothing.
    std::optional<Url> typed(QKeyEvent const& event, RowList const& rows, std::optional<Url> const& current);

private:
    Platform& m_platform;
    BrowserState& m_state;
    TypeAhead m_typeAhead;
};

} // namespace taliro
