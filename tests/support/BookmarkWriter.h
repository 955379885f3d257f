#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>
#include <vector>

namespace taliro::testing {

/// Writes bookmarks in the record layout.
class BookmarkWriter {
public:
    using Data = std::vector<std::uint8_t>;

    /// The bookmark of an absolute path.
    static Data bookmark(std::filesystem::path const& path) {
        std::vector<std::string> components;
        for (auto const& part : path.relative_path())
            components.push_back(part);
        return BookmarkWriter().finish(components);
    }
    /// One whose path, a list of names, lies under `key`.
    Data finish(std::vector<std::string> const& components, std::uint32_t key = 0x1004) {
        std::vector<std::uint32_t> offsets;
        for (auto const& component : components)
            offsets.push_back(record(0x0101, component));
        auto const path = record(0x0601, numbers(offsets));
        auto const table = static_cast<std::uint32_t>(m_data.size());
        for (auto const value : {32u, 0xFFFFFFFEu, 1u, 0u, 2u, 0x1010u, 0u, 0u, key, path, 0u})
            number(value);
        for (int i = 0; i < 4; ++i)
            m_data[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(table >> (8 * i));
        BookmarkWriter head;
        head.m_data = {'b', 'o', 'o', 'k'};
        head.number(static_cast<std::uint32_t>(48 + m_data.size()));
        head.number(0x10040000);
        head.number(48);
        head.m_data.resize(48);
        head.m_data.insert(head.m_data.end(), m_data.begin(), m_data.end());
        return head.m_data;
    }

private:
    void number(std::uint32_t value) {
        for (int shift = 0; shift < 32; shift += 8)
            m_data.push_back(static_cast<std::uint8_t>(value >> shift));
    }
    std::uint32_t record(std::uint32_t type, std::string_view content) {
        auto const offset = static_cast<std::uint32_t>(m_data.size());
        number(static_cast<std::uint32_t>(content.size()));
        number(type);
        m_data.insert(m_data.end(), content.begin(), content.end());
        m_data.resize((m_data.size() + 3) / 4 * 4);
        return offset;
    }
    static std::string numbers(std::vector<std::uint32_t> const& values) {
        BookmarkWriter writer;
        for (auto const value : values)
            writer.number(value);
        return {writer.m_data.begin() + 4, writer.m_data.end()};
    }

    Data m_data = Data(4); ///< begins with where the table lies
};

} // namespace taliro::testing
