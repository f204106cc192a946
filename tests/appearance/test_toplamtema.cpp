#include <QSet>
#include <memory>

#include "appearance/tema.h"
#include "runtests.h"
#include "totalfixture.h"
#include "widgets/caption.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

/// The screen of the total's colours: what it shows, the five colours, the presets, its ways out.
class ToplamTemaTest : public QObject {
    Q_OBJECT

    struct CaptionsAndTipsRow {
        QString text;
        QString tip;
    };
    struct ColorRow {
        int index;
        bool liveMode;
    };
    struct PressingASwatchRow {
        QString swatch;
        int from;
        bool liveMode;
        int key;
    };
    struct PresetsRow {
        QString button;
        Five five;
        bool liveMode;
    };

    std::unique_ptr<TotalFixture> m_shop;

    /// A fresh shop with the screen open; the keep switch is off in live mode.
    void begin(bool liveMode, const QByteArray& more = {}) {
        m_shop.reset();
        m_shop = std::make_unique<TotalFixture>(
            configuration((liveMode ? "toplamtemadegisken=1\ntemakaydetme1=False\n"_ba
                                    : "toplamtemadegisken=0\ntemakaydetme1=True\n"_ba) +
                          "sonrenk=2\nkayitgetir1=2\n" + more));
        m_shop->open();
    }
    const TotalFixture& shop() const { return *m_shop; }

    /// What a colour that was chosen by hand leaves behind.
    void verifyEndOfTheSets(bool liveMode) {
        QCOMPARE(sonrenk, 0);
        QCOMPARE(shop().onFile("sonrenk"), "0"_ba);
        QCOMPARE(kayitgetir1, liveMode ? 0 : 2);
        QCOMPARE(shop().onFile("kayitgetir1"), liveMode ? "0"_ba : "2"_ba);
        QCOMPARE(shop().fiveOnFile("toplamtemakyt", 1), texts(set1));
        QCOMPARE(shop().fiveOnFile("toplamtemakyt", 6), texts(set2));
        verifyMode(liveMode);
    }
    void verifyMode(bool liveMode) {
        QCOMPARE(toplamtemadegisken, liveMode ? 1 : 0);
        QCOMPARE(shop().onFile("toplamtemadegisken"), liveMode ? "1"_ba : "0"_ba);
        QCOMPARE(shop().onFile("temakaydetme1"), liveMode ? "False"_ba : "True"_ba);
    }

private Q_SLOTS:
    void cleanup() {
        const bool answered = !m_shop || allAnswered(m_shop->boxes);
        m_shop.reset();
        QVERIFY(answered);
    }

    void captionsAndTips_data() {
        QTest::addColumn<CaptionsAndTipsRow>("row");
        const auto row = [](const char* name, const QString& text, const QString& tip) {
            QTest::newRow(name) << CaptionsAndTipsRow{text, tip};
        };
        row("toplam", "0,00", "İnizleme");
        // The small ğ is stored that way.
        row("Command1", "YAZI RENGİNİ DEğĞİŞTİR", "Yazını rengini deştirir");
        row("Command2", "1. RENGİ DEğĞİŞTİR", "1.Rengi deştirir");
        row("Command3", "2. RENGİ DEğĞİŞTİR", "2.Rengi deştirir");
        row("Command4", "BASILI 1. RENGİ DEğĞİŞTİR", "1. Renk ile aynı yapabilirsiniz");
        row("Command5", "BASILI 2. RENGİ DEğĞİŞTİR", "2. Renk ile aynı yapabilirsiniz");
        row("Frame1", "", "");
        row("Frame2", "", "Tşklanınca 1.Renk ile 1.Basılı rengi aynı yapar");
        row("Frame3", "", "Tşklanınca 2.Renk ile 2.Basılı rengi aynı yapar");
        row("Frame4", "", "");
        row("Frame5", "", "");
        row("vkCommand1", "VARSAYILAN", "");
        row("vkCommand2", "STANDART", "");
        row("vkCommand3", "KOYU", "");
        row("vkCommand4", "AÇIK", "");
        row("vkCommand5", "GERİ", "");
        row("vkCommand6", "Kaydet", "Kaydetme den Ünce en sağ taraftaki butonlardan renkleri ayarlayın");
        row("vkCommand7", "Kaydedileni getir", "");
        row("vkCommand8", "Kaydedileni getir", "");
        row("vkCommand9", "Kaydet", "Kaydetme den Ünce en sağ taraftaki butonlardan renkleri ayarlayın");
        row("temakaydetme", "KAYDEDİYOR", "KAYDETMEMEK İşİN TIKLAYIN");
    }
    void captionsAndTips() {
        QFETCH(const CaptionsAndTipsRow, row);
        const TotalFixture fixture;
        QWidget& control = *fixture.control(QTest::currentDataTag());  // loaded, not yet shown
        QCOMPARE(caption(control), row.text);
        QCOMPARE(control.toolTip(), row.tip);
    }

