#include "sidebar/BinaryPlistCheck.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

namespace taliro {

namespace {

constexpr std::string_view magic = "bplist00";
constexpr std::size_t trailerSize = 32;
constexpr unsigned maxDepth = 64;
constexpr std::uint64_t maxExpandedBytes = 128 << 20;
/// What a parsed object takes beside its content, generously.
constexpr std::uint64_t bytesPerObject = 128;

/// The format: "bplist00", objects, a table of their offsets, and a trailer of 32 bytes that tells how wide
/// offsets and references are, how many objects there are, which is the top one, and where the table begins.
class Checker {
public:
    explicit Checker(std::string_view bytes) : m_bytes(bytes) {}

    bool check() {
        if (!readTrailer() || !readObjects())
            return false;
        return measureFromTop();
    }

private:
    enum class State { unseen, open, done };
    struct Object {
        std::uint64_t size = 0;           ///< bytes of content or of references
        std::uint64_t references = 0;     ///< offset of the first reference
        std::uint64_t referenceCount = 0; ///< a dictionary's keys and values
        State state = State::unseen;
        std::uint64_t expanded = 0; ///< bytes of it with all that it contains, once parsed
        unsigned depth = 1;

        void take(Object const& child) {
            expanded += child.expanded;
            depth = std::max(depth, child.depth + 1);
        }
    };

    /// The big-endian number of `width` bytes at `offset`, which lies within the bytes.
    std::uint64_t number(std::uint64_t offset, std::uint64_t width) const {
        std::uint64_t value = 0;
        for (std::uint64_t i = 0; i < width; ++i)
            value = value << 8 | static_cast<unsigned char>(m_bytes[offset + i]);
        return value;
    }

    bool readTrailer() {
        if (!m_bytes.starts_with(magic) || m_bytes.size() < magic.size() + trailerSize)
            return false;
        auto const trailer = m_bytes.size() - trailerSize;
        m_offsetSize = number(trailer + 6, 1);
        m_referenceSize = number(trailer + 7, 1);
        m_count = number(trailer + 8, 8);
        m_top = number(trailer + 16, 8);
        m_tableStart = number(trailer + 24, 8);
        return m_offsetSize >= 1 && m_offsetSize <= 8 && m_referenceSize >= 1 && m_referenceSize <= 8 &&
               m_tableStart >= magic.size() && m_tableStart <= trailer &&
               m_count <= (trailer - m_tableStart) / m_offsetSize && m_top < m_count;
    }

    bool readObjects() {
        m_objects.reserve(m_count);
        std::uint64_t total = 0;
        for (std::uint64_t i = 0; i < m_count; ++i) {
            auto const object = readObject(number(m_tableStart + i * m_offsetSize, m_offsetSize));
            if (!object)
                return false;
            // Objects that overlap could make little bytes into much work.
            total += object->size;
            if (total > m_tableStart)
                return false;
            m_objects.push_back(*object);
            m_objects.back().expanded = bytesPerObject + object->size;
        }
        return true;
    }

    bool fits(std::uint64_t offset, std::uint64_t length) const {
        return offset <= m_tableStart && length <= m_tableStart - offset;
    }

    std::optional<Object> readObject(std::uint64_t offset) const {
        if (offset < magic.size() || !fits(offset, 1))
            return std::nullopt;
        auto const marker = number(offset++, 1);
        auto const kind = marker >> 4;
        auto const low = marker & 15;
        switch (kind) {
        case 0x0:
            return low == 0 || low == 8 || low == 9 ? std::optional(Object{}) : std::nullopt;
        case 0x1:
            return low <= 4 ? plain(offset, std::uint64_t{1} << low) : std::nullopt;
        case 0x2:
            return low == 2 || low == 3 ? plain(offset, std::uint64_t{1} << low) : std::nullopt;
        case 0x3:
            return low == 3 ? plain(offset, 8) : std::nullopt;
        case 0x8:
            return low <= 7 ? plain(offset, low + 1) : std::nullopt;
        case 0x4:
        case 0x5:
            return counted(offset, low, 1);
        case 0x6:
            return counted(offset, low, 2);
        case 0xA:
            return container(offset, low, 1);
        case 0xD:
            return container(offset, low, 2);
        default:
            return std::nullopt;
        }
    }

    std::optional<Object> plain(std::uint64_t offset, std::uint64_t length) const {
        return fits(offset, length) ? std::optional(Object{.size = length}) : std::nullopt;
    }

    /// The count in the marker's low half or, where that is full, in the integer object that follows.
    std::optional<std::uint64_t> readCount(std::uint64_t& offset, std::uint64_t low) const {
        if (low != 15)
            return low;
        if (!fits(offset, 1))
            return std::nullopt;
        auto const marker = number(offset++, 1);
        auto const width = std::uint64_t{1} << (marker & 15);
        if (marker >> 4 != 0x1 || width > 8 || !fits(offset, width))
            return std::nullopt;
        auto const count = number(offset, width);
        offset += width;
        return count;
    }

    std::optional<Object> counted(std::uint64_t offset, std::uint64_t low, std::uint64_t unit) const {
        auto const count = readCount(offset, low);
        if (!count || *count > m_tableStart / unit)
            return std::nullopt;
        return plain(offset, *count * unit);
    }

    std::optional<Object> container(std::uint64_t offset, std::uint64_t low, std::uint64_t perItem) const {
        auto const count = readCount(offset, low);
        if (!count || *count > m_tableStart || !fits(offset, *count * perItem * m_referenceSize))
            return std::nullopt;
        auto const references = *count * perItem;
        Object const object{
            .size = references * m_referenceSize, .references = offset, .referenceCount = references};
        for (std::uint64_t i = 0; i < references; ++i)
            if (referenceAt(object, i) >= m_count)
                return std::nullopt;
        return object;
    }

    std::uint64_t referenceAt(Object const& object, std::uint64_t index) const {
        return number(object.references + index * m_referenceSize, m_referenceSize);
    }

    /// Goes through the containers depth first, on a stack of its own, and into each object once.
    bool measureFromTop() {
        struct Visit {
            std::uint64_t index;
            std::uint64_t next = 0; ///< the reference to look at
        };
        std::vector<Visit> path{{m_top}};
        while (!path.empty()) {
            auto& visit = path.back();
            auto& object = m_objects[visit.index];
            object.state = State::open;
            if (visit.next == object.referenceCount) {
                object.state = State::done;
                path.pop_back();
                continue;
            }
            auto const child = referenceAt(object, visit.next);
            switch (m_objects[child].state) {
            case State::open:
                return false; // It contains itself.
            case State::unseen:
                path.push_back({child});
                break;
            case State::done:
                object.take(m_objects[child]);
                ++visit.next;
                break;
            }
            if (path.size() > maxDepth || object.depth > maxDepth || object.expanded > maxExpandedBytes)
                return false;
        }
        return true;
    }

    std::string_view m_bytes;
    std::uint64_t m_offsetSize = 0;
    std::uint64_t m_referenceSize = 0;
    std::uint64_t m_count = 0;
    std::uint64_t m_top = 0;
    std::uint64_t m_tableStart = 0;
    std::vector<Object> m_objects;
};

} // namespace

bool isSoundBinaryPlist(std::string_view bytes) {
    return Checker(bytes).check();
}

} // namespace taliro
