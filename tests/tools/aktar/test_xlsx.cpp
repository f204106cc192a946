#include <QtTest>

#include "aktar/newfile.h"
#include "aktar/sheetfile.h"
#include "aktar/sheetwriter.h"
#include "aktar/xlsxreader.h"
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

struct BadRow {
    QByteArray bytes;
    QString words;
    ZipLimits limits = {};
};

const QByteArray styles =
    "<styleSheet><numFmts><numFmt numFmtId='164' formatCode='dd\\.mm\\.yyyy'/>"
    "<numFmt numFmtId='165' formatCode='#,##0.00\\ \"gün\"'/><numFmt numFmtId='166' formatCode='[Red]0.00'/>"
    "<numFmt numFmtId='167' formatCode='[h]:mm:ss'/></numFmts><cellStyleXfs><xf "
    "numFmtId='14'/></cellStyleXfs>"
    "<cellXfs><xf numFmtId='0'/><xf numFmtId='14'/><xf numFmtId='164'/><xf numFmtId='165'/><xf "
    "numFmtId='22'/>"
    "<xf numFmtId='166'/><xf numFmtId='167'/></cellXfs></styleSheet>";

const QByteArray shared =
    "<sst><si><t>SÜT</t></si><si><r><t>YARIM </t></r><r><t xml:space='preserve'>YAĞLI</t></r>"
    "<rPh><t>okunuş</t></rPh></si><si><t>a &amp; b</t></si><si><t/></si></sst>";

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
    QByteArray bytes = bookOf(rows);
    const quint32 size = static_cast<quint32>(workbookOf(rows).value(u"xl/worksheets/sheet1.xml"_s).size());
    const auto raw = [](quint32 number) {
        number = qToLittleEndian(number);
        return QByteArray(reinterpret_cast<const char*>(&number), sizeof number);
    };
    return bytes.replace(raw(size), raw(claimed));
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
        const CellTable table = readXlsx(archive);
        QCOMPARE(cellsOf(table), row.cells);
        for (qsizetype column = 0; column < row.kinds.size(); ++column)
            QCOMPARE(table.kind(0, column), row.kinds[column]);
    }

    void linesAreTheSheets() {
        ZipArchive archive(bookOf(
            "<row r='3'><c><v>1</v></c></row><row><c><v>1</v></c></row><row r='9'><c><v>1</v></c></row>"));
        const CellTable table = readXlsx(archive);
        QCOMPARE(table.line(0), 3);
        QCOMPARE(table.line(1), 4);
        QCOMPARE(table.line(2), 9);
    }

    void theFirstSheetThatCanBeSeenIsRead() {
        QMap<QString, QByteArray> files = workbookOf("<row><c><v>1</v></c></row>");
        files[u"xl/workbook.xml"_s] =
            "<workbook xmlns:r='r'><workbookPr date1904='1'/><sheets><sheet name='gizli' state='hidden' "
            "r:id='rId1'/>"
            "<sheet name='B' r:id='rId2'/></sheets></workbook>";
        files[u"xl/_rels/workbook.xml.rels"_s] =
            "<Relationships><Relationship Id='rId1' Target='worksheets/sheet1.xml'/>"
            "<Relationship Id='rId2' Target='/xl/b.xml'/></Relationships>";
        files[u"xl/b.xml"_s] =
            "<worksheet><sheetData><row><c s='1'><v>1</v></c></row></sheetData></worksheet>";
        files[u"xl/styles.xml"_s] = styles;
        ZipArchive archive(archiveOf(files));
        QCOMPARE(readXlsx(archive).text(0, 0), u"02.01.1904"_s);
    }

    void refuses_data() {
        const QString damaged = u"Dosya bozuk ya da .xlsx değil"_s;
        const QString broken = u"Dosya bozuk: içindeki bir sayfa okunamadı"_s;
        const QString tooBig = u"Dosya açılınca aşırı büyüyor; güvenli değil, okunmadı"_s;
        QMap<QString, QByteArray> many = workbookOf({});
        for (int file = 0; file < 20; ++file)
            many[u"x%1"_s.arg(file)] = "x";
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
                            {"=1+1", {}},
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
        const CellTable table = readXlsx(archive);
        QCOMPARE(table.rowCount(), 3);  // the heading, and the two that the first sheet has room for
        QCOMPARE(table.text(0, 1), u"Barkod"_s);
        QCOMPARE(cellsOf(table)[1], (QStringList{u"03.05.2026 10:15:00"_s, u"0001234567890"_s, u"=1+1"_s,
                                                 u"2"_s, u"12.5"_s, u"25"_s, u"0.1"_s, u"-1"_s}));
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

QTEST_GUILESS_MAIN(kovanix::aktar::XlsxTest)
#include "test_xlsx.moc"
