#pragma once

#include <QString>
#include <QtGlobal>
#include <functional>

namespace kovanix::tasi {

/// Where a move stands.
struct Progress {
    enum class Step {
        checking,
        recognising,  ///< reading a file to see whether it is the one that the server holds
        copying,
        indexing,
        comparing,
        committing,
        committed,  ///< the other side holds the shop; only names and files are left
        pointerWritten,
        folderDone,
        done,
    };

    Step step = Step::checking;
    QString table = {};  ///< while rows go over or are compared
    qint64 rows = 0;
    qint64 total = 0;   ///< rows of the table
    qint64 passed = 0;  ///< on the way to a file: rows written and rows compared, of all tables
    qint64 toPass = 0;  ///< how many that will be in the end; 0 as long as nobody knows
};

/// Is told of each step, and of the rows every few thousand. What it throws ends the move as a failure does.
using Observer = std::function<void(const Progress& progress)>;

}  // namespace kovanix::tasi
