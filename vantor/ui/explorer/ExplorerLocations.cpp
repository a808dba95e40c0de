// The explorer's top level from the mounted file systems.
#include "vantor/ui/explorer/ExplorerLocations.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QStorageInfo>

#include <algorithm>
#include <array>

namespace vantor {

namespace {

bool under(QStringView path, QStringView folder) {
    return path == folder || (path.startsWith(folder) && path.size() > folder.size() &&
                              path[folder.size()] == u'/');
}

QString cleanPath(const QString& path) {
    QString clean = QDir::cleanPath(path);
    return clean.isEmpty() ? QStringLiteral("/") : clean;
}

}  // namespace

bool isNetworkFileSystem(QStringView type) {
    static constexpr std::array<QStringView, 9> kNetwork = {
        u"nfs", u"nfs4", u"cifs", u"smb3", u"smbfs", u"fuse.sshfs", u"9p", u"afs", u"davfs"};
    return std::find(kNetwork.begin(), kNetwork.end(), type) != kNetwork.end();
}

bool isUserVolume(QStringView mountPoint, QStringView device, QStringView type) {
    // Memory and kernel file systems hold no drawings; image mounts (squashfs, overlay) are
    // packaged software or a container's own layers.
    static constexpr std::array<QStringView, 30> kSystemTypes = {
        u"proc",      u"sysfs",       u"devtmpfs",   u"devpts",      u"tmpfs",
        u"ramfs",     u"cgroup",      u"cgroup2",    u"securityfs",  u"pstore",
        u"debugfs",   u"tracefs",     u"mqueue",     u"hugetlbfs",   u"configfs",
        u"fusectl",   u"binfmt_misc", u"autofs",     u"bpf",         u"nsfs",
        u"efivarfs",  u"rpc_pipefs",  u"squashfs",   u"overlay",     u"selinuxfs",
        u"nfsd",      u"fuse.lxcfs",  u"fuse.portal", u"fuse.gvfsd-fuse", u"rootfs"};
    if (std::find(kSystemTypes.begin(), kSystemTypes.end(), type) != kSystemTypes.end())
        return false;
    // The system's own partitions and run-time folders; removable media that desktops mount
    // under /run/media stay.
    if (under(mountPoint, u"/run/media")) return true;
    static constexpr std::array<QStringView, 9> kSystemFolders = {
        u"/proc", u"/sys", u"/dev", u"/run", u"/boot", u"/snap", u"/var/lib", u"/var/snap",
        u"/var/run"};
    for (QStringView folder : kSystemFolders) {
        if (under(mountPoint, folder)) return false;
    }
    return device.startsWith(u"/dev/") || isNetworkFileSystem(type);
}

QList<ExplorerLocation> systemLocations() {
    const QString home = cleanPath(QDir::homePath());
    QList<ExplorerLocation> locations;
    locations.append({QStringLiteral("/"), QStringLiteral("루트 (/)"), ExplorerLocation::Type::Root});
    if (home != QStringLiteral("/")) {
        locations.append(
            {home, QStringLiteral("홈 (%1)").arg(home), ExplorerLocation::Type::Home});
    }

    // A device already reached through the root or the home folder (a bind mount, a second
    // mount of the same disk) is not listed again.
    QSet<QByteArray> devicesShown;
    devicesShown.insert(QStorageInfo::root().device());
    devicesShown.insert(QStorageInfo(home).device());

    QList<QStorageInfo> volumes = QStorageInfo::mountedVolumes();
    std::sort(volumes.begin(), volumes.end(), [](const QStorageInfo& a, const QStorageInfo& b) {
        return a.rootPath() < b.rootPath();
    });
    for (const QStorageInfo& volume : volumes) {
        if (!volume.isValid() || !volume.isReady()) continue;
        const QString mountPoint = cleanPath(volume.rootPath());
        const QString device = QString::fromLocal8Bit(volume.device());
        const QString type = QString::fromLatin1(volume.fileSystemType());
        if (mountPoint == QStringLiteral("/") || mountPoint == home) continue;
        if (!isUserVolume(mountPoint, device, type)) continue;
        // Containers bind single files (/etc/hosts) from the host's disk.
        if (!QFileInfo(mountPoint).isDir()) continue;
        if (devicesShown.contains(volume.device())) continue;
        devicesShown.insert(volume.device());
        const QString label = volume.name();
        locations.append({mountPoint,
                          label.isEmpty() ? mountPoint
                                          : QStringLiteral("%1 (%2)").arg(label, mountPoint),
                          isNetworkFileSystem(type) ? ExplorerLocation::Type::Network
                                                    : ExplorerLocation::Type::Volume});
    }
    return locations;
}

}  // namespace vantor
