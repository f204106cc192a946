#include "yedek/backup.h"

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "runtime/attempt.h"
#include "yedek/places.h"
#include "yedek/takecopy.h"

namespace kovanix::yedek {

BackupResult backUp(const Shop& shop, const QString& folder, const WorkProgress& progress) {
    Storage storage;
    BackupResult result;
    result.copy = takeCopy(shop, folder.isEmpty() ? copyFolder(shop) : folder, storage, progress);
    const QList<Stick> all = sticks();
    for (const Stick& stick : all) {
        if (!stick.isMarked)
            continue;
        const auto failure = attempt([&] { repeatCopy(result.copy, stick.folder, storage, progress); });
        if (failure)
            result.troubles << failure->description();
        else
            result.sticks << stick.name;
    }
    return result;
}

void yieldToTheTill() {
    constexpr int niceness = 15;
    constexpr int thisThread = 0;
    ::setpriority(PRIO_PROCESS, thisThread, niceness);
    constexpr int whichProcess = 1;
    constexpr int idleClass = 3;
    constexpr int classShift = 13;
    ::syscall(SYS_ioprio_set, whichProcess, thisThread, idleClass << classShift);
}

}  // namespace kovanix::yedek
