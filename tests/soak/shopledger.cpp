#include "shopledger.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "invariants.h"
#include "values/numbers.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

const QString connectionName = u"kovanix-soak"_s;
const QString productColumns = u"SELECT barkod, urun, alis, satis, stok FROM urunler "_s;
constexpr qint64 all = 1'000'000'000'000;
constexpr qsizetype labelCodeLength = 4;

Product productOf(const QSqlQuery& row) {
    return {row.value(0).toString(), row.value(1).toString(), row.value(2).toDouble(),
            row.value(3).toDouble(), row.value(4).toDouble()};
}

QString textOf(const Product& product) {
    return product.barcode + u' ' + product.name + u" for " + numberText(product.purchase) + u" and " +
           numberText(product.sale);
}

}  // namespace

ShopLedger::ShopLedger(const QString& file, const QString& password)
    : m_database(
          QSqlDatabase::addDatabase(password.isEmpty() ? u"QSQLITE"_s : u"QSQLCIPHER"_s, connectionName)) {
    m_database.setDatabaseName(file);
    m_database.setPassword(password);
    m_database.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=5000"_s);
    if (m_database.open())
        readShop();
    else
        m_trouble = m_database.lastError().text();
}

ShopLedger::~ShopLedger() {
    m_database.close();
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(connectionName);
}

QSqlQuery ShopLedger::query(const QString& sql, const QString& value) {
    QSqlQuery rows(m_database);
    rows.setForwardOnly(true);
    rows.prepare(sql);
    if (!value.isNull())
        rows.addBindValue(value);
    if (!rows.exec())
        m_trouble = u"the shop's file can't be read: " + rows.lastError().text();
    return rows;
}

/// The one value that a select gives.
QString ShopLedger::text(const QString& sql) {
    QSqlQuery rows = query(sql);
    return rows.next() ? rows.value(0).toString() : QString();
}

void ShopLedger::readShop() {
    query(u"PRAGMA cache_size = 10"_s);  // pages: what the soak keeps in memory isn't the till's
    m_version = text(u"PRAGMA data_version"_s);
    for (QSqlQuery rows = query(productColumns + u"ORDER BY no"); rows.next();) {
        const Product product = productOf(rows);
        if (knows(product.barcode))
            m_trouble = u"two products have the barcode " + product.barcode;
        add(product);
    }
    if (m_barcodes.isEmpty())
        m_trouble = u"the shop has no product that a scanner can bring"_s;
    m_products.reserve(2 * m_products.size());  // nor does it grow later
    m_rows = rowsUpTo(all);
    m_lastRow = text(u"SELECT max(no) FROM satislar"_s).toLongLong();
    m_otherTables = otherTables();
}

void ShopLedger::add(const Product& product) {
    const QString& barcode = product.barcode;
    m_products.insert(barcode, product);
    const int prefix = barcode.left(2).toInt();
    const bool digits = std::ranges::all_of(barcode, [](QChar sign) { return sign >= u'0' && sign <= u'9'; });
    if (!digits || barcode.toDouble() == 0)
        return;
    if (prefix < 27 || prefix > 29)
        m_barcodes.append(barcode);
    if (barcode.size() == labelCodeLength)
        m_labelCodes.append(barcode);
}

/// How many rows the sales have up to that number, and what they sum up to.
QString ShopLedger::rowsUpTo(qint64 number) {
    return text(
        u"SELECT count(*) || ' rows of ' || total(adet) || ' pieces at ' || total(fiyat) "
        u"|| ', ' || total(toplam) || ' lira in all, bought at ' || total(alis) || "
        u"', profit ' || total(kar) || ', stored again ' || total(satis) "
        u"FROM satislar WHERE no <= %1"_s.arg(number));
}

/// The number of rows of every table beside the products and the sales.
QMap<QString, QString> ShopLedger::otherTables() {
    QMap<QString, QString> counts;
    for (QSqlQuery rows = query(u"SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT "
                                u"IN ('urunler', 'satislar') AND name NOT LIKE 'sqlite_%'"_s);
         rows.next();) {
        const QString name = rows.value(0).toString();
        counts.insert(name, text(u"SELECT count(*) FROM " + name));
    }
    return counts;
}

QString ShopLedger::stockFault(const Product& product, double stock) {
    if (isClose(stock, product.stock, product.largest))
        return {};
    return u"the stock of " + product.barcode + u" is " + numberText(stock) + u", not " +
           numberText(product.stock);
}

