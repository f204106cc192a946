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
constexpr qint64 stepRows = 20000;

QString between(const FigureRow::Span& span) {
    return u"satislar where tarih between " + sqltarihbetween(span.from.date(), timeText(span.from.time()),
                                                              span.to.date(), timeText(span.to.time()));
}

FigureRow::Span spanOf(const DayRange& range) {
    return {QDateTime(range.first, QTime(0, 0, 0), Qt::UTC),
            QDateTime(range.last, QTime(23, 59, 59), Qt::UTC)};
}

/// A number or a moment that a select of one row and one field gives, as text.
QString answer(Connection& connection, const QString& sql) {
    QString text;
    RowWalk(connection, sql).forEach([&](const RowWalk::Row& row) { text = row.value(0).toString(); });
    return text;
}

/// Whether a range holds so much of all that was sold that going through all of it is the shorter way.
bool isMost(const DayRange& range, const DayRange& sold) {
    constexpr qint64 part = 2;
    const DayRange both{std::max(range.first, sold.first), std::min(range.last, sold.last)};
    return !both.isEmpty() && (both.first.daysTo(both.last) + 1) * part > sold.first.daysTo(sold.last) + 1;
}

/// Gives the figures the lines of a range.
class Reader {
public:
    Reader(Connection& connection, SalesFigures& figures, const WorkProgress& progress)
        : m_connection(connection), m_figures(figures), m_progress(progress) {}

    void read(const DayRange& range) {
        m_progress.tell(reading.toString(), 0, 0);
        const FigureRow::Span span = spanOf(range);
        if (isMost(range, soldDays(m_connection)))
            readAll(span);
        else
            readOnly(span);
    }

private:
    // The engine makes numbers of texts here as it does in the report's sums: "12,5" is 12 to both.
    static constexpr QStringView select = u"select tarih, barkod, urun, adet + 0, toplam + 0, kar + 0 from ";

    void add(const RowWalk::Row& row) {
        m_figures.add({row.text(0), row.text(1), row.text(2), row.number(3), row.number(4), row.number(5)});
    }

    void readOnly(const FigureRow::Span& span) {
        RowWalk lines(m_connection, select + between(span));
        lines.forEach(
            [&](const RowWalk::Row& row) { add(row); },
            [&](qsizetype done, qsizetype count) { m_progress.tell(reading.toString(), done, count); });
    }

    /// Here and not in the engine's condition, which is compared with each line as if it were a number first:
    /// that takes the engine of files with a password as long as reading the line.
    void readAll(const FigureRow::Span& span) {
        const std::string first = momentText(span.from);
        const std::string last = momentText(span.to);
        const auto number = [&](const QString& of) {
            return answer(m_connection, u"select %1(no) as no from satislar"_s.arg(of)).toLongLong();
        };
        const qint64 count = number(u"max"_s) - number(u"min"_s) + 1;
        qint64 done = 0;
        RowWalk(m_connection, select + u"satislar"_s).forEach([&](const RowWalk::Row& row) {
            if (const std::string_view moment = row.text(0); moment >= first && moment <= last)
                add(row);
            if (++done % stepRows == 0)
                m_progress.tell(reading.toString(), done, std::max(done, count));
        });
    }

    static std::string momentText(const QDateTime& moment) {
        return moment.toString(u"yyyy-MM-dd HH:mm:ss"_s).toStdString();
    }

    Connection& m_connection;
    SalesFigures& m_figures;
    const WorkProgress& m_progress;
};

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
    const auto dayOf = [](const QString& moment) {
        return QDate::fromString(moment.left(10), u"yyyy-MM-dd"_s);
    };
    // In a statement each: asked for both at once, the engine goes through all of them.
    const auto day = [&](const QString& end) {
        return dayOf(
            answer(connection, u"select %1(tarih) as gun from "_s.arg(end) + between(spanOf(anyDay()))));
    };
    DayRange sold{day(u"min"_s), day(u"max"_s)};
    if (sold.first.isValid() && sold.last.isValid())
        return sold;
    // Nothing was sold, or what stands at an end is no moment.
    sold = {};
    RowWalk moments(connection, u"select tarih from " + between(spanOf(anyDay())));
    moments.forEach([&](const RowWalk::Row& row) {
        const QDate any = dayOf(row.value(0).toString());
        if (!any.isValid())
            return;
        sold.first = sold.first.isValid() ? std::min(sold.first, any) : any;
        sold.last = sold.last.isValid() ? std::max(sold.last, any) : any;
    });
    return sold;
}

SalesPicture readSales(Connection& connection, const DayRange& range, const WorkProgress& progress) {
    SalesPicture picture{.range = range, .total = {}, .days = {}, .hours = {}, .products = {}};
    SalesFigures figures(dayGroups(range));
    if (!range.isEmpty())
        Reader(connection, figures, progress).read(range);
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
    connection.openToRead(baglantimetnial(), [&progress](qint64 done, qint64 total) {
        progress.tell(reading.toString(), done, total);
    });
    return readSales(connection, range == anyDay() ? soldDays(connection) : range, progress);
}

}  // namespace kovanix
