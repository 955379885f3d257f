#include "platform/PropertyValue.h"

namespace taliro {

bool PropertyValue::truth() const {
    if (auto const* flag = as<bool>())
        return *flag;
    return number().value_or(0) != 0;
}

std::optional<double> PropertyValue::number() const {
    if (auto const* whole = as<std::int64_t>())
        return static_cast<double>(*whole);
    if (auto const* real = as<double>())
        return *real;
    return std::nullopt;
}

std::optional<std::vector<std::string>> PropertyValue::strings() const {
    auto const* list = as<List>();
    if (!list)
        return std::nullopt;
    std::vector<std::string> texts;
    texts.reserve(list->size());
    for (auto const& item : *list) {
        auto const* text = item.as<std::string>();
        if (!text)
            return std::nullopt;
        texts.push_back(*text);
    }
    return texts;
}

} // namespace taliro
