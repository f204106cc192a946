#include "app/ayarmodul.h"
#include "appearance/modTema.h"
#include "data/baglanmamodulu.h"
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

private Q_SLOTS:
    void fileIsTheConfiguration();
    void readsNumbers_data();
    void readsNumbers();
    void readsEachKeyIntoItsOwn();
    void readsTheSwitchAsText_data();
    void readsTheSwitchAsText();
    void missingFileClearsAll();
    void startAppliesThePalette_data();
    void startAppliesThePalette();
    void salesScreenComesInItsPalette();
    void startReadsTheValuesFirst();
    void startLoadsTheThemesUnseen();
    void startKeepsTheAskBox_data();
    void startKeepsTheAskBox();
    void privateTotalSurvivesThePalette_data();
    void privateTotalSurvivesThePalette();
};

void TestModTema::fileIsTheConfiguration() {
    const ShopFixture fixture;
    QCOMPARE(temadosyayolu(), fixture.file(u"Kovanix.config"_s));
    QCOMPARE(temadosyayolu(), ayardosyasi());
}

void TestModTema::readsNumbers_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("value");
    QTest::newRow("0") << u"0"_s << 0;
    QTest::newRow("1") << u"1"_s << 1;
    QTest::newRow("2") << u"2"_s << 2;
    QTest::newRow("negative") << u"-1"_s << -1;
    QTest::newRow("empty") << QString() << 0;
    QTest::newRow("no number") << u"mavi"_s << 0;
    QTest::newRow("text behind the number") << u"2 mavi"_s << 2;
    QTest::newRow("zero in front") << u"02"_s << 2;
    QTest::newRow("largest integer") << u"2147483647"_s << 2147483647;
    QTest::newRow("beyond an integer") << u"99999999999"_s << 0;
    QTest::newRow("far beyond an integer") << u"-1E300"_s << 0;
}

void TestModTema::readsNumbers() {
    QFETCH(const QString, text);
    QFETCH(const int, value);
    const ShopFixture fixture;
    for (const QString& key : {u"sonrenk"_s, u"kayitgetir1"_s, u"toplamtemadegisken"_s})
        ayaryaz(u"ayar"_s, key, text, ayardosyasi());
    sonrenk = kayitgetir1 = toplamtemadegisken = 77;
    temadegiskenlerioku();
    QCOMPARE(sonrenk, value);
    QCOMPARE(kayitgetir1, value);
    QCOMPARE(toplamtemadegisken, value);
}

