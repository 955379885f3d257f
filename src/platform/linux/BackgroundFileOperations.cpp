#include "platform/linux/BackgroundFileOperations.h"

#include "platform/linux/transfer/Mover.h"
#include "platform/linux/transfer/Trash.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <thread>

namespace taliro {

using namespace std::chrono_literals;

namespace {

/// A rename or a small copy ends within this; waiting for it costs less than turning the event loop.
constexpr auto shortWork = 20ms;
constexpr auto reportEvery = 100ms;
/// Counting what there is to copy begins once it is likely to be shown.
constexpr auto countAfter = 300ms;

std::int64_t bytesBelow(std::string const& path, std::stop_token const& stop) {
    namespace fs = std::filesystem;
    std::error_code error;
    std::int64_t bytes = 0;
    auto const add = [&bytes](fs::directory_entry const& entry) {
        std::error_code ignored;
        if (entry.is_symlink(ignored) || !entry.is_regular_file(ignored))
            return;
        auto const size = entry.file_size(ignored);
        bytes += ignored ? 0 : static_cast<std::int64_t>(size);
    };
    fs::directory_entry const top(path, error);
    add(top);
    if (top.is_symlink(error) || !top.is_directory(error))
        return bytes;
    fs::recursive_directory_iterator entry(path, fs::directory_options::skip_permission_denied, error);
    for (; !error && entry != fs::recursive_directory_iterator() && !stop.stop_requested();
         entry.increment(error))
        add(*entry);
    return bytes;
}

/// One copy or move: worked on by one thread, looked at by another.
class Job : public transfer::Sink {
public:
    using Work = std::function<transfer::Result(transfer::Sink&)>;

    Job(std::string source, Work work) : m_source(std::move(source)) {
        m_worker = std::jthread([this, work = std::move(work)] { end(work(*this)); });
    }

    transfer::Result waitTurning(FileOperations::Report const& report) {
        if (!waitFor(shortWork))
            turnEventLoop(report);
        m_worker.join();
        return m_result;
    }

    void began(std::string_view name) override {
        std::lock_guard const lock(m_mutex);
        m_name = name;
    }
    bool advance(std::int64_t bytes) override {
        m_bytesDone.fetch_add(bytes, std::memory_order_relaxed);
        return !m_cancelled.load(std::memory_order_relaxed);
    }

private:
    void end(transfer::Result result) {
        std::lock_guard const lock(m_mutex);
        m_result = result;
        m_ended = true;
        m_endCondition.notify_all();
        if (m_loop)
            QMetaObject::invokeMethod(m_loop, &QEventLoop::quit, Qt::QueuedConnection);
    }

    bool waitFor(std::chrono::milliseconds time) {
        std::unique_lock lock(m_mutex);
        return m_endCondition.wait_for(lock, time, [this] { return m_ended; });
    }

    void turnEventLoop(FileOperations::Report const& report) {
        QEventLoop loop;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &timer, [&] { tell(report); });
        timer.start(reportEvery);
        {
            std::lock_guard const lock(m_mutex);
            if (m_ended)
                return;
            m_loop = &loop;
        }
        loop.exec();
        std::unique_lock lock(m_mutex);
        m_loop = nullptr;
        if (!m_ended)
            m_cancelled = true; // the program is quitting
        m_endCondition.wait(lock, [this] { return m_ended; });
    }

    void tell(FileOperations::Report const& report) {
        if (!report)
            return;
        count();
        TransferProgress progress;
        {
            std::lock_guard const lock(m_mutex);
            progress.name = m_name;
        }
        progress.bytesDone = m_bytesDone;
        if (auto const total = m_bytesTotal.load(); total >= 0)
            progress.bytesTotal = std::max(total, progress.bytesDone);
        if (report(progress) == TransferAnswer::cancel)
            m_cancelled = true;
    }

    void count() {
        if (m_counter.joinable() || std::chrono::steady_clock::now() - m_start < countAfter)
            return;
        m_counter = std::jthread([this](std::stop_token const& stop) {
            auto const bytes = bytesBelow(m_source, stop);
            if (!stop.stop_requested())
                m_bytesTotal = bytes;
        });
    }

    std::string const m_source;
    std::chrono::steady_clock::time_point const m_start = std::chrono::steady_clock::now();
    std::atomic<std::int64_t> m_bytesDone = 0;
    std::atomic<std::int64_t> m_bytesTotal = -1; ///< -1 while not counted
    std::atomic<bool> m_cancelled = false;
    std::mutex m_mutex; ///< for those below
    std::condition_variable m_endCondition;
    std::string m_name;
    transfer::Result m_result;
    bool m_ended = false;
    QEventLoop* m_loop = nullptr;
    std::jthread m_counter; ///< the threads last: they end before what they use
    std::jthread m_worker;
};

bool areFiles(Url const& source, Url const& destination) {
    return source.isFile() && destination.isFile();
}

} // namespace

BackgroundFileOperations::BackgroundFileOperations(std::string stateFolder)
    : m_leftovers(std::move(stateFolder)) {}

std::string BackgroundFileOperations::defaultStateFolder() {
    char const* const state = std::getenv("XDG_STATE_HOME");
    if (state && state[0] == '/')
        return std::string(state) + "/taliro/transfers";
    char const* const home = std::getenv("HOME");
    return std::string(home && home[0] == '/' ? home : "/tmp") + "/.local/state/taliro/transfers";
}

FileOperations::Result BackgroundFileOperations::copy(Url source, Url destination, Report report) {
    if (!areFiles(source, destination))
        return std::unexpected(std::errc::invalid_argument);
    Job job(source.path(), [&](transfer::Sink& sink) {
        return transfer::copyItem(source.path(), destination.path(), m_leftovers, sink);
    });
    return job.waitTurning(report);
}

FileOperations::Result BackgroundFileOperations::move(Url source, Url destination, Report report) {
    if (!areFiles(source, destination))
        return std::unexpected(std::errc::invalid_argument);
    Job job(source.path(), [&](transfer::Sink& sink) {
        auto const moved = transfer::moveItem(source.path(), destination.path(), m_leftovers, sink);
        if (moved)
            transfer::forgetTrashed(source.path());
        return moved;
    });
    return job.waitTurning(report);
}

FileOperations::Result BackgroundFileOperations::trash(Url item) {
    if (!item.isFile())
        return std::unexpected(std::errc::invalid_argument);
    Job job(item.path(), [&](transfer::Sink&) { return transfer::trashItem(item.path()); });
    return job.waitTurning({});
}

void BackgroundFileOperations::removeLeftovers() {
    std::thread([leftovers = m_leftovers] { leftovers.removeStale(); }).detach();
}

} // namespace taliro
