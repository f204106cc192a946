#pragma once

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QString>
#include <QTemporaryDir>
#include <QVariantList>
#include <memory>

#include "boxanswers.h"

namespace kovanix {

/// One case's own world: a fresh application folder, all process-wide values as after a start, a still clock,
/// and the strict answers to message boxes. What it opens is closed when it goes.
///
/// With KOVANIX_TEST_SERVER=1 in the environment its database is one on the test program's own server, and
/// the settings lead to it through a pointer file.
class ShopFixture {
public:
    ShopFixture();
    ~ShopFixture();
    ShopFixture(const ShopFixture&) = delete;
    ShopFixture& operator=(const ShopFixture&) = delete;

    QString folder() const { return m_folder.path(); }
    QString file(const QString& name) const;
    /// Whether the shops of this process stand on a server.
    static bool isOnServer();
    /// The database's file; on a server, the one that points there.
    QString databaseFile() const;
    /// The database's name on the server.
    const QString& database() const { return m_database; }

    /// Makes an empty database file; a password goes into the configuration too. On a server that is always
    /// the role's.
    void makeDatabase(const QString& password = {}) { makeDatabase(password, {}); }
    /// What puts goods into a new shop.
    using Stock = void (*)(ShopFixture& shop);
    /// Makes a database with the five tables as the till makes it, and leaves it open. The till makes one in
    /// a process for each password and stock; the others are copies of it.
    void openShop(const QString& password = {}, Stock stock = nullptr);
    /// Adds a product through a second connection.
    void addProduct(const QString& barcode, const QString& name, double purchase, double sale,
                    const QVariant& stock = 10.0);

    /// Writes and reads the configuration file's raw bytes.
    void writeConfig(const QByteArray& bytes) const;
    QByteArray config() const;

    /// Runs statements on a second, independent connection of the toolkit's own.
    QList<QVariantList> rows(const QString& sql) const;
    void run(const QString& sql) const;
    /// From now on the database refuses what is done to a table's rows.
    /// @param change     "INSERT", "UPDATE", "DELETE"
    /// @param words      its own words for it
    /// @param condition  on NEW; empty for every row
    void refuse(const QString& change, const QString& table, const QString& words,
                const QString& condition = {}) const;
    /// It takes it again.
    void allow(const QString& change, const QString& table) const;
    /// Runs a statement that a server may refuse, as it does a text in a column of numbers.
    /// @return whether the database took it
    bool takes(const QString& sql) const;
    /// The database's own words for a table that isn't there.
    static QString noTable(const QString& name);
    /// Locks the database for writing, by a further connection, as long as what it gives lives.
    [[nodiscard]] std::shared_ptr<const void> lockFile() const;
    /// Every row of every table, read the same way.
    QMap<QString, QList<QVariantList>> tables() const;

    /// Sets the clock that stands still.
    void setNow(const QDateTime& now);
    /// Makes the screen that wide, 4:3, at 96 dots per inch.
    void setScreenWidth(int pixels);

    BoxAnswers boxes;

private:
    class SecondConnection;

    std::shared_ptr<const SecondConnection> second() const;
    /// @param original  of which it becomes a copy: a file's bytes, or a database's name
    void makeDatabase(const QString& password, const QByteArray& original);
    QByteArray finishOriginal();
    void pointToServer() const;
    void dropDatabase();

    QTemporaryDir m_folder;
    QString m_password;
    QString m_database;
    mutable std::shared_ptr<const SecondConnection> m_second;
};

/// Whether every box came as it was expected, and no answer is left over. Says what didn't.
bool allAnswered(const BoxAnswers& boxes);

}  // namespace kovanix
