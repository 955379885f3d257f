#include "app/MainMenu.h"

#include "app/AppCommands.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace taliro {

namespace {

/// Command is Ctrl, as everywhere on the desktop, and Super as well.
QList<QKeySequence> withCommand(std::vector<int> const& keys) {
    QList<QKeySequence> sequences;
    for (int const key : keys) {
        sequences.append(QKeySequence(Qt::CTRL | key));
        sequences.append(QKeySequence(Qt::META | key));
    }
    return sequences;
}

QWidget* focusedTextField() {
    auto* focused = QApplication::focusWidget();
    bool const isField = qobject_cast<QLineEdit*>(focused) || qobject_cast<QTextEdit*>(focused) ||
                         qobject_cast<QPlainTextEdit*>(focused);
    return isField ? focused : nullptr;
}

void showAbout() {
    auto* box = new QMessageBox(QApplication::activeWindow());
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowTitle(QObject::tr("About Taliro"));
    box->setWindowFlag(Qt::WindowStaysOnTopHint);
    box->setIconPixmap(QApplication::windowIcon().pixmap(64));
    box->setText(QStringLiteral("Taliro"));
    box->setInformativeText(QObject::tr("Version %1\nA compact file browser, one keystroke away.")
                                .arg(QApplication::applicationVersion()));
    box->addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
    box->open();
}

} // namespace

MainMenu::MainMenu(std::function<void()> hide)
    : m_application(std::make_unique<QMenu>(QStringLiteral("Taliro"))),
      m_edit(std::make_unique<QMenu>(tr("Edit"))) {
    add(*m_application, tr("About Taliro"), {}, showAbout);
    m_application->addSeparator();
    add(*m_application, tr("Hide Taliro"), {Qt::Key_H}, std::move(hide));
    add(*m_application, tr("Quit Taliro"), {Qt::Key_Q}, AppCommands::shared().quit);

    addEdit(tr("Undo"), {Qt::Key_Z}, "undo");
    addEdit(tr("Redo"), {static_cast<int>(Qt::SHIFT) | Qt::Key_Z}, "redo");
    m_edit->addSeparator();
    addEdit(tr("Cut"), {Qt::Key_X}, "cut");
    addEdit(tr("Copy"), {Qt::Key_C}, "copy");
    addEdit(tr("Paste"), {Qt::Key_V}, "paste");
    addEdit(tr("Select All"), {Qt::Key_A}, "selectAll");
    m_preferences = std::make_unique<QAction>(tr("Preferences…"));
    m_preferences->setShortcuts(withCommand({Qt::Key_Comma}));
    connect(m_preferences.get(), &QAction::triggered, this, [] { AppCommands::shared().showPreferences(); });
    connect(qApp, &QApplication::focusChanged, this, &MainMenu::followFocus);
    followFocus();
}

QAction* MainMenu::add(QMenu& menu, QString const& title, std::vector<int> const& keys,
                       std::function<void()> action) {
    auto* item = menu.addAction(title);
    item->setShortcuts(withCommand(keys));
    connect(item, &QAction::triggered, this, [action = std::move(action)] { action(); });
    m_actions.push_back(item);
    return item;
}

/// An action of whatever text field has the keyboard.
void MainMenu::addEdit(QString const& title, std::vector<int> const& keys, char const* slot) {
    m_editActions.push_back(add(*m_edit, title, keys, [slot] {
        if (auto* field = focusedTextField())
            QMetaObject::invokeMethod(field, slot);
    }));
}

/// Outside of text fields, the keys belong to the views.
void MainMenu::followFocus() {
    for (auto* action : m_editActions)
        action->setEnabled(focusedTextField() != nullptr);
}

void MainMenu::attachTo(QWidget& window) {
    for (auto* action : m_actions)
        window.addAction(action);
    window.addAction(m_preferences.get());
}

QMenuBar* MainMenu::makeBar(QWidget* parent) {
    auto* bar = new QMenuBar(parent);
    bar->setAccessibleName(tr("Menu bar"));
    bar->addMenu(m_application.get());
    bar->addMenu(m_edit.get());
    return bar;
}

} // namespace taliro
