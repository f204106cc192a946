#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>

namespace kovanix {

class Connection;

/// The rows of a select, read one by one as they are asked for, and the way to add a row.
///
/// Opening checks the statement but reads nothing: opening " select * from urunler" to add a product costs
/// the same with a million products as with none. Every operation but close and isOpen throws a RuntimeError
/// when it fails.
class Recordset {
public:
    Recordset();
    ~Recordset();
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;

    /// Opens a select on an open connection. An open recordset is an error. The connection must outlive the
    /// recordset's use; closing the connection closes the recordset.
    void open(const QString& sql, Connection& connection);

    /// Ends the statement and forgets the row. A closed recordset stays closed.
    void close();

    bool isOpen() const;

    /// Whether the place is behind the last row (at once, for an empty set).
    bool atEnd();

    /// A field of the current row by its column name, in any case: text, number or null as stored.
    QVariant field(const QString& name);

    /// The names of the set's fields in their order; reads the first row where none was read.
    QStringList fieldNames();

    /// Goes to the next row.
    void moveNext();

    /// Starts a new row; setField then fills it and update stores it. Only for a select from a single table.
    void addNew();

    /// Sets a field of the row being added.
    void setField(const QString& name, const QVariant& value);

    /// Stores the row being added; fields that weren't set get the table's default.
    void update();

private:
    friend class Connection;
    struct Private;
    std::unique_ptr<Private> d;
};

}  // namespace kovanix
