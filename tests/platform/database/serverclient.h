#pragma once

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlResult>
#include <QVariant>

#include "database/driver/rowcursor.h"
#include "servercluster.h"

namespace kovanix {

// Long enough for a second connection on a busy machine.
constexpr int serverDeadline = 1200;  // milliseconds

/// The one of the test program.
inline ServerCluster& cluster() {
    static ServerCluster cluster;
    return cluster;
}

/// A connection to a database of the cluster, not yet open.
class ServerClient {
public:
    explicit ServerClient(const QString& database) : m_name(QStringLiteral("client%1").arg(++count)) {
        m_database = QSqlDatabase::addDatabase(QStringLiteral("KOVANIXPSQL"), m_name);
        m_database.setHostName(ServerCluster::host());
        m_database.setPort(cluster().port());
        m_database.setDatabaseName(database);
        m_database.setUserName(ServerCluster::role());
        m_database.setPassword(ServerCluster::password());
        m_database.setConnectOptions(QStringLiteral("KOVANIX_DEADLINE=%1").arg(serverDeadline));
    }
    ~ServerClient() {
        m_database = {};
        QSqlDatabase::removeDatabase(m_name);
    }
    ServerClient(const ServerClient&) = delete;
    ServerClient& operator=(const ServerClient&) = delete;

    QSqlDatabase* operator->() { return &m_database; }
    QSqlDatabase& operator*() { return m_database; }

    /// The first value that a statement gives; its error's code where it fails.
    QVariant value(const QString& sql) {
        QSqlQuery query(m_database);
        return query.exec(sql) && query.next() ? query.value(0) : query.lastError().nativeErrorCode();
    }

private:
    static inline int count = 0;
    QString m_name;
    QSqlDatabase m_database;
};

/// Has a query leave its next statement's preparation to the execution.
inline void prepareLate(QSqlQuery& query) {
    query.setForwardOnly(true);
    query.result()->handle().value<engine::RowCursor*>()->prepareLate();
}

}  // namespace kovanix
