#pragma once

#include <QList>
#include <QSqlRecord>
#include <QSqlResult>
#include <QVariant>
#include <memory>

#include "database.h"
#include "rowcursor.h"

namespace kovanix::engine {

class Driver;

/// A statement and its rows. Forward only, the current row stays in the engine until it is asked for;
/// otherwise the rows that were read are kept.
class Result : public QSqlResult, public RowCursor {
public:
    Result(const Driver* driver, std::shared_ptr<Database> database);
    ~Result() override;

    /// Ends the statement for good, before its handle closes.
    void finalize();

    void detachFromResultSet() override;

    bool nextRow() override { return fetchNext(); }
    Cell cell(int field) const override;
    bool runWith(const std::vector<Cell>& values) override;
    /// The rows as a RowCursor, where the query is forward-only.
    QVariant handle() const override;

protected:
    bool prepare(const QString& query) override;
    bool exec() override;
    bool reset(const QString& query) override;

    bool fetch(int index) override;
    bool fetchFirst() override;
    bool fetchLast() override;
    bool fetchNext() override;

    QVariant data(int field) override;
    bool isNull(int field) override;
    QSqlRecord record() const override;
    int size() override { return -1; }
    int numRowsAffected() override { return m_changes; }
    QVariant lastInsertId() const override;

private:
    bool fail(const QString& what, QSqlError::ErrorType type);
    bool beginExecution();
    bool endExecution();
    bool bindValues();
    int bind(int place, const QVariant& value);
    int bind(int place, const Cell& value);
    bool step();
    bool readRow();
    QVariantList row() const;
    QVariant column(int field) const;
    QVariant currentCell(int field) const;

    std::shared_ptr<Database> m_database;
    sqlite3_stmt* m_statement = nullptr;
    bool m_stepped = false;   ///< whether the row that execution has stepped to is still to be read
    bool m_finished = false;  ///< whether the statement has given its last row
    int m_changes = -1;
    bool m_atRow = false;        ///< whether the statement itself stands on the current row
    QList<QVariantList> m_rows;  ///< the rows read; when forward only, none or the last
};

}  // namespace kovanix::engine
