#include "shopbook.h"

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <algorithm>
#include <optional>

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

QString describe(const SoldLine& sale) {
    QStringList texts{sale.moment, sale.barcode, sale.name};
    for (const double number : sale.numbers)
        texts.append(QString::number(number, 'g', 17));
    return texts.join(u'|');
}

/// A connection that the till doesn't know, past every layer that lies under the engine.
class BareConnection {
public:
    BareConnection(const QString& file, const QString& password) {
        m_database = QSqlDatabase::addDatabase(password.isEmpty() ? u"QSQLITE"_s : u"QSQLCIPHER"_s, name);
        m_database.setDatabaseName(u"file:"_s + file + u"?mode=rw&vfs=unix"_s);
        m_database.setPassword(password);
        m_database.setConnectOptions(u"QSQLITE_OPEN_URI"_s);
        if (!m_database.open())
            m_trouble = m_database.lastError().text();
    }
    ~BareConnection() {
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(name);
    }
    BareConnection(const BareConnection&) = delete;
    BareConnection& operator=(const BareConnection&) = delete;

    QList<QVariantList> rows(const QString& sql) {
        QList<QVariantList> found;
        if (!m_trouble.isEmpty())
            return found;
        QSqlQuery query(m_database);
        query.setForwardOnly(true);
        if (!query.exec(sql))
            m_trouble = query.lastError().text();
        const int width = query.record().count();
        while (query.next()) {
            QVariantList row;
            for (int column = 0; column < width; ++column)
                row.append(query.value(column));
            found.append(row);
        }
        return found;
    }

    /// The first failure, in the engine's words.
    const QString& trouble() const { return m_trouble; }

private:
    inline static const QString name = QStringLiteral("bare");
    QSqlDatabase m_database;
    QString m_trouble;
};

}  // namespace

ShopContents readShop(const FolderFiles& files, const QString& password) {
    // In memory where the system offers that: thousands of them are read.
    static const QString place = QFileInfo(u"/dev/shm"_s).isWritable() ? u"/dev/shm"_s : QDir::tempPath();
    static const QTemporaryDir folder(place + u"/kovanix-cut-XXXXXX"_s);
    const QDir dir(folder.path());
    for (const QString& left : dir.entryList(QDir::Files))
        QFile::remove(dir.filePath(left));
    for (auto file = files.begin(); file != files.end(); ++file) {
        QFile copy(dir.filePath(file.key()));
        if (!copy.open(QIODevice::WriteOnly) || copy.write(file.value()) != file.value().size())
            qFatal("can't lay out the disk");
    }
    return readShop(dir.filePath(u"kovanix.data"_s), password);
}

ShopContents readShop(const QString& file, const QString& password) {
    ShopContents shop;
    BareConnection connection(file, password);
    connection.rows(u"PRAGMA synchronous=OFF"_s);  // nobody needs what the engine mends here
    const QList<QVariantList> check = connection.rows(u"PRAGMA integrity_check"_s);
    if (check != QList<QVariantList>{{u"ok"_s}})
        shop.trouble = u"integrity_check: "_s + check.value(0).value(0).toString();
    const QString select =
        u"SELECT no, tarih, barkod, urun, adet, fiyat, alis, kar, toplam, satis FROM satislar ORDER BY no"_s;
    for (const QVariantList& row : connection.rows(select)) {
        SoldLine sale{row.at(1).toString(), row.at(2).toString(), row.at(3).toString(), {}};
        for (std::size_t i = 0; i < sale.numbers.size(); ++i)
            sale.numbers.at(i) = row.at(4 + static_cast<qsizetype>(i)).toDouble();
        shop.sales.push_back(sale);
        if (row.at(0).toULongLong() != shop.sales.size())
            shop.trouble = u"the numbers jump to %1"_s.arg(row.at(0).toLongLong());
    }
    for (const QVariantList& row : connection.rows(u"SELECT barkod, stok FROM urunler"_s)) {
        if (shop.stock.contains(row.at(0).toString()))
            shop.trouble = u"a product is there twice"_s;
        shop.stock[row.at(0).toString()] = row.at(1).toDouble();
    }
    if (!connection.trouble().isEmpty())
        shop.trouble = connection.trouble();
    return shop;
}

ShopBook::ShopBook(const ShopContents& start) : m_sales(start.sales) {
    if (!start.trouble.isEmpty())
        qFatal("%s", qUtf8Printable(start.trouble));
    add(m_sales.size(), start.stock);
}

void ShopBook::store(const SoldLine& sale) {
    m_sales.push_back(sale);
    add(m_sales.size(), m_states.back().stock);
}

void ShopBook::take(const QString& barcode, double quantity) {
    QMap<QString, double> stock = m_states.back().stock;
    if (stock.contains(barcode))
        stock[barcode] -= quantity;
    add(m_sales.size(), stock);
}

void ShopBook::setStock(const QString& barcode, double amount) {
    QMap<QString, double> stock = m_states.back().stock;
    stock[barcode] = amount;
    add(m_sales.size(), stock);
}

void ShopBook::remove(const QString& barcode) {
    QMap<QString, double> stock = m_states.back().stock;
    stock.remove(barcode);
    add(m_sales.size(), stock);
}

void ShopBook::cutBack(qsizetype statements) {
    m_states.resize(static_cast<std::size_t>(statements) + 1);
    m_sales.resize(m_states.back().sales);
}

std::optional<qsizetype> ShopBook::find(const ShopContents& contents, qsizetype least, qsizetype most) const {
    const std::size_t rows = contents.sales.size();
    if (!contents.trouble.isEmpty() || rows > m_sales.size() ||
        !std::equal(contents.sales.begin(), contents.sales.end(), m_sales.begin()))
        return std::nullopt;
    for (qsizetype i = least; i <= most; ++i) {
        const State& state = m_states.at(static_cast<std::size_t>(i));
        if (state.sales == rows && state.stock == contents.stock)
            return i;
    }
    return std::nullopt;
}

QString ShopBook::difference(const ShopContents& contents, qsizetype least, qsizetype most) const {
    if (!contents.trouble.isEmpty())
        return contents.trouble;
    if (find(contents, least, most))
        return {};
    const std::size_t leastRows = m_states.at(static_cast<std::size_t>(least)).sales;
    const std::size_t mostRows = m_states.at(static_cast<std::size_t>(most)).sales;
    const std::size_t rows = contents.sales.size();
    if (rows < leastRows)
        return u"%1 sold lines are lost of %2 that were told"_s.arg(leastRows - rows).arg(leastRows);
    if (rows > mostRows)
        return u"%1 sold lines, and no more than %2 were pressed"_s.arg(rows).arg(mostRows);
    for (std::size_t row = 0; row < rows; ++row) {
        if (contents.sales.at(row) != m_sales.at(row))
            return u"sold line %1 reads %2 and was %3"_s.arg(row + 1).arg(describe(contents.sales.at(row)),
                                                                          describe(m_sales.at(row)));
    }
    const std::optional<qsizetype> other = find(contents, 0, statements());
    return other ? u"the shop as behind statement %1 of %2 that were told"_s.arg(*other).arg(least)
                 : u"stock and sold lines don't belong together"_s;
}

}  // namespace kovanix
