#include "grafik/figuretable.h"

#include <algorithm>
#include <array>

#include "grafik/salesfigures.h"
#include "reports/rangewords.h"
#include "values/dates.h"
#include "values/numbers.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int monthsAYear = 12;

/// One bar for so many days, months or years.
struct Step {
    enum class Unit { day, month, year };
    Unit unit = Unit::day;
    int count = 1;

    /// The first day of the step that a day is in.
    QDate beginOf(QDate day) const {
        switch (unit) {
            case Unit::day:
                return day;
            case Unit::month:
                return {day.year(), day.month(), 1};
            default:
                // There is no year 0.
                return {std::max(1, day.year() - day.year() % count), 1, 1};
        }
    }
    QDate next(QDate begin) const {
        switch (unit) {
            case Unit::day:
                return begin.addDays(1);
            case Unit::month:
                return begin.addMonths(1);
            default:
                return {begin.year() - begin.year() % count + count, 1, 1};
        }
    }
};

Step stepFor(const DayRange& range) {
    if (range.first.daysTo(range.last) < mostBars)
        return {};
    const int years = range.last.year() - range.first.year();
    if (years * monthsAYear + range.last.month() - range.first.month() < mostBars)
        return {.unit = Step::Unit::month};
    int count = 1;
    while (years / count >= mostBars - 1)
        count *= 10;
    return {.unit = Step::Unit::year, .count = count};
}

QString headingOf(const Step& step) {
    if (step.unit == Step::Unit::day)
        return u"Gün"_s;
    if (step.unit == Step::Unit::month)
        return u"Ay"_s;
    return step.count == 1 ? u"Yıl"_s : u"Yıllar"_s;
}

void nameStep(FigureRow& row, const Step& step, QDate begin) {
    switch (step.unit) {
        case Step::Unit::day:
            row.label = dateText(begin).left(5);
            row.name = dateText(begin) + u' ' + longDateText(begin).section(u' ', 3);
            break;
        case Step::Unit::month:
            row.name = monthText(begin);
            row.label = row.name.left(3) + u" ’" + row.name.right(2);
            break;
        case Step::Unit::year:
            row.label = QString::number(begin.year());
            row.name = row.label;
            if (step.count > 1)
                row.name += u" – " + QString::number(step.next(begin).year() - 1);
    }
}

FigureRow::Span wholeDays(QDate first, QDate last) {
    // Of no zone: an hour that the clock skips in spring is asked for, too.
    return {QDateTime(first, QTime(0, 0, 0), Qt::UTC), QDateTime(last, QTime(23, 59, 59), Qt::UTC)};
}

QString twoDigits(int number) {
    return u"%1"_s.arg(number, 2, 10, QLatin1Char('0'));
}

void addUnreadable(FigureTable& table, const QString& name, const Amounts& amounts) {
    if (amounts.lines > 0)
        table.rows.push_back({u"?"_s, name, {}, amounts, false, {}});
}

QString number(double value, QStringView pattern) {
    return format(value, pattern);
}

/// A field that a spreadsheet takes for a text, whatever it begins with.
QString csvField(QString text) {
    static const QString formulas = u"=+-@\t\r"_s;
    if (!text.isEmpty() && formulas.contains(text[0]))
        text.prepend(u'\'');
    if (text.contains(u';') || text.contains(u'"') || text.contains(u'\n') || text.contains(u'\r'))
        text = u'"' + text.replace(u'"', u"\"\""_s) + u'"';
    return text;
}

/// Thirteen digits would become a number that is shown with an exponent.
QString csvBarcode(const QString& barcode) {
    const bool onlyDigits =
        !barcode.isEmpty() && std::ranges::all_of(barcode, [](QChar c) { return c >= u'0' && c <= u'9'; });
    return onlyDigits ? u"\"=\"\"" + barcode + u"\"\"\"" : csvField(barcode);
}

/// The headings, the rows and a line of sums, by what makes a field of a text, of a barcode and of a number.
struct Fields {
    QChar separator;
    std::function<QString(const QString&)> text;
    std::function<QString(const QString&)> barcode;
    QStringView money;
    QStringView quantity;
};

QString tableText(const FigureTable& table, const Amounts& total, const Fields& fields) {
    const bool products = table.division == Division::product;
    QString text;
    const auto add = [&](const QString& name, const QString& barcode, const QStringList& figures) {
        text += name;
        if (products)
            text += fields.separator + barcode;
        for (const QString& figure : figures)
            text += fields.separator + figure;
        text += u"\r\n"_s;
    };
    const auto addAmounts = [&](const QString& name, const QString& barcode, const Amounts& amounts) {
        add(name, barcode,
            {number(amounts.quantity.value(), fields.quantity),
             number(amounts.turnover.value(), fields.money), number(amounts.profit.value(), fields.money)});
    };
    add(table.heading, u"Barkod"_s, {u"Miktar"_s, u"Tutar"_s, u"Kazanç"_s});
    for (const FigureRow& row : table.rows)
        addAmounts(fields.text(row.name), fields.barcode(row.barcode), row.amounts);
    addAmounts(u"Toplam"_s, {}, total);
    return text;
}

}  // namespace

