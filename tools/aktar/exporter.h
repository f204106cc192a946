#pragma once

#include <QDate>
#include <functional>

#include "aktar/fields.h"

namespace kovanix {
class Connection;
}

namespace kovanix::aktar {

/// What goes out and how.
struct ExportOrder {
    Kind kind = Kind::products;
    QString path;  ///< its ending says what file it becomes: .csv or .xlsx
    QDate from;    ///< of sales, both days included; an invalid one for no bound
    QDate to;
    bool overwrite = false;
    bool plain = false;  ///< a text file for other programs than spreadsheets
};

/// What is wrong with an order, in words; empty where it can be carried out.
QString faultOf(const ExportOrder& order);

/// Writes the rows into a new file, which is there only once it is whole.
/// @param progress  told how many rows are written
/// @return how many there were
/// @throws RuntimeError
qint64 exportRows(Connection& connection, const ExportOrder& order,
                  const std::function<void(qint64 rows)>& progress = {});

}  // namespace kovanix::aktar
