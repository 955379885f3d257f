#pragma once

#include "platform/Downloads.h"

#include <chrono>

class QNetworkAccessManager;

namespace taliro {

/// Downloads by Qt's network stack, straight to disk.
class QtDownloads : public Downloads {
public:
    struct Limits {
        int redirects = 10;
        std::int64_t bytes = std::int64_t(64) << 30;
        std::chrono::milliseconds silence = std::chrono::seconds(30); ///< the longest time without a byte
    };

    QtDownloads() : QtDownloads(Limits()) {}
    explicit QtDownloads(Limits limits);
    ~QtDownloads() override;

    std::unique_ptr<Task> start(Url const& link, Url const& folder, Callbacks callbacks) override;

private:
    class RunningTask;

    Limits m_limits;
    std::unique_ptr<QNetworkAccessManager> m_network; ///< made with the first download
};

} // namespace taliro
