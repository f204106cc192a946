// The sales report over two shops' sold lines: a day, 31 days and, unless "--years no" is given, a year of
// them.

#include <malloc.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <functional>
#include <sstream>

#include "app/frame.h"
#include "child.h"
#include "data/baglanmamodulu.h"
#include "desktop/application.h"
#include "desktop/focus.h"
#include "figures.h"
#include "reports/satisraporlar.h"
#include "runtime/clock.h"
#include "runtime/screenregistry.h"
#include "till.h"

namespace {

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace kovanix::bench;

// The shops' last whole day is that before.
const QDate today(2026, 1, 1);

struct Range {
    std::string name;
    QDate from;
    QDate to;
};

const std::vector<Range>& ranges() {
    static const std::vector<Range> all{{"a day", today.addDays(-1), today.addDays(-1)},
                                        {"31 days", today.addDays(-31), today.addDays(-1)},
                                        {"a year", QDate(2025, 1, 1), QDate(2025, 12, 31)}};
    return all;
}

/// What was measured of a range in one shop, in milliseconds.
struct RangeTimes {
    std::vector<double> shown;  ///< from the closed calendar to painted rows and sums
    std::vector<double> raw;
    std::vector<double> sums;
    std::vector<double> rawSums;
    std::vector<double> again;  ///< the second read behind the opening
    double lines = 0;
    double memory = 0;  ///< bytes
};

struct Times {
    std::string shop;  ///< "100,000 sold lines"
    std::vector<double> open;
    std::vector<RangeTimes> ranges;  ///< the first ones of ranges()
};

/// Sees when the rows are painted.
class Watch : public QObject {
public:
    Watch() { qApp->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint && watched->parent() &&
            watched->parent()->objectName() == u"TDBGrid1")
            painted = true;
        return false;
    }

    bool painted = false;
};

double heapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

