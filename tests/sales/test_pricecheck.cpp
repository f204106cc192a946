#include <QLineEdit>

#include "database/engineerror.h"
#include "rows.h"
#include "salestest.h"

using namespace kovanix;

namespace {
const QStringList empty{"", "", ""};
}  // namespace

/// The panel that shows name and price of a barcode beside the ticket.
class PriceCheckTest : public SalesTest {
    Q_OBJECT

    struct KeysRow {
        QString typed, text;
    };
    struct FoundRow {
        QString barcode;
        QStringList shown;
    };
    struct PastedBarcodesRow {
        QString pasted;
        QStringList shown;
    };

    bool panelIsOpen() const { return ui().fiyatgorframe->isVisible(); }
    QStringList results() const {
        return {ui().fiyargorbarkodu2->text(), ui().fiyargoradi->text(), ui().fiyargorfiyati->text()};
    }
    const QStringList bread{goods::bread, "Köy Ekmeği", "10,00"};
    void expectNotFound() const { m_shop->boxes.expect("Bilgi", "ÜRÜN BULUNAMADI", MessageBoxAnswer::ok); }
    /// A ticket, cash, a quantity and subtract mode, so that there is something to spoil; then the panel.
    void openOverASale() const {
        m_shop->scan(goods::milk);
        m_shop->scan(goods::tea);
        m_shop->press(*ui().resim2);
        ui().adet->setText("4");
        ui().barkod->setFocus();
        m_shop->key(Qt::Key_F4);
    }
    QMap<QString, QString> ownTexts() const { return texts(ui().fiyatgorframe); }

private Q_SLOTS:
    void captions() {
        const std::pair<const char*, const char*> controls[] = {
            {"fiyatgorframe", "FİYAT GÖR"}, {"fiyargorkapat", "KAPAT"}, {"fiyatgor", "FİYAT GÖR"}};
        for (const auto& [control, text] : controls)
            QCOMPARE(captionOf(control), text);
    }

    // --- opening and leaving

    void opening_data() {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("F4") << true;
        QTest::newRow("press") << false;
    }
    void opening() {
        QFETCH(bool, byKey);
        QVERIFY(!panelIsOpen());
        m_shop->scan(goods::milk);
        m_shop->press(*ui().resim2);
        ui().vkCommand5->click();
        ui().barkod->setFocus();
        const auto before = texts();
        if (byKey)
            m_shop->key(Qt::Key_F4);
        else
            press(*ui().fiyatgor);
        QVERIFY(panelIsOpen());
        QTRY_VERIFY(ui().fiyargorbarkodu->hasFocus());
        QCOMPARE(m_shop->sales().eksiltme, 0);
        QVERIFY(ui().Shape1->isVisible());  // the marks of the subtract mode stay
        QCOMPARE(texts(), before);
    }

    void leaving_data() {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("KAPAT") << false;
        QTest::newRow("Escape") << true;
    }
    void leaving() {
        QFETCH(bool, byKey);
        openOverASale();
        const auto before = ownTexts();
        m_shop->scan(goods::bread);
        QCOMPARE(results(), bread);
        m_shop->type("123");
        if (byKey)
            m_shop->key(Qt::Key_Escape);
        else
            press(*ui().fiyargorkapat);
        QVERIFY(!panelIsOpen());
        QTRY_VERIFY(ui().barkod->hasFocus());
        QCOMPARE(results(), empty);
        QCOMPARE(ui().fiyargorbarkodu->text(), "");
        QCOMPARE(ownTexts(), before);
        m_shop->key(Qt::Key_F4);  // empty the next time too
        QCOMPARE(results(), empty);
        QCOMPARE(ui().fiyargorbarkodu->text(), "");
    }

    // --- keys

    void keys_data() {
        addRows<KeysRow>({{"digits", {"0123456789", "0123456789"}},
                          {"letters and signs are dropped", {"a1,b.2-' x3", "123"}},
                          {"Turkish letters too", {"ı1şİ2", "12"}},
                          {"an emoji", {"🍞7", "7"}}});
    }
    void keys() {
        QFETCH(const KeysRow, row);
        m_shop->key(Qt::Key_F4);
        m_shop->type(row.typed);
        QCOMPARE(ui().fiyargorbarkodu->text(), row.text);
        m_shop->key(Qt::Key_Backspace);
        QCOMPARE(ui().fiyargorbarkodu->text(), row.text.chopped(1));
        ui().fiyargorbarkodu->clear();
        compose(row.typed);
        QCOMPARE(ui().fiyargorbarkodu->text(), row.text);
        QCOMPARE(results(), empty);  // nothing is asked before Enter
    }

    // --- found

