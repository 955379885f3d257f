#include "platform/linux/QtDownloads.h"

#include "platform/linux/HiddenFile.h"

#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QThreadPool>
#include <QTimer>
#include <atomic>
#include <unistd.h>

namespace taliro {

namespace {

constexpr qint64 readBufferSize = 1 << 20; // bytes that may wait for the disk

bool isSuccess(QNetworkReply const& reply) {
    auto const status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    return reply.error() == QNetworkReply::NoError && status >= 200 && status < 300;
}

std::optional<std::int64_t> expectedLength(QNetworkReply const& reply) {
    auto const length = reply.header(QNetworkRequest::ContentLengthHeader);
    return length.isValid() ? std::optional<std::int64_t>(length.toLongLong()) : std::nullopt;
}

} // namespace

class QtDownloads::RunningTask : public Task {
public:
    RunningTask(QNetworkReply* reply, std::expected<HiddenFile, std::errc> file, Limits const& limits,
                Callbacks callbacks)
        : m_reply(reply), m_limits(limits), m_callbacks(std::move(callbacks)) {
        if (file)
            m_file = std::make_shared<HiddenFile>(std::move(*file));
        m_reply->setReadBufferSize(readBufferSize);
        QObject::connect(m_reply.get(), &QNetworkReply::readyRead, m_context.get(), [this] { receive(); });
        QObject::connect(m_reply.get(), &QNetworkReply::finished, m_context.get(), [this] { finish(); });
        QObject::connect(&m_silence, &QTimer::timeout, m_context.get(), [this] { end(std::nullopt); });
        m_silence.setSingleShot(true);
        m_silence.start(limits.silence);
        if (!m_file)
            QTimer::singleShot(0, m_context.get(), [this] { end(std::nullopt); });
    }
    ~RunningTask() override { stop(); }

private:
    struct Ended {
        void operator()(QNetworkReply* reply) const {
            reply->disconnect();
            reply->abort();
            reply->deleteLater();
        }
    };

    void receive() {
        m_silence.start(m_limits.silence);
        if (!append(m_reply->readAll()))
            return end(std::nullopt);
        if (m_callbacks.onProgress)
            m_callbacks.onProgress({m_received, expectedLength(*m_reply)});
    }

    bool append(QByteArray const& bytes) {
        m_received += bytes.size();
        return m_received <= m_limits.bytes && m_file &&
               m_file->append({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    }

    void finish() {
        m_silence.stop();
        auto const complete = isSuccess(*m_reply) && append(m_reply->readAll()) &&
                              expectedLength(*m_reply).value_or(m_received) == m_received;
        if (!complete)
            return end(std::nullopt);
        makeSafe();
    }

    /// Syncs the file in the background: a large one takes a while.
    void makeSafe() {
        auto* const waiting = new QObject; // lives on this thread, dies with the news
        QObject::connect(waiting, &QObject::destroyed, m_context.get(), [this] {
            Downloaded downloaded{m_file->url(), m_reply->rawHeader("Content-Disposition").toStdString()};
            if (!*m_isSafe)
                return end(std::nullopt);
            m_file->release();
            end(std::move(downloaded));
        });
        QThreadPool::globalInstance()->start([file = m_file, isSafe = m_isSafe, waiting] {
            *isSafe = ::fsync(file->descriptor()) == 0;
            waiting->deleteLater();
        });
    }

    void stop() {
        m_silence.stop();
        m_context.reset(); // and with it every connection
        m_reply.reset();
    }

    /// The last thing this does: the callback may destroy it.
    void end(std::optional<Downloaded> downloaded) {
        stop();
        m_file.reset();
        if (auto const onEnd = std::exchange(m_callbacks.onEnd, nullptr))
            onEnd(std::move(downloaded));
    }

    std::unique_ptr<QNetworkReply, Ended> m_reply;
    Limits m_limits;
    Callbacks m_callbacks;
    std::shared_ptr<HiddenFile> m_file; ///< shared with the thread that syncs it
    std::shared_ptr<std::atomic<bool>> m_isSafe = std::make_shared<std::atomic<bool>>(false);
    std::int64_t m_received = 0;
    QTimer m_silence;
    std::unique_ptr<QObject> m_context = std::make_unique<QObject>();
};

QtDownloads::QtDownloads(Limits limits) : m_limits(limits) {}

QtDownloads::~QtDownloads() = default;

namespace {

/// A link of another kind, ended without having been asked for.
class RefusedTask : public Downloads::Task {
public:
    explicit RefusedTask(std::function<void(std::optional<Downloads::Downloaded>)> onEnd) {
        QTimer::singleShot(0, &m_context, [onEnd = std::move(onEnd)] {
            auto const end = onEnd; // which may destroy this and what it holds
            end(std::nullopt);
        });
    }

private:
    QObject m_context;
};

} // namespace

std::unique_ptr<Downloads::Task> QtDownloads::start(Url const& link, Url const& folder, Callbacks callbacks) {
    if (link.scheme() != "http" && link.scheme() != "https")
        return std::make_unique<RefusedTask>(std::move(callbacks.onEnd));
    if (!m_network) {
        QNetworkProxyFactory::setUseSystemConfiguration(true);
        m_network = std::make_unique<QNetworkAccessManager>();
    }
    QNetworkRequest request(QUrl(QString::fromStdString(link.absoluteString())));
    request.setMaximumRedirectsAllowed(m_limits.redirects);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    // The file as it is, not packed for the way: its length can then be checked.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setRawHeader("User-Agent", "Taliro");
    return std::make_unique<RunningTask>(m_network->get(request), HiddenFile::create(folder), m_limits,
                                         std::move(callbacks));
}

} // namespace taliro
