#include <sys/stat.h>

#include <QFile>

#include "appearance/keyboardscreen.h"
#include "catalogue/urunbul.h"
#include "ordinaryuser.h"
#include "quicksaletest.h"
#include "runtime/screenregistry.h"
#include "sales/quickkeymap.h"
#include "screencontract.h"
#include "widgets/tdbgrid.h"

using namespace kovanix;

/// The panel that fills, names and empties the quick-sale keys.
class QuickSalePanelTest : public QuickSaleTest {
    Q_OBJECT

    struct OpenRow {
        QString name, barcode;  ///< on file
    };
    struct ButtonRow {
        Qt::MouseButton button;
        bool opens;
    };
    struct WayOutRow {
        bool onCategory;
        const char* button;
        QString name;  ///< left in its box
    };
    struct NameRow {
        QString typed, caption;
    };
    struct NoKeyRow {
        QString edited;
    };
    struct MapRow {
        bool onCategory;
        int number;  ///< of the page or the key
        QString pageName, words;
        int place;
    };
    struct SizeRow {
        QSize size;
    };

    void rightPress(int index) const { press(item(index), Qt::RightButton); }
    void rightPressCategory(int page) const { press(category(page), Qt::RightButton); }
    void openOn(bool onCategory) const {
        if (onCategory)
            rightPressCategory(3);
        else
            rightPress(5);
    }
    const QuickKeyMap& map() const { return *m_shop->sales().findChild<QuickKeyMap*>(); }
    QStringList setting(const QStringList& keys) const {
        QStringList values;
        for (const QString& key : keys)
            values.append(ayar(key));
        return values;
    }

private Q_SLOTS:
    // --- the ways in

    void aKeyWithoutANameOpensIt_data() {
        addRows<OpenRow>({{"nothing on it", {"", ""}}, {"a barcode without a name", {"", goods::bread}}});
    }
    void aKeyWithoutANameOpensIt() {
        QFETCH(const OpenRow, row);
        set({{"1hizliurun4", row.name}, {"1hizlibarkod4", row.barcode}});
        ui().hizliurunadi->setText("of the last edit");
        ui().kisayolbarkod->setText("4711");
        press(item(4));
        QVERIFY(panelIsOpen());
        QCOMPARE(m_shop->lines(), 0);
        QCOMPARE(ui().Label8->text(), "ÜRÜN İSMİ");
        QCOMPARE(ui().Label8->font().pointSize(), 24);
        QCOMPARE(ui().kisayolhangisi->text(), "4");
        QCOMPARE(ui().hizliurunadi->text(), "");
        QCOMPARE(ui().kisayolbarkod->text(), "4711");  // the barcode of the last edit
        QVERIFY(ui().barkod->hasFocus());
    }

    void theLastEditsBarcodeIsStoredAgain() {
        set({{"1hizliurun0", "Ekmek"}, {"1hizlibarkod0", goods::bread}});
        rightPress(0);
        press(*ui().kisayolkapat);
        press(item(1));
        ui().hizliurunadi->setText("Yine ekmek");
        press(*ui().kisayolkaydet);
        QCOMPARE(setting({"1hizlibarkod1", "1hizliurun1"}), (QStringList{goods::bread, "Yine ekmek"}));
    }

    void mouseButtons_data() {
        addRows<ButtonRow>({{"right", {Qt::RightButton, true}}, {"middle", {Qt::MiddleButton, false}}});
    }
    void mouseButtons() {
        QFETCH(const ButtonRow, row);
        fillPages();
        press(category(2));
        press(item(7), row.button);
        QCOMPARE(panelIsOpen(), row.opens);
        QCOMPARE(ui().hizliurunadi->text(), row.opens ? "2. son" : "");
        QCOMPARE(ui().kisayolbarkod->text(), row.opens ? goods::milk : "");
        QCOMPARE(ui().kisayolhangisi->text(), row.opens ? "7" : "");
        QCOMPARE(m_shop->lines(), 0);
        ui().Frame2->hide();
        press(category(1), row.button);
        QCOMPARE(panelIsOpen(), row.opens);
    }