void TestModTema::readsEachKeyIntoItsOwn() {
    const ShopFixture fixture;
    fixture.writeConfig("[ayar]\nsonrenk=2\nkayitgetir1=3\ntoplamtemadegisken=1\ntemakaydetme1=True\n"_ba);
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

void TestModTema::readsTheSwitchAsText_data() {
    QTest::addColumn<QString>("text");
    QTest::newRow("True") << u"True"_s;
    QTest::newRow("False") << u"False"_s;
    QTest::newRow("other words stay") << u"doğru"_s;
    QTest::newRow("digits stay text") << u"007"_s;
    QTest::newRow("empty") << QString();
}

void TestModTema::readsTheSwitchAsText() {
    QFETCH(const QString, text);
    const ShopFixture fixture;
    ayaryaz(u"ayar"_s, u"temakaydetme1"_s, text, ayardosyasi());
    temakaydetme1 = u"eski"_s;
    temadegiskenlerioku();
    QCOMPARE(temakaydetme1, text);
}

void TestModTema::missingFileClearsAll() {
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

void TestModTema::startAppliesThePalette_data() {
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<int>("number");
    QTest::newRow("no theme key") << "ensonkikisayol=1\n"_ba << 1;
    QTest::newRow("0") << "tema=0\n"_ba << 1;
    QTest::newRow("1") << "tema=1\n"_ba << 1;
    QTest::newRow("2") << "tema=2\n"_ba << 2;
    QTest::newRow("3") << "tema=3\n"_ba << 3;
    QTest::newRow("4") << "tema=4\n"_ba << 4;
    QTest::newRow("5") << "tema=5\n"_ba << 1;
    QTest::newRow("9") << "tema=9\n"_ba << 1;
    QTest::newRow("negative") << "tema=-3\n"_ba << 1;
    QTest::newRow("no number") << "tema=koyu\n"_ba << 1;
    QTest::newRow("text behind the number") << "tema=3 koyu\n"_ba << 3;
    QTest::newRow("rounded to a whole number") << "tema=2.6\n"_ba << 3;
    QTest::newRow("beyond an integer") << "tema=99999999999\n"_ba << 1;
    QTest::newRow("asks at other times") << "tema=4\ntemaac=1\n"_ba << 4;
    QTest::newRow("resim1 and asks at other times") << "tema=7\ntemaac=1\n"_ba << 1;
}

void TestModTema::startAppliesThePalette() {
    QFETCH(const QByteArray, keys);
    QFETCH(const int, number);
    const StartFixture fixture({});
    fixture.setKeys(keys);
    // From another look, so that nothing is right beforehand by chance.
    const Palette other = number == 3 ? Palette::resim4 : Palette::resim3;
    paintTotal(fixture.sales(), other);
    paintPalette(fixture.sales(), other);
    QVERIFY(!paletteDifferences(fixture.sales(), number).isEmpty());
    temabaslangicuygula();
    QCOMPARE(paletteDifferences(fixture.sales(), number).join(u'\n'), QString());
    QCOMPARE(fixture.config(), "[ayar]\n" + keys);
    QCOMPARE(fixture.beeps, 0);
    QVERIFY(!temasessiz);
    QVERIFY(allAnswered(fixture.boxes));
}

void TestModTema::salesScreenComesInItsPalette() {
    const StartFixture fixture("tema=3\ntemaac=1\n");
    QCOMPARE(paletteDifferences(fixture.sales(), 3).join(u'\n'), QString());
    QCOMPARE(fixture.beeps, 0);
    QVERIFY(!fixture.sales().isVisible());
    QVERIFY(allAnswered(fixture.boxes));
}

void TestModTema::startReadsTheValuesFirst() {
    const StartFixture fixture("sonrenk=0\nkayitgetir1=2\ntoplamtemadegisken=0\ntemakaydetme1=True\n");
    sonrenk = kayitgetir1 = toplamtemadegisken = 77;
    temakaydetme1.clear();
    temabaslangicuygula();
    QCOMPARE(sonrenk, 0);
    QCOMPARE(kayitgetir1, 2);
    QCOMPARE(toplamtemadegisken, 0);
    QCOMPARE(temakaydetme1, u"True"_s);
}

void TestModTema::startLoadsTheThemesUnseen() {
    const StartFixture fixture({});
    unload<tema>();
    temabaslangicuygula();
    QVERIFY(loaded<tema>());
    QVERIFY(!fixture.sales().screen<tema>().isVisible());
}

void TestModTema::startKeepsTheAskBox_data() {
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<bool>("ticked");
    QTest::newRow("ticked") << "temaac=1\ntema=3\n"_ba << true;
    QTest::newRow("clear") << "temaac=0\ntema=3\n"_ba << false;
}

void TestModTema::startKeepsTheAskBox() {
    QFETCH(const QByteArray, keys);
    QFETCH(const bool, ticked);
    const StartFixture fixture({});
    fixture.setKeys(keys);
    tema& themes = fixture.sales().screen<tema>();
    QCOMPARE(themes.ui.temaac->isChecked(), ticked);
    QStringList states;
    connect(themes.ui.temaac, &QCheckBox::toggled, &themes,
            [&](bool on) { states.append(on ? u"on"_s : u"off"_s); });
    themes.TemaKayitliUygula();
    QCOMPARE(states, ticked ? (QStringList{u"off"_s, u"on"_s}) : QStringList());
    QCOMPARE(themes.ui.temaac->isChecked(), ticked);
    QVERIFY(!temasessiz);
    QCOMPARE(fixture.config(), "[ayar]\n" + keys);
}

void TestModTema::privateTotalSurvivesThePalette_data() {
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<QString>("total");
    QTest::newRow("none: as the palette left it") << ""_ba << u"#00ff00 #000000 #000000 #000000 #000000"_s;
    QTest::newRow("live colours win over a saved set")
        << "toplamtemadegisken=1\nsonrenk=2\nkayitgetir1=2\n"_ba
        << u"#010000 #020000 #030000 #040000 #050000"_s;
    QTest::newRow("saved set 1") << "sonrenk=1\n"_ba << u"#0b0000 #0c0000 #0d0000 #0e0000 #0f0000"_s;
    QTest::newRow("saved set 2") << "sonrenk=2\n"_ba << u"#150000 #160000 #170000 #180000 #190000"_s;
}

void TestModTema::privateTotalSurvivesThePalette() {
    QFETCH(QByteArray, keys);
    QFETCH(const QString, total);
    for (int i = 1; i <= 5; ++i) {
        keys += "toplamtema" + QByteArray::number(i) + '=' + QByteArray::number(i) + '\n';
        keys += "toplamtemakyt" + QByteArray::number(i) + '=' + QByteArray::number(i + 10) + '\n';
        keys += "toplamtemakyt" + QByteArray::number(i + 5) + '=' + QByteArray::number(i + 20) + '\n';
    }
    const StartFixture fixture("tema=3\n" + keys);
    QStringList shown;
    for (const auto& property :
         {u"forecolor"_s, u"backcolor1"_s, u"backcolor2"_s, u"backcolorpushed1"_s, u"backcolorpushed2"_s})
        shown.append(liveColour(*fixture.sales().ui.toplam, property));
    QCOMPARE(shown.join(u' '), total);
    // Everything else is the palette's.
    QStringList others = paletteDifferences(fixture.sales(), 3);
    others.removeIf([](const QString& line) { return line.startsWith(u"toplam."); });
    QCOMPARE(others.join(u'\n'), QString());
}

int main(int argc, char** argv) {
    return runTests<TestModTema>(argc, argv);
}
#include "test_modtema.moc"
