#include "sellingtills.h"

#include <QEventLoop>
#include <QTimer>
#include <QtTest>
#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

using Quantities = std::array<double, 3>;  ///< by barcodes

const std::array barcodes{shelf::bread, shelf::milk, shelf::tomatoes};

void add(Quantities& sums, const Line& line) {
    const auto place = std::find(barcodes.begin(), barcodes.end(), line.barcode) - barcodes.begin();
    sums.at(static_cast<std::size_t>(place)) += line.quantity;
}

QString textOf(const Quantities& sums) {
    return u"%1 %2 %3"_s.arg(sums[0]).arg(sums[1]).arg(sums[2]);
}

QString textOf(const QList<Line>& lines) {
    QStringList texts;
    for (const Line& line : lines)
        texts.append(line.barcode + u'=' + QString::number(line.quantity));
    return texts.join(u' ');
}

/// The sold lines in the database, by the second of their sale.
std::map<QString, QList<Line>> soldLines(const ClosedShop& shop) {
    std::map<QString, QList<Line>> sold;
    for (const QVariantList& row : shop.rows(u"SELECT tarih, barkod, adet FROM satislar ORDER BY no"_s))
        sold[row.at(0).toString()].append({row.at(1).toString(), row.at(2).toDouble()});
    return sold;
}

/// Only the quantities of some products.
Quantities only(const Quantities& sums, const std::set<std::size_t>& products) {
    Quantities some{};
    for (const std::size_t product : products)
        some.at(product) = sums.at(product);
    return some;
}

/// Whether that may have been taken off the stock: of each cut sale some beginning.
bool isPossible(const Quantities& taken, const Quantities& told, const QList<Sale>& cut,
                const std::set<std::size_t>& products) {
    std::set<Quantities> possible{only(told, products)};
    for (const Sale& sale : cut) {
        std::set<Quantities> next;
        for (Quantities sums : possible) {
            next.insert(sums);
            for (const Line& line : sale.lines) {
                add(sums, line);
                next.insert(only(sums, products));
            }
        }
        possible = next;
    }
    return possible.contains(only(taken, products));
}

}  // namespace

SellingTill::SellingTill(const ClosedShop& shop, int number, int tills, TradeLength length)
    : m_folder(shop.folder()), m_number(number), m_tills(tills), m_length(length) {
    start();
}

void SellingTill::start() {
    m_read = 0;
    const auto number = [](qsizetype value) { return QString::number(value); };
    m_program = std::make_unique<Program>(
        QStringList{QStringLiteral(TRADE_PROGRAM), u"--folder"_s, m_folder, u"--till"_s, number(m_number),
                    u"--tills"_s, number(m_tills), u"--from"_s, number(m_pressed.size()), u"--sales"_s,
                    number(m_length.sales), u"--seconds"_s, number(m_length.seconds)});
}

void SellingTill::kill() {
    m_program->killHard();
    read();
}

Outcome SellingTill::finish() {
    const Outcome outcome = m_program->finish();
    read();
    return outcome;
}

void SellingTill::read() {
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

int SellingTill::cut() const {
    return static_cast<int>(std::ranges::count(m_pressed, false, &Sale::isTold));
}

SellingTills::SellingTills(const ClosedShop& shop, int tills, TradeLength length) {
    for (int number = 0; number < tills; ++number)
        m_tills.push_back(std::make_unique<SellingTill>(shop, number, tills, length));
}

qsizetype SellingTills::told() {
    qsizetype told = 0;
    for (const auto& till : m_tills) {
        till->read();
        told += till->waits().size();
    }
    return told;
}

bool SellingTills::waitFor(const std::function<bool()>& condition) {
    for (qsizetype before = -1; !QTest::qWaitFor(condition, patience);) {
        const qsizetype now = told();
        if (now == std::exchange(before, now))
            return false;
    }
    return true;
}

void SellingTills::startEnded() {
    for (const auto& till : m_tills) {
        if (till->isRunning())
            continue;
        till->read();
        if (!till->isDone())
            till->start();
    }
}

bool SellingTills::areDone() const {
    return std::ranges::all_of(m_tills, [](const auto& till) { return till->isDone(); });
}

QString SellingTills::difference(const ClosedShop& shop, bool stockIsTaken) const {
    std::map<QString, QList<Line>> sold = soldLines(shop);
    Quantities told{};
    QList<Sale> cut;  // those whose lines are all there: some of them may have been taken off the stock
    for (int number = 0; number < count(); ++number) {
        const QList<Sale>& pressed = m_tills.at(static_cast<std::size_t>(number))->pressed();
        for (qsizetype i = 0; i < pressed.size(); ++i) {
            const Sale& sale = pressed.at(i);
            const QString moment = QDateTime(QDate(2026, 5, 3), QTime(7, 0))
                                       .addSecs(count() * i + number)
                                       .toString(u"yyyy-MM-dd HH:mm:ss"_s);
            const QList<Line> lines = sold[moment];
            sold.erase(moment);
            const QList<Line> wanted =
                sale.isTold ? sale.lines : sale.lines.first(std::min(lines.size(), sale.lines.size()));
            if (lines != wanted)
                return u"till %1, sale %2 (%3): stored %4, pressed %5"_s.arg(
                    QString::number(number), QString::number(i), sale.isTold ? u"told"_s : u"cut"_s,
                    textOf(lines), textOf(sale.lines));
            if (sale.isTold)
                std::ranges::for_each(lines, [&](const Line& line) { add(told, line); });
            else if (lines.size() == sale.lines.size())
                cut.append(sale);
        }
    }
    if (!sold.empty())
        return u"a sale that nobody pressed: "_s + sold.begin()->first;

    Quantities taken{};
    for (std::size_t i = 0; i < barcodes.size(); ++i)
        taken.at(i) = shelf::startStock - shop.stock(barcodes.at(i));
    if (!stockIsTaken) {
        told = {};
        cut.clear();
    }
    // All products together would be too many sums where many sales were cut.
    constexpr qsizetype fewCuts = 12;
    const std::vector<std::set<std::size_t>> groups = cut.size() <= fewCuts
                                                          ? std::vector<std::set<std::size_t>>{{0, 1, 2}}
                                                          : std::vector<std::set<std::size_t>>{{0}, {1}, {2}};
    for (const std::set<std::size_t>& products : groups) {
        if (!isPossible(taken, told, cut, products))
            return u"taken: %1, told: %2, cut: %3"_s.arg(textOf(taken), textOf(told),
                                                         QString::number(cut.size()));
    }
    return {};
}

QString SellingTills::summary() const {
    QList<double> waits;
    int cut = 0;
    for (const auto& till : m_tills) {
        waits += till->waits();
        cut += till->cut();
    }
    std::ranges::sort(waits);
    return u"%1 sales told, %2 cut; storing took %3 ms in the middle, %4 ms the 99th of 100, %5 ms at worst"_s
        .arg(waits.size())
        .arg(cut)
        .arg(waits.value(waits.size() / 2), 0, 'f', 1)
        .arg(waits.value(waits.size() * 99 / 100), 0, 'f', 1)
        .arg(waits.value(waits.size() - 1), 0, 'f', 1);
}

void runFor(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

}  // namespace kovanix
