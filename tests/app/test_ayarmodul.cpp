#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include "app/ayarmodul.h"

using kovanix::ayaroku;
using kovanix::ayaryaz;
using namespace Qt::StringLiterals;

namespace {

const QString ayar = u"ayar"_s;

QByteArray bytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

}  // namespace

class TestAyarmodul : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void goesRound_data();
    void goesRound();
    void reads_data();
    void reads();
    void firstWriteMakesTheFile();
    void emptyValueStandsInTheFile();
    void keepsTheOtherKeys();
    void missingFileReadsEmpty();
    void lostWriteIsSilent();
};

void TestAyarmodul::goesRound_data() {
    QTest::addColumn<QString>("written");
    QTest::addColumn<QString>("read");
    QTest::newRow("text") << u"C:\\kovanix\\kovanix.data"_s << u"C:\\kovanix\\kovanix.data"_s;
    QTest::newRow("Turkish letters") << u"ıİşŞğĞöÖüÜçÇ"_s << u"ıİşŞğĞöÖüÜçÇ"_s;
    QTest::newRow("equals signs and semicolons")
        << u"Data Source=a;Password=b=c"_s << u"Data Source=a;Password=b=c"_s;
    QTest::newRow("surrounding blanks are lost") << u"  SÜT 1L  "_s << u"SÜT 1L"_s;
    QTest::newRow("inner blanks stay") << u"A  B"_s << u"A  B"_s;
    QTest::newRow("surrounding quotes are lost") << u"\"EKMEK\""_s << u"EKMEK"_s;
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("254 characters") << QString(254, u'x') << QString(254, u'x');
    QTest::newRow("255 characters") << QString(255, u'x') << QString(254, u'x');
    QTest::newRow("300 characters") << QString(300, u'x') << QString(254, u'x');
    QTest::newRow("300 Turkish letters") << QString(300, u'ş') << QString(254, u'ş');
    QTest::newRow("what the code page lacks") << u"100 Δ"_s << u"100 ?"_s;
}

void TestAyarmodul::goesRound() {
    QFETCH(const QString, written);
    QFETCH(const QString, read);
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"Kovanix.config"_s);
    ayaryaz(ayar, u"ip"_s, u"eski"_s, file);
    ayaryaz(ayar, u"ip"_s, written, file);
    QCOMPARE(ayaroku(ayar, u"ip"_s, file), read);
}

void TestAyarmodul::reads_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::newRow("plain") << "[ayar]\nip=a\n"_ba << u"ip"_s << u"a"_s;
    QTest::newRow("line ends of another system") << "[ayar]\r\nip=a\r\n"_ba << u"ip"_s << u"a"_s;
    QTest::newRow("key asked for in other case") << "[ayar]\nip=a\n"_ba << u"IP"_s << u"a"_s;
    QTest::newRow("key written in other case") << "[ayar]\nIP=a\n"_ba << u"ip"_s << u"a"_s;
    QTest::newRow("heading in other case") << "[AYAR]\nip=a\n"_ba << u"ip"_s << u"a"_s;
    QTest::newRow("key absent") << "[ayar]\ntema=2\n"_ba << u"ip"_s << QString();
    QTest::newRow("section absent") << "[baska]\nip=a\n"_ba << u"ip"_s << QString();
    QTest::newRow("empty file") << QByteArray() << u"ip"_s << QString();
    QTest::newRow("blanks around") << "[ayar]\n  ip  =  a b  \n"_ba << u"ip"_s << u"a b"_s;
    QTest::newRow("single-byte letters") << "[ayar]\nip=\xfe\xf0\xfd\xdd\n"_ba << u"ip"_s << u"şğıİ"_s;
    QTest::newRow("first of two equal keys") << "[ayar]\nip=a\nip=b\n"_ba << u"ip"_s << u"a"_s;
}

void TestAyarmodul::reads() {
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, key);
    QFETCH(const QString, value);
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"Kovanix.config"_s);
    write(file, bytes);
    QCOMPARE(ayaroku(ayar, key, file), value);
    QCOMPARE(bytesOf(file), bytes);
}

void TestAyarmodul::firstWriteMakesTheFile() {
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"Kovanix.config"_s);
    QVERIFY(!QFile::exists(file));
    ayaryaz(ayar, u"tema"_s, u"2"_s, file);
    QCOMPARE(bytesOf(file).replace("\r\n", "\n"), "[ayar]\ntema=2\n"_ba);
}

void TestAyarmodul::emptyValueStandsInTheFile() {
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"Kovanix.config"_s);
    ayaryaz(ayar, u"ana_program"_s, QString(), file);
    QCOMPARE(bytesOf(file).replace("\r\n", "\n"), "[ayar]\nana_program=\n"_ba);
}

void TestAyarmodul::keepsTheOtherKeys() {
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"Kovanix.config"_s);
    write(file, "[ayar]\nip=a\ntema=2\n[baska]\ntema=9\n"_ba);
    ayaryaz(ayar, u"TEMA"_s, u"3"_s, file);
    QCOMPARE(ayaroku(ayar, u"ip"_s, file), u"a"_s);
    QCOMPARE(ayaroku(ayar, u"tema"_s, file), u"3"_s);
    QCOMPARE(ayaroku(u"baska"_s, u"tema"_s, file), u"9"_s);
    QCOMPARE(bytesOf(file).toLower().count("tema="), 2);
}

void TestAyarmodul::missingFileReadsEmpty() {
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"Kovanix.config"_s);
    QCOMPARE(ayaroku(ayar, u"ip"_s, file), QString());
    QVERIFY(!QFile::exists(file));
    QCOMPARE(ayaroku(ayar, u"ip"_s, folder.path()), QString());
}

void TestAyarmodul::lostWriteIsSilent() {
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"yok/Kovanix.config"_s);
    ayaryaz(ayar, u"tema"_s, u"2"_s, file);
    QVERIFY(!QFile::exists(folder.filePath(u"yok"_s)));
    QCOMPARE(ayaroku(ayar, u"tema"_s, file), QString());
}

QTEST_APPLESS_MAIN(TestAyarmodul)
#include "test_ayarmodul.moc"
