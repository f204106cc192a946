#include <QFile>
#include <QProcess>
#include <functional>
#include <tuple>

#include "data/baglanmamodulu.h"
#include "database/engineerror.h"
#include "database/recordset.h"
#include "diskbarriers.h"
#include "rows.h"
#include "runtime/runtimeerror.h"
#include "runtime/screenregistry.h"
#include "sales/modSatis.h"
#include "salestest.h"

using namespace kovanix;

/// Storing a sale, stock, and what happens when the file won't.
class CommitTest : public SalesTest {
    Q_OBJECT

    struct PurchasePriceRow {
        QString barcode;
        double price;
    };

    QList<QVariantList> sales() const {
        return m_shop->rows(
            "SELECT tarih,barkod,urun,adet,fiyat,alis,kar,toplam,satis FROM satislar ORDER BY no");
    }
    QVariant stock(const QString& barcode) const {
        return m_shop->rows("SELECT stok FROM urunler WHERE barkod='" + barcode + "'").value(0).value(0);
    }
    static QVariantList row(const QString& barcode, const QString& name, double adet, double fiyat,
                            double alis, double kar, double toplam) {
        return {"2026-05-03 07:05:09", barcode, name, adet, fiyat, alis, kar, toplam, kar};
    }

private Q_SLOTS:
    void initTestCase_data() {
        QTest::addColumn<QString>("password");
        QTest::newRow("plain") << "";
        if (!ShopFixture::isOnServer())
            QTest::newRow("password") << "gizli";
    }
    void init() {
        QFETCH_GLOBAL(QString, password);
        openShop(password);
    }

    void storesEachLine() {
        m_shop->typeInto(*m_shop->ui().adet, "2,5");
        m_shop->ui().barkod->setFocus();
        m_shop->scan(goods::bread);
        m_shop->scan(goods::tea);
        m_shop->press(*m_shop->ui().resim2);
        m_shop->key(Qt::Key_F1);
        QCOMPARE(sales(),
                 (QList<QVariantList>{row(goods::bread, "Köy Ekmeği", 2.5, 10, 7, 7.5, 25),
                                      row(goods::tea, "Çay Bahçesi 5 kg", 1, 1234.5, 1000, 234.5, 1234.5)}));
        QCOMPARE(stock(goods::bread), 7.5);
        QCOMPARE(stock(goods::tea), 9.0);
        QCOMPARE(stock(goods::milk), 10.0);
    }

    void theScreenIsCleared() {
        m_shop->scan(goods::bread);
        m_shop->press(*m_shop->ui().resim2);
        m_shop->ui().adet->setText("3");
        m_shop->ui().vkCommand5->click();
        m_shop->key(Qt::Key_F1);
        QCOMPARE(m_shop->lines(), 0);
        QCOMPARE(m_shop->line(1), (QStringList{"", "", "", "", ""}));
        QCOMPARE(m_shop->line(0).at(0), "BARKOD");
        for (const QString& amount : {m_shop->toplam(), m_shop->verilen(), m_shop->kalan(), m_shop->ver2()})
            QCOMPARE(amount, "0,00");
        QCOMPARE(m_shop->ui().adet->text(), "");
        QCOMPARE(m_shop->sales().eksiltme, 0);
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
        QCOMPARE(m_shop->ui().satisekrani1->row(), 1);
        QCOMPARE(m_shop->ui().satisekrani1->col(), 1);
    }

    void anEmptyTicketIsRefused() {
        m_shop->sales().eksiltme = 1;
        m_shop->boxes.expect("Bilgi", "önce satış yapın", MessageBoxAnswer::ok);
        m_shop->key(Qt::Key_F1);
        QCOMPARE(sales().size(), 0);
        QCOMPARE(m_shop->sales().eksiltme, 0);
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
    }

    void afterTheOnlyLineIsGoneTheTicketIsEmpty() {
        m_shop->scan(goods::bread);
        m_shop->ui().satisekrani1->removeItem(1);
        m_shop->boxes.expect("Bilgi", "önce satış yapın", MessageBoxAnswer::ok);
        m_shop->boxes.expect("Bilgi", "önce satış yapın", MessageBoxAnswer::ok);
        m_shop->key(Qt::Key_F1);
        m_shop->key(Qt::Key_F2);
        QCOMPARE(sales().size(), 0);
    }

    void quantitiesThatAreNoNumberBecomeOne() {
        m_shop->scan(goods::bread);
        m_shop->ui().satisekrani1->setTextMatrix(1, 3, "abc");
        m_shop->key(Qt::Key_F1);
        QCOMPARE(sales().value(0).value(3), 1.0);
        QCOMPARE(stock(goods::bread), 9.0);
    }

