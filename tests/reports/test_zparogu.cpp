#include <QDir>
#include <QProcess>
#include <QRandomGenerator>

#include "data/baglanmamodulu.h"
#include "desktop/focus.h"
#include "reports/zpage.h"
#include "reports/zparogu.h"
#include "rows.h"
#include "runtime/screenregistry.h"
#include "salestest.h"
#include "values/numbers.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

const QString day = u"2026-05-03 "_s;

QString sale(const QString& moment, const QString& total) {
    return "INSERT INTO satislar (tarih, toplam) VALUES ('" + moment + "', " + total + ")";
}

}  // namespace

/// The Z report. The clock stands at 3 May 2026.
class ZReportTest : public SalesTest {
    Q_OBJECT

    struct FiguresRow {
        QStringList statements;
        QStringList shown;  ///< first, last, total
    };
    struct RangeRow {
        QDate from;
        QTime fromTime;
        QDate to;
        QTime toTime;
        QString total;
    };
    struct WordsRow {
        QDate from, to;
        QString words;
    };
    struct PageRow {
        ZFigures figures;
        QString text;
    };

    static Ui::zparogu& ui() { return screen<zparogu>().ui; }
    static void open() {
        showInFront(screen<zparogu>());
        if (!QTest::qWaitFor([] { return screen<zparogu>().isActiveWindow(); }))
            qFatal("the report doesn't become active");
    }
    static QStringList shown() { return {ui().ilk->text(), ui().son->text(), ui().toplam->text()}; }
    static void run() { ui().Command3->click(); }
    static void choose(DTPicker* picker, QDate date) {
        picker->setDate(date);
        Q_EMIT picker->change();
    }
    static void leave(DTPicker* picker, QTime time) {
        picker->setTime(time);
        Q_EMIT picker->lostFocus();
    }
    QString prints() const { return m_shop->file("ciktilar"); }
    int printed() const { return int(QDir(prints()).entryList({"*.pdf"}).size()); }

private Q_SLOTS:
    void init() {
        SalesTest::init();
        qputenv("KOVANIX_PRINTER", ("pdf:" + prints()).toUtf8());
    }
    void cleanup() {
        qunsetenv("KOVANIX_PRINTER");
        SalesTest::cleanup();
    }

    void figures_data() {
        addRows<FiguresRow>(
            {{"no sale", {{}, {"", "", "0"}}},
             {"one sale",
              {{sale(day + "10:00:00", "12.5")}, {"03.05.2026 10:00:00", "03.05.2026 10:00:00", "12,50 "}}},
             {"thousands",
              {{sale(day + "10:00:00", "18764.25")},
               {"03.05.2026 10:00:00", "03.05.2026 10:00:00", "18.764,25 "}}},
             {"first and last by entry, not by time",
              {{sale(day + "12:00:00", "1"), sale(day + "08:00:00", "1"), sale(day + "20:00:00", "1"),
                sale(day + "09:00:00", "1")},
               {"03.05.2026 12:00:00", "03.05.2026 09:00:00", "4,00 "}}},
             {"rounded at each row, not at the end",
              {{sale(day + "10:00:00", "0.004"), sale(day + "10:00:01", "0.004"),
                sale(day + "10:00:02", "0.004")},
               {"03.05.2026 10:00:00", "03.05.2026 10:00:02", "0,00 "}}},
             {"halves of a cent go away from zero",
              {{sale(day + "10:00:00", "1.005"), sale(day + "10:00:00", "1.005")},
               {"03.05.2026 10:00:00", "03.05.2026 10:00:00", "2,02 "}}},
             {"the order of entry tells in the rounding",
              {{sale(day + "12:00:00", "-0.01"), sale(day + "10:00:00", "0.005")},
               {"03.05.2026 12:00:00", "03.05.2026 10:00:00", "-0,01 "}}},
             {"goods taken back",
              {{sale(day + "10:00:00", "5"), sale(day + "11:00:00", "-7.5")},
               {"03.05.2026 10:00:00", "03.05.2026 11:00:00", "-2,50 "}}},
             {"nothing stored counts 0",
              {{sale(day + "10:00:00", "NULL"), sale(day + "11:00:00", "3")},
               {"03.05.2026 10:00:00", "03.05.2026 11:00:00", "3,00 "}}},
             {"only nothing stored",
              {{sale(day + "10:00:00", "NULL")}, {"03.05.2026 10:00:00", "03.05.2026 10:00:00", "0,00 "}}},
             {"a text of an older file",
              {{sale(day + "10:00:00", "'12,5 '"), sale(day + "11:00:00", "3")},
               {"03.05.2026 10:00:00", "03.05.2026 11:00:00", "15,50 "}}},
             {"a text that is no number",
              {{sale(day + "10:00:00", "'çok'"), sale(day + "11:00:00", "3")},
               {"03.05.2026 10:00:00", "03.05.2026 11:00:00", "3,00 "}}},
             {"beyond a milliard",
              {{sale(day + "10:00:00", "1234567890.125"), sale(day + "11:00:00", "0.005")},
               {"03.05.2026 10:00:00", "03.05.2026 11:00:00", "1.234.567.890,14 "}}},
             {"another day's don't count",
              {{sale("2026-05-02 23:59:59", "1"), sale("2026-05-04 00:00:00", "1")}, {"", "", "0"}}},
             {"the borders of the day",
              {{sale(day + "00:00:00", "1"), sale(day + "23:59:59", "2")},
               {"03.05.2026 00:00:00", "03.05.2026 23:59:59", "3,00 "}}},
             {"a sale without a moment", {{"INSERT INTO satislar (toplam) VALUES (1)"}, {"", "", "0"}}}});
    }
    void figures() {
        QFETCH(const FiguresRow, row);
        for (const QString& statement : row.statements) {
            if (!m_shop->takes(statement))
                QSKIP("a server's columns of numbers hold no texts");
        }
        const auto before = tables();
        open();
        QCOMPARE(shown(), row.shown);
        run();
        QCOMPARE(shown(), row.shown);
        QVERIFY(tables() == before);
    }

