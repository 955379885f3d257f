#include "foundation/WorkItem.h"

#include <utility>

namespace taliro {

void WorkItem::cancel() {
    if (auto task = std::exchange(m_task, nullptr)) {
        // Taken out first: what the task holds may own this item.
        auto const held = std::exchange(*task, nullptr);
    }
}

void WorkItem::run(std::shared_ptr<State> const& task) {
    if (auto action = std::exchange(*task, nullptr))
        action();
}

} // namespace taliro
