#include <QtTest>

#include "app/modTurkce.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

class TestTranscription : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void transcribes_data();
    void transcribes();
    void raisesNames_data();
    void raisesNames();
    void knowsKeys_data();
    void knowsKeys();
    void findsTexts_data();
    void findsTexts();
};

void TestTranscription::transcribes_data() {
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("letters");
    const auto symbol = [](const char* name, char16_t sign, ushort codePoint) {
        QTest::newRow(name) << QString(QChar(sign)) << QString(QChar(codePoint));
    };
    symbol("bar is the dotless small i", u'|', 305);
    symbol("exclamation mark is the dotted capital I", u'!', 304);
    symbol("number sign is the small s with cedilla", u'#', 351);
    symbol("at sign is the capital S with cedilla", u'@', 350);
    symbol("dollar sign is the small soft g", u'$', 287);
    symbol("percent sign is the capital soft G", u'%', 286);
    symbol("ampersand is the small o with diaeresis", u'&', 246);
    symbol("asterisk is the capital O with diaeresis", u'*', 214);
    symbol("circumflex is the small u with diaeresis", u'^', 252);
    symbol("tilde is the capital U with diaeresis", u'~', 220);
    symbol("opening brace is the small c with cedilla", u'{', 231);
    symbol("closing brace is the capital C with cedilla", u'}', 199);
    QTest::newRow("all of them at once") << u"|!#@$%&*^~{}"_s << u"ıİşŞğĞöÖüÜçÇ"_s;
    QTest::newRow("every occurrence") << u"~R~N ADI ~~"_s << u"ÜRÜN ADI ÜÜ"_s;
    QTest::newRow("a real percent sign") << u"10% indirim"_s << u"10Ğ indirim"_s;
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("no symbol, ASCII")
        << u"ABCabc 0-9 .,;:_-+=()[]<>/\\\"'?`"_s << u"ABCabc 0-9 .,;:_-+=()[]<>/\\\"'?`"_s;
    QTest::newRow("no symbol, letters already") << u"ıİşŞğĞöÖüÜçÇ"_s << u"ıİşŞğĞöÖüÜçÇ"_s;
    QTest::newRow("no symbol, beyond the first plane") << u"a\U0001F4B0z"_s << u"a\U0001F4B0z"_s;
    QTest::newRow("line breaks stay") << u"bir\niki\r\n"_s << u"bir\niki\r\n"_s;
}

void TestTranscription::transcribes() {
    QFETCH(const QString, stored);
    QFETCH(const QString, letters);
    QCOMPARE(harfcevir(stored), letters);
    QCOMPARE(harfvarmi(stored), stored != letters);
    QCOMPARE(harfcevir(letters), letters);
    QVERIFY(!harfvarmi(letters));
}

void TestTranscription::raisesNames_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("raised");
    QTest::newRow("i and dotless i differ") << u"iı"_s << u"İI"_s;
    QTest::newRow("name with both") << u"ısırgan çayı ile süt"_s << u"ISIRGAN ÇAYI İLE SÜT"_s;
    QTest::newRow("the other letters")
        << u"abcçdefgğhjklmnoöprsştuüvyz"_s << u"ABCÇDEFGĞHJKLMNOÖPRSŞTUÜVYZ"_s;
    QTest::newRow("capitals stay") << u"SÜT Iİ 1L"_s << u"SÜT Iİ 1L"_s;
    QTest::newRow("signs and digits stay") << u"2,5 kg - %50"_s << u"2,5 KG - %50"_s;
    QTest::newRow("a letter without a capital keeps its place") << u"ß"_s << u"ß"_s;
    QTest::newRow("empty") << QString() << QString();
}

void TestTranscription::raisesNames() {
    QFETCH(const QString, typed);
    QFETCH(const QString, raised);
    QCOMPARE(buyukharf(typed), raised);
}

void TestTranscription::knowsKeys_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isKey");
    QTest::newRow("key") << u"MSG_EKLENDI"_s << true;
    QTest::newRow("unknown key") << u"MSG_YOK_BOYLE"_s << true;
    QTest::newRow("three characters") << u"A_B"_s << true;
    QTest::newRow("three underscores") << u"___"_s << true;
    QTest::newRow("underscore in front") << u"_AB"_s << true;
    QTest::newRow("underscore behind") << u"AB_"_s << true;
    QTest::newRow("digits count as upper case") << u"12_34"_s << true;
    QTest::newRow("inner blanks") << u"ONCE SATIS_YAP"_s << true;
    QTest::newRow("symbols count as upper case") << u"SATI@_YAP"_s << true;
    QTest::newRow("dotted capital I") << u"İPTAL_ET"_s << true;
    QTest::newRow("two characters") << u"A_"_s << false;
    QTest::newRow("no underscore") << u"HATA"_s << false;
    QTest::newRow("lower-case letters") << u"Sifre_yanlis"_s << false;
    QTest::newRow("one lower-case letter") << u"MSG_EKLENDi"_s << false;
    QTest::newRow("dotless small i") << u"MSG_EKLENDı"_s << false;
    QTest::newRow("blank in front") << u" MSG_EKLENDI"_s << false;
    QTest::newRow("blank behind") << u"MSG_EKLENDI "_s << false;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("blanks") << u"   "_s << false;
}

void TestTranscription::knowsKeys() {
    QFETCH(const QString, text);
    QFETCH(const bool, isKey);
    QCOMPARE(metinanahtarmi(text), isKey);
}

void TestTranscription::findsTexts_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("text");
    QTest::newRow("upper case") << u"MSG_EKLENDI"_s << u"Eklendi"_s;
    QTest::newRow("lower case") << u"msg_eklendi"_s << u"Eklendi"_s;
    QTest::newRow("mixed case") << u"Msg_Urun_Silindi"_s << u"ürün silindi"_s;
    QTest::newRow("i becomes I, as in the keys") << u"giris_hata"_s << u"Giriş sırasında hata"_s;
    QTest::newRow("missing key") << u"MSG_YOK|"_s << u"MSG_YOK|"_s;
    QTest::newRow("the two keys of one text, first") << u"UYARI"_s << u"Uyarı"_s;
    QTest::newRow("the two keys of one text, second") << u"UYARI_BASLIK"_s << u"Uyarı"_s;
    QTest::newRow("text that is its own key") << u"KAYDET"_s << u"KAYDET"_s;
    QTest::newRow("its own key in lower case") << u"kaydet"_s << u"KAYDET"_s;
    QTest::newRow("ends with a blank") << u"VERSIYON"_s << u"Versiyon: "_s;
    QTest::newRow("page markers stay") << u"YAZDIR_SAYFA"_s << u"Toplam \\P sayfa  \\p  sayfadasınız."_s;
    QTest::newRow("empty") << QString() << QString();
}

void TestTranscription::findsTexts() {
    QFETCH(const QString, key);
    QFETCH(const QString, text);
    QCOMPARE(metin(key), text);
}

QTEST_APPLESS_MAIN(TestTranscription)
#include "test_transcription.moc"