    void zeroQuantityIsStoredWithoutStockEffect() {
        m_shop->ui().adet->setText("0");
        m_shop->scan(goods::bread);
        m_shop->key(Qt::Key_F1);
        QCOMPARE(sales(), (QList<QVariantList>{row(goods::bread, "Köy Ekmeği", 0, 10, 7, 0, 0)}));
        QCOMPARE(stock(goods::bread), 10.0);
    }

    void aLineWithoutBarcodeIsSkipped() {
        m_shop->scan(goods::bread);
        m_shop->scan(goods::milk);
        m_shop->ui().satisekrani1->setTextMatrix(1, 1, " ");
        m_shop->key(Qt::Key_F1);
        QCOMPARE(sales().size(), 1);
        QCOMPARE(sales().value(0).value(1), goods::milk);
    }

    void theTicketsPriceIsStored() {
        m_shop->scan(goods::bread);
        m_shop->ui().satisekrani1->setTextMatrix(1, 4, "12,345");
        m_shop->ui().satisekrani1->setTextMatrix(1, 3, "3");
        m_shop->key(Qt::Key_F1);
        // Unrounded, unlike the ticket's own total.
        QCOMPARE(sales().value(0).value(4), 12.345);
        QCOMPARE(sales().value(0).value(7).toDouble(), 37.035);
    }

    void deletedProductsSellWithoutCost() {
        m_shop->scan(goods::bread);
        m_shop->run("DELETE FROM urunler WHERE barkod='" + goods::bread + "'");
        m_shop->key(Qt::Key_F1);
        QCOMPARE(sales(), (QList<QVariantList>{row(goods::bread, "Köy Ekmeği", 1, 10, 0, 10, 10)}));
    }

    void stockMayGoBelowZeroAndNullCountsAsZero() {
        m_shop->ui().adet->setText("25");
        m_shop->scan(goods::bread);
        m_shop->scan(goods::bag);
        m_shop->key(Qt::Key_F1);
        QCOMPARE(stock(goods::bread), -15.0);
        QCOMPARE(stock(goods::bag), -1.0);
    }

    void apostrophesAndSymbolsSurvive() {
        m_shop->addProduct("81", "O'nun %50 #1 \"özel\" [kutu]", 1, 2);
        m_shop->scan("81");
        m_shop->key(Qt::Key_F1);
        QCOMPARE(sales().value(0).value(2), "O'nun %50 #1 \"özel\" [kutu]");
    }

    void anOlderFileWithoutTheNewestColumn() {
        m_shop->run("ALTER TABLE satislar RENAME TO eski");
        m_shop->run(
            "CREATE TABLE satislar (no INTEGER PRIMARY KEY, tarih DATETIME, barkod TEXT(50), urun TEXT(50), "
            "adet DOUBLE, "
            "fiyat DOUBLE, alis DOUBLE, kar DOUBLE, toplam DOUBLE)");
        m_shop->scan(goods::bread);
        if (ShopFixture::isOnServer()) {
            // To ask for the columns ahead of every sale would be a round trip: the first failure tells of
            // them.
            m_shop->boxes.expectAny(MessageBoxAnswer::ok);
            m_shop->key(Qt::Key_F1);
            QCOMPARE(m_shop->lines(), 1);
        }
        m_shop->key(Qt::Key_F1);
        QCOMPARE(m_shop->rows("SELECT barkod,adet,fiyat,alis,kar,toplam FROM satislar"),
                 (QList<QVariantList>{{goods::bread, 1.0, 10.0, 7.0, 3.0, 10.0}}));
        QCOMPARE(m_shop->lines(), 0);
    }

    void aFailureKeepsTheTicketAndARetryDoubles() {
        m_shop->scan(goods::bread);
        m_shop->scan(goods::milk);
        m_shop->refuse("INSERT", "satislar", "dolu", "NEW.barkod='" + goods::milk + '\'');
        m_shop->boxes.expect(
            "Hata",
            "Satış kaydedilemedi: " + describeFailure(DatabaseError::Kind::value, "dolu") + " - satislar",
            MessageBoxAnswer::ok);
        m_shop->key(Qt::Key_F1);
        QCOMPARE(sales().size(), 1);
        QCOMPARE(stock(goods::bread), 10.0);
        QCOMPARE(m_shop->lines(), 2);
        QCOMPARE(m_shop->toplam(), "42,50");
        m_shop->allow("INSERT", "satislar");
        m_shop->key(Qt::Key_F1);
        QCOMPARE(sales().size(), 3);
        QCOMPARE(stock(goods::bread), 9.0);
        QCOMPARE(m_shop->lines(), 0);
    }

