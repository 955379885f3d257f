#pragma once

#include "foundation/Url.h"

#include <optional>
#include <string>

namespace taliro {

/// A file that a drag's source promises to write itself where it is told to: the X Direct Save protocol.
class DirectSave {
public:
    /// The format that a promising source offers. Its data asks the source to save, and answers "S" (saved),
    /// "F" (can't get there: take the bytes instead) or "E".
    static constexpr char format[] = "XdndDirectSave0";

    virtual ~DirectSave() = default;
    /// The name that the source would give the file; as written there.
    virtual std::optional<std::string> promisedName() = 0;
    /// Tells the source where to save.
    virtual void setDestination(Url const& destination) = 0;
};

} // namespace taliro
