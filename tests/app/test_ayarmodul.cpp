#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include "app/ayarmodul.h"
#include "rows.h"

using kovanix::addRows;
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

    struct GoesRoundRow {
        QString written, read;
    };
    struct ReadsRow {
        QByteArray bytes;
        QString key, value;
    };

private Q_SLOTS:
    void goesRound_data() {
        addRows<GoesRoundRow>({{"text", {u"C:\\kovanix\\kovanix.data"_s, u"C:\\kovanix\\kovanix.data"_s}},
                               {"Turkish letters", {u"ıİşŞğĞöÖüÜçÇ"_s, u"ıİşŞğĞöÖüÜçÇ"_s}},
                               {"equals signs and semicolons",
                                {u"Data Source=a;Password=b=c"_s, u"Data Source=a;Password=b=c"_s}},
                               {"surrounding blanks are lost", {u"  SÜT 1L  "_s, u"SÜT 1L"_s}},
                               {"inner blanks stay", {u"A  B"_s, u"A  B"_s}},
                               {"surrounding quotes are lost", {u"\"EKMEK\""_s, u"EKMEK"_s}},
                               {"empty", {QString(), QString()}},
                               {"254 characters", {QString(254, u'x'), QString(254, u'x')}},
                               {"255 characters", {QString(255, u'x'), QString(254, u'x')}},
                               {"300 characters", {QString(300, u'x'), QString(254, u'x')}},
                               {"300 Turkish letters", {QString(300, u'ş'), QString(254, u'ş')}},
                               {"what the code page lacks", {u"100 Δ"_s, u"100 ?"_s}}});
    }
    void goesRound() {
        QFETCH(const GoesRoundRow, row);
        const QTemporaryDir folder;
        const QString file = folder.filePath(u"Kovanix.config"_s);
        ayaryaz(ayar, u"ip"_s, u"eski"_s, file);
        ayaryaz(ayar, u"ip"_s, row.written, file);
        QCOMPARE(ayaroku(ayar, u"ip"_s, file), row.read);
    }

    void reads_data() {
        addRows<ReadsRow>({{"plain", {"[ayar]\nip=a\n"_ba, u"ip"_s, u"a"_s}},
                           {"line ends of another system", {"[ayar]\r\nip=a\r\n"_ba, u"ip"_s, u"a"_s}},
                           {"key asked for in other case", {"[ayar]\nip=a\n"_ba, u"IP"_s, u"a"_s}},
                           {"key written in other case", {"[ayar]\nIP=a\n"_ba, u"ip"_s, u"a"_s}},
                           {"heading in other case", {"[AYAR]\nip=a\n"_ba, u"ip"_s, u"a"_s}},
                           {"key absent", {"[ayar]\ntema=2\n"_ba, u"ip"_s, QString()}},
                           {"section absent", {"[baska]\nip=a\n"_ba, u"ip"_s, QString()}},
                           {"empty file", {QByteArray(), u"ip"_s, QString()}},
                           {"blanks around", {"[ayar]\n  ip  =  a b  \n"_ba, u"ip"_s, u"a b"_s}},
                           {"single-byte letters", {"[ayar]\nip=\xfe\xf0\xfd\xdd\n"_ba, u"ip"_s, u"şğıİ"_s}},
                           {"first of two equal keys", {"[ayar]\nip=a\nip=b\n"_ba, u"ip"_s, u"a"_s}}});
    }
    void reads() {
        QFETCH(const ReadsRow, row);
        const QTemporaryDir folder;
        const QString file = folder.filePath(u"Kovanix.config"_s);
        write(file, row.bytes);
        QCOMPARE(ayaroku(ayar, row.key, file), row.value);
        QCOMPARE(bytesOf(file), row.bytes);
    }

    void firstWriteMakesTheFile() {
        const QTemporaryDir folder;
        const QString file = folder.filePath(u"Kovanix.config"_s);
        QVERIFY(!QFile::exists(file));
        ayaryaz(ayar, u"tema"_s, u"2"_s, file);
        QCOMPARE(bytesOf(file).replace("\r\n", "\n"), "[ayar]\ntema=2\n"_ba);
    }

    void emptyValueStandsInTheFile() {
        const QTemporaryDir folder;
        const QString file = folder.filePath(u"Kovanix.config"_s);
        ayaryaz(ayar, u"ana_program"_s, QString(), file);
        QCOMPARE(bytesOf(file).replace("\r\n", "\n"), "[ayar]\nana_program=\n"_ba);
    }

    void keepsTheOtherKeys() {
        const QTemporaryDir folder;
        const QString file = folder.filePath(u"Kovanix.config"_s);
        write(file, "[ayar]\nip=a\ntema=2\n[baska]\ntema=9\n"_ba);
        ayaryaz(ayar, u"TEMA"_s, u"3"_s, file);
        QCOMPARE(ayaroku(ayar, u"ip"_s, file), u"a"_s);
        QCOMPARE(ayaroku(ayar, u"tema"_s, file), u"3"_s);
        QCOMPARE(ayaroku(u"baska"_s, u"tema"_s, file), u"9"_s);
        QCOMPARE(bytesOf(file).toLower().count("tema="), 2);
    }

    void missingFileReadsEmpty() {
        const QTemporaryDir folder;
        const QString file = folder.filePath(u"Kovanix.config"_s);
        QCOMPARE(ayaroku(ayar, u"ip"_s, file), QString());
        QVERIFY(!QFile::exists(file));
        QCOMPARE(ayaroku(ayar, u"ip"_s, folder.path()), QString());
    }

    void lostWriteIsSilent() {
        const QTemporaryDir folder;
        const QString file = folder.filePath(u"yok/Kovanix.config"_s);
        ayaryaz(ayar, u"tema"_s, u"2"_s, file);
        QVERIFY(!QFile::exists(folder.filePath(u"yok"_s)));
        QCOMPARE(ayaroku(ayar, u"tema"_s, file), QString());
    }
};

QTEST_APPLESS_MAIN(TestAyarmodul)
#include "test_ayarmodul.moc"
