#include <QAccessible>
#include <QApplication>

#include "data/baglanmamodulu.h"
#include "rows.h"
#include "runtime/clock.h"
#include "runtime/runtimeerror.h"
#include "salestest.h"
#include "widgets/caption.h"
#include "widgets/controlarray.h"

using namespace kovanix;

/// Keys, quantity field, on-screen keys, focus, function keys, weighed labels in both fields.
class EntryTest : public SalesTest {
    Q_OBJECT

    struct FieldsTakeTheirCharactersRow {
        QString field, typed, text;
    };
    struct WeighedLabelsRow {
        QString label, quantity, total;
    };
    struct FunctionKeysPressTheirButtonsRow {
        Qt::Key key;
        QString button;
    };
    struct CaptionsAndTipsRow {
        QString control, caption, tip;
    };

private Q_SLOTS:
    void fieldsTakeTheirCharacters_data() {
        addRows<FieldsTakeTheirCharactersRow>(
            {{"barkod takes digits", {"barkod", "0123456789", "0123456789"}},
             {"barkod drops all else", {"barkod", "a1,2.3- x4", "1234"}},
             {"barkod takes Backspace", {"barkod", "12\b3", "13"}},
             {"adet takes digits and comma", {"adet", "a1,2.3-", "1,23"}},
             {"adet takes Backspace", {"adet", "12\b3", "13"}},
             {"ver2 takes digits and comma", {"ver2", "x5,5.", "0,005,5"}}});
    }
    void fieldsTakeTheirCharacters() {
        QFETCH(const FieldsTakeTheirCharactersRow, row);
        auto* edit = m_shop->sales().findChild<QLineEdit*>(row.field);
        edit->setFocus();
        edit->end(false);
        for (const QChar character : row.typed) {
            if (character == u'\b')
                QTest::keyClick(edit, Qt::Key_Backspace);
            else
                QTest::keyClick(edit, character.toLatin1());
        }
        QCOMPARE(edit->text(), row.text);
    }

    // What could be undone would be kept for as long as the till runs.
    void whatWasTypedIsntKept() {
        m_shop->scan(goods::milk);
        QCOMPARE(ui().barkod->text(), "");
        QVERIFY(!ui().barkod->isUndoAvailable());
        m_shop->key(Qt::Key_F4);
        m_shop->scan(goods::milk);
        QCOMPARE(ui().fiyargorbarkodu->text(), "");
        QVERIFY(!ui().fiyargorbarkodu->isUndoAvailable());
        press(*ui().fiyargorkapat);
        fillInUnknown("kiraz", "12");
        press(*ui().urunbuunamadikaydet);
        for (const QLineEdit* field : {ui().barkod, ui().adet, ui().urunadi, ui().urunsatisi})
            QVERIFY2(!field->isUndoAvailable(), qPrintable(field->objectName()));
    }

    void enterInAnEmptyBarcodeDoesNothing() {
        m_shop->ui().adet->setText("3");
        m_shop->key(Qt::Key_Return);
        QCOMPARE(m_shop->ui().adet->text(), "3");
        QCOMPARE(m_shop->lines(), 0);
    }

    void theNinthKeyRaisesTheMessage_data() {
        QTest::addColumn<int>("key");
        QTest::newRow("a digit") << int(Qt::Key_9);
        QTest::newRow("Backspace") << int(Qt::Key_Backspace);
        QTest::newRow("a letter that the field drops") << int(Qt::Key_A);
    }
    void theNinthKeyRaisesTheMessage() {
        QFETCH(int, key);
        m_shop->typeInto(*m_shop->ui().adet, "12345678");
        QCOMPARE(m_shop->ui().adet->text(), "12345678");
        m_shop->boxes.expect("Bilgi", "Adet miktarı 8 basamaktan fazla olamaz", MessageBoxAnswer::ok);
        m_shop->key(Qt::Key(key));
        QCOMPARE(m_shop->ui().adet->text(), "");
        QCOMPARE(m_shop->ui().barkod->text(), "");
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
    }

    void aFullQuantityIsLeftByTab_data() {
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::newRow("Tab") << Qt::KeyboardModifiers(Qt::NoModifier);
        QTest::newRow("Shift+Tab") << Qt::KeyboardModifiers(Qt::ShiftModifier);
    }
    void aFullQuantityIsLeftByTab() {
        QFETCH(Qt::KeyboardModifiers, modifiers);
        m_shop->typeInto(*m_shop->ui().adet, "12345678");
        QTest::keyClick(m_shop->ui().adet, modifiers ? Qt::Key_Backtab : Qt::Key_Tab, modifiers);
        QCOMPARE(m_shop->ui().adet->text(), "12345678");
        QVERIFY(!m_shop->ui().adet->hasFocus());
    }

