#include "platform/linux/MountVolumes.h"

#include <array>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace taliro {

namespace {

/// What the kernel and udev know of a block device.
struct BlockDevice {
    std::optional<std::string> label;
    std::optional<bool> isRemovable;
    std::optional<bool> isInternal;
};

/// Spaces and the like are written as `\x20`.
std::string unescapedLabel(std::string_view text) {
    std::string label;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.substr(i).starts_with("\\x") && i + 3 < text.size()) {
            label += static_cast<char>(std::stoi("0" + std::string(text.substr(i + 2, 2)), nullptr, 16));
            i += 3;
        } else {
            label += text[i];
        }
    }
    return label;
}

std::optional<std::string> udevLabel(std::string const& device) {
    constexpr std::string_view key = "E:ID_FS_LABEL_ENC=";
    std::ifstream database("/run/udev/data/b" + device);
    for (std::string line; std::getline(database, line);)
        if (line.starts_with(key))
            return unescapedLabel(std::string_view(line).substr(key.size()));
    return std::nullopt;
}

/// The device that the mount's files are on; a mount of btrfs tells a number that isn't one.
std::string deviceNumber(Mount const& mount) {
    struct stat status {};
    if (mount.source.starts_with("/dev/") && ::stat(mount.source.c_str(), &status) == 0 &&
        S_ISBLK(status.st_mode))
        return std::to_string(major(status.st_rdev)) + ":" + std::to_string(minor(status.st_rdev));
    return std::to_string(mount.major) + ":" + std::to_string(mount.minor);
}

BlockDevice describeDevice(Mount const& mount) {
    BlockDevice known;
    auto const number = deviceNumber(mount);
    std::error_code missing;
    auto const device = std::filesystem::canonical("/sys/dev/block/" + number, missing);
    if (missing)
        return known;
    known.label = udevLabel(number);
    known.isInternal = device.string().find("/usb") == std::string::npos;
    for (auto const& place : {device, device.parent_path()}) // A partition's disk is the one that says.
        if (std::ifstream file(place / "removable"); file.is_open())
            known.isRemovable = file.get() == '1';
    return known;
}

} // namespace

MountVolumes::MountVolumes(FileManager& files, std::function<QDBusConnection()> connect)
    : m_files(files),
      m_connect(std::move(connect)),
      m_mountTable(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC)) {}

MountVolumes::~MountVolumes() = default;

std::string MountVolumes::readMountTable() const {
    std::string table;
    std::array<char, 16 * 1024> buffer;
    ::lseek(m_mountTable.get(), 0, SEEK_SET);
    for (ssize_t read; (read = ::read(m_mountTable.get(), buffer.data(), buffer.size())) > 0;)
        table.append(buffer.data(), static_cast<std::size_t>(read));
    return table;
}

std::vector<Volume> MountVolumes::mounted() {
    std::vector<Volume> volumes;
    auto const home = m_files.homeDirectory().path();
    for (auto const& mount : parseMounts(readMountTable()))
        if (holdsFiles(mount))
            volumes.push_back(describe(mount, home));
    return volumes;
}

Volume MountVolumes::describe(Mount const& mount, std::string_view home) {
    Volume volume{.mountPoint = Url::file(mount.point, true)};
    volume.isLocal = !isRemote(mount);
    volume.isBrowsable = isForBrowsing(mount, home);
    if (!*volume.isBrowsable)
        return volume;
    if (auto const* disk = disks().mountedAt(mount.point)) {
        volume.isBrowsable = !disk->isIgnored;
        volume.isRemovable = disk->isRemovable;
        volume.isInternal = disk->isInternal;
        volume.name = disk->label.empty() ? std::nullopt : std::optional(disk->label);
        return volume;
    }
    auto const device = describeDevice(mount);
    volume.isRemovable = device.isRemovable;
    volume.isInternal = device.isInternal;
    volume.name = device.label;
    return volume;
}

UDisks2& MountVolumes::disks() {
    if (!m_disks) {
        m_disks = std::make_unique<UDisks2>(m_connect());
        QObject::connect(m_disks.get(), &UDisks2::changed, m_disks.get(), [this] { tellIfChanged(); });
        m_disks->refresh();
    }
    return *m_disks;
}

Subscription MountVolumes::observeChanges(std::function<void()> observer) {
    if (!m_mountsChanged && m_mountTable) {
        m_told = mounted();
        // The kernel marks the open table with an exceptional condition at every mount and unmount.
        m_mountsChanged = std::make_unique<QSocketNotifier>(m_mountTable.get(), QSocketNotifier::Exception);
        QObject::connect(m_mountsChanged.get(), &QSocketNotifier::activated, m_mountsChanged.get(),
                         [this] { tellIfChanged(); });
    }
    return m_observers.add(std::move(observer));
}

void MountVolumes::tellIfChanged() {
    auto volumes = mounted();
    if (volumes == m_told)
        return;
    m_told = std::move(volumes);
    m_observers.notify();
}

void MountVolumes::eject(Url const& mountPoint, Ejected done) {
    disks().eject(mountPoint.path(), std::move(done));
}

} // namespace taliro
