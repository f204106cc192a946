#include <QFile>

#include "app/ayarmodul.h"
#include "app/modTurkce.h"
#include "data/baglanmamodulu.h"
#include "data/schema.h"
#include "desktop/messagebox.h"
#include "runtests.h"
#include "servercluster.h"
#include "shopfixture.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

/// A till whose settings point at a database server.
class TestServer : public QObject {
    Q_OBJECT

    ServerCluster m_cluster;

    void configure(const QString& pointer) const {
        ayaryaz(u"ayar"_s, u"ip"_s, pointer, ayardosyasi());
        ayaryaz(u"ayar"_s, u"dbpass"_s, ServerCluster::password(), ayardosyasi());
    }

private Q_SLOTS:
    void initTestCase() {
        if (const QString missing = ServerCluster::missing(); !missing.isEmpty())
            QSKIP(qPrintable(missing));
        QVERIFY(m_cluster.start());
    }

    void makesItsTables() {
        ShopFixture fixture;
        const QString database = m_cluster.createDatabase();
        const QString pointer = m_cluster.writePointer(fixture.folder(), database);
        configure(pointer);
        QVERIFY(veritabanivarmi());
        QVERIFY(veritabaninibagla());
        QVERIFY(semahazir);
        QCOMPARE(
            baglantimetni,
            u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source=%1;Persist Security Info=False;Jet OLEDB:Database Password=%2"_s
                .arg(pointer, ServerCluster::password()));
        QCOMPARE(ayaroku(u"ayar"_s, u"con"_s, ayardosyasi()), baglantimetni);
        QCOMPARE(
            m_cluster.rows(
                database,
                u"SELECT table_name, string_agg(column_name || ' ' || coalesce(domain_name, data_type), ', ' "
                u"ORDER BY ordinal_position) "
                "FROM information_schema.columns WHERE table_schema = 'public' AND table_name IN ('kullanici', 'satislar') GROUP BY 1 ORDER BY 1"_s),
            (QList<QStringList>{
                {u"kullanici"_s,
                 u"id bigint, personeladi kovanix_metin50, sifre kovanix_metin50, yetki kovanix_metin50"_s},
                {u"satislar"_s,
                 u"no bigint, tarih kovanix_an, barkod kovanix_metin50, urun kovanix_metin50, adet double precision, fiyat double precision, alis double precision, kar double precision, toplam double precision, satis double precision"_s}}));
        QCOMPARE(
            m_cluster.rows(database,
                           u"SELECT indexname FROM pg_indexes WHERE indexname LIKE 'kovanix%' ORDER BY 1"_s),
            (QList<QStringList>{{u"kovanix_satislar_tarih"_s}, {u"kovanix_urunler_barkod"_s}}));
        storeTogether([] { baglanti().execute(u"INSERT INTO musteri (adi) VALUES ('Işıl')"_s); });
        QCOMPARE(m_cluster.rows(database, u"SELECT no, adi FROM musteri"_s),
                 (QList<QStringList>{{u"1"_s, u"Işıl"_s}}));
        QVERIFY(allAnswered(fixture.boxes));
    }

    void tellsOfAServerThatIsAway() {
        ShopFixture fixture;
        const QString database = m_cluster.createDatabase();
        const QString pointer = m_cluster.writePointer(fixture.folder(), database);
        configure(pointer);
        QVERIFY(baglantihazir());
        baglantikapat();
        m_cluster.stop();
        QString words;
        try {
            Connection().open(baglantiyazisi());
        } catch (const RuntimeError& error) {
            words = error.description();
        }
        QVERIFY2(words.startsWith(
                     u"Veritabanı sunucusuna ulaşılamıyor: sunucuyu ve ağ bağlantısını denetleyin ("_s),
                 qPrintable(words));
        for (int times = 0; times < 2; ++times) {
            fixture.boxes.expect(u"Hata"_s,
                                 harfcevir(u"Veritabanı açılamadı:\n"_s + pointer + u"\n\n"_s + words),
                                 MessageBoxAnswer::ok);
            QVERIFY(!baglantihazir());
        }
        QVERIFY(allAnswered(fixture.boxes));
        QVERIFY(m_cluster.restart());
    }

    /// What has no file behind it falls back as any path does: the name isn't looked at ahead of that.
    void aPointerThatIsNotThere() {
        ShopFixture fixture;
        fixture.makeDatabase();
        configure(fixture.file(u"yok.sunucu"_s));
        ayaryaz(u"ayar"_s, u"dbpass"_s, QString(), ayardosyasi());
        QCOMPARE(veritabaniyolu(), fixture.databaseFile());
        QVERIFY(baglantihazir());
    }
};

int main(int argc, char** argv) {
    return runTests<TestServer>(argc, argv);
}
#include "test_server.moc"
