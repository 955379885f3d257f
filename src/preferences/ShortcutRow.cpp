#include "preferences/ShortcutRow.h"

#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "KeyboardShortcuts/Recorder.h"
#include "foundation/NotificationCenter.h"
#include "preferences/Form.h"
#include "views/PushButton.h"

#include <QHBoxLayout>

namespace taliro {

ShortcutRow::ShortcutRow(KeyboardShortcuts& shortcuts, QWidget* parent)
    : QWidget(parent),
      m_shortcuts(shortcuts),
      m_reset(new PushButton(tr("Reset to Default"), PushButton::Kind::plain, this)) {
    setFixedHeight(form::rowHeight + metrics::grid);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    auto* label = new QLabel(tr("Toggle Taliro:"), this);
    auto* recorder = new Recorder(
        togglePicker(), [this](auto const& shortcut) { setShortcut(shortcut); }, this);
    m_reset->setFont(Theme::current().font(metrics::small));
    row->addWidget(label, 1);
    row->addWidget(recorder);
    row->addWidget(m_reset);
    connect(m_reset, &QAbstractButton::clicked, this, &ShortcutRow::reset);
    m_subscription = NotificationCenter::standard().observe(
        KeyboardShortcuts::shortcutByNameDidChange,
        [this](auto const&) { setShortcut(m_shortcuts.getShortcut(togglePicker())); });
    setShortcut(m_shortcuts.getShortcut(togglePicker()));
}

bool ShortcutRow::isDefault() const {
    return m_shortcut == togglePicker().defaultShortcut();
}

void ShortcutRow::setShortcut(std::optional<Shortcut> const& shortcut) {
    m_shortcut = shortcut;
    if (isDefault())
        m_reset->clearFocus(); // Else the recorder would inherit the keyboard, and record.
    m_reset->setVisible(!isDefault());
}

void ShortcutRow::reset() {
    m_shortcuts.reset({togglePicker()});
    setShortcut(m_shortcuts.getShortcut(togglePicker()));
}

} // namespace taliro
