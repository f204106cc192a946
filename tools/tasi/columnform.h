#pragma once

#include <QString>

#include "database/driver/rowcursor.h"
#include "tables.h"

namespace kovanix::tasi {

/// What kinds of cells a column of a file holds.
struct ColumnContents {
    bool whole = false;
    bool large = false;  ///< a whole number that a double can't hold
    bool real = false;
    bool text = false;
    bool otherText = false;  ///< one of the texts is neither empty nor one that the till reads as a number
    bool bytes = false;

    /// @param readsTexts  whether it matters if a text is a number
    void add(const engine::Cell& cell, bool readsTexts);
};

/// Gives a till's own column the form in which a till makes it, whatever it was declared as in the file.
/// @param own  the column as a till makes it
void takeTillForm(Column& column, const TableColumn& own);

/// Gives a column that tills don't know the form that keeps what it holds: a text stays one.
/// @param declared  the type that the file declares for it
void takeFormOfContents(Column& column, const QString& declared, const ColumnContents& contents);

}  // namespace kovanix::tasi
