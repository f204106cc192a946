#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>

namespace kovanix {

class Connection;

/// The rows of a select, walked one by one, and the way to add, change and delete one.
///
/// Opening checks the statement but reads nothing: opening " select * from urunler" to add a product costs
/// the same with a million products as with none. The first question about a row reads: the rows of a single
/// table in chunks that grow as they are walked through, any other set whole. What the recordset's own
/// connection writes shows from the next row on where rows are read in chunks, else at the next moveFirst.
/// No statement is open when an operation returns.
///
/// A place may be at a row, behind the last row, or where a row has been deleted. Changing rows is for a
/// select from a single table. Every operation but close and isOpen throws a DatabaseError when it fails.
class Recordset {
public:
    Recordset();
    ~Recordset();
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;

    /// Opens a select on an open connection. An open recordset is an error. The connection must outlive the
    /// recordset's use; closing the connection closes the recordset.
    void open(const QString& sql, Connection& connection);

    /// Forgets the rows and what hasn't been stored. A closed recordset stays closed.
    void close();

    bool isOpen() const;

    /// Whether the place is behind the last row (at once, for an empty set).
    bool atEnd();

    /// How many rows there are.
    qint64 recordCount();

    /// A field of the current row by its column name, in any case: text, number (double or qint64) or null as
    /// stored; a moment as the text "yyyy-MM-dd HH:mm:ss". (noRow) where no row is current.
    QVariant field(const QString& name);

    /// The names of the set's fields in their order; reads the first rows where none were read.
    QStringList fieldNames();

    // Each of these first stores what has been set and not yet stored.

    /// Goes to the first row, read anew.
    void moveFirst();
    /// Goes to the next row; (noRow) behind the last one.
    void moveNext();

    /// Lets through only the rows that match (see RowFilter; an empty text lets all through), and goes to the
    /// first of them. It goes into the statement where it can, and costs no more than a select of those rows.
    /// Where it fails, no row is there until another filter succeeds: a deletion behind a filter that was
    /// refused must not find the first row of the table.
    void setFilter(const QString& filter);

    /// Goes to the next row that matches, the current one included. Over a table it is one look-up, however
    /// many rows lie between. Where no row matches, and where it fails, the place is behind the last row.
    /// @return whether there is such a row
    bool find(const QString& criterion);

    /// Starts a new row; setField then fills it and update stores it. The place stays where it is.
    void addNew();

    /// Sets a field of the row being added, else of the current row. Nothing is stored before update.
    void setField(const QString& name, const QVariant& value);

    /// Stores the row being added, whose unset fields get the table's default, or what has been set in the
    /// current row, found by its identity. (noRow) where somebody else has deleted it. Behind deleteCurrent
    /// it does nothing; with nothing to store elsewhere it is an error. A failed one can be repeated.
    void update();

    /// Deletes the current row, found by its identity; (noRow) where somebody else has done so. The place
    /// stays where the row was. With a row being added, that one is dropped instead.
    void deleteCurrent();

private:
    friend class Connection;
    struct Private;
    std::unique_ptr<Private> d;
};

}  // namespace kovanix
