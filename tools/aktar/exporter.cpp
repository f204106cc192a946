#include "aktar/exporter.h"

#include <QFileInfo>

#include "aktar/sheetwriter.h"
#include "data/baglanmamodulu.h"
#include "database/connection.h"
#include "database/rowwalk.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 stepRows = 1000;

enum class Format { csv, xlsx, none };

Format formatOf(const QString& path) {
    const QString ending = QFileInfo(path).suffix().toLower();
    if (ending == u"csv"_s)
        return Format::csv;
    return ending == u"xlsx"_s ? Format::xlsx : Format::none;
}

QString sheetName(Kind kind) {
    switch (kind) {
        case Kind::products:
            return u"Ürünler"_s;
        case Kind::customers:
            return u"Müşteriler"_s;
        case Kind::sales:
            break;
    }
    return u"Satışlar"_s;
}

QString selectOf(const ExportOrder& order) {
    QStringList columns;
    for (const Field& field : fieldsOf(order.kind))
        columns.append(field.column);
    QString sql = u"select %1 from %2"_s.arg(columns.join(u", "), tableOf(order.kind));
    if (order.kind != Kind::sales || (!order.from.isValid() && !order.to.isValid()))
        return sql;
    const QDate first = order.from.isValid() ? order.from : QDate(1900, 1, 1);
    const QDate last = order.to.isValid() ? order.to : QDate(9999, 12, 31);
    return sql + u" where tarih between "_s + sqltarihbetween(first, u"00:00:00"_s, last, u"23:59:59"_s);
}

}  // namespace

QString faultOf(const ExportOrder& order) {
    if (formatOf(order.path) == Format::none)
        return u"Dosya adı .csv ya da .xlsx ile bitmeli: %1"_s.arg(order.path);
    if (order.kind != Kind::sales && (order.from.isValid() || order.to.isValid()))
        return u"Tarih aralığı yalnız satışlar içindir"_s;
    if (order.from.isValid() && order.to.isValid() && order.to < order.from)
        return u"Bitiş tarihi başlangıçtan önce"_s;
    if (order.plain && formatOf(order.path) != Format::csv)
        return u"Düz yazım yalnız .csv dosyası içindir"_s;
    return {};
}

qint64 exportRows(Connection& connection, const ExportOrder& order,
                  const std::function<void(qint64 rows)>& progress) {
    const std::vector<Field>& fields = fieldsOf(order.kind);
    NewFile file(order.path, order.overwrite);
    const std::unique_ptr<SheetWriter> writer = formatOf(order.path) == Format::xlsx
                                                    ? makeXlsxWriter(file, fields, sheetName(order.kind))
                                                    : makeCsvWriter(file, fields, order.plain);
    std::vector<OutCell> cells(fields.size());
    std::vector<QByteArray> texts(fields.size());  // of cells that aren't kept as texts
    qint64 rows = 0;
    RowWalk(connection, selectOf(order)).forEach([&](const RowWalk::Row& row) {
        for (size_t field = 0; field < fields.size(); ++field) {
            const auto place = static_cast<int>(field);
            OutCell& cell = cells[field];
            const bool number =
                fields[field].type == FieldType::price || fields[field].type == FieldType::quantity;
            cell.number = number ? row.number(place) : std::nullopt;
            cell.text = cell.number ? std::string_view() : row.text(place);
            if (!cell.number && cell.text.empty()) {
                texts[field] = nullmetin(row.value(place)).toUtf8();
                cell.text = {texts[field].constData(), static_cast<size_t>(texts[field].size())};
            }
        }
        writer->addRow(cells);
        if (++rows % stepRows == 0 && progress)
            progress(rows);
    });
    writer->finish();
    file.commit();
    return rows;
}

}  // namespace kovanix::aktar
