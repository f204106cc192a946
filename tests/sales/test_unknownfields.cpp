#include <QLineEdit>

#include "rows.h"
#include "salestest.h"

using namespace kovanix;

/// The fields and price keys of the panel for an unknown barcode: what they take, and what is stored of it.
class UnknownFieldsTest : public SalesTest {
    Q_OBJECT

    struct BarcodesThatOpenThePanelRow {
        QString barcode;
        bool opens;
    };
    struct TypedNamesRow {
        QString typed, name;
    };
    struct PastedNamesRow {
        QString pasted, stored;
    };
    struct TypedPricesRow {
        QString typed, text;
    };
    struct PastedPricesRow {
        QString pasted, text;
    };
    struct KeysThatMakeNoNumberRow {
        QList<int> keys;
        QString text;
    };
    struct StoredPricesRow {
        QString price;
        double stored;
        QString cell;
    };

    bool panelIsOpen() const { return ui().urunbulunamadiframesi->isVisible(); }
    int productCount() const {
        return m_shop->rows("SELECT COUNT(*) FROM urunler").value(0).value(0).toInt();
    }

private Q_SLOTS:
    // --- the barcode

    void barcodesThatOpenThePanel_data() {
        addRows<BarcodesThatOpenThePanelRow>({{"thirteen digits", {unknown, true}},
                                              {"one digit", {"7", true}},
                                              {"leading zeros", {"0000001", true}},
                                              {"one zero", {"0", false}},
                                              {"four zeros", {"0000", false}},
                                              {"thirteen zeros", {QString(13, u'0'), false}},
                                              {"fifty zeros", {QString(50, u'0'), false}}});
    }
    void barcodesThatOpenThePanel() {
        QFETCH(const BarcodesThatOpenThePanelRow, row);
        ui().adet->setText("4");
        m_shop->scan(row.barcode);
        QCOMPARE(panelIsOpen(), row.opens);
        QCOMPARE(ui().bulunulamayaurun->text(), row.opens ? row.barcode : "");
        QCOMPARE(ui().barkod->text(), "");
        QCOMPARE(ui().adet->text(), "");
        QCOMPARE(m_shop->lines(), 0);
        if (!row.opens)
            QTRY_VERIFY(ui().barkod->hasFocus());
    }

    void barcodesAreStoredWhole_data() {
        QTest::addColumn<QString>("barcode");
        const auto row = [](const char* name, const QString& barcode) { QTest::newRow(name) << barcode; };
        row("letters", "abc-DEF");
        row("an apostrophe", "7'7");
        row("Turkish letters keep their case", "çilek-İ1ı");
        row("51 digits", QString(51, u'7'));
        row("1,000 digits", QString("1234567890").repeated(100));
        row("1,000 letters", QString(1000, u'x'));
    }
    void barcodesAreStoredWhole() {
        // Not cut to its column like a name: the till must find again what it stored.
        QFETCH(QString, barcode);
        m_shop->scan(unknown);
        paste(*ui().bulunulamayaurun, barcode);
        pressKeys("bununamayanurunfiyat", {18});
        press(*ui().urunbuunamadikaydet);
        QCOMPARE(products(barcode), (QList<QVariantList>{{barcode, "", 5.0, 5.0, 1.0}}));
        QCOMPARE(products(unknown).size(), 0);
        QCOMPARE(m_shop->lines(), 1);
        QCOMPARE(m_shop->line(1), (QStringList{barcode, "", "1", "5,00", "5,00"}));
        m_shop->key(Qt::Key_F1);
        QCOMPARE(soldLines().value(0).value(0).toString(), barcode);
        QCOMPARE(products(barcode).value(0).value(4), 0.0);
    }

    void aBarcodeWithABlankAtItsEndIsStoredSoAndNotFound() {
        // It is stored as it stands in the field and looked up without its blanks: the panel opens again.
        paste(*ui().barkod, "777 ");
        m_shop->key(Qt::Key_Return);
        QCOMPARE(ui().bulunulamayaurun->text(), "777 ");
        pressKeys("bununamayanurunfiyat", {18});
        press(*ui().urunbuunamadikaydet);
        QCOMPARE(products("777 ").size(), 1);
        QVERIFY(panelIsOpen());
        QCOMPARE(m_shop->lines(), 0);
    }

    void aBarcodeThatIsKnownMeanwhileIsStoredTwice() {
        // Nobody looks again: the first of the two is sold.
        fillInUnknown("sakız", "1");
        m_shop->addProduct(unknown, "Başka Sakız", 1, 2);
        press(*ui().urunbuunamadikaydet);
        QCOMPARE(products(unknown).size(), 2);
        QCOMPARE(m_shop->line(1).at(1), "Başka Sakız");
    }

    // --- the name

