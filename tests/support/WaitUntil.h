#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

namespace taliro::testing {

/// Runs the event loop until `condition` holds; whether it did before the time, generous for a busy machine,
/// was over. Sleeps between events, but looks every 10 ms: not all that is waited for comes as one.
bool waitUntil(auto const& condition) {
    QDeadlineTimer const end(60000);
    QTimer look;
    look.start(10);
    while (!condition() && !end.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return condition();
}

} // namespace taliro::testing
