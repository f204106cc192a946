#pragma once

#include <QString>
#include <QVariant>
#include <cstdint>
#include <memory>
#include <vector>

#include "database/readprogress.h"
#include "database/rowfilter.h"
#include "database/tableshape.h"

namespace kovanix {

class Connection;
struct RowTable;

/// The rows of a list as they were shown at one moment: what is read, sorted or filtered later changes
/// nothing of it. The rows themselves are held in common with the RowSet for as long as that keeps them.
class RowSnapshot {
public:
    /// How many rows were shown.
    qsizetype recordCount() const { return static_cast<qsizetype>(m_shown.size()); }
    /// As those of RowSet.
    QVariant value(qsizetype place, int field) const;
    QString text(qsizetype place, int field) const;

private:
    friend class RowSet;
    RowSnapshot(std::shared_ptr<const RowTable> table, std::vector<std::uint32_t> shown);

    std::shared_ptr<const RowTable> m_table;
    std::vector<std::uint32_t> m_shown;  ///< the row at each place
};

/// The rows of a list, read once and kept: sorting, filtering and finding work on them in memory and never
/// ask the database again.
///
/// Rows are numbered twice. A *place* counts the rows that the filter lets through, in the order in force:
/// that is what a list shows. The current row is kept by its identity, so that it is the same row after a
/// sort, a filter or a refresh, as long as it is there.
///
/// Every operation throws a RuntimeError where it says so; a failed one leaves everything as it was.
class RowSet {
public:
    RowSet();
    ~RowSet();
    RowSet(RowSet&& other) noexcept;
    RowSet& operator=(RowSet&& other) noexcept;

    /// Reads all rows of a select from one table, in order of entry, in closed chunks: no statement stands
    /// half read when it returns or throws. Sort, filter and current row stay in force where their fields are
    /// still there; the current row is found again by the identity of its row, in the same table.
    ///
    /// A select with an order of its own or a limit, and one from what has no identities (a view), is read in
    /// one go, and its rows are numbered from 1.
    ///
    /// A second read of the same select through an unbroken connection returns at once where the database can
    /// prove that nothing has changed since.
    /// @param progress  told between the chunks; the rows of before are still there then
    /// @return whether the rows were read anew
    /// @throws RuntimeError the engine's failure; the rows of before stay
    bool read(Connection& connection, const QString& sql, const ReadProgress& progress = {});

    /// Reads one row anew, by one look-up: what somebody else has stored in it since shows. It stays where it
    /// is until the next sort, filter or read; a row that is gone stays as it was.
    /// @return whether it was another one
    /// @throws RuntimeError the engine's failure; the rows of before stay
    bool readRow(Connection& connection, qint64 identity);

    /// Forgets rows and fields; sort and filter too.
    void clear();

    // --- fields
    int fieldCount() const;
    const QString& fieldName(int field) const;
    /// The place of a field, whatever the case of its name; -1 where there is none.
    int fieldIndex(QStringView name) const;
    ColumnType fieldType(int field) const;

    // --- rows as shown
    /// How many rows the filter lets through.
    qsizetype recordCount() const;
    /// How many rows there are.
    qsizetype totalCount() const;
    /// A cell: text, number (double or qint64) or null as stored. A cell of another type than its column's is
    /// given as it is. What a number column holds is a double, whole or not.
    QVariant value(qsizetype place, int field) const;
    /// A cell as bare text: numbers as the shop writes them without a format ("12,5"), a moment as it is
    /// shown
    /// ("03.05.2026 10:15:00"), null as the empty text.
    QString text(qsizetype place, int field) const;
    /// The rows as they are shown now, to be kept.
    RowSnapshot snapshot() const;

    // --- current row
    /// Its place; -1 where no row is current or the filter hides it.
    qsizetype current() const;
    /// Makes the row at a place the current one; -1 for none.
    void setCurrent(qsizetype place);
    /// The place of the row of that identity among those shown; -1 where it isn't.
    qsizetype placeOf(qint64 identity) const;
    /// The identity of the row at a place.
    qint64 identity(qsizetype place) const;

    // --- order and choice
    /// Orders the rows by a field: "urun ASC", "no DESC"; the empty text gives the order of entry. Texts in
    /// Turkish alphabetical order with letter case ignored, empty and null first when ascending, ties in
    /// order of entry whichever the direction.
    /// @throws RuntimeError (databaseFailure) for an unknown field or direction; the former order stays
    void setSort(const QString& sort);
    const QString& sort() const;

    /// Lets through the rows that a filter matches; an empty one all of them.
    ///
    /// A number column (not a counter) compares as a number where the pattern has no wildcard; a pattern that
    /// is no number there refuses the whole filter. A counter compares its digits as text where the pattern
    /// has wildcards, else as a number. A moment is matched as it is shown.
    /// @throws RuntimeError (databaseFailure) for an unknown field or a refused term; the former filter stays
    void setFilter(const RowFilter& filter);
    /// Whether a filter is in force that may hold rows back.
    bool isFiltered() const;

    /// The place of the first row, from a place on, that a filter matches; -1 where none does.
    /// @throws RuntimeError (databaseFailure) as setFilter
    qsizetype find(const RowFilter& criterion, qsizetype from = 0) const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

}  // namespace kovanix
