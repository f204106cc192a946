#include <QMessageBox>
#include <QPushButton>

#include "app/ayarmodul.h"
#include "appearance/menu.h"
#include "appearance/modTema.h"
#include "appearance/toplamtema.h"
#include "data/baglanmamodulu.h"
#include "desktop/screensize.h"
#include "rows.h"
#include "runtests.h"
#include "themefixture.h"
#include "widgets/controlcolor.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

QStringList totalColours(const ThemeFixture& fixture) {
    QStringList colours;
    for (const QString& property :
         {u"forecolor"_s, u"backcolor1"_s, u"backcolor2"_s, u"backcolorpushed1"_s, u"backcolorpushed2"_s})
        colours.append(fixture.colour(u"toplam"_s, property));
    return colours;
}

/// Runs when a control gets other colours.
class OnRepaint : public QObject {
public:
    OnRepaint(QWidget& control, std::function<void()> action) : m_action(std::move(action)) {
        control.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::PaletteChange)
            m_action();
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> m_action;
};

}  // namespace

class TestTema : public QObject {
    Q_OBJECT

    struct PressPaintsTheTableRow {
        int number;
        QString stored;
    };
    struct PrivateTotalStaysRow {
        QByteArray keys;
        bool stays;
    };
    struct NoChangesNothingRow {
        int number, answer;
    };
    struct KeyIsWrittenBeforeOrBehindRow {
        int number;
        QString meanwhile;
    };

private Q_SLOTS:
    void everyControlOfTheTableStands() {
        const ThemeFixture fixture;
        QStringList missing;
        for (const PaletteLine& line : paletteLines()) {
            if (!fixture.sales().findChild<QWidget*>(line.control) && !missing.contains(line.control))
                missing.append(line.control);
        }
        QStringList expected;
        for (int i = 8; i <= 32; ++i)
            expected.append(u"kisayol_"_s + QString::number(i));
        QCOMPARE(missing, expected);
    }

    void pressPaintsTheTable_data() {
        addRows<PressPaintsTheTableRow>({{"resim1 stores 0", {1, u"0"_s}},
                                         {"resim2", {2, u"2"_s}},
                                         {"resim3", {3, u"3"_s}},
                                         {"resim4", {4, u"4"_s}}});
    }
    void pressPaintsTheTable() {
        QFETCH(const PressPaintsTheTableRow, row);
        ThemeFixture fixture;
        // From another look, so that nothing is right beforehand by chance.
        fixture.pressPicture(row.number == 3 ? 4 : 3);
        QVERIFY(!fixture.differences(row.number).isEmpty());
        fixture.pressPicture(row.number);
        QCOMPARE(fixture.differences(row.number), QString());
        QCOMPARE(fixture.key(u"tema"_s), row.stored);
        QCOMPARE(fixture.beeps, 2);
        QVERIFY(loaded<tema>());
        QVERIFY(fixture.themes().isVisible());
        QVERIFY(allAnswered(fixture.boxes));
    }

    void untouchedRowsStay() {
        ThemeFixture fixture;
        const auto colours = [&]() -> QString {
            return fixture.colour(u"Label4_8"_s, u"BackColor"_s) +
                   fixture.colour(u"Label4_8"_s, u"ForeColor"_s);
        };
        const QString dark = u"#404040#ffffff"_s;
        fixture.pressPicture(3);
        QCOMPARE(colours(), dark);
        fixture.pressPicture(1);
        QCOMPARE(colours(), dark);
        fixture.pressPicture(2);
        QCOMPARE(colours(), dark);
        fixture.pressPicture(4);
        QCOMPARE(colours(), u"#ffffff#000000"_s);
        fixture.pressPicture(1);
        QCOMPARE(colours(), u"#ffffff#000000"_s);
    }

