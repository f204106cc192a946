#pragma once

#include <QMap>
#include <QObject>
#include <QString>
#include <functional>

#include "filelayer.h"
#include "salesfixture.h"
#include "shopbook.h"

namespace kovanix {

/// A till whose cashier and office are the test, with books kept beside it and the file layer under its
/// engine. Nobody else has the file open unless a test does it.
class BookedTill : public QObject {
    Q_OBJECT

public:
    /// A till that isn't started yet. @param password  of the shop's file; empty for a plain one
    explicit BookedTill(const QString& password);

    SalesFixture& shop() { return m_shop; }
    FileLayer& layer() { return m_layer; }
    ShopBook& book() { return m_book; }

    /// Opens the file and the sales screen.
    void start();
    /// Closes them; nobody has the file open then.
    void end();

    /// A moment passes on the clock.
    void passTime();

    /// Scans a product so many times, or types the quantity first.
    void scan(const QString& barcode, int times = 1);
    void scanQuantity(const QString& quantity, const QString& barcode);

    /// Presses the key that stores the ticket. The books take what stands on it. A mark stands ahead of the
    /// press and one where the till tells of the result.
    void store();
    /// The text of the message box that the last storing ended with; empty where it came to none.
    const QString& box() const { return m_box; }
    /// Throws the ticket away.
    void dropTicket();

    /// What the office writes, by the shared connection as its screens do it.
    void putProduct(const QString& barcode, double purchase, double stock);
    void setStock(const QString& barcode, double stock);
    void removeProduct(const QString& barcode);

    /// A product whose sale the file refuses.
    static const QString refused;

private:
    void office(const std::function<void()>& statements);

    SalesFixture m_shop;
    FileLayer& m_layer;
    QMap<QString, double> m_purchase;  ///< by barcode
    ShopBook m_book;
    qint64 m_toldByBox = 0;
    QString m_box;
    int m_seconds = 0;
};

}  // namespace kovanix
