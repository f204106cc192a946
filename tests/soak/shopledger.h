#pragma once

#include <QHash>
#include <QMap>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include "invariants.h"

class QSqlQuery;

namespace kovanix {

/// The books that a soak keeps beside the till: every product with its stock less what was sold since, the
/// rows of the sales, and how many rows the other tables have. They are compared with the file through a
/// connection of their own; nobody else may write into it meanwhile.
class ShopLedger {
public:
    /// Reads the file. @param password  of the file; empty for a plain one
    ShopLedger(const QString& file, const QString& password);
    ~ShopLedger();
    ShopLedger(const ShopLedger&) = delete;
    ShopLedger& operator=(const ShopLedger&) = delete;

    /// What keeps the file from being read; empty where nothing does.
    const QString& trouble() const { return m_trouble; }

    /// Every barcode that a scanner can bring, in the order of the list; those made meanwhile come last.
    const QStringList& barcodes() const { return m_barcodes; }
    /// The codes that a scale's label can bear.
    const QStringList& labelCodes() const { return m_labelCodes; }
    bool knows(const QString& barcode) const { return m_products.contains(barcode); }

    /// What of the file doesn't fit the action; empty where all does. Most actions write nothing, and are
    /// judged by that; what a sale or a new product wrote is read.
    QString fault(const Deed& deed);
    /// Whether the whole file is what the books say; says what isn't.
    QString wholeFault();

    int sales() const { return m_sales; }
    int linesStored() const { return m_linesStored; }
    int productsMade() const { return m_productsMade; }

private:
    QSqlQuery query(const QString& sql, const QString& value = {});
    QString text(const QString& sql);
    void readShop();
    void add(const Product& product);
    QString rowsUpTo(qint64 number);
    QMap<QString, QString> otherTables();
    QString saleFault(const QList<TicketLine>& lines);
    static QString stockFault(const Product& product, double stock);

    QSqlDatabase m_database;
    QString m_trouble;
    QStringList m_barcodes;
    QStringList m_labelCodes;
    QHash<QString, Product> m_products;
    QMap<QString, QString> m_otherTables;
    QString m_version;
    QString m_rows;
    qint64 m_lastRow = 0;
    int m_sales = 0;
    int m_linesStored = 0;
    int m_productsMade = 0;
};

/// Has the engine give back what it keeps of the shop's file in memory, on all connections of the process.
void dropCachedPages();

}  // namespace kovanix
