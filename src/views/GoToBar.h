#pragma once

#include "browsing/GoToPath.h"

#include <QFrame>

#include <vector>

class QLineEdit;
class QListView;
class QMenu;
class QStringListModel;

namespace taliro {

class PushButton;
class ToolButton;

/// The go-to-folder bar, laid over the top of its parent while open: the path, recent paths, and below them
/// the folders that the path may go on to.
class GoToBar : public QFrame {
    Q_OBJECT

public:
    explicit GoToBar(GoToPath& path, QWidget* parent);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent*) override;

private:
    void buildRows();
    void buildHistoryMenu();
    void fade(bool in);
    void setOpen(bool open);
    void showSuggestions(std::vector<Url> const& suggestions);
    void highlight(std::optional<std::size_t> index);
    void place();
    bool moveThroughSuggestions(int key);
    bool handleFieldKey(int key);

    GoToPath& m_path;
    QLineEdit* m_field = nullptr;
    ToolButton* m_history = nullptr;
    QMenu* m_historyMenu = nullptr;
    QListView* m_suggestions = nullptr;
    QStringListModel* m_rows = nullptr;
    QWidget* m_divider = nullptr;
    std::vector<Subscription> m_subscriptions;
};

} // namespace taliro
