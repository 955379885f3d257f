#pragma once

#include <expected>
#include <string>

namespace taliro {

enum class LoginItemStatus { notRegistered, enabled, requiresApproval, notFound, unknown };

/// Whether the program starts when the user logs in. Failures are told in the user's words.
class LoginItems {
public:
    virtual ~LoginItems() = default;
    virtual LoginItemStatus status() = 0;
    virtual std::expected<void, std::string> registerItem() = 0;
    virtual std::expected<void, std::string> unregisterItem() = 0;
};

} // namespace taliro
