#include "app/ayarmodul.h"
#include "appearance/modTema.h"
#include "data/baglanmamodulu.h"
#include "rows.h"
#include "runtests.h"
#include "themefixture.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

/// A shop whose sales screen has just been loaded, with a configuration of that content.
class StartFixture : public ShopFixture {
public:
    explicit StartFixture(const QByteArray& keys) {
        openShop();
        writeConfig("[ayar]\n" + keys);
        setThemeBeep([this] { ++beeps; });
        sales();
    }
    ~StartFixture() { setThemeBeep({}); }

    /// A new configuration for what comes; the screen of themes hasn't seen it yet.
    void setKeys(const QByteArray& keys) const {
        writeConfig("[ayar]\n" + keys);
        unload<tema>();
    }

    satisekrani& sales() const { return screen<satisekrani>(); }

    int beeps = 0;
};

}  // namespace

class TestModTema : public QObject {
    Q_OBJECT

    struct ReadsNumbersRow {
        QString text;
        int value;
    };
    struct StartAppliesThePaletteRow {
        QByteArray keys;
        int number;
    };
    struct StartKeepsTheAskBoxRow {
        QByteArray keys;
        bool ticked;
    };
    struct PrivateTotalSurvivesThePaletteRow {
        QByteArray keys;
        QString total;
    };

private Q_SLOTS:
    void fileIsTheConfiguration() {
        const ShopFixture fixture;
        QCOMPARE(temadosyayolu(), fixture.file(u"Kovanix.config"_s));
        QCOMPARE(temadosyayolu(), ayardosyasi());
    }

    void readsNumbers_data() {
        addRows<ReadsNumbersRow>({{"0", {u"0"_s, 0}},
                                  {"1", {u"1"_s, 1}},
                                  {"2", {u"2"_s, 2}},
                                  {"negative", {u"-1"_s, -1}},
                                  {"empty", {QString(), 0}},
                                  {"no number", {u"mavi"_s, 0}},
                                  {"text behind the number", {u"2 mavi"_s, 2}},
                                  {"zero in front", {u"02"_s, 2}},
                                  {"largest integer", {u"2147483647"_s, 2147483647}},
                                  {"beyond an integer", {u"99999999999"_s, 0}},
                                  {"far beyond an integer", {u"-1E300"_s, 0}}});
    }
    void readsNumbers() {
        QFETCH(const ReadsNumbersRow, row);
        const ShopFixture fixture;
        for (const QString& key : {u"sonrenk"_s, u"kayitgetir1"_s, u"toplamtemadegisken"_s})
            ayaryaz(u"ayar"_s, key, row.text, ayardosyasi());
        sonrenk = kayitgetir1 = toplamtemadegisken = 77;
        temadegiskenlerioku();
        QCOMPARE(sonrenk, row.value);
        QCOMPARE(kayitgetir1, row.value);
        QCOMPARE(toplamtemadegisken, row.value);
    }

    void readsEachKeyIntoItsOwn() {
        const ShopFixture fixture;
        fixture.writeConfig(
            "[ayar]\nsonrenk=2\nkayitgetir1=3\ntoplamtemadegisken=1\ntemakaydetme1=True\n"_ba);
        temadegiskenlerioku();
        QCOMPARE(sonrenk, 2);
        QCOMPARE(kayitgetir1, 3);
        QCOMPARE(toplamtemadegisken, 1);
        QCOMPARE(temakaydetme1, u"True"_s);
        fixture.writeConfig("[ayar]\nsonrenk=1\n"_ba);
        QCOMPARE(sonrenk, 2);
        temadegiskenlerioku();
        QCOMPARE(sonrenk, 1);
        QCOMPARE(kayitgetir1, 0);
        QCOMPARE(temakaydetme1, QString());
    }