    void typedNames_data() {
        addRows<TypedNamesRow>(
            {{"dotted i", {"i", "İ"}},
             {"dotless i", {"ı", "I"}},
             {"capitals of both", {"İI", "İI"}},
             {"ş", {"ş", "Ş"}},
             {"ç", {"ç", "Ç"}},
             {"ğ", {"ğ", "Ğ"}},
             {"ü", {"ü", "Ü"}},
             {"ö", {"ö", "Ö"}},
             {"ß has no capital", {"ß", "ß"}},
             {"â", {"â", "Â"}},
             {"all plain letters", {"abcdefghjklmnopqrstuvwxyz", "ABCDEFGHJKLMNOPQRSTUVWXYZ"}},
             {"digits", {"0123456789", "0123456789"}},
             {"an apostrophe", {"o'nun", "O'NUN"}},
             {"signs of the letter transcription", {"a|!#$@%&*^~{}b", "A|!#$@%&*^~{}B"}},
             {"blanks inside", {"iki  ekmek", "İKİ  EKMEK"}},
             {"an emoji", {"ekmek🍞i", "EKMEK🍞İ"}},
             {"empty", {"", ""}}});
    }
    void typedNames() {
        QFETCH(const TypedNamesRow, row);
        fillInUnknown(row.typed, "5");
        QCOMPARE(ui().urunadi->text(), row.name);  // while it is typed
        ui().urunadi->clear();
        ui().urunadi->setFocus();
        compose(row.typed);
        QCOMPARE(ui().urunadi->text(), row.name);
        press(*ui().urunbuunamadikaydet);
        QCOMPARE(products(unknown), (QList<QVariantList>{{unknown, row.name, 5.0, 5.0, 1.0}}));
        QCOMPARE(m_shop->line(1).at(1), row.name);
        m_shop->key(Qt::Key_F1);
        QCOMPARE(soldLines().value(0).value(1).toString(), row.name);
    }

    void enterInTheNameIsDropped_data() {
        QTest::addColumn<int>("key");
        QTest::newRow("Enter") << int(Qt::Key_Return);
        QTest::newRow("Enter of the number pad") << int(Qt::Key_Enter);
    }
    void enterInTheNameIsDropped() {
        QFETCH(int, key);
        fillInUnknown("", "5");
        press(*ui().urunadi);
        m_shop->type("a");
        m_shop->key(Qt::Key(key));
        m_shop->type("b");
        m_shop->key(Qt::Key_Backspace);
        QCOMPARE(ui().urunadi->text(), "A");
        QVERIFY(ui().urunadi->hasFocus());
        QVERIFY(panelIsOpen());
        QCOMPARE(productCount(), 5);
    }

    void pastedNames_data() {
        addRows<PastedNamesRow>(
            {{"lower case", {"çikolatalı gofret ışık", "ÇİKOLATALI GOFRET IŞIK"}},
             {"50 characters", {QString(50, u'i'), QString(50, u'İ')}},
             {"51 characters", {QString(51, u'i'), QString(50, u'İ')}},
             {"60 characters", {QString(50, u'a') + QString(10, u'b'), QString(50, u'A')}},
             {"an emoji that would be cut in two", {QString(49, u'a') + "🍞", QString(49, u'A')}},
             {"an emoji that just fits", {QString(48, u'a') + "🍞", QString(48, u'A') + "🍞"}},
             {"an injection", {"'); drop table urunler;--", "'); DROP TABLE URUNLER;--"}}});
    }
    void pastedNames() {
        QFETCH(const PastedNamesRow, row);
        fillInUnknown("", "5");
        paste(*ui().urunadi, row.pasted);
        QCOMPARE(ui().urunadi->text(), row.pasted);
        press(*ui().urunbuunamadikaydet);
        QCOMPARE(products(unknown), (QList<QVariantList>{{unknown, row.stored, 5.0, 5.0, 1.0}}));
        QCOMPARE(m_shop->line(1).at(1), row.stored);
    }

    void aPastedNameStandsOnOneLine() {
        fillInUnknown("", "5");
        paste(*ui().urunadi, "A\r\nB\tC");
        QCOMPARE(ui().urunadi->text(), "A B C");
        press(*ui().urunbuunamadikaydet);
        QCOMPARE(products(unknown).value(0).value(1).toString(), "A B C");
    }

    void aTypedNameOfSixtyCharacters() {
        fillInUnknown(QString(60, u'i'), "5");
        QCOMPARE(ui().urunadi->text(), QString(60, u'İ'));
        press(*ui().urunbuunamadikaydet);
        QCOMPARE(products(unknown).value(0).value(1).toString(), QString(50, u'İ'));
    }

    // --- the price

    void typedPrices_data() {
        addRows<TypedPricesRow>({{"digits and comma", {"1234567890,12", "1234567890,12"}},
                                 {"letters and signs are dropped", {"a1b.2-3e+' ", "123"}},
                                 {"Turkish letters too", {"ışç4", "4"}},
                                 {"a comma alone clears", {",", ""}},
                                 {"a comma alone, then a number", {",5", "5"}},
                                 {"a comma at the end stands", {"5,", "5,"}},
                                 {"a second comma clears all", {"1,2,", ""}},
                                 {"and the rest goes on from there", {"1,2,3", "3"}},
                                 {"zero", {"0", "0"}}});
    }
    void typedPrices() {
        QFETCH(const TypedPricesRow, row);
        fillInUnknown("", row.typed);
        QCOMPARE(ui().urunsatisi->text(), row.text);
    }

