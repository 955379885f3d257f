#pragma once

#include "KeyboardShortcuts/Name.h"
#include "KeyboardShortcuts/RecordingRules.h"
#include "foundation/Subscription.h"

#include <QLineEdit>

#include <functional>
#include <optional>
#include <vector>

class QAction;
class QKeyEvent;

namespace taliro {

class Alerts;
class KeyboardShortcuts;
class ToolButton;

/// A field that shows a name's shortcut and, while it has the keyboard, takes the next key combination as the
/// new one. Meanwhile it gets every key, also those that the desktop or our own shortcuts listen to.
class RecorderCocoa : public QLineEdit {
    Q_OBJECT

public:
    static constexpr int narrowest = 130; ///< points

    RecorderCocoa(KeyboardShortcuts& shortcuts, Alerts& alerts, Name name, QWidget* parent = nullptr);
    ~RecorderCocoa() override;

    Name const& shortcutName() const { return m_name; }
    void setShortcutName(Name name);
    bool isRecording() const { return m_isRecording; }

    /// Called with what the user chose; nothing when they cleared it.
    std::function<void(std::optional<Shortcut> const&)> onChange;
    /// The items of the main menu, whose key equivalents can't be recorded.
    static void setMainMenu(std::function<QList<QAction*>()> items);

    QSize sizeHint() const override { return {narrowest, QLineEdit::sizeHint().height()}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* receiver, QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void showShortcut();
    void showClearButton();
    void startRecording();
    void endRecording();
    void giveUpFocus();
    void clearShortcut();
    /// Whether the key goes no further.
    bool record(QKeyEvent const& event);
    void store(Shortcut const& shortcut);
    void alert(QString const& message);
    void offerSystemShortcut(Shortcut const& shortcut);

    KeyboardShortcuts& m_shortcuts;
    Alerts& m_alerts;
    Name m_name;
    bool m_isRecording = false; ///< read as soon as there are children
    ToolButton* m_cancelButton;
    std::vector<Subscription> m_subscriptions;
};

} // namespace taliro
