#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <utility>

namespace kovanix::yedek {

/// The names of a packed copy's parts.
inline const QString manifestName = QStringLiteral("manifest.json");
inline const QString dataName = QStringLiteral("kovanix.data");
inline const QString configName = QStringLiteral("Kovanix.config");

/// What a table holds, exactly.
struct TableSum {
    QString name;
    qint64 rows = 0;
    /// Of each column that holds a number: its name, and the sum of its numbers, each rounded to millionths,
    /// as a decimal text.
    QList<std::pair<QString, QString>> sums;

    bool operator==(const TableSum&) const = default;
};

struct Part {
    QString name;
    qint64 size = 0;
    QByteArray sha256;  ///< in hexadecimal digits

    bool operator==(const Part&) const = default;
};

/// What a copy says of itself.
struct Manifest {
    static constexpr int format = 1;
    /// Longer ones aren't read, in bytes.
    static constexpr qint64 longest = 1 << 20;

    QDateTime moment;  ///< at which it was taken, to the second, by the clock on that day's wall
    QString version;   ///< of the till
    QString shop;      ///< tells the copies of one shop from another's
    bool hasPassword = false;
    QList<Part> parts;  ///< the data, and the configuration where there was one
    QList<TableSum> tables;

    QByteArray toJson() const;
    /// @throws Failure where the text is no manifest, or one of a newer format
    static Manifest fromJson(const QByteArray& json);

    const Part* part(const QString& name) const;
};

}  // namespace kovanix::yedek
