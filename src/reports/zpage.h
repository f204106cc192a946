#pragma once

#include <QDate>
#include <QString>

namespace kovanix {

/// What the Z report's screen shows.
struct ZFigures {
    QDate from;
    QDate to;
    QString first;  ///< moment of the first sale as shown; empty without one
    QString last;
    QString total;  ///< lira as shown
};

/// The page that the Z report prints: 17 lines with CR LF between them. It names the days of the range, not
/// its times.
QString zPageText(const ZFigures& figures);

}  // namespace kovanix
