#include "aktar/shopstore.h"

#include <QElapsedTimer>
#include <algorithm>

#include "aktar/failure.h"
#include "data/baglanmamodulu.h"
#include "data/schema.h"
#include "database/bulkwriter.h"
#include "database/connection.h"
#include "database/rowset.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 stepRows = 512;

[[noreturn]] void failChanged() {
    fail(u"Dükkânın kayıtları bu arada değişti, hiçbir şey yazılmadı. Yeniden deneyin."_s);
}

QStringList columnsOf(Kind kind) {
    QStringList columns;
    for (const Field& field : fieldsOf(kind))
        columns.append(field.column);
    return columns;
}

}  // namespace

ShopRows readShopRows(Connection& connection, Kind kind, const ImportRecords& records) {
    ShopRows shop;
    if (!tablovar(connection, tableOf(kind)))
        return shop;
    RowSet rows;
    rows.read(connection, u"select * from "_s + tableOf(kind));
    std::vector<int> places;
    for (const QString& column : columnsOf(kind))
        places.push_back(rows.fieldIndex(column));
    shop.byKey.reserve(std::min(rows.totalCount(), records.count()));
    for (qsizetype row = 0; row < rows.totalCount(); ++row) {
        shop.lastIdentity = std::max(shop.lastIdentity, rows.identity(row));
        if (places.front() < 0)
            continue;
        const QString key = identityKey(rows.text(row, places.front()));
        if (!records.mentions(key))
            continue;
        StoredRow stored{rows.identity(row), {}};
        for (const int place : places)
            stored.values.append(place < 0 ? QVariant() : rows.value(row, place));
        shop.byKey[key].append(stored);
    }
    return shop;
}

void applyPlan(Connection& connection, const ImportPlan& plan, const RowsDone& progress,
               std::chrono::milliseconds hold) {
    if (plan.added.empty() && plan.changed.empty())
        return;
    // A shop that no till has opened yet has no tables.
    semakontrol(connection);
    const QString table = tableOf(plan.kind);
    const QStringList columns = columnsOf(plan.kind);
    const auto total = static_cast<qint64>(plan.added.size() + plan.changed.size());
    qint64 done = 0;
    BulkWriter writer(connection);
    QElapsedTimer held;
    held.start();
    const auto step = [&] {
        if (++done % stepRows != 0)
            return;
        if (held.hasExpired(hold.count()))
            fail(
                u"Yazma %1 saniyeden uzun sürdü; öbür kasalar beklemesin diye geri alındı. Dosyayı bölüp "
                "parça parça aktarın."_s.arg(hold.count() / 1000));
        if (progress)
            progress(done, total);
    };
    if (!plan.added.empty() && writer.lastRow(table) != plan.lastIdentity)
        failChanged();
    writer.into(table, columns);
    for (const PlannedRow& row : plan.added) {
        writer.add(row.values);
        step();
    }
    writer.changing(table, columns.front(), columns.mid(1));
    for (const PlannedRow& row : plan.changed) {
        if (!writer.change(row.identity, row.key, row.values.mid(1)))
            failChanged();
        step();
    }
    writer.finish();
}

}  // namespace kovanix::aktar
