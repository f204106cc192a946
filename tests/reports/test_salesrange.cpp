#include <QFile>
#include <QSignalSpy>

#include "rows.h"
#include "salesreporttest.h"
#include "widgets/caption.h"
#include "widgets/controlarray.h"

using namespace kovanix;

namespace {

const QByteArray aTextAmongTheTotals = "a text among the totals";

const QDate today(2026, 5, 4);

struct BorderRow {
    const char* preset;
    QString moment;
    bool counts;
};

struct PresetRow {
    const char* preset;
    QDate from;
    QDate to;
    QString words;
};

struct TimeRow {
    QString start;
    QString end;
    int found = 0;  ///< of the lines at 07:00:00, 07:05:00 and 12:30:15
    QString words{};
};

struct CellRow {
    const char* button;
    int index;
    QString note;
    QStringList times;
};

struct FocusRow {
    const char* button;
    QString focused;
    QList<Qt::Key> keys;
    QStringList times;
};

struct SumsRow {
    QList<Sold> lines;
    QStringList sums;
};

}  // namespace

/// The range of the sales report: pickers, times, panels and presets, and what is read for it.
class SalesRangeTest : public SalesReportTest {
    Q_OBJECT

    /// One line of today, and what it comes to.
    void stands() const {
        QCOMPARE(names(), QStringList{"Ekmek"});
        QCOMPARE(footers(), (QStringList{"1 Adet", "10,00 TL.", "3,00 TL."}));
        QCOMPARE(words(), "4 Mayıs 2026 Pazartesi, bütün gün");
    }

private Q_SLOTS:
    void init() { openManagersShop(); }

    void opensOnToday() {
        sell({.moment = "2026-05-03 23:59:59"});
        sell();
        open();
        QCOMPARE(form().windowTitle(), "SATIS RAPORLARI");
        QCOMPARE(report().Label10->caption(), "İKİ TARİH ARASI SATIŞ RAPORU");
        QCOMPARE(report().hhhhh->text(), "KIRMIZI ALANLARDAN ARAMA YAPABİLİRSİNİZ");
        QStringList captions;
        QList<int> widths;
        for (int i = 0; i < rows().columnCount(); ++i) {
            captions << rows().columnCaption(i);
            widths << rows().column(i).width();
        }
        QCOMPARE(captions, (QStringList{"NO", "TARİHİ ve SAAT", "BARKOD", "ÜRÜN ADI", "FİYAT", "MİKTAR",
                                        "TOPLAM", "KAZANİ"}));
        QCOMPARE(widths, (QList<int>{106, 156, 130, 146, 110, 88, 110, 90}));
        QCOMPARE(report().ilktarih1->date(), today);
        QCOMPARE(report().ilktarih2->date(), today);
        QCOMPARE(times(), wholeDay);
        QVERIFY(!report().Picture1->isVisible());
        QVERIFY(!report().Picture2->isVisible());
        QVERIFY(report().satislarim->isVisible());
        QVERIFY(rows().hasFocus());
        QCOMPARE(shown(1), QStringList{"04.05.2026 10:00:00"});
        QCOMPARE(shown(4) + shown(5) + shown(6) + shown(7),
                 (QStringList{"10,00 TL.", "1", "10,00 TL.", "3,00 TL."}));
        QCOMPARE(rows().footerTexts(),
                 (QStringList{"", "", "", "SATIŞ TOPLAMI", "", "1 Adet", "10,00 TL.", "3,00 TL."}));
        QCOMPARE(words(), "4 Mayıs 2026 Pazartesi, bütün gün");
    }

    void opensOnTodayEveryTime() {
        open();
        press(*report().ayliksatis);
        press(*report().vkCommand4);
        m_shop->setNow(QDateTime(today.addDays(1), QTime(0, 0, 1)));
        open();
        QCOMPARE(report().ilktarih1->date(), today.addDays(1));
        QCOMPARE(times(), wholeDay);
    }

    void readsOnceMoreASecondLater() {
        open();
        QCOMPARE(form().acilis.interval(), 1000);
        sell();
        QTRY_COMPARE(footers().constFirst(), "1 Adet");
        QCOMPARE(names(), QStringList{"Ekmek"});
        QCOMPARE(form().acilis.interval(), 0);
        sell();
        Q_EMIT form().acilis.tick();
        const QSignalSpy read(report().Adodc1, &Adodc::rowsChanged);
        Q_EMIT form().acilis.tick();  // nothing has changed
        QCOMPARE(read.count(), 0);
        QCOMPARE(footers().constFirst(), "2 Adet");
    }

