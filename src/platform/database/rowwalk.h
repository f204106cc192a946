#pragma once

#include <QString>
#include <QVariant>
#include <functional>
#include <optional>
#include <string_view>

#include "database/readprogress.h"
#include "database/tableshape.h"

namespace kovanix {

class Connection;
struct ConnectionCore;
class QueryRows;

/// Goes once through the rows of a select, in order of entry, and keeps none of them: for what adds a table
/// up.
///
/// The rows of a single table are read in closed chunks by their identities, so that nobody waits longer than
/// for one of them to write. With a condition they are those that stood there at the beginning. Any other
/// select is read in one go.
class RowWalk {
public:
    /// The row that a walk stands on.
    class Row {
    public:
        /// A cell: text, number (double or qint64), bytes or null as stored.
        QVariant value(int field) const;
        /// The number in a cell; nothing for a cell that is none.
        std::optional<double> number(int field) const;
        /// The text of a cell as stored, in UTF-8; empty for a cell that is none. It is gone with the next
        /// row.
        std::string_view text(int field) const;

    private:
        friend class RowWalk;
        explicit Row(const QueryRows& rows) : m_rows(rows) {}
        const QueryRows& m_rows;
    };

    /// @param sql  a select in the modules' SQL. @param connection  must outlive the walk
    RowWalk(Connection& connection, const QString& sql);

    /// @param each  called for every row; must not close the connection
    /// @param progress  told between the chunks of a select with a condition; may be empty
    /// @throws RuntimeError the engine's failure; the rows that it could give have been given then
    void forEach(const std::function<void(const Row& row)>& each, const ReadProgress& progress = {});

private:
    /// Where the rows of a select stand in their table, and how many they are.
    struct Span {
        qint64 first = 0;
        qint64 last = 0;
        qint64 count = 0;
    };

    void readAtOnce(const TableShape& shape, const std::function<void(const Row& row)>& each);
    void readChunks(const TableShape& shape, const std::optional<Span>& span,
                    const std::function<void(const Row& row)>& each, const ReadProgress& progress);

    ConnectionCore& m_core;
    QString m_sql;
};

}  // namespace kovanix
