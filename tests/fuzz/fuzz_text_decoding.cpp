#include "Fuzz.h"

#include "foundation/Text.h"
#include "foundation/TextDecoding.h"

void taliro::tryBytes(std::string_view bytes) {
    if (auto const text = decodeText(bytes); text && !isValidUtf8(text->utf8))
        __builtin_trap();
}