    void everyKeyOpensItselfByARightPress() {
        for (int index = 0; index < 8; ++index) {
            rightPress(index);
            QCOMPARE(ui().kisayolhangisi->text(), QString::number(index));
            QCOMPARE(ui().Label8->font().pointSize(), 24);
            press(*ui().kisayolkapat);
        }
    }

    void everyPageOpensItsNameByARightPress() {
        fillPages();
        for (int page = 1; page <= 4; ++page) {
            rightPressCategory(page);
            QVERIFY(panelIsOpen());
            QCOMPARE(ui().kisayolhangisi->text(), QString::number(page).repeated(2));
            QCOMPARE(ui().Label8->text(), "KATEGORİ İSMİ");
            QCOMPARE(ui().Label8->font().pointSize(), 20);
            QCOMPARE(ui().hizliurunadi->text(), "");  // not the old name
            QTRY_VERIFY(ui().hizliurunadi->hasFocus());
            QVERIFY(ui().kisayolklavye->isVisible());
            QVERIFY(ui().kisayolurunbul->isHidden());
            press(*ui().kisayolkapat);
        }
    }

    void aPagesNameIsTypedByTouch() {
        rightPressCategory(3);
        press(*ui().kisayolklavye);
        QVERIFY(loaded<klavyeyeni2>());
        const KeyboardScreen& keyboard = screen<klavyeyeni2>();
        QCOMPARE(keyboard.ui.nereye->text(), "19");
        QCOMPARE(ui().hizliurunadi->text(), "");
        for (const char* key :
             {"vkCommand1_57", "vkCommand1_63", "vkCommand1_56", "vkCommand1_100"})  // M A N, ENTER
            press(*keyboard.findChild<QWidget*>(QString::fromLatin1(key)));
        QCOMPARE(ui().hizliurunadi->text(), "MAN");
        QVERIFY(panelIsOpen());
        press(*ui().kisayolkaydet);
        QCOMPARE(category(3).caption(), "MAN");
    }

    void theKeyboardGoesWithThePanel() {
        for (QWidget* leaving : {ui().kisayolkapat, ui().kisayolkaydet, ui().kisayolsil}) {
            rightPressCategory(3);
            press(*ui().kisayolklavye);
            QVERIFY(loaded<klavyeyeni2>());
            press(*leaving);
            QVERIFY(!loaded<klavyeyeni2>());
        }
    }

    void aKeyPressedWhileItStandsOnAPage() {
        fillPages();
        rightPressCategory(2);
        rightPress(0);
        // The two pictures stay as the page's name had them.
        QVERIFY(ui().kisayolklavye->isVisible());
        QVERIFY(ui().kisayolurunbul->isHidden());
        QCOMPARE(ui().kisayolhangisi->text(), "0");
        QCOMPARE(ui().Label8->font().pointSize(), 24);
        press(*ui().kisayolkapat);
        verifyClosed();
    }

    void aFilledKeyStillSellsWhileItIsOpen() {
        fillPages();
        rightPressCategory(2);
        press(item(0));
        QCOMPARE(m_shop->lines(), 1);
        QVERIFY(panelIsOpen());
        QCOMPARE(ui().Label8->text(), "ÜRÜN İSMİ");
        QCOMPARE(ui().kisayolhangisi->text(), "22");
    }

    // --- the ways out

    void waysOut_data() {
        addRows<WayOutRow>({{"a key stored", {false, "kisayolkaydet", ""}},
                            {"a key emptied", {false, "kisayolsil", ""}},
                            {"a key left", {false, "kisayolkapat", "Ad"}},
                            {"a page stored", {true, "kisayolkaydet", "Ad"}},
                            {"a page emptied", {true, "kisayolsil", ""}},
                            {"a page left", {true, "kisayolkapat", "Ad"}}});
    }
    void waysOut() {
        QFETCH(const WayOutRow, row);
        openOn(row.onCategory);
        ui().hizliurunadi->setText("Ad");
        ui().kisayolbarkod->setText("123");
        const QByteArray before = m_shop->config();
        press(*m_shop->sales().findChild<QWidget*>(row.button));
        verifyClosed();
        QCOMPARE(ui().hizliurunadi->text(), row.name);
        QCOMPARE(ui().kisayolbarkod->text(), QByteArray(row.button) == "kisayolsil" ? "" : "123");
        QCOMPARE(m_shop->config() == before, QByteArray(row.button) == "kisayolkapat");
    }

