// Two tills that sell into one file at the same time, one of them killed now and then.

#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <random>
#include <set>

#include "programs.h"
#include "runtests.h"
#include "wantedtimes.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

int killsIn(int sales) {
    return 3 + sales / 500;
}

constexpr int longestDelay = 30;  // milliseconds from a stored sale to the kill: one or two sales

const std::array barcodes{shelf::bread, shelf::milk, shelf::tomatoes};
using Quantities = std::array<double, 3>;  ///< by barcodes

struct Line {
    QString barcode;
    double quantity;
    bool operator==(const Line&) const = default;
};

struct Sale {
    QList<Line> lines;
    bool isTold = false;
};

void add(Quantities& sums, const Line& line) {
    const auto place = std::find(barcodes.begin(), barcodes.end(), line.barcode) - barcodes.begin();
    sums.at(static_cast<std::size_t>(place)) += line.quantity;
}

/// One of the tills, with what was pressed on it since the morning, however often it was started.
class SellingTill {
public:
    SellingTill(const ClosedShop& shop, int number, int sales)
        : m_folder(shop.folder()), m_number(number), m_sales(sales) {
        start();
    }

    void start() {
        m_read = 0;
        const int from = static_cast<int>(m_pressed.size());
        m_program = std::make_unique<Program>(QStringList{
            QStringLiteral(TRADE_PROGRAM), u"--folder"_s, m_folder, u"--till"_s, QString::number(m_number),
            u"--from"_s, QString::number(from), u"--sales"_s, QString::number(m_sales)});
    }

    void kill() {
        m_program->killHard();
        read();
        m_cut += m_pressed.isEmpty() || m_pressed.last().isTold ? 0 : 1;
    }

    bool isRunning() const { return m_program->isRunning(); }
    Outcome finish() {
        const Outcome outcome = m_program->finish();
        read();
        return outcome;
    }

    /// Takes what the till has said since.
    void read() {
        for (; m_read < m_program->lines().size(); ++m_read) {
            const QStringList words = m_program->lines().at(m_read).split(u' ');
            if (words.first() == u"press"_s) {
                Sale sale;
                for (const QString& word : words.mid(2))
                    sale.lines.append({word.section(u'=', 0, 0), word.section(u'=', 1).toDouble()});
                m_pressed.append(sale);
            } else if (words.first() == u"stored"_s) {
                m_pressed.last().isTold = true;
                m_waits.append(words.at(2).toInt() / 1000.0);
            } else {
                m_strange.append(m_program->lines().at(m_read));
            }
        }
    }

    const QList<Sale>& pressed() const { return m_pressed; }
    /// How long each press took to store, in milliseconds.
    const QList<double>& waits() const { return m_waits; }
    /// What it said besides: its message boxes.
    const QStringList& strange() const { return m_strange; }
    /// How many kills fell into a sale.
    int cut() const { return m_cut; }

private:
    QString m_folder;
    int m_number;
    int m_sales;
    std::unique_ptr<Program> m_program;
    qsizetype m_read = 0;
    QList<Sale> m_pressed;
    QList<double> m_waits;
    QStringList m_strange;
    int m_cut = 0;
};

}  // namespace

class TwoTillsTest : public QObject {
    Q_OBJECT

    using Tills = std::array<std::unique_ptr<SellingTill>, 2>;

    static qsizetype storedBy(const Tills& tills) {
        qsizetype stored = 0;
        for (const auto& till : tills) {
            till->read();
            stored += till->waits().size();
        }
        return stored;
    }

    /// Waits while the tills get on.
    static bool waitFor(const Tills& tills, const std::function<bool()>& condition) {
        for (qsizetype before = -1; !QTest::qWaitFor(condition, patience);) {
            const qsizetype now = storedBy(tills);
            if (now == std::exchange(before, now))
                return false;
        }
        return true;
    }

    static void runFor(int milliseconds) {
        QEventLoop loop;
        QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
        loop.exec();
    }

    /// The sold lines in the file, by the second of their sale.
    static std::map<QString, QList<Line>> soldLines(const ClosedShop& shop) {
        std::map<QString, QList<Line>> sold;
        for (const QVariantList& row : shop.rows(u"SELECT tarih, barkod, adet FROM satislar ORDER BY no"_s))
            sold[row.at(0).toString()].append({row.at(1).toString(), row.at(2).toDouble()});
        return sold;
    }

private Q_SLOTS:
    void whatWasPressedIsThere_data() {
        QTest::addColumn<QString>("password");
        QTest::newRow("a plain file") << QString();
        QTest::newRow("a file with a password") << u"gizli"_s;
    }

