#include "engine.h"

namespace kovanix::engine {

const bool encrypts = false;

int unlock(sqlite3* /*handle*/, const QByteArray& /*password*/, const QByteArray& /*format*/) {
    return SQLITE_OK;
}

QList<QByteArray> olderFormats(sqlite3* /*handle*/) {
    return {};
}

}  // namespace kovanix::engine
