#pragma once

#include <QtGlobal>
#include <string>
#include <string_view>

#include "database/driver/rowcursor.h"
#include "tables.h"

namespace kovanix::tasi {

/// What was odd about a cell that can't go to the other side as it is, or isn't what its column holds.
enum class Odd : quint8 {
    none,
    textAsNumber,     ///< a text in a number column; read as the till reads it
    textAsZero,       ///< a text in a number column that is no number; the till reads it as 0
    roundedWhole,     ///< a whole number that a double can't hold
    numberAsText,     ///< a number in a text column
    bytesAsText,      ///< bytes in a text column
    notUtf8,          ///< a text in the old code page
    nulDropped,       ///< a text with NUL characters, which go
    momentRewritten,  ///< a date in another form
    momentKept,       ///< what no one can read as a date; moved as it is
    notANumber,       ///< "NaN", which a file can't hold; null
};

/// What the report calls it, in Turkish.
QString oddWords(Odd odd);

/// A cell in the form that its column has on the server.
struct SettledCell {
    engine::Cell cell;
    Odd odd = Odd::none;
};

/// Puts a cell of a file into the form of its column.
/// @param storage  holds the bytes of a cell that had to be rewritten; the cell given before is gone
SettledCell settle(const engine::Cell& cell, Form form, std::string& storage);

/// Whether a text is UTF-8 as the server takes it, without a NUL.
bool isServerText(std::string_view text);

}  // namespace kovanix::tasi
