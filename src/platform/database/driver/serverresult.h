#pragma once

#include <QSqlRecord>
#include <QSqlResult>
#include <QVariant>
#include <memory>
#include <optional>
#include <vector>

#include "rowcursor.h"
#include "serverconnection.h"

namespace kovanix::engine {

class ServerDriver;

/// A statement and its rows. All of them have been read when the statement has run.
class ServerResult : public QSqlResult, public RowCursor {
public:
    ServerResult(const ServerDriver* driver, std::shared_ptr<ServerConnection> connection);
    ~ServerResult() override;

    void detachFromResultSet() override;

    bool nextRow() override { return fetchNext(); }
    Cell cell(int field) const override;
    void prepareLate() override { m_late = true; }
    void expectManyRows() override { m_many = true; }
    /// The rows as a RowCursor, where the query is forward-only.
    QVariant handle() const override;

protected:
    bool savePrepare(const QString& query) override;
    bool prepare(const QString& query) override;
    bool exec() override;
    bool reset(const QString& query) override;

    bool fetch(int index) override;
    bool fetchFirst() override { return fetch(0); }
    bool fetchLast() override { return fetch(size() - 1); }
    bool fetchNext() override;

    QVariant data(int field) override;
    bool isNull(int field) override;
    QSqlRecord record() const override;
    int size() override;
    int numRowsAffected() override { return m_changes; }

private:
    bool fail(const QSqlError& error);
    bool take(ServerConnection::Answer answer);
    bool prepareOnServer(const std::vector<Oid>& types);
    bool fitTypes(const std::vector<ServerValue>& values);
    bool isReadable(Oid type) const;
    bool areReadable(const PGresult* rows) const;
    ServerConnection::Answer runOnce(const std::vector<ServerValue>& values);
    bool isPrepared() const;
    void release();
    /// The values as the statement takes them; nothing where one can't be sent.
    std::optional<std::vector<ServerValue>> values();

    std::shared_ptr<ServerConnection> m_connection;
    QByteArray m_sql;   ///< with numbered places
    int m_places = 0;   ///< how many
    QByteArray m_name;  ///< of the statement on the server; empty when it isn't prepared there
    int m_generation = 0;
    bool m_late = false;       ///< whether the next statement isn't to be prepared ahead
    bool m_single = false;     ///< whether this one isn't
    bool m_many = false;       ///< whether it gives many rows
    bool m_writes = false;     ///< whether it changes rows
    std::vector<Oid> m_types;  ///< of the prepared statement's places
    bool m_binary = false;     ///< whether its rows come in the server's own form
    ServerRows m_rows;
    struct Column {
        Cell::Type type;  ///< what its cells are given as
        bool digits;      ///< whether they came in words instead of the server's own form
    };
    std::vector<Column> m_columns;
    int m_row = -1;  ///< the current one; -1 ahead of the first, their count behind the last
    int m_count = 0;
    int m_changes = -1;
};

}  // namespace kovanix::engine
