#pragma once

#include <QByteArray>

namespace kovanix::engine {

/// A statement with numbered places, as the server takes it.
struct NumberedPlaces {
    QByteArray sql;
    int count = 0;

    /// Of a statement in UTF-8 whose places are "?". In literals, quoted names and comments that sign stands
    /// for itself.
    static NumberedPlaces of(const QByteArray& sql);
};

}  // namespace kovanix::engine
