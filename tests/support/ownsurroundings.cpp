#include "ownsurroundings.h"

#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QByteArray>
#include <QFile>
#include <cerrno>
#include <cstring>

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

bool writeInto(const char* path, const QByteArray& text) {
    QFile file(QString::fromLatin1(path));
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

QString refusal(const QString& what) {
    return u"%1 is refused here: %2"_s.arg(what, QString::fromLocal8Bit(std::strerror(errno)));
}

QString fillerOf(const QString& folder) {
    return folder + u"/filler"_s;
}

}  // namespace

QString enterOwnSurroundings() {
    const auto user = ::geteuid();
    const auto group = ::getegid();
    const int own = CLONE_NEWNET | CLONE_NEWNS;
    if (::unshare(user == 0 ? own : own | CLONE_NEWUSER) != 0)
        return refusal(u"a network of its own"_s);
    if (user != 0 && (!writeInto("/proc/self/setgroups", "deny") ||
                      !writeInto("/proc/self/uid_map", u"%1 %1 1"_s.arg(user).toLatin1()) ||
                      !writeInto("/proc/self/gid_map", u"%1 %1 1"_s.arg(group).toLatin1())))
        return refusal(u"a user of its own"_s);
    if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        return refusal(u"mounting for itself"_s);
    return setLoopback(true) ? QString() : refusal(u"a loopback of its own"_s);
}

bool setLoopback(bool up) {
    ifreq request{};
    std::strcpy(request.ifr_name, "lo");
    const int socket = ::socket(AF_INET, SOCK_DGRAM, 0);
    bool done = ::ioctl(socket, SIOCGIFFLAGS, &request) == 0;
    const int flags = up ? request.ifr_flags | IFF_UP : request.ifr_flags & ~IFF_UP;
    request.ifr_flags = static_cast<short>(flags);
    done = done && ::ioctl(socket, SIOCSIFFLAGS, &request) == 0;
    ::close(socket);
    return done;
}

bool mountSmallDisk(const QString& folder, int megabytes) {
    return ::mount("tmpfs", QFile::encodeName(folder).constData(), "tmpfs", 0,
                   u"size=%1m"_s.arg(megabytes).toLatin1().constData()) == 0;
}

void unmountDisk(const QString& folder) {
    ::umount2(QFile::encodeName(folder).constData(), MNT_DETACH);
}

void fillDisk(const QString& folder) {
    QFile filler(fillerOf(folder));
    if (!filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        qFatal("can't fill the disk");
    for (const qsizetype size : {65536, 4096, 1}) {
        const QByteArray block(size, 'x');
        while (filler.write(block) > 0) {
        }
    }
}

void clearDisk(const QString& folder) {
    QFile::remove(fillerOf(folder));
}

}  // namespace kovanix
