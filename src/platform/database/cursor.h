#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <optional>

namespace kovanix {

/// The rows of one select, read forward as they are asked for.
///
/// The statement runs from the first question about a row. One row is read ahead, so that a statement whose
/// last row has been reached is finished and holds no lock while the program still works with that row.
class Cursor {
public:
    /// Prepares a select in the modules' SQL, without running it.
    /// @param engine  the name that errors carry as their source
    Cursor(const QSqlDatabase& database, QString engine, const QString& sql);

    bool atEnd();
    void moveNext();
    QVariant field(const QString& name);
    QStringList fieldNames();

    /// Ends the running statement. The current row stays readable, and reading goes on behind it: by its row
    /// id where the rows come in order of entry, by the number of rows read otherwise.
    void suspend();

private:
    enum class State { unread, reading, suspended, ended };

    void prepare(const QString& engineSql);
    void run();
    void start();
    void resume();
    void advance();
    std::optional<QVariantList> fetch();
    void requireRow();

    QSqlDatabase m_database;
    QString m_engine;
    QString m_sql;
    QSqlQuery m_query;
    State m_state = State::unread;
    bool m_placed = false;  ///< whether the last column is the row id
    int m_columns = 0;
    qint64 m_rowsRead = 0;  ///< rows up to and with the current one
    QStringList m_names;
    std::optional<QVariantList> m_row;
    std::optional<QVariantList> m_ahead;
};

}  // namespace kovanix
