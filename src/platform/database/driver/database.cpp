#include "database.h"

#include <algorithm>
#include <array>
#include <utility>

#include "result.h"

namespace kovanix::engine {

using namespace Qt::StringLiterals;

Database::~Database() {
    close();
}

void Database::close() {
    // A handle with a living statement would not close.
    for (Result* result : m_results) {
        result->finalize();
    }
    sqlite3_close(std::exchange(m_handle, nullptr));
    m_key.clear();
}

QSqlError Database::error(const QString& what, QSqlError::ErrorType type) const {
    const QString words = m_handle ? QString::fromUtf8(sqlite3_errmsg(m_handle)) : u"out of memory"_s;
    const int code = m_handle ? sqlite3_extended_errcode(m_handle) : SQLITE_NOMEM;
    return {what, words, type, QString::number(code)};
}

int Database::openOnce(const QByteArray& name, const QByteArray& password, const OpenOptions& options,
                       const QByteArray& format) {
    const int access = options.readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    const int flags = access | SQLITE_OPEN_NOMUTEX | (options.uri ? SQLITE_OPEN_URI : 0);
    m_key = password;
    m_format = format;
    int code = sqlite3_open_v2(name.constData(), &m_handle, flags, nullptr);
    if (code != SQLITE_OK) {
        return code;
    }
    sqlite3_extended_result_codes(m_handle, 1);
    m_busyTimeout = options.busyTimeout;
    sqlite3_busy_handler(m_handle, onLocked, this);
    code = unlock(m_handle, password, format);
    if (code == SQLITE_OK && options.exclusive)
        code = sqlite3_exec(m_handle, "PRAGMA locking_mode = EXCLUSIVE", nullptr, nullptr, nullptr);
    if (code == SQLITE_OK && encrypts) {
        // A wrong password shows at the first read only.
        code = sqlite3_exec(m_handle, "SELECT count(*) FROM sqlite_master", nullptr, nullptr, nullptr);
    }
    return code;
}

/// Waits in short naps, as the engine's own handler of a time-out does.
int Database::onLocked(void* database, int times) {
    using Clock = std::chrono::steady_clock;
    constexpr std::array<int, 9> naps{1, 2, 5, 10, 15, 20, 25, 50, 100};  // milliseconds
    auto& self = *static_cast<Database*>(database);
    if (self.m_busyTimeout <= std::chrono::milliseconds::zero())
        return 0;
    if (times == 0) {
        self.m_waitEnd = Clock::now() + self.m_busyTimeout;
        if (self.m_waitBegins)
            self.m_waitBegins();
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(self.m_waitEnd - Clock::now());
    if (left <= std::chrono::milliseconds::zero())
        return 0;
    const std::size_t nap = std::min(static_cast<std::size_t>(times), naps.size() - 1);
    sqlite3_sleep(std::min(naps.at(nap), static_cast<int>(left.count())));
    return 1;
}

QSqlError Database::open(const QString& name, const QString& password, const OpenOptions& options) {
    const QByteArray path = name.toUtf8();
    const QByteArray key = password.toUtf8();
    int code = openOnce(path, key, options, {});
    if (code == SQLITE_MISUSE) {
        close();
        return {u"Error opening database"_s, u"The encryption library is not in use"_s,
                QSqlError::ConnectionError};
    }
    if (code == SQLITE_NOTADB) {
        const QList<QByteArray> formats = olderFormats(m_handle);
        for (qsizetype i = 0; i < formats.size() && code == SQLITE_NOTADB; ++i) {
            close();
            code = openOnce(path, key, options, formats[i]);
        }
    }
    if (code == SQLITE_OK) {
        return {};
    }
    const QSqlError failure = error(u"Error opening database"_s, QSqlError::ConnectionError);
    close();
    return failure;
}

}  // namespace kovanix::engine