    void everyControlHasAnAccessibleName() {
        for (const QWidget* control : m_shop->sales().findChildren<QWidget*>()) {
            const bool isOurs = !control->objectName().isEmpty() && !control->objectName().startsWith("qt_");
            const bool holdsOthers = control->layout() != nullptr;
            if (!isOurs || holdsOthers || control->isHidden() || qobject_cast<const Shape*>(control) ||
                qobject_cast<const CommandButton*>(control))
                continue;
            QAccessibleInterface* described =
                QAccessible::queryAccessibleInterface(const_cast<QWidget*>(control));
            QVERIFY2(described && !described->text(QAccessible::Name).isEmpty(),
                     qPrintable(control->objectName()));
        }
    }

    void onScreenKeysWriteTheQuantity() {
        const auto keys = controlArrayOf<vkCommand>(m_shop->sales(), "tus");
        QCOMPARE(keys.size(), std::size_t(12));
        QString captions;
        for (const vkCommand* key : keys)
            captions += key->caption() + " ";
        QCOMPARE(captions, "1 2 3 4 7 , 5 6 8 9 0 Sil ");
        for (const int index : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}) {
            keys.at(static_cast<std::size_t>(index))->click();
            QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
        }
        // Longer than the eight that can be typed, and no message.
        QCOMPARE(m_shop->ui().adet->text(), "12347,56890");
        keys.at(11)->click();
        QCOMPARE(m_shop->ui().adet->text(), "");
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
    }

    void groupsThatAnEditOfTheQuantityBreaks() {
        QLineEdit& adet = *m_shop->ui().adet;
        paste(adet, "1.234");
        adet.setFocus();
        m_shop->key(Qt::Key_Backspace);
        QCOMPARE(adet.text(), "123");
        paste(adet, "1.234");
        pressKeys("tus", {6});
        QCOMPARE(adet.text(), "12345");
    }

    void aScanIntoTheQuantityIsABarcode() {
        m_shop->addProduct("3", "Üç", 1, 5);
        m_shop->ui().adet->setFocus();
        m_shop->scan("3");
        QCOMPARE(m_shop->line(1), (QStringList{"3", "Üç", "3", "5,00", "15,00"}));
        QCOMPARE(m_shop->ui().adet->text(), "");
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
    }

    void aWeighedLabelIntoTheQuantity() {
        m_shop->ui().adet->setText("2700012007504");
        m_shop->ui().adet->setFocus();
        m_shop->key(Qt::Key_Return);
        QCOMPARE(m_shop->line(1), (QStringList{"0012", "Domates", "0,75", "40,00", "30,00"}));
    }

    void weighedLabels_data() {
        addRows<WeighedLabelsRow>(
            {{"27", {"2700012007504", "0,75", "30,00"}},
             {"28", {"2800012015009", "1,5", "60,00"}},
             {"29", {"2900012000017", "0,001", "0,04"}},
             {"position 3 is ignored", {"2790012007504", "0,75", "30,00"}},
             {"a misread check digit sells the same", {"2700012007509", "0,75", "30,00"}},
             {"no weight gives a zero line", {"2700012000002", "0", "0,00"}},
             {"longer than a label", {"270001200750412345", "0,75", "30,00"}},
             {"shorter, some weight left", {"27000120", "0", "0,00"}}});
    }
    void weighedLabels() {
        QFETCH(const WeighedLabelsRow, row);
        m_shop->ui().adet->setText("9");  // overwritten by the weight
        m_shop->scan(row.label);
        QCOMPARE(m_shop->lines(), 1);
        QCOMPARE(m_shop->line(1).at(0), goods::tomatoes);
        QCOMPARE(m_shop->line(1).at(2), row.quantity);
        QCOMPARE(m_shop->toplam(), row.total);
    }

    void weighedItemsMerge() {
        m_shop->scan("2700012007504");
        m_shop->scan("2800012012503");
        QCOMPARE(m_shop->lines(), 1);
        QCOMPARE(m_shop->line(1).at(2), "2");
        QCOMPARE(m_shop->toplam(), "80,00");
    }

    void clockTicks() {
        QTRY_COMPARE(m_shop->ui().saat->text(), "07:05:09");
        QCOMPARE(m_shop->ui().tarih->text(), "03.05.2026");
        m_shop->setNow(QDateTime(QDate(2026, 12, 31), QTime(23, 59, 59)));
        QTRY_COMPARE(m_shop->ui().saat->text(), "23:59:59");
        QCOMPARE(m_shop->ui().tarih->text(), "31.12.2026");
    }

    void functionKeysPressTheirButtons_data() {
        QTest::addColumn<FunctionKeysPressTheirButtonsRow>("row");
        const std::pair<Qt::Key, const char*> keys[] = {
            {Qt::Key_F1, "kaydet"},     {Qt::Key_F2, "nakit"},      {Qt::Key_F3, "satisiptal"},
            {Qt::Key_F4, "fiyatgor"},   {Qt::Key_F5, "vkCommand2"}, {Qt::Key_F6, "vkCommand3"},
            {Qt::Key_F7, "vkCommand1"}, {Qt::Key_F8, "vkCommand4"}, {Qt::Key_F9, "kapat"},
            {Qt::Key_F10, "toplam"}};
        for (const auto& [key, button] : keys)
            QTest::newRow(button) << FunctionKeysPressTheirButtonsRow{key, QString::fromLatin1(button)};
    }
    void functionKeysPressTheirButtons() {
        QFETCH(const FunctionKeysPressTheirButtonsRow, row);
        auto* pressed = m_shop->sales().findChild<QAbstractButton*>(row.button);
        QVERIFY(pressed);
        pressed->disconnect();
        const QSignalSpy spy(pressed, &QAbstractButton::clicked);
        const bool wasEnabled = pressed->isEnabled();
        m_shop->key(row.key);
        QCOMPARE(spy.count(), wasEnabled ? 1 : 0);  // a disabled button stays dead
        pressed->setEnabled(true);
        m_shop->key(row.key);
        QCOMPARE(spy.count(), wasEnabled ? 2 : 1);
        m_shop->ui().adet->setFocus();
        m_shop->key(row.key);
        QCOMPARE(spy.count(), wasEnabled ? 2 : 1);  // only while barkod has the focus
    }

    void keysThatDoNothing_data() {
        QTest::addColumn<int>("key");
        QTest::newRow("F11") << int(Qt::Key_F11);
        QTest::newRow("F12") << int(Qt::Key_F12);
        QTest::newRow("A") << int(Qt::Key_A);
        QTest::newRow("R") << int(Qt::Key_R);
        QTest::newRow("asterisk") << int(Qt::Key_Asterisk);
    }
    void keysThatDoNothing() {
        QFETCH(int, key);
        m_shop->scan(goods::bread);
        m_shop->key(Qt::Key(key));
        QCOMPARE(m_shop->ui().barkod->text(), "");
        QCOMPARE(m_shop->lines(), 1);
    }

    void buttonsOfScreensAreEnabled() {
        for (const char* name :
             {"fiyatgor", "vkCommand2", "vkCommand3", "urunbulmak", "vkCommand1", "vkCommand4", "vkCommand6"})
            QVERIFY2(m_shop->sales().findChild<QWidget*>(name)->isEnabled(), name);
    }

    void pressesOnTheBackgroundGiveTheFocusBack() {
        for (Image* background : {m_shop->ui().korumaresmi, m_shop->ui().korumaresmi2}) {
            m_shop->ui().adet->setFocus();
            m_shop->press(*background);
            QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
        }
    }

    void theTotalMinimises() {
        m_shop->sales().eksiltme = 1;
        m_shop->key(Qt::Key_F10);
        QVERIFY(m_shop->sales().windowState() & Qt::WindowMinimized);
        QCOMPARE(m_shop->sales().eksiltme, 0);
    }

    void captionsAndTips_data() {
        addRows<CaptionsAndTipsRow>(
            {{"barkod", {"barkod", "", "BARKODU YAZDIKTAN SONRA KLAVYEDEN \"ENTER\" TUşUNA BASINIZ"}},
             {"grid keeps its stored tip", {"satisekrani1", "", "^r^n listesi"}},
             {"toplam", {"toplam", "0,00", "Buraya tıklayarak programı arka sekmeye alabilirsiniz"}},
             {"tus", {"tus_0", "1", "Miktarı girmek için kullanılır"}},
             {"kaydet", {"kaydet", "KAYDET", ""}},
             {"nakit", {"nakit", " KAYDET VE YAZDIR", ""}},
             {"satisiptal", {"satisiptal", "SATIŞ İPTAL", ""}},
             {"fiyatgor", {"fiyatgor", "FİYAT GÖR", ""}},
             {"vkCommand2", {"vkCommand2", "RAPORLAR", ""}},
             {"vkCommand3", {"vkCommand3", "ÜRÜNLER", ""}},
             {"vkCommand1", {"vkCommand1", "MENÜ", ""}},
             {"vkCommand4", {"vkCommand4", "Kovanix", ""}},
             {"kapat", {"kapat", "KAPAT", ""}},
             {"vkCommand6", {"vkCommand6", "MüşTERİ LİSTESİ", ""}},
             {"urunbulmak", {"urunbulmak", "ÜRÜN BUL", ""}},
             {"ver3", {"ver3", "Miktardan sayı getir", ""}},
             {"vsil", {"vsil", "Sil", ""}},
             {"vkCommand5", {"vkCommand5", "Para eksilt", ""}},
             {"label of verilen", {"Label4_4", "VERİLEN", ""}},
             {"label of kalan", {"Label4_5", "PARA ÜSTÜ", ""}},
             {"banner", {"urunbuunamadibeklet", "ÜRÜN BULUNAMADI", ""}},
             {"quick key's tip", {"kisayol_3", "", "Farenin sağ tuşuyla dÜzenliyebilirsiniz"}}});
    }
    void captionsAndTips() {
        QFETCH(const CaptionsAndTipsRow, row);
        const auto* found = m_shop->sales().findChild<QWidget*>(row.control);
        QVERIFY(found);
        QCOMPARE(kovanix::caption(*found), row.caption);
        QCOMPARE(found->toolTip(), row.tip);
    }
};

int main(int argc, char** argv) {
    return runTests<EntryTest>(argc, argv);
}

#include "test_entry.moc"
