#pragma once

#include <QList>
#include <QSqlRecord>
#include <QSqlResult>
#include <QVariant>
#include <memory>

#include "database.h"

namespace kovanix::sqlcipher {

class Driver;

/// A statement and its rows. Forward only, it holds one row; otherwise it keeps the rows that it has read.
class Result : public QSqlResult {
public:
    Result(const Driver* driver, std::shared_ptr<Database> database);
    ~Result() override;

    /// Ends the statement for good, before its handle closes.
    void finalize();

    void detachFromResultSet() override;

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
    bool bindValues();
    int bind(int place, const QVariant& value);
    bool step();
    bool readRow();
    QVariant column(int field) const;
    const QVariantList* currentRow() const;

    std::shared_ptr<Database> m_database;
    sqlite3_stmt* m_statement = nullptr;
    bool m_stepped = false;   ///< whether the row that execution has stepped to is still to be read
    bool m_finished = false;  ///< whether the statement has given its last row
    int m_changes = -1;
    QList<QVariantList> m_rows;  ///< the rows read; only the current one when forward only
};

}  // namespace kovanix::sqlcipher