    // --- storing

    void aKeyIsStoredBarcodeFirst() {
        if (ShopFixture::isOnServer())
            QSKIP("compares the whole of the settings");
        rightPress(5);
        ui().hizliurunadi->setText("Ekmek");
        ui().kisayolbarkod->setText(goods::bread);
        m_shop->writeConfig("[ayar]\r\nensonkikisayol=2\r\n");
        press(*ui().kisayolkaydet);
        QCOMPARE(m_shop->config(), "[ayar]\r\nensonkikisayol=2\r\n2hizlibarkod5=" + goods::bread.toLatin1() +
                                       "\r\n2hizliurun5=Ekmek\r\n");
        QCOMPARE(item(5).caption(), "Ekmek");
        press(item(5));
        QCOMPARE(m_shop->line(1).at(1), "Köy Ekmeği");
    }

    void aKeyWithoutABarcodeIsRefused() {
        for (const bool afterAPage : {false, true}) {
            if (afterAPage)
                rightPressCategory(2);
            rightPress(5);
            ui().hizliurunadi->setText("Ekmek");
            ui().hizliurunadi->setFocus();
            ui().kisayolbarkod->clear();
            const QByteArray before = m_shop->config();
            m_shop->boxes.expect("Bilgi", "ÖNCE ÜRÜN SEÇ", MessageBoxAnswer::ok);
            press(*ui().kisayolkaydet);
            QCOMPARE(m_boxes.constLast().icon, QMessageBox::NoIcon);
            QCOMPARE(m_boxes.constLast().buttons, QStringList{"Tamam"});
            QVERIFY(panelIsOpen());
            QCOMPARE(m_shop->sales().focusWidget(), ui().hizliurunadi);
            QCOMPARE(ui().hizliurunadi->text(), "Ekmek");
            QCOMPARE(m_shop->config(), before);
            QVERIFY(ui().kisayolklavye->isHidden());
            QVERIFY(!ui().kisayolurunbul->isHidden());
        }
    }

    void aKeyWithoutANameStaysEmpty() {
        rightPress(5);
        ui().kisayolbarkod->setText(goods::bread);
        press(*ui().kisayolkaydet);
        QCOMPARE(setting({"1hizlibarkod5", "1hizliurun5"}), (QStringList{goods::bread, ""}));
        press(item(5));
        QVERIFY(panelIsOpen());
        QCOMPARE(m_shop->lines(), 0);
    }

    void names_data() {
        addRows<NameRow>({{"Turkish letters", {"Şekersiz Çay ğüıİö", "Şekersiz Çay ğüıİö"}},
                          {"a percent sign", {"%50 İNDİRİM", "%50 İNDİRİM"}},
                          {"the transcription's symbols", {"~R~N !SM!", "~R~N !SM!"}},
                          {"an apostrophe", {"Lavaş 5'li; DROP", "Lavaş 5'li; DROP"}},
                          {"quotes around", {"\"Özel\"", "Özel"}},
                          {"quotes inside", {"5\" Tost", "5\" Tost"}},
                          {"254 characters", {QString(254, u'ı'), QString(254, u'ı')}},
                          {"300 characters", {QString(300, u'ı'), QString(254, u'ı')}},
                          {"a sign of equality and a bracket", {"[a]=b;c", "[a]=b;c"}}});
    }
    void names() {
        QFETCH(const NameRow, row);
        rightPress(2);
        ui().kisayolbarkod->setText(goods::bread);
        paste(*ui().hizliurunadi, row.typed);
        press(*ui().kisayolkaydet);
        QCOMPARE(item(2).caption(), row.caption);
        rightPressCategory(2);
        paste(*ui().hizliurunadi, row.typed);
        press(*ui().kisayolkaydet);
        QCOMPARE(category(2).caption(), row.caption);
        press(item(2));
        QCOMPARE(m_shop->lines(), 1);
    }

    void aPageWithoutANameIsStored() {
        fillPages();
        rightPressCategory(3);
        press(*ui().kisayolkaydet);
        QCOMPARE(categoryCaptions(), (QStringList{"A", "B", "", "D"}));
    }