    void privateTotalStays_data() {
        addRows<PrivateTotalStaysRow>(
            {{"1: private", {"toplamtemadegisken=1\n"_ba, true}},
             {"0: the palette's", {"toplamtemadegisken=0\n"_ba, false}},
             {"missing: the palette's", {"temaac=0\n"_ba, false}},
             {"2: neither", {"toplamtemadegisken=2\n"_ba, true}},
             {"a saved set doesn't matter here", {"toplamtemadegisken=0\nsonrenk=2\n"_ba, false}}});
    }
    void privateTotalStays() {
        QFETCH(const PrivateTotalStaysRow, row);
        const ThemeFixture fixture(row.keys);
        const QStringList expected[]{{u"#0000c0"_s, u"#ffffff"_s, u"#ffffff"_s, u"#ffffff"_s, u"#ffffff"_s},
                                     {u"#ff0000"_s, u"#ffffff"_s, u"#ffffff"_s, u"#ffffff"_s, u"#ffffff"_s},
                                     {u"#00ff00"_s, u"#000000"_s, u"#000000"_s, u"#000000"_s, u"#000000"_s},
                                     {u"#c000c0"_s, u"#ffffff"_s, u"#ffffff"_s, u"#ffffff"_s, u"#ffffff"_s}};
        vkToggleButton& total = *fixture.ui().toplam;
        for (int number = 1; number <= 4; ++number) {
            total.setForecolor(QColor(1, 2, 3));
            total.setBackcolor1(QColor(4, 5, 6));
            total.setBackcolor2(QColor(7, 8, 9));
            total.setBackcolorpushed1(QColor(10, 11, 12));
            total.setBackcolorpushed2(QColor(13, 14, 15));
            const QStringList own = totalColours(fixture);
            fixture.pressPicture(number);
            QCOMPARE(totalColours(fixture), row.stays ? own : expected[number - 1]);
        }
    }

    void valuesComeFromTheFile() {
        const ThemeFixture fixture("sonrenk=2\ntoplamtemadegisken=0\n");
        for (int number = 1; number <= 4; ++number) {
            sonrenk = 77;
            toplamtemadegisken = 1;
            kayitgetir1 = 55;
            fixture.ui().toplam->setForecolor(QColor(1, 2, 3));
            fixture.pressPicture(number);
            QCOMPARE(sonrenk, 2);
            QCOMPARE(toplamtemadegisken, 0);
            QCOMPARE(kayitgetir1, 55);
            QVERIFY(fixture.ui().toplam->forecolor() != QColor(1, 2, 3));
        }
    }

    void asksEachTime_data() {
        QTest::addColumn<int>("number");
        for (int number = 2; number <= 4; ++number)
            QTest::addRow("resim%d", number) << number;
    }
    void asksEachTime() {
        QFETCH(const int, number);
        ThemeFixture fixture("temaac=1\n");
        for (int press = 1; press <= 3; ++press) {
            fixture.expectQuestion(MessageBoxAnswer::yes);
            fixture.pressPicture(number);
            QCOMPARE(fixture.boxes.answered(), press);
            QCOMPARE(fixture.beeps, press);
        }
        QCOMPARE(fixture.differences(number), QString());
        QCOMPARE(fixture.key(u"tema"_s), QString::number(number));
        QVERIFY(allAnswered(fixture.boxes));
    }

    void firstPictureNeverAsks() {
        ThemeFixture fixture("temaac=1\ntema=4\n");
        for (int press = 1; press <= 3; ++press) {
            fixture.pressPicture(1);
            QCOMPARE(fixture.key(u"tema"_s), u"0"_s);
            QCOMPARE(fixture.beeps, press);
        }
        QCOMPARE(fixture.differences(1), QString());
        QCOMPARE(fixture.boxes.answered(), 0);
        QVERIFY(allAnswered(fixture.boxes));
    }

