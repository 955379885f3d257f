#include "KeyboardShortcuts/RecorderCocoa.h"

#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "KeyboardShortcuts/MainMenuSearch.h"
#include "KeyboardShortcuts/Texts.h"
#include "foundation/NotificationCenter.h"
#include "platform/Alerts.h"
#include "platform/KeyboardLayout.h"
#include "views/ToolButton.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>

namespace taliro {

namespace {

std::function<QList<QAction*>()> mainMenu;

QString qtText(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

ModifierFlags modifierFlags(QKeyEvent const& event) {
    ModifierFlags flags;
    auto const held = event.modifiers();
    if (held & Qt::ControlModifier)
        flags |= ModifierFlags::control;
    if (held & Qt::AltModifier)
        flags |= ModifierFlags::option;
    if (held & Qt::ShiftModifier)
        flags |= ModifierFlags::shift;
    if (held & Qt::MetaModifier)
        flags |= ModifierFlags::command;
    if (held & Qt::KeypadModifier)
        flags |= ModifierFlags::numericPad;
    return flags;
}

/// A warning without icon, as a sheet of the window that `over` is in.
QMessageBox* makeAlert(QWidget* over, QString const& message, QString const& information = {}) {
    auto* box = new QMessageBox(QMessageBox::NoIcon, QApplication::applicationName(), message,
                                QMessageBox::NoButton, over->window());
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setInformativeText(information);
    box->setWindowModality(Qt::WindowModal);
    box->setWindowFlag(Qt::WindowStaysOnTopHint, over->window()->windowFlags() & Qt::WindowStaysOnTopHint);
    return box;
}

} // namespace

void RecorderCocoa::setMainMenu(std::function<QList<QAction*>()> items) {
    mainMenu = std::move(items);
}

RecorderCocoa::RecorderCocoa(KeyboardShortcuts& shortcuts, Alerts& alerts, Name name, QWidget* parent)
    : QLineEdit(parent),
      m_shortcuts(shortcuts),
      m_alerts(alerts),
      m_name(std::move(name)),
      m_cancelButton(new ToolButton("xmark.circle.fill", tr("Clear shortcut"), 12, this)) {
    setReadOnly(true); // Keys are recorded instead of typed; no insertion point shows.
    setContextMenuPolicy(Qt::NoContextMenu);
    setMinimumWidth(narrowest);
    setAccessibleName(tr("Keyboard shortcut"));
    setPlaceholderText(qtText(texts::recordShortcut));
    m_cancelButton->setFocusPolicy(Qt::NoFocus);
    m_cancelButton->setCursor(Qt::ArrowCursor);
    m_cancelButton->setFixedSize(18, 18);
    connect(m_cancelButton, &QAbstractButton::clicked, this, &RecorderCocoa::clearShortcut);
    showShortcut();
    m_subscriptions.push_back(NotificationCenter::standard().observe(
        KeyboardShortcuts::shortcutByNameDidChange, [this](Notification const& notification) {
            if (std::any_cast<Name>(notification.userInfo.at("name")) == m_name)
                showShortcut();
        }));
    m_subscriptions.push_back(shortcuts.layout().observeChanges([this] { showShortcut(); }));
}

RecorderCocoa::~RecorderCocoa() {
    endRecording();
}

void RecorderCocoa::setShortcutName(Name name) {
    m_name = std::move(name);
    showShortcut();
}

void RecorderCocoa::showShortcut() {
    auto const shortcut = m_shortcuts.getShortcut(m_name);
    setText(shortcut ? qtText(m_shortcuts.presentableDescription(*shortcut)) : QString());
    showClearButton();
}

void RecorderCocoa::showClearButton() {
    bool const shown = !this->text().isEmpty();
    m_cancelButton->setVisible(shown);
    setTextMargins(0, 0, shown ? m_cancelButton->width() : 0, 0);
}

void RecorderCocoa::resizeEvent(QResizeEvent* event) {
    QLineEdit::resizeEvent(event);
    auto const size = m_cancelButton->size();
    m_cancelButton->move(width() - size.width() - 4, (height() - size.height()) / 2);
}

void RecorderCocoa::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    // A window that comes to the front doesn't start recording by itself.
    if (event->reason() == Qt::ActiveWindowFocusReason)
        giveUpFocus();
    else
        startRecording();
}

void RecorderCocoa::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    endRecording();
    if (event->reason() == Qt::ActiveWindowFocusReason)
        giveUpFocus();
}

void RecorderCocoa::hideEvent(QHideEvent* event) {
    endRecording();
    QLineEdit::hideEvent(event);
}

/// Later, since a focus event is no time to move the focus.
void RecorderCocoa::giveUpFocus() {
    QMetaObject::invokeMethod(
        this, [this] { clearFocus(); }, Qt::QueuedConnection);
}

