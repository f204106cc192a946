#include <QByteArray>
#include <QList>

#include "database/connection.h"

namespace kovanix {

bool isNetworkFileSystem(const QByteArray& type) {
    static const QList<QByteArray> remote{
        "9p",        "afs",    "beegfs", "ceph",  "cifs",   "coda",     "gfs2",
        "glusterfs", "lustre", "ncp",    "ncpfs", "nfs",    "nfs4",     "ocfs2",
        "prl_fs",    "smb2",   "smb3",   "smbfs", "vboxsf", "virtiofs", "vmhgfs",
    };
    static const QList<QByteArray> localThroughFuse{
        "fuse.bindfs",    "fuse.encfs",    "fuse.exfat", "fuse.fuse-overlayfs",
        "fuse.gocryptfs", "fuse.mergerfs", "fuse.ntfs",  "fuse.ntfs-3g",
    };
    const QByteArray name = type.toLower();
    // Most file systems that a user process serves (sshfs, rclone, davfs, desktop shares) fetch their files
    // from elsewhere, and a write-ahead log needs memory that all its users share. "fuseblk" is a local disk.
    return remote.contains(name) || (name.startsWith("fuse.") && !localThroughFuse.contains(name));
}

}  // namespace kovanix
