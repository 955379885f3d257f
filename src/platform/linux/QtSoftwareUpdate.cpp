#include "platform/linux/QtSoftwareUpdate.h"

#include "platform/UserDefaults.h"
#include "platform/linux/UpdateWindow.h"

#include <QDesktopServices>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

namespace taliro {

namespace {

using namespace std::chrono_literals;

constexpr char lastCheckKey[] = "lastUpdateCheck";
constexpr char skippedKey[] = "skippedUpdateVersion";
constexpr std::chrono::seconds between = 24h;
/// The first check leaves the start of the session alone.
constexpr std::chrono::seconds soonest = 60s;
constexpr qint64 largestFeed = 4 * 1024 * 1024;
constexpr int timeoutMilliseconds = 20'000;

QString reasonOf(QNetworkReply const& reply) {
    return reply.error() == QNetworkReply::SslHandshakeFailedError
               ? QObject::tr("The server's certificate isn't trusted.")
               : reply.errorString();
}

double nowInSeconds() {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

} // namespace

QtSoftwareUpdate::QtSoftwareUpdate(UserDefaults& defaults, MainQueue& queue, QString feed, QString version)
    : m_defaults(defaults), m_queue(queue), m_feed(std::move(feed)), m_version(std::move(version)) {}

QtSoftwareUpdate::~QtSoftwareUpdate() {
    if (m_reply)
        m_reply->abort();
    delete m_window;
}

void QtSoftwareUpdate::start() {
    if (!m_feed.isEmpty())
        scheduleNext();
}

void QtSoftwareUpdate::scheduleNext() {
    auto const passed = nowInSeconds() - m_defaults.real(lastCheckKey);
    auto const left = passed < 0 ? 0.0 : std::chrono::duration<double>(between).count() - passed;
    auto const wait = std::max(soonest, std::chrono::seconds(static_cast<std::int64_t>(std::max(left, 0.0))));
    m_next = m_queue.after(wait, [this] { check(false); });
}

void QtSoftwareUpdate::checkForUpdates() {
    if (m_feed.isEmpty()) {
        say(QObject::tr("Updates come with your system"),
            QObject::tr("This copy of Taliro %1 is updated by your system's package manager.")
                .arg(m_version));
        return;
    }
    check(true);
}

void QtSoftwareUpdate::check(bool asked) {
    QUrl const address(m_feed, QUrl::StrictMode);
    if (address.scheme() != QLatin1String("https")) {
        if (asked)
            say(QObject::tr("Couldn't check for updates"),
                QObject::tr("The update feed's address isn't secure."));
        return;
    }
    if (m_reply) // An earlier check is superseded.
        std::exchange(m_reply, nullptr)->abort();
    if (!m_network)
        m_network = std::make_unique<QNetworkAccessManager>();
    if (asked)
        showChecking();
    QNetworkRequest request(address);
    request.setTransferTimeout(timeoutMilliseconds);
    request.setMaximumRedirectsAllowed(5);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Taliro/%1").arg(m_version));
    auto* reply = m_network->get(request);
    m_reply = reply;
    QObject::connect(reply, &QNetworkReply::downloadProgress, reply, [reply](qint64 received, qint64) {
        if (received > largestFeed)
            reply->abort();
    });
    QObject::connect(reply, &QNetworkReply::finished, reply, [this, reply, asked] {
        reply->deleteLater();
        if (m_reply == reply)
            finish(*reply, asked);
    });
}

void QtSoftwareUpdate::showChecking() {
    window().onCancel = [this] {
        if (m_reply)
            std::exchange(m_reply, nullptr)->abort();
        scheduleNext();
    };
    window().showChecking();
}

void QtSoftwareUpdate::finish(QNetworkReply& reply, bool asked) {
    m_reply = nullptr;
    m_defaults.setReal(lastCheckKey, nowInSeconds());
    scheduleNext();
    if (reply.error() != QNetworkReply::NoError) {
        if (asked)
            say(QObject::tr("Couldn't check for updates"), reasonOf(reply));
        return;
    }
    auto const release = newestRelease(reply.readAll());
    if (!release) {
        if (asked)
            say(QObject::tr("Couldn't check for updates"), QObject::tr("The update feed can't be read."));
        return;
    }
    bool const newer = compareVersions(m_version, release->version) < 0;
    bool const skipped = m_defaults.string(skippedKey) == release->version.toStdString();
    if (newer && (asked || !skipped))
        tell(*release);
    else if (asked)
        say(QObject::tr("You're up to date"), QObject::tr("Taliro %1 is the newest version.").arg(m_version));
}

void QtSoftwareUpdate::tell(Release const& release) {
    auto& shown = window();
    shown.onOpenPage = [page = release.page] { QDesktopServices::openUrl(page); };
    shown.onSkip = [this, version = release.version.toStdString()] {
        m_defaults.setString(skippedKey, version);
    };
    shown.showRelease(release, m_version);
}

void QtSoftwareUpdate::say(QString const& title, QString const& text) {
    window().showMessage(title, text);
}

UpdateWindow& QtSoftwareUpdate::window() {
    if (!m_window) {
        m_window = new UpdateWindow;
        m_window->setAttribute(Qt::WA_DeleteOnClose);
    }
    return *m_window;
}

} // namespace taliro
