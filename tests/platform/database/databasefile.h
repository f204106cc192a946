#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#include <QVariantList>
#include <chrono>
#include <functional>
#include <optional>

#include "database/connection.h"
#include "runtime/runtimeerror.h"
#include "servercluster.h"

namespace kovanix {

/// A connection of the toolkit, past everything of ours: the second opinion on what a file holds.
class RawDatabase {
public:
    /// @param path  of a file, or of a pointer to a database of the test program's server
    /// @param driver  by its name; the toolkit's own where there is one for such a file
    RawDatabase(const QString& path, const QString& password, const QString& driver = {},
                std::chrono::milliseconds busyTimeout = std::chrono::milliseconds(0));
    ~RawDatabase();
    RawDatabase(const RawDatabase&) = delete;
    RawDatabase& operator=(const RawDatabase&) = delete;

    QSqlDatabase& database() { return m_database; }

    /// Runs one statement; false when it fails.
    bool run(const QString& sql);

    /// All rows of a select, the fields joined by "|", null as "NULL".
    QStringList rows(const QString& sql);

    /// All rows of a statement as the toolkit's driver gives them. A failure ends the test program.
    QList<QVariantList> values(const QString& sql);

private:
    QString m_name;
    QSqlDatabase m_database;
};

/// A folder with one database file, plain or with a password, as a row of a test names it.
class DatabaseFile {
public:
    static constexpr auto plain = "plain";
    static constexpr auto withPassword = "password";

    static constexpr auto server = "server";

    /// Adds the two rows "plain" and "password" to a test without columns of its own.
    static void bothKinds();
    /// Adds the row "server" to them where a database server is installed.
    static void allKinds();
    /// What the column "password" holds in the row "server".
    static QString onServer() { return QStringLiteral("\x01"); }

    /// Makes an empty file of the kind of the running test's row, or an empty database and the file that
    /// points to it.
    DatabaseFile();
    explicit DatabaseFile(const QString& password);

    QString folder() const { return m_folder.path(); }
    const QString& path() const { return m_path; }
    const QString& password() const { return m_password; }
    bool isOnServer() const { return !m_database.isEmpty(); }
    /// The database's name on the server.
    const QString& database() const { return m_database; }
    QString source() const;
    /// The name of the till's driver for files with such a password.
    static QString driver(const QString& password);
    QString connectionString() const { return connectionString(m_path, m_password); }
    static QString connectionString(const QString& path, const QString& password);

    /// Executes statements in the modules' SQL through a connection that is closed again.
    void execute(const QStringList& statements) const;
    /// The rows of a select, through a connection of the toolkit that is closed again.
    QStringList rows(const QString& sql) const;

    /// Overwrites the middle fifth of the file, so that whoever reads a page there fails. No connection to it
    /// may be open.
    void damage() const;

private:
    QTemporaryDir m_folder;
    QString m_path;
    QString m_password;
    QString m_database;  ///< on the server; empty for a file
};

/// The error that a step throws; nothing when it doesn't.
std::optional<RuntimeError> errorOf(const std::function<void()>& step);

/// The engine's own words in an error's description: what stands in brackets behind the Turkish ones.
QString enginesWords(const QString& description);

/// The engine's own words in the error that a step throws; "no error" when it doesn't.
QString wordsOf(const std::function<void()>& step);

}  // namespace kovanix
