#include "platform/linux/QtMainQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QTimer>
#include <chrono>

namespace taliro {

namespace {

class TaskEvent : public QEvent {
public:
    explicit TaskEvent(std::function<void()> task) : QEvent(kind()), task(std::move(task)) {}
    static QEvent::Type kind() {
        static int const type = QEvent::registerEventType();
        return static_cast<QEvent::Type>(type);
    }
    std::function<void()> task;
};

} // namespace

class QtMainQueue::Receiver : public QObject {
public:
    bool event(QEvent* event) override {
        if (event->type() != TaskEvent::kind())
            return QObject::event(event);
        static_cast<TaskEvent*>(event)->task();
        return true;
    }
};

QtMainQueue::QtMainQueue() : m_receiver(std::make_unique<Receiver>()) {}

QtMainQueue::~QtMainQueue() = default;

void QtMainQueue::async(std::function<void()> task) {
    QCoreApplication::postEvent(m_receiver.get(), new TaskEvent(std::move(task)));
}

WorkItem QtMainQueue::after(std::chrono::milliseconds delay, std::function<void()> task) {
    auto shared = std::make_shared<WorkItem::State>(std::move(task));
    // Precise: a spring or a fade that is late by the coarse timer's five per cent is felt.
    QTimer::singleShot(delay, Qt::PreciseTimer, m_receiver.get(), [shared] { WorkItem::run(shared); });
    return WorkItem(std::move(shared));
}

std::chrono::milliseconds QtMainQueue::now() const {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

} // namespace taliro
