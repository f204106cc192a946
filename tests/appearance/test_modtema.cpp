#include "app/ayarmodul.h"
#include "appearance/modTema.h"
#include "data/baglanmamodulu.h"
#include "runtests.h"
#include "shopfixture.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

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

int main(int argc, char** argv) {
    return runTests<TestModTema>(argc, argv);
}
#include "test_modtema.moc"
