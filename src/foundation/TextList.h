#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace taliro {

/// Many short texts, one after the other in one block of memory.
class TextList {
public:
    std::size_t size() const { return m_ends.size(); }
    std::string_view operator[](std::size_t index) const {
        auto const begin = index == 0 ? 0 : m_ends[index - 1];
        return {m_bytes.data() + begin, m_ends[index] - begin};
    }

    /// Adds the text that `write(bytes)` appends to what is in `bytes`.
    template <typename Write>
    void add(Write const& write) {
        write(m_bytes);
        m_ends.push_back(m_bytes.size());
    }
    void append(TextList const& other) {
        auto const begin = m_bytes.size();
        m_bytes += other.m_bytes;
        for (auto end : other.m_ends)
            m_ends.push_back(begin + end);
    }

private:
    std::string m_bytes;
    std::vector<std::size_t> m_ends;
};

} // namespace taliro
