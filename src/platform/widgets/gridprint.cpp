#include <algorithm>
#include <utility>

#include "widgets/gridmodel.h"
#include "widgets/tdbgrid.h"

namespace kovanix {

PrintTable TDBGrid::printTable() const {
    PrintTable table;
    std::vector<int> fields;
    QStringList formats;
    const bool hasFooters = !footerTexts().join(QString()).isEmpty();
    for (int index = 0; index < columnCount(); ++index) {
        const GridColumn& printed = column(index);
        if (printed.width() <= 0 && index != columnCount() - 1)
            continue;
        // As wide as it is painted, whatever its width says.
        const int painted = m_layout.cell(index, 0, 0).width();
        table.columns.push_back({.heading = printed.caption(),
                                 .width = static_cast<double>(std::max(painted, 1)),
                                 .number = printed.isNumber(),
                                 .code = printed.isCode()});
        fields.push_back(m_rows->field(index));
        formats << printed.format();
        if (hasFooters)
            table.footers << printed.footerText();
    }
    if (!dataSource())
        return table;
    table.rowCount = m_rows->rowCount();
    table.text = [rows = dataSource()->recordset().snapshot(), fields = std::move(fields),
                  formats = std::move(formats)](qsizetype row, std::size_t column) {
        return fields[column] < 0
                   ? QString()
                   : shownText(rows, row, fields[column], formats[static_cast<qsizetype>(column)]);
    };
    return table;
}

}  // namespace kovanix
