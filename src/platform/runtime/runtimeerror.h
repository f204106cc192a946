#pragma once

#include <QByteArray>
#include <QString>
#include <exception>

namespace kovanix {

/// A failed platform operation: what the error handlers of the modules read and show.
///
/// Numbers are the usual ones of Basic run-times where there is one (13 type mismatch, 6
/// overflow, 9 subscript out of range, 482 printer error); a database engine's failure carries
/// databaseFailure.
class RuntimeError : public std::exception {
public:
    static constexpr int overflow = 6;
    static constexpr int outOfRange = 9;
    static constexpr int typeMismatch = 13;
    static constexpr int printerError = 482;
    static constexpr int databaseFailure = -2147467259;

    RuntimeError(int number, QString description, QString source = {});

    /// The error's number; never 0.
    int number() const { return m_number; }
    /// What went wrong, in the words of whatever failed; may be empty.
    const QString& description() const { return m_description; }
    /// Who failed: an engine's or a procedure's name; may be empty.
    const QString& source() const { return m_source; }

    /// "number: description" in UTF-8, for standard error and test logs.
    const char* what() const noexcept override { return m_what.constData(); }

private:
    int m_number;
    QString m_description;
    QString m_source;
    QByteArray m_what;
};

}  // namespace kovanix
