#pragma once

#include <QSqlDriver>
#include <memory>

#include "serverconnection.h"

namespace kovanix::engine {

/// A driver of the toolkit over a database server.
///
/// The host name is one address or more, divided by commas; the first that takes the connection is used. The
/// port holds for all of them.
///
/// The connection's options are divided by semicolons, each "key=value"; a semicolon within a value is
/// written
/// "\;". KOVANIX_DEADLINE is the time in milliseconds after which a server that gives no sign of life is
/// given up (8000). connect_timeout is that of each address in seconds, with a fraction if need be (5);
/// several share the deadline. All
/// others are the keywords of the library. Left to themselves are client_encoding=UTF8, gssencmode=disable,
/// application_name=kovanix and target_session_attrs=read-write.
///
/// A wait for the server that gets long has the signal notification sent, named "wait", in its middle.
///
/// An error's nativeErrorCode() is the SQLSTATE and its databaseText() the first line of what the server
/// says. Of the driver's own are 08001 (no server was reached), 08T01 (the one that was doesn't offer TLS or
/// doesn't prove whose it is, where the options ask for that), 08006 (the connection was lost), 08007
/// (it was given up, for the server gives no sign of life; after either the driver isn't open) and 22021 (a
/// NUL in a text, which hasn't been sent).
class ServerDriver : public QSqlDriver {
    Q_OBJECT

public:
    explicit ServerDriver(QObject* parent = nullptr);
    ~ServerDriver() override;

    bool hasFeature(DriverFeature feature) const override;
    bool open(const QString& db, const QString& user, const QString& password, const QString& host, int port,
              const QString& options) override;
    void close() override;
    bool isOpen() const override { return m_connection->isOpen(); }
    QSqlResult* createResult() const override;

    bool beginTransaction() override { return execute("BEGIN"); }
    bool commitTransaction() override { return execute("COMMIT"); }
    bool rollbackTransaction() override { return execute("ROLLBACK"); }

    QString escapeIdentifier(const QString& identifier, IdentifierType type) const override;

private:
    bool execute(const char* sql);

    std::shared_ptr<ServerConnection> m_connection;
};

}  // namespace kovanix::engine
