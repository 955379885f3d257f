#pragma once

#include "platform/ImageCodec.h"

namespace taliro {

class QtImageCodec : public ImageCodec {
public:
    std::optional<std::string> png(std::string_view bytes) override;
};

} // namespace taliro
