#include "tillview.h"

#include <QStringList>
#include <algorithm>
#include <cmath>

#include "data/baglanmamodulu.h"
#include "exactamounts.h"
#include "sales/satisekrani.h"
#include "values/numbers.h"

namespace kovanix {

namespace {

constexpr qsizetype tooLong = 26;  // characters
constexpr qint64 exactUpTo = 1'000'000'000'000'000;

TicketLine lineAt(const VSFlexGrid& grid, int row) {
    return {grid.textMatrix(row, 0), grid.textMatrix(row, 1), grid.textMatrix(row, 2),
            grid.textMatrix(row, 3), grid.textMatrix(row, 4), grid.textMatrix(row, 5)};
}

QString plainAmount(double value) {
    return format(value, u"##0.00");
}

/// What a line comes to: in whole numbers, or as the till works it out where that takes more digits.
QString expectedTotal(const TicketLine& line) {
    const std::optional<qint64> kurus = lineInKurus(line.quantity, line.price);
    return kurus ? amountText(*kurus) : plainAmount(sayicevir(line.quantity) * sayicevir(line.price));
}

QString sumOf(const QStringList& totals) {
    qint64 kurus = 0;
    bool exact = true;
    QString rounded = QStringLiteral("0,00");
    for (const QString& total : totals) {
        const std::optional<qint64> amount = inKurus(total);
        exact = exact && amount && std::abs(kurus + *amount) < exactUpTo;
        if (exact)
            kurus += *amount;
        rounded = plainAmount(sayicevir(rounded) + sayicevir(total));
    }
    return exact ? amountText(kurus) : rounded;
}

bool hasMoreThanKurus(const QString& amount) {
    const std::optional<ExactNumber> number = readExactly(amount);
    return number && number->places > 2;
}

/// Whether the change is what is left of the cash, to within an allowance in lira.
bool isLeft(double cash, const QString& total, const QString& change, double allowance) {
    const double sum = valueOf(total);
    const double rounding = 1e-14 * std::max(std::fabs(cash), std::fabs(sum));
    return std::fabs(cash - sum - valueOf(change)) <= allowance + rounding;
}

}  // namespace

TillView viewOf(const satisekrani& till) {
    const VSFlexGrid& grid = *till.ui.satisekrani1;
    TillView view;
    for (int row = 1; row <= grid.rows() - 2; ++row)
        view.lines.push_back(lineAt(grid, row));
    view.entry = lineAt(grid, grid.rows() - 1);
    view.total = till.ui.toplam->caption();
    view.cash = till.ui.verilen->caption();
    view.change = till.ui.kalan->caption();
    view.quantity = till.ui.adet->text();
    view.barcode = till.ui.barkod->text();
    return view;
}

QString textOf(const TicketLine& line) {
    return u'[' + line.mark + u"] " + line.barcode + u' ' + line.name + u": " + line.quantity + u" x " +
           line.price;
}

QString textOf(const std::vector<TicketLine>& lines) {
    QStringList texts;
    for (const TicketLine& line : lines)
        texts.append(textOf(line));
    return texts.isEmpty() ? QStringLiteral("nothing") : texts.join(QStringLiteral("; "));
}

std::vector<TicketLine>::iterator lineOf(std::vector<TicketLine>& lines, const QString& barcode) {
    return std::find_if(lines.begin(), lines.end(),
                        [&barcode](const TicketLine& line) { return line.barcode == barcode; });
}

bool overflows(const std::vector<TicketLine>& lines) {
    QStringList totals;
    for (const TicketLine& line : lines)
        totals.append(expectedTotal(line));
    return sumOf(totals).size() >= tooLong;
}

QString formFault(const TillView& view) {
    const TicketLine& entry = view.entry;
    if (!entry.barcode.isEmpty() || !entry.name.isEmpty() || !entry.quantity.isEmpty() ||
        !entry.price.isEmpty())
        return u"the entry row isn't empty: " + textOf(entry);
    for (const TicketLine& line : view.lines) {
        if (line.barcode.trimmed().isEmpty())
            return u"a line without a barcode: " + textOf(line);
    }
    return {};
}

QString lineFault(const TillView& view) {
    for (const TicketLine& line : view.lines) {
        if (line.total != expectedTotal(line))
            return u"a line comes to " + expectedTotal(line) + u" and shows " + line.total + u": " +
                   textOf(line);
    }
    return {};
}

QString totalFault(const TillView& view) {
    QStringList totals;
    for (const TicketLine& line : view.lines)
        totals.append(line.total);
    const QString sum = sumOf(totals);
    if (view.total == sum)
        return {};
    return u"the total shows " + view.total + u", the lines make " + sum;
}

QString changeFault(const TillView& before, const TillView& after, std::optional<double> belowNothing) {
    if (before.total == after.total && before.cash == after.cash && before.change == after.change)
        return {};
    if (after.cash.startsWith(u'-'))
        return u"the cash is less than nothing: " + after.cash;
    // Cash typed in fractions of a kuruş is rounded, and the change of it by itself, so that both may differ
    // by one.
    const double allowance = hasMoreThanKurus(before.cash) ? 0.0101 : 0.0000001;
    if (isLeft(belowNothing.value_or(valueOf(after.cash)), after.total, after.change, allowance))
        return {};
    return u"the change shows " + after.change + u" for a cash of " + after.cash + u" and a total of " +
           after.total;
}

}  // namespace kovanix