    void secondReadLeavesADayThatIsTypedAlone() {
        open();
        report().ilktarih1->setFocus();
        QTest::keyClick(report().ilktarih1, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(report().ilktarih1, "01.05.2026");
        Q_EMIT form().acilis.tick();
        QVERIFY(report().ilktarih1->hasFocus());
        QCOMPARE(report().ilktarih1->date(), today);
        QTest::keyClick(report().ilktarih1, Qt::Key_Return);
        QCOMPARE(report().ilktarih1->date(), QDate(2026, 5, 1));
    }

    void secondReadLeavesAChoiceAlone() {
        open();
        press(*report().ilktarih1->findChild<QAbstractButton*>());
        Q_EMIT form().acilis.tick();
        QVERIFY(report().ilktarih1->isDropped());
        m_shop->key(Qt::Key_Escape);
        press(*report().Button_XP12);
        Q_EMIT form().acilis.tick();
        QCOMPARE(QApplication::focusWidget()->objectName(), "Label1_0");
    }

    void secondReadLeavesAFilterCellAlone() {
        sell();
        open();
        m_shop->type("ek");
        QCOMPARE(QApplication::focusWidget()->objectName(), "TDBGrid1_filter_3");
        Q_EMIT form().acilis.tick();
        m_shop->type("m");
        QCOMPARE(rows().column(3).filterText(), "ekm");
    }

    void midnightDoesNotMoveThePickers() {
        open();
        m_shop->setNow(QDateTime(today.addDays(1), QTime(0, 0, 1)));
        Q_EMIT form().acilis.tick();
        QCOMPARE(report().ilktarih2->date(), today);
        press(*report().bugunkusatis);
        QCOMPARE(report().ilktarih2->date(), today.addDays(1));
    }

    // --- presets

    void borders_data() {
        addRows<BorderRow>(
            {{"today, first second", {"bugunkusatis", "2026-05-04 00:00:00", true}},
             {"today, last second", {"bugunkusatis", "2026-05-04 23:59:59", true}},
             {"today, a second early", {"bugunkusatis", "2026-05-03 23:59:59", false}},
             {"today, a second late", {"bugunkusatis", "2026-05-05 00:00:00", false}},
             {"yesterday, first second", {"dunkusatis", "2026-05-03 00:00:00", true}},
             {"yesterday, last second", {"dunkusatis", "2026-05-03 23:59:59", true}},
             {"yesterday, a second early", {"dunkusatis", "2026-05-02 23:59:59", false}},
             {"yesterday, a second late", {"dunkusatis", "2026-05-04 00:00:00", false}},
             {"week, first second of eight days", {"haftaliksatis", "2026-04-27 00:00:00", true}},
             {"week, last second", {"haftaliksatis", "2026-05-04 23:59:59", true}},
             {"week, a second early", {"haftaliksatis", "2026-04-26 23:59:59", false}},
             {"week, a second late", {"haftaliksatis", "2026-05-05 00:00:00", false}},
             {"month, first second of 31 days", {"ayliksatis", "2026-04-04 00:00:00", true}},
             {"month, last second", {"ayliksatis", "2026-05-04 23:59:59", true}},
             {"month, a second early", {"ayliksatis", "2026-04-03 23:59:59", false}},
             {"month, a second late", {"ayliksatis", "2026-05-05 00:00:00", false}}});
    }
    void borders() {
        QFETCH(const BorderRow, row);
        sell({.moment = row.moment});
        open();
        press(control(row.preset));
        QCOMPARE(names().size(), row.counts ? 1 : 0);
        QCOMPARE(footers(), row.counts ? (QStringList{"1 Adet", "10,00 TL.", "3,00 TL."}) : noSums);
    }

    void presets_data() {
        addRows<PresetRow>(
            {{"today", {"bugunkusatis", today, today, "4 Mayıs 2026 Pazartesi, bütün gün"}},
             {"yesterday",
              {"dunkusatis", today.addDays(-1), today.addDays(-1), "3 Mayıs 2026 Pazar, bütün gün"}},
             {"week", {"haftaliksatis", today.addDays(-7), today, "27 Nisan – 4 Mayıs 2026, 8 gün"}},
             {"month", {"ayliksatis", today.addDays(-30), today, "4 Nisan – 4 Mayıs 2026, 31 gün"}}});
    }
    void presets() {
        QFETCH(const PresetRow, row);
        open();
        setDays(QDate(2020, 1, 1), QDate(2020, 1, 2));
        for (QLineEdit* field : form().findChildren<QLineEdit*>()) {
            if (times().contains(field->text()))
                field->setText("7");
        }
        const QSignalSpy read(report().Adodc1, &Adodc::rowsChanged);
        press(control(row.preset));
        QCOMPARE(read.count(), 1);
        QCOMPARE(report().ilktarih1->date(), row.from);
        QCOMPARE(report().ilktarih2->date(), row.to);
        QCOMPARE(times(), wholeDay);
        QCOMPARE(words(), row.words);
        QVERIFY(report().satislarim->hasFocus());
    }

    void presetsGiveWayToAFreeRange() {
        open();
        const int width = report().tarihKarti->width();
        press(*report().tarihlerarasi);
        QVERIFY(!report().satislarim->isVisible());
        QCoreApplication::processEvents();
        QCOMPARE(report().tarihKarti->width(), report().TDBGrid1->width());
        press(*report().tarihlerarasi);
        QVERIFY(report().satislarim->isVisible());
        QVERIFY(report().bugunkusatis->hasFocus());
        QCoreApplication::processEvents();
        QCOMPARE(report().tarihKarti->width(), width);
    }

    // --- pickers and typed times

    void pickers() {
        sell({.moment = "2026-05-02 10:00:00", .name = "Cumartesi"});
        open();
        report().ilktarih1->setDate(QDate(2026, 5, 2));
        QCOMPARE(names(), QStringList());  // set from code
        Q_EMIT report().ilktarih1->change();
        QCOMPARE(names(), QStringList());  // the calendar stands open still
        Q_EMIT report().ilktarih1->closeUp();
        QCOMPARE(names(), QStringList{"Cumartesi"});
        QVERIFY(rows().hasFocus());
        report().ilktarih2->setDate(QDate(2026, 5, 1));
        Q_EMIT report().ilktarih2->closeUp();
        QCOMPARE(names(), QStringList());
    }

    void typedTimes_data() {
        const QString day = "4 Mayıs 2026 Pazartesi, ";
        addRows<TimeRow>(
            {{"to the second", {"07:00:01", "12:30:15", 2, day + "07:00:01 – 12:30:15"}},
             {"one second", {"12:30:15", "12:30:15", 1, day + "12:30:15 – 12:30:15"}},
             {"an hour alone", {"7", "7", 1, day + "07:00:00 – 07:00:00"}},
             {"an hour and a minute", {"7:5", "12:30:59", 2, day + "07:05 – 12:30"}},
             {"empty", {"", "7:5:0", 2, day + "00:00:00 – 07:05:00"}},
             {"blanks around", {" 07:00:00 ", " 23:59:59 ", 3, day + "07:00 – 23:59"}},
             {"words count as midnight", {"saat", "23:59:59", 3, day + "bütün gün"}},
             {"the start after the end", {"12:00:00", "07:00:00", 0, "Başlangıç bitişten sonra"}}});
    }
    void typedTimes() {
        QFETCH(const TimeRow, row);
        for (const char* time : {"07:00:00", "07:05:00", "12:30:15"})
            sell({.moment = QString("2026-05-04 ") + time});
        open();
        typeTime(*report().saat1, row.start);
        typeTime(*report().saat2, row.end);
        QCOMPARE(names().size(), 3);
        Q_EMIT report().ilktarih1->closeUp();
        QCOMPARE(names().size(), row.found);
        QCOMPARE(footers().constFirst(), QString::number(row.found) + " Adet");
        QCOMPARE(words(), row.words);
    }

    /// In Turkey, too, the clock once went from three to four in the night.
    void anHourThatTheClockSkips() {
        open();
        typeTime(*report().saat1, "03:30:00");
        setDays(QDate(2016, 3, 27), QDate(2016, 3, 27));
        QCOMPARE(words(), "27 Mart 2016 Pazar, 03:30 – 23:59");
    }

    void refusedTimes_data() {
        addRows<TimeRow>({{"beyond the day", {"25:99:99", "23:59:59"}},
                          {"at the end", {"00:00:00", "25:99:99"}},
                          {"hour 24", {"00:00:00", "24:00:00"}},
                          {"minute 60", {"12:60:00", "23:59:59"}},
                          {"second 60", {"00:00:00", "23:59:60"}},
                          {"before midnight", {"-1:00:00", "23:59:59"}},
                          {"no number's size", {"1e300", "23:59:59"}}});
    }
    void refusedTimes() {
        QFETCH(const TimeRow, row);
        sell();
        open();
        typeTime(*report().saat1, row.start);
        typeTime(*report().saat2, row.end);
        setDays(today.addDays(-1), today.addDays(-1));
        stands();
        press(*report().dunkusatis);
        QCOMPARE(footers(), noSums);
        typeTime(*report().saat1, row.start);
        typeTime(*report().saat2, row.end);
        setDays(today, today);  // the words of the empty list stay, too
        QVERIFY(rows().accessibleDescription().startsWith("Bu aralıkta satış yok"));
    }

    void timesTakeNoScan() {
        open();
        for (QLineEdit* field : form().findChildren<QLineEdit*>()) {
            if (times().contains(field->text()))
                QVERIFY(field->maxLength() < 13);
        }
    }

    /// Whichever line was current before.
    void aChosenRangeBeginsAtItsNewestLine() {
        for (const char* hour : {"08", "09", "10"})
            sell({.moment = QString("2026-05-04 ") + hour + ":00:00", .name = hour});
        open();
        report().Adodc1->setCurrent(2);
        press(*report().dunkusatis);
        press(*report().haftaliksatis);
        QCOMPARE(rows().column(3).value(), "10");
    }

    void startAfterEnd() {
        sell();
        open();
        setDays(today, today.addDays(-1));
        QCOMPARE(names(), QStringList());
        QCOMPARE(footers(), noSums);
        QCOMPARE(words(), "Başlangıç bitişten sonra");
        QVERIFY(rows().accessibleDescription().startsWith("Bu aralıkta satış yok"));
    }

    void whatCanNotBeReadLeavesEverything() {
        if (ShopFixture::isOnServer())
            QSKIP("moves the file away");
        sell();
        open();
        loseDatabase();
        m_shop->boxes.expectAny(MessageBoxAnswer::ok);  // the connection's own
        press(*report().dunkusatis);
        stands();
        bringDatabaseBack();
        m_shop->run("ALTER TABLE satislar RENAME TO gone");
        activate();
        press(*report().dunkusatis);  // says nothing
        stands();
        QVERIFY(!QGuiApplication::overrideCursor());
        m_shop->run("ALTER TABLE gone RENAME TO satislar");
        press(*report().dunkusatis);
        QCOMPARE(footers(), noSums);
    }

    // --- panels

    void cellsAreComplete() {
        open();
        QStringList found;
        for (const QWidget* each : controlArray(form(), "Label1"))
            found << each->objectName().section('_', 1) + ' ' + caption(*each);
        QStringList wanted;
        for (int hour = 0; hour < 24; ++hour)
            wanted << QString("%1 %1").arg(hour);
        wanted << "27 KAPAT"
               << "50 KAPAT";
        for (int minute = 0; minute < 60; ++minute)
            wanted << QString("%1 %2").arg(51 + minute).arg(minute);
        QCOMPARE(found, wanted);
    }

    void cells_data() {
        const auto start = [](const QString& hour, const QString& minute) {
            return QStringList{hour + ':' + minute + ":00", hour, minute, "00", "23:59:59", "23", "59", "59"};
        };
        const auto end = [](const QString& hour, const QString& minute) {
            return QStringList{"00:00:00", "00", "00", "00", hour + ':' + minute + ":59", hour, minute, "59"};
        };
        const QString first = "başlangıç saati";
        const QString last = "bitiş saati";
        addRows<CellRow>({{"start, hour 0", {"Button_XP12", 0, first, start("00", "00")}},
                          {"start, hour 9", {"Button_XP12", 9, first, start("09", "00")}},
                          {"start, hour 10", {"Button_XP12", 10, first, start("10", "00")}},
                          {"start, hour 23", {"Button_XP12", 23, first, start("23", "00")}},
                          {"start, closed", {"Button_XP12", 27, first, wholeDay}},
                          {"start, minute 0", {"Button_XP15", 51, first, start("00", "00")}},
                          {"start, minute 9", {"Button_XP15", 60, first, start("00", "09")}},
                          {"start, minute 10", {"Button_XP15", 61, first, start("00", "10")}},
                          {"start, minute 59", {"Button_XP15", 110, first, start("00", "59")}},
                          {"start, minutes closed", {"Button_XP15", 50, first, wholeDay}},
                          {"end, hour 0", {"Button_XP14", 0, last, end("00", "59")}},
                          {"end, hour 23", {"Button_XP14", 23, last, wholeDay}},
                          {"end, closed", {"Button_XP14", 27, last, wholeDay}},
                          {"end, minute 0", {"vkToggleButton1", 51, last, end("23", "00")}},
                          {"end, minute 59", {"vkToggleButton1", 110, last, wholeDay}},
                          {"end, minutes closed", {"vkToggleButton1", 50, last, wholeDay}}});
    }
    void cells() {
        QFETCH(const CellRow, row);
        open();
        press(control(row.button));
        vkFrame& panel = row.index <= 27 ? *report().Picture1 : *report().Picture2;
        QVERIFY(panel.isVisible());
        QCOMPARE(panel.titleNote(), row.note);
        QCOMPARE(panel.caption(), row.index <= 27 ? "SAAT SEİŞİN" : "DAKİKA SEİŞİN");
        press(cell(row.index));
        QVERIFY(!panel.isVisible());
        QCOMPARE(times(), row.times);
        QVERIFY(rows().hasFocus());
    }

    void anyOtherCodeIsTheEndTime() {
        open();
        for (const QString& code : {QString(), QString("0"), QString("3"), QString("1 ")}) {
            press(*report().Button_XP12);
            report().sec1->setText(code);
            press(cell(8));
            QCOMPARE(report().saat2->text(), "08:59:59");
            QCOMPARE(report().saat1->text(), "00:00:00");
            report().Text6->setText("23");
        }
    }

    void everyCellReadsAnewWithTheTypedParts() {
        sell({.moment = "2026-05-04 10:00:14", .name = "Erken"});
        sell({.moment = "2026-05-04 10:00:15", .name = "Geç"});
        open();
        report().saat1->setText("05:05:05");  // what the parts say goes
        report().Text3->setText("15");
        press(*report().Button_XP12);
        press(cell(10));
        QCOMPARE(report().saat1->text(), "10:00:15");
        QCOMPARE(names(), QStringList{"Geç"});
        report().Text3->setText("14");
        press(*report().vkToggleButton1);
        press(cell(50));
        QCOMPARE(report().saat1->text(), "10:00:14");
        QCOMPARE(names().size(), 2);
    }

    void onePanelAtATime() {
        open();
        press(*report().Button_XP12);
        press(*report().vkToggleButton1);
        QVERIFY(!report().Picture1->isVisible());
        QVERIFY(report().Picture2->isVisible());
        QCOMPARE(report().sec1->text(), "2");
    }

    /// The sums stay in sight, whatever the panel covers of the range card.
    void panelsLeaveTheSums_data() {
        addRows<QSize>({{"800x600", {800, 600}},
                        {"1024x768", {1024, 768}},
                        {"1366x768", {1366, 768}},
                        {"1920x1080", {1920, 1080}}});
    }
    void panelsLeaveTheSums() {
        QFETCH(const QSize, row);
        sell();
        open();
        form().resize(row);
        QCoreApplication::processEvents();
        const int sums = rows().mapTo(&form(), QPoint(0, rows().footerTop())).y();
        QVERIFY(rows().footerTop() < rows().height());
        for (const char* button : {"Button_XP12", "vkToggleButton1"}) {
            press(control(button));
            const vkFrame& panel = report().Picture1->isVisible() ? *report().Picture1 : *report().Picture2;
            QVERIFY(panel.mapTo(&form(), QPoint(0, panel.height())).y() <= sums);
            for (const QAbstractButton* key : panel.findChildren<QAbstractButton*>()) {
                QVERIFY(key->height() >= 40);
                QVERIFY(panel.rect().contains(QRect(key->mapTo(&panel, QPoint(0, 0)), key->size())));
            }
        }
    }

    void theTimeThatStandsIsMarked() {
        open();
        const auto marked = [](const vkFrame& panel) {
            QStringList captions;
            for (const vkCommand* key : panel.findChildren<vkCommand*>()) {
                if (key->look() == FaceRole::accent)
                    captions.append(key->caption());
            }
            return captions;
        };
        press(*report().Button_XP14);
        QCOMPARE(marked(*report().Picture1), QStringList{"23"});
        press(cell(8));
        press(*report().Button_XP14);
        QCOMPARE(marked(*report().Picture1), QStringList{"8"});
        press(*report().vkToggleButton1);
        QCOMPARE(marked(*report().Picture2), QStringList{"59"});
        report().saat->setText("otuz");
        press(*report().Button_XP12);
        QCOMPARE(marked(*report().Picture1), QStringList{"0"});
    }

    void panelsByKeys_data() {
        const QStringList before = wholeDay;
        addRows<FocusRow>(
            {{"hour by arrows",
              {"Button_XP12",
               "Label1_0",
               {Qt::Key_Right, Qt::Key_Down, Qt::Key_Return},
               {"07:00:00", "07", "00", "00", "23:59:59", "23", "59", "59"}}},
             {"minute by arrows",
              {"vkToggleButton1",
               "Label1_110",
               {Qt::Key_Up, Qt::Key_Left, Qt::Key_Space},
               {"00:00:00", "00", "00", "00", "23:48:59", "23", "48", "59"}}},
             {"the same again", {"Button_XP14", "Label1_23", {Qt::Key_Return}, before}},
             {"down to KAPAT", {"Button_XP14", "Label1_23", {Qt::Key_Down, Qt::Key_Return}, before}},
             {"Escape", {"Button_XP15", "Label1_51", {Qt::Key_Right, Qt::Key_Escape}, before}}});
    }
    void panelsByKeys() {
        QFETCH(const FocusRow, row);
        open();
        press(control(row.button));
        QCOMPARE(QApplication::focusWidget()->objectName(), row.focused);
        for (const Qt::Key key : row.keys)
            m_shop->key(key);
        QVERIFY(loaded<satisraporlar>());
        QVERIFY(!report().Picture1->isVisible());
        QVERIFY(!report().Picture2->isVisible());
        QCOMPARE(times(), row.times);
    }

    void panelOfATypedPart() {
        open();
        report().saat->setText("otuz");
        press(*report().Button_XP12);
        QCOMPARE(QApplication::focusWidget()->objectName(), "Label1_0");
        report().saat->setText("77");
        press(*report().Button_XP12);
        QCOMPARE(QApplication::focusWidget()->objectName(), "Label1_0");
    }

    // --- sums

    void sums_data() {
        const auto sold = [](const char* quantity, const char* total, const char* profit) {
            return Sold{.quantity = quantity, .total = total, .profit = profit};
        };
        addRows<SumsRow>(
            {{"no sale", {{}, noSums}},
             {"groups and commas",
              {{sold("1000", "12345.678", "1000"), sold("0.5", "0", "0")},
               {"1000,5 Adet", "12.345,68 TL.", "1.000,00 TL."}}},
             {"weights",
              {{sold("0.1", "1", "0.1"), sold("0.2", "2", "0.2")}, {"0,3 Adet", "3,00 TL.", "0,30 TL."}}},
             {"a loss", {{sold("1", "10", "-2.5")}, {"1 Adet", "10,00 TL.", "-2,50 TL."}}},
             {"goods that came back", {{sold("-3", "-30", "-9")}, {"-3 Adet", "-30,00 TL.", "-9,00 TL."}}},
             {"amounts that are missing", {{sold("2", "NULL", "NULL")}, {"2 Adet", "0,00 TL.", "0,00 TL."}}},
             {"quantities that are missing", {{sold("NULL", "5", "1")}, noSums}},
             {aTextAmongTheTotals.constData(),
              {{sold("1", "'yok'", "1"), sold("1", "5", "1")}, {"2 Adet", "5,00 TL.", "2,00 TL."}}},
             {"millions",
              {{sold("1234567", "123456789.125", "23456789.5")},
               {"1234567 Adet", "123.456.789,13 TL.", "23.456.789,50 TL."}}}});
    }
    void sums() {
        QFETCH(const SumsRow, row);
        if (ShopFixture::isOnServer() && QTest::currentDataTag() == aTextAmongTheTotals)
            QSKIP("a server's columns of numbers hold no texts");
        for (const Sold& line : row.lines)
            sell(line);
        open();
        QCOMPARE(footers(), row.sums);
    }

    void profitIsWhatWasStored() {
        sell({.quantity = "10", .total = "100", .profit = "55"});
        open();
        QCOMPARE(shown(7), QStringList{"55,00 TL."});
        QCOMPARE(footers().last(), "55,00 TL.");
    }
};

int main(int argc, char** argv) {
    return runTests<SalesRangeTest>(argc, argv);
}

#include "test_salesrange.moc"
