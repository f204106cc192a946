#pragma once

#include <QHash>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

#include "tillview.h"

class QSqlQuery;

namespace kovanix {

/// The books that a soak keeps beside the till: what the shop's file held at the start and what has been sold
/// since, compared with the file through a connection of its own. Nobody else may write into the file
/// meanwhile.
///
/// The checks give what doesn't hold, or an empty text.
class ShopLedger {
public:
    struct Product {
        QString name;
        double purchase;  ///< lira
        double sale;      ///< lira
    };

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
    bool knows(const QString& barcode) const { return m_stock.contains(barcode); }
    /// A product as the file has it now.
    Product product(const QString& barcode);

    /// A ticket has been stored: one row for each of its lines, and the quantities off stock.
    QString checkSale(const std::vector<TicketLine>& lines);
    /// A product has been made on the spot, with a stock of 1.
    QString checkMade(const QString& barcode, const QString& name, double price);
    /// Nothing has been written since the last check.
    QString checkUntouched();
    /// All rows and all of the stock.
    QString checkAll();

    int sales() const { return m_sales; }
    int linesStored() const { return m_linesStored; }
    int productsMade() const { return m_productsMade; }

private:
    struct Stock {
        double start;
        double sold = 0;
    };

    bool run(QSqlQuery& query, const QString& sql, const QStringList& values = {});
    void readShop();
    void addBarcode(const QString& barcode);
    qint64 version();
    QString checkRows(const std::vector<TicketLine>& lines);
    QString checkStock();

    QSqlDatabase m_database;
    QString m_trouble;
    QStringList m_barcodes;
    QStringList m_labelCodes;
    QHash<QString, Stock> m_stock;
    qint64 m_version = 0;
    qint64 m_lastRow = 0;
    qint64 m_rows = 0;
    int m_sales = 0;
    int m_linesStored = 0;
    int m_productsMade = 0;
};

}  // namespace kovanix
