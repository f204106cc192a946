#pragma once

#include <QString>
#include <functional>
#include <optional>
#include <vector>

#include "database/databaseengine.h"
#include "database/filestamp.h"

namespace kovanix {

/// A database file: a plain one through the driver KOVANIXSQLITE, one with a password through QSQLCIPHER.
class FileEngine final : public DatabaseEngine {
public:
    FileEngine(const ConnectionString& parts, std::chrono::milliseconds busyTimeout);

    void open() override;
    bool isCurrent() const override { return isOpen() && !hasLeftPath(); }

    void prepareForPress(ConnectionCore& connection) override;
    void beginPress() override;
    void endPress() override;
    void idle() override;
    void leaveLogIfAsked() override;

    qint64 tablesVersion() override;
    TableShape readShape(const QString& table) override;
    QList<TableInfo> readTables() override;
    void changeTables(const QString& sql) override;
    void keepIndex(const QString& table, const QString& column) override;

    QByteArray contentMark() override;
    void beginTransaction() override { write(QStringLiteral("BEGIN IMMEDIATE")); }
    void endTransaction(bool keep) override {
        write(keep ? QStringLiteral("COMMIT") : QStringLiteral("ROLLBACK"));
    }

    DatabaseError failure(const QSqlError& error) const override;
    DatabaseError describedFailure(DatabaseError::Kind kind, const QString& words) const override;

private:
    /// The state of a file whose log is empty.
    struct Settled {
        FileStamp stamp;
        quint64 writes = 0;
        qint64 version = 0;  ///< the engine's count of what other connections have changed
    };
    enum class Locking { shared, exclusive };

    /// The open ones of the calling thread, each once.
    static std::vector<std::shared_ptr<FileEngine>> all();

    void aboutToClose() override;
    /// Opens the handle once more, with another patience for what others hold.
    /// @param locking  exclusive from the first read on, which the open of a file with a password makes
    void openHandle(std::chrono::milliseconds timeout, Locking locking = Locking::shared);
    void openHandleAgain();
    qint64 dataVersion() { return number(QStringLiteral("PRAGMA data_version")); }

    /// Puts the open file under the journal that it is to have.
    void chooseJournal();
    /// Puts a file that lies on another machine under a rollback journal; asks the tills there to let go of
    /// its log. Leaves no handle open.
    void leaveLogOverNetwork();
    /// The same in one attempt. @return false where another connection has the log in use
    /// @throws DatabaseError in the last attempt, that too
    bool leaveLog(bool lastAttempt);
    bool bearsNetworkMark();
    void writeBarrier();
    /// Whether what is written goes into a write-ahead log first.
    bool hasLog();
    /// Moves what the log holds into the file, without waiting. @return whether there is one and nothing of
    /// it is left to move
    bool moveLog();

    /// Goes on with the file that is at the path now, where it isn't the one that is open. @throws
    /// DatabaseError (missing) where none is there; the one that is open then stays so
    void followFile(ConnectionCore& connection);
    /// Has connections to a file that has left this path open what is there now, before this one does.
    void leaveReplacedFile();
    void settle(qint64 version);
    bool isWrittenOver(const FileStamp& now);
    bool hasLeftPath() const;
    void emptyLog();
    static void reopen(const std::function<bool(FileEngine& engine)>& concerned);

    bool isView(const QString& table);
    QString identityOf(const TableShape& shape);

    QString m_dataSource;
    QString m_password;
    QString m_path;     ///< of the file that was opened
    QString m_target;   ///< the same, links followed
    FileStamp m_stamp;  ///< of that file, as it was found there
    std::optional<Settled> m_settled;
    bool m_onNetwork = false;  ///< the file lies on another machine
    bool m_logsAhead = false;  ///< the file has a write-ahead log
    int m_presses = 0;         ///< of connections that have begun one and not finished it
    bool m_defersBarrier = false;
    std::optional<QSqlQuery> m_versionQuestion;  // kept prepared: it goes ahead of every select
};

}  // namespace kovanix
