#include "dragdrop/ToastCenter.h"

#include "platform/Platform.h"

namespace taliro {

using namespace std::chrono_literals;

ToastCenter& ToastCenter::shared() {
    // Never destroyed: its pending work belongs to a queue that goes first.
    static auto& center = *new ToastCenter(Platform::current().mainQueue);
    return center;
}

void ToastCenter::show(std::string message, std::string icon) {
    current = Toast{++m_shown, std::move(icon), std::move(message)};
    m_dismissWork = m_queue.after(2s, [this] { current = std::optional<Toast>(); });
}

} // namespace taliro
