#include "dragdrop/ItemContextMenu.h"

#include "platform/Alerts.h"
#include "platform/FileManager.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>

namespace taliro {

void revealInFinder(Url const& url, Platform& platform) {
    platform.workspace.reveal({url});
}

void copyPath(Url const& url) {
    auto* const text = new QMimeData;
    // The path's own bytes, which need not be UTF-8.
    text->setData(QStringLiteral("text/plain"), QByteArray::fromStdString(url.path()));
    QGuiApplication::clipboard()->setMimeData(text);
}

void openTerminalHere(Url const& url, Platform& platform) {
    auto const folder = platform.fileManager.isDirectory(url) ? url : url.deletingLastPathComponent();
    if (!platform.workspace.openTerminal(folder))
        platform.alerts.warn("Couldn't open a terminal",
                             "No terminal program is installed on this computer.");
}

void addMenuItems(QMenu& menu, std::vector<MenuItem> items) {
    for (auto& item : items) {
        if (item.title.empty()) {
            menu.addSeparator();
            continue;
        }
        // An ampersand is part of a name here, not a key's mark.
        auto const title = QString::fromStdString(item.title).replace(u'&', QStringLiteral("&&"));
        QObject::connect(menu.addAction(title), &QAction::triggered, &menu, std::move(item.action));
    }
}

QMenu* makeItemContextMenu(Url const& url, std::vector<MenuItem> extraItems, Platform& platform,
                           QWidget* parent) {
    auto* const menu = new QMenu(parent);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    addMenuItems(*menu, {{"Reveal in Finder", [url, &platform] { revealInFinder(url, platform); }},
                         {"Copy Path", [url] { copyPath(url); }},
                         {"Open Terminal Here", [url, &platform] { openTerminalHere(url, platform); }}});
    if (!extraItems.empty()) {
        menu->addSeparator();
        addMenuItems(*menu, std::move(extraItems));
    }
    return menu;
}

} // namespace taliro
