#include "shopledger.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>
#include <algorithm>
#include <cmath>

#include "exactamounts.h"
#include "values/numbers.h"

namespace kovanix {

namespace {

const QString connectionName = QStringLiteral("kovanix-soak");
constexpr qsizetype labelCodeLength = 4;

bool isDigits(const QString& text) {
    return !text.isEmpty() &&
           std::all_of(text.begin(), text.end(), [](QChar sign) { return sign >= u'0' && sign <= u'9'; });
}

/// Equal but for the last of the 15 digits that numbers travel with.
bool isClose(double a, double b, double scale) {
    return std::fabs(a - b) <= 1e-13 * std::max({std::fabs(a), std::fabs(b), std::fabs(scale)});
}

QString shown(double value) {
    return numberText(value);
}

}  // namespace

ShopLedger::ShopLedger(const QString& file, const QString& password)
    : m_database(QSqlDatabase::addDatabase(
          password.isEmpty() ? QStringLiteral("QSQLITE") : QStringLiteral("QSQLCIPHER"), connectionName)) {
    m_database.setDatabaseName(file);
    m_database.setPassword(password);
    m_database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
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

bool ShopLedger::run(QSqlQuery& query, const QString& sql, const QStringList& values) {
    query.setForwardOnly(true);
    query.prepare(sql);
    for (const QString& value : values)
        query.addBindValue(value);
    if (query.exec())
        return true;
    m_trouble = query.lastError().text();
    return false;
}

void ShopLedger::readShop() {
    m_version = version();
    QSqlQuery products(m_database);
    run(products, QStringLiteral("SELECT barkod, stok FROM urunler ORDER BY no"));
    while (products.next()) {
        const QString barcode = products.value(0).toString();
        if (m_stock.contains(barcode))
            m_trouble = u"two products have the barcode " + barcode;
        m_stock.insert(barcode, {products.value(1).toDouble()});
        addBarcode(barcode);
    }
    QSqlQuery rows(m_database);
    if (run(rows, QStringLiteral("SELECT count(*), max(no) FROM satislar")) && rows.next()) {
        m_rows = rows.value(0).toLongLong();
        m_lastRow = rows.value(1).toLongLong();
    }
}

void ShopLedger::addBarcode(const QString& barcode) {
    const int prefix = barcode.left(2).toInt();
    if (!isDigits(barcode) || barcode.toDouble() == 0)
        return;
    if (prefix < 27 || prefix > 29)
        m_barcodes.append(barcode);
    if (barcode.size() == labelCodeLength)
        m_labelCodes.append(barcode);
}

/// A number that is another one once somebody else has written into the file.
qint64 ShopLedger::version() {
    QSqlQuery query(m_database);
    return run(query, QStringLiteral("PRAGMA data_version")) && query.next() ? query.value(0).toLongLong()
                                                                             : -1;
}

ShopLedger::Product ShopLedger::product(const QString& barcode) {
    QSqlQuery query(m_database);
    if (!run(query, QStringLiteral("SELECT urun, alis, satis FROM urunler WHERE barkod = ?"), {barcode}) ||
        !query.next())
        return {};
    return {query.value(0).toString(), query.value(1).toDouble(), query.value(2).toDouble()};
}

QString ShopLedger::checkRows(const std::vector<TicketLine>& lines) {
    QSqlQuery rows(m_database);
    if (!run(rows,
             QStringLiteral("SELECT no, barkod, urun, adet, fiyat, alis, toplam, kar, satis FROM satislar "
                            "WHERE no > %1 ORDER BY no")
                 .arg(m_lastRow)))
        return m_trouble;
    for (const TicketLine& line : lines) {
        if (!rows.next())
            return u"no row was stored for " + textOf(line);
        m_lastRow = rows.value(0).toLongLong();
        const double quantity = valueOf(line.quantity);
        const double price = valueOf(line.price);
        const double purchase = product(line.barcode).purchase;
        const double total = quantity * price;
        const double profit = total - quantity * purchase;
        const bool same =
            rows.value(1).toString() == line.barcode.trimmed() &&
            rows.value(2).toString() == line.name.trimmed() &&
            isClose(rows.value(3).toDouble(), quantity, 0) && isClose(rows.value(4).toDouble(), price, 0) &&
            isClose(rows.value(5).toDouble(), purchase, 0) && isClose(rows.value(6).toDouble(), total, 0) &&
            isClose(rows.value(7).toDouble(), profit, total) &&
            rows.value(8).toDouble() == rows.value(7).toDouble();
        if (!same) {
            QStringList values;
            for (int column = 1; column <= 8; ++column)
                values.append(rows.value(column).toString());
            return u"the row stored for " + textOf(line) + u" holds " + values.join(QStringLiteral(" | "));
        }
    }
    if (rows.next())
        return u"more rows are stored than the ticket had lines: no " + rows.value(0).toString();
    QSqlQuery count(m_database);
    if (!run(count, QStringLiteral("SELECT count(*) FROM satislar")) || !count.next())
        return m_trouble;
    m_rows += qint64(lines.size());
    if (count.value(0).toLongLong() != m_rows)
        return QStringLiteral("%1 rows are stored, %2 should be")
            .arg(count.value(0).toLongLong())
            .arg(m_rows);
    return {};
}

QString ShopLedger::checkStock() {
    QSqlQuery products(m_database);
    if (!run(products, QStringLiteral("SELECT barkod, stok FROM urunler")))
        return m_trouble;
    qsizetype count = 0;
    for (; products.next(); ++count) {
        const auto known = m_stock.constFind(products.value(0).toString());
        if (known == m_stock.constEnd())
            return u"a product nobody made: " + products.value(0).toString();
        const double left = known->start - known->sold;
        if (!isClose(products.value(1).toDouble(), left, known->sold))
            return u"the stock of " + known.key() + u" is " + shown(products.value(1).toDouble()) +
                   u", not " + shown(known->start) + u" less " + shown(known->sold);
    }
    if (count != m_stock.size())
        return QStringLiteral("%1 products are in the file, %2 should be").arg(count).arg(m_stock.size());
    return {};
}

QString ShopLedger::checkAll() {
    const QString fault = checkRows({});
    return fault.isEmpty() ? checkStock() : fault;
}

QString ShopLedger::checkSale(const std::vector<TicketLine>& lines) {
    m_version = version();
    ++m_sales;
    m_linesStored += int(lines.size());
    for (const TicketLine& line : lines)
        m_stock[line.barcode].sold += valueOf(line.quantity);
    const QString fault = checkRows(lines);
    return fault.isEmpty() ? checkStock() : fault;
}

QString ShopLedger::checkMade(const QString& barcode, const QString& name, double price) {
    m_version = version();
    ++m_productsMade;
    m_stock.insert(barcode, {1});
    addBarcode(barcode);
    QSqlQuery made(m_database);
    if (!run(made, QStringLiteral("SELECT urun, alis, satis, stok FROM urunler WHERE barkod = ?"), {barcode}))
        return m_trouble;
    if (!made.next())
        return u"no product was made of " + barcode;
    if (made.value(0).toString() != name || made.value(1).toDouble() != price ||
        made.value(2).toDouble() != price || made.value(3).toDouble() != 1)
        return u"the product made of " + barcode + u" is " + made.value(0).toString() + u" | " +
               shown(made.value(1).toDouble()) + u" | " + shown(made.value(2).toDouble()) + u" | " +
               shown(made.value(3).toDouble());
    return made.next() ? u"two products were made of " + barcode : QString();
}

QString ShopLedger::checkUntouched() {
    const qint64 now = version();
    if (now == m_version)
        return {};
    m_version = now;
    return checkAll();
}

}  // namespace kovanix
