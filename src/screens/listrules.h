#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <array>
#include <chrono>
#include <optional>

namespace kovanix {

// What the list screens do with their grid, apart from any screen: how a press on a heading sorts, what the
// filter cells ask for, and how wide the columns are.

/// One cell of a filter bar: the field of its column and the text as typed.
struct FilterInput {
    QString field;
    QString text;
};

/// How a list screen writes the terms of its filter.
struct FilterRules {
    /// The fields that match as whole numbers: no wildcards, and a comma counts as the decimal sign.
    QStringList numericFields;
    /// The field whose term is written with two blanks behind LIKE.
    QString blankedField;
};

/// The filter that the cells ask for: a term for each cell that holds more than blanks, in their order,
/// joined by " AND ". A text matches anywhere within its field; what is typed is never trimmed, and its
/// wildcards stand for themselves.
QString filterText(const QList<FilterInput>& cells, const FilterRules& rules);

/// The order of a list: the field last sorted by and its direction, both empty at first.
///
/// The direction runs on across the columns: a press on a new heading after an ascending order gives a
/// descending one.
struct ListOrder {
    QString field;
    QString direction;  ///< "ASC", "DESC" or empty

    /// What a press on the heading of a field makes of the order. @return the sort to set ("urun DESC")
    QString press(const QString& pressedField);
};

/// How much of a list is read, 0 to 1, where it is to be shown: nothing before the reading has taken long
/// enough to be noticed.
/// @param total  about how many rows there will be
std::optional<double> progressShown(qsizetype rows, qsizetype total, std::chrono::milliseconds taken);

/// The widths of a grid's columns, as they follow the grid's own.
///
/// The first column keeps its width. What the grid has grown by since its widths were stored is divided by
/// one less than the number of the other columns, and each of them grows by that: together they outgrow the
/// grid.
class ColumnWidths {
public:
    static constexpr int most = 51;

    /// Keeps the widths of the columns and of the grid as they stand, in pixels.
    /// @throws RuntimeError (outOfRange) for more columns than can be kept
    void store(int gridWidth, const QList<int>& columns);
    bool isStored() const { return m_count > 0; }

    /// The widths for a grid of that width; a narrow grid may leave less than nothing for a column. None
    /// before they are stored.
    QList<int> widthsFor(int gridWidth) const;

private:
    int m_gridWidth = 0;
    int m_count = 0;
    std::array<short, most> m_columns{};
};

}  // namespace kovanix