    void pastedPrices_data() {
        addRows<PastedPricesRow>({{"groups", {"1.234,5", "1.234,5"}},
                                  {"a sign", {"-5", "-5"}},
                                  {"no number", {"abc", ""}},
                                  {"half a number", {"12abc", ""}},
                                  {"a dot that groups nothing", {"12.5", ""}}});
    }
    void pastedPrices() {
        QFETCH(const PastedPricesRow, row);
        fillInUnknown("", "7");
        paste(*ui().urunsatisi, row.pasted);
        QCOMPARE(ui().urunsatisi->text(), row.text);
    }

    void groupsThatAnEditBreaks() {
        fillInUnknown("", "7");
        paste(*ui().urunsatisi, "1.234");
        m_shop->key(Qt::Key_Backspace);
        QCOMPARE(ui().urunsatisi->text(), "123");
        paste(*ui().urunsatisi, "1.234");
        pressKeys("bununamayanurunfiyat", {18});
        QCOMPARE(ui().urunsatisi->text(), "12345");
        paste(*ui().urunsatisi, "1.234");
        pressKeys("bununamayanurunfiyat", {23});
        QCOMPARE(ui().urunsatisi->text(), "");
    }

    void priceKeys() {
        m_shop->scan(unknown);
        pressKeys("bununamayanurunfiyat", {12, 16, 17, 13, 18, 19, 14, 20, 21, 22, 15, 18});
        QCOMPARE(ui().urunsatisi->text(), "1234567890,5");
        QVERIFY(ui().urunbuunamadibeklet->hasFocus());  // the keys take none
    }

    void theClearingKeyGoesByTheChange() {
        m_shop->scan(unknown);
        pressKeys("bununamayanurunfiyat", {18});
        QStringList changes;
        connect(ui().urunsatisi, &QLineEdit::textChanged, this,
                [&changes](const QString& text) { changes.append(text); });
        pressKeys("bununamayanurunfiyat", {23});
        QCOMPARE(ui().urunsatisi->text(), "");
        QVERIFY(changes.contains("5SİL"));  // its caption was written, and that is no number
        pressKeys("bununamayanurunfiyat", {23});
        QCOMPARE(ui().urunsatisi->text(), "");
        disconnect(ui().urunsatisi, nullptr, this, nullptr);
    }

    void keysThatMakeNoNumber_data() {
        addRows<KeysThatMakeNoNumberRow>({{"a comma alone", {QList<int>{15}, ""}},
                                          {"two commas", {QList<int>{12, 15, 16, 15}, ""}},
                                          {"a comma at the end", {QList<int>{12, 15}, "1,"}}});
    }
    void keysThatMakeNoNumber() {
        QFETCH(const KeysThatMakeNoNumberRow, row);
        m_shop->scan(unknown);
        pressKeys("bununamayanurunfiyat", row.keys);
        QCOMPARE(ui().urunsatisi->text(), row.text);
    }

    void storedPrices_data() {
        addRows<StoredPricesRow>({{"zero", {"0", 0.0, "0,00"}},
                                  {"a comma at the end", {"5,", 5.0, "5,00"}},
                                  {"three decimals stay in the file", {"1,005", 1.005, "1,01"}},
                                  {"thousands", {"1234,5", 1234.5, "1.234,50"}},
                                  {"pasted groups", {"1.234,5", 1234.5, "1.234,50"}}});
    }
    void storedPrices() {
        QFETCH(const StoredPricesRow, row);
        fillInUnknown("x", "");
        paste(*ui().urunsatisi, row.price);
        press(*ui().urunbuunamadikaydet);
        QCOMPARE(products(unknown), (QList<QVariantList>{{unknown, "X", row.stored, row.stored, 1.0}}));
        QCOMPARE(m_shop->line(1).at(3), row.cell);
        QCOMPARE(m_shop->line(1).at(2), "1");
    }

    void aPriceIsRequired() {
        fillInUnknown("sakız", "");
        const auto before = tables();
        m_shop->boxes.expect("    ", "Satış fiyatı mutlaka girilmelidir", MessageBoxAnswer::ok);
        press(*ui().urunbuunamadikaydet);
        QCOMPARE(m_boxes.value(0).buttons, QStringList{"Tamam"});
        QCOMPARE(m_boxes.value(0).icon, QMessageBox::NoIcon);
        QTRY_VERIFY(ui().urunsatisi->hasFocus());
        QVERIFY(panelIsOpen());
        QCOMPARE(ui().bulunulamayaurun->text(), unknown);
        QCOMPARE(ui().urunadi->text(), "SAKIZ");
        QCOMPARE(tables(), before);
        m_shop->type("3");
        press(*ui().urunbuunamadikaydet);
        QCOMPARE(m_shop->line(1), (QStringList{unknown, "SAKIZ", "1", "3,00", "3,00"}));
    }
};

int main(int argc, char** argv) {
    return runTests<UnknownFieldsTest>(argc, argv);
}

#include "test_unknownfields.moc"
