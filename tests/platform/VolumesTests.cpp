#include "platform/linux/MountTable.h"
#include "platform/linux/MountVolumes.h"
#include "platform/linux/PosixFileManager.h"
#include "platform/linux/UDisks2.h"
#include "support/DiskService.h"
#include "support/PrivateBus.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

#include <sys/mount.h>

namespace taliro::testing {
namespace {

TEST(MountTable, ReadsWhatTheKernelWrites) {
    auto const mounts = parseMounts(
        "24 30 0:22 / /proc rw,relatime shared:5 - proc proc rw\n"
        "97 30 8:17 / /media/mira/My\\040stick rw shared:9 master:1 - vfat /dev/sdb1 rw,uid=1000\n"
        "98 30 8:18 / /media/disk rw - ext4 /dev/sdb2 rw\n"
        "\n"
        "99 30 8:x / /media/bad rw - ext4 /dev/sdb3 rw\n"
        "100 30 8:18 / /media/short rw -\n"
        "101 30 8:19 / relative rw - ext4 /dev/sdb3 rw\n"
        "102 30 8:33 /part\\134 /media/disk rw - ext4 /dev/sdc1 rw\n"
        "103 30 8:33");
    std::vector<Mount> const expected{
        {0, 22, "/", "/proc", "proc", "proc"},
        {8, 17, "/", "/media/mira/My stick", "vfat", "/dev/sdb1"},
        {8, 33, "/part\\", "/media/disk", "ext4", "/dev/sdc1"}, // Over the earlier one.
    };
    EXPECT_EQ(mounts, expected);
}

TEST(MountTable, TellsVolumesFromTheSystem) {
    struct Case {
        char const* point;
        char const* type;
        char const* source;
        bool isForBrowsing;
        char const* root = "/";
    };
    Case const cases[]{
        {"/media/mira/stick", "vfat", "/dev/sdb1", true},
        {"/run/media/mira/stick", "exfat", "/dev/sdb1", true},
        {"/mnt", "tmpfs", "tmpfs", true},
        {"/home/mira/Server", "fuse.sshfs", "host:", true},
        {"/home/mira/.cache/doc", "fuse.portal", "portal", false},
        {"/home/mira/.mounts/x", "ext4", "/dev/sdc1", false},
        {"/home/mira/Cloud", "fuse.rclone", "remote:", true},
        {"/home/mirabel", "ext4", "/dev/sdc1", false},
        {"/data", "xfs", "/dev/sdc1", true},
        {"/data", "xfs", "/dev/sdc1", false, "/elsewhere"},
        {"/pool", "btrfs", "/dev/sdc1", true, "/@pool"},
        {"/srv/share", "nfs4", "server:/share", true},
        {"/data", "tmpfs", "tmpfs", false},
        {"/", "ext4", "/dev/sda2", false},
        {"/boot/efi", "vfat", "/dev/sda1", false},
        {"/home", "ext4", "/dev/sda3", false},
        {"/var/lib/docker/overlay2/x", "overlay", "overlay", false},
        {"/etc/hosts", "ext4", "/dev/sda2", false},
        {"/run/user/1000", "tmpfs", "tmpfs", false},
        {"/run/user/1000/gvfs", "fuse.gvfsd-fuse", "gvfsd-fuse", false},
        {"/snap/core/1", "squashfs", "/dev/loop0", false},
        {"/media/mira/image", "squashfs", "/dev/loop1", false},
        {"/mnt/proc", "proc", "proc", false},
    };
    for (auto const& item : cases)
        EXPECT_EQ(isForBrowsing({8, 1, item.root, item.point, item.type, item.source}, "/home/mira"),
                  item.isForBrowsing)
            << item.point << " " << item.type;
    EXPECT_TRUE(isRemote({0, 50, "/", "/srv/share", "nfs4", "server:/share"}));
    EXPECT_FALSE(isRemote({8, 17, "/", "/media/stick", "vfat", "/dev/sdb1"}));
}

struct Disks : ::testing::Test {
    QDBusConnection serviceBus = PrivateBus::shared().connect(QStringLiteral("disk service"));
    QDBusConnection bus = PrivateBus::shared().connect(QStringLiteral("disk user"));
    std::optional<std::expected<void, std::string>> outcome;

