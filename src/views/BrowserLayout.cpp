#include "views/BrowserLayout.h"

#include "browsing/BrowserState.h"
#include "browsing/DirectoryWatcher.h"
#include "browsing/RecentsStore.h"
#include "platform/Platform.h"
#include "views/BrowserKeys.h"
#include "views/Theme.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QPainter>

namespace taliro {

BrowserLayout::BrowserLayout(Platform& platform, BrowserState& state, DirectoryWatcher& watcher,
                             QWidget* parent)
    : QWidget(parent),
      m_platform(platform),
      m_state(state),
      m_watcher(watcher),
      m_recents(RecentsStore::shared()),
      m_refresher(platform.mainQueue, [this] { refresh(); }) {
    m_onLocation = m_state.currentURL.observe([this](Url const& location) {
        if (isVisible())
            locationChanged(location);
    });
    m_refresher.dependOn(m_state.currentURL);
    m_refresher.dependOn(m_state.sortKey);
    m_refresher.dependOn(m_state.sortAscending);
    m_refresher.dependOn(m_watcher.tick);
    m_refresher.dependOn(m_recents.entries);
}

void BrowserLayout::locationChanged(Url const& location) {
    if (location == SmartFolders::recents()) {
        m_watcher.stop();
        m_recents.start();
    } else {
        m_watcher.watch(location);
    }
}

void BrowserLayout::refresh() {
    if (isVisible()) // Else made up for when shown.
        showRows();
}

void BrowserLayout::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    locationChanged(m_state.currentURL.get());
    refresh();
    if (!isEditingText(QApplication::focusWidget()))
        focusContent();
}

/// Keys that the widget with the focus has no use for come here.
void BrowserLayout::keyPressEvent(QKeyEvent* event) {
    auto* const focus = QApplication::focusWidget();
    bool const isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (auto* const button = qobject_cast<QAbstractButton*>(focus); button && isReturn)
        button->click();
    else if (isEditingText(focus) || !contentHandlesKey(*event))
        event->ignore();
}

void BrowserLayout::paintEvent(QPaintEvent* event) {
    QPainter(this).fillRect(event->rect(), colors().window);
}

} // namespace taliro