    void found_data() {
        QTest::addColumn<FoundRow>("row");
        const auto row = [](const char* name, const QString& barcode, const char* product,
                            const char* price) {
            QTest::newRow(name) << FoundRow{barcode, {barcode, QString::fromUtf8(product), price}};
        };
        row("a plain price", goods::bread, "Köy Ekmeği", "10,00");
        row("cents", goods::milk, "Tam Yağlı Süt 1 L", "32,50");
        row("thousands", goods::tea, "Çay Bahçesi 5 kg", "1.234,50");
        row("free", goods::bag, "Poşet", "0,00");
        row("a weighed item's short code", goods::tomatoes, "Domates", "40,00");
        row("millions, rounded", "901", "Altın", "1.234.567,89");
        row("half a kuruş goes up", "902", "Sakız", "1,01");
        row("no price", "903", "Fiyatsız", "0,00");
        row("no name", "904", "", "5,00");
        row("a name with signs", "905", "O'nun %50 #1 & [kutu]", "5,00");
    }
    void found() {
        QFETCH(const FoundRow, row);
        m_shop->addProduct("901", "Altın", 1, 1234567.894);
        m_shop->addProduct("902", "Sakız", 1, 1.005);
        m_shop->run("INSERT INTO urunler (barkod, urun, alis) VALUES ('903', 'Fiyatsız', 1)");
        m_shop->run("INSERT INTO urunler (barkod, satis) VALUES ('904', 5)");
        m_shop->addProduct("905", "O'nun %50 #1 & [kutu]", 1, 5);
        openOverASale();
        const auto before = ownTexts();
        const auto stored = tables();
        for (int time = 0; time < 2; ++time) {  // it stays open for the next item
            m_shop->scan(row.barcode);
            QCOMPARE(results(), row.shown);
            QCOMPARE(ui().fiyargorbarkodu->text(), "");
            QVERIFY(ui().fiyargorbarkodu->hasFocus());
            QVERIFY(panelIsOpen());
        }
        QCOMPARE(ownTexts(), before);
        QCOMPARE(tables(), stored);
    }

    void aLongNameIsSeenFromItsBeginning() {
        m_shop->addProduct("906", "Zeytinyağlı Yaprak Sarma Konservesi Aile Boyu 2 Kg", 1, 5);
        m_shop->key(Qt::Key_F4);
        const int usual = ui().fiyargoradi->fontInfo().pixelSize();
        m_shop->scan("906");
        QCOMPARE(ui().fiyargoradi->cursorPosition(), 0);
        QVERIFY(ui().fiyargoradi->fontInfo().pixelSize() < usual);
    }

    void foundByTheNumberPadsEnter() {
        m_shop->key(Qt::Key_F4);
        m_shop->type(goods::bread);
        m_shop->key(Qt::Key_Enter);
        QCOMPARE(results(), bread);
    }

    void pastedBarcodes_data() {
        addRows<PastedBarcodesRow>({{"letters", {"abc-7", QStringList{"abc-7", "Harfli", "3,00"}}},
                                    {"an apostrophe", {"7'7", QStringList{"7'7", "Kesmeli", "4,00"}}},
                                    {"blanks around", {"  " + goods::bread + " ", bread}},
                                    {"Turkish letters", {"çİı", QStringList{"çİı", "Türkçe", "5,00"}}}});
    }
    void pastedBarcodes() {
        QFETCH(const PastedBarcodesRow, row);
        m_shop->addProduct("abc-7", "Harfli", 1, 3);
        m_shop->addProduct("7'7", "Kesmeli", 1, 4);
        m_shop->addProduct("çİı", "Türkçe", 1, 5);
        m_shop->key(Qt::Key_F4);
        paste(*ui().fiyargorbarkodu, row.pasted);
        QCOMPARE(ui().fiyargorbarkodu->text(), row.pasted);
        m_shop->key(Qt::Key_Return);
        QCOMPARE(results(), row.shown);
    }

    void thePriceIsReadFresh() {
        m_shop->key(Qt::Key_F4);
        m_shop->scan(goods::bread);
        m_shop->run("UPDATE urunler SET satis = 11.5 WHERE barkod='" + goods::bread + "'");
        m_shop->scan(goods::bread);
        QCOMPARE(results().at(2), "11,50");
    }

    void anEditedPriceIsTheTicketsOnly() {
        m_shop->scan(goods::bread);
        pressCell(1, 4);
        press(*ui().fiyatdegis);
        m_shop->type("3");
        press(*ui().urunislemlerikapat);
        m_shop->key(Qt::Key_F4);
        m_shop->scan(goods::bread);
        QCOMPARE(results(), bread);
        QCOMPARE(m_shop->line(1).at(3), "3,00");
    }

    // --- not found

