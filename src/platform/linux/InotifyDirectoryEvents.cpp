#include "platform/linux/InotifyDirectoryEvents.h"

#include "foundation/Subscription.h"
#include "platform/linux/FileDescriptor.h"

#include <QSocketNotifier>
#include <QTimer>
#include <array>
#include <cerrno>
#include <cstring>
#include <map>
#include <sys/inotify.h>

namespace taliro {

namespace {

constexpr std::uint32_t watchedEvents = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_CLOSE_WRITE |
                                        IN_MODIFY | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

/// From one reading to the next: a storm of events would keep timers, and with them all else, from their
/// turn.
constexpr std::chrono::milliseconds pause(10);

} // namespace

/// The inotify instance and who listens to which of its watches. Sources share it, so that it outlives them.
class InotifyDirectoryEvents::Queue {
public:
    Queue() : m_descriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        if (!m_descriptor)
            return;
        m_notifier = std::make_unique<QSocketNotifier>(m_descriptor.get(), QSocketNotifier::Read);
        QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] {
            m_notifier->setEnabled(false);
            m_pause.start(pause);
            drain();
        });
        m_pause.setSingleShot(true);
        QObject::connect(&m_pause, &QTimer::timeout, m_notifier.get(),
                         [this] { m_notifier->setEnabled(true); });
    }

    explicit operator bool() const { return static_cast<bool>(m_descriptor); }

    std::expected<int, std::errc> add(Url const& folder) {
        int const watch = ::inotify_add_watch(m_descriptor.get(), folder.path().c_str(), watchedEvents);
        if (watch < 0)
            return std::unexpected(static_cast<std::errc>(errno));
        ++m_listeners[watch].count;
        return watch;
    }
    Subscription listen(int watch, std::function<void(Changed const&)> onEvent) {
        return m_listeners[watch].observers.add(std::move(onEvent));
    }
    void release(int watch) {
        auto const found = m_listeners.find(watch);
        if (found == m_listeners.end() || --found->second.count > 0)
            return;
        m_listeners.erase(found);
        ::inotify_rm_watch(m_descriptor.get(), watch);
    }

    /// Reads what the kernel has queued, then tells each watch once.
    void drain() {
        std::map<int, Changed> touched;
        alignas(inotify_event) std::array<char, 64 * 1024> buffer;
        for (;;) {
            auto const read = ::read(m_descriptor.get(), buffer.data(), buffer.size());
            if (read <= 0)
                break;
            for (long position = 0; position < read;) {
                inotify_event event;
                std::memcpy(&event, buffer.data() + position, sizeof event);
                std::string_view name;
                if (event.len > 0) // Filled up with zeros.
                    name = buffer.data() + position + sizeof event;
                position += static_cast<long>(sizeof event + event.len);
                if (event.mask & IN_Q_OVERFLOW) // Events were lost: any folder may have changed.
                    for (auto const& [watch, listeners] : m_listeners)
                        touched[watch].reset();
                else
                    note(touched, event.wd, name);
            }
        }
        for (auto const& [watch, changed] : touched)
            if (auto const found = m_listeners.find(watch); found != m_listeners.end()) {
                auto const observers = found->second.observers; // A listener may end the watch.
                observers.notify(changed);
            }
    }

private:
    struct Listeners {
        int count = 0;
        Observers<Changed const&> observers;
    };

    /// An event without a name is the folder's own: all of it may have changed.
    static void note(std::map<int, Changed>& touched, int watch, std::string_view name) {
        auto const [entry, isNew] = touched.try_emplace(watch, Changed::value_type());
        auto& changed = entry->second;
        if (name.empty() || name == ".hidden")
            changed.reset();
        else if (changed && (changed->empty() || changed->back() != name)) // A write comes as many events.
            changed->emplace_back(name);
    }

    FileDescriptor m_descriptor;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QTimer m_pause;
    std::map<int, Listeners> m_listeners;
};

namespace {

template <typename Queue>
class WatchSource : public DirectoryEvents::Source {
public:
    WatchSource(std::shared_ptr<Queue> queue, int watch, Subscription subscription)
        : m_queue(std::move(queue)), m_watch(watch), m_subscription(std::move(subscription)) {}
    ~WatchSource() override {
        m_subscription.cancel();
        m_queue->release(m_watch);
    }
    int identity() const override { return m_watch; }

private:
    std::shared_ptr<Queue> m_queue;
    int m_watch;
    Subscription m_subscription;
};

} // namespace

InotifyDirectoryEvents::InotifyDirectoryEvents() : m_queue(std::make_shared<Queue>()) {}

InotifyDirectoryEvents::~InotifyDirectoryEvents() = default;

std::expected<std::unique_ptr<DirectoryEvents::Source>, std::errc>
InotifyDirectoryEvents::watch(Url const& folder, std::function<void(Changed const&)> onEvent) {
    if (!*m_queue)
        return std::unexpected(std::errc::too_many_files_open);
    auto const watch = m_queue->add(folder);
    if (!watch)
        return std::unexpected(watch.error());
    return std::make_unique<WatchSource<Queue>>(m_queue, *watch, m_queue->listen(*watch, std::move(onEvent)));
}

void InotifyDirectoryEvents::deliverPending() {
    if (*m_queue)
        m_queue->drain();
}

} // namespace taliro