    void everyControlHasAName() {
        begin(false);
        QCOMPARE(shop().total().windowTitle(), u"TOPLAM RENGI"_s);
        QSet<QString> swatchNames;
        for (const QWidget* control : shop().total().findChildren<QWidget*>()) {
            const bool pressed = qobject_cast<const QAbstractButton*>(control);
            const bool swatch = qobject_cast<const Swatch*>(control);
            if (!pressed && !swatch)
                continue;
            QVERIFY2(!control->accessibleName().isEmpty(), qUtf8Printable(control->objectName()));
            if (swatch)
                swatchNames.insert(control->accessibleName());
        }
        QCOMPARE(swatchNames.size(), 5);
    }

    void rows_data() {
        QTest::addColumn<ColorRow>("row");
        for (const bool liveMode : {false, true}) {
            for (const char* name :
                 {"forecolor", "backcolor1", "backcolor2", "backcolorpushed1", "backcolorpushed2"}) {
                static int next = 0;
                QTest::addRow("%s, %s", name, liveMode ? "KAYDETMİYOR" : "KAYDEDİYOR")
                    << ColorRow{next++ % 5, liveMode};
            }
        }
    }

    void choosingAColor_data() { rows_data(); }
    void choosingAColor() {
        QFETCH(const ColorRow, row);
        begin(row.liveMode);
        shop().choose(u"Command" + QString::number(row.index + 1), 0x123456);
        QVERIFY(showsEverywhere(shop(), with(shown, row.index, 0x123456)));
        // With the words' own sense turned round: only KAYDETMİYOR stores.
        QCOMPARE(shop().fiveOnFile("toplamtema", 1),
                 texts(row.liveMode ? with(live, row.index, 0x123456) : live));
        verifyEndOfTheSets(row.liveMode);
    }

    void aColorOfAnotherModelIsStoredAsItShows() {
        begin(true);
        shop().click("Command2");
        QTRY_VERIFY(TotalFixture::dialog());
        TotalFixture::dialog()->setCurrentColor(QColor::fromHsvF(0.61F, 0.37F, 0.83F));
        TotalFixture::dialog()->accept();
        QTRY_VERIFY(!TotalFixture::dialog());
        const ColorValue value = colorValue(QColor::fromHsvF(0.61F, 0.37F, 0.83F));
        QCOMPARE(shop().onFile("toplamtema2"), QByteArray::number(value));
        QCOMPARE(shop().real().backcolor1(), colorOf(value));
    }

    void whatTheFileTookIsWhatShows() {
        begin(true);
        shop().blockFile();
        shop().choose("Command3", 0x123456);
        // Nothing could be written, and an unreadable key is black.
        QVERIFY(showsEverywhere(shop(), with(shown, 2, 0)));
        QCOMPARE(kayitgetir1, 0);
        QCOMPARE(sonrenk, 0);
    }

    void swatchesFollowTheRealTotalInLiveMode() {
        begin(true);
        shop().real().setForecolor(colorOf(0x777777));
        shop().choose("Command2", 0x123456);
        QCOMPARE(shop().swatches(), (Five{0x777777, 0x123456, shown[2], shown[3], shown[4]}));
        begin(false);
        shop().real().setForecolor(colorOf(0x777777));
        shop().choose("Command2", 0x123456);
        QCOMPARE(shop().swatches(), (Five{shown[0], 0x123456, shown[2], shown[3], shown[4]}));
    }

