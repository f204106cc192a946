#include "shopday.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <array>
#include <memory>
#include <random>

#include "bookedtill.h"
#include "data/baglanmamodulu.h"
#include "database/logrequest.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

/// Somebody who reads the file all the time: what is written meanwhile stays in the write-ahead log.
class Reader {
public:
    Reader(const QString& file, const QString& password) {
        m_database = QSqlDatabase::addDatabase(password.isEmpty() ? u"QSQLITE"_s : u"QSQLCIPHER"_s, name);
        m_database.setDatabaseName(file);
        m_database.setPassword(password);
        QSqlQuery query(m_database.open() ? m_database : QSqlDatabase());
        if (!query.exec(u"BEGIN"_s) || !query.exec(u"SELECT count(*) FROM satislar"_s) || !query.next())
            qFatal("nobody can read");
    }
    ~Reader() {
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(name);
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

private:
    inline static const QString name = QStringLiteral("reader");
    QSqlDatabase m_database;
};

class Cashier {
public:
    explicit Cashier(const DayPlan& plan) : m_plan(plan), m_random(plan.seed), m_till(plan.password) {}

    ShopDay trade() {
        m_till.layer().record(m_till.shop().folder());
        m_till.start();
        for (int sale = 0; sale < m_plan.sales; ++sale) {
            m_till.passTime();
            comeAndGo(sale);
            if (chance(8))
                workInTheOffice();
            if (m_plan.leavesLog && sale == m_plan.sales / 2)
                beAskedAndSell();
            else
                sell();
            // The next customer waits already, or the till has a moment.
            if (chance(25))
                QTest::qWait(25);
        }
        m_reader.reset();
        m_till.end();
        return {m_till.layer().takeTrace(), m_till.book(), m_leaving};
    }

private:
    bool chance(int percent) { return static_cast<int>(m_random() % 100) < percent; }
    int upTo(int most) { return 1 + static_cast<int>(m_random() % static_cast<unsigned>(most)); }

    void comeAndGo(int sale) {
        const bool hasLog = !m_plan.rollbackJournal && m_leaving.second == 0;
        if (hasLog && sale % 60 == 20)  // with a rollback journal, readers keep everybody from writing
            m_reader = std::make_unique<Reader>(m_till.shop().databaseFile(), m_plan.password);
        if (sale % 60 == 55)
            m_reader.reset();
        if (!m_plan.rollbackJournal && sale % 45 == 44) {
            m_till.end();
            m_till.start();
        }
    }

    /// A till over the network asks for the file: in vain while somebody reads, then just ahead of a sale.
    void beAskedAndSell() {
        LogRequest request(m_till.shop().databaseFile());
        request.renew();
        m_leaving.first = m_till.layer().steps();
        if (m_reader)
            baglanti().leaveLogIfAsked();
        m_reader.reset();
        request.renew();
        sell();
        m_leaving.second = m_till.layer().steps();
    }

    void workInTheOffice() {
        const QString barcode = QString::number(100000 + upTo(30));
        if (!m_products.contains(barcode)) {
            m_till.putProduct(barcode, upTo(40), upTo(500));
            m_products.append(barcode);
        } else if (chance(50)) {
            m_till.setStock(barcode, upTo(500));
        } else {
            m_till.removeProduct(barcode);
            m_products.removeAll(barcode);
        }
    }

    void scanLine() {
        const std::array barcodes{goods::bread, goods::milk, goods::tea, goods::bag};
        const QString& barcode = barcodes[m_random() % barcodes.size()];
        switch (m_random() % 8) {
            case 0:
                m_till.scan(u"2700012002504"_s);  // a label: 0,25 of tomatoes
                break;
            case 1:
                m_till.scanQuantity(u"0"_s, barcode);
                break;
            case 2:
                m_till.scanQuantity(u"2,5"_s, barcode);
                break;
            case 3:
                m_till.scan(m_products.isEmpty()
                                ? barcode
                                : m_products.at(upTo(static_cast<int>(m_products.size())) - 1));
                break;
            default:
                m_till.scan(barcode, upTo(3));
        }
    }

    void sell() {
        for (int line = upTo(6); line > 0; --line)
            scanLine();
        const bool isRefused = chance(5);
        if (isRefused)
            m_till.scan(BookedTill::refused);
        const bool isDeleted = !m_products.isEmpty() && chance(10);
        if (isDeleted) {
            // The last line, whose statement of the stock is the sale's last one.
            m_till.scan(m_products.constLast());
            m_till.removeProduct(m_products.takeLast());
        }
        m_till.store();
        if (isRefused)
            m_till.dropTicket();
    }

    DayPlan m_plan;
    std::mt19937 m_random;
    BookedTill m_till;
    QStringList m_products;  ///< the office's own
    std::unique_ptr<Reader> m_reader;
    std::pair<std::size_t, std::size_t> m_leaving{};
};

}  // namespace

ShopDay tradeForADay(const DayPlan& plan) {
    if (plan.rollbackJournal)
        setNetworkFileTest([](const QString&) { return true; });
    ShopDay day = Cashier(plan).trade();
    setNetworkFileTest({});
    return day;
}

}  // namespace kovanix
