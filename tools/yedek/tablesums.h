#pragma once

#include <QList>
#include <QString>
#include <functional>

#include "yedek/manifest.h"

namespace kovanix {
class FileReader;
}

namespace kovanix::yedek {

/// Adds numbers up without losing any: the order in which they come makes no difference, and no engine's
/// arithmetic has a part in it.
class ExactSum {
public:
    void add(qint64 number);
    /// Rounded to millionths.
    void add(double number);
    bool isEmpty() const { return !m_any; }
    /// "-12.345678"; without a fraction where there is none.
    QString text() const;

private:
    __extension__ using Wide = __int128;
    Wide m_millionths = 0;
    bool m_any = false;
};

/// The rows and sums of every table. @param progress  told the rows read so far; may throw
QList<TableSum> tableSums(FileReader& file, const std::function<void(qint64 rows)>& progress = {});

}  // namespace kovanix::yedek
