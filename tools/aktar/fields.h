#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

#include "aktar/celltable.h"

namespace kovanix::aktar {

/// What goes out or comes in.
enum class Kind { products, customers, sales };

enum class FieldType { key, text, price, quantity, moment };

/// A column of a table of the shop.
struct Field {
    QString column;   ///< in the database
    QString heading;  ///< in a file, and above a column that is chosen
    FieldType type;
    QStringList headings;  ///< other names that files give it, as headingKey makes them
};

/// The table of a kind, and its columns in the order in which they go out. The first one of products and of
/// customers is what a row is known by.
QString tableOf(Kind kind);
const std::vector<Field>& fieldsOf(Kind kind);
/// "urunler", "musteriler" or "satislar" on the command line.
std::optional<Kind> kindNamed(const QString& name);

/// A heading stripped to plain small letters and digits: "Satış Fiyatı (TL)" is "satisfiyatitl".
QString headingKey(const QString& heading);
/// The field that a heading names; -1 for none.
int fieldNamed(const QString& heading, Kind kind);

/// Which field each column of a file goes into.
struct Mapping {
    static constexpr int none = -1;

    std::vector<int> fields;    ///< a field for each column, or none
    qsizetype headingRow = -1;  ///< rows up to this one are no data; -1 where there is no heading

    /// The column of a field; -1 where it has none.
    qsizetype columnOf(int field) const;
};

/// How many different fields the best of the first rows names.
int knownHeadings(const CellTable& table, Kind kind);

/// The fields that the headings name. The stock stays out unless it is wanted: it would set what the shelves
/// hold.
Mapping mapByHeadings(const CellTable& table, Kind kind, bool withStock);

/// What is wrong with a mapping, in words; empty where rows can be read by it.
QString faultOf(const Mapping& mapping, Kind kind);

}  // namespace kovanix::aktar
