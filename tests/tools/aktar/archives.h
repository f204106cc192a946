#pragma once

#include <zip.h>

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QtEndian>
#include <memory>

namespace kovanix::aktar {

/// An archive in memory with these files.
inline QByteArray archiveOf(const QMap<QString, QByteArray>& files) {
    zip_source_t* const target = ::zip_source_buffer_create(nullptr, 0, 0, nullptr);
    ::zip_source_keep(target);
    zip_t* const archive = ::zip_open_from_source(target, ZIP_CREATE | ZIP_TRUNCATE, nullptr);
    for (auto file = files.begin(); file != files.end(); ++file) {
        zip_source_t* const content =
            ::zip_source_buffer(archive, file->constData(), static_cast<zip_uint64_t>(file->size()), 0);
        ::zip_file_add(archive, file.key().toUtf8().constData(), content, ZIP_FL_ENC_UTF_8);
    }
    ::zip_close(archive);
    ::zip_source_open(target);
    ::zip_source_seek(target, 0, SEEK_END);
    QByteArray bytes(::zip_source_tell(target), '\0');
    ::zip_source_seek(target, 0, SEEK_SET);
    ::zip_source_read(target, bytes.data(), static_cast<zip_uint64_t>(bytes.size()));
    ::zip_source_close(target);
    ::zip_source_free(target);
    return bytes;
}

/// A number as archives hold it.
template <class Number>
QByteArray rawNumber(Number number) {
    number = qToLittleEndian(number);
    return {reinterpret_cast<const char*>(&number), sizeof number};
}

/// What an archive's list of files says of one of them.
struct ZipClaim {
    quint32 size = 0;
    quint32 packed = 0;
    QList<quint64> wide = {};  ///< the field of ZIP64: what is 0xFFFFFFFF above, in that order
};

/// The same archive with another claim of a file.
inline QByteArray claiming(QByteArray archive, const QByteArray& file, const ZipClaim& claim) {
    const auto number = [&](qsizetype place) {
        return qFromLittleEndian<quint32>(archive.constData() + place);
    };
    const auto put = [&](qsizetype place, const QByteArray& bytes) {
        archive.replace(place, bytes.size(), bytes);
    };
    qsizetype end = archive.lastIndexOf("PK\x05\x06");
    const qsizetype name = archive.indexOf(file, number(end + 16));  // within the list
    const qsizetype entry = name - 46;
    QByteArray field;
    for (const quint64 value : claim.wide)
        field += rawNumber(value);
    if (!field.isEmpty())
        field = rawNumber(quint16(1)) + rawNumber(quint16(field.size())) + field;
    put(entry + 20, rawNumber(claim.packed));
    put(entry + 24, rawNumber(claim.size));
    const auto fields = qFromLittleEndian<quint16>(archive.constData() + entry + 30);
    put(entry + 30, rawNumber(quint16(fields + field.size())));
    archive.insert(name + file.size() + fields, field);
    end += field.size();
    put(end + 12, rawNumber(quint32(number(end + 12) + field.size())));
    return archive;
}

/// The same archive with an end as ZIP64 writes it.
/// @param files  how many it claims to hold
inline QByteArray claimingFiles(QByteArray archive, quint64 files) {
    const qsizetype end = archive.lastIndexOf("PK\x05\x06");
    const auto number = [&](qsizetype place) {
        return qFromLittleEndian<quint32>(archive.constData() + place);
    };
    const QByteArray wide = "PK\x06\x06" + rawNumber(quint64(44)) + rawNumber(quint16(45)) +
                            rawNumber(quint16(45)) + rawNumber(quint32(0)) + rawNumber(quint32(0)) +
                            rawNumber(files) + rawNumber(files) + rawNumber(quint64(number(end + 12))) +
                            rawNumber(quint64(number(end + 16)));
    const QByteArray pointer =
        "PK\x06\x07" + rawNumber(quint32(0)) + rawNumber(quint64(end)) + rawNumber(quint32(1));
    archive.replace(end + 8, 4, QByteArray(4, '\xFF'));
    archive.insert(end, wide + pointer);
    return archive;
}

/// A workbook of one sheet with these rows, as they stand in its XML.
inline QMap<QString, QByteArray> workbookOf(const QByteArray& rows) {
    return {
        {QStringLiteral("xl/workbook.xml"),
         "<workbook xmlns:r='r'><sheets><sheet name='A' sheetId='1' r:id='rId1'/></sheets></workbook>"},
        {QStringLiteral("xl/_rels/workbook.xml.rels"),
         "<Relationships><Relationship Id='rId1' Target='worksheets/sheet1.xml'/></Relationships>"},
        {QStringLiteral("xl/worksheets/sheet1.xml"),
         "<worksheet><sheetData>" + rows + "</sheetData></worksheet>"},
    };
}

/// A workbook of the sheets "A" and "B" with these rows.
inline QMap<QString, QByteArray> workbookOf(const QByteArray& rows, const QByteArray& rowsOfB) {
    QMap<QString, QByteArray> files = workbookOf(rows);
    files[QStringLiteral("xl/workbook.xml")].replace("</sheets>", "<sheet name='B' r:id='rId2'/></sheets>");
    files[QStringLiteral("xl/_rels/workbook.xml.rels")].replace(
        "</Relationships>", "<Relationship Id='rId2' Target='worksheets/sheet2.xml'/></Relationships>");
    files[QStringLiteral("xl/worksheets/sheet2.xml")] =
        "<worksheet><sheetData>" + rowsOfB + "</sheetData></worksheet>";
    return files;
}

/// A row of texts, as it stands in a sheet's XML.
inline QByteArray rowOf(const QByteArrayList& texts) {
    QByteArray cells;
    for (const QByteArray& text : texts)
        cells += "<c t='inlineStr'><is><t>" + text + "</t></is></c>";
    return "<row>" + cells + "</row>";
}

}  // namespace kovanix::aktar
