#include "app/TitlebarMenu.h"

#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "app/AppCommands.h"
#include "app/AppSettings.h"
#include "preferences/HotkeyCaps.h"
#include "views/Symbols.h"
#include "views/ToolButton.h"

#include <QHBoxLayout>
#include <QMenu>

namespace taliro {

TitlebarMenu::TitlebarMenu(AppSettings& settings, QWidget* parent)
    : QWidget(parent),
      m_settings(settings),
      m_caps(new HotkeyCaps(KeyboardShortcuts::shared(), this)),
      m_toggle(new ToolButton("macwindow", QString(), 14, this)),
      m_overflow(new ToolButton("ellipsis", tr("More"), 16, this)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 10, 0);
    row->setSpacing(4);
    row->addWidget(m_caps);
    row->addSpacing(4);
    row->addWidget(m_toggle);
    row->addWidget(m_overflow);
    connect(m_toggle, &QAbstractButton::clicked, this,
            [this] { m_settings.setPopoverMode(!m_settings.popoverMode); });
    addOverflowMenu();
    showMode(settings.popoverMode);
    m_caps->setVisible(!settings.miniMode);
    m_subscriptions.push_back(settings.miniMode.observe([this](bool mini) { m_caps->setVisible(!mini); }));
    m_subscriptions.push_back(settings.popoverMode.observe([this](bool popover) { showMode(popover); }));
}

void TitlebarMenu::showMode(bool popover) {
    m_toggle->setSymbol(popover ? "macwindow" : "menubar.arrow.up.rectangle");
    m_toggle->setLabel(popover ? tr("Show as Window") : tr("Show as Menu Bar Popover"));
}

void TitlebarMenu::addOverflowMenu() {
    auto& commands = AppCommands::shared();
    auto* menu = new QMenu(m_overflow);
    auto const add = [&](char const* symbol, QString const& title, QKeySequence const& key,
                         std::function<void()> const& command) {
        // The key is only to be read: the main menu is where it works, and in both places it would in
        // neither.
        auto const text = key.isEmpty() ? title : title + u'\t' + key.toString(QKeySequence::NativeText);
        auto* action = menu->addAction(symbolIcon(symbol), text);
        action->setEnabled(static_cast<bool>(command));
        connect(action, &QAction::triggered, this, [command] { command(); });
    };
    add("gear", tr("Preferences…"), QKeySequence(Qt::CTRL | Qt::Key_Comma), commands.showPreferences);
    add("arrow.down.circle", tr("Check for Updates…"), {}, commands.checkForUpdates);
    menu->addSeparator();
    add("power", tr("Quit Taliro"), QKeySequence(Qt::CTRL | Qt::Key_Q), commands.quit);
    m_overflow->setMenu(menu);
}

} // namespace taliro
