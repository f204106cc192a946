#include "aktar/shopstore.h"

#include <QElapsedTimer>
#include <algorithm>
#include <thread>

#include "aktar/failure.h"
#include "data/baglanmamodulu.h"
#include "data/schema.h"
#include "database/connection.h"
#include "database/rowset.h"
#include "database/stagedrows.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 stepRows = 512;

[[noreturn]] void failChanged() {
    fail(u"Dükkânın kayıtları bu arada değişti, hiçbir şey yazılmadı. Yeniden deneyin."_s);
}

/// Other tills have waited for as long as they may.
struct TookTooLong {};

/// Tills that wait look again every tenth of a second.
void letTillsIn(std::chrono::milliseconds pause, const std::function<void()>& tell) {
    constexpr std::chrono::milliseconds look{100};
    for (std::chrono::milliseconds waited{0}; waited < pause; waited += look) {
        tell();
        std::this_thread::sleep_for(look);
    }
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

void applyPlan(Connection& connection, const ImportPlan& plan, const RowsDone& progress, const Turns& turns) {
    if (plan.added.empty() && plan.changed.empty())
        return;
    // A shop that no till has opened yet has no tables.
    semakontrol(connection);
    // Rows are counted twice: as they are laid ready, and as they are stored.
    const auto rows = static_cast<qint64>(plan.added.size() + plan.changed.size());
    const auto tell = [&](qint64 done) {
        if (progress)
            progress(done, 2 * rows);
    };
    qint64 laid = 0;
    StagedRows staged(connection, tableOf(plan.kind), columnsOf(plan.kind));
    const auto countOne = [&] {
        if (++laid % stepRows == 0)
            tell(laid);
    };
    for (const PlannedRow& row : plan.added) {
        staged.add(row.values);
        countOne();
    }
    for (const PlannedRow& row : plan.changed) {
        QVariantList values = row.values;
        values.front() = row.key;
        staged.change(row.identity, values);
        countOne();
    }
    for (int attempt = 1; attempt <= turns.attempts; ++attempt) {
        QElapsedTimer held;
        const auto step = [&](qint64 done) {
            if (done == 0)
                held.start();
            else if (held.hasExpired(turns.longest.count()))
                throw TookTooLong();
            tell(rows + done);
        };
        try {
            if (!staged.store(plan.lastIdentity, step))
                failChanged();
            return;
        } catch (const TookTooLong&) {
            letTillsIn(turns.pause, [&] { tell(rows); });
        }
    }
    fail(
        u"Yazma %1 kez denendi ve her seferinde %2 saniyeden uzun sürdü; öbür kasalar beklemesin diye geri "
        u"alındı. "
        "Bilgisayar daha az meşgulken yeniden deneyin ya da dosyayı bölün."_s.arg(turns.attempts)
            .arg(turns.longest.count() / 1000));
}

}  // namespace kovanix::aktar
