#pragma once

#include <QSqlDriver>
#include <memory>

#include "database.h"

namespace kovanix::engine {

/// A driver of the toolkit over the engine that this build has: files with a password, or files without.
///
/// The database name is a path, or a file: URI with the option QSQLITE_OPEN_URI. Further options are those of
/// the toolkit's own driver: QSQLITE_BUSY_TIMEOUT (milliseconds) and QSQLITE_OPEN_READONLY. An empty password
/// is refused where files have one (the file would be written in the clear), any other where they have none.
///
/// A statement that begins to wait for a locked file has the signal notification sent, named "wait", before
/// its first nap.
class Driver : public QSqlDriver, public FileCopier {
    Q_OBJECT

public:
    explicit Driver(QObject* parent = nullptr);
    ~Driver() override;

    bool hasFeature(DriverFeature feature) const override;
    bool open(const QString& db, const QString& user, const QString& password, const QString& host, int port,
              const QString& options) override;
    void close() override;
    QSqlResult* createResult() const override;
    /// The file as a FileCopier.
    QVariant handle() const override;
    QSqlError copyTo(const QString& target, const std::function<int(const CopyState&)>& next) override;

    bool beginTransaction() override;
    bool commitTransaction() override;
    bool rollbackTransaction() override;

    QStringList tables(QSql::TableType type) const override;
    QSqlRecord record(const QString& table) const override;
    QSqlIndex primaryIndex(const QString& table) const override;
    QString escapeIdentifier(const QString& identifier, IdentifierType type) const override;

private:
    bool execute(const char* sql);

    std::shared_ptr<Database> m_database;
};

}  // namespace kovanix::engine
