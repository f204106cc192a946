#include <QMessageBox>

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

class TestTemaScreen : public QObject {
    Q_OBJECT

    struct AskBoxFollowsTheFileRow {
        QByteArray keys;
        bool ticked;
    };
    struct MarkFollowsTheFileRow {
        QByteArray keys;
        int number;
    };

private Q_SLOTS:
    void captionsAndTips() {
        const ThemeFixture fixture;
        const tema& screen = fixture.themes();
        QCOMPARE(screen.windowTitle(), u"TEMA"_s);
        QCOMPARE(screen.ui.temaac->text(), u"Tema ayarlarken veya program açılırken temayı sor"_s);
        QCOMPARE(screen.ui.vkCommand1->caption(), u"GERİ"_s);
        QCOMPARE(screen.ui.vkCommand2->caption(), u"Toplamın rengini değiştir"_s);
        QCOMPARE(screen.ui.Label4_0->text(), u"VARSAYILAN"_s);
        QCOMPARE(screen.ui.Label4_1->text(), u"STANDART"_s);
        QCOMPARE(screen.ui.Label4_2->text(), u"KOYU"_s);
        QCOMPARE(screen.ui.Label4_3->text(), u"AÇIK"_s);
        QSet<QString> names;
        for (int number = 1; number <= 4; ++number) {
            QCOMPARE(fixture.picture(number).toolTip(), u"Resme tıklanınca anda tema ayarlanır"_s);
            names.insert(fixture.picture(number).accessibleName());
        }
        QCOMPARE(names.size(), 4);
    }

    void picturesAreAlike_data() {
        QTest::addColumn<QSize>("pixels");
        for (const QSize size : {QSize(800, 600), QSize(1024, 768), QSize(1366, 768), QSize(1920, 1080)})
            QTest::addRow("%dx%d", size.width(), size.height()) << size;
    }
    void picturesAreAlike() {
        QFETCH(const QSize, pixels);
        ThemeFixture fixture;
        setScreenMetricsSource([pixels] { return ScreenMetrics{pixels, 15, 15}; });
        fixture.reload();
        const Ui::tema& ui = fixture.themes().ui;
        const double scale = std::min(pixels.width() / 1024.0, pixels.height() / 768.0);
        // The text of the box needs no more than two lines.
        const int textWidth = ui.temaac->fontMetrics().horizontalAdvance(ui.temaac->text());
        QVERIFY(textWidth < 2 * (ui.temaac->width() - 50 * scale));
        for (int number = 2; number <= 4; ++number) {
            const QSize difference = fixture.picture(number).size() - fixture.picture(1).size();
            QVERIFY(std::abs(difference.width()) <= 1 && std::abs(difference.height()) <= 1);
        }
    }

    void themeScreenStaysAsItIs() {
        const ThemeFixture fixture;
        // Names that the table holds for the sales screen.
        const auto colours = [&] {
            const Ui::tema& ui = fixture.themes().ui;
            return QStringList{ui.vkCommand1->backcolor2().name(), ui.vkCommand2->forecolor().name(),
                               foreColor(*ui.Label4_3).name()};
        };
        const QStringList before = colours();
        fixture.pressPicture(3);
        QCOMPARE(colours(), before);
    }

    void askBoxFollowsTheFile_data() {
        addRows<AskBoxFollowsTheFileRow>({{"1", {"temaac=1\n"_ba, true}},
                                          {"0", {"temaac=0\n"_ba, false}},
                                          {"missing", {"tema=2\n"_ba, false}},
                                          {"empty", {"temaac=\n"_ba, false}},
                                          {"2", {"temaac=2\n"_ba, false}},
                                          {"-1", {"temaac=-1\n"_ba, false}},
                                          {"01 is 1", {"temaac=01\n"_ba, true}},
                                          {"1 with a text behind", {"temaac=1 evet\n"_ba, true}},
                                          {"1.2 is not 1", {"temaac=1.2\n"_ba, false}},
                                          {"no number", {"temaac=evet\n"_ba, false}}});
    }
    void askBoxFollowsTheFile() {
        QFETCH(const AskBoxFollowsTheFileRow, row);
        const ThemeFixture fixture(row.keys);
        QCOMPARE(fixture.themes().ui.temaac->isChecked(), row.ticked);
    }

