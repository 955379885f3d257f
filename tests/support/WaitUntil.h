#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>

namespace taliro::testing {

/// Runs the event loop until `condition` holds; whether it did before the time, generous for a busy machine,
/// was over.
bool waitUntil(auto const& condition) {
    QDeadlineTimer const end(60000);
    while (!condition() && !end.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
    return condition();
}

} // namespace taliro::testing
