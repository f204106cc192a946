#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "database/dialect.h"
#include "database/sqltokens.h"

namespace kovanix::dialect {

// What the translations for the two kinds of engine have in common.

struct CreateTable {
    std::vector<qsizetype> columns;            ///< the index of each column's name
    std::optional<qsizetype> firstConstraint;  ///< the index of the first table constraint
    qsizetype end = 0;                         ///< the index of the closing parenthesis
};

/// The parts of a CREATE TABLE statement with a column list; nothing for any other.
std::optional<CreateTable> createTable(const SqlTokens& sql);

/// The index of the new column's name in an ALTER TABLE … ADD statement.
std::optional<qsizetype> addedColumn(const SqlTokens& sql);

/// The index behind a table's name (with its schema) that begins at an index; nothing when none does.
std::optional<qsizetype> behindTableName(const SqlTokens& sql, qsizetype index);

/// What a server needs beside the translation of dates, patterns with brackets and IIF.
void translateForServer(SqlTokens& sql, const QList<TableColumn>& columns);

/// Has numbers stand for true and false where a condition wants one, and the other way round: a file knows
/// nothing but numbers. Behind the translation of names and literals.
void translateTruth(SqlTokens& sql, const QList<TableColumn>& columns);

/// Calls something for each value of an INSERT that is one token and belongs to a known column.
void visitInserted(const SqlTokens& sql, const QList<TableColumn>& columns,
                   const std::function<void(qsizetype value, const TableColumn& column)>& visit);

/// Whether the values of a column are numbers.
inline bool isNumeric(const TableColumn& column) {
    return column.type == ColumnType::counter || column.type == ColumnType::number;
}

}  // namespace kovanix::dialect