    void askBoxWritesOnClick() {
        ThemeFixture fixture;
        CheckBox& box = *fixture.themes().ui.temaac;
        QCOMPARE(fixture.key(u"temaac"_s), QString());
        QTest::mouseClick(&box, Qt::LeftButton);
        QCOMPARE(fixture.key(u"temaac"_s), u"1"_s);
        QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(box.width() - 3, 3));  // anywhere on it
        QCOMPARE(fixture.key(u"temaac"_s), u"0"_s);
        box.setFocus();
        QTest::keyClick(&box, Qt::Key_Space);
        QCOMPARE(fixture.key(u"temaac"_s), u"1"_s);
        fixture.reload();
        QVERIFY(fixture.themes().ui.temaac->isChecked());
        fixture.expectQuestion(MessageBoxAnswer::no);
        fixture.pressPicture(2);
        QVERIFY(allAnswered(fixture.boxes));
    }

    void codeDoesNotWriteTheAskKey() {
        const ThemeFixture fixture("temaac=1\n");
        const QByteArray file = fixture.config();
        fixture.themes().ui.temaac->setChecked(false);
        QCOMPARE(fixture.config(), file);
        fixture.themes().ui.temaac->setChecked(true);
        QCOMPARE(fixture.config(), file);
    }

    void timersStandStill() {
        const ThemeFixture fixture;
        const tema& screen = fixture.themes();
        for (const Timer* timer :
             {&screen.resim1bas, &screen.resim2bas, &screen.resim3bas, &screen.resim4bas})
            QCOMPARE(timer->interval(), 0);
    }

    void tickRunsThePictureOnce_data() {
        QTest::addColumn<int>("number");
        for (int number = 1; number <= 4; ++number)
            QTest::addRow("resim%dbas", number) << number;
    }
    void tickRunsThePictureOnce() {
        QFETCH(const int, number);
        const ThemeFixture fixture;
        fixture.pressPicture(number == 3 ? 4 : 3);
        tema& screen = fixture.themes();
        Timer* const timers[]{&screen.resim1bas, &screen.resim2bas, &screen.resim3bas, &screen.resim4bas};
        Timer& timer = *timers[number - 1];
        timer.setInterval(1);
        QTRY_COMPARE(fixture.beeps, 2);
        QCOMPARE(timer.interval(), 0);
        QCOMPARE(fixture.differences(number), QString());
        QCOMPARE(fixture.key(u"tema"_s), number == 1 ? u"0"_s : QString::number(number));
    }

    void tickAsksOnce() {
        ThemeFixture fixture("temaac=1\n");
        fixture.expectQuestion(BoxAnswers::byHand);
        int ticksWhileAsking = 0;
        connect(&fixture.boxes, &BoxAnswers::opened, this, [&](QMessageBox& box) {
            QTest::qWait(20);  // twenty intervals
            ticksWhileAsking = fixture.beeps;
            box.reject();
        });
        fixture.themes().resim2bas.setInterval(1);
        QTRY_COMPARE(ticksWhileAsking, 1);
        QCOMPARE(fixture.themes().resim2bas.interval(), 0);
        QCOMPARE(fixture.key(u"tema"_s), QString());
        QVERIFY(allAnswered(fixture.boxes));
    }

    void keyboardPresses_data() {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("Return") << Qt::Key_Return;
        QTest::newRow("Enter") << Qt::Key_Enter;
        QTest::newRow("Space") << Qt::Key_Space;
    }
    void keyboardPresses() {
        QFETCH(const Qt::Key, key);
        const ThemeFixture fixture;
        for (const int number : {4, 2, 3, 1}) {
            fixture.picture(number).setFocus();
            QTest::keyClick(&fixture.picture(number), key);
            QCOMPARE(fixture.differences(number), QString());
        }
        CheckBox& box = *fixture.themes().ui.temaac;
        box.setFocus();
        QTest::keyClick(&box, key);
        QCOMPARE(fixture.key(u"temaac"_s), u"1"_s);
    }

    void heldKeyPressesOnce() {
        const ThemeFixture fixture;
        fixture.picture(2).setFocus();
        QTest::keyPress(&fixture.picture(2), Qt::Key_Return);
        for (int i = 0; i < 5; ++i) {
            QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, true);
            QApplication::sendEvent(&fixture.picture(2), &repeated);
        }
        QCOMPARE(fixture.beeps, 1);
    }

    void markFollowsTheChoice() {
        const ThemeFixture fixture;
        for (const int number : {1, 3, 2, 4, 1}) {
            fixture.pressPicture(number);
            for (int other = 1; other <= 4; ++other)
                QCOMPARE(fixture.picture(other).chosen(), other == number);
        }
    }

    void markFollowsTheFile_data() {
        addRows<MarkFollowsTheFileRow>({{"0", {"tema=0\n"_ba, 1}},
                                        {"2", {"tema=2\n"_ba, 2}},
                                        {"3", {"tema=3\n"_ba, 3}},
                                        {"4", {"tema=4\n"_ba, 4}},
                                        {"9", {"tema=9\n"_ba, 1}},
                                        {"missing", {"temaac=0\n"_ba, 1}}});
    }
    void markFollowsTheFile() {
        QFETCH(const MarkFollowsTheFileRow, row);
        const ThemeFixture fixture(row.keys);
        for (int other = 1; other <= 4; ++other)
            QCOMPARE(fixture.picture(other).chosen(), other == row.number);
    }

    void backGoesToTheMenu() {
        const ThemeFixture fixture;
        const QPointer<tema> screen = &fixture.themes();
        QTest::mouseClick(screen->ui.vkCommand1, Qt::LeftButton);
        QVERIFY(loaded<menu>());
        QVERIFY(fixture.sales().screen<menu>().isVisible());
        QVERIFY(!loaded<tema>());
        QTRY_VERIFY(!screen);
    }

    void totalColoursOpen() {
        const ThemeFixture fixture;
        QTest::mouseClick(fixture.themes().ui.vkCommand2, Qt::LeftButton);
        QVERIFY(loaded<toplamtema>());
        QVERIFY(fixture.sales().screen<toplamtema>().isVisible());
        QVERIFY(!fixture.sales().screen<toplamtema>().isModal());
        QVERIFY(loaded<tema>());
        QVERIFY(fixture.themes().isVisible());
    }
};

int main(int argc, char** argv) {
    return runTests<TestTemaScreen>(argc, argv);
}
#include "test_temascreen.moc"
