#include <QLineEdit>

#include "salestest.h"

using namespace kovanix;

/// The fields and price keys of the panel for an unknown barcode: what they take, and what is stored of it.
class UnknownFieldsTest : public SalesTest {
    Q_OBJECT

    bool panelIsOpen() const { return ui().urunbulunamadiframesi->isVisible(); }
    int productCount() const {
        return m_shop->rows("SELECT COUNT(*) FROM urunler").value(0).value(0).toInt();
    }

private Q_SLOTS:
    // --- the barcode

    void barcodesThatOpenThePanel_data() {
        QTest::addColumn<QString>("barcode");
        QTest::addColumn<bool>("opens");
        const auto row = [](const char* name, const QString& barcode, bool opens) {
            QTest::newRow(name) << barcode << opens;
        };
        row("thirteen digits", unknown, true);
        row("one digit", "7", true);
        row("leading zeros", "0000001", true);
        row("one zero", "0", false);
        row("four zeros", "0000", false);
        row("thirteen zeros", QString(13, u'0'), false);
        row("fifty zeros", QString(50, u'0'), false);
    }
    void barcodesThatOpenThePanel() {
        QFETCH(QString, barcode);
        QFETCH(bool, opens);
        ui().adet->setText("4");
        m_shop->scan(barcode);
        QCOMPARE(panelIsOpen(), opens);
        QCOMPARE(ui().bulunulamayaurun->text(), opens ? barcode : "");
        QCOMPARE(ui().barkod->text(), "");
        QCOMPARE(ui().adet->text(), "");
        QCOMPARE(m_shop->lines(), 0);
        if (!opens)
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
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("name");
        const auto row = [](const char* name, const char* typed, const char* stored) {
            QTest::newRow(name) << QString::fromUtf8(typed) << QString::fromUtf8(stored);
        };
        row("dotted i", "i", "İ");
        row("dotless i", "ı", "I");
        row("capitals of both", "İI", "İI");
        row("ş", "ş", "Ş");
        row("ç", "ç", "Ç");
        row("ğ", "ğ", "Ğ");
        row("ü", "ü", "Ü");
        row("ö", "ö", "Ö");
        row("ß has no capital", "ß", "ß");
        row("â", "â", "Â");
        row("all plain letters", "abcdefghjklmnopqrstuvwxyz", "ABCDEFGHJKLMNOPQRSTUVWXYZ");
        row("digits", "0123456789", "0123456789");
        row("an apostrophe", "o'nun", "O'NUN");
        row("signs of the letter transcription", "a|!#$@%&*^~{}b", "A|!#$@%&*^~{}B");
        row("blanks inside", "iki  ekmek", "İKİ  EKMEK");
        row("an emoji", "ekmek🍞i", "EKMEK🍞İ");
        row("empty", "", "");
    }
    void typedNames() {
        QFETCH(QString, typed);
        QFETCH(QString, name);
        fillInUnknown(typed, "5");
        QCOMPARE(ui().urunadi->text(), name);  // while it is typed
        ui().urunadi->clear();
        ui().urunadi->setFocus();
        compose(typed);
        QCOMPARE(ui().urunadi->text(), name);
        press(*ui().urunbuunamadikaydet);
        QCOMPARE(products(unknown), (QList<QVariantList>{{unknown, name, 5.0, 5.0, 1.0}}));
        QCOMPARE(m_shop->line(1).at(1), name);
        m_shop->key(Qt::Key_F1);
        QCOMPARE(soldLines().value(0).value(1).toString(), name);
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
        QTest::addColumn<QString>("pasted");
        QTest::addColumn<QString>("stored");
        const auto row = [](const char* name, const QString& pasted, const QString& stored) {
            QTest::newRow(name) << pasted << stored;
        };
        row("lower case", "çikolatalı gofret ışık", "ÇİKOLATALI GOFRET IŞIK");
        row("50 characters", QString(50, u'i'), QString(50, u'İ'));
        row("51 characters", QString(51, u'i'), QString(50, u'İ'));
        row("60 characters", QString(50, u'a') + QString(10, u'b'), QString(50, u'A'));
        row("an emoji that would be cut in two", QString(49, u'a') + "🍞", QString(49, u'A'));
        row("an emoji that just fits", QString(48, u'a') + "🍞", QString(48, u'A') + "🍞");
        row("an injection", "'); drop table urunler;--", "'); DROP TABLE URUNLER;--");
    }
    void pastedNames() {
        QFETCH(QString, pasted);
        QFETCH(QString, stored);
        fillInUnknown("", "5");
        paste(*ui().urunadi, pasted);
        QCOMPARE(ui().urunadi->text(), pasted);
        press(*ui().urunbuunamadikaydet);
        QCOMPARE(products(unknown), (QList<QVariantList>{{unknown, stored, 5.0, 5.0, 1.0}}));
        QCOMPARE(m_shop->line(1).at(1), stored);
    }