    void notFound_data() {
        QTest::addColumn<QString>("pasted");
        const auto row = [](const char* name, const QString& pasted) { QTest::newRow(name) << pasted; };
        row("unknown", "8699999999999");
        row("zeros", "0000");
        row("a scale label isn't split", "2700012007504");
        row("28", "2800012007504");
        row("29", "2900012007504");
        row("the beginning of a barcode", goods::bread.chopped(1));
        row("blanks", "   ");
        row("an apostrophe", "'");
        row("a wildcard", "%");
        row("letters", "ekmek");
    }
    void notFound() {
        QFETCH(QString, pasted);
        openOverASale();
        m_shop->scan(goods::bread);
        QCOMPARE(results(), bread);
        const auto before = ownTexts();
        const auto stored = tables();
        paste(*ui().fiyargorbarkodu, pasted);
        expectNotFound();
        m_shop->key(Qt::Key_Return);
        QCOMPARE(m_boxes.value(0).buttons, QStringList{"Tamam"});
        QCOMPARE(m_boxes.value(0).icon, QMessageBox::NoIcon);
        QCOMPARE(results(), empty);  // what the last one showed is gone
        QCOMPARE(ui().fiyargorbarkodu->text(), "");
        QTRY_VERIFY(ui().fiyargorbarkodu->hasFocus());
        QVERIFY(panelIsOpen());
        QVERIFY(!ui().urunbulunamadiframesi->isVisible());
        QCOMPARE(ownTexts(), before);
        QCOMPARE(tables(), stored);
        m_shop->scan(goods::bread);
        QCOMPARE(results(), bread);
    }

    void aProductWithoutBarcodeIsNotFound() {
        m_shop->addProduct("", "Barkodsuz", 1, 2);
        m_shop->key(Qt::Key_F4);
        paste(*ui().fiyargorbarkodu, " ");
        expectNotFound();
        m_shop->key(Qt::Key_Return);
        QCOMPARE(results(), empty);
    }

    void theResultsGoBeforeTheBoxOpens() {
        m_shop->key(Qt::Key_F4);
        m_shop->scan(goods::bread);
        QStringList shown{"?"};
        connect(&m_shop->boxes, &BoxAnswers::opened, this, [&] { shown = results(); });
        expectNotFound();
        m_shop->scan("8699999999999");
        disconnect(&m_shop->boxes, &BoxAnswers::opened, this, nullptr);
        QCOMPARE(shown, empty);
    }

    // --- nothing to look up, nowhere to look

    void nothingScanned() {
        openOverASale();
        m_shop->scan(goods::bread);
        const auto before = texts();
        m_shop->boxes.expect("Bilgi", "önce ürün barkod okutun ", MessageBoxAnswer::ok);
        m_shop->key(Qt::Key_Return);
        QCOMPARE(m_boxes.value(0).buttons, QStringList{"Tamam"});
        QCOMPARE(m_boxes.value(0).icon, QMessageBox::NoIcon);
        QCOMPARE(texts(), before);  // the last result stays
        QCOMPARE(results(), bread);
        QVERIFY(panelIsOpen());
    }

    void withoutAConnection() {
        if (ShopFixture::isOnServer())
            QSKIP("moves the file away");
        openOverASale();
        m_shop->scan(goods::bread);
        m_shop->type(goods::milk);
        const auto before = texts();
        loseDatabase();
        m_shop->boxes.expectAny(MessageBoxAnswer::ok);  // the open's own box
        m_shop->boxes.expect("Hata", noDatabase, MessageBoxAnswer::ok);
        m_shop->key(Qt::Key_Return);
        QCOMPARE(m_boxes.value(1).icon, QMessageBox::Critical);
        QCOMPARE(texts(), before);  // given up: nothing is lost
        QVERIFY(panelIsOpen());
        bringDatabaseBack();
        ui().fiyargorbarkodu->setFocus();
        m_shop->key(Qt::Key_Return);
        QCOMPARE(results(), (QStringList{goods::milk, "Tam Yağlı Süt 1 L", "32,50"}));
    }

    void aLookUpThatFailsIsTold() {
        openOverASale();
        m_shop->scan(goods::bread);
        const auto before = ownTexts();
        m_shop->run("ALTER TABLE urunler RENAME TO gitti");
        m_shop->boxes.expect(
            "Hata",
            noDatabase + ": " +
                describeFailure(DatabaseError::Kind::noSuchTable, ShopFixture::noTable("urunler")),
            MessageBoxAnswer::ok);
        m_shop->scan(goods::milk);
        QCOMPARE(m_boxes.value(0).icon, QMessageBox::Critical);
        QCOMPARE(results(), empty);
        QCOMPARE(ownTexts(), before);
        QVERIFY(panelIsOpen());
        m_shop->run("ALTER TABLE gitti RENAME TO urunler");
        QTRY_VERIFY(ui().fiyargorbarkodu->hasFocus());
        m_shop->scan(goods::bread);
        QCOMPARE(results(), bread);
    }

    void theSaleGoesOnAfterwards() {
        openOverASale();
        m_shop->scan(goods::bread);
        press(*ui().fiyargorkapat);
        m_shop->scan(goods::bread);  // with the quantity that waited
        QCOMPARE(m_shop->line(3), (QStringList{goods::bread, "Köy Ekmeği", "4", "10,00", "40,00"}));
        m_shop->key(Qt::Key_F1);
        QCOMPARE(soldLines().size(), 3);
    }
};

int main(int argc, char** argv) {
    return runTests<PriceCheckTest>(argc, argv);
}

#include "test_pricecheck.moc"
