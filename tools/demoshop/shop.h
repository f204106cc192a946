#pragma once

#include <QDate>
#include <QString>
#include <QtGlobal>

namespace kovanix::demoshop {

/// Which demo shop to make. Equal plans make equal shops, on every machine.
struct ShopPlan {
    QString folder;             ///< made when it doesn't exist
    qsizetype products = 2000;  ///< rows of the product list
    qsizetype sales = 43'800;   ///< lines of past sales: 120 a day for a year
    quint64 seed = 1;
    QString password;      ///< the database file's password; empty for a plain file
    QDate today;           ///< the last day with sales
    bool replace = false;  ///< whether a shop that the folder holds may be thrown away
};

/// What was made.
struct ShopSummary {
    qsizetype products = 0;
    qsizetype weighed = 0;  ///< of them sold by the kilogram
    qsizetype sales = 0;
    qsizetype readyMade = 0;  ///< rows of the catalogue that unknown barcodes are looked up in
    qsizetype customers = 0;
    QDate firstSale;
    QDate lastSale;
};

/// Makes a shop's folder: the database file (closed, with nothing left in a log beside it) and the
/// configuration file. Both take their places in the folder only when they are whole.
/// @throws RuntimeError when the folder holds a shop already, can't be written or the database fails
ShopSummary makeShop(const ShopPlan& plan);

}  // namespace kovanix::demoshop
