#pragma once

#include "platform/FileManager.h"
#include "platform/Volumes.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/MountTable.h"
#include "platform/linux/UDisks2.h"

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace taliro {

/// The kernel's mount table, and what UDisks2 or else the kernel knows of the disks behind it.
class MountVolumes : public Volumes {
public:
    /// `connect` gives the bus of the disk service when it is needed.
    explicit MountVolumes(FileManager& files,
                          std::function<QDBusConnection()> connect = &QDBusConnection::systemBus);
    ~MountVolumes() override;

    std::vector<Volume> mounted() override;
    Subscription observeChanges(std::function<void()> observer) override;
    void eject(Url const& mountPoint, Ejected done) override;

private:
    std::string readMountTable() const;
    Volume describe(Mount const& mount, std::string_view home);
    UDisks2& disks();
    void tellIfChanged();

    FileManager& m_files;
    std::function<QDBusConnection()> m_connect;
    FileDescriptor m_mountTable;
    std::unique_ptr<QSocketNotifier> m_mountsChanged;
    std::unique_ptr<UDisks2> m_disks; ///< from the first need on: it opens the system bus
    std::vector<Volume> m_told;
    Observers<> m_observers;
};

} // namespace taliro
