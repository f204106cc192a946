#pragma once

#include <QString>
#include <QVariant>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "database/driver/rowcursor.h"
#include "database/plainarray.h"
#include "database/rowbits.h"
#include "database/tableshape.h"
#include "database/textstore.h"

namespace kovanix {

/// The cells of one field for all rows, each kind of column in memory of its own form. Cells of another type
/// than the column's lie apart.
class RowColumn {
public:
    /// @param type  nothing for a column whose first cell with a value tells
    RowColumn(QString name, std::optional<ColumnType> type);
    /// The column that holds the rows' identities.
    RowColumn(QString name, std::shared_ptr<PlainArray<qint64>> identities);
    RowColumn(const RowColumn& other);
    RowColumn& operator=(const RowColumn& other) = delete;
    RowColumn(RowColumn&& other) = default;
    RowColumn& operator=(RowColumn&& other) = default;
    ~RowColumn() = default;

    const QString& name() const { return m_name; }
    ColumnType type() const { return m_type.value_or(ColumnType::text); }
    /// Whether it holds the rows' identities, and takes no cells.
    bool isIdentity() const { return m_isIdentity; }

    /// Takes the cell of the next row as the driver gives it.
    void append(const engine::Cell& cell);
    /// Puts another cell in the place of one. @return whether it is another one
    bool replace(std::size_t row, const engine::Cell& cell);
    /// Gives back the memory that was put by for more rows.
    void finish();

    std::size_t count() const;
    QVariant value(std::size_t row) const;
    /// As RowSet::text.
    QString text(std::size_t row) const;
    /// The number in a cell; not a number (NaN) where there is none.
    double number(std::size_t row) const;
    /// The number in a cell of a column of counters; 0 where there is none.
    qint64 counter(std::size_t row) const { return (*m_counters)[row]; }
    /// The text in a cell of a column of texts or moments as stored, in UTF-8; empty where there is none.
    std::string_view storedText(std::size_t row) const { return m_texts[row]; }
    /// The cells of another type than the column's, by row.
    const std::vector<std::pair<std::uint32_t, QVariant>>& oddCells() const { return m_oddCells; }
    const QVariant* oddCell(std::size_t row) const;

    /// The texts of all cells as they are compared; prepared at the first question.
    const TextStore& searchTexts() const;

private:
    void appendText(const engine::Cell& cell);
    void appendNumber(const engine::Cell& cell);
    void appendCounter(const engine::Cell& cell);
    void decideType(const engine::Cell& cell);
    void keepApart(const engine::Cell& cell);
    bool isText() const { return type() == ColumnType::text || type() == ColumnType::moment; }

    QString m_name;
    std::optional<ColumnType> m_type;
    bool m_isIdentity = false;
    TextStore m_texts;                               ///< of texts and moments
    std::vector<bool> m_nulls;                       ///< of texts and moments, as long as to the last null
    PlainArray<double> m_numbers;                    ///< null is NaN, which the engine can't store
    std::shared_ptr<PlainArray<qint64>> m_counters;  ///< a null lies apart
    std::vector<std::pair<std::uint32_t, QVariant>> m_oddCells;
    mutable std::unique_ptr<TextStore> m_searchTexts;  ///< nothing where the texts themselves do
    mutable bool m_searchable = false;
};

/// Rows in order of entry.
struct RowTable {
    QString name;  ///< of the table that they come from; empty where there is no such
    std::vector<RowColumn> columns;
    std::shared_ptr<PlainArray<qint64>> identities = std::make_shared<PlainArray<qint64>>();  ///< ascending

    std::size_t count() const { return identities->size(); }
    /// The place of a field, whatever the case of its name; -1 where there is none.
    int indexOf(QStringView field) const;
    /// The row of an identity.
    std::optional<std::size_t> rowOf(qint64 identity) const;
};

}  // namespace kovanix
