#include "appearance/tema.h"
#include "quicksaletest.h"
#include "runtime/screenregistry.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

/// The quick-sale keys at load and at the press: what they show, what they sell, which page stands.
class QuickSaleKeysTest : public QuickSaleTest {
    Q_OBJECT

    struct PageRow {
        QByteArray setting;  ///< the line of the file; empty for none
        int page;
    };
    struct NameRow {
        QString stored, caption;
    };
    struct CellRow {
        int column;
        QStringList barcodes;
    };

private Q_SLOTS:
    // --- what they show

    void aFreshShopHasEmptyKeys() {
        QCOMPARE(categoryCaptions(), QStringList(4, ""));
        QCOMPARE(itemCaptions(), QStringList(8, ""));
        QVERIFY(!panelIsOpen());
        QVERIFY(ui().kisayolklavye->isHidden());
        QVERIFY(!ui().kisayolurunbul->isHidden());
        for (int index = 0; index < 8; ++index)
            QVERIFY(item(index).isEnabled());
    }

    void thePageOnFileIsShownSoldAndStored_data() {
        addRows<PageRow>({{"1", {"ensonkikisayol=1", 1}},
                          {"2", {"ensonkikisayol=2", 2}},
                          {"3", {"ensonkikisayol=3", 3}},
                          {"4", {"ensonkikisayol=4", 4}},
                          {"7", {"ensonkikisayol=7", 1}},
                          {"missing", {"", 1}},
                          {"x", {"ensonkikisayol=x", 1}},
                          {"a blank behind", {"ensonkikisayol=\"2 \"", 2}}});
    }
    void thePageOnFileIsShownSoldAndStored() {
        QFETCH(const PageRow, row);
        m_shop->writeConfig("[ayar]\r\n" + row.setting + "\r\n");
        fillPages();
        QCOMPARE(categoryCaptions(), (QStringList{"A", "B", "C", "D"}));
        QCOMPARE(itemCaptions(), pageCaptions(row.page));

        const QStringList sold{goods::bread, goods::milk, goods::tea, goods::bag};
        press(item(7));
        QCOMPARE(m_shop->line(1).at(0), sold.at(row.page - 1));

        press(item(3));
        ui().kisayolbarkod->setText("123");
        ui().hizliurunadi->setText("yeni");
        press(*ui().kisayolkaydet);
        for (int page = 1; page <= 4; ++page)
            QCOMPARE(ayar(u"%1hizliurun3"_s.arg(page)), page == row.page ? "yeni" : "");
        QCOMPARE(item(3).caption(), "yeni");
    }

    void captionsStandAsTheyAreOnFile_data() {
        const QString symbols = "^!}{@#|$~`*%&";
        addRows<NameRow>({{"Turkish letters", {"çÇğĞıIiİöÖşŞüÜ", "çÇğĞıIiİöÖşŞüÜ"}},
                          {"a real percent sign", {"%50 İNDİRİM", "%50 İNDİRİM"}},
                          {"the transcription's symbols", {symbols, symbols}},
                          {"a stored literal's look", {"~R~N !SM!", "~R~N !SM!"}},
                          {"an apostrophe and quotes inside", {"O'nun \"özel\" çayı", "O'nun \"özel\" çayı"}},
                          {"quotes around", {"\"Özel\"", "Özel"}},
                          {"254 characters", {QString(254, u'ş'), QString(254, u'ş')}},
                          {"255 characters", {QString(255, u'ş'), QString(254, u'ş')}},
                          {"an ampersand", {"Peynir && Zeytin", "Peynir && Zeytin"}},
                          {"a catalogue key", {"ONCE_URUN_SEC", "ONCE_URUN_SEC"}}});
    }
    void captionsStandAsTheyAreOnFile() {
        QFETCH(const NameRow, row);
        ayarla("1hizliurun2", row.stored);
        ayarla("hizliurunkat3", row.stored);
        unloadAllScreens();  // and a new one, from its load on
        QCOMPARE(item(2).caption(), row.caption);
        QCOMPARE(category(3).caption(), row.caption);
        screen<tema>().ui.resim3->click();
        QCOMPARE(item(2).caption(), row.caption);
        QCOMPARE(category(3).caption(), row.caption);
    }

    // --- the pages

    void pagesSwitchByPresses() {
        fillPages();
        for (const int page : {2, 4, 4, 1, 3}) {
            press(category(page));
            QCOMPARE(ayar("ensonkikisayol"), QString::number(page));
            QCOMPARE(itemCaptions(), pageCaptions(page));
            QCOMPARE(categoryCaptions(), (QStringList{"A", "B", "C", "D"}));
        }
        QVERIFY(ui().barkod->hasFocus());
        unloadAllScreens();
        QCOMPARE(itemCaptions(), pageCaptions(3));
    }

    void anEmptyPageCanBeOpenedToo() {
        set({{"1hizliurun0", "bir"}});
        press(category(2));
        QCOMPARE(itemCaptions(), QStringList(8, ""));
        QCOMPARE(ayar("ensonkikisayol"), "2");
    }

