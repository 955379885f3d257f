#pragma once

#include "platform/DirectSave.h"

namespace taliro {

/// The X Direct Save protocol's part that goes by a property of the drag's source window.
class XcbDirectSave : public DirectSave {
public:
    std::optional<std::string> promisedName() override;
    void setDestination(Url const& destination) override;
};

} // namespace taliro