double milliseconds(const std::function<void()>& step) {
    QElapsedTimer timer;
    timer.start();
    step();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/// Takes the second run of bench_sales_raw: the first one reads from the disk what the till holds already.
void measureRaw(const QString& folder, const Range& range, RangeTimes& times) {
    const auto text = [](QDate day, const char* time) {
        return day.toString(Qt::ISODate).toStdString() + time;
    };
    const std::string output =
        outputOf({neighbour("bench_sales_raw"), "--folder", folder.toStdString(), "--from",
                  text(range.from, " 00:00:00"), "--to", text(range.to, " 23:59:59"), "--runs", "2"});
    std::istringstream second(output.substr(output.find('\n') + 1));
    double lines = 0;
    second >> lines;
    times.raw.push_back(lines);
    std::size_t sums = 0;
    for (double taken = 0; second >> taken; ++sums)
        times.rawSums.push_back(taken);
    if (sums != timesAddedUp)
        giveUp("bench_sales_raw hasn't added up");
}

void measureRange(Watch& watch, const QString& folder, const Range& range, RangeTimes& times) {
    satisraporlar& report = screen<satisraporlar>();
    Ui::satisraporlar& ui = report.ui;
    // From an empty list, so that the rows of before are in nobody's way.
    ui.ilktarih1->setDate(today.addDays(900));
    ui.ilktarih2->setDate(today.addDays(900));
    Q_EMIT ui.ilktarih2->closeUp();
    finishPosted();
    const double empty = heapInUse();

    ui.ilktarih1->setDate(range.from);
    ui.ilktarih2->setDate(range.to);
    watch.painted = false;
    times.shown.push_back(milliseconds([&] {
        Q_EMIT ui.ilktarih2->closeUp();
        finishPosted();
    }));
    if (!watch.painted)
        giveUp("the rows were not painted");
    times.lines = static_cast<double>(ui.Adodc1->recordset().totalCount());
    times.memory = heapInUse() - empty;
    for (int i = 0; i < timesAddedUp; ++i) {
        times.sums.push_back(milliseconds([&] {
            Recordset sums;
            sums.open(
                u"select sum(adet) as adet, sum(toplam) as toplam  , sum(kar) as kar  from satislar where "
                u"tarih between "_s +
                    sqltarihbetween(range.from, u"00:00:00"_s, range.to, u"23:59:59"_s),
                baglanti());
            if (sayicevir(sums.field(u"adet"_s)) <= 0)
                giveUp("nothing was sold");
        }));
    }
    for (int i = 0; i < 5; ++i) {
        times.again.push_back(milliseconds([&] {
            Q_EMIT report.acilis.tick();
            finishPosted();
        }));
    }
    measureRaw(folder, range, times);
}

void measure(Watch& watch, const QString& folder, std::size_t kinds, Times& times) {
    satisekrani& sales = openShop(folder);
    await([&] { return takesScans(sales); });
    times.shop = rowsOf(u"satislar"_s) + " sold lines";
    watch.painted = false;
    times.open.push_back(milliseconds([&] {
        showInFront(screen<satisraporlar>());
        await([&] { return watch.painted; });
    }));
    screen<satisraporlar>().acilis.setInterval(0);
    await([] { return screen<satisraporlar>().isActiveWindow(); });
    times.ranges.resize(kinds);
    for (std::size_t i = 0; i < kinds; ++i)
        measureRange(watch, folder, ranges()[i], times.ranges[i]);
    closeShop();
}

void tell(Figures& figures, const Times& times) {
    const std::string& shop = times.shop;
    const auto median = [](const std::vector<double>& sample) { return percentile(sample, 0.5); };
    const auto best = [](const std::vector<double>& sample) { return percentile(sample, 0); };
    figures.tell("Sales report, opening to first paint, " + shop, median(times.open), "ms");
    for (std::size_t i = 0; i < times.ranges.size(); ++i) {
        const RangeTimes& range = times.ranges[i];
        const std::string what = ", " + ranges()[i].name + " of " + shop;
        constexpr double paint = 20;
        constexpr std::size_t year = 2;
        figures.tell("Sales report, lines" + what, range.lines, "lines");
        figures.tell("Sales report, range chosen to painted" + what, median(range.shown), "ms");
        figures.tell("The same lines through the C interface" + what, median(range.raw), "ms");
        figures.atMost(i == year ? 2.5 : 2,
                       "Sales report without 20 ms for painting, against the C interface" + what,
                       std::max(0.0, median(range.shown) - paint) / median(range.raw), "×");
        // They take so little that whatever else the machine does shows in every other run.
        figures.tell("Sums of the report, best run" + what, best(range.sums), "ms");
        constexpr double worthMeasuring = 0.5;  // less is mostly what it takes to ask for them
        if (best(range.rawSums) >= worthMeasuring)
            figures.atMost(1.2, "Sums of the report, against the C interface, best runs" + what,
                           best(range.sums) / best(range.rawSums), "×");
        figures.atMost(5, "Second read of the report, nothing changed" + what, median(range.again), "ms");
        if (i == year)
            figures.atMost(450, "Memory of a sold line" + what, range.memory / range.lines, "bytes");
    }
}

}  // namespace

int main(int argc, char** argv) {
    Figures figures(argc, argv);
    const QStringList folders{QString::fromStdString(figures.option("medium")),
                              QString::fromStdString(figures.option("large"))};
    const std::size_t kinds = figures.option("years", "yes") == "no" ? 2 : ranges().size();
    int none = 1;
    Application application(none, argv);
    prepareApplication();
    Clock::setSource([] { return QDateTime(today, QTime(12, 0)); });
    Watch watch;
    std::vector<Times> all(2);
    QTimer::singleShot(0, [&] {
        // In turns, so that whatever else the machine does falls on both shops alike.
        for (int round = 0; round < (figures.quick() ? 2 : 5); ++round) {
            for (qsizetype shop = 0; shop < folders.size(); ++shop)
                measure(watch, folders[shop], kinds, all[static_cast<std::size_t>(shop)]);
        }
        QCoreApplication::exit(0);
    });
    if (const int status = application.run([] {}); status != 0)
        return status;
    for (const Times& times : all)
        tell(figures, times);
    return figures.status();
}
