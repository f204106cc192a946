#include "yedek/manifest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

#include "yedek/failure.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void refuse() {
    throw Refusal(u"Yedeğin bilgi sayfası bozuk"_s);
}

// A number of JSON is a double at most readers: counts are texts.
qint64 countOf(const QJsonValue& value) {
    bool ok = false;
    const qint64 count = value.toString().toLongLong(&ok);
    if (!ok || count < 0)
        refuse();
    return count;
}

QString textOf(const QJsonValue& value) {
    if (!value.isString())
        refuse();
    return value.toString();
}

QJsonArray arrayOf(const QJsonValue& value) {
    if (!value.isArray())
        refuse();
    return value.toArray();
}

QJsonObject partObject(const Part& part) {
    return {{u"name"_s, part.name},
            {u"size"_s, QString::number(part.size)},
            {u"sha256"_s, QString::fromLatin1(part.sha256)}};
}

QJsonObject tableObject(const TableSum& table) {
    QJsonArray sums;
    for (const auto& [column, sum] : table.sums)
        sums.append(QJsonObject{{u"column"_s, column}, {u"sum"_s, sum}});
    return {{u"name"_s, table.name}, {u"rows"_s, QString::number(table.rows)}, {u"sums"_s, sums}};
}

Part readPart(const QJsonObject& object) {
    Part part{textOf(object[u"name"_s]), countOf(object[u"size"_s]), textOf(object[u"sha256"_s]).toLatin1()};
    // Never a path: only these two are unpacked.
    if (part.name != dataName && part.name != configName)
        refuse();
    return part;
}

TableSum readTable(const QJsonObject& object) {
    TableSum table{textOf(object[u"name"_s]), countOf(object[u"rows"_s]), {}};
    for (const QJsonValue& sum : arrayOf(object[u"sums"_s]))
        table.sums.append({textOf(sum.toObject()[u"column"_s]), textOf(sum.toObject()[u"sum"_s])});
    return table;
}

}  // namespace

QByteArray Manifest::toJson() const {
    QJsonArray partArray;
    for (const Part& each : parts)
        partArray.append(partObject(each));
    QJsonArray tableArray;
    for (const TableSum& table : tables)
        tableArray.append(tableObject(table));
    const QJsonObject whole{
        {u"format"_s, format},
        {u"moment"_s, moment.toOffsetFromUtc(moment.offsetFromUtc()).toString(Qt::ISODate)},
        {u"version"_s, version},
        {u"shop"_s, shop},
        {u"password"_s, hasPassword},
        {u"parts"_s, partArray},
        {u"tables"_s, tableArray}};
    return QJsonDocument(whole).toJson();
}

Manifest Manifest::fromJson(const QByteArray& json) {
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        refuse();
    const QJsonObject whole = document.object();
    const int number = whole[u"format"_s].toInt();
    if (number > format)
        throw Refusal(u"Bu yedek programın daha yeni bir sürümüyle alınmış: önce programı güncelleyin"_s);
    Manifest manifest;
    manifest.moment = QDateTime::fromString(textOf(whole[u"moment"_s]), Qt::ISODate);
    manifest.version = textOf(whole[u"version"_s]);
    manifest.shop = textOf(whole[u"shop"_s]);
    manifest.hasPassword = whole[u"password"_s].toBool();
    for (const QJsonValue& part : arrayOf(whole[u"parts"_s]))
        manifest.parts.append(readPart(part.toObject()));
    for (const QJsonValue& table : arrayOf(whole[u"tables"_s]))
        manifest.tables.append(readTable(table.toObject()));
    const bool dataFirst = !manifest.parts.isEmpty() && manifest.parts.first().name == dataName;
    const bool configOnce = manifest.parts.size() == 1 ||
                            (manifest.parts.size() == 2 && manifest.parts.last().name == configName);
    if (number != format || !manifest.moment.isValid() || !dataFirst || !configOnce)
        refuse();
    return manifest;
}

const Part* Manifest::part(const QString& name) const {
    const auto found = std::ranges::find(parts, name, &Part::name);
    return found == parts.end() ? nullptr : &*found;
}

}  // namespace kovanix::yedek
