#include <QApplication>

#include "app/modTurkce.h"
#include "appearance/keyboardfield.h"
#include "appearance/keyboardscreen.h"
#include "appearance/mdlMonitors.h"
#include "data/baglanmamodulu.h"
#include "productstest.h"
#include "rows.h"
#include "runtime/screenregistry.h"
#include "widgets/adodc.h"
#include "widgets/tdbgrid.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

using Box = QLineEdit* (*)(const Ui::urunler&);

QLineEdit* barcode(const Ui::urunler& ui) {
    return ui.barkod2;
}
QLineEdit* name(const Ui::urunler& ui) {
    return ui.urun2;
}
QLineEdit* purchase(const Ui::urunler& ui) {
    return ui.alis;
}
QLineEdit* sale(const Ui::urunler& ui) {
    return ui.fiyat;
}
QLineEdit* stock(const Ui::urunler& ui) {
    return ui.stok;
}

struct TextRow {
    Box box;
    QString text;
    QString left;  ///< what stands in the box then
};

struct KeyboardRow {
    Image* Ui::urunler::*picture;
    QString keyboard;
    QString code;
    int screenWidth = 1024;
};

}  // namespace

Q_DECLARE_METATYPE(TextRow)
Q_DECLARE_METATYPE(KeyboardRow)

/// What is typed into the entry frame: the walk, the filters, and the check of the barcode when it is left.
class TestUrunlerEntry : public ProductsTest {
    Q_OBJECT

    const QString taken = goods::milk;

    /// The frame open for a new product, with a barcode in it that a product has.
    void typeTaken() {
        open();
        press(*form().kisiekleme2);
        type(taken);
        QVERIFY(form().barkod2->hasFocus());
    }
    void expectRefusal() {
        m_shop->boxes.expect(metin(u"BILGI"_s), metin(u"URUN_KAYITLI"_s), MessageBoxAnswer::ok);
    }
    void compareRefused() {
        QCOMPARE(m_boxes.size(), 1);
        QCOMPARE(m_boxes[0].icon, QMessageBox::Information);
        QCOMPARE(form().barkod2->text(), QString());
        QTRY_VERIFY(form().barkod2->hasFocus());
        QCOMPARE(stored().size(), 5);
    }

private Q_SLOTS:
    void enterWalks() {
        open();
        press(*form().kisiekleme2);
        for (QWidget* next : {static_cast<QWidget*>(form().urun2), static_cast<QWidget*>(form().alis),
                              static_cast<QWidget*>(form().fiyat), static_cast<QWidget*>(form().stok),
                              static_cast<QWidget*>(form().kayit)}) {
            key(Qt::Key_Return);
            QVERIFY2(next->hasFocus(), qPrintable(next->objectName()));
        }
        QCOMPARE(fields(), (QStringList{{}, {}, {}, {}, {}}));
        QVERIFY(m_boxes.isEmpty());  // kayit has the focus, and isn't pressed
    }

    void typed_data() {
        const QString all = u"aZ09,.-+ 'ı%"_s;
        addRows<TextRow>({
            {"barcode: digits", {barcode, all, u"09"_s}},
            {"barcode of 60 digits", {barcode, u"1234567890"_s.repeated(6), u"1234567890"_s.repeated(6)}},
            {"purchase: digits and comma", {purchase, all, u"09,"_s}},
            {"sale: digits and comma", {sale, all, u"09,"_s}},
            {"stock: digits and comma", {stock, all, u"09,"_s}},
            {"a point is refused", {sale, u"12.5"_s, u"125"_s}},
            {"two commas pass", {sale, u"1,2,3"_s, u"1,2,3"_s}},
            {"name: capitals", {name, u"çiğ ılık i I süt 1 l"_s, u"ÇİĞ ILIK İ I SÜT 1 L"_s}},
            {"name: other letters", {name, u"ñß€"_s, u"Ñß€"_s}},
            {"name: anything else", {name, u"'%_[];--"_s, u"'%_[];--"_s}},
        });
    }
    void typed() {
        QFETCH(const TextRow, row);
        open();
        press(*form().kisiekleme2);
        row.box(form())->setFocus();
        type(row.text);
        QCOMPARE(row.box(form())->text(), row.left);
    }

