#include "aktar/sheetfile.h"

#include <QFile>
#include <QFileInfo>

#include "aktar/csvreader.h"
#include "aktar/failure.h"
#include "aktar/htmlreader.h"
#include "aktar/xlsxreader.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 lookedAt = 4096;

QString describe(const CsvFormat& format) {
    const QString letters = format.encoding == TextEncoding::utf8          ? u"UTF-8"_s
                            : format.encoding == TextEncoding::windows1254 ? u"Windows-1254"_s
                                                                           : u"UTF-16"_s;
    const QString separator = format.separator == u'\t' ? u"sekme"_s : QString(format.separator);
    return u"CSV, %1, ayırıcı %2"_s.arg(letters, separator);
}

}  // namespace

QString wordsOfSheets(const SheetFile& file) {
    QStringList others;
    for (const QString& sheet : file.sheets) {
        if (sheet != file.sheet)
            others.append(sheet);
    }
    if (others.isEmpty())
        return {};
    return u"“%1” sayfası okundu; okunmayan: %2"_s.arg(file.sheet, listOfSheets(others));
}

SheetFile readSheetFile(const QString& path, const QString& sheet,
                        const std::function<void(qint64 done, qint64 total)>& progress) {
    const QFileInfo about(path);
    if (!about.exists())
        fail(u"Dosya yok: %1"_s.arg(path));
    // A pipe or a device has no end that could be known.
    if (!about.isFile())
        fail(u"Bu bir dosya değil: %1"_s.arg(path));
    if (about.size() > largestFile)
        fail(u"Dosya çok büyük (%1 MB); en çok %2 MB okunur. Bölerek aktarın."_s.arg(about.size() >> 20)
                 .arg(largestFile >> 20));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        fail(u"Dosya açılamadı: %1"_s.arg(path));
    const qint64 size = file.size();
    const BytesRead bytesRead = [&](qint64 bytes) {
        if (progress)
            progress(bytes, size);
    };
    const QByteArray start = file.read(lookedAt);
    SheetFile read;
    const bool isArchive = start.startsWith("PK\x03\x04") || start.startsWith("PK\x05\x06");
    if (!isArchive && !sheet.isEmpty())
        fail(u"Bu dosyada sayfa yok; sayfa yalnız .xlsx için seçilir: %1"_s.arg(path));
    if (isArchive) {
        ZipArchive archive(path);
        WorkbookRows rows = readXlsx(archive, sheet, [&](qint64 done) {
            if (progress)
                progress(done, 0);
        });
        read = {std::move(rows.table), u"XLSX"_s, rows.sheet, rows.sheets};
    } else if (start.startsWith("\xD0\xCF\x11\xE0")) {
        fail(
            u"Bu eski biçimli bir .xls dosyası ya da parolası var. Tablo programında açıp parolasız .xlsx ya "
            u"da "
            ".csv olarak kaydedin."_s);
    } else if (start.startsWith("%PDF")) {
        fail(u"Bu bir PDF dosyası; tablo değil."_s);
    } else if (looksLikeHtml(start)) {
        read = {readHtml(file, bytesRead), u"Kasanın .xls dökümü"_s};
    } else {
        const CsvFormat format = findCsvFormat(file);
        read = {readCsv(file, format, bytesRead), describe(format)};
    }
    if (read.table.rowCount() == 0)
        fail(u"Dosyada hiç satır yok: %1"_s.arg(path));
    return read;
}

}  // namespace kovanix::aktar
