#pragma once

#include <QString>

#include "grafik/figuretable.h"
#include "grafik/salesfigures.h"
#include "kit/backgroundwork.h"

namespace kovanix {

class Connection;

/// All that is shown of one range.
struct SalesPicture {
    DayRange range;
    Amounts total;
    FigureTable days;
    FigureTable hours;
    FigureTable products;

    const FigureTable& table(Division division) const;
};

/// Days at whose ends no till's clock can stand: the range of all sales.
DayRange anyDay();

/// The days from the first sale to the last; an empty range where nothing was sold.
DayRange soldDays(Connection& connection);

/// Reads the sold lines of a range, each of them once, and adds them up. Sums whose kuruş hangs on the order
/// of the additions are asked for as the sales report asks, so that both show the same.
/// @throws DatabaseError the engine's
SalesPicture readSales(Connection& connection, const DayRange& range, const WorkProgress& progress);

/// The same for a program: on a connection of its own to the shop's file, which it writes nothing into.
/// @param range  anyDay() for all that was sold
SalesPicture readShop(const DayRange& range, const WorkProgress& progress);

}  // namespace kovanix
