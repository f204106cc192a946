#include <QTest>

#include "values/lettercase.h"

using namespace kovanix;

class TestLetterCase : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void maps_data();
    void maps();
};

void TestLetterCase::maps_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("ordinaryUpper");
    QTest::addColumn<QString>("ordinaryLower");
    QTest::addColumn<QString>("turkishUpper");
    QTest::addColumn<QString>("turkishLower");
    QTest::addColumn<QString>("folded");

    QTest::newRow("empty") << ""
                           << ""
                           << ""
                           << ""
                           << ""
                           << "";
    QTest::newRow("i") << "i"
                       << "I"
                       << "i"
                       << "İ"
                       << "i"
                       << "i";
    QTest::newRow("I") << "I"
                       << "I"
                       << "i"
                       << "I"
                       << "ı"
                       << "i";
    QTest::newRow("dotless ı") << "ı"
                               << "I"
                               << "ı"
                               << "I"
                               << "ı"
                               << "i";
    QTest::newRow("dotted İ") << "İ"
                              << "İ"
                              << "i"
                              << "İ"
                              << "i"
                              << "i";
    QTest::newRow("Turkish letters, small") << "çğöşü"
                                            << "ÇĞÖŞÜ"
                                            << "çğöşü"
                                            << "ÇĞÖŞÜ"
                                            << "çğöşü"
                                            << "çğöşü";
    QTest::newRow("Turkish letters, capital") << "ÇĞÖŞÜ"
                                              << "ÇĞÖŞÜ"
                                              << "çğöşü"
                                              << "ÇĞÖŞÜ"
                                              << "çğöşü"
                                              << "çğöşü";
    QTest::newRow("letters with a roof") << "âîû"
                                         << "ÂÎÛ"
                                         << "âîû"
                                         << "ÂÎÛ"
                                         << "âîû"
                                         << "âîû";
    QTest::newRow("product name") << "Kırmızı biber"
                                  << "KIRMIZI BIBER"
                                  << "kırmızı biber"
                                  << "KIRMIZI BİBER"
                                  << "kırmızı biber"
                                  << "kirmizi biber";
    QTest::newRow("role text") << "YÖNETİCİ"
                               << "YÖNETİCİ"
                               << "yönetici"
                               << "YÖNETİCİ"
                               << "yönetici"
                               << "yönetici";
    QTest::newRow("role text with I") << "YÖNETICI"
                                      << "YÖNETICI"
                                      << "yönetici"
                                      << "YÖNETICI"
                                      << "yönetıcı"
                                      << "yönetici";
    QTest::newRow("catalogue key") << "msg_satis_iptal_sor"
                                   << "MSG_SATIS_IPTAL_SOR"
                                   << "msg_satis_iptal_sor"
                                   << "MSG_SATİS_İPTAL_SOR"
                                   << "msg_satis_iptal_sor"
                                   << "msg_satis_iptal_sor";
    QTest::newRow("digits and symbols") << "1@[`{~_ÿ"
                                        << "1@[`{~_Ÿ"
                                        << "1@[`{~_ÿ"
                                        << "1@[`{~_Ÿ"
                                        << "1@[`{~_ÿ"
                                        << "1@[`{~_ÿ";
    QTest::newRow("ends of the alphabet") << "azAZ"
                                          << "AZAZ"
                                          << "azaz"
                                          << "AZAZ"
                                          << "azaz"
                                          << "azaz";
    QTest::newRow("sharp s keeps its length") << "ß"
                                              << "ß"
                                              << "ß"
                                              << "ß"
                                              << "ß"
                                              << "ß";
    QTest::newRow("beyond the BMP") << QStringLiteral("\U00010428i") << QStringLiteral("\U00010400I")
                                    << QStringLiteral("\U00010428i") << QStringLiteral("\U00010400İ")
                                    << QStringLiteral("\U00010428i") << QStringLiteral("\U00010428i");
    const QString half(QChar(0xD801));
    QTest::newRow("half a character") << half << half << half << half << half << half;
}

void TestLetterCase::maps() {
    QFETCH(QString, text);
    QTEST(upperOrdinary(text), "ordinaryUpper");
    QTEST(lowerOrdinary(text), "ordinaryLower");
    QTEST(upperTurkish(text), "turkishUpper");
    QTEST(lowerTurkish(text), "turkishLower");
    QTEST(foldTurkishI(text), "folded");
}

QTEST_GUILESS_MAIN(TestLetterCase)
#include "test_lettercase.moc"
