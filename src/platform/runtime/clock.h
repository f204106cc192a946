#pragma once

#include <QDateTime>
#include <functional>

namespace kovanix {

/// The one source of "now". Local time of the machine, to the millisecond.
class Clock {
public:
    using Source = std::function<QDateTime()>;

    static QDateTime now();

    /// Replaces the source; an empty one brings the machine's clock back.
    static void setSource(Source source);
};

}  // namespace kovanix
