#include <memory>

#include "engine.h"

namespace kovanix::engine {

namespace {

/// The first value that a statement gives, as text; empty when it gives none.
QByteArray firstValue(sqlite3* handle, const char* sql) {
    sqlite3_stmt* raw = nullptr;
    if (sqlite3_prepare_v2(handle, sql, -1, &raw, nullptr) != SQLITE_OK)
        return {};
    const std::unique_ptr<sqlite3_stmt, Finalizer> statement(raw);
    if (sqlite3_step(raw) != SQLITE_ROW)
        return {};
    return {reinterpret_cast<const char*>(sqlite3_column_text(raw, 0)), sqlite3_column_bytes(raw, 0)};
}

QByteArray release(sqlite3* handle) {
    return firstValue(handle, "PRAGMA cipher_version");
}

}  // namespace

const bool encrypts = true;

int unlock(sqlite3* handle, const QByteArray& password, const QByteArray& format) {
    const int code = sqlite3_key(handle, password.constData(), static_cast<int>(password.size()));
    // Were another SQLite to answer to the library's symbols, it would take the password without a word and
    // write the file in the clear.
    if (code == SQLITE_OK && release(handle).isEmpty())
        return SQLITE_MISUSE;
    if (code == SQLITE_OK && !format.isEmpty())
        return sqlite3_exec(handle, format.constData(), nullptr, nullptr, nullptr);
    return code;
}

QList<QByteArray> olderFormats(sqlite3* handle) {
    if (release(handle).split('.').constFirst().toInt() >= 4)
        return {"PRAGMA cipher_compatibility = 3", "PRAGMA cipher_compatibility = 2",
                "PRAGMA cipher_compatibility = 1"};
    // Release 2 stretched the key less; release 1 also signed no pages.
    return {"PRAGMA kdf_iter = 4000", "PRAGMA kdf_iter = 4000; PRAGMA cipher_use_hmac = OFF"};
}

}  // namespace kovanix::engine
