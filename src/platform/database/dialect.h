#pragma once

#include <QString>
#include <QStringView>
#include <optional>

namespace kovanix::dialect {

// The SQL that the modules join together becomes the engine's SQL here, and nowhere else. A tokenizer reads
// the text, so that string literals and bracketed names are never taken for syntax.
//
//   #5/3/2021 07:05:09#      '2021-05-03 07:05:09'; a literal that is no date is a syntax error
//   IIF(a, b, c)             CASE WHEN a THEN b ELSE c END, nested as deep as it comes
//   COUNTER                  INTEGER PRIMARY KEY AUTOINCREMENT (in a column definition)
//   TEXT(50)                 TEXT(50) COLLATE NOCASE (in a column definition)
//   LIKE 'a[%]b'             the engine's LIKE with an escape character; "[%]", "[_]" and "[[]" stand for the
//   bare sign select … from one table  … ORDER BY rowid, where no order, grouping, distinct, aggregate, join
//   or union stands

/// The engine's SQL for a statement.
/// @throws RuntimeError (databaseFailure) for a malformed date literal or an unbalanced IIF.
QString translate(const QString& sql);

/// The same without an order of entry: for what has none (a view, a table without row ids).
QString translateUnordered(const QString& sql);

/// The engine's SQL for a select whose rows come in order of entry, with the row's id as an additional last
/// column; with a row id, only the rows behind that one. Nothing for a select that translate() gives no order
/// of entry, or that has a limit.
std::optional<QString> translatePlaced(const QString& sql, std::optional<qint64> behind = std::nullopt);

/// A request to add a counter column, which the engine can't carry out by itself.
struct AddCounterColumn {
    QString table;
    QString column;
};

/// Recognises "ALTER TABLE t ADD COLUMN c COUNTER", with or without brackets, in any case.
std::optional<AddCounterColumn> addCounterColumn(const QString& sql);

/// The table of a select from a single table without join, union, grouping or aggregate; nothing for any
/// other.
std::optional<QString> singleTable(const QString& sql);

/// A CREATE TABLE statement of the engine's catalogue with one more column, behind the others and ahead of
/// table constraints. Nothing for a statement without a column list.
std::optional<QString> withColumn(const QString& createSql, const QString& definition);

}  // namespace kovanix::dialect