    /// Random rows of every kind, against the sum that stands in a text and is read again at each row.
    void equalsTheSumInAText_data() {
        addRows<double>({{"cents", 1.0}, {"sales", 1000.0}, {"millions", 1e7}});
    }
    void equalsTheSumInAText() {
        if (ShopFixture::isOnServer())
            QSKIP("a server's columns of numbers hold no texts");
        QFETCH(const double, row);
        QRandomGenerator random(7);
        QString text = "0";
        QStringList values;
        for (int i = 0; i < 3000; ++i) {
            double amount = (random.generateDouble() - 0.2) * row;
            if (i % 2)
                amount = std::floor(amount * 100) / 100 + 0.005;
            const QString older = numberText(amount);
            QString stored = QString::number(amount, 'g', 17);
            if (i % 11 == 0) {
                stored = "'" + older + "'";
                amount = sayicevir(older);
            } else if (i % 13 == 0) {
                stored = "NULL";
                amount = 0;
            }
            values.append("('" + day + "10:00:00', " + stored + ")");
            text = format(amount + sayicevir(text), u"#,##0.00 ");
        }
        m_shop->run("INSERT INTO satislar (tarih, toplam) VALUES " + values.join(", "));
        open();
        QCOMPARE(ui().toplam->text(), text);
    }

    /// More rows than are read at once, entered against the order of their moments.
    void manyRowsComeInOrderOfEntry() {
        if (ShopFixture::isOnServer())
            QSKIP("fills the table by a file's own functions");
        m_shop->run(
            "INSERT INTO satislar (tarih, toplam) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 "
            "FROM "
            "n WHERE i < 45000) SELECT datetime('2026-05-03 23:00:00', '-' || i || ' seconds'), 0.014 FROM "
            "n");
        open();
        QCOMPARE(shown(), (QStringList{"03.05.2026 22:59:59", "03.05.2026 10:30:00", "450,00 "}));
        QVERIFY(!QGuiApplication::overrideCursor());
        QVERIFY(!ui().vkFrame1->progress());
    }

