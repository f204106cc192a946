#pragma once

#include <QString>
#include <QStringView>

namespace kovanix::demoshop {

/// The check digit that belongs behind a row of digits (the GS1 modulo-10 rule: weights 3 and 1 by
/// turns from the right). Only the digits 0 to 9 are allowed.
int checkDigit(QStringView digits);

/// A 13-digit barcode (EAN-13) of the country prefix 869: nine digits of the serial number and the check
/// digit. The serial number runs from 0 to 999999999.
QString ean13(quint64 serial);

/// Whether a text has 13 digits of which the last is the right check digit.
bool isEan13(QStringView text);

}  // namespace kovanix::demoshop