    void backspacePasses() {
        open();
        press(*form().kisiekleme2);
        type(u"123"_s);
        key(Qt::Key_Backspace);
        QCOMPARE(form().barkod2->text(), u"12"_s);
    }

    void pasted_data() {
        addRows<TextRow>({
            {"a grouped amount is kept", {sale, u"1.234,56"_s, u"1.234,56"_s}},
            {"a point passes", {sale, u"12.5"_s, u"12.5"_s}},
            {"letters in a barcode pass", {barcode, u"ab12"_s, u"ab12"_s}},
            {"small letters stay", {name, u"küçük"_s, u"küçük"_s}},
            {"line ends become blanks", {name, u"a\r\nb\nc\u2028d\u2029e"_s, u"a b c d e"_s}},
            {"tabs become blanks", {barcode, u"12\t34"_s, u"12 34"_s}},
            {"right to left", {name, u"\u202Eשלום\u200F"_s, u"\u202Eשלום\u200F"_s}},
            {"10,000 characters", {name, u"ab'%["_s.repeated(2000), u"ab'%["_s.repeated(2000)}},
        });
    }
    void pasted() {
        QFETCH(const TextRow, row);
        open();
        press(*form().kisiekleme2);
        paste(*row.box(form()), row.text);
        QCOMPARE(row.box(form())->text(), row.left);
    }

    // --- keyboards
    void keyboards_data() {
        addRows<KeyboardRow>({
            {"barcode", {&Ui::urunler::barkod2k, u"klavyesayi"_s, u"1"_s}},
            {"purchase", {&Ui::urunler::alisk, u"klavyesayi"_s, u"2"_s}},
            {"sale", {&Ui::urunler::fiyatk, u"klavyesayi"_s, u"3"_s}},
            {"stock", {&Ui::urunler::stokk, u"klavyesayi"_s, u"4"_s}},
            {"name", {&Ui::urunler::urun2k, u"klavyeyeni2"_s, u"3"_s}},
            {"name on a wide screen", {&Ui::urunler::urun2k, u"klavyeyeni"_s, u"3"_s, 1366}},
        });
    }
    void keyboards() {
        QFETCH(const KeyboardRow, row);
        m_shop->setScreenWidth(row.screenWidth);
        monitorlerioku();
        open();
        press(*form().kisiekleme2);
        press(*(form().*row.picture));
        const KeyboardScreen* opened = nullptr;
        for (Screen* screen : ScreenRegistry::all()) {
            if (auto* keyboard = qobject_cast<KeyboardScreen*>(screen))
                opened = keyboard;
        }
        QVERIFY(opened);
        QCOMPARE(QString::fromLatin1(opened->metaObject()->className()).section(u':', -1), row.keyboard);
        QCOMPARE(opened->ui.nereye->text(), row.code);
    }

    void keyboardWritesBack() {
        monitorlerioku();
        open();
        press(*form().kisiekleme2);
        press(*form().fiyatk);
        screen<klavyesayi>().ui.yazilan->setText(u"12,5"_s);
        QTest::mouseClick(screen<klavyesayi>().findChild<QWidget*>(u"vkCommand1_39"_s), Qt::LeftButton);
        QTRY_VERIFY(!loaded<klavyesayi>());
        QCOMPARE(form().fiyat->text(), u"12,5"_s);
    }

    void groupsThatAnEditBreaks() {
        open();
        press(*form().kisiekleme2);
        for (QLineEdit* field : {form().alis, form().fiyat, form().stok}) {
            field->setText(u"1.234"_s);
            field->setFocus();
            key(Qt::Key_Backspace);
            QCOMPARE(field->text(), u"123"_s);
        }
    }

