#include <QApplication>
#include <QClipboard>

#include "data/baglanmamodulu.h"
#include "database/engineerror.h"
#include "rows.h"
#include "runtime/runtimeerror.h"
#include "salestest.h"
#include "widgets/controlarray.h"

using namespace kovanix;

/// Scans, lines, merging, totals.
class TicketTest : public SalesTest {
    Q_OBJECT

    struct QuantityGoesFirstRow {
        QString typed, cell, total;
    };

private Q_SLOTS:
    void startsEmpty() {
        const VSFlexGrid& grid = *m_shop->ui().satisekrani1;
        QCOMPARE(grid.rows(), 2);
        QCOMPARE(grid.cols(), 6);
        QCOMPARE(grid.row(), 1);
        QCOMPARE(grid.col(), 1);
        QCOMPARE(grid.colWidth(0), 0);
        QCOMPARE(m_shop->line(0), (QStringList{"BARKOD", "ÜRÜN ADI", "MİKT.", "FİY.", "TOP."}));
        QCOMPARE(m_shop->toplam(), "0,00");
        QCOMPARE(m_shop->verilen(), "0,00");
        QCOMPARE(m_shop->kalan(), "0,00");
        QCOMPARE(m_shop->ver2(), "0,00");
        QCOMPARE(m_shop->sales().windowTitle(), "Kovanix Satis");
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
        QVERIFY(!m_shop->ui().Shape1->isVisible());
    }

    void scanMakesALine() {
        m_shop->scan(goods::milk);
        QCOMPARE(m_shop->lines(), 1);
        QCOMPARE(m_shop->line(1), (QStringList{goods::milk, "Tam Yağlı Süt 1 L", "1", "32,50", "32,50"}));
        QCOMPARE(m_shop->line(2), (QStringList{"", "", "", "", "0,00"}));
        QCOMPARE(m_shop->toplam(), "32,50");
        QCOMPARE(m_shop->kalan(), "-32,50");
        QCOMPARE(m_shop->ui().barkod->text(), "");
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
        QCOMPARE(m_shop->ui().satisekrani1->row(), 2);
        QCOMPARE(m_shop->ui().satisekrani1->col(), 1);
    }

    void quantityGoesFirst_data() {
        addRows<QuantityGoesFirstRow>({{"none means one", {"", "1", "10,00"}},
                                       {"a fraction stands as typed", {"2,5", "2,5", "25,00"}},
                                       {"zero gives a line of nothing", {"0", "0", "0,00"}},
                                       {"a bare comma sells one", {",", "1", "10,00"}},
                                       {"a trailing comma is a number", {"3,", "3,", "30,00"}},
                                       {"eight characters", {"12345678", "12345678", "123456780,00"}}});
    }
    void quantityGoesFirst() {
        QFETCH(const QuantityGoesFirstRow, row);
        m_shop->typeInto(*m_shop->ui().adet, row.typed);
        m_shop->ui().barkod->setFocus();
        m_shop->scan(goods::bread);
        QCOMPARE(m_shop->line(1).at(2), row.cell);
        QCOMPARE(m_shop->toplam(), row.total);
        QCOMPARE(m_shop->ui().adet->text(), "");
    }

    void sameBarcodeTwiceIsOneLine() {
        m_shop->scan(goods::bread);
        m_shop->scan(goods::bread);
        QCOMPARE(m_shop->lines(), 1);
        QCOMPARE(m_shop->line(1), (QStringList{goods::bread, "Köy Ekmeği", "2", "10,00", "20,00"}));
        m_shop->typeInto(*m_shop->ui().adet, "2,5");
        m_shop->ui().barkod->setFocus();
        m_shop->scan(goods::bread);
        QCOMPARE(m_shop->line(1).at(2), "4,5");
        QCOMPARE(m_shop->toplam(), "45,00");
        QCOMPARE(m_shop->ui().satisekrani1->row(), 2);
    }

