#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace taliro::testing {

/// A folder of the test's own, gone with it.
class TemporaryFolder {
public:
    explicit TemporaryFolder(std::filesystem::path const& parent = std::filesystem::temp_directory_path()) {
        auto pattern = (parent / "taliro-test-XXXXXX").string();
        m_path = ::mkdtemp(pattern.data());
    }
    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    std::filesystem::path const& path() const { return m_path; }
    std::filesystem::path operator/(std::string_view name) const { return m_path / name; }
    std::filesystem::path write(std::string_view name, std::string_view bytes) const {
        auto const file = m_path / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
        return file;
    }
    std::filesystem::path makeFolder(std::string_view name) const {
        std::filesystem::create_directories(m_path / name);
        return m_path / name;
    }

private:
    std::filesystem::path m_path;
};

inline std::string contentsOf(std::filesystem::path const& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace taliro::testing
