#include "yedek/tablesums.h"

#include <cmath>
#include <vector>

#include "database/filereader.h"
#include "database/sqltokens.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

namespace {

constexpr int millionth = 1'000'000;
constexpr qint64 rowsBetweenSigns = 50'000;

}  // namespace

void ExactSum::add(qint64 number) {
    m_any = true;
    m_millionths += Wide(number) * millionth;
}

void ExactSum::add(double number) {
    // What no shop has: a sum of such would not fit.
    constexpr double largest = 1e25;
    m_any = true;
    if (std::abs(number) < largest)
        m_millionths += static_cast<Wide>(std::round(static_cast<long double>(number) * millionth));
}

QString ExactSum::text() const {
    const bool negative = m_millionths < 0;
    Wide left = negative ? -m_millionths : m_millionths;
    QString digits;
    for (int place = 0; left > 0 || place <= 6; ++place, left /= 10) {
        if (place == 6)
            digits.prepend(u'.');
        digits.prepend(QChar(u'0' + static_cast<char16_t>(left % 10)));
    }
    while (digits.endsWith(u'0'))
        digits.chop(1);
    if (digits.endsWith(u'.'))
        digits.chop(1);
    return negative ? u'-' + digits : digits;
}

QList<TableSum> tableSums(FileReader& file, const std::function<void(qint64 rows)>& progress) {
    QList<TableSum> tables;
    qint64 read = 0;
    const QStringList names = file.tables();
    for (const QString& name : names) {
        const QStringList columns = file.columns(name);
        std::vector<ExactSum> sums(static_cast<std::size_t>(columns.size()));
        TableSum table{name, 0, {}};
        file.forEachRow(u"SELECT * FROM "_s + quotedSqlName(name), [&](const engine::RowCursor& row) {
            ++table.rows;
            for (std::size_t i = 0; i < sums.size(); ++i) {
                const engine::Cell cell = row.cell(static_cast<int>(i));
                if (cell.type == engine::Cell::Type::whole)
                    sums[i].add(cell.whole);
                else if (cell.type == engine::Cell::Type::real)
                    sums[i].add(cell.real);
            }
            if (++read % rowsBetweenSigns == 0 && progress)
                progress(read);
        });
        for (std::size_t i = 0; i < sums.size(); ++i) {
            if (!sums[i].isEmpty())
                table.sums.append({columns[static_cast<qsizetype>(i)], sums[i].text()});
        }
        tables.append(table);
    }
    return tables;
}

}  // namespace kovanix::yedek
