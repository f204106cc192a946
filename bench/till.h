#pragma once

#include <QString>
#include <QStringList>

#include "sales/satisekrani.h"

namespace kovanix::bench {

/// Opens a shop and shows its sales screen, in place of the one that was open. The screen isn't active yet.
satisekrani& openShop(const QString& folder);
void closeShop();

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

}  // namespace kovanix::bench
