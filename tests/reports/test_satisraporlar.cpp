#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QScrollBar>
#include <QUrl>

#include "htmltable.h"
#include "rows.h"
#include "salesreporttest.h"
#include "values/numbers.h"
#include "widgets/adodc.h"

using namespace kovanix;

namespace {

constexpr auto asked = "Silinsin mi?";
constexpr auto deleted = "Silindi";

struct FilterRow {
    int column;
    QString typed;
    QStringList names;
};

struct DeletionRow {
    std::function<void(SalesReportTest&)> prepare;  ///< chooses a row
    QStringList left;                               ///< by name, in order of entry
    QString current;                                ///< the name in the current row afterwards
};

struct ExportRow {
    const char* button;
    QString file;  ///< below the folder of the case
    bool tells;
    QString width;
};

/// Takes in place of the desktop what is to be opened.
class Opener : public QObject {
    Q_OBJECT

public:
    Opener() { QDesktopServices::setUrlHandler("file", this, "open"); }
    ~Opener() override { QDesktopServices::unsetUrlHandler("file"); }

    QStringList opened;

public Q_SLOTS:
    void open(const QUrl& url) { opened.append(url.toLocalFile()); }
};

}  // namespace

/// The lines of the sales report: their order, filter and deletion, and their ways to files and paper.
class SalesLinesTest : public SalesReportTest {
    Q_OBJECT

    static constexpr auto exportTold = "Satış raporu c:\\ sürücüsüne başarıyla aktarılmıştır.";

    QStringList stored() const {
        QStringList names;
        for (const QVariantList& row : m_shop->rows("SELECT urun FROM satislar ORDER BY no"))
            names << row[0].toString();
        return names;
    }
    void sellThree() const {
        sell({.moment = "2026-05-04 09:00:00", .name = "Süt", .quantity = "2", .total = "65"});
        sell({.moment = "2026-05-04 10:00:00", .name = "Ekmek"});
        sell({.moment = "2026-05-04 11:00:00", .name = "Domates", .quantity = "1.25", .total = "50"});
    }
    void question(int answer) const { m_shop->boxes.expect("Silme onayı", asked, answer); }
    void pressRow(int row) const {
        QTest::mouseClick(rows().viewport(), Qt::LeftButton, {},
                          rows().visualRect(rows().model()->index(row, 1)).center());
    }
    void pressHeading(int column) const {
        const QPoint place = rows().headingRect(column).center();
        QWidget* bar = rows().childAt(place);
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->mapFrom(&rows(), place));
    }
    QLineEdit& filterCell(int column) const {
        return *form().findChild<QLineEdit*>("TDBGrid1_filter_" + QString::number(column));
    }

