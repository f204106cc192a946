#include <QtTest>

#include "app/modTurkce.h"
#include "rows.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

class TestTranscription : public QObject {
    Q_OBJECT

    struct TranscribesRow {
        QString stored, letters;
    };
    struct RaisesNamesRow {
        QString typed, raised;
    };
    struct KnowsKeysRow {
        QString text;
        bool isKey;
    };
    struct FindsTextsRow {
        QString key, text;
    };

private Q_SLOTS:
    void transcribes_data() {
        QTest::addColumn<TranscribesRow>("row");
        const auto symbol = [](const char* name, char16_t sign, ushort codePoint) {
            QTest::newRow(name) << TranscribesRow{QString(QChar(sign)), QString(QChar(codePoint))};
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
        QTest::newRow("all of them at once") << TranscribesRow{u"|!#@$%&*^~{}"_s, u"ıİşŞğĞöÖüÜçÇ"_s};
        QTest::newRow("every occurrence") << TranscribesRow{u"~R~N ADI ~~"_s, u"ÜRÜN ADI ÜÜ"_s};
        QTest::newRow("a real percent sign") << TranscribesRow{u"10% indirim"_s, u"10Ğ indirim"_s};
        QTest::newRow("empty") << TranscribesRow{QString(), QString()};
        QTest::newRow("no symbol, ASCII")
            << TranscribesRow{u"ABCabc 0-9 .,;:_-+=()[]<>/\\\"'?`"_s, u"ABCabc 0-9 .,;:_-+=()[]<>/\\\"'?`"_s};
        QTest::newRow("no symbol, letters already") << TranscribesRow{u"ıİşŞğĞöÖüÜçÇ"_s, u"ıİşŞğĞöÖüÜçÇ"_s};
        QTest::newRow("no symbol, beyond the first plane")
            << TranscribesRow{u"a\U0001F4B0z"_s, u"a\U0001F4B0z"_s};
        QTest::newRow("line breaks stay") << TranscribesRow{u"bir\niki\r\n"_s, u"bir\niki\r\n"_s};
    }
    void transcribes() {
        QFETCH(const TranscribesRow, row);
        QCOMPARE(harfcevir(row.stored), row.letters);
        QCOMPARE(harfvarmi(row.stored), row.stored != row.letters);
        QCOMPARE(harfcevir(row.letters), row.letters);
        QVERIFY(!harfvarmi(row.letters));
    }

    void raisesNames_data() {
        addRows<RaisesNamesRow>(
            {{"i and dotless i differ", {u"iı"_s, u"İI"_s}},
             {"name with both", {u"ısırgan çayı ile süt"_s, u"ISIRGAN ÇAYI İLE SÜT"_s}},
             {"the other letters", {u"abcçdefgğhjklmnoöprsştuüvyz"_s, u"ABCÇDEFGĞHJKLMNOÖPRSŞTUÜVYZ"_s}},
             {"capitals stay", {u"SÜT Iİ 1L"_s, u"SÜT Iİ 1L"_s}},
             {"signs and digits stay", {u"2,5 kg - %50"_s, u"2,5 KG - %50"_s}},
             {"a letter without a capital keeps its place", {u"ß"_s, u"ß"_s}},
             {"empty", {QString(), QString()}}});
    }
    void raisesNames() {
        QFETCH(const RaisesNamesRow, row);
        QCOMPARE(buyukharf(row.typed), row.raised);
    }

    void knowsKeys_data() {
        addRows<KnowsKeysRow>({{"key", {u"MSG_EKLENDI"_s, true}},
                               {"unknown key", {u"MSG_YOK_BOYLE"_s, true}},
                               {"three characters", {u"A_B"_s, true}},
                               {"three underscores", {u"___"_s, true}},
                               {"underscore in front", {u"_AB"_s, true}},
                               {"underscore behind", {u"AB_"_s, true}},
                               {"digits count as upper case", {u"12_34"_s, true}},
                               {"inner blanks", {u"ONCE SATIS_YAP"_s, true}},
                               {"symbols count as upper case", {u"SATI@_YAP"_s, true}},
                               {"dotted capital I", {u"İPTAL_ET"_s, true}},
                               {"two characters", {u"A_"_s, false}},
                               {"no underscore", {u"HATA"_s, false}},
                               {"lower-case letters", {u"Sifre_yanlis"_s, false}},
                               {"one lower-case letter", {u"MSG_EKLENDi"_s, false}},
                               {"dotless small i", {u"MSG_EKLENDı"_s, false}},
                               {"blank in front", {u" MSG_EKLENDI"_s, false}},
                               {"blank behind", {u"MSG_EKLENDI "_s, false}},
                               {"empty", {QString(), false}},
                               {"blanks", {u"   "_s, false}}});
    }
    void knowsKeys() {
        QFETCH(const KnowsKeysRow, row);
        QCOMPARE(metinanahtarmi(row.text), row.isKey);
    }

    void findsTexts_data() {
        addRows<FindsTextsRow>(
            {{"upper case", {u"MSG_EKLENDI"_s, u"Eklendi"_s}},
             {"lower case", {u"msg_eklendi"_s, u"Eklendi"_s}},
             {"mixed case", {u"Msg_Urun_Silindi"_s, u"ürün silindi"_s}},
             {"i becomes I, as in the keys", {u"giris_hata"_s, u"Giriş sırasında hata"_s}},
             {"missing key", {u"MSG_YOK|"_s, u"MSG_YOK|"_s}},
             {"the two keys of one text, first", {u"UYARI"_s, u"Uyarı"_s}},
             {"the two keys of one text, second", {u"UYARI_BASLIK"_s, u"Uyarı"_s}},
             {"text that is its own key", {u"KAYDET"_s, u"KAYDET"_s}},
             {"its own key in lower case", {u"kaydet"_s, u"KAYDET"_s}},
             {"ends with a blank", {u"VERSIYON"_s, u"Versiyon: "_s}},
             {"page markers stay", {u"YAZDIR_SAYFA"_s, u"Toplam \\P sayfa  \\p  sayfadasınız."_s}},
             {"empty", {QString(), QString()}}});
    }
    void findsTexts() {
        QFETCH(const FindsTextsRow, row);
        QCOMPARE(metin(row.key), row.text);
    }
};

QTEST_APPLESS_MAIN(TestTranscription)
#include "test_transcription.moc"