    void ranges_data() {
        const QDate may3(2026, 5, 3);
        const QTime start(0, 0, 0);
        const QTime end(23, 59, 59);
        addRows<RangeRow>({{"the whole day", {may3, start, may3, end, "7,00 "}},
                           {"from a second on", {may3, {12, 0, 1}, may3, end, "4,00 "}},
                           {"to a second", {may3, start, may3, {12, 0, 0}, "3,00 "}},
                           {"a second before", {may3, start, may3, {11, 59, 59}, "1,00 "}},
                           {"two days", {may3.addDays(-1), start, may3, end, "15,00 "}},
                           {"across midnight", {may3.addDays(-1), {23, 0, 0}, may3, {1, 0, 0}, "9,00 "}},
                           {"start after end", {may3, start, may3.addDays(-1), end, "0"}},
                           {"start after end on a day", {may3, end, may3, start, "0"}},
                           {"years", {{2000, 1, 1}, start, {2099, 12, 31}, end, "15,00 "}}});
    }
    void ranges() {
        QFETCH(const RangeRow, row);
        for (const auto& [moment, total] :
             std::initializer_list<std::pair<const char*, const char*>>{{"2026-05-03 00:00:00", "1"},
                                                                        {"2026-05-03 12:00:00", "2"},
                                                                        {"2026-05-03 23:59:59", "4"},
                                                                        {"2026-05-02 23:59:59", "8"}})
            m_shop->run(sale(moment, total));
        open();
        ui().saat1->setTime(row.fromTime);
        ui().saat2->setTime(row.toTime);
        ui().tarih1->setDate(row.from);
        ui().Tarih2->setDate(row.to);
        run();
        QCOMPARE(ui().toplam->text(), row.total);
    }

    void opensOnToday() {
        open();
        QCOMPARE(ui().tarih1->text(), "03.05.2026");
        QCOMPARE(ui().Tarih2->text(), "03.05.2026");
        QCOMPARE(ui().saat1->text(), "00:00:00");
        QCOMPARE(ui().saat2->text(), "23:59:59");
        QCOMPARE(ui().vkFrame1->caption(), "GENEL  SATIş RAPORU");
    }

    void rangeInWords_data() {
        addRows<WordsRow>(
            {{"a day", {{2026, 5, 4}, {2026, 5, 4}, "4 Mayıs 2026 Pazartesi"}},
             {"days of a month", {{2026, 5, 1}, {2026, 5, 4}, "1 – 4 Mayıs 2026, 4 gün"}},
             {"days of two months", {{2026, 4, 27}, {2026, 5, 4}, "27 Nisan – 4 Mayıs 2026, 8 gün"}},
             {"days of two years", {{2025, 12, 31}, {2026, 1, 1}, "31 Aralık 2025 – 1 Ocak 2026, 2 gün"}},
             {"backwards", {{2026, 5, 4}, {2026, 5, 1}, "Başlangıç bitişten sonra"}}});
    }
    void rangeInWords() {
        QFETCH(const WordsRow, row);
        open();
        ui().tarih1->setDate(row.from);
        ui().Tarih2->setDate(row.to);
        run();
        QCOMPARE(ui().vkFrame1->titleNote(), row.words);
        QCOMPARE(ui().vkFrame1->accessibleDescription(), row.words);
    }

    /// The figures follow the pickers. Each row below stores a sale first, so that running shows.
    void runsByItself_data() {
        using Step = void (*)();
        QTest::addColumn<Step>("row");
        const auto row = [](const char* name, Step step) { QTest::newRow(name) << step; };
        row("start date", [] { choose(ui().tarih1, {2026, 5, 1}); });
        row("end date", [] { choose(ui().Tarih2, {2026, 5, 4}); });
        row("start time left", [] { leave(ui().saat1, {1, 0, 0}); });
        row("end time left", [] { leave(ui().saat2, {22, 0, 0}); });
        row("start time confirmed or chosen", [] { Q_EMIT ui().saat1->closeUp(); });
        row("time left as it was", [] { leave(ui().saat2, ui().saat2->time()); });
        row("button", [] { run(); });
        row("activated", [] {
            loaded<satisekrani>() ? screen<satisekrani>().activateWindow() : void();
            QTRY_VERIFY(screen<satisekrani>().isActiveWindow());
            screen<zparogu>().activateWindow();
            QTRY_VERIFY(screen<zparogu>().isActiveWindow());
        });
    }
    void runsByItself() {
        using Step = void (*)();
        QFETCH(const Step, row);
        open();
        QCOMPARE(ui().toplam->text(), "0");
        m_shop->run(sale(day + "10:00:00", "5"));
        QCOMPARE(ui().toplam->text(), "0");
        row();
        QCOMPARE(ui().toplam->text(), "5,00 ");
    }

    /// A time that is being chosen isn't told before its picker is left; dates set from code tell nobody.
    void waitsForItsEvents() {
        open();
        m_shop->run(sale(day + "10:00:00", "5"));
        Q_EMIT ui().saat1->change();
        Q_EMIT ui().tarih1->lostFocus();
        ui().tarih1->setDate({2026, 5, 1});
        QCOMPARE(ui().toplam->text(), "0");
    }