    void cancelling_data() { rows_data(); }
    void cancelling() {
        QFETCH(const ColorRow, row);
        begin(row.liveMode);
        const QString button = u"Command" + QString::number(row.index + 1);
        const ColorValue own = shown.at(static_cast<size_t>(row.index));
        QCOMPARE(shop().cancel(button, 0x999999), own);
        QVERIFY(showsEverywhere(shop(), shown));
        // The handler carries on with the colour that the dialog holds.
        QCOMPARE(shop().fiveOnFile("toplamtema", 1), texts(row.liveMode ? with(live, row.index, own) : live));
        verifyEndOfTheSets(row.liveMode);

        shop().click("vkCommand2");
        const Five standard{255, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF};
        QCOMPARE(shop().cancel(button, 0x999999), standard.at(static_cast<size_t>(row.index)));
        QCOMPARE(colorsOf(shop().real()), standard);
    }

    void cancellingAfterAChoiceBringsItBack() {
        begin(true);
        shop().choose("Command2", 0x123456);
        shop().click("vkCommand3");
        QCOMPARE(colorValue(shop().real().backcolor1()), 0u);
        QCOMPARE(shop().cancel("Command2", 0x999999), 0x123456u);
        QCOMPARE(colorValue(shop().real().backcolor1()), 0x123456u);
        QCOMPARE(colorValue(shop().preview().backcolor1()), 0x123456u);
        QCOMPARE(shop().onFile("toplamtema2"), QByteArray::number(0x123456));
        // Each colour has a dialog of its own.
        QCOMPARE(shop().cancel("Command3", 0x999999), 0u);
        // A new screen has forgotten it.
        unload<toplamtema>();
        shop().open();
        shop().click("vkCommand4");
        QCOMPARE(shop().cancel("Command2", 0x999999), 0xFFFFFFu);
    }

    void theDialogGoesWithTheScreen() {
        begin(false);
        shop().click("Command1");
        QTRY_VERIFY(TotalFixture::dialog());
        QVERIFY(TotalFixture::dialog()->isModal());  // open, and the press is over
        unload<toplamtema>();
        QTRY_VERIFY(!TotalFixture::dialog());
        QCOMPARE(colorsOf(shop().real()), shown);
        QCOMPARE(shop().onFile("sonrenk"), "2"_ba);
    }

    void pressingASwatch_data() {
        QTest::addColumn<PressingASwatchRow>("row");
        const std::array keys{std::pair{0, "press"}, std::pair{int{Qt::Key_Return}, "Enter"},
                              std::pair{int{Qt::Key_Enter}, "Enter of the number pad"},
                              std::pair{int{Qt::Key_Space}, "Space"}};
        for (const bool liveMode : {false, true}) {
            for (const auto& [key, how] : keys) {
                const char* mode = liveMode ? "KAYDETMİYOR" : "KAYDEDİYOR";
                QTest::addRow("Frame2, %s, %s", how, mode)
                    << PressingASwatchRow{u"Frame2"_s, 1, liveMode, key};
                QTest::addRow("Frame3, %s, %s", how, mode)
                    << PressingASwatchRow{u"Frame3"_s, 2, liveMode, key};
            }
        }
    }
    void pressingASwatch() {
        QFETCH(const PressingASwatchRow, row);
        begin(row.liveMode);
        if (row.key == 0)
            QTest::mousePress(shop().control(row.swatch),
                              Qt::LeftButton);  // at once, before the button is let go
        else
            QTest::keyPress(shop().control(row.swatch), static_cast<Qt::Key>(row.key));
        const ColorValue copied = shown.at(static_cast<size_t>(row.from));
        QVERIFY(showsEverywhere(shop(), with(shown, row.from + 2, copied)));
        QCOMPARE(shop().fiveOnFile("toplamtema", 1),
                 texts(row.liveMode ? with(live, row.from + 2, copied) : live));
        verifyEndOfTheSets(row.liveMode);
    }

