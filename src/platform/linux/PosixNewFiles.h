#pragma once

#include "platform/NewFiles.h"

namespace taliro {

/// New files by way of a hidden one beside them, synced and renamed without replacing.
class PosixNewFiles : public NewFiles {
public:
    Result write(Url const& destination, std::string_view bytes) override;
    Result keep(Url const& temporary, Url const& destination) override;
    void discard(Url const& temporary) override;
};

} // namespace taliro
