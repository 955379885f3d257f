#include "Fuzz.h"

#include "platform/linux/Accelerators.h"

void taliro::tryBytes(std::string_view bytes) {
    auto const raw = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
    auto const text = QString::fromUtf8(raw);
    parseGtkAccelerator(text);
    for (auto const& key : kdeAccelerators(text) + xfceAccelerators(raw) + openboxKeys(raw)) {
        parseQtAccelerator(key);
        parseOpenboxKey(key);
    }
}