    void aTypedNameOfSixtyCharacters() {
        fillInUnknown(QString(60, u'i'), "5");
        QCOMPARE(ui().urunadi->text(), QString(60, u'İ'));
        press(*ui().urunbuunamadikaydet);
        QCOMPARE(products(unknown).value(0).value(1).toString(), QString(50, u'İ'));
    }

    // --- the price

    void typedPrices_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, const char* typed, const char* text) {
            QTest::newRow(name) << QString::fromUtf8(typed) << text;
        };
        row("digits and comma", "1234567890,12", "1234567890,12");
        row("letters and signs are dropped", "a1b.2-3e+' ", "123");
        row("Turkish letters too", "ışç4", "4");
        row("a comma alone clears", ",", "");
        row("a comma alone, then a number", ",5", "5");
        row("a comma at the end stands", "5,", "5,");
        row("a second comma clears all", "1,2,", "");
        row("and the rest goes on from there", "1,2,3", "3");
        row("zero", "0", "0");
    }
    void typedPrices() {
        QFETCH(QString, typed);
        QFETCH(QString, text);
        fillInUnknown("", typed);
        QCOMPARE(ui().urunsatisi->text(), text);
    }

    void pastedPrices_data() {
        QTest::addColumn<QString>("pasted");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, const QString& pasted, const QString& text) {
            QTest::newRow(name) << pasted << text;
        };
        row("groups", "1.234,5", "1.234,5");
        row("a sign", "-5", "-5");
        row("no number", "abc", "");
        row("half a number", "12abc", "");
        row("a dot that groups nothing", "12.5", "");
    }
    void pastedPrices() {
        QFETCH(QString, pasted);
        QFETCH(QString, text);
        fillInUnknown("", "7");
        paste(*ui().urunsatisi, pasted);
        QCOMPARE(ui().urunsatisi->text(), text);
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
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, const QList<int>& keys, const QString& text) {
            QTest::newRow(name) << keys << text;
        };
        row("a comma alone", QList<int>{15}, "");
        row("two commas", QList<int>{12, 15, 16, 15}, "");
        row("a comma at the end", QList<int>{12, 15}, "1,");
    }
    void keysThatMakeNoNumber() {
        QFETCH(QList<int>, keys);
        QFETCH(QString, text);
        m_shop->scan(unknown);
        pressKeys("bununamayanurunfiyat", keys);
        QCOMPARE(ui().urunsatisi->text(), text);
    }

    void storedPrices_data() {
        QTest::addColumn<QString>("price");
        QTest::addColumn<double>("stored");
        QTest::addColumn<QString>("cell");
        const auto row = [](const char* name, const QString& price, double stored, const QString& cell) {
            QTest::newRow(name) << price << stored << cell;
        };
        row("zero", "0", 0.0, "0,00");
        row("a comma at the end", "5,", 5.0, "5,00");
        row("three decimals stay in the file", "1,005", 1.005, "1,01");
        row("thousands", "1234,5", 1234.5, "1.234,50");
        row("pasted groups", "1.234,5", 1234.5, "1.234,50");
    }
    void storedPrices() {
        QFETCH(QString, price);
        QFETCH(double, stored);
        QFETCH(QString, cell);
        fillInUnknown("x", "");
        paste(*ui().urunsatisi, price);
        press(*ui().urunbuunamadikaydet);
        QCOMPARE(products(unknown), (QList<QVariantList>{{unknown, "X", stored, stored, 1.0}}));
        QCOMPARE(m_shop->line(1).at(3), cell);
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
