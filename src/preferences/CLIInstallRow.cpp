#include "preferences/CLIInstallRow.h"

#include "preferences/Form.h"
#include "views/PushButton.h"

#include <QHBoxLayout>

namespace taliro {

namespace {

/// How a status looks and what can be done about it.
struct Appearance {
    std::string_view symbol;
    ColorRole color;
    QString label;
    QString action;
};

Appearance appearanceOf(CLIInstaller::Status status) {
    switch (status) {
    case CLIInstaller::Status::installed:
        return {"checkmark.circle.fill", &Colors::success, CLIInstallRow::tr("Installed"),
                CLIInstallRow::tr("Uninstall")};
    case CLIInstaller::Status::installedStale:
        return {"exclamationmark.triangle.fill", &Colors::warning,
                CLIInstallRow::tr("Another %1 is on your PATH").arg(FormText::code(QStringLiteral("taliro"))),
                CLIInstallRow::tr("Replace")};
    case CLIInstaller::Status::notInstalled:
        break;
    }
    return {"terminal", &Colors::text1, CLIInstallRow::tr("Not installed"), CLIInstallRow::tr("Install…")};
}

QString description() {
    return CLIInstallRow::tr("Installs %1 at %2 so you can run %3 from any Terminal to open Taliro there.")
        .arg(FormText::code(QStringLiteral("taliro")),
             FormText::code(QString::fromLatin1(CLIInstaller::linkPath)),
             FormText::code(QStringLiteral("taliro ~/path")));
}

} // namespace

CLIInstallRow::CLIInstallRow(Platform& platform, QWidget* parent)
    : QWidget(parent),
      m_installer(platform),
      m_symbol(new FormSymbol("terminal", 16, &Colors::text1, this)),
      m_status(new FormText(QString(), &Colors::text1, metrics::body, this)),
      m_action(new PushButton(QString(), PushButton::Kind::plain, this)),
      m_error(new FormText(QString(), &Colors::failure, metrics::small, this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, form::helpBottom);
    column->setSpacing(metrics::grid);
    auto* row = new QHBoxLayout;
    row->setContentsMargins(0, 6, 0, 0);
    row->setSpacing(8);
    row->addWidget(m_symbol);
    row->addWidget(m_status, 1);
    row->addWidget(m_action);
    column->addLayout(row);
    column->addWidget(new FormText(description(), &Colors::text2, metrics::small, this));
    m_error->setTextFormat(Qt::PlainText);
    column->addWidget(m_error);
    connect(m_action, &QAbstractButton::clicked, this, &CLIInstallRow::act);
    refresh();
}

void CLIInstallRow::showEvent(QShowEvent* event) {
    m_installer.clearErrorMessage();
    m_installer.refreshStatus();
    refresh();
    QWidget::showEvent(event);
}

void CLIInstallRow::act() {
    if (m_installer.status() == CLIInstaller::Status::installed)
        m_installer.uninstall();
    else
        m_installer.install();
    refresh();
}

void CLIInstallRow::refresh() {
    auto const shown = appearanceOf(m_installer.status());
    m_symbol->setSymbol(shown.symbol, shown.color);
    m_status->setText(shown.label);
    m_status->setColor(shown.color);
    m_action->setText(shown.action);
    m_action->setEnabled(m_installer.bundledBinaryPath().has_value());
    auto const& error = m_installer.errorMessage();
    m_error->setText(QString::fromStdString(error.value_or(std::string())));
    m_error->setVisible(error.has_value());
}

} // namespace taliro
