#include <QDir>
#include <QKeyEvent>
#include <QProcess>

#include "database/engineerror.h"
#include "sales/receipt.h"
#include "salestest.h"

using namespace kovanix;

/// The receipt's text, and the road from the button to the page and the file.
class ReceiptTest : public SalesTest {
    Q_OBJECT

    QString receipts() const { return m_shop->file("fisler"); }

private Q_SLOTS:
    void init() {
        SalesTest::init();
        qputenv("KOVANIX_PRINTER", ("pdf:" + receipts()).toUtf8());
    }
    void cleanup() {
        qunsetenv("KOVANIX_PRINTER");
        SalesTest::cleanup();
    }

    void textToTheByte() {
        const QString text = receiptText({{"Köy Ekmeği", "2,5", "10,00", "25,00"},
                                          {"Çay", "1", "1.234,50", "1234,50"},
                                          {"", "", "", "0,00"}},
                                         "1259,50", QDateTime(QDate(2026, 5, 3), QTime(7, 5, 9)));
        QCOMPARE(text,
                 "\r\n Tarih 03.05.2026"
                 "\r\n Saat 07:05:09"
                 "\r\nMüşteri :PEŞİN MÜŞTERİ"
                 "\r\n\r\n"
                 "Köy Ekmeği\r\n"
                 "2,5 X 10,00 T.L. = 25,00 T.L.\r\n"
                 "Çay\r\n"
                 "1 X 1.234,50 T.L. = 1.234,50 T.L.\r\n"
                 "\r\n"
                 "0 X 0,00 T.L. = 0,00 T.L.\r\n"
                 "\r\n\tTOPLAM TUTAR  :\t1259,50"
                 "\r\n"
                 "\r\n\tTEŞEKKÜR EDERİZ");
    }

    void aSaleIsPrintedAndStored() {
        m_shop->ui().adet->setText("2,5");
        m_shop->scan(goods::bread);
        m_shop->sales().eksiltme = 1;
        m_shop->key(Qt::Key_F2);
        QCOMPARE(m_shop->sales().eksiltme, 0);
        QCOMPARE(m_shop->ui().Text33->text(),
                 "\r\n Tarih 03.05.2026\r\n Saat 07:05:09\r\nMüşteri :PEŞİN MÜŞTERİ\r\n\r\n"
                 "Köy Ekmeği\r\n2,5 X 10,00 T.L. = 25,00 T.L.\r\n"
                 "\r\n0 X 0,00 T.L. = 0,00 T.L.\r\n"
                 "\r\n\tTOPLAM TUTAR  :\t25,00\r\n\r\n\tTEŞEKKÜR EDERİZ");
        QCOMPARE(QDir(receipts()).entryList({"*.pdf"}).size(), 1);
        QCOMPARE(m_shop->rows("SELECT COUNT(*) FROM satislar").value(0).value(0).toInt(), 1);
        QCOMPARE(m_shop->lines(), 0);

        QProcess reader;
        reader.start("pdftotext", {"-layout", receipts() + "/0001.pdf", "-"});
        QVERIFY2(reader.waitForFinished(), "pdftotext (poppler-utils) is needed");
        const QString page = QString::fromUtf8(reader.readAllStandardOutput());
        for (const char* piece :
             {"Tarih 03.05.2026", "PEŞİN MÜŞTERİ", "Köy Ekmeği", "2,5 X 10,00 T.L. = 25,00 T.L.",
              "0 X 0,00 T.L. = 0,00 T.L.", "TOPLAM TUTAR", "TEŞEKKÜR EDERİZ"})
            QVERIFY2(page.contains(QString::fromUtf8(piece)), piece);
    }

    void anEmptyTicketIsRefused() {
        m_shop->boxes.expect("Bilgi", "önce satış yapın", MessageBoxAnswer::ok);
        m_shop->key(Qt::Key_F2);
        QVERIFY(!QDir(receipts()).exists() || QDir(receipts()).isEmpty());
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
    }

    void aPrinterFailureDoesNotStopTheSale() {
        QFile inTheWay(receipts());
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        m_shop->scan(goods::bread);
        m_shop->key(Qt::Key_F2);
        QCOMPARE(m_shop->rows("SELECT COUNT(*) FROM satislar").value(0).value(0).toInt(), 1);
        QCOMPARE(m_shop->lines(), 0);
    }

    void aStoreFailureComesAfterThePrint() {
        m_shop->scan(goods::bread);
        m_shop->refuse("INSERT", "satislar", "dolu");
        m_shop->boxes.expect(
            "Hata",
            "Satış kaydedilemedi: " + describeFailure(DatabaseError::Kind::value, "dolu") + " - satislar",
            MessageBoxAnswer::ok);
        m_shop->key(Qt::Key_F2);
        QCOMPARE(QDir(receipts()).entryList({"*.pdf"}).size(), 1);
        QCOMPARE(m_shop->lines(), 1);
    }

    void aHeldKeyPrintsOnce() {
        m_shop->scan(goods::bread);
        m_shop->boxes.expect("Bilgi", "önce satış yapın", MessageBoxAnswer::ok);
        for (const bool repeated : {false, true}) {
            QKeyEvent held(QEvent::KeyPress, Qt::Key_F2, Qt::NoModifier, QString(), repeated);
            QCoreApplication::sendEvent(m_shop->ui().barkod, &held);
        }
        QCOMPARE(QDir(receipts()).entryList({"*.pdf"}).size(), 1);
        QCOMPARE(m_shop->rows("SELECT COUNT(*) FROM satislar").value(0).value(0).toInt(), 1);
    }

    void aLongReceiptIsNotCut() {
        for (int line = 1; line <= 700; ++line)
            m_shop->addProduct(QString::number(600000 + line), QString(50, u'x'), 1, 1);
        for (int line = 1; line <= 700; ++line)
            m_shop->scan(QString::number(600000 + line));
        m_shop->key(Qt::Key_F2);
        QCOMPARE(m_shop->ui().Text33->text().count(QString(50, u'x')), 700);
    }
};

int main(int argc, char** argv) {
    return runTests<ReceiptTest>(argc, argv);
}

#include "test_receipt.moc"
