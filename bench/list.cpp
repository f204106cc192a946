// The rows of a product list in memory: reading them, against the engine's own interface; sorting, filtering.

#include <malloc.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <algorithm>

#include "child.h"
#include "data/baglanmamodulu.h"
#include "database/connection.h"
#include "database/rowset.h"
#include "figures.h"
#include "runtime/process.h"
#include "runtime/runtimeerror.h"
#include "values/sortkey.h"

namespace {

using namespace kovanix;
using namespace kovanix::bench;
using namespace Qt::StringLiterals;

const QString allProducts = u"select * from urunler"_s;

template <class Step>
double milliseconds(Step&& step) {
    constexpr double nanosecondsAMillisecond = 1e6;
    QElapsedTimer timer;
    timer.start();
    step();
    return static_cast<double>(timer.nsecsElapsed()) / nanosecondsAMillisecond;
}

double heapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

/// What the lists of one shop may take.
struct Limits {
    double firstKey;
    double key;
    double sort;
};

class ListBench {
public:
    ListBench(const Figures& figures, const std::string& folder)
        : m_folder(folder), m_rounds(figures.quick() ? 3 : 9) {
        m_connection.open(baglantimetniyap(QString::fromStdString(folder + "/kovanix.data")));
    }

    void read(Figures& figures) {
        std::vector<double> till;
        std::vector<double> raw;
        std::vector<double> ratios;
        for (int i = 0; i < m_rounds; ++i) {
            till.push_back(milliseconds([this] { fresh().read(m_connection, allProducts); }));
            raw.push_back(rawListRead(m_folder));
            ratios.push_back(till.back() / raw.back());
        }
        m_name = QString(u", %L1 products"_s).arg(m_rows.totalCount()).toStdString();
        figures.tell("Reading the product list" + m_name, percentile(till, 0.5), "ms");
        figures.tell("The same through the C interface" + m_name, percentile(raw, 0.5), "ms");
        figures.atMost(2.5, "Reading the product list, till against C interface" + m_name,
                       percentile(ratios, 0.5), "×");
        figures.atMost(1, "Finding that the list is as it was" + m_name,
                       median([this] { m_rows.read(m_connection, allProducts); }), "ms");
    }

    void filter(Figures& figures, const Limits& limits) {
        m_rows.setSort(u"urun ASC"_s);
        double worst = 0;
        for (const QString& word : {u"süt"_s, u"a"_s, u"beyaz pey"_s, u"zzz"_s}) {
            for (qsizetype letters = 1; letters <= word.size(); ++letters) {
                // As typed, and as when the filter is given anew.
                for (const QString& before : {word.first(letters - 1), QString()})
                    worst = std::max(worst, key(before, word.first(letters)));
            }
        }
        figures.atMost(limits.key, "The slowest key of a filter, sorted by name" + m_name, worst, "ms");
        figures.tell("A filter with wildcards inside" + m_name,
                     median([this] { m_rows.setFilter(RowFilter::parse(u"urun LIKE '%s_t%p%'")); }), "ms");
        figures.tell("A filter of a price" + m_name,
                     median([this] { m_rows.setFilter(RowFilter::parse(u"satis LIKE '12.5'")); }), "ms");
        const QString longest = u"urun LIKE '%"_s + u"a_%"_s.repeated(333333) + u'\'';
        figures.atMost(2000, "A filter of a million characters" + m_name,
                       milliseconds([&] { m_rows.setFilter(RowFilter::parse(longest)); }), "ms");
        m_rows.setFilter({});
    }

    void sort(Figures& figures, const Limits& limits) {
        std::vector<double> till;
        std::vector<double> first;
        std::vector<double> back;
        std::vector<double> price;
        std::vector<double> ratios;
        for (int i = 0; i < m_rounds; ++i) {
            // A read drops what was worked out before.
            fresh().read(m_connection, allProducts);
            till.push_back(milliseconds([this] { m_rows.setSort(u"urun ASC"_s); }));
            first.push_back(milliseconds([this] { type(u"s"_s); }));
            type({});
            back.push_back(milliseconds([this] { m_rows.setSort(u"urun DESC"_s); }));
            price.push_back(milliseconds([this] { m_rows.setSort(u"satis ASC"_s); }));
            ratios.push_back(till.back() / sortKeys());
        }
        figures.atMost(limits.firstKey, "First key of a filter" + m_name, percentile(first, 0.5), "ms");
        figures.atMost(limits.sort, "Sorting by name" + m_name, percentile(till, 0.5), "ms");
        figures.atMost(1.5, "Sorting by name against sorting the same keys" + m_name, percentile(ratios, 0.5),
                       "×");
        figures.tell("Sorting by name the other way" + m_name, percentile(back, 0.5), "ms");
        figures.tell("Sorting by price" + m_name, percentile(price, 0.5), "ms");
    }

    void memory(Figures& figures) {
        m_rows = RowSet();
        const double empty = heapInUse();
        m_rows.read(m_connection, allProducts);
        m_rows.setSort(u"urun ASC"_s);
        type(u"s"_s);
        figures.atMost(350, "Memory of a row, filtered and sorted" + m_name,
                       (heapInUse() - empty) / static_cast<double>(m_rows.totalCount()), "bytes");
    }

private:
    RowSet& fresh() {
        m_rows = RowSet();
        return m_rows;
    }

    void type(const QString& text) {
        m_rows.setFilter(text.isEmpty() ? RowFilter()
                                        : RowFilter::parse(QString(u"urun LIKE '%"_s + text + u"%'")));
    }

    /// The median of the milliseconds that a filter takes behind another.
    double key(const QString& before, const QString& text) {
        std::vector<double> times;
        for (int i = 0; i < m_rounds; ++i) {
            type({});
            type(before);
            times.push_back(milliseconds([&] { type(text); }));
        }
        return percentile(times, 0.5);
    }

    template <class Step>
    double median(Step&& step) const {
        std::vector<double> times;
        for (int i = 0; i < m_rounds; ++i)
            times.push_back(milliseconds(step));
        return percentile(times, 0.5);
    }

    /// The milliseconds that the standard library takes to sort the keys of the same names.
    double sortKeys() {
        std::vector<std::string> keys;
        m_rows.setSort({});
        for (qsizetype place = 0; place < m_rows.totalCount(); ++place)
            keys.push_back(sortKey(m_rows.text(place, m_rows.fieldIndex(u"urun"))));
        return milliseconds([&keys] { std::sort(keys.begin(), keys.end()); });
    }

    std::string m_folder;
    std::string m_name;
    int m_rounds;
    Connection m_connection;
    RowSet m_rows;
};

}  // namespace

int main(int argc, char** argv) {
    Figures figures(argc, argv);
    hashInNarrowRegisters();
    int none = 1;
    const QCoreApplication application(none, argv);
    try {
        for (const auto& [shop, limits] :
             {std::pair("medium", Limits{20, 2, 20}), {"large", Limits{150, 30, 800}}}) {
            ListBench bench(figures, figures.option(shop));
            bench.read(figures);
            bench.sort(figures, limits);
            bench.filter(figures, limits);
            bench.memory(figures);
        }
    } catch (const RuntimeError& error) {
        giveUp(error.what());
    }
    return figures.status();
}
