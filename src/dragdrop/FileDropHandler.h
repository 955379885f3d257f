#pragma once

#include "dragdrop/ProgressCenter.h"
#include "foundation/Url.h"

#include <vector>

namespace taliro {

class ToastCenter;
struct Platform;

/// Moves or copies what is dropped on a folder, puts into the trash what is dropped on that, and says what
/// became of it by a toast.
class FileDropHandler {
public:
    FileDropHandler(Platform& platform, ToastCenter& toasts, ProgressCenter& progress);
    static FileDropHandler& shared();

    enum class Outcome { nothing, refused, done, failed, cancelled };

    /// Puts `source` into the folder `into` under its own name: never over what is there, never into itself.
    /// Returns when it is done; the event loop turns meanwhile where bytes have to be moved.
    Outcome perform(Url source, Url into, bool copy);
    /// One after the other; the user's Cancel ends them all.
    void performAll(std::vector<Url> sources, Url into, bool copy);

private:
    struct Request;

    Outcome perform(Request const& request, ProgressCenter::Operation& operation);
    bool isRefused(Request const& request);
    Outcome transfer(Request const& request, ProgressCenter::Operation& operation);
    void announce(Request const& request);

    Platform& m_platform;
    ToastCenter& m_toasts;
    ProgressCenter& m_progress;
};

} // namespace taliro
