#pragma once

#include <QString>
#include <QStringView>
#include <string>
#include <string_view>
#include <vector>

namespace kovanix::aktar {

/// What a cell of a file holds, as far as the file says so.
enum class CellKind : unsigned char {
    text,
    number,  ///< its text is a number with a dot and no groups
    moment,  ///< a date or time; its text is as the shop reads it
    error,   ///< a formula that came to nothing (#N/A)
};

/// The rows of a file that was read, packed closely: half a million rows cost what their letters do.
class CellTable {
public:
    /// Beyond these a file is refused.
    static constexpr qsizetype mostRows = 500'000;
    static constexpr qsizetype mostColumns = 256;
    static constexpr qsizetype longestCell = 32'767;
    static constexpr size_t mostCells = 20'000'000;
    static constexpr size_t mostBytes = size_t(512) << 20;

    /// @param paddedRows  whether a row may lack cells at its end, as in a spreadsheet's file; in a text file
    /// that is a slip
    explicit CellTable(bool paddedRows = false) : m_paddedRows(paddedRows) {}

    /// Adds a cell to the row that is being filled.
    /// @throws RuntimeError where a cell is too long or a row too wide
    void addCell(QStringView text, CellKind kind = CellKind::text);
    /// The same for text in UTF-8.
    void addUtf8(std::string_view text, CellKind kind = CellKind::text);
    /// Ends the row. One without any text is dropped.
    /// @param line  where it begins in the file, counted from 1
    /// @throws RuntimeError where there are too many rows
    void endRow(qint64 line);

    /// Whether numbers that could be read both ways are taken to have dots for decimals: in a file whose
    /// cells are parted by commas.
    bool writesDots() const { return m_writesDots; }
    void setWritesDots(bool dots) { m_writesDots = dots; }

    bool hasPaddedRows() const { return m_paddedRows; }
    qsizetype rowCount() const { return static_cast<qsizetype>(m_rows.size()); }
    /// Of the widest row.
    qsizetype columnCount() const { return m_columns; }
    qsizetype cellCount(qsizetype row) const;
    qint64 line(qsizetype row) const { return m_rows[static_cast<size_t>(row)].line; }
    /// A cell; empty text for one that the row lacks.
    QString text(qsizetype row, qsizetype column) const;
    CellKind kind(qsizetype row, qsizetype column) const;
    /// Whether a cell holds nothing but blanks, or isn't there.
    bool isBlank(qsizetype row, qsizetype column) const;

private:
    struct Row {
        size_t firstCell;
        qint64 line;
    };
    struct Cell {
        size_t begin;
        CellKind kind;
    };

    size_t endOfRow(qsizetype row) const;
    std::string_view bytes(qsizetype row, qsizetype column) const;

    std::string m_text;
    std::vector<Cell> m_cells;
    std::vector<Row> m_rows;
    size_t m_openRow = 0;  // the first cell of the row that is being filled
    qsizetype m_columns = 0;
    bool m_paddedRows;
    bool m_writesDots = false;
};

}  // namespace kovanix::aktar
