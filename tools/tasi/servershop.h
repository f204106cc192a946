#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

#include "server.h"
#include "tables.h"

namespace kovanix::tasi {

// A shop's tables on a server, as the till makes them there. All of it throws ServerFailure.

/// What the server keeps of a move, by which an interrupted one is found again.
struct MoveMark {
    QString digest;  ///< of the file that was moved
    QString file;    ///< its path then
    QString moment;
};

/// The table that holds the mark: no part of the shop.
QString markTable();

/// Refuses a database of the wrong encoding or locale: letters would be compared otherwise than in a file.
void checkDatabase(Server& server);

/// The mark of a shop that has been moved into this database.
std::optional<MoveMark> findMark(Server& server);

/// Those of the tables that are there already, views and the like included, with what they hold.
QStringList findTables(Server& server, const QList<Table>& tables);

/// Keeps tills that open the database meanwhile from making tables, until the transaction ends.
void lockSchema(Server& server);
/// What the texts' types need, where it is missing.
void prepareTypes(Server& server, const QList<Table>& tables);
void makeTable(Server& server, const Table& table);
/// Begins to fill a table: with the cells of its columns, in a table without a counter behind the row's
/// place.
void beginFill(Server& server, const Table& table);
/// Begins to read a table: the cells of its columns, in order of entry.
void beginRead(Server& server, const Table& table);
/// Has the counter go on behind the last number.
void setCounter(Server& server, const Table& table);
/// Brings the planner's statistics of the tables up to date.
void analyse(Server& server, const QList<Table>& tables);
/// The till's own indexes on those of the tables that are there.
void makeIndexes(Server& server, const QList<Table>& tables);
void writeMark(Server& server, const MoveMark& mark);

/// The tables of a shop on a server, the till's first, and what isn't carried back from there.
struct ServerCatalogue {
    QList<Table> tables;
    QList<Notice> notices;
};
ServerCatalogue readCatalogue(Server& server);

}  // namespace kovanix::tasi
