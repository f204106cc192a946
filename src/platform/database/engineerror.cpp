#include "database/engineerror.h"

#include "database/failuretext.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;
using Kind = DatabaseError::Kind;

/// The engine's result codes; in an extended one they are the lowest byte.
enum Code {
    error = 1,
    permission = 3,
    busy = 5,
    locked = 6,
    readOnly = 8,
    ioError = 10,
    corrupt = 11,
    full = 13,
    cantOpen = 14,
    tooBig = 18,
    constraint = 19,
    mismatch = 20,
    format = 24,
    range = 25,
    notADatabase = 26,
};

constexpr int codeMask = 0xFF;

/// One code for all that is wrong with a statement, and no other sign of what is missing.
Kind kindOfStatement(const QString& words) {
    if (words.startsWith("no such table:"_L1))
        return Kind::noSuchTable;
    if (words.startsWith("no such column:"_L1) || words.contains(" has no column named "_L1))
        return Kind::noSuchColumn;
    return Kind::statement;
}

Kind kindOf(int code, const QString& words, bool withPassword) {
    switch (code & codeMask) {
        case busy:
        case locked:
            return Kind::busy;
        case permission:
        case readOnly:
            return Kind::readOnly;
        case full:
            return Kind::full;
        case corrupt:
        case format:
            return Kind::damaged;
        case notADatabase:
            return withPassword ? Kind::wrongPassword : Kind::notADatabase;
        case cantOpen:
            return Kind::missing;
        case tooBig:
        case constraint:
        case mismatch:
        case range:
            return Kind::value;
        case ioError:
            return Kind::lost;
        case error:
            return kindOfStatement(words);
        default:
            return Kind::other;
    }
}

}  // namespace

QString describeFailure(Kind kind, const QString& words, dialect::Target target) {
    const QString turkish = failureText(kind, target);
    // A failure without words stays one: its number is shown then.
    return turkish.isEmpty() || words.trimmed().isEmpty() ? words : turkish + u" ("_s + words + u')';
}

DatabaseError engineError(const QSqlError& error, const QString& engine, bool withPassword) {
    const bool silent = error.databaseText().isEmpty() || error.databaseText() == u"not an error"_s;
    const QString words = silent ? error.driverText() : error.databaseText();
    const Kind kind = kindOf(error.nativeErrorCode().toInt(), words, withPassword);
    return {kind, describeFailure(kind, words), engine};
}

}  // namespace kovanix
