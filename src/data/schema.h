#pragma once

#include <QList>
#include <QString>

namespace kovanix {

class Connection;

// The database schema, and the check that brings an older file up to date. It only ever adds: it never drops,
// renames or widens anything. Nothing here shows a message; what fails goes to the trace or to nothing at
// all.

struct ShopColumn {
    QString name;
    QString type;  ///< in the modules' SQL: "COUNTER", "TEXT(n)", "DOUBLE" or "DATETIME"
};
struct ShopTable {
    QString name;
    QList<ShopColumn> columns;
};
/// The tables of a shop, in the order in which they are made; the columns' order is part of the file format.
const QList<ShopTable>& shopTables();

/// The whole check: missing tables, then missing columns one by one. Does nothing once semahazir is set, or
/// on a connection that isn't open. Sets semahazir when the newest column (satislar.satis) is found at the
/// end.
void semakontrol(Connection& connection);

/// Creates each missing table. Its trace line tells of the attempt, not of its success.
void tablolariolustur(Connection& connection);

/// Adds a column when the table exists and the column doesn't. A counter that can't be added stays absent
/// silently.
/// @param type  "COUNTER", "TEXT(n)", "DOUBLE" or "DATETIME"
void kolonekle(Connection& connection, const QString& table, const QString& column, const QString& type);

/// Whether a table (no view, no system table) of that name exists, in any letter case.
/// @throws RuntimeError when the catalogue can't be read
bool tablovar(Connection& connection, const QString& table);

/// Whether the table has a column of that name, in any letter case.
/// @throws RuntimeError when the catalogue can't be read
bool kolonvar(Connection& connection, const QString& table, const QString& column);

}  // namespace kovanix