    void aRightPressOnAPageSwitchesNone() {
        fillPages();
        press(category(2));
        const QByteArray before = m_shop->config();
        press(category(4), Qt::RightButton);
        QCOMPARE(m_shop->config(), before);
        QCOMPARE(itemCaptions(), pageCaptions(2));
    }

    void thePageIsReadAtEveryPress() {
        fillPages();
        ayarla("ensonkikisayol", "3");  // by hand, say: the captions are still the first page's
        QCOMPARE(itemCaptions(), pageCaptions(1));
        press(item(0));
        QCOMPARE(m_shop->line(1).at(0), goods::tea);
        press(item(0), Qt::RightButton);
        QCOMPARE(ui().hizliurunadi->text(), "3. ilk");
    }

    // --- the sale

    void aPressSells() {
        set({{"1hizliurun5", "Ekmek"}, {"1hizlibarkod5", goods::bread}});
        m_shop->scan(goods::milk);
        press(item(5));
        QCOMPARE(m_shop->line(2), (QStringList{goods::bread, "Köy Ekmeği", "1", "10,00", "10,00"}));
        QCOMPARE(ui().barkod->text(), "");
        QVERIFY(ui().barkod->hasFocus());
        pressKeys("tus", {1});  // "2"
        press(item(5));
        QCOMPARE(m_shop->line(2).at(2), "3");
        QCOMPARE(m_shop->toplam(), "62,50");
    }

    void anEmptyBarcodeSellsNothing() {
        set({{"1hizliurun5", "Ekmek"}});
        m_shop->scan(goods::milk);
        m_shop->type("12");
        ui().adet->setText("4");
        press(item(5));
        QCOMPARE(m_shop->lines(), 1);
        QCOMPARE(ui().barkod->text(), "");
        QCOMPARE(ui().adet->text(), "");
        QVERIFY(!panelIsOpen());
    }

    void aBarcodeThatTheCatalogueLacksOpensTheUnknownProduct() {
        set({{"1hizliurun5", "Eski"}, {"1hizlibarkod5", unknown}});
        press(item(5));
        QVERIFY(ui().urunbulunamadiframesi->isVisible());
        QCOMPARE(ui().bulunulamayaurun->text(), unknown);
        QCOMPARE(m_shop->lines(), 0);
    }

    void aScaleLabelIsNotSplit() {
        const QString label = "2700012007504";
        set({{"1hizliurun5", "Domates"}, {"1hizlibarkod5", label}});
        press(item(5));
        QVERIFY(ui().urunbulunamadiframesi->isVisible());
        QCOMPARE(ui().bulunulamayaurun->text(), label);
        QCOMPARE(m_shop->lines(), 0);
    }

    // The entry row isn't gone to first.
    void aPressAfterOneOnACell_data() {
        addRows<CellRow>({{"in its barcode: that line is written over", {1, {goods::tea, goods::milk}}},
                          {"elsewhere: lost without a word", {2, {goods::bread, goods::milk}}}});
    }
    void aPressAfterOneOnACell() {
        QFETCH(const CellRow, row);
        set({{"1hizliurun0", "Çay"}, {"1hizlibarkod0", goods::tea}});
        m_shop->scan(goods::bread);
        m_shop->scan(goods::milk);
        grid().setRow(1);
        grid().setCol(row.column);
        press(item(0));
        QCOMPARE(m_shop->lines(), 2);
        QCOMPARE((QStringList{m_shop->line(1).at(0), m_shop->line(2).at(0)}), row.barcodes);
    }

    void withoutADatabaseNothingIsLost() {
        if (ShopFixture::isOnServer())
            QSKIP("moves the file away");
        set({{"1hizliurun5", "Ekmek"}, {"1hizlibarkod5", goods::bread}});
        loseDatabase();
        m_shop->boxes.expectAny(MessageBoxAnswer::ok);  // the open's own box
        m_shop->boxes.expect("Hata", noDatabase, MessageBoxAnswer::ok);
        press(item(5));
        QCOMPARE(ui().barkod->text(), goods::bread);
        bringDatabaseBack();
    }

    void aFingerThatRestsOnAKeyOpensThePanelAndSellsNothing() {
        fillPages();
        QCOMPARE(item(0).holdTime(), 700);
        QTest::mousePress(&item(0), Qt::LeftButton);
        QTRY_VERIFY(panelIsOpen());
        QTest::mouseRelease(&item(0), Qt::LeftButton);
        QCOMPARE(m_shop->lines(), 0);
        QCOMPARE(ui().hizliurunadi->text(), "1. ilk");
        QTest::mousePress(&category(2), Qt::LeftButton);
        QTRY_COMPARE(ui().kisayolhangisi->text(), "22");
        QTest::mouseRelease(&category(2), Qt::LeftButton);
        QCOMPARE(itemCaptions(), pageCaptions(1));
    }
};

int main(int argc, char** argv) {
    return runTests<QuickSaleKeysTest>(argc, argv);
}

#include "test_quicksale.moc"