    void secondScanWithAQuantity() {
        m_shop->scan(goods::bread);
        m_shop->typeInto(*m_shop->ui().adet, "2,5");
        m_shop->ui().barkod->setFocus();
        m_shop->scan(goods::bread);
        QCOMPARE(m_shop->line(1).at(2), "3,5");
    }

    void mergingKeepsPlaceNameAndPrice() {
        m_shop->scan(goods::bread);
        m_shop->scan(goods::milk);
        m_shop->ui().satisekrani1->setTextMatrix(1, 4, "8,00");
        m_shop->scan(goods::bread);
        QCOMPARE(m_shop->lines(), 2);
        QCOMPARE(m_shop->line(1), (QStringList{goods::bread, "Köy Ekmeği", "2", "8,00", "16,00"}));
        QCOMPARE(m_shop->toplam(), "48,50");
    }

    void pastedBlankFindsButDoesNotMerge() {
        m_shop->scan(goods::bread);
        QApplication::clipboard()->setText(goods::bread + " ");
        m_shop->ui().barkod->paste();
        m_shop->key(Qt::Key_Return);
        QCOMPARE(m_shop->lines(), 2);
        QCOMPARE(m_shop->line(2).at(0), goods::bread);
    }

    void groupedPriceIsReadBack() {
        m_shop->typeInto(*m_shop->ui().adet, "2");
        m_shop->ui().barkod->setFocus();
        m_shop->scan(goods::tea);
        QCOMPARE(m_shop->line(1), (QStringList{goods::tea, "Çay Bahçesi 5 kg", "2", "1.234,50", "2469,00"}));
        QCOMPARE(m_shop->toplam(), "2469,00");
        QCOMPARE(m_shop->kalan(), "-2.469,00");
    }

    void productsWithOddNames() {
        m_shop->addProduct("77", "Kahve & Süt 'özel' #1", 1, 2);
        m_shop->scan("77");
        QCOMPARE(m_shop->line(1).at(1), "Kahve & Süt 'özel' #1");
    }

    void nothingFound_data() {
        QTest::addColumn<QString>("pasted");
        QTest::newRow("all zeros") << "00000";
        QTest::newRow("one zero") << "0";
        QTest::newRow("no number at all") << "abc";
        QTest::newRow("an apostrophe") << "'";
    }
    void nothingFound() {
        QFETCH(QString, pasted);
        m_shop->scan(goods::bread);
        m_shop->ui().adet->setText("4");
        m_shop->ui().barkod->setText(pasted);
        m_shop->key(Qt::Key_Return);
        QVERIFY(!m_shop->ui().urunbulunamadiframesi->isVisible());
        QCOMPARE(m_shop->ui().barkod->text(), "");
        QCOMPARE(m_shop->ui().adet->text(), "");
        QCOMPARE(m_shop->lines(), 1);
        QCOMPARE(m_shop->ui().satisekrani1->row(), 2);
    }

    void unknownBarcodeOpensThePanel() {
        m_shop->scan(goods::bread);
        m_shop->ui().adet->setText("4");
        m_shop->scan("8699999999999");
        QVERIFY(m_shop->ui().urunbulunamadiframesi->isVisible());
        QTRY_VERIFY(m_shop->ui().urunbuunamadibeklet->hasFocus());
        QCOMPARE(m_shop->ui().bulunulamayaurun->text(), "8699999999999");
        QCOMPARE(m_shop->ui().barkod->text(), "");
        QCOMPARE(m_shop->ui().adet->text(), "");
        QCOMPARE(m_shop->lines(), 1);
        // The next scan's Enter presses the banner.
        m_shop->boxes.expect("Bilgi", "Bu ürün daha önce kaydedilmemiş", MessageBoxAnswer::goOn);
        m_shop->scan(goods::milk);
        QCOMPARE(m_shop->lines(), 1);
        m_shop->ui().urunbulunamadikapat->click();
        QVERIFY(!m_shop->ui().urunbulunamadiframesi->isVisible());
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
        m_shop->scan(goods::milk);
        QCOMPARE(m_shop->lines(), 2);
    }

