#pragma once

#include <QList>
#include <QObject>

#include <functional>
#include <memory>
#include <vector>

class QAction;
class QMenu;
class QMenuBar;
class QWidget;

namespace taliro {

/// The application's menus. Their key equivalents work in every window of ours; the bar itself shows only
/// where the application is one of the taskbar.
class MainMenu : public QObject {
    Q_OBJECT

public:
    explicit MainMenu(std::function<void()> hide);

    /// Every item that there is, in order.
    QList<QAction*> items() const { return {m_actions.begin(), m_actions.end()}; }
    /// Makes the key equivalents work in `window`.
    void attachTo(QWidget& window);
    /// A bar with the menus, owned by `parent`.
    QMenuBar* makeBar(QWidget* parent);

private:
    QAction* add(QMenu& menu, QString const& title, std::vector<int> const& keys,
                 std::function<void()> action);
    void addEdit(QString const& title, std::vector<int> const& keys, char const* slot);
    void followFocus();

    std::unique_ptr<QMenu> m_application;
    std::unique_ptr<QMenu> m_edit;
    std::unique_ptr<QAction> m_preferences; ///< in other menus than these, but with its key in every window
    std::vector<QAction*> m_actions;
    std::vector<QAction*> m_editActions;
};

} // namespace taliro
