#include "foundation/InternedText.h"

#include <mutex>
#include <unordered_set>

namespace taliro {

std::string const* InternedText::kept(std::string_view text) {
    static std::mutex mutex;
    // Never destroyed: others' static objects may hold texts.
    static auto& texts = *new std::unordered_set<std::string>; // Its elements stay where they are.
    std::lock_guard const lock(mutex);
    return &*texts.emplace(text).first;
}

} // namespace taliro