    void emptyBarcodeFromElsewhere() {
        m_shop->ui().adet->setText("7");
        m_shop->sales().urunekle();
        QCOMPARE(m_shop->lines(), 0);
        QCOMPARE(m_shop->ui().adet->text(), "");
        QVERIFY(!m_shop->ui().urunbulunamadiframesi->isVisible());
    }

    void aPressOnAnotherColumnIsLost() {
        m_shop->scan(goods::bread);
        m_shop->ui().satisekrani1->setRow(1);
        m_shop->ui().satisekrani1->setCol(3);
        m_shop->ui().barkod->setText(goods::milk);
        m_shop->sales().urunekle();
        QCOMPARE(m_shop->lines(), 1);
        QCOMPARE(m_shop->line(1).at(0), goods::bread);
        QCOMPARE(m_shop->ui().satisekrani1->row(), 2);
        QCOMPARE(m_shop->ui().satisekrani1->col(), 1);
    }

    void aBarcodeCellOverwritesItsLine() {
        m_shop->scan(goods::bread);
        m_shop->ui().satisekrani1->setRow(1);
        m_shop->ui().satisekrani1->setCol(1);
        m_shop->ui().barkod->setText(goods::milk);
        m_shop->sales().urunekle();
        QCOMPARE(m_shop->lines(), 1);
        QCOMPARE(m_shop->line(1).at(0), goods::milk);
        QCOMPARE(m_shop->toplam(), "32,50");
    }

    void handedOverByTimer() {
        m_shop->ui().ver2->setFocus();
        m_shop->ui().barkod->setText(goods::milk);
        m_shop->sales().kontorsat.setInterval(1);
        QTRY_COMPARE(m_shop->lines(), 1);
        QCOMPARE(m_shop->sales().kontorsat.interval(), 0);
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
    }

    void lineTotalsAreRoundedBeforeTheyAreAdded() {
        m_shop->addProduct("71", "Halka", 0, 0.333);
        m_shop->addProduct("72", "Simit", 0, 1.005);
        for (int scan = 0; scan < 3; ++scan)
            m_shop->scan("71");
        m_shop->scan("72");
        QCOMPARE(m_shop->line(1).at(3), "0,33");
        QCOMPARE(m_shop->line(1).at(4), "0,99");
        QCOMPARE(m_shop->line(2).at(3), "1,01");
        QCOMPARE(m_shop->toplam(), "2,00");
    }

    void anOverflowingTotalWipesTheTicket() {
        m_shop->addProduct("73", "Altın", 0, 1e15);
        m_shop->scan("73");
        QCOMPARE(m_shop->toplam(), "1000000000000000,00");
        m_shop->ui().adet->setText("1000000");
        m_shop->scan("73");  // 22 digits before the comma: 25 characters
        QCOMPARE(m_shop->toplam().size(), 25);
        m_shop->ui().adet->setText("10000000");
        m_shop->boxes.expect("Bilgi", "LüTFEN DAHA AZ BASAMAKLI SAYI GÖRüNüZ", MessageBoxAnswer::ok);
        m_shop->scan("73");
        QCOMPARE(m_shop->lines(), 0);
        QCOMPARE(m_shop->toplam(), "0,00");
    }

    void anOverflowingNewLineWipesTheTicket() {
        m_shop->addProduct("74", "Yıldız", 0, 1e24);
        m_shop->scan(goods::bread);
        m_shop->boxes.expect("Bilgi", "LüTFEN DAHA AZ BASAMAKLI SAYI GÖRüNüZ", MessageBoxAnswer::ok);
        m_shop->scan("74");
        QCOMPARE(m_shop->lines(), 0);
        QCOMPARE(m_shop->toplam(), "0,00");
        QCOMPARE(m_shop->ui().barkod->text(), "");
    }

