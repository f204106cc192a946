#pragma once

#include <QDate>
#include <QDateTime>
#include <QString>
#include <functional>
#include <optional>
#include <vector>

#include "grafik/amounts.h"

namespace kovanix {

class SalesFigures;

/// The first and the last day of a time, both within it.
struct DayRange {
    QDate first;
    QDate last;

    bool isEmpty() const { return !first.isValid() || !last.isValid() || first > last; }
    bool operator==(const DayRange&) const = default;
};

/// Times that can be chosen by one press; the first four are the sales report's.
enum class Preset { today, yesterday, eightDays, thirtyOneDays, thisMonth, thisYear };

DayRange presetRange(Preset preset, QDate today);

/// By what the figures are told apart.
enum class Division { day, hour, product };

/// One bar, and one row of the table beside it.
struct FigureRow {
    QString label;    ///< short, for an axis: "21.11", "Kas ’26", "2026", "09", a product's name
    QString name;     ///< in full: "21.11.2026 Cumartesi", "09:00 – 09:59"
    QString barcode;  ///< of a product that has one
    Amounts amounts;
    bool isRest = false;  ///< the last row: what all that aren't shown come to
    /// The moments, both within, over which the sales report adds up the same lines; nothing where it can't.
    struct Span {
        QDateTime from;
        QDateTime to;
    };
    std::optional<Span> span;
};

/// The figures of one division, as a chart, a table and a file show them.
struct FigureTable {
    Division division = Division::day;
    QString heading;  ///< "Gün", "Ay", "Yıl", "Saat", "Ürün"
    std::vector<FigureRow> rows;
};

/// The most bars that are told apart on a small screen.
inline constexpr int mostBars = 62;

/// Tells of a day in a range the first one in it that byDay puts together with it.
std::function<QDate(QDate day)> dayGroups(const DayRange& range);

/// Every day of a range, those without sales, too. More days than there is room for are put together by
/// month, more months by year, and so on by 10, 100 and 1000 years.
FigureTable byDay(const SalesFigures& figures, const DayRange& range);

/// All 24 hours. Over several days each is the sum of that hour of all of them.
FigureTable byHour(const SalesFigures& figures, const DayRange& range);

/// All products that were sold, that of the highest turnover first.
FigureTable byProduct(const SalesFigures& figures);

/// The first rows of a table, and all others together in one row behind them: "Diğer ürünler (431)".
FigureTable withRest(const FigureTable& table, std::size_t first);

/// The range in words: "1 – 30 Kasım 2026, 30 gün".
QString rangeText(const DayRange& range);

/// Money as the shop writes it: "1.234,56".
QString moneyText(const Sum& sum);
/// A quantity, with up to three decimals: "312,78".
QString quantityText(const Sum& sum);

/// The table with a line of sums, for a spreadsheet: fields apart by semicolons, commas for decimals. What a
/// spreadsheet would take for a formula, and the digits of a barcode, are texts there.
QString csvText(const FigureTable& table, const Amounts& total);
/// The same for the clipboard: fields apart by tabs, numbers as they are shown.
QString plainText(const FigureTable& table, const Amounts& total);

}  // namespace kovanix
