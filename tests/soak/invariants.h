#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

namespace kovanix {

class satisekrani;

/// A line of the ticket, as the cells show it.
struct TicketLine {
    QString barcode, name, quantity, price, total;

    bool operator==(const TicketLine&) const = default;
};

/// What the sales screen shows at one moment.
struct TillView {
    QList<TicketLine> lines;
    TicketLine entry;  ///< the row behind the lines
    QString total, cash, change;
};

TillView viewOf(const satisekrani& till);

/// A product as the file has it.
struct Product {
    QString barcode, name;
    double purchase = 0, sale = 0;  ///< lira
    double stock = 0;
    double largest = 0;  ///< what its stock went through; not in the file
};

/// One action: what it is free to change, and the little that it must bring about. What it doesn't name stays
/// as it was.
struct Deed {
    struct Sold {
        QString barcode;
        double quantity;
    };

    TillView before;
    bool changesLine = false;     ///< one line may come, change or go
    bool changesCash = false;     ///< so may the cash
    bool takesCashOff = false;    ///< more of it may be taken off than was given
    bool toBarcode = false;       ///< the next scan arrives, unless another screen is in front
    bool stores = false;          ///< the lines are in the file, and gone from the screen
    bool prints = false;          ///< and on a receipt
    std::optional<Sold> sold;     ///< the ticket has so much more of it
    std::optional<Product> made;  ///< the file has one product more
    std::optional<std::pair<QString, double>> priced;  ///< a product, by its barcode, has that sale price
    QString box;                  ///< the message box that must come, by the key of its text
    QStringList mayAsk;           ///< those that may
    std::function<bool()> until;  ///< what the window system brings about by and by

    QString shownBox;  ///< the box that came
    int answer = 0;    ///< and its answer
};

/// The number that a cell or display shows.
double amount(const QString& text);

/// Equal but for the last of the 15 digits that numbers travel with.
/// @param scale  the largest number that took part in working them out
bool isClose(double a, double b, double scale = 0);

// What doesn't hold after an action; empty where all is well.

/// Money adds up: the lines, the total, the change.
QString moneyFault(const Deed& deed, const TillView& after);
/// On the ticket and in the cash only that has changed which the action is free to change.
QString ticketFault(const Deed& deed, const TillView& after);
/// The keyboard goes somewhere, and back to the barcode where the next scan is awaited.
QString focusFault(const Deed& deed, const satisekrani& till);
/// No window stands open that isn't a loaded screen of these names, and no screen is left over undeleted.
QString windowFault(const QStringList& names);
/// The process-wide values of a manager's session on an open file are in range.
QString valueFault(const satisekrani& till);

}  // namespace kovanix
