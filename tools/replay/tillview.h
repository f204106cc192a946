#pragma once

#include <QString>
#include <optional>
#include <vector>

namespace kovanix {

class satisekrani;

/// A line of the ticket, as the cells show it.
struct TicketLine {
    QString mark;
    QString barcode;
    QString name;
    QString quantity;
    QString price;
    QString total;
};

/// What the sales screen shows at one moment.
struct TillView {
    std::vector<TicketLine> lines;
    TicketLine entry;  ///< the row behind the lines
    QString total;
    QString cash;
    QString change;
    QString quantity;  ///< typed for the next scan
    QString barcode;   ///< typed and not entered yet
};

TillView viewOf(const satisekrani& till);

/// A line or ticket as a person reads it in a report.
QString textOf(const TicketLine& line);
QString textOf(const std::vector<TicketLine>& lines);

/// The line of that barcode; lines.end() where there is none.
std::vector<TicketLine>::iterator lineOf(std::vector<TicketLine>& lines, const QString& barcode);

/// Whether a total of these lines, worked out from quantities and prices, is too long for the screen.
bool overflows(const std::vector<TicketLine>& lines);

// What doesn't hold of a view; empty where all is well.

/// The ticket's own form: the entry row is there and empty.
QString formFault(const TillView& view);
/// Each line's total is its quantity times its price, rounded.
QString lineFault(const TillView& view);
/// The total is the sum of the lines as rounded.
QString totalFault(const TillView& view);
/// The change is the cash less the total. An amount that has stood since before was judged then.
/// @param belowNothing  what the cash came to where it was less than nothing and became 0,00 just now
QString changeFault(const TillView& before, const TillView& after, std::optional<double> belowNothing);

}  // namespace kovanix
