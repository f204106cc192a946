#pragma once

#include <QString>

#include "runtime/runtimeerror.h"

namespace kovanix {

/// A failure of the database: beside the engine's number and words, of which kind it is, the same for every
/// engine. Whoever acts on a failure asks for its kind and never looks at the words.
class DatabaseError : public RuntimeError {
public:
    enum class Kind {
        busy,           ///< somebody else held the file or the rows for longer than the busy time-out
        readOnly,       ///< may be read but not written
        full,           ///< no room left where the data lie
        damaged,        ///< the data can't be read for what they are
        notADatabase,   ///< no database file, or one that has a password and is opened without
        wrongPassword,  ///< the password doesn't fit; a damaged first page of a password file looks the same
        missing,        ///< the file isn't there, or can't be opened
        untrusted,      ///< what answers there doesn't prove that it is the shop's server
        noSuchTable,
        noSuchColumn,
        value,      ///< a value, a field or a literal that the table can't take
        noRow,      ///< no current row, or somebody else has deleted it
        closed,     ///< the connection or the recordset is, as where another file has taken this one's place
        lost,       ///< what carries the connection has failed
        statement,  ///< not allowed here, or no statement that the engine understands
        other,
    };

    DatabaseError(Kind kind, const QString& description, const QString& source = {})
        : RuntimeError(databaseFailure, description, source), m_kind(kind) {}

    Kind kind() const { return m_kind; }

private:
    Kind m_kind;
};

}  // namespace kovanix
