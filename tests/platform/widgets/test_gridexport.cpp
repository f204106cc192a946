#include <sys/resource.h>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <csignal>

#include "gridfixture.h"
#include "htmltable.h"
#include "runtime/runtimeerror.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct PathRow {
    QString path;  // below the test's folder
    int error = 0;
};

struct NameRow {
    QString name;
    QString cell;  // as a reader of the table gets it
};

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

}  // namespace

Q_DECLARE_METATYPE(PathRow)
Q_DECLARE_METATYPE(NameRow)

class TestGridExport : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void captionsRowsFooters() {
        ProductList list(3);
        list.grid.column(2).setFooterText(u"TOPLAM"_s);
        list.grid.column(4).setFooterText(u"7,50 TL."_s);
        const QString path = list.file.folder() + u"/urun raporu.xls"_s;
        list.grid.exportToFile(path, false);
        QCOMPARE(htmlTable(path),
                 (QList<QStringList>{
                     {u"NO"_s, u"BARKOD"_s, u"ÜRÜN ADI"_s, u"ALIŞ FİYAT"_s, u"SATIŞ FİYATI"_s, u"STOK"_s},
                     {u"1"_s, u"8690000000001"_s, u"Ürün 1"_s, u"1,25"_s, u"1,50"_s, u"1"_s},
                     {u"2"_s, u"8690000000002"_s, u"Ürün 2"_s, u"2,25"_s, u"2,50"_s, u"2"_s},
                     {u"3"_s, u"8690000000003"_s, u"Ürün 3"_s, u"3,25"_s, u"3,50"_s, u"3"_s},
                     {{}, {}, u"TOPLAM"_s, {}, u"7,50 TL."_s, {}},
                 }));
    }

    void aTextInAColumnOfNumbersIsText() {
        ProductList list(1);
        list.file.execute({u"UPDATE urunler SET satis = '=2+3'"_s});
        list.source.refresh();
        const QString path = list.file.folder() + u"/urun raporu.xls"_s;
        list.grid.exportToFile(path, false);
        const QByteArray html = contents(path);
        QVERIFY(html.contains("<td class=\"t\" sdnum=\"1055;0;@\">=2+3</td>"));
        QVERIFY(html.contains("<td class=\"n\" sdnum=\"1055;\">1,25</td>"));
    }

    void onlyWhatIsShown() {
        ProductList list(30);
        list.source.setSort(u"no DESC"_s);
        list.source.setFilter(u"urun LIKE '%3%'"_s);
        list.grid.column(0).setWidth(0);
        const QString path = list.file.folder() + u"/a.html"_s;
        list.grid.exportToFile(path, false);
        const QList<QStringList> rows = htmlTable(path);
        QStringList names;
        for (const QStringList& row : rows) {
            QCOMPARE(row.size(), 5);
            names << row[1];
        }
        QCOMPARE(names, (QStringList{u"ÜRÜN ADI"_s, u"Ürün 30"_s, u"Ürün 23"_s, u"Ürün 13"_s, u"Ürün 3"_s}));
    }

    void hostileNames_data() {
        QTest::addColumn<NameRow>("row");
        const auto row = [](const char* name, const QString& text, const QString& cell = {}) {
            QTest::newRow(name) << NameRow{text, cell.isNull() ? text : cell};
        };
        row("markup", u"<b>x</b><script>1</script>"_s);
        row("entity", u"&amp; &lt;"_s);
        row("quotes", u"\"x\" 'y'"_s);
        row("end of the table", u"</td></tr></table>"_s);
        row("formula", u"=1+1"_s);
        row("Turkish letters", u"İıŞşĞğÇçÖöÜü"_s);
        row("emoji", u"\U0001F600"_s);
        row("control characters", u"a\u0001b"_s, u"ab"_s);
        row("blanks", u"  iki  boşluk "_s);
        row("only digits", u"0008690000000001"_s);
    }
    void hostileNames() {
        QFETCH(const NameRow, row);
        ProductList list;
        list.add(u"1"_s, row.name, 1);
        list.source.refresh();
        const QString path = list.file.folder() + u"/a.html"_s;
        list.grid.exportToFile(path, false);
        QCOMPARE(htmlTable(path).size(), 2);
        QCOMPARE(htmlTable(path)[1][2], row.cell);
        // Text cells are told to be text, numbers aren't.
        const QString html = QString::fromUtf8(contents(path));
        QVERIFY(html.contains(u"td.t, th { mso-number-format:\"\\@\""_s));
        QVERIFY(html.contains(u"<td class=\"t\" sdnum=\"1055;0;@\">1</td>"_s));
        QVERIFY(html.contains(u"<td class=\"n\" sdnum=\"1055;\">1,00</td>"_s));
    }

    void aSpreadsheetReadsIt() {
        const QString office = QStandardPaths::findExecutable(u"soffice"_s);
        if (office.isEmpty())
            QSKIP("no spreadsheet program is installed (libreoffice-calc)");
        ProductList list;
        list.add(u"0008690000000001"_s, u"=1+1"_s, 1234.5);
        list.add(u"8690000000012"_s, u"<b>Çay, \"demli\" 3-5"_s, -2.5);
        list.source.refresh();
        list.grid.column(2).setFooterText(u"TOPLAM"_s);
        list.grid.column(4).setFooterText(u"5,25 Adet"_s);
        const QString folder = list.file.folder();
        list.grid.exportToFile(folder + u"/urun raporu.xls"_s, false);
        QProcess conversion;
        conversion.setWorkingDirectory(folder);
        conversion.start(
            office, {u"-env:UserInstallation=file://"_s + folder + u"/office", u"--headless"_s,
                     u"--convert-to"_s, u"csv:Text - txt - csv (StarCalc):44,34,76"_s, u"urun raporu.xls"_s});
        QVERIFY(conversion.waitForFinished(90'000));
        QCOMPARE(QString::fromUtf8(contents(folder + u"/urun raporu.csv"_s)),
                 u"NO,BARKOD,ÜRÜN ADI,ALIŞ FİYAT,SATIŞ FİYATI,STOK\n"
                 "1,0008690000000001,=1+1,1,1234.5,1\n"
                 "2,8690000000012,\"<b>Çay, \"\"demli\"\" 3-5\",1,-2.5,1\n"
                 ",,TOPLAM,,\"5,25 Adet\",\n"_s);
    }

    void encodingIsStated() {
        ProductList list(1);
        const QString path = list.file.folder() + u"/a.html"_s;
        list.grid.exportToFile(path, false);
        const QByteArray html = contents(path);
        QVERIFY(html.startsWith("\xef\xbb\xbf<!DOCTYPE html>"));
        QCOMPARE(html.count("\xef\xbb\xbf"), 1);
        QVERIFY(html.contains("charset=utf-8"));
        QVERIFY(!html.contains("width="));
        list.grid.exportToFile(path, false, u"100%"_s);
        QVERIFY(contents(path).contains("<table border=\"1\" width=\"100%\">"));
    }

    void emptyListHasItsHeading() {
        ProductList list;
        const QString path = list.file.folder() + u"/a.html"_s;
        list.grid.exportToFile(path, false);
        QCOMPARE(htmlTable(path).size(), 1);
    }

    void replacesTheFileOfBefore() {
        ProductList list(5);
        const QString path = list.file.folder() + u"/a.html"_s;
        list.grid.exportToFile(path, false);
        list.source.setFilter(u"urun LIKE 'Ürün 2'"_s);
        list.grid.exportToFile(path, false);
        QCOMPARE(htmlTable(path).size(), 2);
    }

    void appendsToTheFileOfBefore() {
        ProductList list(3);
        const QString path = list.file.folder() + u"/a.html"_s;
        list.grid.exportToFile(path, true);
        const QByteArray once = contents(path);
        list.grid.exportToFile(path, true);
        const QByteArray mark = "\xef\xbb\xbf";
        QCOMPARE(contents(path), once + once.mid(mark.size()));
    }

    void refusedPaths_data() {
        QTest::addColumn<PathRow>("row");
        QTest::newRow("no folder") << PathRow{u"yok/a.xls"_s, 76};
        QTest::newRow("a folder") << PathRow{u"."_s, 75};
        QTest::newRow("a folder that takes no files") << PathRow{u"/sys/a.xls"_s, 75};
        QTest::newRow("a file as folder") << PathRow{u"dosya/a.xls"_s, 76};
    }
    void refusedPaths() {
        QFETCH(const PathRow, row);
        ProductList list(5);
        QFile file(list.file.folder() + u"/dosya"_s);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        const QStringList before = QDir(list.file.folder()).entryList(QDir::Files);
        const QString path = QDir(list.file.folder()).filePath(row.path);
        const auto error = errorOf([&] { list.grid.exportToFile(path, false); });
        QCOMPARE(error.value().number(), row.error);
        QVERIFY(!error.value().description().isEmpty());
        QCOMPARE(QDir(list.file.folder()).entryList(QDir::Files), before);
    }

    // As on a disk that is full: the system takes no more than so many bytes of any file.
    void writeThatFailsOnTheWay() {
        ProductList list(20'000);
        const QString path = list.file.folder() + u"/a.html"_s;
        list.source.setFilter(u"no LIKE '7'"_s);
        list.grid.exportToFile(path, false);
        list.source.setFilter({});
        const QByteArray before = contents(path);
        const QStringList files = QDir(list.file.folder()).entryList(QDir::Files);
        rlimit usual{};
        getrlimit(RLIMIT_FSIZE, &usual);
        rlimit small = usual;
        small.rlim_cur = 100'000;
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &small);
        const auto error = errorOf([&] { list.grid.exportToFile(path, false); });
        setrlimit(RLIMIT_FSIZE, &usual);
        std::signal(SIGXFSZ, handler);
        QCOMPARE(error.value().number(), 75);
        QCOMPARE(contents(path), before);
        QCOMPARE(QDir(list.file.folder()).entryList(QDir::Files), files);
    }
};

QTEST_MAIN(TestGridExport)
#include "test_gridexport.moc"