    void moreLinesThanAreCounted() {
        m_shop->ui().satisekrani1->setRows(32767);
        m_shop->sales().toplamhesapla();
        m_shop->ui().satisekrani1->setRows(32768);
        QVERIFY_THROWS_EXCEPTION(RuntimeError, m_shop->sales().toplamhesapla());
    }

    void anUnknownBarcodeInTheQuantity() {
        m_shop->ui().adet->setFocus();
        m_shop->ui().adet->setText("99999999");
        m_shop->key(Qt::Key_Return);
        // The panel stands open, and the barcode field has the focus again: the next scan sells below it.
        QVERIFY(m_shop->ui().urunbulunamadiframesi->isVisible());
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
        QCOMPARE(m_shop->ui().adet->text(), "");
        m_shop->scan(goods::bread);
        QCOMPARE(m_shop->lines(), 1);
        QVERIFY(m_shop->ui().urunbulunamadiframesi->isVisible());
    }

    void databaseNotReady() {
        if (ShopFixture::isOnServer())
            QSKIP("moves the file away");
        m_shop->scan(goods::bread);
        baglantikapat();
        QVERIFY(QFile::rename(m_shop->databaseFile(), m_shop->file("elsewhere")));
        m_shop->ui().adet->setText("3");
        m_shop->boxes.expectAny(MessageBoxAnswer::ok);  // the open's own box
        m_shop->boxes.expect("Hata", "Veritabanı baılantısı kurulamadı", MessageBoxAnswer::ok);
        m_shop->scan(goods::milk);
        QCOMPARE(m_shop->lines(), 1);
        QCOMPARE(m_shop->ui().barkod->text(), goods::milk);
        QCOMPARE(m_shop->ui().adet->text(), "3");
        QVERIFY(QFile::rename(m_shop->file("elsewhere"), m_shop->databaseFile()));
        m_shop->key(Qt::Key_Return);
        QCOMPARE(m_shop->lines(), 2);
    }

    void aLookUpThatFailsIsTold() {
        m_shop->run("ALTER TABLE urunler RENAME TO gitti");
        m_shop->boxes.expect(
            "Hata",
            "Veritabanı baılantısı kurulamadı: " +
                describeFailure(DatabaseError::Kind::noSuchTable, ShopFixture::noTable("urunler")),
            MessageBoxAnswer::ok);
        m_shop->scan(goods::bread);
        QCOMPARE(m_shop->lines(), 0);
        m_shop->run("ALTER TABLE gitti RENAME TO urunler");
    }

    void aProductThatCannotBeReadWholeLeavesTheEntryRowEmpty() {
        m_shop->run("ALTER TABLE urunler RENAME COLUMN satis TO gitti");
        m_shop->boxes.expectAny(MessageBoxAnswer::ok);
        m_shop->scan(goods::bread);
        QCOMPARE(m_shop->lines(), 0);
        QCOMPARE(m_shop->line(1), (QStringList{"", "", "", "", ""}));
        m_shop->run("ALTER TABLE urunler RENAME COLUMN gitti TO satis");
        m_shop->ui().barkod->setText("");
        m_shop->scan(goods::milk);
        QCOMPARE(m_shop->toplam(), "32,50");
    }

    void withAPasswordFile() {
        openShop("gizli şifre");
        m_shop->scan(goods::bread);
        QCOMPARE(m_shop->toplam(), "10,00");
    }

    void aLongTicket() {
        for (int product = 0; product < 300; ++product)
            m_shop->addProduct(QString::number(500000 + product), "Ürün", 1, 1.1);
        for (int product = 0; product < 300; ++product)
            m_shop->scan(QString::number(500000 + product));
        QCOMPARE(m_shop->lines(), 300);
        QCOMPARE(m_shop->toplam(), "330,00");
    }
};

int main(int argc, char** argv) {
    return runTests<TicketTest>(argc, argv);
}

#include "test_ticket.moc"
