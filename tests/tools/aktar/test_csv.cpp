#include <QBuffer>
#include <QtTest>

#include "aktar/csvguard.h"
#include "aktar/csvreader.h"
#include "rows.h"
#include "runtime/runtimeerror.h"
#include "values/codepage.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

struct ParseRow {
    QString text;
    QList<QStringList> rows;
    QList<qint64> lines;
};

struct FormatRow {
    QByteArray bytes;
    TextEncoding encoding = TextEncoding::utf8;
    QChar separator;
    QString firstCell;
};

struct GuardRow {
    QString text;
    QString guarded;
};

QList<QStringList> rowsOf(const CellTable& table) {
    QList<QStringList> rows;
    for (qsizetype row = 0; row < table.rowCount(); ++row) {
        QStringList cells;
        for (qsizetype column = 0; column < table.cellCount(row); ++column)
            cells << table.text(row, column);
        rows << cells;
    }
    return rows;
}

QString failureOf(const std::function<void()>& step) {
    try {
        step();
    } catch (const RuntimeError& error) {
        return error.description();
    }
    return {};
}

}  // namespace

class CsvTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void parses_data() {
        addRows<ParseRow>({
            {"plain", {u"a;b\nc;d\n"_s, {{u"a"_s, u"b"_s}, {u"c"_s, u"d"_s}}, {1, 2}}},
            {"no line end at the end", {u"a;b"_s, {{u"a"_s, u"b"_s}}, {1}}},
            {"line ends of Windows", {u"a\r\nb\r\n"_s, {{u"a"_s}, {u"b"_s}}, {1, 2}}},
            {"line ends of old", {u"a\rb\r"_s, {{u"a"_s}, {u"b"_s}}, {1, 2}}},
            {"empty lines don't count as rows", {u"a\n\n\nb\n"_s, {{u"a"_s}, {u"b"_s}}, {1, 4}}},
            {"only separators", {u";;\na;;b\n"_s, {{u"a"_s, QString(), u"b"_s}}, {2}}},
            {"empty cell at the end", {u"a;\n"_s, {{u"a"_s, QString()}}, {1}}},
            {"quotes", {u"\"a;b\";c\n"_s, {{u"a;b"_s, u"c"_s}}, {1}}},
            {"doubled quotes", {u"\"12\"\" tabak\"\n"_s, {{u"12\" tabak"_s}}, {1}}},
            {"quote in mid-cell", {u"12\" tabak;b\n"_s, {{u"12\" tabak"_s, u"b"_s}}, {1}}},
            {"text behind a quote", {u"\"a\"b;c\n"_s, {{u"ab"_s, u"c"_s}}, {1}}},
            {"line end in quotes", {u"\"a\r\nb\";c\nd\n"_s, {{u"a\nb"_s, u"c"_s}, {u"d"_s}}, {1, 3}}},
            {"empty quotes", {u"a;\"\"\n"_s, {{u"a"_s, QString()}}, {1}}},
            {"guards come off",
             {u"\"\t8690000000001\";'=SUT;=\"0012\"\n"_s, {{u"8690000000001"_s, u"=SUT"_s, u"0012"_s}}, {1}}},
            {"NUL stays to be seen", {u"a\0b\n"_s, {{u"a\0b"_s}}, {1}}},
        });
    }
    void parses() {
        QFETCH(const ParseRow, row);
        // Whole, and letter by letter: where a piece ends makes no difference.
        for (const qsizetype piece : {row.text.size(), qsizetype(1)}) {
            CellTable table;
            CsvParser parser(table, u';');
            for (qsizetype place = 0; place < row.text.size(); place += piece)
                parser.feed(QStringView(row.text).mid(place, piece));
            parser.finish();
            QCOMPARE(rowsOf(table), row.rows);
            for (qsizetype place = 0; place < row.lines.size(); ++place)
                QCOMPARE(table.line(place), row.lines[place]);
        }
    }

    void anOpenQuoteIsNamed() {
        CellTable table;
        CsvParser parser(table, u';');
        parser.feed(u"a;b\nc;\"d\ne;f\n");
        QCOMPARE(failureOf([&] { parser.finish(); }), u"2. satırda açılan tırnak kapanmıyor"_s);
        QCOMPARE(failureOf([&] { parser.feed(QString(CellTable::longestCell, u'x')); }),
                 u"2. satırda açılan tırnak kapanmıyor"_s);
    }

    void aTableHasItsLimits() {
        CellTable table;
        QVERIFY(!failureOf([&] { table.addCell(QString(CellTable::longestCell + 1, u'x')); }).isEmpty());
        for (qsizetype column = 0; column < CellTable::mostColumns; ++column)
            table.addCell(u"x");
        QVERIFY(!failureOf([&] { table.addCell(u"x"); }).isEmpty());
        table.endRow(1);
        for (qsizetype row = 1; row < CellTable::mostRows; ++row) {
            table.addCell(u"x");
            table.endRow(row + 1);
        }
        table.addCell(u"x");
        QVERIFY(failureOf([&] { table.endRow(CellTable::mostRows + 1); }).contains(u"bölerek"_s));
        QCOMPARE(table.rowCount(), CellTable::mostRows);
    }

    void findsTheFormat_data() {
        const QString text = u"barkod;ürün;fiyat\n1;Şeker, toz;12,50\n"_s;
        QString commas = u"Barkod,Ürün adı,Satış\n1,\"Süt; yağlı\",12.50\n"_s;
        const auto utf16 = [&](QStringEncoder::Encoding encoding) {
            return QByteArray(QStringEncoder(encoding, QStringEncoder::Flag::WriteBom).encode(text));
        };
        addRows<FormatRow>({
            {"UTF-8", {text.toUtf8(), TextEncoding::utf8, u';', u"barkod"_s}},
            {"UTF-8 with mark", {"\xEF\xBB\xBF" + text.toUtf8(), TextEncoding::utf8, u';', u"barkod"_s}},
            {"Windows-1254", {toWindows1254(text), TextEncoding::windows1254, u';', u"barkod"_s}},
            {"Windows-1254 that breaks off in a letter of UTF-8",
             {"barkod;ad\n1;ALI\xDE", TextEncoding::windows1254, u';', u"barkod"_s}},
            {"UTF-16", {utf16(QStringEncoder::Utf16LE), TextEncoding::utf16, u';', u"barkod"_s}},
            {"UTF-16, the other order",
             {utf16(QStringEncoder::Utf16BE), TextEncoding::utf16, u';', u"barkod"_s}},
            {"commas, semicolons in names", {commas.toUtf8(), TextEncoding::utf8, u',', u"Barkod"_s}},
            {"tabs", {"barkod\tad\n1\ta, b\n2\tc\n", TextEncoding::utf8, u'\t', u"barkod"_s}},
            {"bars", {"x|y\n1|2\n3|4\n", TextEncoding::utf8, u'|', u"x"_s}},
            {"no headings", {"869;SUT;1,5\n868;UN;2,5\n", TextEncoding::utf8, u';', u"869"_s}},
            {"told by the file", {"sep=,\r\na,b;c\r\n", TextEncoding::utf8, u',', u"a"_s}},
            {"one column", {"barkod\n1\n2\n", TextEncoding::utf8, u';', u"barkod"_s}},
            {"nothing", {"", TextEncoding::utf8, u';', QString()}},
        });
    }
    void findsTheFormat() {
        QFETCH(const FormatRow, row);
        QBuffer file;
        file.setData(row.bytes);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const CsvFormat format = findCsvFormat(file);
        QCOMPARE(format.encoding, row.encoding);
        QCOMPARE(format.separator, row.separator);
        const CellTable table = readCsv(file, format);
        QCOMPARE(table.rowCount() > 0 ? table.text(0, 0) : QString(), row.firstCell);
        QCOMPARE(table.writesDots(), row.separator == u',');
    }

    void lettersThatAChunkBreaksStayWhole() {
        QByteArray bytes = "ad\n";
        while (bytes.size() < (1 << 17))
            bytes += "ş";
        bytes.insert(4096, '\n');
        QBuffer file;
        file.setData(bytes);
        QVERIFY(file.open(QIODevice::ReadOnly));
        CellTable table;
        QVERIFY(!failureOf([&] { readCsv(file, {}); }).isEmpty());
        bytes.clear();
        for (int line = 0; line < 20'000; ++line)
            bytes +=
                "aş"
                "ğ\n";
        file.close();
        file.setData(bytes);
        QVERIFY(file.open(QIODevice::ReadOnly));
        table = readCsv(file, {});
        QCOMPARE(table.rowCount(), 20'000);
        for (qsizetype row = 0; row < table.rowCount(); ++row)
            QCOMPARE(table.text(row, 0), u"aşğ"_s);
    }

    void guards_data() {
        addRows<GuardRow>({
            {"a name", {u"SÜT 1 LT"_s, u"SÜT 1 LT"_s}},
            {"a name that begins with a digit", {u"7UP 330 ML"_s, u"7UP 330 ML"_s}},
            {"nothing", {QString(), QString()}},
            {"13 digits", {u"8690000000001"_s, u"\t8690000000001"_s}},
            {"11 digits", {u"86900000001"_s, u"86900000001"_s}},
            {"zero ahead", {u"05001234567"_s, u"\t05001234567"_s}},
            {"zero alone", {u"0"_s, u"0"_s}},
            {"a telephone with blanks", {u"0500 000 12 34"_s, u"\t0500 000 12 34"_s}},
            {"a date", {u"1/2"_s, u"\t1/2"_s}},
            {"a day of a month", {u"10 EKİM"_s, u"\t10 EKİM"_s}},
            {"an exponent", {u"1E5"_s, u"\t1E5"_s}},
            {"a tab of its own", {u"\tSÜT"_s, u"\t\tSÜT"_s}},
            {"a number", {u"3.5"_s, u"\t3.5"_s}},
            {"a formula", {u"=1+1"_s, u"'=1+1"_s}},
            {"plus", {u"+90 500 000"_s, u"'+90 500 000"_s}},
            {"minus", {u"-SÜT"_s, u"'-SÜT"_s}},
            {"at", {u"@SUM(1)"_s, u"'@SUM(1)"_s}},
            {"blanks ahead of a formula", {u"  =1"_s, u"'  =1"_s}},
            {"tab ahead of a formula", {u"\t=1"_s, u"'\t=1"_s}},
            {"line end ahead of a formula", {u"\r=1"_s, u"'\r=1"_s}},
            {"an apostrophe of its own", {u"'N AMA"_s, u"'N AMA"_s}},
            {"apostrophes ahead of a formula", {u"'=1"_s, u"''=1"_s}},
        });
    }
    void guards() {
        QFETCH(const GuardRow, row);
        QCOMPARE(guarded(row.text), row.guarded);
        QCOMPARE(unguarded(row.guarded), row.text);
    }

    void onlyDigitsComeOutOfAFormula() {
        QCOMPARE(unguarded(u"=\"0012\""_s), u"0012"_s);
        for (const QString& text : {u"=SUM(A1)"_s, u"=\"a\""_s, u"=\"1\"&\"2\""_s, u"=\"\""_s})
            QCOMPARE(unguarded(text), text);
    }
};

}  // namespace kovanix::aktar

Q_DECLARE_METATYPE(kovanix::aktar::ParseRow)
Q_DECLARE_METATYPE(kovanix::aktar::FormatRow)
Q_DECLARE_METATYPE(kovanix::aktar::GuardRow)

QTEST_GUILESS_MAIN(kovanix::aktar::CsvTest)
#include "test_csv.moc"