    // --- the check of the barcode
    void takenBarcodeByEnter() {
        typeTaken();
        expectRefusal();
        key(Qt::Key_Return);
        compareRefused();
    }
    void takenBarcodeByTab() {
        typeTaken();
        expectRefusal();
        key(Qt::Key_Tab);
        compareRefused();
    }
    void takenBarcodeByAPressOnAField() {
        typeTaken();
        expectRefusal();
        press(*form().fiyat);
        compareRefused();
    }
    void takenBarcodeByAPressOnSave() {
        typeTaken();
        form().urun2->setText(u"ÇİFT"_s);
        form().fiyat->setText(u"1"_s);
        expectRefusal();
        press(*form().kayit);
        compareRefused();
        QVERIFY(!form().kayit->isDown());
        QCOMPARE(form().urun2->text(), u"ÇİFT"_s);
    }
    void takenBarcodeByAPressOnSaveAndClose() {
        typeTaken();
        form().urun2->setText(u"ÇİFT"_s);
        form().fiyat->setText(u"1"_s);
        expectRefusal();
        press(*form().kaydet2);
        compareRefused();
        QVERIFY(form().kisiekle2->isVisible());
        QVERIFY(!form().kaydet2->isDown());
    }
    void takenBarcodeByAPressOnCancel() {
        typeTaken();
        expectRefusal();
        press(*form().vazgec2);
        compareRefused();
        press(*form().vazgec2);  // it goes the second time
        QVERIFY(!form().kisiekle2->isVisible());
    }
    void takenBarcodeByAPressOnTheList() {
        typeTaken();
        expectRefusal();
        choose(2);
        compareRefused();
        QCOMPARE(form().Adodc2->recordset().current(), 0);  // the press chose none
    }
    void aPressGoesOnWithABarcodeThatIsFree() {
        open();
        press(*form().kisiekleme2);
        type(u"777"_s);
        expectNotice(u"MSG_URUN_ADI_BOS"_s);
        press(*form().kayit);
        QTRY_VERIFY(form().urun2->hasFocus());
    }

    void blanksAroundATakenBarcode() {
        open();
        press(*form().kisiekleme2);
        paste(*form().barkod2, u"  "_s + taken + u' ');
        expectRefusal();
        key(Qt::Key_Tab);
        compareRefused();
    }
    void aBarcodeOfBlanksFindsNone() {
        m_shop->addProduct({}, u"Barkodsuz"_s, 1, 2);
        open();
        press(*form().kisiekleme2);
        for (const QString& blanks : {QString(), u"   "_s}) {
            form().barkod2->setText(blanks);
            form().barkod2->setFocus();
            key(Qt::Key_Tab);
            QVERIFY(form().urun2->hasFocus());
        }
    }
    void aHostileBarcodeFindsNone() {
        open();
        press(*form().kisiekleme2);
        for (const QString& text : {u"' OR 1=1 --"_s, u"%"_s, u"[*]"_s, u"9"_s.repeated(60)}) {
            paste(*form().barkod2, text);
            form().barkod2->setFocus();
            key(Qt::Key_Tab);
            QCOMPARE(form().barkod2->text(), text);
        }
    }
    void leavingForAnotherWindowAsksNothing() {
        typeTaken();
        m_shop->sales().activateWindow();
        m_shop->ui().barkod->setFocus();
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
        QCOMPARE(form().barkod2->text(), taken);
    }
    void leavingForABoxAsksNothing() {
        typeTaken();
        m_shop->boxes.expectAny(MessageBoxAnswer::ok);
        uyarimesaj(u"x"_s, 0);
        QCOMPARE(form().barkod2->text(), taken);
        QCOMPARE(m_boxes.size(), 1);
    }
    void leavingForAKeyboardAsksNothing() {
        monitorlerioku();
        typeTaken();
        press(*form().urun2k);
        QTRY_VERIFY(loaded<klavyeyeni2>());
        QCOMPARE(form().barkod2->text(), taken);
    }
    void closingAsksNothing() {
        typeTaken();
        catalogue().close();
        QVERIFY(!loaded<urunler>());
        QTRY_VERIFY(ui().barkod->hasFocus());
    }
    void editingAsksNothing() {
        open();
        choose(1);
        press(*form().duzenle2);
        press(*form().barkod2);
        press(*form().stok);
        QCOMPARE(form().barkod2->text(), taken);
    }
    void theCheckOnALostDatabaseSaysNothingOfTheBarcode() {
        typeTaken();
        m_shop->run(u"ALTER TABLE urunler RENAME TO gone"_s);
        key(Qt::Key_Tab);
        QCOMPARE(form().barkod2->text(), taken);
        QVERIFY(form().urun2->hasFocus());
        m_shop->run(u"ALTER TABLE gone RENAME TO urunler"_s);
    }
};

int main(int argc, char** argv) {
    return runTests<TestUrunlerEntry>(argc, argv);
}

#include "test_urunler_entry.moc"
