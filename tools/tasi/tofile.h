#pragma once

#include <QString>
#include <QStringList>

#include "progress.h"
#include "toserver.h"

namespace kovanix::tasi {

/// A shop's copy from its server into a new file, while tills sell or for good.
struct ToFile {
    QString pointer;
    QString file;  ///< there is none yet
    QString serverPassword;
    QString filePassword;       ///< empty for a plain file
    QStringList folders;        ///< application folders of tills whose settings are to name the file
    bool listsOddities = true;  ///< in a file beside the new one; else they are only counted
};

/// Reads one state of the server, whatever tills store meanwhile, writes the file by the till's own engine
/// and compares every cell. The file takes its name only when it is whole. @throws Failure
MoveResult copyToFile(const ToFile& order, const Observer& observer = {});

}  // namespace kovanix::tasi