    void whatIsNoKeyStoresNothing_data() {
        addRows<NoKeyRow>({{"nothing", {""}}, {"8", {"8"}}, {"a blank behind", {"5 "}}, {"12", {"12"}}});
    }
    void whatIsNoKeyStoresNothing() {
        QFETCH(const NoKeyRow, row);
        rightPress(5);
        ui().kisayolhangisi->setText(row.edited);
        ui().kisayolbarkod->setText(goods::bread);
        const QByteArray before = m_shop->config();
        press(*ui().kisayolkaydet);
        QCOMPARE(m_shop->config(), before);
        verifyClosed();
    }

    void aFileThatTakesNoWritingKeepsTheOldKeys() {
        fillPages();
        const QByteArray file = QFile::encodeName(m_shop->file("Kovanix.config"));
        const QByteArray folder = QFile::encodeName(m_shop->folder());
        QCOMPARE(::chmod(file.constData(), 0444), 0);
        QCOMPARE(::chmod(folder.constData(), 0777), 0);
        const QByteArray before = m_shop->config();
        {
            const OrdinaryUser user;
            if (user.failed() || m_shop->config().isEmpty())
                QSKIP("an ordinary user can't be had here");
            rightPress(0);
            ui().hizliurunadi->setText("yeni");
            press(*ui().kisayolkaydet);  // no box comes
            rightPress(7);
            press(*ui().kisayolsil);
            rightPressCategory(1);
            press(*ui().kisayolkaydet);
            press(category(2));
        }
        verifyClosed();
        QCOMPARE(m_shop->config(), before);
        QCOMPARE(categoryCaptions(), (QStringList{"A", "B", "C", "D"}));
        QCOMPARE(itemCaptions(), pageCaptions(1));
    }

    // --- emptying

    void emptyingAKeyTakesTheFirstPagesNameToo() {
        fillPages();
        press(category(3));
        rightPress(0);
        press(*ui().kisayolsil);
        verifyClosed();
        QCOMPARE(categoryCaptions(), (QStringList{"", "B", "C", "D"}));
        QCOMPARE(itemCaptions(), (QStringList{"", "", "", "", "", "", "", "3. son"}));
        QCOMPARE(setting({"3hizliurun7", "3hizlibarkod7", "1hizliurun0", "1hizlibarkod0", "ensonkikisayol"}),
                 (QStringList{"3. son", goods::tea, "1. ilk", goods::bread, "3"}));
        // The keys stay in the file, with nothing behind them.
        QVERIFY(m_shop->config().contains("\r\n3hizliurun0=\r\n"));
        QVERIFY(m_shop->config().contains("\r\n3hizlibarkod0=\r\n"));
        QVERIFY(m_shop->config().contains("\r\nhizliurunkat1=\r\n"));
        // Until it is named again.
        rightPressCategory(1);
        ui().hizliurunadi->setText("A");
        press(*ui().kisayolkaydet);
        QCOMPARE(categoryCaptions(), (QStringList{"A", "B", "C", "D"}));
    }

    void emptyingAPageTakesItsNameAlone() {
        fillPages();
        rightPressCategory(3);
        press(*ui().kisayolsil);
        QCOMPARE(categoryCaptions(), (QStringList{"A", "B", "", "D"}));
        press(category(3));
        QCOMPARE(itemCaptions(), pageCaptions(3));
    }

    // --- the finder

    void theFinderFillsBothFields() {
        press(item(6));
        press(*ui().kisayolurunbul);
        auto& finder = screen<urunbul>();
        QCOMPARE(finder.ui.nereye->text(), "2");
        QTRY_VERIFY(finder.isActiveWindow());
        QWidget& rows = *finder.ui.TDBGrid1->viewport();
        const QPoint second =
            finder.ui.TDBGrid1->visualRect(finder.ui.TDBGrid1->model()->index(1, 2)).center();
        QTest::mouseClick(&rows, Qt::LeftButton, {}, second);
        QTest::mouseDClick(&rows, Qt::LeftButton, {}, second);
        QVERIFY(!loaded<urunbul>());
        QVERIFY(panelIsOpen());
        QCOMPARE(ui().kisayolbarkod->text(), goods::milk);
        QCOMPARE(ui().hizliurunadi->text(), "Tam Yağlı Süt 1 L");
        QCOMPARE(m_shop->lines(), 0);
        press(*ui().kisayolkaydet);
        press(item(6));
        QCOMPARE(m_shop->line(1).at(0), goods::milk);
    }

