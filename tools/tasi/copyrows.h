#pragma once

#include <QtGlobal>
#include <string>
#include <string_view>
#include <vector>

#include "database/driver/rowcursor.h"
#include "tables.h"

namespace kovanix::tasi {

// The rows of the server's COPY … (FORMAT binary): no text of theirs has to be escaped, no number loses a
// digit, and two equal rows are equal bytes.

/// What stands ahead of the first row and behind the last.
std::string_view copyHeader();
std::string_view copyTrailer();

/// Writes rows behind one another.
class CopyWriter {
public:
    /// Begins a row of that many cells.
    void beginRow(int cells);
    void add(const engine::Cell& cell);
    void clear() { m_bytes.clear(); }
    std::string_view bytes() const { return m_bytes; }

private:
    template <class Number>
    void append(Number value);

    std::string m_bytes;
};

/// Reads the cells of one row. A cell's bytes lie in the row.
/// @param forms  of the columns, in their order
/// @param cells  gets them, or none where the bytes are no such row
/// @return whether they are one
bool readCopyRow(std::string_view row, const std::vector<Form>& forms, std::vector<engine::Cell>& cells);

/// Takes the header off the first part of what the server sends.
/// @return false where it isn't one
bool dropCopyHeader(std::string_view& bytes);

}  // namespace kovanix::tasi
