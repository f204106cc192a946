#pragma once

#include <QString>
#include <QWidget>
#include <memory>
#include <optional>

#include "database/rowset.h"

namespace kovanix {

class Connection;

/// The data control of a list screen: a source of rows, read by refresh and kept in a RowSet that any number
/// of grids show. A control without a face: it stands on a form, hidden.
///
/// The first row is the current one until another is chosen; a chosen row that the filter hides, or that is
/// gone, gives way to the first and comes back with itself.
///
/// A control whose connection string is that of an open connection uses that one; else it opens one of its
/// own, which lives as long as the control.
class Adodc : public QWidget {
    Q_OBJECT

public:
    enum class CommandType {
        text,  ///< the record source is a select
        table  ///< "select * from " is put ahead of the record source as it stands, WHERE and all
    };

    explicit Adodc(QWidget* parent = nullptr);
    ~Adodc() override;

    const QString& connectionString() const { return m_connectionString; }
    void setConnectionString(const QString& text) { m_connectionString = text; }
    CommandType commandType() const { return m_commandType; }
    void setCommandType(CommandType type) { m_commandType = type; }
    const QString& recordSource() const { return m_recordSource; }
    void setRecordSource(const QString& source) { m_recordSource = source; }

    /// Reads the rows, or finds that they are as they were.
    /// @param progress  told between the chunks of the read; it may paint, but must let no events through
    /// @throws RuntimeError the engine's failure; the rows of before stay
    void refresh(const ReadProgress& progress = {});

    /// Reads one row anew, by one look-up: another till may have changed it since. A row that is gone stays
    /// as it was. @throws RuntimeError the engine's failure
    void refreshRow(qint64 identity);

    /// The rows as they were last read. To be looked at: what changes them goes through this control, so that
    /// every grid on it learns of it.
    const RowSet& recordset() const { return m_rows; }

    /// RowSet::setSort, setFilter (parsed here) and setCurrent; each tells the grids. @throws as they do
    void setSort(const QString& sort);
    void setFilter(const QString& filter);
    void setCurrent(qsizetype place);
    /// Whether the current row was made so by setCurrent, and isn't merely the first.
    bool isCurrentChosen() const;

Q_SIGNALS:
    /// Other rows, another order or another choice of them: one signal for each change.
    void rowsChanged();
    /// Another row is current, or the current one stands at another place.
    void currentChanged();

private:
    std::shared_ptr<Connection> connection();
    void settleCurrent();

    QString m_connectionString;
    CommandType m_commandType = CommandType::text;
    QString m_recordSource;
    RowSet m_rows;
    std::optional<qint64> m_chosen;
    std::shared_ptr<Connection> m_ownConnection;  // where no open one serves
};

}  // namespace kovanix
