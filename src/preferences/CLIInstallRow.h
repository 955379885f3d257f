#pragma once

#include "preferences/CLIInstaller.h"

#include <QWidget>

class QLabel;

namespace taliro {

class FormSymbol;
class FormText;
class PushButton;

/// Whether the command-line tool is a command of every terminal, and the button that makes it one.
class CLIInstallRow : public QWidget {
    Q_OBJECT

public:
    explicit CLIInstallRow(Platform& platform, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void act();
    void refresh();

    CLIInstaller m_installer;
    FormSymbol* m_symbol;
    FormText* m_status;
    PushButton* m_action;
    FormText* m_error;
};

} // namespace taliro
