#pragma once

#include <zip.h>

#include <QByteArray>
#include <QMap>
#include <QString>
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

}  // namespace kovanix::aktar