void RecorderCocoa::startRecording() {
    if (m_isRecording)
        return;
    m_isRecording = true;
    setPlaceholderText(qtText(texts::pressShortcut));
    m_shortcuts.isPaused = true;
    // Takes keys before the hot keys of this and other programs do.
    grabKeyboard();
    qApp->installEventFilter(this);
    NotificationCenter::standard().post(KeyboardShortcuts::recorderActiveStatusDidChange, {},
                                        {{"isActive", true}});
}

void RecorderCocoa::endRecording() {
    if (!m_isRecording)
        return;
    m_isRecording = false;
    qApp->removeEventFilter(this);
    releaseKeyboard();
    setPlaceholderText(qtText(texts::recordShortcut));
    m_shortcuts.isPaused = false;
    NotificationCenter::standard().post(KeyboardShortcuts::recorderActiveStatusDidChange, {},
                                        {{"isActive", false}});
}

void RecorderCocoa::clearShortcut() {
    m_shortcuts.setShortcut({}, m_name);
    showShortcut();
    if (onChange)
        onChange({});
    setFocus();
}

/// A click beside the field ends recording and does what it does anyway.
bool RecorderCocoa::eventFilter(QObject* receiver, QEvent* event) {
    if (event->type() == QEvent::MouseButtonRelease && receiver->isWindowType()) {
        auto const place = static_cast<QMouseEvent*>(event)->globalPosition().toPoint();
        if (!rect().contains(mapFromGlobal(place)))
            clearFocus();
    }
    return QLineEdit::eventFilter(receiver, event);
}

bool RecorderCocoa::event(QEvent* event) {
    if (m_isRecording && event->type() == QEvent::ShortcutOverride) {
        event->accept(); // Menus don't get it, we do.
        return true;
    }
    if (m_isRecording && event->type() == QEvent::KeyPress) {
        bool const handled = record(static_cast<QKeyEvent&>(*event));
        event->accept();
        if (handled)
            return true;
    }
    return QLineEdit::event(event);
}

bool RecorderCocoa::record(QKeyEvent const& event) {
    if (event.isAutoRepeat())
        return true;
    auto const key = m_shortcuts.layout().keyCode(event.nativeScanCode());
    if (!key) {
        bool const isModifier = event.key() >= Qt::Key_Shift && event.key() <= Qt::Key_ScrollLock;
        if (!isModifier && event.key() != Qt::Key_AltGr)
            m_alerts.beep();
        return true;
    }
    RecordingSurroundings const surroundings{
        [this](Shortcut const& shortcut) -> std::optional<std::string> {
            auto const* item = menuItemWithMatchingShortcut(mainMenu ? mainMenu() : QList<QAction*>(),
                                                            shortcut, m_shortcuts.layout());
            return item ? std::optional(item->text().remove(QLatin1Char('&')).toStdString()) : std::nullopt;
        },
        [this] { return m_shortcuts.carbon().system(); },
        m_shortcuts.carbon().forbidsOptionAlone(),
    };
    auto const verdict = judge({KeyEvent::Type::keyDown, Key{*key}, modifierFlags(event)}, surroundings);
    using Kind = RecordingVerdict::Kind;
    switch (verdict.kind) {
    case Kind::passOn:
        return true;
    case Kind::endAndPassOn:
        endRecording();
        return false;
    case Kind::end:
        clearFocus();
        return true;
    case Kind::clear:
        clearShortcut();
        return true;
    case Kind::beep:
        m_alerts.beep();
        return true;
    case Kind::usedByMenuItem:
        alert(qtText(texts::usedByMenuItem) + qtText(verdict.menuItemTitle) +
              qtText(texts::usedByMenuItemEnd));
        return true;
    case Kind::disallowed:
        alert(qtText(texts::optionAloneDisallowed));
        return true;
    case Kind::usedBySystem:
        offerSystemShortcut(*verdict.shortcut);
        return true;
    case Kind::store:
        store(*verdict.shortcut);
        return true;
    }
    return true;
}

void RecorderCocoa::store(Shortcut const& shortcut) {
    m_shortcuts.setShortcut(shortcut, m_name);
    showShortcut();
    if (onChange)
        onChange(shortcut);
    clearFocus();
}

void RecorderCocoa::alert(QString const& message) {
    clearFocus();
    auto* box = makeAlert(this, message);
    box->addButton(qtText(texts::ok), QMessageBox::AcceptRole);
    box->open();
}

void RecorderCocoa::offerSystemShortcut(Shortcut const& shortcut) {
    clearFocus();
    auto* box = makeAlert(this, qtText(texts::usedBySystem), qtText(texts::systemShortcutsCanBeChanged));
    auto* ok = box->addButton(qtText(texts::ok), QMessageBox::RejectRole);
    auto* force = box->addButton(qtText(texts::forceUse), QMessageBox::DestructiveRole);
    box->setDefaultButton(ok);
    box->setEscapeButton(ok);
    connect(force, &QAbstractButton::clicked, this, [this, shortcut] { store(shortcut); });
    box->open();
}

} // namespace taliro
