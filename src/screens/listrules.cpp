#include "screens/listrules.h"

#include <algorithm>
#include <cmath>

#include "data/baglanmamodulu.h"
#include "runtime/runtimeerror.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

QString term(const FilterInput& cell, const FilterRules& rules) {
    const QString like = cell.field == rules.blankedField ? u" LIKE  '"_s : u" LIKE '"_s;
    QString pattern = sqllike(cell.text);
    if (rules.numericFields.contains(cell.field))
        return cell.field + like + pattern.replace(u',', u'.') + u'\'';
    return cell.field + like + u'%' + pattern + u"%'";
}

}  // namespace

QString filterText(const QList<FilterInput>& cells, const FilterRules& rules) {
    QString filter;
    int terms = 0;
    for (const FilterInput& cell : cells) {
        if (cell.text.trimmed().isEmpty())
            continue;
        if (++terms > 1)
            filter += u" AND ";
        filter += term(cell, rules);
    }
    return filter;
}

QString ListOrder::press(const QString& pressedField) {
    const bool flips =
        pressedField == field ? direction != u"DESC" : direction != u"DESC" && !direction.isEmpty();
    direction = flips ? u"DESC"_s : u"ASC"_s;
    field = pressedField;
    return field + u' ' + direction;
}

void ColumnWidths::store(int gridWidth, const QList<int>& columns) {
    if (columns.size() > most)
        throw RuntimeError(RuntimeError::outOfRange, u"Subscript out of range"_s);
    m_gridWidth = gridWidth;
    m_count = static_cast<int>(columns.size());
    for (qsizetype column = 0; column < columns.size(); ++column)
        m_columns[static_cast<size_t>(column)] = static_cast<short>(columns[column]);
}

std::optional<double> progressShown(qsizetype rows, qsizetype total, std::chrono::milliseconds taken) {
    constexpr std::chrono::milliseconds unnoticed{150};
    if (taken < unnoticed || total <= 0)
        return std::nullopt;
    return std::min(1.0, static_cast<double>(rows) / static_cast<double>(total));
}

QList<int> ColumnWidths::widthsFor(int gridWidth) const {
    QList<int> widths;
    const int lastColumn = m_count - 1;
    const double change =
        lastColumn > 1 ? static_cast<double>(gridWidth - m_gridWidth) / (lastColumn - 1) : 0;
    for (int column = 0; column < m_count; ++column) {
        const short stored = m_columns[static_cast<size_t>(column)];
        widths.append(column == 0 ? stored : static_cast<int>(std::lround(stored + change)));
    }
    return widths;
}

}  // namespace kovanix
