#include "invariants.h"

#include <QApplication>
#include <algorithm>
#include <cmath>

#include "app/session.h"
#include "appearance/modTema.h"
#include "data/baglanmamodulu.h"
#include "desktop/messagebox.h"
#include "runtime/screen.h"
#include "sales/satisekrani.h"
#include "values/numbers.h"
#include "widgets/caption.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr double kurus = 0.01;
constexpr double largestNote = 200;

TicketLine lineAt(const VSFlexGrid& grid, int row) {
    return {grid.textMatrix(row, 1), grid.textMatrix(row, 2), grid.textMatrix(row, 3),
            grid.textMatrix(row, 4), grid.textMatrix(row, 5)};
}

QString textOf(const TicketLine& line) {
    return line.barcode + u' ' + line.name + u": " + line.quantity + u" x " + line.price + u" = " +
           line.total;
}

bool hasMoreThanKurus(const QString& cash) {
    return cash.section(u',', 1).size() > 2;
}

double quantityOf(const QList<TicketLine>& lines, const QString& barcode) {
    double quantity = 0;
    for (const TicketLine& line : lines)
        quantity += line.barcode == barcode ? amount(line.quantity) : 0;
    return quantity;
}

/// Whether at most one line stands between those that are the same from the top and those from the bottom.
bool oneLineDiffers(const QList<TicketLine>& before, const QList<TicketLine>& after) {
    const auto top = std::ranges::mismatch(before, after);
    const auto sameAtTop = top.in1 - before.begin();
    qsizetype sameAtBottom = 0;
    const qsizetype shorter = std::min(before.size(), after.size());
    while (sameAtTop + sameAtBottom < shorter &&
           before.at(before.size() - 1 - sameAtBottom) == after.at(after.size() - 1 - sameAtBottom))
        ++sameAtBottom;
    return std::max(before.size(), after.size()) - sameAtTop - sameAtBottom <= 1;
}

/// Whether the action has emptied ticket and cash.
bool hasEmptied(const Deed& deed) {
    const bool cancelled = deed.shownBox == u"MSG_SATIS_IPTAL_SOR" && deed.answer == MessageBoxAnswer::yes;
    // A total that grows too long for the screen wipes the ticket.
    return deed.stores || cancelled || deed.shownBox == u"BASAMAK_LIMIT";
}

}  // namespace

double amount(const QString& text) {
    return toNumber(text).value_or(0);
}

bool isClose(double a, double b, double scale) {
    return std::fabs(a - b) <= 1e-12 * std::max({std::fabs(a), std::fabs(b), std::fabs(scale)});
}

TillView viewOf(const satisekrani& till) {
    const VSFlexGrid& grid = *till.ui.satisekrani1;
    TillView view{{},
                  lineAt(grid, grid.rows() - 1),
                  till.ui.toplam->caption(),
                  till.ui.verilen->caption(),
                  till.ui.kalan->caption()};
    for (int row = 1; row <= grid.rows() - 2; ++row)
        view.lines.append(lineAt(grid, row));
    return view;
}

QString moneyFault(const Deed& deed, const TillView& after) {
    double sum = 0;
    for (const TicketLine& line : after.lines) {
        const double exact = amount(line.quantity) * amount(line.price);
        if (std::fabs(amount(line.total) - exact) > kurus / 2 + 1e-12 * std::max(1.0, std::fabs(exact)))
            return u"a line's total isn't its quantity times its price: " + textOf(line);
        sum += amount(line.total);
    }
    const double total = amount(after.total);
    if (!isClose(total, sum, 1))
        return u"the total shows " + after.total + u", the lines make " + format(sum, u"##0.00");

    const TillView& before = deed.before;
    if (before.total == after.total && before.cash == after.cash && before.change == after.change)
        return {};  // judged when it came to be so
    const double cash = amount(after.cash);
    const double off = amount(after.change) - (cash - total);
    // Taking off more than was given leaves the cash at nothing, but the change at what it came to.
    if (deed.takesCashOff && cash == 0 && off < 0 && off > -largestNote - kurus)
        return {};
    // Cash in fractions of a kuruş is rounded, and the change of it by itself.
    const double slack = hasMoreThanKurus(before.cash) ? kurus : 0;
    if (cash < 0 || std::fabs(off) > slack + 1e-12 * std::max({1.0, cash, total}))
        return u"the change shows " + after.change + u" for a cash of " + after.cash + u" and a total of " +
               after.total;
    return {};
}

