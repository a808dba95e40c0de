// The places the drawing explorer lists at its top level: the root folder, the user's home
// folder and the mounted volumes that hold files a user keeps (where another system would
// list its drives).
#pragma once

#include <QList>
#include <QString>
#include <QStringView>

namespace vantor {

struct ExplorerLocation {
    enum class Type {
        Root,
        Home,
        Volume,   // a local disk, or a removable one
        Network,  // a file system served by another machine
    };

    QString path;  // absolute folder, without a trailing separator (but "/")
    QString name;  // what the tree shows
    Type type = Type::Volume;

    bool isVolume() const { return type == Type::Volume || type == Type::Network; }
};

// "/", the home folder, then the user volumes in mount-point order.
QList<ExplorerLocation> systemLocations();

// Whether a mounted file system is one to show: a disk or a network share, not a system
// or memory file system, nor a mount under the system's own folders.
bool isUserVolume(QStringView mountPoint, QStringView device, QStringView fileSystemType);

bool isNetworkFileSystem(QStringView fileSystemType);

}  // namespace vantor
