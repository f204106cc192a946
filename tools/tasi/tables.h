#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

#include "database/dialect.h"
#include "database/tableshape.h"

namespace kovanix::tasi {

/// As what a column's cells stand on the server.
enum class Form : quint8 {
    number,  ///< double precision
    whole,   ///< 64-bit whole numbers: counters, and columns of a shop's own that hold nothing else
    text,
    moment,  ///< text "yyyy-MM-dd HH:mm:ss"
    bytes,   ///< columns of a shop's own that hold nothing but bytes
};

struct Column : TableColumn {
    Form form = Form::text;
    bool isTruth = false;  ///< on the server true or false; in a file 1 or 0
};

/// A table that is moved.
struct Table {
    QString name;
    QList<Column> columns;
    QString order;     ///< SQL that gives the rows in order of entry; empty for the table's own order
    int counter = -1;  ///< place of the counter; -1 for none
    qint64 rows = 0;
    qint64 lastNumber = 0;  ///< the highest number that the counter has ever given
};

/// Something of a shop that isn't moved, or isn't as a till makes it: a line of the report.
struct Notice {
    QString table;
    QString words;
};

/// The tables that a till makes, in its order.
const QStringList& tillTables();
/// A column of a table as a till makes it; none where tills don't know it.
std::optional<TableColumn> tillColumn(const QString& table, const QString& column);
/// Whether a till knows that column of that table.
bool isTillColumn(const QString& table, const QString& column);

/// The type in the modules' SQL with which a till makes a column ("COUNTER", "TEXT(50)", "DOUBLE"); of a
/// column of the shop's own that needs another one the engine's type.
QString moduleType(const Column& column, dialect::Target target);

/// The statement in the modules' SQL that makes a table.
QString createStatement(const Table& table, dialect::Target target);

}  // namespace kovanix::tasi