    void aFailureOfTheStockIsTold() {
        m_shop->scan(goods::bread);
        m_shop->refuse("UPDATE", "urunler", "   ");
        m_shop->boxes.expect("Hata", "Satış kaydedilemedi: Hata kodu: -2147467259 - stokguncelle",
                             MessageBoxAnswer::ok);
        m_shop->key(Qt::Key_F1);
        QCOMPARE(sales().size(), 1);
        QCOMPARE(m_shop->lines(), 1);
    }

    void theFileIsWholeBetweenTwoSales() {
        if (ShopFixture::isOnServer())
            QSKIP("copies the file");
        QFETCH_GLOBAL(QString, password);
        m_shop->scan(goods::bread);
        m_shop->key(Qt::Key_F1);
        const QString copy = m_shop->file("kopya.data");
        const auto copied = [&] {
            // Copying by another process: reading the file in this one would drop the engine's locks.
            if (QProcess::execute("cp", {m_shop->databaseFile(), copy}) != 0)
                qFatal("no copy");
            Connection connection;
            connection.open(u"Data Source=" + copy +
                            (password.isEmpty() ? QString() : u";Jet OLEDB:Database Password=" + password));
            Recordset stored;
            stored.open("SELECT barkod FROM satislar", connection);
            return stored.atEnd() ? QString() : stored.field("barkod").toString();
        };
        QTRY_COMPARE(copied(), goods::bread);
    }

    void aSaleCostsTwoBarriers() {
        if (ShopFixture::isOnServer())
            QSKIP("counts this process's barriers");
        const auto barriersOfSale = [this] {
            for (const QString& barcode : {goods::bread, goods::milk, goods::tea})
                m_shop->scan(barcode);
            const long before = diskBarriers();
            m_shop->key(Qt::Key_F1);
            return diskBarriers() - before;
        };
        barriersOfSale();  // the first one after a start syncs the folder too
        baglanti().idle();
        // Of the log's new beginning and of its end.
        QCOMPARE(barriersOfSale(), 2);
        const long moving = diskBarriers();
        QTRY_VERIFY(diskBarriers() >= moving + 2);  // once the till has nothing else to do
        m_shop->refuse("UPDATE", "urunler", "dolu");
        const long before = diskBarriers();
        long untilTheBox = 0;
        m_shop->boxes.askFor([&](const QMessageBox&) {
            untilTheBox = diskBarriers() - before;
            return MessageBoxAnswer::ok;
        });
        barriersOfSale();
        // Moving the log, which may happen while the box stands, takes two.
        QCOMPARE(untilTheBox % 2, 1);
    }

    void aFileThatHasGoneKeepsTheTicket() {
        if (ShopFixture::isOnServer())
            QSKIP("moves the file away");
        QFETCH_GLOBAL(QString, password);
        m_shop->scan(goods::bread);
        m_shop->key(Qt::Key_F1);
        m_shop->scan(goods::milk);
        // An older file that a start would take instead.
        QVERIFY(QFile::copy(m_shop->databaseFile(), m_shop->file("kovanix.mdb")));
        QVERIFY(QFile::rename(m_shop->databaseFile(), m_shop->file("elsewhere")));
        const QString text = "Satış kaydedilemedi: " +
                             describeFailure(DatabaseError::Kind::missing, "unable to open database file") +
                             " - " + (password.isEmpty() ? "SQLite" : "SQLCipher");
        for (int again = 0; again < 2; ++again) {
            m_shop->boxes.expect("Hata", text, MessageBoxAnswer::ok);
            m_shop->key(Qt::Key_F1);
            QCOMPARE(m_shop->lines(), 1);
            QCOMPARE(m_shop->toplam(), "32,50");
        }
        QVERIFY(!QFile::exists(m_shop->databaseFile()));
        QVERIFY(QFile::rename(m_shop->file("elsewhere"), m_shop->databaseFile()));
        m_shop->key(Qt::Key_F1);
        QCOMPARE(m_shop->lines(), 0);
        QCOMPARE(m_shop->rows("SELECT barkod FROM satislar ORDER BY no"),
                 (QList<QVariantList>{{goods::bread}, {goods::milk}}));
        QCOMPARE(stock(goods::milk), 9.0);
    }

