#pragma once

#include <QString>
#include <QStringView>

namespace kovanix::aktar {

/// What the text of a cell says of a barcode.
struct BarcodeReading {
    QString barcode;
    bool settled = false;  ///< it is written another way than in the cell
    bool several = false;  ///< there may be more than one in the cell
};

/// Reads a barcode as other programs leave it: "'8690000000001" (the apostrophe by which a spreadsheet is
/// told a text), "8690000000001.0" or "8690000000001,00" (a number), "8 690000 000001" (as it is printed
/// below the bars; any kind of blank). Only an apostrophe is taken off where something else than digits
/// stands behind it; every other text is the barcode as it is.
BarcodeReading readBarcode(QStringView cell);

}  // namespace kovanix::aktar