DayRange presetRange(Preset preset, QDate today) {
    switch (preset) {
        case Preset::yesterday:
            return {today.addDays(-1), today.addDays(-1)};
        case Preset::eightDays:
            return {today.addDays(-7), today};
        case Preset::thirtyOneDays:
            return {today.addDays(-30), today};
        case Preset::thisMonth:
            return {{today.year(), today.month(), 1}, today};
        case Preset::thisYear:
            return {{today.year(), 1, 1}, today};
        default:
            return {today, today};
    }
}

std::function<QDate(QDate day)> dayGroups(const DayRange& range) {
    return [step = stepFor(range), first = range.first](QDate day) {
        return std::max(first, step.beginOf(day));
    };
}

FigureTable byDay(const SalesFigures& figures, const DayRange& range) {
    FigureTable table{Division::day, u"Gün"_s, {}};
    if (range.isEmpty())
        return table;
    const Step step = stepFor(range);
    table.heading = headingOf(step);
    auto sold = figures.days().lower_bound(range.first);
    for (QDate begin = step.beginOf(range.first); begin <= range.last;) {
        FigureRow row;
        nameStep(row, step, begin);
        const QDate next = step.next(begin);
        row.span = wholeDays(std::max(begin, range.first), std::min(next.addDays(-1), range.last));
        for (; sold != figures.days().end() && sold->first < next && sold->first <= range.last; ++sold)
            row.amounts += sold->second;
        table.rows.push_back(std::move(row));
        begin = next;
    }
    addUnreadable(table, u"Günü okunamayan"_s, figures.withoutDay());
    return table;
}

FigureTable byHour(const SalesFigures& figures, const DayRange& range) {
    FigureTable table{Division::hour, u"Saat"_s, {}};
    for (int hour = 0; hour < SalesFigures::hours; ++hour) {
        FigureRow row;
        row.label = twoDigits(hour);
        row.name = row.label + u":00 – " + row.label + u":59";
        row.amounts = figures.byHour()[static_cast<std::size_t>(hour)];
        if (!range.isEmpty() && range.first == range.last)
            row.span = {QDateTime(range.first, QTime(hour, 0, 0), Qt::UTC),
                        QDateTime(range.first, QTime(hour, 59, 59), Qt::UTC)};
        table.rows.push_back(std::move(row));
    }
    addUnreadable(table, u"Saati okunamayan"_s, figures.withoutHour());
    return table;
}

FigureTable byProduct(const SalesFigures& figures) {
    FigureTable table{Division::product, u"Ürün"_s, {}};
    table.rows.reserve(figures.products().size());
    for (const SalesFigures::Product& product : figures.products()) {
        FigureRow row;
        row.barcode = QString::fromStdString(product.barcode);
        row.name = QString::fromStdString(product.name).simplified();
        if (row.name.isEmpty())
            row.name = row.barcode.isEmpty() ? u"Adsız ürün"_s : row.barcode;
        row.label = row.name;
        row.amounts = product.amounts;
        table.rows.push_back(std::move(row));
    }
    std::ranges::stable_sort(table.rows, std::ranges::greater(),
                             [](const FigureRow& row) { return row.amounts.turnover.value(); });
    return table;
}

FigureTable withRest(const FigureTable& table, std::size_t first) {
    FigureTable shown{table.division, table.heading, {}};
    const std::size_t count = std::min(first, table.rows.size());
    shown.rows.assign(table.rows.begin(), table.rows.begin() + static_cast<std::ptrdiff_t>(count));
    if (count == table.rows.size())
        return shown;
    FigureRow rest;
    rest.isRest = true;
    rest.name = u"Diğer ürünler (%1)"_s.arg(format(static_cast<double>(table.rows.size() - count), u"#,##0"));
    rest.label = rest.name;
    for (std::size_t i = count; i < table.rows.size(); ++i)
        rest.amounts += table.rows[i].amounts;
    shown.rows.push_back(std::move(rest));
    return shown;
}

QString rangeText(const DayRange& range) {
    return range.first.isValid() && range.last.isValid() ? dayRangeWords(range.first, range.last) : QString();
}

QString moneyText(const Sum& sum) {
    return format(sum.value(), u"#,##0.00");
}

QString quantityText(const Sum& sum) {
    return format(sum.value(), u"#,##0.###");
}

QString csvText(const FigureTable& table, const Amounts& total) {
    return tableText(table, total, {u';', csvField, csvBarcode, u"0.00", u"0.###"});
}

QString plainText(const FigureTable& table, const Amounts& total) {
    const auto oneField = [](const QString& text) { return text.simplified(); };
    return tableText(table, total, {u'\t', oneField, oneField, u"#,##0.00", u"#,##0.###"});
}

}  // namespace kovanix
