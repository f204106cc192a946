#include <QFile>
#include <memory>

#include "database.h"

namespace kovanix::engine {

using namespace Qt::StringLiterals;

namespace {

struct BackupEnd {
    void operator()(sqlite3_backup* backup) const { sqlite3_backup_finish(backup); }
};

}  // namespace

QSqlError Database::copyTo(const QString& target, const std::function<int(const CopyState&)>& next) {
    const QString what = u"Error copying database"_s;
    Database copy;
    if (const int code = copy.openOnce(target.toUtf8(), m_key, {}, m_format); code != SQLITE_OK)
        return copy.error(what, QSqlError::ConnectionError);
    // Nobody relies on the copy before it is whole.
    sqlite3_exec(copy.m_handle, "PRAGMA synchronous = OFF", nullptr, nullptr, nullptr);
    sqlite3_exec(copy.m_handle, "PRAGMA journal_mode = OFF", nullptr, nullptr, nullptr);
    std::unique_ptr<sqlite3_backup, BackupEnd> backup(
        sqlite3_backup_init(copy.m_handle, "main", m_handle, "main"));
    if (!backup)
        return copy.error(what, QSqlError::StatementError);
    int code = SQLITE_OK;
    while (code == SQLITE_OK || code == SQLITE_BUSY || code == SQLITE_LOCKED) {
        const CopyState state{sqlite3_backup_remaining(backup.get()), sqlite3_backup_pagecount(backup.get()),
                              code != SQLITE_OK};
        code = sqlite3_backup_step(backup.get(), next(state)) & 0xFF;
    }
    // The end tells the code of what failed, and leaves it on the copy's handle.
    code = sqlite3_backup_finish(backup.release());
    return code == SQLITE_OK ? QSqlError() : copy.error(what, QSqlError::StatementError);
}

}  // namespace kovanix::engine
