#include "aktar/importer.h"

#include "aktar/failure.h"
#include "aktar/shopstore.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

ImportPlan planImport(Connection& connection, const CellTable& table, Kind kind, const Mapping& mapping,
                      const std::function<void(const QString& what, qint64 done, qint64 total)>& progress) {
    const qint64 rows = table.rowCount();
    const auto tell = [&](const QString& what, qint64 done) {
        if (progress)
            progress(what, done, rows);
    };
    const ImportRecords records(table, kind, mapping,
                                [&](qsizetype done) { tell(u"Satırlar denetleniyor"_s, done); });
    tell(u"Dükkânın kayıtlarıyla karşılaştırılıyor"_s, 0);
    const ShopRows shop = readShopRows(connection, kind, records);
    ImportPlan plan = records.plan(shop.byKey);
    plan.lastIdentity = shop.lastIdentity;
    return plan;
}

Mapping mapByNames(const QString& names, const CellTable& table, Kind kind) {
    const std::vector<Field>& fields = fieldsOf(kind);
    Mapping mapping = mapByHeadings(table, kind, true);
    mapping.fields.clear();
    for (const QString& name : names.split(u',')) {
        int place = Mapping::none;
        for (size_t field = 0; field < fields.size(); ++field) {
            if (fields[field].column == name.trimmed())
                place = static_cast<int>(field);
        }
        if (place < 0 && name.trimmed() != u"-")
            fail(u"Böyle bir sütun yok: %1"_s.arg(name));
        mapping.fields.push_back(place);
    }
    return mapping;
}

QString namesOf(const Mapping& mapping, Kind kind) {
    QStringList names;
    for (const int field : mapping.fields)
        names.append(field < 0 ? u"-"_s : fieldsOf(kind)[static_cast<size_t>(field)].column);
    return names.join(u',');
}

}  // namespace kovanix::aktar
