#pragma once

#include <QObject>
#include <QSet>

class QCoreApplication;
class QWidget;

namespace taliro {

/// Posts `KeyboardShortcuts::menuDidBeginTracking` when the first popup of ours opens and
/// `menuDidEndTracking` when the last closes. Menus, and the lists of pop-up buttons, have the keyboard to
/// themselves while they are open.
class MenuTracking : public QObject {
    Q_OBJECT

public:
    /// Lives as long as `application`.
    explicit MenuTracking(QCoreApplication& application);

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    void setOpen(QWidget const* popup, bool open);

    QSet<QObject const*> m_open;
};

} // namespace taliro
