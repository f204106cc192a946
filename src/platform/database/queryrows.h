#pragma once

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QSqlResult>
#include <utility>

#include "database/connectionprivate.h"
#include "database/driver/rowcursor.h"

namespace kovanix {

/// The rows of a query, without a QVariant for each cell.
class QueryRows {
public:
    explicit QueryRows(QSqlQuery query)
        : m_query(std::move(query)), m_cursor(*m_query.result()->handle().value<engine::RowCursor*>()) {}

    /// Goes to the next row. @return false at the end
    /// @throws RuntimeError the engine's failure
    bool next(const ConnectionCore& core) {
        const bool row = m_cursor.nextRow();
        if (!row && m_query.lastError().isValid())
            throw core.failure(m_query.lastError());
        return row;
    }
    QSqlRecord record() const { return m_query.record(); }
    /// A cell of the current row; its bytes are gone with the next row.
    engine::Cell cell(int field) const { return m_cursor.cell(field); }

private:
    QSqlQuery m_query;
    engine::RowCursor& m_cursor;
};

}  // namespace kovanix
