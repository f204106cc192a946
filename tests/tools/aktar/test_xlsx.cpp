#include <QtTest>

#include "aktar/newfile.h"
#include "aktar/sheetfile.h"
#include "aktar/sheetwriter.h"
#include "aktar/xlsxreader.h"
#include "aktar/xlsxtext.h"
#include "archives.h"
#include "cells.h"
#include "rows.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

struct CellRow {
    QByteArray rows;
    QList<QStringList> cells;
    QList<CellKind> kinds = {};  // of the first row
};

/// A text with letters in numbers, and what is meant.
struct TextRow {
    std::string numbers;
    std::string letters;
    bool isShortest = true;  // the letters are written so, too
};

struct SheetsRow {
    QByteArray workbook;
    QString wanted;
    QString read;  // the sheet that was read, or the words of the refusal
    QStringList sheets = {};
    QString cell = {};
};

struct BadRow {
    QByteArray bytes;
    QString words;
    ZipLimits limits = {};
};

const QByteArray styles =
    "<styleSheet><numFmts><numFmt numFmtId='164' formatCode='dd\\.mm\\.yyyy'/>"
    "<numFmt numFmtId='165' formatCode='#,##0.00\\ \"gün\"'/><numFmt numFmtId='166' formatCode='[Red]0.00'/>"
    "<numFmt numFmtId='167' formatCode='[h]:mm:ss'/><numFmt numFmtId='168' formatCode='0000000000000'/>"
    "<numFmt numFmtId='169' formatCode='[$-41F]00000;-00000'/><numFmt numFmtId='170' formatCode='000.0'/>"
    "</numFmts><cellStyleXfs><xf "
    "numFmtId='14'/></cellStyleXfs>"
    "<cellXfs><xf numFmtId='0'/><xf numFmtId='14'/><xf numFmtId='164'/><xf numFmtId='165'/><xf "
    "numFmtId='22'/>"
    "<xf numFmtId='166'/><xf numFmtId='167'/><xf numFmtId='168'/><xf numFmtId='169'/><xf numFmtId='170'/>"
    "<xf numFmtId='1'/></cellXfs></styleSheet>";

const QByteArray shared =
    "<sst><si><t>SÜT</t></si><si><r><t>YARIM </t></r><r><t xml:space='preserve'>YAĞLI</t></r>"
    "<rPh><t>okunuş</t></rPh></si><si><t>a &amp; b</t></si><si><t/></si>"
    "<si><r><t>S_x00DC_T_x00</t></r><r><t>0D_ _x005F_x000D_</t></r></si></sst>";

QByteArray bookOf(const QByteArray& rows) {
    QMap<QString, QByteArray> files = workbookOf(rows);
    files[u"xl/styles.xml"_s] = styles;
    files[u"xl/sharedStrings.xml"_s] = shared;
    return archiveOf(files);
}

QByteArray without(const QString& name) {
    QMap<QString, QByteArray> files = workbookOf("<row><c><v>1</v></c></row>");
    files.remove(name);
    return archiveOf(files);
}

/// An archive whose headers say that its sheet is of another size.
QByteArray lyingArchive(quint32 claimed) {
    const QByteArray rows(300'000, ' ');
    const auto size = static_cast<quint32>(workbookOf(rows).value(u"xl/worksheets/sheet1.xml"_s).size());
    return bookOf(rows).replace(rawNumber(size), rawNumber(claimed));
}

/// An archive whose list of files lies of a sheet of five megabytes, which are packed into five kilobytes.
QByteArray lyingBook(const ZipClaim& claim) {
    return claiming(bookOf(QByteArray(5 << 20, ' ')), "xl/worksheets/sheet1.xml", claim);
}

/// A workbook's list of sheets "A", "Boş", "C" (each hidden or not), of which the second has no rows.
QByteArray bookOfSheets(const QByteArray& sheets) {
    QMap<QString, QByteArray> files = workbookOf("<row><c><v>1</v></c></row>");
    files[u"xl/workbook.xml"_s] =
        "<workbook xmlns:r='r'><workbookPr date1904='1'/><sheets>" + sheets + "</sheets></workbook>";
    QByteArray relations;
    for (const char* const part : {"worksheets/sheet1.xml", "bos.xml", "/xl/c.xml", "bozuk.xml", "yok.xml"})
        relations += "<Relationship Id='" + QByteArray(part) + "' Target='" + part + "'/>";
    files[u"xl/_rels/workbook.xml.rels"_s] = "<Relationships>" + relations + "</Relationships>";
    files[u"xl/bos.xml"_s] =
        "<worksheet><sheetData><row><c s='1'/><c t='str'><v> </v></c></row></sheetData></worksheet>";
    files[u"xl/c.xml"_s] = "<worksheet><sheetData><row><c s='1'><v>1</v></c></row></sheetData></worksheet>";
    files[u"xl/bozuk.xml"_s] = "<worksheet><";
    files[u"xl/styles.xml"_s] = styles;
    return archiveOf(files);
}

}  // namespace

class XlsxTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void reads_data() {
        constexpr auto text = CellKind::text;
        constexpr auto number = CellKind::number;
        constexpr auto moment = CellKind::moment;
        addRows<CellRow>({
            {"shared texts",
             {"<row r='1'><c r='A1' t='s'><v>0</v></c><c r='B1' t='s'><v>1</v></c><c r='C1' "
              "t='s'><v>2</v></c></row>",
              {{u"SÜT"_s, u"YARIM YAĞLI"_s, u"a & b"_s}},
              {text, text, text}}},
            {"inline texts",
             {"<row><c t='inlineStr'><is><t>A</t></is></c><c "
              "t='inlineStr'><is><r><t>B</t></r><r><t>C</t></r></is></c></row>",
              {{u"A"_s, u"BC"_s}}}},
            {"numbers",
             {"<row><c><v>12.5</v></c><c "
              "t='n'><v>8690000000001</v></c><c><v>8.69E12</v></c><c><v>-3</v></c></row>",
              {{u"12.5"_s, u"8690000000001"_s, u"8690000000000"_s, u"-3"_s}},
              {number, number, number, number}}},
            {"dates",
             {"<row><c s='1'><v>46145</v></c><c s='2'><v>46145</v></c><c "
              "s='4'><v>46145.427083333</v></c></row>",
              {{u"03.05.2026"_s, u"03.05.2026"_s, u"03.05.2026 10:15:00"_s}},
              {moment, moment, moment}}},
            {"zeros ahead, as the pattern shows them",
             {"<row><c s='7'><v>8690000001</v></c><c s='7'><v>12345678901234</v></c><c s='8'><v>42</v></c>"
              "<c s='8'><v>-42</v></c><c s='8'><v>1.5</v></c><c s='9'><v>7</v></c><c "
              "s='10'><v>0</v></c></row>",
              {{u"0008690000001"_s, u"12345678901234"_s, u"00042"_s, u"-42"_s, u"1.5"_s, u"7"_s, u"0"_s}},
              {number, number, number, number, number, number, number}}},
            {"letters in numbers",
             {"<row><c t='s'><v>4</v></c><c t='inlineStr'><is><t>A_x000D_</t></is></c>"
              "<c t='str'><v>_x0041_</v></c></row>",
              {{u"SÜT_x000D_ _x000D_"_s, u"A\r"_s, u"A"_s}}}},
            {"time", {"<row><c s='6'><v>0.5</v></c></row>", {{u"12:00:00"_s}}, {moment}}},
            {"formats that are none of a date",
             {"<row><c s='3'><v>5</v></c><c s='5'><v>5</v></c><c s='99'><v>5</v></c></row>",
              {{u"5"_s, u"5"_s, u"5"_s}},
              {number, number, number}}},
            {"what formulas came to",
             {"<row><c><f>1+1</f><v>2</v></c><c t='str'><f>A1</f><v>=x</v></c><c "
              "t='e'><f>1/0</f><v>#DIV/0!</v></c>"
              "<c t='b'><v>1</v></c></row>",
              {{u"2"_s, u"=x"_s, u"#DIV/0!"_s, u"DOĞRU"_s}},
              {number, text, CellKind::error, text}}},
            {"gaps",
             {"<row r='1'><c r='B1'><v>1</v></c><c r='D1'><v>2</v></c></row>",
              {{QString(), u"1"_s, QString(), u"2"_s}}}},
            {"empty rows and cells",
             {"<row r='1'/><row r='2'><c r='A2' s='1'/></row><row r='3'><c><v>1</v></c></row>", {{u"1"_s}}}},
            {"a cell out of order is passed over",
             {"<row><c r='B1'><v>1</v></c><c r='A1'><v>2</v></c></row>", {{QString(), u"1"_s}}}},
            {"a column beyond all",
             {"<row><c r='A1'><v>1</v></c><c r='XFD1'><v>2</v></c><c r='ZZZZZZZZ1'><v>3</v></c></row>",
              {{u"1"_s}}}},
            {"a serial beyond all dates",
             {"<row><c s='1'><v>99999999</v></c></row>", {{u"99999999"_s}}, {number}}},
        });
    }
    void reads() {
        QFETCH(const CellRow, row);
        ZipArchive archive(bookOf(row.rows));
        const CellTable table = readXlsx(archive).table;
        QCOMPARE(cellsOf(table), row.cells);
        for (qsizetype column = 0; column < row.kinds.size(); ++column)
            QCOMPARE(table.kind(0, column), row.kinds[column]);
    }

    void linesAreTheSheets() {
        ZipArchive archive(bookOf(
            "<row r='3'><c><v>1</v></c></row><row><c><v>1</v></c></row><row r='9'><c><v>1</v></c></row>"));
        const CellTable table = readXlsx(archive).table;
        QCOMPARE(table.line(0), 3);
        QCOMPARE(table.line(1), 4);
        QCOMPARE(table.line(2), 9);
    }

    void sheets_data() {
        const QByteArray a = "<sheet name='A' r:id='worksheets/sheet1.xml'/>";
        const QByteArray empty = "<sheet name='Boş' r:id='bos.xml'/>";
        const QByteArray c = "<sheet name='Üç' state='visible' r:id='/xl/c.xml'/>";
        const QByteArray hidden = "<sheet name='gizli' state='hidden' r:id='worksheets/sheet1.xml'/>";
        const QByteArray broken = "<sheet name='bozuk' r:id='bozuk.xml'/>";
        const QByteArray lost = "<sheet name='kayıp' r:id='yok.xml'/>";
        const QString day = u"02.01.1904"_s;
        addRows<SheetsRow>({
            {"one", {a, {}, u"A"_s, {u"A"_s}, u"1"_s}},
            {"the first of two", {a + c, {}, u"A"_s, {u"A"_s, u"Üç"_s}, u"1"_s}},
            {"the one that is wanted", {a + c, u"üç"_s, u"Üç"_s, {u"A"_s, u"Üç"_s}, day}},
            {"hidden ones don't count", {hidden + c, {}, u"Üç"_s, {u"Üç"_s}, day}},
            {"nor do empty ones", {empty + c + empty, {}, u"Üç"_s, {u"Üç"_s}, day}},
            {"an empty one that is wanted", {empty + c, u"Boş"_s, u"Boş"_s, {u"Boş"_s, u"Üç"_s}}},
            {"one that can't be read is told of", {c + broken, {}, u"Üç"_s, {u"Üç"_s, u"bozuk"_s}, day}},
            {"one that isn't there is none", {c + lost, {}, u"Üç"_s, {u"Üç"_s}, day}},
            {"no such", {a + c, u"D"_s, u"“D” adlı sayfa yok; dosyadaki sayfalar: “A”, “Üç”"_s}},
            {"no such among many",
             {a + c.repeated(7), u"D"_s,
              u"“D” adlı sayfa yok; dosyadaki sayfalar: “A”, “Üç”, “Üç”, “Üç”, “Üç”, “Üç” ve 2 sayfa daha"_s}},
            {"a hidden one isn't given out",
             {hidden + c, u"gizli"_s, u"“gizli” adlı sayfa yok; dosyadaki sayfalar: “Üç”"_s}},
            {"none", {hidden, {}, u"Dosyada okunacak sayfa yok"_s}},
            {"beyond all", {a.repeated(1001), {}, u"Dosyada aşırı çok sayfa var"_s}},
        });
    }
    void sheets() {
        QFETCH(const SheetsRow, row);
        WorkbookRows read;
        const QString failure = failureOf([&] {
            ZipArchive archive(bookOfSheets(row.workbook));
            read = readXlsx(archive, row.wanted);
        });
        QCOMPARE(failure.isEmpty() ? read.sheet : failure, row.read);
        QCOMPARE(read.sheets, row.sheets);
        QCOMPARE(read.table.rowCount() > 0 ? read.table.text(0, 0) : QString(), row.cell);
    }

    void texts_data() {
        addRows<TextRow>({
            {"plain", {"SÜT 1 LT", "SÜT 1 LT"}},
            {"the end of a line", {"a_x000D_b", "a\rb", false}},
            {"what only looks like it", {"a_x005F_x000D_b", "a_x000D_b"}},
            {"the line itself", {"_x005F_x005F_", "_x005F_"}},
            {"twice over", {"_x005F_x005F_x005F_x000D_", "_x005F_x000D_"}},
            {"two that share a line", {"_x005F_x000A_x005F_x000D_", "_x000A_x000D_"}},
            {"small digits", {"_x00fc_", "ü", false}},
            {"three bytes", {"_x20BA_", "₺", false}},
            {"a pair", {"_xD83D__xDE00_", "\xF0\x9F\x98\x80", false}},
            {"half a pair", {"_xD83D_x", "\xEF\xBF\xBDx", false}},
            {"the other half", {"_xDE00__xD83D_", "\xEF\xBF\xBD\xEF\xBF\xBD", false}},
            {"NUL", {"_x0000_", std::string(1, '\0'), false}},
            {"too few digits", {"_x00D_", "_x00D_"}},
            {"no digit", {"_x00G0_", "_x00G0_"}},
            {"a sign is no digit", {"_x-00D_", "_x-00D_"}},
            {"no end", {"_x000D", "_x000D"}},
            {"capital X", {"_X000D_", "_X000D_"}},
        });
    }
    void texts() {
        QFETCH(const TextRow, row);
        QCOMPARE(withLetters(row.numbers), row.letters);
        if (row.isShortest)
            QCOMPARE(withNumbers(row.letters), row.numbers);
    }

    void refuses_data() {
        const QString damaged = u"Dosya bozuk ya da .xlsx değil"_s;
        const QString broken = u"Dosya bozuk: içindeki bir sayfa okunamadı"_s;
        const QString tooBig = u"Dosya açılınca aşırı büyüyor; güvenli değil, okunmadı"_s;
        QMap<QString, QByteArray> many = workbookOf({});
        for (int file = 0; file < 20; ++file)
            many[u"x%1"_s.arg(file)] = "x";
        constexpr quint32 none32 = 0xFFFFFFFF;  // "see the field of ZIP64"
        const QByteArray row = "<row><c><v>1</v></c></row>";
        QByteArray harmed = bookOf(row.repeated(10'000));
        for (qsizetype place = 200; place < 400; ++place)
            harmed[place] = '\0';
        addRows<BadRow>({
            {"no archive", {"PK\x03\x04 değil", damaged}},
            {"nothing", {"", damaged}},
            {"cut", {bookOf(row).chopped(30), damaged}},
            {"other files", {archiveOf({{u"a.txt"_s, "a"}}), damaged}},
            {"no sheet", {without(u"xl/worksheets/sheet1.xml"_s), damaged}},
            {"no relations", {without(u"xl/_rels/workbook.xml.rels"_s), damaged}},
            {"a sheet outside of the archive",
             {archiveOf([] {
                  auto files = workbookOf({});
                  files[u"xl/_rels/workbook.xml.rels"_s] =
                      "<Relationships><Relationship Id='rId1' Target='../../../etc/passwd'/></Relationships>";
                  return files;
              }()),
              damaged}},
            {"broken XML", {bookOf("<row><c></row>"), broken}},
            {"XML that ends too early", {bookOf("</sheetData></worksheet><x"), broken}},
            {"a document type",
             {archiveOf([] {
                  auto files = workbookOf({});
                  files[u"xl/worksheets/sheet1.xml"_s] =
                      "<!DOCTYPE x [<!ENTITY a 'b'>]><worksheet>&a;</worksheet>";
                  return files;
              }()),
              broken}},
            {"deep", {bookOf(QByteArray("<a>").repeated(100) + QByteArray("</a>").repeated(100)), broken}},
            {"a shared text that isn't there",
             {bookOf("<row><c t='s'><v>7</v></c></row>"), u"Dosya bozuk: olmayan bir yazıya gönderme var"_s}},
            {"no number in a number",
             {bookOf("<row><c><v>x</v></c></row>"), u"Dosya bozuk: sayı hücresinde sayı yok"_s}},
            {"too many files", {archiveOf(many), tooBig, {.files = 10}}},
            {"too much, by its own words", {bookOf(row.repeated(100)), tooBig, {.bytes = 1000}}},
            {"unpacks to a thousand times its size", {bookOf(QByteArray(5 << 20, ' ')), tooBig}},
            {"a tag without end",
             {bookOf("<x a='" + QByteArray(2 << 20, 'x')),
              tooBig,
              {.ratio = 100'000, .longestTag = 1 << 20}}},
            {"claims less than it unpacks to", {lyingArchive(10), tooBig, {.bytes = 100'000}}},
            {"claims four gigabytes", {lyingArchive(0xFFFFFFF0U), tooBig}},
            {"damaged within", {harmed, damaged}},
            {"ZIP64: claims a thousand gigabytes", {lyingBook({none32, 5000, {1ULL << 40}}), tooBig}},
            {"ZIP64: claims more than any file may have", {lyingBook({none32, 5000, {1ULL << 63}}), tooBig}},
            {"ZIP64: claims four gigabytes by leaving its field out", {lyingBook({none32, 5000}), damaged}},
            {"ZIP64: claims less than it unpacks to",
             {lyingBook({none32, 6000, {10}}), tooBig, {.bytes = 100'000, .ratio = 100'000}}},
            {"ZIP64: claims little where nobody looks for more",
             {lyingBook({10, 6000, {1ULL << 40}}), tooBig, {.bytes = 100'000, .ratio = 100'000}}},
            {"ZIP64: claims to be packed into a thousand gigabytes",
             {lyingBook({10, none32, {1ULL << 40}}), tooBig, {.longestTag = 1 << 30}}},
            {"ZIP64: claims to be packed into more than any file may have",
             {lyingBook({10, none32, {~0ULL}}), damaged}},
            {"claims to be packed into four gigabytes",
             {lyingBook({10, none32 - 1}), tooBig, {.longestTag = 1 << 30}}},
            {"ZIP64: claims a hundred million files", {claimingFiles(bookOf(row), 100'000'000), damaged}},
            {"ZIP64: claims more files than there are numbers for",
             {claimingFiles(bookOf(row), ~0ULL), damaged}},
        });
    }
    void refuses() {
        QFETCH(const BadRow, row);
        QCOMPARE(failureOf([&] {
                     ZipArchive archive(row.bytes, row.limits);
                     readXlsx(archive);
                 }),
                 row.words);
    }

    /// An honest one of ZIP64.
    void wideClaimsAreRead() {
        const QByteArray rows = "<row><c><v>1</v></c></row>";
        const auto size = static_cast<quint64>(workbookOf(rows).value(u"xl/worksheets/sheet1.xml"_s).size());
        const QByteArray book = bookOf(rows);
        ZipArchive archive(claimingFiles(
            claiming(book, "xl/worksheets/sheet1.xml", {0xFFFFFFFF, 0xFFFFFFFF, {size, size}}), 5));
        QCOMPARE(readXlsx(archive).table.text(0, 0), u"1"_s);
    }

    /// What comes out is counted, whatever was claimed.
    void countsWhileItUnpacks() {
        ZipArchive archive(bookOf(QByteArray("<row><c><v>1</v></c></row>").repeated(1000)),
                           {.bytes = 30'000});
        const std::unique_ptr<ZipFile> first = archive.open(u"xl/worksheets/sheet1.xml"_s);
        QVERIFY(!first->readAll().isEmpty());
        first->check();
        const std::unique_ptr<ZipFile> again = archive.open(u"xl/worksheets/sheet1.xml"_s);
        again->readAll();
        QVERIFY_THROWS_EXCEPTION(RuntimeError, again->check());
    }

    /// One long text that is named again and again.
    void manyNamesOfOneTextAreTooMuch() {
        QMap<QString, QByteArray> files =
            workbookOf(QByteArray("<row><c t='s'><v>0</v></c></row>").repeated(20'000));
        files[u"xl/sharedStrings.xml"_s] = "<sst><si><t>" + QByteArray(32'000, 'x') + "</t></si></sst>";
        ZipArchive archive(archiveOf(files));
        QVERIFY_THROWS_EXCEPTION(RuntimeError, readXlsx(archive));
    }

    void whatIsWrittenIsRead() {
        QTemporaryDir folder;
        const QString path = folder.filePath(u"a.xlsx"_s);
        const std::vector<Field>& fields = fieldsOf(Kind::sales);
        {
            NewFile file(path, false);
            const auto writer = makeXlsxWriter(file, fields, u"Satışlar"_s, 3);
            const std::string bad("T\x01Z\xFF", 4);
            writer->addRow({{"2026-05-03 10:15:00", {}},
                            {"0001234567890", {}},
                            {"=1+1_x000D_ _x1", {}},
                            {{}, 2.0},
                            {{}, 12.5},
                            {{}, 25.0},
                            {{}, 0.1},
                            {{}, -1.0}});
            writer->addRow(
                {{"bozuk", {}}, {{}, {}}, {bad, {}}, {{}, {}}, {{}, {}}, {{}, {}}, {{}, {}}, {{}, {}}});
            writer->addRow({{"2026-05-04", {}},
                            {"8690000000001", {}},
                            {"ÜÇÜNCÜ", {}},
                            {{}, 1.0},
                            {{}, 1.0},
                            {{}, 1.0},
                            {{}, 1.0},
                            {{}, 1.0}});
            writer->finish();
            file.commit();
        }
        ZipArchive archive(path);
        QVERIFY(archive.contains(u"xl/worksheets/sheet2.xml"_s));
        QVERIFY(!archive.contains(u"xl/worksheets/sheet3.xml"_s));
        const CellTable table = readXlsx(archive).table;
        QCOMPARE(table.rowCount(), 3);  // the heading, and the two that the first sheet has room for
        QCOMPARE(table.text(0, 1), u"Barkod"_s);
        QCOMPARE(cellsOf(table)[1],
                 (QStringList{u"03.05.2026 10:15:00"_s, u"0001234567890"_s, u"=1+1_x000D_ _x1"_s, u"2"_s,
                              u"12.5"_s, u"25"_s, u"0.1"_s, u"-1"_s}));
        QCOMPARE(table.kind(1, 0), CellKind::moment);
        QCOMPARE(table.kind(1, 1), CellKind::text);
        QCOMPARE(table.kind(1, 2), CellKind::text);
        QCOMPARE(table.kind(1, 4), CellKind::number);
        QCOMPARE(table.text(2, 0), u"bozuk"_s);
        QCOMPARE(table.text(2, 2), u"TZ\ufffd"_s);
    }
};

}  // namespace kovanix::aktar

Q_DECLARE_METATYPE(kovanix::aktar::CellRow)
Q_DECLARE_METATYPE(kovanix::aktar::BadRow)
Q_DECLARE_METATYPE(kovanix::aktar::SheetsRow)
Q_DECLARE_METATYPE(kovanix::aktar::TextRow)

QTEST_GUILESS_MAIN(kovanix::aktar::XlsxTest)
#include "test_xlsx.moc"
