#include "database.h"

#include <memory>
#include <utility>

#include "result.h"

namespace kovanix::sqlcipher {

namespace {

using namespace Qt::StringLiterals;

struct Finalizer {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

/// The first value that a statement gives, as text; empty when it gives none.
QByteArray firstValue(sqlite3* handle, const char* sql) {
    sqlite3_stmt* raw = nullptr;
    if (sqlite3_prepare_v2(handle, sql, -1, &raw, nullptr) != SQLITE_OK) {
        return {};
    }
    const std::unique_ptr<sqlite3_stmt, Finalizer> statement(raw);
    if (sqlite3_step(raw) != SQLITE_ROW) {
        return {};
    }
    return {reinterpret_cast<const char*>(sqlite3_column_text(raw, 0)), sqlite3_column_bytes(raw, 0)};
}

}  // namespace

Database::~Database() {
    close();
}

void Database::close() {
    // A handle with a living statement would not close.
    for (Result* result : std::exchange(m_results, {})) {
        result->finalize();
    }
    sqlite3_close(std::exchange(m_handle, nullptr));
}

QSqlError Database::error(const QString& what, QSqlError::ErrorType type) const {
    const QString words = m_handle ? QString::fromUtf8(sqlite3_errmsg(m_handle)) : u"out of memory"_s;
    const int code = m_handle ? sqlite3_extended_errcode(m_handle) : SQLITE_NOMEM;
    return {what, words, type, QString::number(code)};
}

/// Whether the handle is the encryption library's. Were another SQLite to answer to its symbols, it would
/// take the password without a word and write the file in the clear.
bool Database::encrypts() const {
    return !firstValue(m_handle, "PRAGMA cipher_version").isEmpty();
}

QList<QByteArray> Database::olderFormats() const {
    const int release = firstValue(m_handle, "PRAGMA cipher_version").split('.').constFirst().toInt();
    if (release >= 4) {
        return {"PRAGMA cipher_compatibility = 3", "PRAGMA cipher_compatibility = 2",
                "PRAGMA cipher_compatibility = 1"};
    }
    // Release 2 stretched the key less; release 1 also signed no pages.
    return {"PRAGMA kdf_iter = 4000", "PRAGMA kdf_iter = 4000; PRAGMA cipher_use_hmac = OFF"};
}

int Database::openOnce(const QByteArray& name, const QByteArray& password, const OpenOptions& options,
                       const QByteArray& format) {
    const int access = options.readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    const int flags = access | SQLITE_OPEN_NOMUTEX | (options.uri ? SQLITE_OPEN_URI : 0);
    int code = sqlite3_open_v2(name.constData(), &m_handle, flags, nullptr);
    if (code != SQLITE_OK) {
        return code;
    }
    sqlite3_extended_result_codes(m_handle, 1);
    sqlite3_busy_timeout(m_handle, static_cast<int>(options.busyTimeout.count()));
    // The key comes before anything that reads the file.
    code = sqlite3_key(m_handle, password.constData(), static_cast<int>(password.size()));
    if (code == SQLITE_OK && !encrypts()) {
        return SQLITE_MISUSE;
    }
    if (code == SQLITE_OK && !format.isEmpty()) {
        code = sqlite3_exec(m_handle, format.constData(), nullptr, nullptr, nullptr);
    }
    if (code == SQLITE_OK) {
        code = sqlite3_exec(m_handle, "SELECT count(*) FROM sqlite_master", nullptr, nullptr, nullptr);
    }
    return code;
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
        const QList<QByteArray> formats = olderFormats();
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

}  // namespace kovanix::sqlcipher
