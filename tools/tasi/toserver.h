#pragma once

#include <QString>
#include <QStringList>
#include <chrono>
#include <optional>

#include "database/serveraddress.h"
#include "progress.h"
#include "report.h"
#include "server.h"

namespace kovanix::tasi {

/// A shop's move from its file to a server.
struct ToServer {
    QString file;
    QString pointer;
    std::optional<ServerAddress> address;  ///< where the pointer is still to be written
    QString filePassword;
    QString serverPassword;
    QStringList folders;  ///< application folders of tills, whose settings are to be brought into step
    std::chrono::milliseconds deadline = usualDeadline;  ///< in which the server gives a sign of life
};

/// What a move has come to.
struct MoveResult {
    bool finishedEarlier = false;  ///< the server held this shop already; only the files were left to do
    qint64 tables = 0;
    qint64 rows = 0;
    qint64 settledCells = 0;
    QMap<Odd, qint64> settled;
    qint64 notices = 0;
    QString report;        ///< empty where there was nothing to tell
    QStringList renamed;   ///< the files that bear another name now
    QStringList settings;  ///< the settings files that were brought into step
};

/// Moves the rows in one transaction, compares every cell, and puts the file away. A move that was broken off
/// behind the commit is finished by the next one. @throws Failure
MoveResult moveToServer(const ToServer& order, const Observer& observer = {});

}  // namespace kovanix::tasi