    void arrowsMoveBothDays_data() { addRows<int>({{"a day forward", 1}, {"a day back", -1}}); }
    void arrowsMoveBothDays() {
        QFETCH(const int, row);
        m_shop->run(sale("2026-05-04 10:00:00", "4"));
        m_shop->run(sale("2026-04-29 10:00:00", "2"));
        open();
        ui().tarih1->setDate({2026, 4, 30});
        run();
        QCOMPARE(ui().toplam->text(), "0");
        int runs = 0;
        connect(ui().ilk, &QLineEdit::textChanged, this,
                [&](const QString& text) { runs += !text.isEmpty(); });
        press(row > 0 ? *ui().Image1 : *ui().Image2);
        QCOMPARE(ui().tarih1->date(), QDate(2026, 4, 30).addDays(row));
        QCOMPARE(ui().Tarih2->date(), QDate(2026, 5, 3).addDays(row));
        QCOMPARE(ui().toplam->text(), row > 0 ? "4,00 " : "2,00 ");
        QCOMPARE(runs, 1);
    }

    /// What is being typed counts, also where an arrow is touched.
    void arrowsTakeWhatIsTyped() {
        m_shop->run(sale("2026-05-02 10:00:00", "4"));
        m_shop->run(sale("2026-05-02 12:00:00", "2"));
        open();
        ui().saat2->setFocus();
        QTest::keyClick(ui().saat2, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(ui().saat2, "11:00");
        press(*ui().Image2);
        QCOMPARE(ui().saat2->text(), "11:00:00");
        QCOMPARE(ui().toplam->text(), "4,00 ");
        ui().tarih1->setFocus();
        QTest::keyClick(ui().tarih1, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(ui().tarih1, "01.05.2026");
        press(*ui().Image1);
        QCOMPARE(ui().tarih1->text(), "02.05.2026");
        QCOMPARE(ui().toplam->text(), "6,00 ");
    }

    void arrowsKeepTheDistanceAtTheCalendarsEnds() {
        open();
        ui().tarih1->setDate({100, 1, 1});
        press(*ui().Image2);
        QCOMPARE(ui().tarih1->date(), QDate(100, 1, 1));
        QCOMPARE(ui().Tarih2->date(), QDate(2026, 5, 3));
        ui().Tarih2->setDate({9999, 12, 31});
        press(*ui().Image1);
        QCOMPARE(ui().tarih1->date(), QDate(100, 1, 1));
    }

    void aDeletedLineIsGone() {
        m_shop->run(sale(day + "10:00:00", "5"));
        m_shop->run(sale(day + "11:00:00", "6"));
        open();
        m_shop->run("DELETE FROM satislar WHERE toplam = 6");
        run();
        QCOMPARE(shown(), (QStringList{"03.05.2026 10:00:00", "03.05.2026 10:00:00", "5,00 "}));
    }

    /// The engine fails at a row in the midst: what was added up to there stays.
    void aFailureInTheMidstLeavesPartOfTheSum() {
        if (ShopFixture::isOnServer())
            QSKIP("a file fails in the middle of its rows");
        m_shop->run("DROP TABLE satislar");
        m_shop->run(
            "CREATE VIEW satislar AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i "
            "< "
            "100) SELECT '2026-05-03 10:00:' || (i + 9) AS tarih, CASE WHEN i = 41 THEN "
            "abs(-9223372036854775807 - 1) ELSE 2 END AS toplam FROM n");
        open();
        QCOMPARE(shown(), (QStringList{"03.05.2026 10:00:10", "03.05.2026 10:00:49", "80,00 "}));
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    void aFailingQueryLeavesItEmpty() {
        m_shop->run(sale(day + "10:00:00", "5"));
        open();
        m_shop->run("DROP TABLE satislar");
        run();
        QCOMPARE(shown(), (QStringList{"", "", ShopFixture::isOnServer() ? "" : "0"}));
    }

    void withoutADatabaseNothingElseHappens() {
        if (ShopFixture::isOnServer())
            QSKIP("moves the file away");
        m_shop->run(sale(day + "10:00:00", "5"));
        open();
        loseDatabase();
        m_shop->boxes.expectAny(MessageBoxAnswer::ok);
        run();
        QCOMPARE(shown(), (QStringList{"", "", "0"}));
        bringDatabaseBack();
        run();
        QCOMPARE(ui().toplam->text(), "5,00 ");
    }

    void pages_data() {
        const QDate may3(2026, 5, 3);
        addRows<PageRow>(
            {{"a day",
              {{may3, may3, "03.05.2026 07:58:12", "03.05.2026 10:24:31", "18.764,25 "},
               "\r\n03.05.2026 ile  03.05.2026 TARİH ARASINDA \r\n GENEL RAPOR\r\n\r\n\r\n\r\n\r\n  ÖZET  "
               ":\r\n"
               "İlk fiŞ Zamanı : 03.05.2026 07:58:12\r\nSon fiŞ Zamanı : 03.05.2026 10:24:31\r\n\r\n\r\n"
               "KASA BİLGİLERİ : \r\nToplam satıŞı  : 18.764,25 TL.\r\n\r\n\r\n"}},
             {"a range without sales",
              {{may3, {2026, 5, 4}, "", "", "0"},
               "\r\n03.05.2026 ile  04.05.2026 TARİH ARASINDA \r\n GENEL RAPOR\r\n\r\n\r\n\r\n\r\n  ÖZET  "
               ":\r\n"
               "İlk fiŞ Zamanı : \r\nSon fiŞ Zamanı : \r\n\r\n\r\n"
               "KASA BİLGİLERİ : \r\nToplam satıŞı  : 0,00 TL.\r\n\r\n\r\n"}},
             {"less than nothing",
              {{may3, may3, "a", "b", "-1.234,50 "},
               "\r\n03.05.2026 ile  03.05.2026 TARİH ARASINDA \r\n GENEL RAPOR\r\n\r\n\r\n\r\n\r\n  ÖZET  "
               ":\r\n"
               "İlk fiŞ Zamanı : a\r\nSon fiŞ Zamanı : b\r\n\r\n\r\n"
               "KASA BİLGİLERİ : \r\nToplam satıŞı  : -1.234,50 TL.\r\n\r\n\r\n"}}});
    }
    void pages() {
        QFETCH(const PageRow, row);
        const QString text = zPageText(row.figures);
        QCOMPARE(text, row.text);
        QCOMPARE(text.count("\r\n"), 16);
        QCOMPARE(text.count(u'\n'), 16);
    }

    void prints_oneJobWithoutADialog() {
        m_shop->run(sale(day + "10:00:00", "18764.25"));
        open();
        leave(ui().saat1, {9, 0, 0});
        press(*ui().Command1);
        QCOMPARE(printed(), 1);
        const QString text = ui().Text33->text();
        QCOMPARE(text, zPageText({{2026, 5, 3}, {2026, 5, 3}, shown()[0], shown()[1], shown()[2]}));
        QVERIFY(!text.contains("09:00"));  // the times of the range aren't on it
        QProcess reader;
        reader.start("pdftotext", {"-layout", prints() + "/0001.pdf", "-"});
        QVERIFY2(reader.waitForFinished(), "pdftotext (poppler-utils) is needed");
        const QString page = QString::fromUtf8(reader.readAllStandardOutput());
        for (const char* piece : {"03.05.2026 ile 03.05.2026 TARİH ARASINDA", "GENEL RAPOR",
                                  "ÖZET :", "03.05.2026 10:00:00", "KASA BİLGİLERİ :", "18.764,25 TL."})
            QVERIFY2(page.simplified().contains(QString::fromUtf8(piece)), qPrintable(page));
        QVERIFY(ui().cmdClose->hasFocus());  // a scan that follows prints no other
        press(*ui().Command1);               // nor does a finger that taps twice
        QCOMPARE(printed(), 1);
    }

    void aFailingPrinterSaysNothing() {
        QFile inTheWay(prints());
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        m_shop->run(sale(day + "10:00:00", "5"));
        open();
        press(*ui().Command1);
        QCOMPARE(ui().toplam->text(), "5,00 ");
        QVERIFY(loaded<zparogu>());
        inTheWay.remove();
        press(*ui().Command1);
        QCOMPARE(printed(), 1);
    }

    /// Its pickers are left when it goes, which reads nothing more.
    void goesWithoutReading() {
        open();
        DTPicker* const time = ui().saat1;
        const QLineEdit* const total = ui().toplam;
        m_shop->run(sale(day + "10:00:00", "5"));
        press(*ui().cmdClose);
        QVERIFY(!loaded<zparogu>());
        Q_EMIT time->lostFocus();
        QCOMPARE(total->text(), "0");
        QVERIFY(!loaded<zparogu>());
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
    }
};

int main(int argc, char** argv) {
    return runTests<ZReportTest>(argc, argv);
}

#include "test_zparogu.moc"
