#include <QTemporaryDir>
#include <QtTest>

#include "app/ayarmodul.h"
#include "desktop/folders.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

/// The two procedures that know the section and the shop's own file.
class TestAyar : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

private Q_SLOTS:
    void initTestCase() { setApplicationFolder(m_folder.path()); }

    void writesWhereTheShopReads() {
        QCOMPARE(ayar(u"tema"_s), QString());
        QVERIFY(!QFile::exists(ayardosyasi()));
        ayarla(u"tema"_s, u"3"_s);
        QCOMPARE(ayardosyasi(), m_folder.filePath(u"Kovanix.config"_s));
        QCOMPARE(ayaroku(u"ayar"_s, u"tema"_s, ayardosyasi()), u"3"_s);
        QCOMPARE(ayar(u"TEMA"_s), u"3"_s);
    }

    void followsTheFolder() {
        ayarla(u"tema"_s, u"2"_s);
        const QTemporaryDir other;
        setApplicationFolder(other.path());
        QCOMPARE(ayar(u"tema"_s), QString());
        setApplicationFolder(m_folder.path());
        QCOMPARE(ayar(u"tema"_s), u"2"_s);
    }

    void anotherSectionIsNotRead() {
        ayaryaz(u"baska"_s, u"ip"_s, u"a"_s, ayardosyasi());
        QCOMPARE(ayar(u"ip"_s), QString());
    }
};

QTEST_APPLESS_MAIN(TestAyar)
#include "test_ayar.moc"