    ~Disks() override {
        QDBusConnection::disconnectFromBus(QStringLiteral("disk service"));
        QDBusConnection::disconnectFromBus(QStringLiteral("disk user"));
    }
    bool ejects(UDisks2& disks, std::string const& mountPoint) {
        outcome.reset();
        disks.eject(mountPoint, [this](auto const& result) { outcome = result; });
        return waitUntil([this] { return outcome.has_value(); }) && outcome->has_value();
    }
};

TEST_F(Disks, UnmountsLocksAndEjects) {
    DiskService service(serviceBus);
    service.disks = {
        {.name = QStringLiteral("sdb1"), .mountPoint = "/media/stick", .label = {}, .isEjectable = true},
        {.name = QStringLiteral("sda1"), .mountPoint = "/media/fixed", .label = {}},
        {.name = QStringLiteral("dm_2d0"),
         .mountPoint = "/media/secret",
         .label = {},
         .cryptoDevice = QStringLiteral("/org/freedesktop/UDisks2/block_devices/sdc1")}};
    UDisks2 disks(bus);
    EXPECT_TRUE(ejects(disks, "/media/stick"));
    EXPECT_TRUE(ejects(disks, "/media/fixed"));
    EXPECT_TRUE(ejects(disks, "/media/secret"));
    QStringList const expected{QStringLiteral("Unmount sdb1"), QStringLiteral("Eject of_sdb1"),
                               QStringLiteral("Unmount sda1"), QStringLiteral("Unmount dm_2d0"),
                               QStringLiteral("Lock sdc1")};
    EXPECT_EQ(service.calls, expected);
}

TEST_F(Disks, TellsWhyAnEjectFailed) {
    UDisks2 disks(bus);
    EXPECT_FALSE(ejects(disks, "/media/stick"));
    EXPECT_EQ(outcome->error(), "The disk service (UDisks2) is not running.");

    DiskService service(serviceBus);
    EXPECT_FALSE(ejects(disks, "/media/stick"));
    EXPECT_EQ(outcome->error(), "The disk service (UDisks2) does not know this volume.");

    service.disks = {
        {.name = QStringLiteral("sdb1"), .mountPoint = "/media/stick", .label = {}, .isEjectable = true}};
    service.unmountError = QStringLiteral("Error unmounting /dev/sdb1: target is busy");
    EXPECT_FALSE(ejects(disks, "/media/stick"));
    EXPECT_EQ(outcome->error(), "Error unmounting /dev/sdb1: target is busy");
    EXPECT_EQ(service.calls, QStringList{QStringLiteral("Unmount sdb1")});
}

TEST_F(Disks, MountsComeAndGoWithWhatIsKnownOfThem) {
    TemporaryFolder folder;
    auto const point = folder.makeFolder("home/a volume");
    qputenv("HOME", (folder / "home").c_str());
    PosixFileManager files;
    DiskService service(serviceBus);
    MountVolumes volumes(files, [this] { return bus; });
    auto const find = [&]() -> std::optional<Volume> {
        for (auto const& volume : volumes.mounted())
            if (volume.mountPoint.path() == point)
                return volume;
        return std::nullopt;
    };
    int changes = 0;
    auto const subscription = volumes.observeChanges([&] { ++changes; });
    EXPECT_FALSE(find());
    if (::mount("none", point.c_str(), "tmpfs", 0, "size=64k") != 0)
        GTEST_SKIP() << "needs the right to mount";

    EXPECT_TRUE(waitUntil([&] { return changes > 0; }));
    auto const mounted = find();
    ASSERT_TRUE(mounted);
    EXPECT_EQ(mounted->isBrowsable, true);
    EXPECT_EQ(mounted->isLocal, true);
    EXPECT_EQ(mounted->isRemovable, std::nullopt);
    EXPECT_EQ(mounted->name, std::nullopt);

    service.disks = {{.name = QStringLiteral("sdb1"),
                      .mountPoint = QByteArray::fromStdString(point),
                      .label = QStringLiteral("Fotos"),
                      .isRemovable = true}};
    service.announce();
    EXPECT_TRUE(waitUntil([&] { return find()->name == "Fotos"; }));
    EXPECT_EQ(find()->isRemovable, true);
    EXPECT_EQ(find()->isInternal, false);
    service.disks[0].isIgnored = true;
    service.announce();
    EXPECT_TRUE(waitUntil([&] { return find()->isBrowsable == false; }));

    auto const before = changes;
    EXPECT_EQ(::umount(point.c_str()), 0);
    EXPECT_TRUE(waitUntil([&] { return changes > before; }));
    EXPECT_FALSE(find());
}

} // namespace
} // namespace taliro::testing