    void questionAsItLooks() {
        ThemeFixture fixture("temaac=1\n");
        fixture.expectQuestion(MessageBoxAnswer::yes);
        int opened = 0;
        connect(&fixture.boxes, &BoxAnswers::opened, this, [&](QMessageBox& box) {
            ++opened;
            QCOMPARE(fixture.beeps, 1);  // the sound comes before the question
            QCOMPARE(fixture.key(u"tema"_s), QString());
            QCOMPARE(box.icon(), QMessageBox::Warning);
            QStringList buttons;
            for (const QAbstractButton* button : box.buttons())
                buttons.append(button->text());
            buttons.sort();
            QCOMPARE(buttons, (QStringList{u"Evet"_s, u"Hayır"_s}));
            QVERIFY(box.defaultButton());
            QCOMPARE(box.defaultButton()->text(), u"Evet"_s);
        });
        fixture.pressPicture(2);
        QCOMPARE(opened, 1);
        QVERIFY(allAnswered(fixture.boxes));
    }

    void silencePaintsAndNoMore_data() {
        QTest::addColumn<int>("number");
        for (int number = 1; number <= 4; ++number)
            QTest::addRow("resim%d", number) << number;
    }
    void silencePaintsAndNoMore() {
        QFETCH(const int, number);
        const QByteArray keys = "temaac=1\ntema=9\n";
        const ThemeFixture fixture(keys);
        paintPalette(fixture.sales(), number == 3 ? Palette::resim4 : Palette::resim3);
        temasessiz = true;
        fixture.pressPicture(number);
        temasessiz = false;
        QCOMPARE(fixture.differences(number), QString());
        QCOMPARE(fixture.config(), "[ayar]\n" + keys);
        QCOMPARE(fixture.beeps, 0);
        QVERIFY(allAnswered(fixture.boxes));
    }

    void noChangesNothing_data() {
        QTest::addColumn<NoChangesNothingRow>("row");
        for (int number = 2; number <= 4; ++number) {
            QTest::addRow("resim%d, no", number) << NoChangesNothingRow{number, MessageBoxAnswer::no};
            QTest::addRow("resim%d, Escape", number) << NoChangesNothingRow{number, BoxAnswers::escape};
        }
    }
    void noChangesNothing() {
        QFETCH(const NoChangesNothingRow, row);
        ThemeFixture fixture("temaac=1\ntema=0\nsonrenk=1\n");
        fixture.pressPicture(1);
        const QByteArray file = fixture.config();
        sonrenk = 77;
        toplamtemadegisken = 66;
        fixture.expectQuestion(row.answer);
        fixture.pressPicture(row.number);
        QCOMPARE(fixture.differences(1), QString());
        QCOMPARE(fixture.config(), file);
        QCOMPARE(sonrenk, 77);
        QCOMPARE(toplamtemadegisken, 66);
        QVERIFY(fixture.picture(1).chosen());
        QVERIFY(!fixture.picture(row.number).chosen());
        QVERIFY(allAnswered(fixture.boxes));
    }

    void keyIsWrittenBeforeOrBehind_data() {
        addRows<KeyIsWrittenBeforeOrBehindRow>({{"resim1: last of all", {1, u"9"_s}},
                                                {"resim2: before painting", {2, u"2"_s}},
                                                {"resim3: before painting", {3, u"3"_s}},
                                                {"resim4: before painting", {4, u"4"_s}}});
    }
    void keyIsWrittenBeforeOrBehind() {
        QFETCH(const KeyIsWrittenBeforeOrBehindRow, row);
        const ThemeFixture fixture;
        fixture.pressPicture(row.number == 3 ? 4 : 3);
        ayaryaz(u"ayar"_s, u"tema"_s, u"9"_s, ayardosyasi());
        QStringList early;
        QStringList late;
        // Among the first and the last rows of the table.
        const OnRepaint first(*fixture.ui().adet, [&] { early.append(fixture.key(u"tema"_s)); });
        const OnRepaint last(*fixture.ui().Label4_7, [&] { late.append(fixture.key(u"tema"_s)); });
        fixture.pressPicture(row.number);
        early.removeDuplicates();
        late.removeDuplicates();
        QCOMPARE(late, QStringList{row.meanwhile});
        QCOMPARE(early, QStringList{row.meanwhile});
        QCOMPARE(fixture.key(u"tema"_s), row.number == 1 ? u"0"_s : QString::number(row.number));
    }
};

int main(int argc, char** argv) {
    return runTests<TestTema>(argc, argv);
}
#include "test_tema.moc"
