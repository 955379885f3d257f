#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace taliro {

/// A keyed archive: a binary property list that holds a graph of objects, each a reference into one table.
/// Objects are looked at one at a time, so that cycles and shared objects cost nothing. The bytes may be any.
class KeyedArchive {
public:
    /// A place in the object table; none stands for an object that is absent.
    using Object = std::optional<std::size_t>;
    using Dictionary = std::map<std::string, Object, std::less<>>;

    /// Nothing where the bytes are no keyed archive.
    static std::optional<KeyedArchive> open(std::string_view bytes);

    KeyedArchive(KeyedArchive&&) noexcept;
    ~KeyedArchive();

    /// The object that was archived.
    Object root() const;

    // Nothing where the object is of another type.
    std::optional<Dictionary> dictionary(Object object) const; ///< all its keys are strings
    std::optional<std::vector<Object>> array(Object object) const;
    std::optional<std::string> string(Object object) const;
    std::optional<std::vector<std::uint8_t>> data(Object object) const;

private:
    struct Table;
    explicit KeyedArchive(std::unique_ptr<Table> table);

    std::unique_ptr<Table> m_table;
};

} // namespace taliro
