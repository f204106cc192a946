#include "grafik/salesreading.h"

#include <QFileInfo>

#include "data/baglanmamodulu.h"
#include "database/databaseerror.h"
#include "database/rowwalk.h"
#include "values/dates.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView reading = u"Satışlar okunuyor";

QString between(const FigureRow::Span& span) {
    return u"satislar where tarih between " + sqltarihbetween(span.from.date(), timeText(span.from.time()),
                                                              span.to.date(), timeText(span.to.time()));
}

FigureRow::Span spanOf(const DayRange& range) {
    return {QDateTime(range.first, QTime(0, 0, 0), Qt::UTC),
            QDateTime(range.last, QTime(23, 59, 59), Qt::UTC)};
}

/// Asks for sums as the sales report does where their kuruş isn't certain.
/// @param inOrder  whether the lines came in the order of their moments: then the engine comes across them in
/// that order, too, by the table or by its index
void settle(Connection& connection, Amounts& amounts, bool inOrder, const FigureRow::Span& span) {
    if (amounts.isCertain(inOrder))
        return;
    RowWalk sums(connection, u"select sum(toplam) as toplam, sum(kar) as kar from " + between(span));
    sums.forEach([&](const RowWalk::Row& row) {
        amounts.turnover.settle(sayicevir(row, 0));
        amounts.profit.settle(sayicevir(row, 1));
    });
}

void settle(Connection& connection, FigureTable& table, bool inOrder, const WorkProgress& progress) {
    for (FigureRow& row : table.rows) {
        progress.tell(reading.toString(), 0, 0);
        if (row.span)
            settle(connection, row.amounts, inOrder, *row.span);
    }
}

}  // namespace

const FigureTable& SalesPicture::table(Division division) const {
    switch (division) {
        case Division::hour:
            return hours;
        case Division::product:
            return products;
        default:
            return days;
    }
}

DayRange anyDay() {
    return {{100, 1, 1}, {9999, 12, 31}};
}

DayRange soldDays(Connection& connection) {
    DayRange range;
    RowWalk ends(connection,
                 u"select min(tarih) as ilk, max(tarih) as son from " + between(spanOf(anyDay())));
    ends.forEach([&](const RowWalk::Row& row) {
        const auto day = [&](int field) {
            return QDate::fromString(row.value(field).toString().left(10), u"yyyy-MM-dd"_s);
        };
        range = {day(0), day(1)};
    });
    return range;
}

SalesPicture readSales(Connection& connection, const DayRange& range, const WorkProgress& progress) {
    SalesPicture picture{.range = range, .total = {}, .days = {}, .hours = {}, .products = {}};
    SalesFigures figures;
    if (!range.isEmpty()) {
        // The engine makes numbers of texts here as it does in the report's sums: "12,5" is 12 to both.
        RowWalk lines(connection, u"select tarih, barkod, urun, adet + 0, toplam + 0, kar + 0 from " +
                                      between(spanOf(range)));
        progress.tell(reading.toString(), 0, 0);
        lines.forEach(
            [&](const RowWalk::Row& row) {
                figures.add(
                    {row.text(0), row.text(1), row.text(2), row.number(3), row.number(4), row.number(5)});
            },
            [&](qsizetype done, qsizetype count) { progress.tell(reading.toString(), done, count); });
    }
    picture.total = figures.total();
    picture.days = byDay(figures, range);
    picture.hours = byHour(figures, range);
    picture.products = byProduct(figures);
    if (!range.isEmpty()) {
        const bool inOrder = figures.isInOrder();
        settle(connection, picture.total, inOrder, spanOf(range));
        settle(connection, picture.days, inOrder, progress);
        settle(connection, picture.hours, inOrder, progress);
    }
    return picture;
}

SalesPicture readShop(const DayRange& range, const WorkProgress& progress) {
    if (const QString file = veritabaniyolu(); !QFileInfo(file).isFile())
        throw DatabaseError(DatabaseError::Kind::missing, u"Dükkân bulunamadı: "_s + file);
    Connection connection;
    connection.open(baglantimetnial());
    return readSales(connection, range == anyDay() ? soldDays(connection) : range, progress);
}

}  // namespace kovanix