    void aRestoredFileTakesTheSale() {
        if (ShopFixture::isOnServer())
            QSKIP("puts another file in its place");
        const QString backup = m_shop->file("yedek.data");
        QCOMPARE(QProcess::execute("cp", {m_shop->databaseFile(), backup}), 0);
        m_shop->scan(goods::bread);
        m_shop->key(Qt::Key_F1);
        m_shop->scan(goods::milk);
        QVERIFY(QFile::remove(m_shop->databaseFile()) && QFile::rename(backup, m_shop->databaseFile()));
        m_shop->key(Qt::Key_F1);
        QCOMPARE(m_shop->rows("SELECT barkod FROM satislar"), (QList<QVariantList>{{goods::milk}}));
        QCOMPARE(stock(goods::bread), 10.0);
        QCOMPARE(stock(goods::milk), 9.0);
        m_shop->scan(goods::tea);
        QCOMPARE(m_shop->lines(), 1);
        QCOMPARE(m_shop->rows("PRAGMA integrity_check"), (QList<QVariantList>{{"ok"}}));
    }

    void purchasePrice_data() {
        addRows<PurchasePriceRow>({{"known", {goods::bread, 7.0}},
                                   {"blanks around", {" " + goods::bread + " ", 7.0}},
                                   {"unknown", {"999", 0.0}},
                                   {"empty", {"  ", 0.0}},
                                   {"an apostrophe", {"'", 0.0}}});
    }
    void purchasePrice() {
        QFETCH(const PurchasePriceRow, row);
        QCOMPARE(alisfiyati(row.barcode), row.price);
    }

    void valueOfTheStock() {
        double purchase = 100;
        double sale = 0;
        int count = 99;
        stokdegeri(purchase, sale, count);
        QCOMPARE(count, 5);
        QCOMPARE(purchase, 100 + 7 * 10 + 25 * 10 + 1000 * 10 + 30 * 100.0);
        QCOMPARE(sale, 10 * 10 + 32.5 * 10 + 1234.5 * 10 + 40 * 100.0);
    }

    void withoutAConnectionNothingIsTried() {
        const auto numberOf = [](const std::function<void()>& step) {
            try {
                step();
            } catch (const RuntimeError& error) {
                return std::tuple(error.number(), error.source(), error.description());
            }
            return std::tuple(0, QString(), QString());
        };
        // A screen whose own connection never opened.
        closeShop();
        ShopFixture shop;
        shop.boxes.expectAny(MessageBoxAnswer::ok);
        shop.boxes.expectAny(MessageBoxAnswer::ok);
        satisekrani& sales = screen<satisekrani>();
        QCOMPARE(numberOf([&] { sales.satiskaydet(); }),
                 std::tuple(-2147216403, QString("satislar"), QString("DB baglantisi yok")));
        QCOMPARE(numberOf([&] { sales.stokguncelle(); }),
                 std::tuple(-2147216402, QString("stokguncelle"), QString("DB baglantisi yok")));
        sales.ui.satisekrani1->setRows(3);
        sales.ui.satisekrani1->setTextMatrix(1, 1, goods::bread);
        shop.boxes.expect("Hata", "Veritabanı baılantısı kurulamadı", MessageBoxAnswer::ok);
        sales.ui.kaydet->click();
        QCOMPARE(sales.ui.satisekrani1->rows(), 3);
        QVERIFY(allAnswered(shop.boxes));
        ScreenRegistry::clear();
        QFETCH_GLOBAL(QString, password);
        openShop(password);
    }

    void aLineThatLostItsQuantitySellsOne() {
        // A scan that merges while the current row is another line takes that line's quantity away.
        m_shop->scan(goods::bread);
        m_shop->scan(goods::milk);
        m_shop->ui().satisekrani1->setRow(2);
        m_shop->ui().satisekrani1->setCol(1);
        m_shop->ui().barkod->setText(goods::bread);
        m_shop->sales().urunekle();
        QCOMPARE(m_shop->line(1).at(2), "2");
        QCOMPARE(m_shop->line(2).at(2), "");
        m_shop->key(Qt::Key_F1);
        QCOMPARE(sales().value(1).value(3), 1.0);
    }

    void theSharedConnectionLostStoresWithoutCost() {
        m_shop->scan(goods::bread);
        baglantikapat();
        // The screen's own connection is open still: it stores, at a cost of 0, since the shared one can't be
        // asked.
        m_shop->writeConfig("[ayar]\r\ndbpass=yanlis\r\n");
        m_shop->boxes.expectAny(MessageBoxAnswer::ok);
        m_shop->key(Qt::Key_F1);
        QCOMPARE(sales().value(0).value(5), 0.0);
    }
};

int main(int argc, char** argv) {
    return runTests<CommitTest>(argc, argv);
}

#include "test_commit.moc"
