#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <functional>
#include <vector>

#include "aktar/fields.h"
#include "aktar/numberreading.h"

namespace kovanix::aktar {

/// A row of the shop as it is stored: its identity and the values of the kind's fields, in their order.
struct StoredRow {
    qint64 identity = 0;
    QVariantList values;
};

/// The shop's rows by identityKey of their key, those of one key in order of entry.
using StoredRows = QHash<QString, QList<StoredRow>>;

/// What is said of a line of the file.
struct LineNote {
    qint64 line = 0;
    QString key;
    QString words;
};

/// A row that is to be written: a value for each field, an invalid one where the shop's own stays.
struct PlannedRow {
    qint64 identity = 0;  ///< 0 for a new one
    QString key;          ///< of a row that is there, as it is stored
    QVariantList values;
};

/// What an import would do.
struct ImportPlan {
    Kind kind = Kind::products;
    std::vector<PlannedRow> added;
    std::vector<PlannedRow> changed;
    qsizetype unchanged = 0;
    std::vector<LineNote> refused;  ///< in the order of the file
    std::vector<LineNote>
        settled;                ///< barcodes that the file writes another way, of lines that aren't refused
    std::vector<LineNote> cut;  ///< texts that are too long for their field
    qint64 lastIdentity = 0;    ///< of the shop's table when it was read
};

/// Two keys are one to the shop's file where this is the same: the letter case of ASCII letters doesn't
/// count.
QString identityKey(const QString& key);

/// A file's rows as values, checked one by one.
class ImportRecords {
public:
    /// Told how many rows are done.
    using Progress = std::function<void(qsizetype done)>;

    /// Reads the rows of a table by a mapping that has no fault.
    ImportRecords(const CellTable& table, Kind kind, const Mapping& mapping, const Progress& progress = {});

    /// How many different keys the rows have.
    qsizetype count() const { return m_byKey.size(); }
    /// Whether a row of the file has that key.
    bool mentions(const QString& key) const { return m_byKey.contains(key) || m_written.contains(key); }

    /// Holds the records against what the shop has.
    ImportPlan plan(const StoredRows& stored) const;

private:
    struct Record {
        qint64 line = 0;
        QString key;          // as identityKey gives it
        QVariantList values;  // whole texts and numbers; invalid for an empty cell
        QString written;      // a barcode that was settled, as it stands in the file
        QString fault;        // why it is refused
        QString doubled;      // why, unless the shop has it as often
    };
    struct Comparison {
        PlannedRow row;
        bool differs = false;
        std::vector<LineNote> cut;
    };

    Record read(const CellTable& table, const Mapping& mapping, qsizetype row) const;
    QVariant readCell(const CellTable& table, qsizetype row, int field, Record& record) const;
    void findDoubles();
    Comparison compare(const Record& record, const StoredRow* stored) const;
    QSet<QString> keysAsOftenInTheShop(const StoredRows& stored) const;
    QString faultOfNew(const Record& record) const;

    Kind m_kind;
    std::vector<qsizetype> m_columns;                 // of each field
    std::vector<std::optional<DecimalSign>> m_signs;  // of each field
    std::vector<Record> m_records;
    QHash<QString, size_t> m_byKey;  // the first record of each key
    QSet<QString> m_written;  // the keys of barcodes as they stand in the file, where they were settled
};

}  // namespace kovanix::aktar