    void whatWasPressedIsThere() {
        QFETCH(QString, password);
        const int sales = wantedTimes("KOVANIX_TRADE", 150);
        const ClosedShop shop(password);
        std::mt19937 random(20260503);
        Tills tills;
        for (int number = 0; number < 2; ++number)
            tills.at(number) = std::make_unique<SellingTill>(shop, number, sales);
        const int kills = killsIn(sales);
        for (int kill = 1; kill <= kills; ++kill) {
            const qsizetype moment = 2 * sales * qsizetype{kill} / (kills + 2);
            QVERIFY(waitFor(tills, [&] { return storedBy(tills) >= moment; }));
            runFor(static_cast<int>(random() % longestDelay));
            SellingTill& till = *tills.at(kill % 2);
            QVERIFY2(till.isRunning(), qPrintable(till.strange().join(u'\n')));
            till.kill();
            till.start();
        }
        for (const auto& till : tills) {
            QVERIFY(waitFor(tills, [&] { return !till->isRunning(); }));
            const Outcome outcome = till->finish();
            QCOMPARE(till->strange().join(u'\n'), QString());
            QCOMPARE(outcome.errors, QString());
            QCOMPARE(outcome.status, 0);
            QCOMPARE(till->pressed().size(), sales);
        }

        QCOMPARE(shop.value(u"PRAGMA integrity_check"_s).toString(), u"ok"_s);
        std::map<QString, QList<Line>> sold = soldLines(shop);
        Quantities told{};
        QList<Sale> cut;  // those whose lines are all there: some of them may have been taken off the stock
        for (int number = 0; number < 2; ++number) {
            const QList<Sale>& pressed = tills.at(number)->pressed();
            for (qsizetype i = 0; i < pressed.size(); ++i) {
                const Sale& sale = pressed.at(i);
                const QDateTime moment = QDateTime(QDate(2026, 5, 3), QTime(7, 0)).addSecs(2 * i + number);
                const QList<Line> lines = sold[moment.toString(u"yyyy-MM-dd HH:mm:ss"_s)];
                sold.erase(moment.toString(u"yyyy-MM-dd HH:mm:ss"_s));
                if (sale.isTold) {
                    QCOMPARE(lines, sale.lines);
                    for (const Line& line : lines)
                        add(told, line);
                } else {
                    QCOMPARE(lines, sale.lines.first(std::min(lines.size(), sale.lines.size())));
                    if (lines.size() == sale.lines.size())
                        cut.append(sale);
                }
            }
        }
        QVERIFY(sold.empty());  // nobody else has sold

        // What of the cut sales was taken off the stock can't be seen for each, but some beginning of each.
        std::set<Quantities> possible{told};
        for (const Sale& sale : cut) {
            std::set<Quantities> next;
            for (Quantities sums : possible) {
                next.insert(sums);
                for (const Line& line : sale.lines) {
                    add(sums, line);
                    next.insert(sums);
                }
            }
            possible = next;
        }
        Quantities taken{};
        for (std::size_t i = 0; i < barcodes.size(); ++i)
            taken.at(i) = shelf::startStock - shop.stock(barcodes.at(i));
        QVERIFY2(possible.contains(taken), qPrintable(u"taken: %1 %2 %3, told: %4 %5 %6"_s.arg(taken[0])
                                                          .arg(taken[1])
                                                          .arg(taken[2])
                                                          .arg(told[0])
                                                          .arg(told[1])
                                                          .arg(told[2])));

        QList<double> waits = tills[0]->waits() + tills[1]->waits();
        std::sort(waits.begin(), waits.end());
        qInfo(
            "%d sales told, %d kills, %d of them in a sale; storing took %.1f ms in the middle, %.1f ms the "
            "99th of 100, %.1f ms at worst",
            static_cast<int>(waits.size()), kills, tills[0]->cut() + tills[1]->cut(),
            waits.at(waits.size() / 2), waits.at(waits.size() * 99 / 100), waits.last());
    }
};

int main(int argc, char** argv) {
    return runTests<TwoTillsTest>(argc, argv);
}

#include "test_twotills.moc"
