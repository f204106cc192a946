#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <string>
#include <vector>

#include "figures.h"
#include "sales/satisekrani.h"

namespace kovanix::bench {

/// Opens a shop and shows its sales screen, in place of the one that was open. The screen isn't active yet.
satisekrani& openShop(const QString& folder);
void closeShop();

/// How many rows a table of the open shop has, with the thousands apart: "1,000,000".
std::string rowsOf(const QString& table);

/// Whether the window is active and scans go into `barkod`.
bool takesScans(const satisekrani& sales);

/// The barcodes of that many products of 13 digits, drawn over the whole catalogue of the open shop, each
/// once. Equal seeds draw equal ones.
QStringList drawBarcodes(qsizetype count, quint32 seed);

/// A key or the keys of a text, as the window gets them from the window system: whatever has the focus in it
/// takes them.
void pressKey(QWidget& window, Qt::Key key, const QString& text);
void typeText(QWidget& window, const QString& text);
void scan(QWidget& window, const QString& barcode);

/// A press and its release in the middle of a control, as its window gets them from the window system.
void pressOn(QWidget& control);

/// Does everything that is posted, painting into the window included.
void finishPosted();

/// Lets events through until something has come to pass. Gives up after a minute.
void await(const std::function<bool()>& condition);

/// Sees the rows of a screen's list being painted.
class ListWatch : public QObject {
public:
    ListWatch();
    bool eventFilter(QObject* watched, QEvent* event) override;

    bool painted = false;
};

/// What it took to open a screen with a list, press to first paint.
struct OpeningTimes {
    std::vector<double> times;   ///< in milliseconds
    std::vector<double> ratios;  ///< against reading the list through the engine's own interface

    void tell(Figures& figures, const std::string& screen, const std::string& shop) const;
};

/// Opens a shop and, by that button of its sales screen, a screen with a list.
void openList(ListWatch& watch, const QString& folder, vkCommand* Ui::satisekrani::*button,
              OpeningTimes& taken);

/// Measures shops in turns, so that whatever else the machine does falls on all alike, and ends the event
/// loop. @param measure  takes the number of a shop
void measureInTurns(qsizetype shops, int rounds, const std::function<void(qsizetype)>& measure);

}  // namespace kovanix::bench
