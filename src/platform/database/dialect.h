#pragma once

#include <QString>
#include <QVariantList>
#include <optional>

#include "database/rowfilter.h"
#include "database/tableshape.h"

namespace kovanix::dialect {

// The SQL that the modules join together becomes the engine's SQL here, and nowhere else. A tokenizer reads
// the text, so that string literals and bracketed names are never taken for syntax.
//
//   #5/3/2021 07:05:09#      '2021-05-03 07:05:09'; a literal that is no date is a syntax error
//   IIF(a, b, c)             CASE WHEN a THEN b ELSE c END, nested as deep as it comes
//   COUNTER                  INTEGER PRIMARY KEY AUTOINCREMENT (in a column definition)
//   TEXT(50)                 TEXT(50) COLLATE NOCASE (in a column definition)
//   LIKE 'a[%]b'             the engine's LIKE with an escape character; "[%]", "[_]" and "[[]" stand for the
//                            bare sign
//   select … from one table  … in the order of the rows' identity, where no order, grouping, distinct,
//                            aggregate, join or union stands

/// The engine's SQL for a statement.
/// @param identity  the engine's name for the identity of the rows that a select from a single table reads,
///   by which they come in order of entry; empty where they have none (a view)
/// @throws DatabaseError (value) for a malformed date literal, (statement) for an unbalanced IIF
QString translate(const QString& sql, const QString& identity = {});

/// What a select from a single table says, without join, union, grouping or aggregate.
struct TableSelect {
    QString table;
    bool allColumns = false;   ///< selects "*" and nothing else
    bool conditional = false;  ///< has a WHERE
    bool ordered = false;      ///< has an order of its own
    bool limited = false;
};

/// The parts of a select from a single table; nothing for any other statement.
std::optional<TableSelect> tableSelect(const QString& sql);

/// Which of its rows a select from a single table is to give.
struct RowRange {
    std::optional<qint64> afterRow = {};  ///< only rows entered after the one of that identity
    QString condition = {};               ///< in the engine's SQL, beside the select's own; empty for none
    qint64 limit = 0;                     ///< no more than that many; 0 for all
    /// Has the engine look for them by their identity, whatever index there is for a condition: one over many
    /// rows would be walked, and its rows be sorted, for each range anew.
    bool byIdentity = false;
};

/// The engine's SQL for a select from a single table, with the identity of each row as an additional last
/// column where rows have one. Nothing where the range can't be put into the statement: for a limited select,
/// for rows after another or no more than so many of an ordered one, and for any other statement.
std::optional<QString> translateAfterRow(const QString& sql, const QString& identity,
                                         const RowRange& range = {});

/// The engine's SQL that counts the rows of a select from a single table; nothing for a limited select and
/// any other statement.
std::optional<QString> translateCount(const QString& sql, const QString& condition = {});

/// The engine's SQL that gives the first and the last identity and the count of the rows of a select from a
/// single table whose rows have identities; nothing for a limited select and any other statement.
std::optional<QString> translateExtent(const QString& sql, const QString& identity);

/// A condition with positional values.
struct Condition {
    QString sql;  ///< in the engine's SQL
    QVariantList values;
};

/// A filter as a condition on the columns of a table. Number and counter columns compare as numbers, texts
/// without regard to the case of ASCII letters, moments by their text "yyyy-MM-dd HH:mm:ss". Nothing where
/// the engine can't be asked: for a pattern with wildcards over numbers.
/// @throws DatabaseError (value) for an unknown field, and for a pattern that is no number over a number
std::optional<Condition> condition(const RowFilter& filter, const TableShape& shape);

/// Whether a statement makes, changes or drops tables.
bool changesTables(const QString& sql);

/// Whether a statement can do nothing but read.
bool onlyReads(const QString& sql);

/// A request to add a counter column, which the engine can't carry out by itself.
struct AddCounterColumn {
    QString table;
    QString column;
};

/// Recognises "ALTER TABLE t ADD COLUMN c COUNTER", with or without brackets, in any case.
std::optional<AddCounterColumn> addCounterColumn(const QString& sql);

/// A CREATE TABLE statement of the engine's catalogue with one more column, behind the others and ahead of
/// table constraints. Nothing for a statement without a column list.
std::optional<QString> withColumn(const QString& createSql, const QString& definition);

}  // namespace kovanix::dialect