/// The rows of the sale that was just stored are the lines of its ticket, and stock fell by their quantities.
QString ShopLedger::saleFault(const QList<TicketLine>& lines) {
    ++m_sales;
    m_linesStored += int(lines.size());
    if (const QString earlier = rowsUpTo(m_lastRow); earlier != m_rows)
        return u"the sales stored earlier were " + m_rows + u" and are " + earlier;
    QSqlQuery rows = query(
        u"SELECT no, barkod, urun, adet, fiyat, alis, toplam, kar, satis FROM "
        u"satislar WHERE no > %1 ORDER BY no"_s.arg(m_lastRow));
    for (const TicketLine& line : lines) {
        if (!rows.next())
            return u"no row was stored for " + line.barcode + u' ' + line.name;
        Product& product = m_products[line.barcode];
        const double quantity = amount(line.quantity);
        const double total = quantity * amount(line.price);
        const double profit = total - quantity * product.purchase;
        // The price may have been changed on the line; the profit is from what the product costs now, and is
        // stored once more where a sale price would stand.
        const std::array expected{quantity, amount(line.price), product.purchase, total, profit, profit};
        bool same = rows.value(1) == line.barcode && rows.value(2) == line.name.trimmed();
        QString stored;
        for (int i = 0; i < int(expected.size()); ++i) {
            same = same && isClose(rows.value(3 + i).toDouble(), expected[i], total);
            stored += u' ' + rows.value(3 + i).toString();
        }
        if (!same)
            return u"the row stored for " + line.quantity + u" of " + line.barcode + u" at " + line.price +
                   u" holds" + stored;
        m_lastRow = rows.value(0).toLongLong();
        product.stock -= quantity;
        product.largest = std::max({product.largest, quantity, std::fabs(product.stock)});
    }
    if (rows.next())
        return u"more rows are stored than the ticket had lines"_s;
    m_rows = rowsUpTo(all);
    for (const TicketLine& line : lines) {
        QSqlQuery row = query(productColumns + u"WHERE barkod = ?", line.barcode);
        const Product sold = row.next() ? productOf(row) : Product();
        if (const QString found = stockFault(m_products.value(line.barcode), sold.stock); !found.isEmpty())
            return found;
    }
    return m_trouble;
}

QString ShopLedger::wholeFault() {
    qsizetype count = 0;
    for (QSqlQuery rows = query(productColumns); rows.next(); ++count) {
        const Product found = productOf(rows);
        if (!knows(found.barcode))
            return u"a product nobody made: " + found.barcode;
        const Product known = m_products.value(found.barcode);
        if (found.name != known.name || found.purchase != known.purchase || found.sale != known.sale)
            return u"the product is " + textOf(found) + u", not " + textOf(known);
        if (const QString wrong = stockFault(known, found.stock); !wrong.isEmpty())
            return wrong;
    }
    if (count != m_products.size())
        return u"%1 products are in the file, %2 should be"_s.arg(count).arg(m_products.size());
    if (const QString rows = rowsUpTo(all); rows != m_rows)
        return u"the sales should be " + m_rows + u" and are " + rows;
    const QMap<QString, QString> others = otherTables();
    for (auto table = others.cbegin(); table != others.cend(); ++table) {
        if (m_otherTables.value(table.key()) != table.value())
            return u"the table " + table.key() + u" has " + table.value() + u" rows now";
    }
    return others.size() == m_otherTables.size() ? m_trouble : u"a table is gone"_s;
}

QString ShopLedger::fault(const Deed& deed) {
    const QString version = text(u"PRAGMA data_version"_s);
    const bool written = std::exchange(m_version, version) != version;
    if (deed.made) {
        ++m_productsMade;
        add(*deed.made);
        return wholeFault();
    }
    if (deed.priced) {
        m_products[deed.priced->first].sale = deed.priced->second;
        return wholeFault();
    }
    if (deed.stores)
        return saleFault(deed.before.lines);
    return written ? wholeFault() : m_trouble;
}

void dropCachedPages() {
    for (const QString& connection : QSqlDatabase::connectionNames())
        QSqlQuery(QSqlDatabase::database(connection, false)).exec(u"PRAGMA shrink_memory"_s);
}

}  // namespace kovanix
