#pragma once

#include <QDate>
#include <QTime>
#include <QtGlobal>
#include <functional>

#include "catalogue.h"
#include "random.h"

namespace kovanix::demoshop {

/// One line of a past sale.
struct SoldLine {
    QDate date;
    QTime time;
    qsizetype product;  ///< running number in the catalogue
    double quantity;    ///< pieces, or kilograms in steps of 5 g
    double price;       ///< lira; somewhat below today's, the longer ago the more
    double purchase;    ///< lira; always below the price
};

/// How many days a number of lines is spread over: about 120 lines a day, a year at most, one day at least.
int historyDays(qsizetype lines);

/// The lines of the past, the oldest first: busy mornings, noons and evenings, fuller weekends. The last of
/// the days is `today`, with its early morning only. Gives exactly `lines` lines, or none for an empty
/// catalogue.
void tellHistory(const Catalogue& catalogue, QDate today, qsizetype lines, Random& random,
                 const std::function<void(const SoldLine&)>& tell);

}  // namespace kovanix::demoshop
