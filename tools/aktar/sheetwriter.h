#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "aktar/fields.h"
#include "aktar/newfile.h"

namespace kovanix::aktar {

/// A cell that goes out: a number, or a text in UTF-8 (a moment in the form in which the database keeps it).
struct OutCell {
    std::string_view text;
    std::optional<double> number;
};

/// Writes rows into a file, one after the other, in a memory that doesn't grow with them.
class SheetWriter {
public:
    virtual ~SheetWriter() = default;
    /// @throws RuntimeError where the file takes no more
    virtual void addRow(const std::vector<OutCell>& cells) = 0;
    /// Ends the file and makes sure that it holds every row. @throws RuntimeError
    virtual void finish() = 0;
};

/// UTF-8 with a mark, semicolons, decimal commas: what a Turkish spreadsheet opens by a double click.
/// @param plain  for other programs: no guards around texts
std::unique_ptr<SheetWriter> makeCsvWriter(NewFile& file, const std::vector<Field>& fields, bool plain);

/// A workbook: texts as texts, money as numbers, moments as moments. More rows than a sheet holds go on in
/// further sheets.
/// @param rowsASheet  with the headings; for tests
std::unique_ptr<SheetWriter> makeXlsxWriter(NewFile& file, const std::vector<Field>& fields,
                                            const QString& sheetName, quint32 rowsASheet = 1'048'576);

}  // namespace kovanix::aktar
