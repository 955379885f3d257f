#pragma once

#include <QWidget>

#include <functional>

class QLabel;
class QProgressBar;
class QPushButton;
class QTextBrowser;

namespace taliro {

struct Release;

/// What an update check found: in progress, a message, or a new version with its notes.
class UpdateWindow : public QWidget {
    Q_OBJECT

public:
    UpdateWindow();

    void showChecking();
    void showMessage(QString const& title, QString const& text);
    void showRelease(Release const& release, QString const& installed);

    std::function<void()> onCancel; ///< closed while checking
    std::function<void()> onOpenPage;
    std::function<void()> onSkip;

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void setDefault(QPushButton* button);
    void present(QString const& title, QString const& text);

    QLabel* m_title;
    QLabel* m_text;
    QProgressBar* m_progress;
    QTextBrowser* m_notes;
    QPushButton* m_skip;
    QPushButton* m_later;
    QPushButton* m_open;
};

} // namespace taliro
