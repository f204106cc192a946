// Random files for the readers of kovanix-aktar: a page, a workbook's sheet, a text file in each of its
// separators. A file is refused in words or read; numbers and guards that come out go in again as they were.

#include <QBuffer>
#include <cstdint>
#include <cstdlib>

#include "aktar/csvguard.h"
#include "aktar/csvreader.h"
#include "aktar/htmlreader.h"
#include "aktar/importplan.h"
#include "aktar/xlsxreader.h"
#include "runtime/runtimeerror.h"

using namespace kovanix;
using namespace kovanix::aktar;

namespace {

void plan(const CellTable& table) {
    for (const Kind kind : {Kind::products, Kind::customers}) {
        Mapping mapping = mapByHeadings(table, kind, true);
        if (!faultOf(mapping, kind).isEmpty()) {
            // Without headings: the columns as they come.
            mapping.headingRow = -1;
            for (size_t column = 0; column < mapping.fields.size(); ++column)
                mapping.fields[column] =
                    column < fieldsOf(kind).size() ? static_cast<int>(column) : Mapping::none;
        }
        if (!faultOf(mapping, kind).isEmpty())
            continue;
        const ImportPlan result = ImportRecords(table, kind, mapping).plan({});
        const qsizetype first = mapping.headingRow + 1;
        const auto told = static_cast<qsizetype>(result.added.size() + result.refused.size());
        if (told != table.rowCount() - first)
            std::abort();
    }
    for (qsizetype row = 0; row < table.rowCount(); ++row) {
        for (qsizetype column = 0; column < table.cellCount(row); ++column) {
            const QString text = table.text(row, column);
            if (unguarded(guarded(text)) != text)
                std::abort();
        }
    }
}

}  // namespace

// NOLINTNEXTLINE(readability-identifier-naming): the fuzzer's name for it
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char*>(data) + 1, static_cast<qsizetype>(size) - 1);
    try {
        if (*data % 4 == 0) {
            ZipArchive archive(bytes, {.bytes = 1 << 22});
            plan(readXlsx(archive).table);
            return 0;
        }
        QBuffer file;
        file.setData(bytes);
        file.open(QIODevice::ReadOnly);
        plan(*data % 4 == 1 ? readHtml(file) : readCsv(file, findCsvFormat(file)));
    } catch (const RuntimeError&) {
        return 0;
    }
    return 0;
}
