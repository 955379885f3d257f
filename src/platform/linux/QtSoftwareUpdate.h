#pragma once

#include "foundation/MainQueue.h"
#include "platform/SoftwareUpdate.h"
#include "platform/linux/UpdateFeed.h"

#include <QPointer>

#include <memory>

class QNetworkAccessManager;
class QNetworkReply;

namespace taliro {

class UpdateWindow;
class UserDefaults;

/// Reads the update feed that was set when the program was built: once a day, and when the user asks.
/// Without a feed nothing is asked of the network.
class QtSoftwareUpdate : public SoftwareUpdate {
public:
    /// `feed`: an https address, or empty.
    QtSoftwareUpdate(UserDefaults& defaults, MainQueue& queue, QString feed, QString version);
    ~QtSoftwareUpdate() override;

    void start() override;
    void checkForUpdates() override;

private:
    void scheduleNext();
    void check(bool asked);
    void finish(QNetworkReply& reply, bool asked);
    void showChecking();
    void tell(Release const& release);
    void say(QString const& title, QString const& text);
    UpdateWindow& window();

    UserDefaults& m_defaults;
    MainQueue& m_queue;
    QString m_feed;
    QString m_version;
    std::unique_ptr<QNetworkAccessManager> m_network; ///< made at the first check, not at start-up
    QPointer<QNetworkReply> m_reply;
    QPointer<UpdateWindow> m_window;
    WorkItem m_next;
};

} // namespace taliro
