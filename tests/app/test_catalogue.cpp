#include <QRegularExpression>
#include <QtTest>
#include <algorithm>
#include <array>

#include "app/modTurkce.h"
#include "app/textcatalogue.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct Row {
    const char* key;
    QStringView stored;
    QStringView display;
};

constexpr std::array<Row, 120> rows{{
    {"YAZILIM_ADI", u"Kovanix", u"Kovanix"},
    {"KAPAT", u"KAPAT", u"KAPAT"},
    {"SIFRE_GOSTER", u"@!FRE G*STER", u"ŞİFRE GÖSTER"},
    {"SIFRE_GIZLE", u"@!FRE G!ZLE", u"ŞİFRE GİZLE"},
    {"SIFREYI_GOSTER", u"@!FREY! G*STERMEK !{!N TIKLAYIN", u"ŞİFREYİ GÖSTERMEK İçİN TIKLAYIN"},
    {"SIFREYI_GIZLE", u"@!FREY! G!ZLEMEK !{!N TIKLAYIN", u"ŞİFREYİ GİZLEMEK İçİN TIKLAYIN"},
    {"VERSIYON", u"Versiyon: ", u"Versiyon: "},
    {"KULLANICI_ADI", u"Kullan|c| Ad|", u"Kullanıcı Adı"},
    {"SIFRE", u"#ifre", u"şifre"},
    {"GIRIS", u"G!R!@", u"GİRİŞ"},
    {"IPTAL", u"|ptal", u"ıptal"},
    {"MUSTERI_ADI", u"M^#teri Ad|", u"Müşteri Adı"},
    {"TELEFON", u"Telefon", u"Telefon"},
    {"BASARILI", u"Ba#ar|l|", u"Başarılı"},
    {"HATA", u"Hata", u"Hata"},
    {"UYARI", u"Uyar|", u"Uyarı"},
    {"BILGI", u"Bilgi", u"Bilgi"},
    {"EVET", u"Evet", u"Evet"},
    {"HAYIR", u"Hay|r", u"Hayır"},
    {"TAMAM", u"Tamam", u"Tamam"},
    {"MUSTERI_EKRANI", u"M^#teri Ekran|", u"Müşteri Ekranı"},
    {"URUN_KAYIT", u"^r^n Kay|t", u"ürün Kayıt"},
    {"URUN_ARAMA", u"^r^n Arama", u"ürün Arama"},
    {"RAPORLAR", u"Raporlar", u"Raporlar"},
    {"AYARLAR", u"Ayarlar", u"Ayarlar"},
    {"CIKIS", u"{|k|#", u"çıkış"},
    {"SATIS_EKRANI", u"Sat|# Ekran|", u"Satış Ekranı"},
    {"URUNLER", u"^r^nler", u"ürünler"},
    {"MUSTERILER", u"M^#teriler", u"Müşteriler"},
    {"KULLANICILAR", u"Kullan|c|lar", u"Kullanıcılar"},
    {"STOK_RAPORU", u"Stok Raporu", u"Stok Raporu"},
    {"Z_RAPORU", u"Z Raporu", u"Z Raporu"},
    {"SATIS_RAPORLARI", u"Sat|# Raporlar|", u"Satış Raporları"},
    {"GUNCELLE", u"G^ncelle", u"Güncelle"},
    {"DUZENLE", u"D^ZENLE", u"DüZENLE"},
    {"EKLE", u"EKLE", u"EKLE"},
    {"SIL", u"S!L", u"SİL"},
    {"GERI", u"GER!", u"GERİ"},
    {"VAZGEC", u"VAZGE}", u"VAZGEÇ"},
    {"KAYDET", u"KAYDET", u"KAYDET"},
    {"KAYDEDIYOR", u"KAYDED!YOR", u"KAYDEDİYOR"},
    {"KAYDETMIYOR", u"KAYDETM!YOR", u"KAYDETMİYOR"},
    {"YUKLENIYOR", u"Y|kleniyor...", u"Yıkleniyor..."},
    {"KATEGORI_ISMI", u"KATEGOR! !SM!", u"KATEGORİ İSMİ"},
    {"URUN_ISMI", u"~R~N !SM!", u"ÜRÜN İSMİ"},
    {"UYARI_BASLIK", u"Uyar|", u"Uyarı"},
    {"SIFRE_YANLIS", u"Kullan|c| #ifreniz Yanl|#t|r.", u"Kullanıcı şifreniz Yanlıştır."},
    {"KULLANICI_EKLE", u"Kullan|c| ekleyin", u"Kullanıcı ekleyin"},
    {"PROGRAM_KAPAT_SORU", u"PROGRAMI KAPATMAK !STED!%!N!ZE EM!NM!S!N!Z?",
     u"PROGRAMI KAPATMAK İSTEDİĞİNİZE EMİNMİSİNİZ?"},
    {"PROGRAM_KAPAT_BASLIK", u"Program kapatma", u"Program kapatma"},
    {"MSG_GIRIS_EKRANINA_DON", u"G!R!@ EKRANINA D*NMEK !STED!%!N!ZE EM!N M!S!N!Z?",
     u"GİRİŞ EKRANINA DÖNMEK İSTEDİĞİNİZE EMİN MİSİNİZ?"},
    {"MSG_KAYDET_ONAY", u"KAYDETMEK !STED!%!N!ZE EM!N M!S!N!Z?", u"KAYDETMEK İSTEDİĞİNİZE EMİN MİSİNİZ?"},
    {"ONCE_SATIS_YAP", u"&nce sat|# yap|n", u"önce satış yapın"},
    {"ONCE_URUN_SEC", u"*NCE ~R~N SE}", u"ÖNCE ÜRÜN SEÇ"},
    {"SATIS_TOPLAMI_FOOTER", u"SATI@ TOPLAMI", u"SATIŞ TOPLAMI"},
    {"Z_TARIH_ARASINDA", u" TAR!H ARASINDA ", u" TARİH ARASINDA "},
    {"Z_OZET", u"  *ZET  :", u"  ÖZET  :"},
    {"Z_ILK_FIS", u"!lk fi@ Zaman| : ", u"İlk fiŞ Zamanı : "},
    {"Z_SON_FIS", u"Son fi@ Zaman| : ", u"Son fiŞ Zamanı : "},
    {"Z_KASA_BILGI", u"KASA B!LG!LER! : ", u"KASA BİLGİLERİ : "},
    {"Z_TOPLAM_SATIS", u"Toplam sat|@|  : ", u"Toplam satıŞı  : "},
    {"URUN_BULUNAMADI", u"~R~N BULUNAMADI", u"ÜRÜN BULUNAMADI"},
    {"ONCE_BARKOD_OKUT", u"&nce ^r^n barkod okutun ", u"önce ürün barkod okutun "},
    {"SATIS_FIYATI_GIR", u"Sat|# fiyat| mutlaka girilmelidir", u"Satış fiyatı mutlaka girilmelidir"},
    {"ADET_LIMIT", u"Adet miktar| 8 basamaktan fazla olamaz", u"Adet miktarı 8 basamaktan fazla olamaz"},
    {"SON_YONETICI", u"Son Y&netici Silemezsiniz", u"Son Yönetici Silemezsiniz"},
    {"BASAMAK_LIMIT", u"L^TFEN DAHA AZ BASAMAKLI SAYI G*R^N^Z", u"LüTFEN DAHA AZ BASAMAKLI SAYI GÖRüNüZ"},
    {"URUN_KAYIT_YOK", u"Bu ^r^n daha &nce kaydedilmemi#", u"Bu ürün daha önce kaydedilmemiş"},
    {"URUN_KAYITLI", u"Bu ^r^n kay|tl|d|r ^r^n^ bulup d^zenleyebilirsiniz",
     u"Bu ürün kayıtlıdır ürünü bulup düzenleyebilirsiniz"},
    {"URUN_TANINDI", u"Bu ^r^n listenizde yok fakat ^r^n^ sistem tan|d| ve ^r^n ad|n| otomatik olarak girdi.",
     u"Bu ürün listenizde yok fakat ürünü sistem tanıdı ve ürün adını otomatik olarak girdi."},
    {"DB_HATA", u"Veritaban| ba|lant|s| kurulamad|", u"Veritabanı baılantısı kurulamadı"},
    {"MSG_SATIS_KAYIT_HATA", u"Sat|# kaydedilemedi", u"Satış kaydedilemedi"},
    {"MSG_YETKI_YOK", u"Bu i#lem i#in y&netici yetkisi gerekir.", u"Bu işlem işin yönetici yetkisi gerekir."},
    {"GIRIS_HATA", u"Giri# s|ras|nda hata", u"Giriş sırasında hata"},
    {"SATIS_ACILAMADI", u"Sat|# ekran| a{|lamad|", u"Satış ekranı açılamadı"},
    {"YAZARKASA_GONDER", u"YAZARKASAYA G*NDER!L!YOR", u"YAZARKASAYA GÖNDERİLİYOR"},
    {"MSG_URUN_SECIN", u"Listeden bir ^r^n se{in", u"Listeden bir ürün seçin"},
    {"MSG_URUN_LISTE_BOS", u"Listede ^r^n bulunmamaktad|r", u"Listede ürün bulunmamaktadır"},
    {"MSG_BARKOD_BOS", u"Barkod alan|n| bo# b|rakmay|n", u"Barkod alanını boş bırakmayın"},
    {"MSG_URUN_ADI_BOS", u"^r^n alan|n| bo# b|rakmay|n", u"ürün alanını boş bırakmayın"},
    {"MSG_SATIS_FIYAT_BOS", u"Sat|# fiyat| alan|n| bo# b|rakmay|n", u"Satış fiyatı alanını boş bırakmayın"},
    {"MSG_URUN_SIL_SEC", u"Silmek istedi$iniz ^r^n^ se{in", u"Silmek istediğiniz ürünü seçin"},
    {"MSG_URUN_SIL_SOR", u"^r^n silinsin mi?", u"ürün silinsin mi?"},
    {"MSG_URUN_SILINDI", u"^r^n silindi", u"ürün silindi"},
    {"MSG_URUN_EXPORT", u"^r^n raporu C:\\kovanix\\ klas^r^ne aktar|lm|#t|r.",
     u"ürün raporu C:\\kovanix\\ klasürüne aktarılmıştır."},
    {"MSG_ADRES_EXPORT", u"adres raporu C:\\kovanix\\ klas^r^ne aktar|lm|#t|r.",
     u"adres raporu C:\\kovanix\\ klasürüne aktarılmıştır."},
    {"MSG_SATIS_EXPORT", u"Sat|# raporu c:\\ s^r^c^s^ne ba#ar|yla aktar|lm|#t|r.",
     u"Satış raporu c:\\ sürücüsüne başarıyla aktarılmıştır."},
    {"MSG_SATIS_SIL_SEC", u"Silmek istedi$iniz SATI@I se{in", u"Silmek istediğiniz SATIŞI seçin"},
    {"MSG_SIL_ONAY", u"Silinsin mi?", u"Silinsin mi?"},
    {"MSG_TEMA_ONAY", u"TEMA AYARLANSIN MI?", u"TEMA AYARLANSIN MI?"},
    {"MSG_SATIS_IPTAL_SOR", u"SATI@ !PTAL ED!LS!N M!?", u"SATIŞ İPTAL EDİLSİN Mİ?"},
    {"MSG_EKLENDI", u"Eklendi", u"Eklendi"},
    {"MSG_DUZENLENDI", u"D^zenlendi", u"Düzenlendi"},
    {"MSG_SILINDI", u"Silindi", u"Silindi"},
    {"MSG_ADRES_SIL_SOR", u"adres silinsin mi?", u"adres silinsin mi?"},
    {"MSG_ADRES_SIL_SEC", u"Silmek istedi$iniz adres se{in", u"Silmek istediğiniz adres seçin"},
    {"MSG_ADRES_SILINDI", u"adres silindi", u"adres silindi"},
    {"MSG_MUSTERI_SEC", u"Listeden bir M^#teri se{in", u"Listeden bir Müşteri seçin"},
    {"MSG_MUSTERI_YOK", u"Listede M^#teri bulunmamaktad|r", u"Listede Müşteri bulunmamaktadır"},
    {"MSG_MUSTERI_ADI_BOS", u"M^#teri ad| alan|n| bo# b|rakmay|n", u"Müşteri adı alanını boş bırakmayın"},
    {"MSG_KULLANICI_SEC", u"Listeden bir kullan|c| se{in", u"Listeden bir kullanıcı seçin"},
    {"MSG_KULLANICI_YOK", u"Listede kullan|c| bulunmamaktad|r", u"Listede kullanıcı bulunmamaktadır"},
    {"MSG_KULLANICI_SIL_SEC", u"Silmek istedi$iniz kullan|c|y| se{in",
     u"Silmek istediğiniz kullanıcıyı seçin"},
    {"MSG_KULLANICI_ADI_BOS", u"Kullan|c| ad| bo# olamaz", u"Kullanıcı adı boş olamaz"},
    {"MSG_SIFRE_AYNI", u"L^tfen #ifre ve #ifre tekrar|n| ayn| yap|n|z",
     u"Lütfen şifre ve şifre tekrarını aynı yapınız"},
    {"MSG_DB_ACILAMADI", u"Veritaban| a{|lamad|:", u"Veritabanı açılamadı:"},
    {"MSG_ANA_PROG_YOK", u"Ana program bulunamad|:", u"Ana program bulunamadı:"},
    {"MSG_BASLATILAMADI", u"Kovanix ba#lat|lamad|:", u"Kovanix başlatılamadı:"},
    {"MSG_SILME_ONAY_BASLIK", u"Silme onay|", u"Silme onayı"},
    {"MSG_KULLANICI_SIL_SOR", u"KULLANICI S!L!NS!N M!?", u"KULLANICI SİLİNSİN Mİ?"},
    {"MSG_KULLANICI_SILINDI", u"Kullan|c| silindi", u"Kullanıcı silindi"},
    {"MSG_SIFRE_KOYMA_SOR", u"@ifre koymak istemedi$inize emin misiniz?",
     u"Şifre koymak istemediğinize emin misiniz?"},
    {"FIS_TARIH", u" Tarih ", u" Tarih "},
    {"FIS_SAAT", u" Saat ", u" Saat "},
    {"FIS_MUSTERI", u"M^#teri :", u"Müşteri :"},
    {"PESIN_MUSTERI", u"PE@!N M~@TER!", u"PEŞİN MÜŞTERİ"},
    {"FIS_TESEKKUR", u"TE@EKK~R EDER!Z", u"TEŞEKKÜR EDERİZ"},
    {"ADET_DEGISTI", u"Adet de$i#ti", u"Adet değişti"},
    {"YAZDIR_SAYFA", u"Toplam \\P sayfa  \\p  sayfadas|n|z.", u"Toplam \\P sayfa  \\p  sayfadasınız."},
    {"SIFRESIZ_GIRIS_TOOLTIP", u"#ifresiz kullan|c|yla giri# yap|ld|",
     u"şifresiz kullanıcıyla giriş yapıldı"},
}};

}  // namespace