    // --- looks

    void theMapSaysWhatIsEdited_data() {
        addRows<MapRow>({{"a key", {false, 6, "Fırın", "Fırın sayfası, 7. tuş", 10}},
                         {"the first key", {false, 0, "Fırın", "Fırın sayfası, 1. tuş", 4}},
                         {"a key of a page without a name", {false, 0, "", "2. sayfa, 1. tuş", 4}},
                         {"a page", {true, 2, "Manav", "Manav sayfasının adı", 1}},
                         {"a page without a name", {true, 2, "", "2. sayfanın adı", 1}}});
    }
    void theMapSaysWhatIsEdited() {
        QFETCH(const MapRow, row);
        set({{"ensonkikisayol", "2"}, {"hizliurunkat2", row.pageName}});
        if (row.onCategory)
            rightPressCategory(row.number);
        else
            rightPress(row.number);
        QCOMPARE(map().words(), row.words);
        QCOMPARE(map().accessibleDescription(), row.words);
        QCOMPARE(map().marked(), row.place);
        QVERIFY(map().objectName().isEmpty());
        QCOMPARE(map().focusPolicy(), Qt::NoFocus);
    }

    void theMapMarksTheKeyThatIsEdited() {
        fillPages();
        rightPress(7);
        const auto sizeOf = [this](const QColor& color) {
            const QImage painted =
                m_shop->sales().findChild<QuickKeyMap*>()->grab().toImage().convertToFormat(
                    QImage::Format_RGB32);
            QRect box;
            for (int y = 0; y < painted.height(); ++y) {
                for (int x = 0; x < painted.width(); ++x) {
                    if (painted.pixelColor(x, y) == color)
                        box |= QRect(x, y, 1, 1);
                }
            }
            return box;
        };
        const QRect marked = sizeOf(roleColor(ColorRole::selectionBar));
        QVERIFY(marked.isValid());
        // At the right, in the last of three rows; the pages' red faces in the first.
        const QRect pages = sizeOf(category(1).backcolor1());
        QVERIFY(marked.left() > map().width() / 2);
        QVERIFY(marked.top() > pages.bottom() + marked.height());
        QVERIFY(pages.width() > 3 * marked.width());
    }

    void sizes_data() {
        QTest::addColumn<SizeRow>("row");
        for (const QSize size : displays())
            QTest::addRow("%dx%d", size.width(), size.height()) << SizeRow{size};
    }
    void sizes() {
        QFETCH(const SizeRow, row);
        fillPages();
        set({{"1hizliurun1", "Tam Buğday Ekmeği 350 g"}, {"1hizliurun2", QString(254, u'm')}});
        for (const bool onCategory : {false, true}) {
            openOn(onCategory);
            m_shop->sales().resize(1024, 768);
            m_shop->sales().resize(row.size);  // while it is open
            // Its heading stays as large as it was set.
            QCOMPARE(ui().Label8->font().pointSize(), onCategory ? 20 : 24);
            const QRect ticket(grid().mapTo(&m_shop->sales(), QPoint(0, 0)), grid().size());
            QCOMPARE(QRect(ui().Frame2->mapTo(&m_shop->sales(), QPoint(0, 0)), ui().Frame2->size()), ticket);
            QStringList faults = layoutFaults(m_shop->sales());
            // It covers the list, which its fields lie on.
            faults.removeIf([](const QString& fault) { return fault.endsWith(u" lies on satisekrani1"); });
            QCOMPARE(faults, QStringList());
            QVERIFY(map().height() >= map().minimumSizeHint().height());
            press(*ui().kisayolkapat);
        }
    }

    void theTicketComesBackBehindIt() {
        rightPress(5);
        QVERIFY(!grid().mask().isEmpty());  // nothing of it shows at the panel's round corners
        press(*ui().kisayolkapat);
        QVERIFY(grid().mask().isEmpty());
    }
};

int main(int argc, char** argv) {
    return runTests<QuickSalePanelTest>(argc, argv);
}

#include "test_quicksalepanel.moc"