    void readsTheSwitchAsText_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("True") << u"True"_s;
        QTest::newRow("False") << u"False"_s;
        QTest::newRow("other words stay") << u"doğru"_s;
        QTest::newRow("digits stay text") << u"007"_s;
        QTest::newRow("empty") << QString();
    }
    void readsTheSwitchAsText() {
        QFETCH(const QString, text);
        const ShopFixture fixture;
        ayaryaz(u"ayar"_s, u"temakaydetme1"_s, text, ayardosyasi());
        temakaydetme1 = u"eski"_s;
        temadegiskenlerioku();
        QCOMPARE(temakaydetme1, text);
    }

    void missingFileClearsAll() {
        const ShopFixture fixture;
        sonrenk = kayitgetir1 = toplamtemadegisken = 77;
        temakaydetme1 = u"True"_s;
        temadegiskenlerioku();
        QCOMPARE(sonrenk, 0);
        QCOMPARE(kayitgetir1, 0);
        QCOMPARE(toplamtemadegisken, 0);
        QCOMPARE(temakaydetme1, QString());
        QCOMPARE(fixture.config(), QByteArray());
    }

    void startAppliesThePalette_data() {
        addRows<StartAppliesThePaletteRow>(
            {{"no theme key", {"ensonkikisayol=1\n"_ba, 1}},
             {"0", {"tema=0\n"_ba, 1}},
             {"1", {"tema=1\n"_ba, 1}},
             {"2", {"tema=2\n"_ba, 2}},
             {"3", {"tema=3\n"_ba, 3}},
             {"4", {"tema=4\n"_ba, 4}},
             {"5", {"tema=5\n"_ba, 1}},
             {"9", {"tema=9\n"_ba, 1}},
             {"negative", {"tema=-3\n"_ba, 1}},
             {"no number", {"tema=koyu\n"_ba, 1}},
             {"text behind the number", {"tema=3 koyu\n"_ba, 3}},
             {"rounded to a whole number", {"tema=2.6\n"_ba, 3}},
             {"beyond an integer", {"tema=99999999999\n"_ba, 1}},
             {"asks at other times", {"tema=4\ntemaac=1\n"_ba, 4}},
             {"resim1 and asks at other times", {"tema=7\ntemaac=1\n"_ba, 1}}});
    }
    void startAppliesThePalette() {
        QFETCH(const StartAppliesThePaletteRow, row);
        const StartFixture fixture({});
        fixture.setKeys(row.keys);
        // From another look, so that nothing is right beforehand by chance.
        const Palette other = row.number == 3 ? Palette::resim4 : Palette::resim3;
        paintTotal(fixture.sales(), other);
        paintPalette(fixture.sales(), other);
        QVERIFY(!paletteDifferences(fixture.sales(), row.number).isEmpty());
        temabaslangicuygula();
        QCOMPARE(paletteDifferences(fixture.sales(), row.number).join(u'\n'), QString());
        QCOMPARE(fixture.config(), "[ayar]\n" + row.keys);
        QCOMPARE(fixture.beeps, 0);
        QVERIFY(!temasessiz);
        QVERIFY(allAnswered(fixture.boxes));
    }

    void salesScreenComesInItsPalette() {
        const StartFixture fixture("tema=3\ntemaac=1\n");
        QCOMPARE(paletteDifferences(fixture.sales(), 3).join(u'\n'), QString());
        QCOMPARE(fixture.beeps, 0);
        QVERIFY(!fixture.sales().isVisible());
        QVERIFY(allAnswered(fixture.boxes));
    }

    void startReadsTheValuesFirst() {
        const StartFixture fixture("sonrenk=0\nkayitgetir1=2\ntoplamtemadegisken=0\ntemakaydetme1=True\n");
        sonrenk = kayitgetir1 = toplamtemadegisken = 77;
        temakaydetme1.clear();
        temabaslangicuygula();
        QCOMPARE(sonrenk, 0);
        QCOMPARE(kayitgetir1, 2);
        QCOMPARE(toplamtemadegisken, 0);
        QCOMPARE(temakaydetme1, u"True"_s);
    }

    void startLoadsTheThemesUnseen() {
        const StartFixture fixture({});
        unload<tema>();
        temabaslangicuygula();
        QVERIFY(loaded<tema>());
        QVERIFY(!fixture.sales().screen<tema>().isVisible());
    }

    void startKeepsTheAskBox_data() {
        addRows<StartKeepsTheAskBoxRow>(
            {{"ticked", {"temaac=1\ntema=3\n"_ba, true}}, {"clear", {"temaac=0\ntema=3\n"_ba, false}}});
    }
    void startKeepsTheAskBox() {
        QFETCH(const StartKeepsTheAskBoxRow, row);
        const StartFixture fixture({});
        fixture.setKeys(row.keys);
        tema& themes = fixture.sales().screen<tema>();
        QCOMPARE(themes.ui.temaac->isChecked(), row.ticked);
        QStringList states;
        connect(themes.ui.temaac, &QCheckBox::toggled, &themes,
                [&](bool on) { states.append(on ? u"on"_s : u"off"_s); });
        themes.TemaKayitliUygula();
        QCOMPARE(states, row.ticked ? (QStringList{u"off"_s, u"on"_s}) : QStringList());
        QCOMPARE(themes.ui.temaac->isChecked(), row.ticked);
        QVERIFY(!temasessiz);
        QCOMPARE(fixture.config(), "[ayar]\n" + row.keys);
    }

    void privateTotalSurvivesThePalette_data() {
        addRows<PrivateTotalSurvivesThePaletteRow>(
            {{"none: as the palette left it", {""_ba, u"#00ff00 #000000 #000000 #000000 #000000"_s}},
             {"live colours win over a saved set",
              {"toplamtemadegisken=1\nsonrenk=2\nkayitgetir1=2\n"_ba,
               u"#010000 #020000 #030000 #040000 #050000"_s}},
             {"saved set 1", {"sonrenk=1\n"_ba, u"#0b0000 #0c0000 #0d0000 #0e0000 #0f0000"_s}},
             {"saved set 2", {"sonrenk=2\n"_ba, u"#150000 #160000 #170000 #180000 #190000"_s}}});
    }
    void privateTotalSurvivesThePalette() {
        QFETCH(PrivateTotalSurvivesThePaletteRow, row);
        for (int i = 1; i <= 5; ++i) {
            row.keys += "toplamtema" + QByteArray::number(i) + '=' + QByteArray::number(i) + '\n';
            row.keys += "toplamtemakyt" + QByteArray::number(i) + '=' + QByteArray::number(i + 10) + '\n';
            row.keys += "toplamtemakyt" + QByteArray::number(i + 5) + '=' + QByteArray::number(i + 20) + '\n';
        }
        const StartFixture fixture("tema=3\n" + row.keys);
        QStringList shown;
        for (const auto& property :
             {u"forecolor"_s, u"backcolor1"_s, u"backcolor2"_s, u"backcolorpushed1"_s, u"backcolorpushed2"_s})
            shown.append(liveColour(*fixture.sales().ui.toplam, property));
        QCOMPARE(shown.join(u' '), row.total);
        // Everything else is the palette's.
        QStringList others = paletteDifferences(fixture.sales(), 3);
        others.removeIf([](const QString& line) { return line.startsWith(u"toplam."); });
        QCOMPARE(others.join(u'\n'), QString());
    }
};

int main(int argc, char** argv) {
    return runTests<TestModTema>(argc, argv);
}
#include "test_modtema.moc"