class TestCatalogue : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void holds_data();
    void holds();
    void lacks_data();
    void lacks();
};

void TestCatalogue::holds_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("display");
    for (const Row& row : rows)
        QTest::newRow(row.key) << QString::fromLatin1(row.key) << row.stored.toString()
                               << row.display.toString();
}

void TestCatalogue::holds() {
    QFETCH(const QString, key);
    QFETCH(const QString, stored);
    QFETCH(const QString, display);
    const std::optional<QStringView> found = storedText(key);
    QVERIFY(found);
    QCOMPARE(found->toString(), stored);
    QCOMPARE(metin(key), display);
    QCOMPARE(metin(key.toLower()), display);
}

void TestCatalogue::lacks_data() {
    QTest::addColumn<QString>("key");
    QTest::newRow("unknown key") << u"MSG_YOK_BOYLE"_s;
    QTest::newRow("unknown key in lower case") << u"msg_yok_boyle"_s;
    QTest::newRow("unknown key with a symbol") << u"MSG_YOK|BOYLE"_s;
    QTest::newRow("empty") << QString();
    QTest::newRow("key with a blank in front") << u" MSG_EKLENDI"_s;
    QTest::newRow("key with a blank behind") << u"MSG_EKLENDI "_s;
    QTest::newRow("beginning of a key") << u"MSG_EKLEND"_s;
    QTest::newRow("a stored text is no key") << u"Kullan|c| Ad|"_s;
}

void TestCatalogue::lacks() {
    QFETCH(const QString, key);
    QVERIFY(!storedText(key));
    QCOMPARE(metin(key), key);
}

QTEST_APPLESS_MAIN(TestCatalogue)
#include "test_catalogue.moc"