    void theOtherSwatchesOnlyShow_data() {
        QTest::addColumn<QString>("swatch");
        for (const QString& name : {u"Frame1"_s, u"Frame4"_s, u"Frame5"_s})
            QTest::newRow(qUtf8Printable(name)) << name;
    }
    void theOtherSwatchesOnlyShow() {
        QFETCH(const QString, swatch);
        begin(true);
        const QByteArray before = shop().config();
        shop().click(swatch);
        QCOMPARE(shop().control(swatch)->focusPolicy(), Qt::NoFocus);
        QVERIFY(showsEverywhere(shop(), shown));
        QCOMPARE(shop().config(), before);
    }

    void presets_data() {
        QTest::addColumn<PresetsRow>("row");
        constexpr ColorValue white = 16777215;
        for (const bool liveMode : {false, true}) {
            const auto row = [liveMode](const char* name, const QString& button, ColorValue fore,
                                        ColorValue back) {
                QTest::addRow("%s, %s", name, liveMode ? "KAYDETMİYOR" : "KAYDEDİYOR")
                    << PresetsRow{button, Five{fore, back, back, back, back}, liveMode};
            };
            row("VARSAYILAN", "vkCommand1", 12582912, white);
            row("STANDART", "vkCommand2", 255, white);
            row("KOYU", "vkCommand3", 65280, 0);
            row("AÇIK", "vkCommand4", 12583104, white);
        }
    }
    void presets() {
        QFETCH(const PresetsRow, row);
        begin(row.liveMode, "kaydedilenigetir=1\n");
        shop().click(row.button);
        QCOMPARE(colorsOf(shop().real()), row.five);
        QCOMPARE(colorsOf(shop().preview()), row.five);
        QCOMPARE(shop().swatches(), shown);  // they stay
        QCOMPARE(shop().fiveOnFile("toplamtema", 1), texts(row.five));
        QCOMPARE(shop().fiveOnFile("toplamtemakyt", 1), texts(set1));
        QCOMPARE(shop().fiveOnFile("toplamtemakyt", 6), texts(set2));
        for (const char* key : {"sonrenk", "kayitgetir1"})
            QCOMPARE(shop().onFile(key), "2"_ba);
        QCOMPARE(shop().onFile("kaydedilenigetir"), "1"_ba);
        QCOMPARE(sonrenk, 2);
        QCOMPARE(kayitgetir1, 2);
        verifyMode(row.liveMode);
    }

    void aPresetWritesTheKeysInOrder() {
        m_shop = std::make_unique<TotalFixture>("[ayar]\ntoplamtemadegisken=1\ntemakaydetme1=False\n");
        shop().open();
        const QByteArray before = shop().config();
        shop().click("vkCommand2");
        QCOMPARE(shop().config(), before +
                                      "toplamtema1=255\ntoplamtema2=16777215\ntoplamtema3=16777215\n"
                                      "toplamtema4=16777215\ntoplamtema5=16777215\n");
    }

    void aPresetShowsWhateverTheFileTook() {
        begin(false);
        shop().blockFile();
        shop().click("vkCommand2");
        const Five standard{255, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF};
        QCOMPARE(colorsOf(shop().real()), standard);
        QCOMPARE(colorsOf(shop().preview()), standard);
    }

    void goingBack() {
        begin(false);
        shop().click("vkCommand5");
        QVERIFY(!loaded<toplamtema>());
        QVERIFY(loaded<tema>());
        QVERIFY(screen<tema>().isVisible());
        QTRY_COMPARE(QApplication::activeWindow(), &screen<tema>());
    }

    void closingUnloads() {
        begin(false);
        shop().total().close();
        QVERIFY(!loaded<toplamtema>());
        QVERIFY(shop().sales().isVisible());
    }
};

int main(int argc, char** argv) {
    return runTests<ToplamTemaTest>(argc, argv);
}
#include "test_toplamtema.moc"
