#pragma once

#include <QDateTime>
#include <QString>
#include <vector>

namespace kovanix {

/// A row of the ticket as its cells hold it.
struct ReceiptRow {
    QString name;
    QString quantity;
    QString price;  ///< lira
    QString total;  ///< lira
};

/// The text of a receipt, with CR LF line ends.
///
/// @param rows   the ticket's rows, the empty entry row at the end included: it prints as a line of zeros
/// @param total  the grand total as the screen shows it
/// @param now    the moment that the receipt bears
QString receiptText(const std::vector<ReceiptRow>& rows, const QString& total, const QDateTime& now);

}  // namespace kovanix
