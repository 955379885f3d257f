#include "platform/linux/QtAlerts.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

namespace taliro {

namespace {

void describe(QMessageBox& box, std::string const& message, std::string const& informativeText) {
    box.setWindowTitle(QStringLiteral("Taliro"));
    box.setTextFormat(Qt::PlainText);
    box.setText(QString::fromStdString(message));
    box.setInformativeText(QString::fromStdString(informativeText));
    // The browser floats above other windows; what it asks floats above the browser.
    box.setWindowFlag(Qt::WindowStaysOnTopHint);
}

} // namespace

void QtAlerts::warn(std::string const& message, std::string const& informativeText) {
    QMessageBox box(QApplication::activeWindow());
    describe(box, message, informativeText);
    box.setIcon(QMessageBox::Warning);
    box.addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
    box.exec();
}

int QtAlerts::ask(std::string const& message, std::string const& informativeText,
                  std::vector<std::string> const& buttons) {
    QMessageBox box(QApplication::activeWindow());
    describe(box, message, informativeText);
    box.setIcon(QMessageBox::Question);
    QList<QPushButton*> made;
    for (auto const& title : buttons)
        made.append(box.addButton(QString::fromStdString(title), &title == &buttons.back()
                                                                     ? QMessageBox::RejectRole
                                                                     : QMessageBox::AcceptRole));
    if (!made.isEmpty()) {
        box.setDefaultButton(made.front());
        box.setEscapeButton(made.back());
    }
    box.exec();
    auto const chosen = made.indexOf(static_cast<QPushButton*>(box.clickedButton()));
    return static_cast<int>(chosen >= 0 ? chosen : made.size() - 1);
}

void QtAlerts::beep() {
    QApplication::beep();
}

} // namespace taliro
