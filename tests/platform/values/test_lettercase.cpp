#include <QTest>

#include "values/lettercase.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

class TestLetterCase : public QObject {
    Q_OBJECT

    struct MapsRow {
        QString text, ordinaryUpper, ordinaryLower, turkishUpper, turkishLower, folded;
    };

private Q_SLOTS:
    void maps_data() {
        QTest::addColumn<MapsRow>("row");

        QTest::newRow("empty") << MapsRow{"", "", "", "", "", ""};
        QTest::newRow("i") << MapsRow{"i", "I", "i", "İ", "i", "i"};
        QTest::newRow("I") << MapsRow{"I", "I", "i", "I", "ı", "i"};
        QTest::newRow("dotless ı") << MapsRow{"ı", "I", "ı", "I", "ı", "i"};
        QTest::newRow("dotted İ") << MapsRow{"İ", "İ", "i", "İ", "i", "i"};
        QTest::newRow("Turkish letters, small")
            << MapsRow{"çğöşü", "ÇĞÖŞÜ", "çğöşü", "ÇĞÖŞÜ", "çğöşü", "çğöşü"};
        QTest::newRow("Turkish letters, capital")
            << MapsRow{"ÇĞÖŞÜ", "ÇĞÖŞÜ", "çğöşü", "ÇĞÖŞÜ", "çğöşü", "çğöşü"};
        QTest::newRow("letters with a roof") << MapsRow{"âîû", "ÂÎÛ", "âîû", "ÂÎÛ", "âîû", "âîû"};
        QTest::newRow("product name") << MapsRow{"Kırmızı biber", "KIRMIZI BIBER", "kırmızı biber",
                                                 "KIRMIZI BİBER", "kırmızı biber", "kirmizi biber"};
        QTest::newRow("role text") << MapsRow{"YÖNETİCİ", "YÖNETİCİ", "yönetici",
                                              "YÖNETİCİ", "yönetici", "yönetici"};
        QTest::newRow("role text with I")
            << MapsRow{"YÖNETICI", "YÖNETICI", "yönetici", "YÖNETICI", "yönetıcı", "yönetici"};
        QTest::newRow("catalogue key")
            << MapsRow{"msg_satis_iptal_sor", "MSG_SATIS_IPTAL_SOR", "msg_satis_iptal_sor",
                       "MSG_SATİS_İPTAL_SOR", "msg_satis_iptal_sor", "msg_satis_iptal_sor"};
        QTest::newRow("digits and symbols")
            << MapsRow{"1@[`{~_ÿ", "1@[`{~_Ÿ", "1@[`{~_ÿ", "1@[`{~_Ÿ", "1@[`{~_ÿ", "1@[`{~_ÿ"};
        QTest::newRow("ends of the alphabet") << MapsRow{"azAZ", "AZAZ", "azaz", "AZAZ", "azaz", "azaz"};
        QTest::newRow("sharp s keeps its length") << MapsRow{"ß", "ß", "ß", "ß", "ß", "ß"};
        QTest::newRow("beyond the BMP") << MapsRow{u"\U00010428i"_s, u"\U00010400I"_s, u"\U00010428i"_s,
                                                   u"\U00010400İ"_s, u"\U00010428i"_s, u"\U00010428i"_s};
        const QString half(QChar(0xD801));
        QTest::newRow("half a character") << MapsRow{half, half, half, half, half, half};
    }
    void maps() {
        QFETCH(const MapsRow, row);
        QCOMPARE(upperOrdinary(row.text), row.ordinaryUpper);
        QCOMPARE(lowerOrdinary(row.text), row.ordinaryLower);
        QCOMPARE(upperTurkish(row.text), row.turkishUpper);
        QCOMPARE(lowerTurkish(row.text), row.turkishLower);
        QCOMPARE(foldTurkishI(row.text), row.folded);
    }
};

QTEST_GUILESS_MAIN(TestLetterCase)
#include "test_lettercase.moc"
