#include "platform/linux/MountTable.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <unordered_set>

namespace taliro {

namespace {

using std::string_view_literals::operator""sv;

constexpr std::array kernelTypes{
    "autofs"sv, "binder"sv, "binfmt_misc"sv, "bpf"sv, "cgroup"sv, "cgroup2"sv, "configfs"sv, "cpuset"sv,
    "debugfs"sv, "devfs"sv, "devpts"sv, "devtmpfs"sv, "efivarfs"sv, "functionfs"sv, "fusectl"sv,
    "hugetlbfs"sv, "mqueue"sv, "nfsd"sv, "none"sv, "nsfs"sv, "proc"sv, "pstore"sv, "ramfs"sv, "rootfs"sv,
    "rpc_pipefs"sv, "securityfs"sv, "selinuxfs"sv, "smackfs"sv, "squashfs"sv, "sysfs"sv, "tracefs"sv,
    // Services that show files which are elsewhere already.
    "fuse.gvfsd-fuse"sv, "fuse.portal"sv, "fuse.lxcfs"sv, "fuse.snapfuse"sv, "fuse.vmware-vmblock"sv,
    "fuse.AppImage"sv};

constexpr std::array remoteTypes{"9p"sv,
                                 "afs"sv,
                                 "ceph"sv,
                                 "cifs"sv,
                                 "coda"sv,
                                 "davfs"sv,
                                 "fuse.curlftpfs"sv,
                                 "fuse.davfs2"sv,
                                 "fuse.glusterfs"sv,
                                 "fuse.rclone"sv,
                                 "fuse.s3fs"sv,
                                 "fuse.sshfs"sv,
                                 "glusterfs"sv,
                                 "gfs2"sv,
                                 "ncpfs"sv,
                                 "nfs"sv,
                                 "nfs4"sv,
                                 "smb3"sv,
                                 "smbfs"sv};

/// Where people and their desktops mount things.
constexpr std::array userFolders{"/media"sv, "/mnt"sv, "/run/media"sv, "/Volumes"sv};

/// Parts of the system, with all below them.
constexpr std::array systemFolders{"/bin"sv,     "/boot"sv,  "/dev"sv,   "/efi"sv,  "/etc"sv,  "/home"sv,
                                   "/lib"sv,     "/lib32"sv, "/lib64"sv, "/nix"sv,  "/opt"sv,  "/ostree"sv,
                                   "/proc"sv,    "/root"sv,  "/run"sv,   "/sbin"sv, "/snap"sv, "/sys"sv,
                                   "/sysroot"sv, "/tmp"sv,   "/usr"sv,   "/var"sv};

bool isIn(std::string_view path, std::string_view folder) {
    return path.starts_with(folder) && path.size() > folder.size() && path[folder.size()] == '/';
}

bool isOrIsIn(std::string_view path, std::string_view folder) {
    return path == folder || isIn(path, folder);
}

/// Spaces and the like are written as a backslash and three octal digits.
std::string unescaped(std::string_view text) {
    std::string bytes;
    auto const isOctal = [](char digit) { return digit >= '0' && digit <= '7'; };
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 3 < text.size() && isOctal(text[i + 1]) && isOctal(text[i + 2]) &&
            isOctal(text[i + 3])) {
            bytes +=
                static_cast<char>((text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 + (text[i + 3] - '0'));
            i += 3;
        } else {
            bytes += text[i];
        }
    }
    return bytes;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (;;) {
        auto const end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos)
            return parts;
        text.remove_prefix(end + 1);
    }
}

bool readDevice(std::string_view text, Mount& mount) {
    auto const* end = text.data() + text.size();
    auto const first = std::from_chars(text.data(), end, mount.major);
    if (first.ec != std::errc{} || first.ptr == end || *first.ptr != ':')
        return false;
    auto const second = std::from_chars(first.ptr + 1, end, mount.minor);
    return second.ec == std::errc{} && second.ptr == end;
}

/// Fields: mount id, parent id, device, root, mount point, options, any number of tags, "-", type, source,
/// options.
std::optional<Mount> parseLine(std::string_view line) {
    auto const fields = split(line, ' ');
    auto const dash =
        std::ranges::find(fields.size() > 6 ? fields.begin() + 6 : fields.end(), fields.end(), "-"sv);
    Mount mount;
    if (fields.end() - dash < 3 || !readDevice(fields[2], mount))
        return std::nullopt;
    mount.root = unescaped(fields[3]);
    mount.point = unescaped(fields[4]);
    mount.type = dash[1];
    mount.source = unescaped(dash[2]);
    return mount.point.starts_with('/') ? std::optional(std::move(mount)) : std::nullopt;
}

} // namespace

std::vector<Mount> parseMounts(std::string_view mountinfo) {
    auto const lines = split(mountinfo, '\n');
    std::vector<Mount> mounts;
    std::unordered_set<std::string> points;
    for (auto line = lines.rbegin(); line != lines.rend(); ++line)
        if (auto mount = parseLine(*line); mount && points.insert(mount->point).second)
            mounts.push_back(std::move(*mount));
    std::ranges::reverse(mounts);
    return mounts;
}

bool holdsFiles(Mount const& mount) {
    return std::ranges::find(kernelTypes, mount.type) == kernelTypes.end();
}

bool isForBrowsing(Mount const& mount, std::string_view home) {
    if (!holdsFiles(mount))
        return false;
    std::string_view const point = mount.point;
    if (std::ranges::any_of(userFolders, [&](auto folder) { return isOrIsIn(point, folder); }))
        return true;
    if (isIn(point, home))
        return point.substr(home.size()).find("/.") == std::string_view::npos;
    if (point == "/" ||
        std::ranges::any_of(systemFolders, [&](auto folder) { return isOrIsIn(point, folder); }))
        return false;
    // Elsewhere, a whole disk or share; not a folder made to appear in a second place.
    return isRemote(mount) ||
           (mount.source.starts_with("/dev/") && (mount.root == "/" || mount.type == "btrfs"));
}

bool isRemote(Mount const& mount) {
    return std::ranges::find(remoteTypes, mount.type) != remoteTypes.end();
}

} // namespace taliro
