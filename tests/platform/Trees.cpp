#include "Trees.h"

#include <algorithm>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace taliro::testing {

namespace fs = std::filesystem;

OtherVolume::OtherVolume(std::int64_t bytes) {
    auto pattern = (fs::temp_directory_path() / "taliro-volume-XXXXXX").string();
    m_path = ::mkdtemp(pattern.data());
    m_isMounted =
        ::mount("tmpfs", m_path.c_str(), "tmpfs", 0, ("size=" + std::to_string(bytes)).c_str()) == 0;
    struct stat here {
    }, there{};
    if (m_isMounted)
        return;
    fs::remove(m_path);
    m_path.clear();
    auto shared = std::string("/dev/shm/taliro-volume-XXXXXX");
    if (::stat(fs::temp_directory_path().c_str(), &here) == 0 && ::stat("/dev/shm", &there) == 0 &&
        here.st_dev != there.st_dev && ::mkdtemp(shared.data()))
        m_path = shared;
}

OtherVolume::~OtherVolume() {
    if (m_isMounted)
        ::umount2(m_path.c_str(), MNT_DETACH);
    std::error_code ignored;
    if (!m_path.empty())
        fs::remove_all(m_path, ignored);
}

namespace {

std::string attributesText(fs::path const& item) {
    std::string names(4096, '\0');
    auto const size = ::llistxattr(item.c_str(), names.data(), names.size());
    std::vector<std::string> found;
    for (auto const* name = names.data(); size > 0 && name < names.data() + size;
         name += std::string_view(name).size() + 1) {
        std::string value(65536, '\0');
        auto const length = ::lgetxattr(item.c_str(), name, value.data(), value.size());
        found.push_back(std::string(name) + "=" +
                        value.substr(0, static_cast<std::size_t>(std::max<ssize_t>(length, 0))));
    }
    std::ranges::sort(found);
    std::string text;
    for (auto const& attribute : found)
        text += " " + attribute;
    return text;
}

void describeItem(fs::path const& item, std::string const& name, std::map<std::string, std::string>& out,
                  std::map<ino_t, std::string>& firstNames) {
    struct stat status {};
    if (::lstat(item.c_str(), &status) != 0)
        return;
    auto text = std::to_string(status.st_mode) + " " + std::to_string(status.st_uid) + ":" +
                std::to_string(status.st_gid) + " " + std::to_string(status.st_mtim.tv_sec) + "." +
                std::to_string(status.st_mtim.tv_nsec);
    if (!S_ISDIR(status.st_mode))
        text += " same as " + firstNames.try_emplace(status.st_ino, name).first->second;
    if (S_ISLNK(status.st_mode))
        text += " -> " + fs::read_symlink(item).string();
    if (S_ISREG(status.st_mode))
        text += " " + std::to_string(status.st_size) + " #" +
                std::to_string(std::hash<std::string>{}(contentsOf(item)));
    out[name] = text + attributesText(item);
    if (!S_ISDIR(status.st_mode))
        return;
    std::vector<fs::path> children;
    for (auto const& child : fs::directory_iterator(item))
        children.push_back(child.path());
    std::ranges::sort(children);
    for (auto const& child : children)
        describeItem(child, name + "/" + child.filename().string(), out, firstNames);
}

void setTime(fs::path const& item, std::int64_t seconds, long nanoseconds) {
    timespec const times[] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
    ::utimensat(AT_FDCWD, item.c_str(), times, AT_SYMLINK_NOFOLLOW);
}

} // namespace

std::map<std::string, std::string> describe(fs::path const& root) {
    std::map<std::string, std::string> found;
    std::map<ino_t, std::string> firstNames;
    describeItem(root, "", found, firstNames);
    return found;
}

std::int64_t allocated(fs::path const& file) {
    struct stat status {};
    return ::stat(file.c_str(), &status) == 0 ? status.st_blocks * 512 : -1;
}

void makeRichTree(fs::path const& root) {
    auto const write = [&](std::string const& name, std::string const& bytes) {
        fs::create_directories((root / name).parent_path());
        std::ofstream(root / name, std::ios::binary) << bytes;
    };
    write("empty", "");
    write("small", "bytes");
    write("large", std::string(3'000'000, 'x') + "end");
    write("odd \xff\nname", "");
    write(std::string(255, 'n'), "long");
    write("deep/er/file", "1");
    write("closed/inside", "2");
    fs::create_directories(root / "no one");
    fs::create_symlink("deep/er", root / "to folder");
    fs::create_symlink(std::string(3000, 'y'), root / "to nowhere");
    fs::create_hard_link(root / "large", root / "deep/large again");
    ::mkfifo((root / "pipe").c_str(), 0640);
    ::mknod((root / "socket").c_str(), S_IFSOCK | 0600, 0);

    // 1 MB of bytes between and after holes of 2 MB each.
    auto const holes = ::open((root / "holes").c_str(), O_RDWR | O_CREAT, 0600);
    std::string const bytes(1 << 20, 'h');
    EXPECT_EQ(::pwrite(holes, bytes.data(), bytes.size(), 2 << 20), 1 << 20);
    EXPECT_EQ(::ftruncate(holes, 5 << 20), 0);
    ::close(holes);

    ::setxattr((root / "small").c_str(), "user.note", "worth", 5, 0);
    ::setxattr((root / "deep").c_str(), "user.folder", std::string(1000, 'a').data(), 1000, 0);
    ::chmod((root / "small").c_str(), 0754);
    ::chmod((root / "no one").c_str(), 01777);
    ::chmod((root / "closed/inside").c_str(), 04400);
    EXPECT_TRUE(::geteuid() != 0 || ::chown((root / "small").c_str(), 1234, 5678) == 0);
    ::chmod((root / "closed").c_str(), 0500);
    std::int64_t seconds = 1'000'000'000;
    for (auto const* name : {"small", "large", "to nowhere", "pipe", "deep/er", "closed", "deep"})
        setTime(root / name, ++seconds, 123'456'789);
    setTime(root, 5, 6);
}

} // namespace taliro::testing
