#pragma once

#include <QElapsedTimer>
#include <QString>
#include <chrono>
#include <functional>

#include "database/databaseengine.h"

namespace kovanix {

/// A database on a server, through the driver KOVANIXPSQL; the data source is the path of a pointer file (see
/// ServerAddress).
///
/// A read on a connection that is found lost opens it again and is asked once more. What may write is never
/// sent twice unless the server itself has said that it hasn't run.
class ServerEngine final : public DatabaseEngine {
public:
    ServerEngine(const ConnectionString& parts, std::chrono::milliseconds busyTimeout);

    /// An open that fails within a moment of another one fails with that one's error, at once: a server that
    /// is away keeps nobody waiting twice.
    void open() override;

    QSqlQuery run(const QString& sql, const QVariantList& values = {}) override;
    QSqlQuery runForMany(const QString& sql) override;
    bool prepare(QSqlQuery& query, const QString& sql, Use use) override;
    void executeWrite(QSqlQuery& query, const QString& sql = {}) override;
    bool readsAgain(const DatabaseError& failure, int attempts) override;
    void wake() override;

    void prepareForPress(ConnectionCore& connection) override;
    void beginPress() override;
    void endPress() override;

    dialect::Target target() const override { return dialect::Target::server; }
    // To ask would be a round trip ahead of every select: a failure tells, or a rest.
    qint64 tablesVersion() override { return 0; }
    bool tellsOfTables() const override { return false; }
    TableShape readShape(const QString& table) override;
    QList<TableInfo> readTables() override;
    void changeTables(const QString& sql) override;
    void keepIndex(const QString& table, const QString& column) override;
    QVariant fitting(const QVariant& value, const TableColumn& column) const override;

    void beginTransaction() override;
    void endTransaction(bool keep) override;
    QByteArray contentMark() override;

    DatabaseError failure(const QSqlError& error) const override;
    DatabaseError describedFailure(DatabaseError::Kind kind, const QString& words) const override;

    /// How long nothing may have been asked before the server is asked first whether it is still there.
    static inline std::chrono::milliseconds restLength{10000};
    /// How long a server may give no sign of life before it is given up; a new connection has five eighths.
    static inline std::chrono::milliseconds deadline{8000};

private:
    /// Whether something was written that a crash of the server could still take.
    bool isUnconfirmed() const { return m_presses > 0 && wroteInPress; }
    void setUp();
    void connectToServer();
    QString openKey() const { return m_pointer + QChar(u'\n') + m_password; }
    void requireSuitableDatabase();
    void openAgain();
    /// @throws DatabaseError (lost) where the connection was lost and is still
    void requireHandle() const;
    void writeBarrier();
    /// Runs steps that stand or fall together, with no other till changing tables meanwhile.
    void changeAlone(const std::function<void()>& steps);
    void makeDomains(const QString& sql);
    void addCounter(const dialect::AddColumn& counter);
    bool isThere(const QString& catalogueSql, const QString& name);

    QString m_pointer;
    QString m_password;
    int m_presses = 0;  ///< of connections that have begun one and not finished it
    bool m_inTransaction = false;
    QElapsedTimer m_lastUse;
    mutable QString m_state;  ///< the SQLSTATE of the last failure
};

}  // namespace kovanix