private Q_SLOTS:
    void init() {
        openManagersShop();
        qputenv("KOVANIX_DRIVE_C", QFile::encodeName(m_shop->file("drive")));
        QVERIFY(QDir().mkpath(m_shop->file("drive")));
    }
    void cleanup() {
        qunsetenv("KOVANIX_DRIVE_C");
        SalesReportTest::cleanup();
    }

    // --- order and filter

    void newestFirst() {
        sell({.moment = "2026-05-04 10:00:00", .name = "b"});
        sell({.moment = "2026-05-04 10:00:00", .name = "a"});
        sell({.moment = "2026-05-04 09:00:00", .name = "erken"});
        sell({.moment = "2026-05-04 11:00:00", .name = "geç"});
        open();
        QCOMPARE(names(), (QStringList{"geç", "b", "a", "erken"}));  // lines of one second by entry
        QCOMPARE(rows().sortColumn(), 1);
        pressHeading(3);
        QCOMPARE(names(), (QStringList{"a", "b", "erken", "geç"}));  // the first press ascends
        press(*report().bugunkusatis);
        QCOMPARE(names(), (QStringList{"geç", "b", "a", "erken"}));
        pressHeading(3);
        QCOMPARE(names(), (QStringList{"geç", "erken", "b", "a"}));  // and the next one goes on from there
    }

    void filters_data() {
        addRows<FilterRow>({{"part of a name", {3, "ü", {"Süt"}}},
                            {"percent sign", {3, "%", {}}},
                            {"part of a price", {4, "1", {}}},
                            {"price with a comma", {4, "32,50", {"Süt"}}},
                            {"quantity", {5, "1,25", {"Domates"}}},
                            {"whole quantity", {5, "1", {"Ekmek"}}},
                            {"total", {6, "50", {"Domates"}}},
                            {"profit", {7, "-3", {"Süt"}}},
                            {"part of a moment", {1, "11:00", {"Domates"}}},
                            {"part of a barcode", {2, "0029", {"Süt"}}},
                            {"number of a line", {0, "2", {"Ekmek"}}}});
    }
    void filters() {
        QFETCH(const FilterRow, row);
        sell({.name = "Süt",
              .quantity = "2",
              .total = "65",
              .profit = "-3",
              .barcode = goods::milk,
              .price = "32.5"});
        sell({.name = "Ekmek"});
        sell({.moment = "2026-05-04 11:00:00",
              .name = "Domates",
              .quantity = "1.25",
              .total = "50",
              .barcode = goods::tomatoes,
              .price = "40"});
        open();
        const QStringList before = footers();
        m_shop->typeInto(filterCell(row.column), row.typed);
        QCOMPARE(names(), row.names);
        QCOMPARE(footers(), before);  // of the whole range
        press(*report().dunkusatis);
        QCOMPARE(footers(), noSums);
        press(*report().bugunkusatis);
        QCOMPARE(names(), row.names);
    }

    void typingAtTheRowsSearches() {
        sellThree();
        open();
        m_shop->type("ekm");
        QCOMPARE(names(), QStringList{"Ekmek"});
        rows().setFocus();
        m_shop->type(goods::bread);
        QCOMPARE(filterCell(2).text(), goods::bread);
        QCOMPARE(filterCell(3).text(), "");
    }

    // --- deletion

    void deletes_data() {
        const auto row = [](int place) {
            return [place](SalesReportTest& test) { static_cast<SalesLinesTest&>(test).pressRow(place); };
        };
        addRows<DeletionRow>(
            {{"no row was pressed: the current one", {{}, {"Süt", "Ekmek"}, "Ekmek"}},
             {"pressed", {row(1), {"Süt", "Domates"}, "Süt"}},
             {"the last one", {row(2), {"Ekmek", "Domates"}, "Ekmek"}},
             {"in another order",
              {[](SalesReportTest& test) {
                   auto& self = static_cast<SalesLinesTest&>(test);
                   self.pressHeading(3);
                   self.pressRow(1);
               },
               {"Süt", "Domates"},
               "Domates"}},  // the newest: the order has gone
             {"behind a filter",
              {[](SalesReportTest& test) {
                   auto& self = static_cast<SalesLinesTest&>(test);
                   self.m_shop->typeInto(self.filterCell(3), "t");
                   self.pressRow(1);
               },
               {"Ekmek", "Domates"},
               "Domates"}},
             {"by keys alone",
              {[](SalesReportTest& test) { static_cast<SalesLinesTest&>(test).m_shop->key(Qt::Key_Down); },
               {"Süt", "Domates"},
               "Süt"}}});
    }
    void deletes() {
        QFETCH(const DeletionRow, row);
        sellThree();
        open();
        auto before = tables();
        if (row.prepare)
            row.prepare(*this);
        question(MessageBoxAnswer::yes);
        notice(deleted);
        press(*report().urunsil);
        QCOMPARE(m_boxes.constFirst().buttons, (QStringList{"Evet", "Hayır"}));
        QCOMPARE(m_boxes.constFirst().icon, QMessageBox::Warning);
        QCOMPARE(stored(), row.left);
        auto after = tables();
        for (auto* each : {&before, &after})
            each->remove("satislar");
        QCOMPARE(after, before);  // the stock too
        QCOMPARE(rows().column(3).value(), row.current);
        QTRY_VERIFY(rows().hasFocus());
        QCOMPARE(footers().constFirst().section(' ', 0, 0),
                 numberText(sayicevir(m_shop->rows("SELECT sum(adet) FROM satislar")[0][0])));
    }

    /// What tells the lines of a sale apart is their number.
    void deletesOneOfASecond() {
        for (const char* name : {"ilk", "orta", "son"})
            sell({.name = name});
        open();
        pressRow(1);
        question(MessageBoxAnswer::yes);
        notice(deleted);
        press(*report().urunsil);
        QCOMPARE(stored(), (QStringList{"ilk", "son"}));
    }

    void theLineIsSeenThatIsAskedAbout() {
        for (int line = 0; line < 100; ++line)
            sell({.name = QString::number(line)});
        open();
        pressRow(2);
        rows().verticalScrollBar()->setValue(80);
        connect(&m_shop->boxes, &BoxAnswers::opened, this, [this] {
            QVERIFY(rows().viewport()->rect().contains(rows().visualRect(rows().currentIndex())));
        });
        question(MessageBoxAnswer::no);
        press(*report().urunsil);
    }

    void deletesNothing_data() {
        QTest::addColumn<int>("answer");
        QTest::newRow("No") << MessageBoxAnswer::no;
        QTest::newRow("Escape") << BoxAnswers::escape;
    }
    void deletesNothing() {
        QFETCH(const int, answer);
        sellThree();
        open();
        const auto before = tables();
        question(answer);
        press(*report().urunsil);
        QCOMPARE(tables(), before);
        QTRY_VERIFY(rows().hasFocus());
    }

    void nothingToDelete() {
        open();
        notice("Silmek istediğiniz SATIŞI seçin");
        press(*report().urunsil);
        activate();
        sellThree();
        press(*report().bugunkusatis);
        m_shop->typeInto(filterCell(3), "yok");
        notice("Silmek istediğiniz SATIŞI seçin");
        press(*report().urunsil);
        QCOMPARE(stored().size(), 3);
    }

    /// @param sql  what another till does while the question stands open
    void deleteBehind(const QString& sql) {
        connect(&m_shop->boxes, &BoxAnswers::opened, this, [this, sql](const QMessageBox& box) {
            if (box.text() == asked)
                m_shop->run(sql);
        });
        question(MessageBoxAnswer::yes);
        notice(deleted);
        press(*report().urunsil);
    }
    void deletedElsewhereMeanwhile() {
        sellThree();
        open();
        deleteBehind("DELETE FROM satislar WHERE urun = 'Domates'");
        QCOMPARE(stored(), (QStringList{"Süt", "Ekmek"}));
        QCOMPARE(names(), (QStringList{"Ekmek", "Süt"}));
    }
    void aFailedFilterDeletesNothing() {
        sellThree();
        open();
        deleteBehind("ALTER TABLE satislar RENAME COLUMN no TO sira");
        QCOMPARE(m_shop->rows("SELECT count(*) FROM satislar")[0][0], 3);
    }
    void deletionWithoutDatabase() {
        if (ShopFixture::isOnServer())
            QSKIP("moves the file away");
        sellThree();
        open();
        loseDatabase();
        question(MessageBoxAnswer::yes);
        m_shop->boxes.expectAny(MessageBoxAnswer::ok);  // the connection's own
        m_shop->boxes.expect("Hata", noDatabase, MessageBoxAnswer::ok);
        press(*report().urunsil);
        bringDatabaseBack();
        QCOMPARE(stored().size(), 3);
    }

    void cashierDeletesNothing() {
        girisyetki = 0;
        sellThree();
        open();
        QVERIFY(!report().urunsil->isEnabled());
        press(*report().urunsil);
        QCOMPARE(stored().size(), 3);
        for (const char* button :
             {"bugunkusatis", "dunkusatis", "haftaliksatis", "ayliksatis", "tarihlerarasi", "excelekaydet",
              "vkCommand1", "htmlkaydet", "yazdir", "vkCommand4"})
            QVERIFY(control(button).isEnabled());
    }

    // --- files

    void exports_data() {
        addRows<ExportRow>({{"spreadsheet", {"excelekaydet", "drive/satis raporu.xls", true, ""}},
                            {"word processor", {"vkCommand1", "SITE.doc", true, ""}},
                            {"web page", {"htmlkaydet", "satis raporu.html", false, " width=\"100%\""}}});
    }
    void exports() {
        QFETCH(const ExportRow, row);
        const Opener desktop;
        sellThree();
        sell({.name = "<b>&", .barcode = "007"});
        open();
        m_shop->typeInto(filterCell(3), "e");
        pressHeading(3);
        const QString path = m_shop->file(row.file);
        for (int times = 1; times <= 2; ++times) {
            if (row.tells)
                notice(exportTold);
            press(control(row.button));
            activate();
            // What the filter lets through, in the order on screen, and the sums of the whole range.
            QCOMPARE(
                htmlTable(path),
                (QList<QStringList>{
                    {"NO", "TARİHİ ve SAAT", "BARKOD", "ÜRÜN ADI", "FİYAT", "MİKTAR", "TOPLAM", "KAZANİ"},
                    {"3", "04.05.2026 11:00:00", goods::bread, "Domates", "10,00 TL.", "1,25", "50,00 TL.",
                     "3,00 TL."},
                    {"2", "04.05.2026 10:00:00", goods::bread, "Ekmek", "10,00 TL.", "1", "10,00 TL.",
                     "3,00 TL."},
                    {"", "", "", "SATIŞ TOPLAMI", "", "5,25 Adet", "135,00 TL.", "12,00 TL."}}));
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadOnly));
            QVERIFY(QString(file.readAll()).contains("<table border=\"1\"" + row.width + ">"));
        }
        QCOMPARE(desktop.opened, row.tells ? QStringList{} : (QStringList{path, path}));
        QTRY_VERIFY(rows().hasFocus());  // the Enter of a scan exports no other
    }

    void exportsNowhere() {
        const Opener desktop;
        sell();
        open();
        qputenv("KOVANIX_DRIVE_C", QFile::encodeName(m_shop->file("none")));
        // A folder stands where each file should.
        for (const char* file : {"SITE.doc", "satis raporu.html"})
            QVERIFY(QDir(m_shop->folder()).mkdir(file));
        for (const char* button : {"excelekaydet", "vkCommand1"}) {
            notice(exportTold);
            press(control(button));
        }
        press(*report().htmlkaydet);  // says nothing and opens nothing
        QCOMPARE(desktop.opened, QStringList());
        QVERIFY(!QFile::exists(m_shop->file("none")));
    }

    // --- paper

    void prints() {
        sell();
        open();
        press(*report().yazdir);
        const PrintInfo& page = rows().printInfo();
        QCOMPARE(page.pageHeader, "Rapor4 Mayıs 2026 Pazartesi");
        QCOMPARE(page.pageHeaderFont.name, "Times New Roman");
        QCOMPARE(page.pageHeaderFont.size, 14);
        QVERIFY(page.pageHeaderFont.bold && page.pageHeaderFont.italic);
        QCOMPARE(page.pageFooter, "ACME International Co.\\t\\tPage \\p of \\P");
        QCOMPARE(page.pageFooterFont.name, "Times New Roman");
        QVERIFY(!page.pageFooterFont.bold && page.pageFooterFont.italic);
        QVERIFY(page.repeatColumnHeaders);
        QCOMPARE(page.margins, QMarginsF(720, 720, 720, 720));  // half an inch each
        QCOMPARE(page.previewCaption, "Rapor");
        QVERIFY(!page.previewPageOf.isEmpty());
        QCOMPARE(form().cursor().shape(), Qt::ArrowCursor);  // the hourglass has gone
        QCOMPARE(form().focusWidget(), &rows());             // where a scan opens no other preview
    }
};

int main(int argc, char** argv) {
    return runTests<SalesLinesTest>(argc, argv);
}

#include "test_satisraporlar.moc"
