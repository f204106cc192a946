#pragma once

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

}  // namespace kovanix::dialect