QString ticketFault(const Deed& deed, const TillView& after) {
    const TicketLine& entry = after.entry;
    if (entry.barcode + entry.name + entry.quantity + entry.price != QString())
        return u"the entry row isn't empty: " + textOf(entry);
    for (const TicketLine& line : after.lines) {
        if (line.barcode.trimmed().isEmpty())
            return u"a line without a barcode: " + textOf(line);
    }
    if (hasEmptied(deed)) {
        const bool empty = after.lines.isEmpty() && after.total == u"0,00" && after.cash == u"0,00" &&
                           after.change == u"0,00";
        return empty ? QString() : u"the ticket and its amounts aren't empty"_s;
    }
    const TillView& before = deed.before;
    if (deed.changesLine ? !oneLineDiffers(before.lines, after.lines) : before.lines != after.lines)
        return u"the ticket's lines have changed: %1 before, %2 now"_s.arg(before.lines.size())
            .arg(after.lines.size());
    if (!deed.changesCash && std::fabs(amount(before.cash) - amount(after.cash)) > kurus / 2 + 1e-9)
        return u"the cash was " + before.cash + u" and is " + after.cash;
    if (deed.sold) {
        const QString& barcode = deed.sold->barcode;
        const double expected = quantityOf(before.lines, barcode) + deed.sold->quantity;
        const double stands = quantityOf(after.lines, barcode);
        if (!isClose(expected, stands))
            return u"the ticket has " + numberText(stands) + u" of " + barcode + u", not " +
                   numberText(expected);
    }
    return {};
}

QString focusFault(const Deed& deed, const satisekrani& till) {
    const QWidget* active = QApplication::activeWindow();
    const QWidget* focus = QApplication::focusWidget();
    const QString place = focus ? focus->objectName() : u"nothing"_s;
    if (deed.toBarcode && active == &till && focus != till.ui.barkod)
        return u"the barcode hasn't got the focus back; it is in " + place;
    const bool usable = focus && focus->isVisible() && focus->isEnabled() && focus->window() == active;
    // The clock has nothing to press or type into.
    const bool needless = active != &till && active->findChildren<QWidget*>().isEmpty();
    return usable || needless ? QString() : u"the focus is in " + place + u", where no key does anything";
}

QString windowFault(const QStringList& names) {
    const std::vector<Screen*> loadedScreens = ScreenRegistry::all();
    for (QWidget* window : QApplication::topLevelWidgets()) {
        const auto* screen = qobject_cast<Screen*>(window);
        const bool registered = screen && std::ranges::find(loadedScreens, screen) != loadedScreens.end();
        if (screen && (!registered || !names.contains(controlKind(*screen))))
            return u"a screen is left over: " + controlKind(*screen);
        const bool stands = window->windowType() == Qt::Window || window->windowType() == Qt::Dialog;
        if (!screen && stands && window->isVisible())
            return u"a window is left over: " + controlKind(*window) + u' ' + window->windowTitle();
    }
    return {};
}

QString valueFault(const satisekrani& till) {
    const auto in = [](int value, int last) { return value >= 0 && value <= last; };
    if (girisyetki != 1 || baglantidurumu != 1 || !semahazir || !in(till.eksiltme, 1))
        return u"a value of the session, the connection or the cash is out of range"_s;
    const QStringList words{QString(), u"True"_s, u"False"_s};
    if (!in(sonrenk, 2) || !in(kayitgetir1, 2) || !in(kaydedilenigetir, 1) || !in(toplamtemadegisken, 1) ||
        temasessiz || !words.contains(temakaydetme1))
        return u"a value of the looks is out of range"_s;
    return {};
}

}  // namespace kovanix
