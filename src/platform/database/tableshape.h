#pragma once

#include <QList>
#include <QString>
#include <QStringView>

namespace kovanix {

/// What a column of a table holds.
enum class ColumnType {
    counter,  ///< whole numbers that the engine gives out
    text,
    number,  ///< double precision
    moment,  ///< date and time, kept as the text "yyyy-MM-dd HH:mm:ss"
};

/// A column of a table, as it was declared.
struct TableColumn {
    QString name;
    ColumnType type = ColumnType::text;
    int width = 0;         ///< of a text column in characters, 0 where none was declared
    bool isTruth = false;  ///< of a number column: a server keeps it as true or false
};

/// The columns of a table in their order, and the engine's name for the identity of its rows, by which they
/// come in order of entry.
struct TableShape {
    QString table;
    QList<TableColumn> columns;
    QString identity;  ///< empty for what has none (a view)

    /// The place of a column, whatever the case of its name; -1 where there is none.
    qsizetype indexOf(QStringView column) const {
        for (qsizetype i = 0; i < columns.size(); ++i) {
            if (column.compare(columns[i].name, Qt::CaseInsensitive) == 0)
                return i;
        }
        return -1;
    }
};

}  // namespace kovanix
