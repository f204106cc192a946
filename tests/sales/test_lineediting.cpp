#include <QLineEdit>

#include "rows.h"
#include "salestest.h"

using namespace kovanix;

/// What becomes of a line that is edited or removed, and the cancelling of a whole ticket.
class LineEditingTest : public SalesTest {
    Q_OBJECT

    struct NumbersRow {
        QString typed, cell;
        QString total;  ///< of three
    };
    struct PastedNumbersRow {
        QString text, quantity, price, total;
    };
    struct TamamOnALineThatIsGoneRow {
        int line;
        QString way;        ///< what empties the ticket: a key, or a barcode whose price is too long for it
        QStringList scans;  ///< of the next customer
    };
    struct RemovalRow {
        QStringList scans;
        int line;
        QStringList left;
        QString toplam, kalan;
    };
    struct CancellingRow {
        bool byKey;
        int answer;
        bool cancels;
    };

    /// bread 10,00; milk 32,50; tea 1.234,50
    void scanThree() const {
        for (const QString& code : {goods::bread, goods::milk, goods::tea})
            m_shop->scan(code);
    }
    bool panelIsOpen() const { return ui().urunislemleri->isVisible(); }
    /// Empties a field of the panel by a press and types into it.
    void retype(QLineEdit& field, const QString& text) const {
        press(field);
        m_shop->type(text);
    }

private Q_SLOTS:
    // --- TAMAM

    void quantities_data() {
        addRows<NumbersRow>({{"a whole number", {"3", "3", "30,00"}},
                             {"a fraction", {"2,5", "2,5", "25,00"}},
                             {"as typed, zeros and all", {"007,50", "007,50", "75,00"}},
                             {"a trailing comma is a number", {"3,", "3,", "30,00"}},
                             {"a leading comma too", {",5", ",5", "5,00"}},
                             {"zero", {"0", "0", "0,00"}},
                             {"three decimals", {"0,125", "0,125", "1,25"}},
                             {"longer than a typed quantity", {"1234567890", "1234567890", "12345678900,00"}},
                             {"emptied", {"", "1", "10,00"}},
                             {"a bare comma", {",", "1", "10,00"}},
                             {"two commas", {"1,2,3", "1", "10,00"}}});
    }
    void quantities() {
        QFETCH(const NumbersRow, row);
        m_shop->scan(goods::bread);
        pressCell(1, 3);
        retype(*ui().adetdegis, row.typed);
        press(*ui().urunislemlerikapat);
        QCOMPARE(m_shop->line(1), (QStringList{goods::bread, "Köy Ekmeği", row.cell, "10,00", row.total}));
        QCOMPARE(m_shop->toplam(), row.total);
    }

    void prices_data() {
        QTest::addColumn<NumbersRow>("row");
        const auto row = [](const char* name, const char* typed, const char* cell, const char* total) {
            QTest::newRow(name) << NumbersRow{typed, cell, total};
        };
        row("a whole number", "12", "12,00", "36,00");
        row("one decimal", "12,5", "12,50", "37,50");
        row("a trailing comma", "12,", "12,00", "36,00");
        row("a leading comma", ",5", "0,50", "1,50");
        row("half a kuruş goes up", "1,005", "1,01", "3,03");
        row("less than half goes down", "1,0049", "1,00", "3,00");
        row("thousands", "1234,5", "1.234,50", "3703,50");
        row("millions", "1234567,891", "1.234.567,89", "3703703,67");
        row("zero", "0", "0,00", "0,00");
        row("emptied", "", "32,50", "97,50");
        row("a bare comma", ",", "32,50", "97,50");
        row("two commas", "1,2,3", "32,50", "97,50");
    }
    void prices() {
        QFETCH(const NumbersRow, row);
        for (int scan = 0; scan < 3; ++scan)
            m_shop->scan(goods::milk);
        pressCell(1, 4);
        retype(*ui().fiyatdegis, row.typed);
        press(*ui().urunislemlerikapat);
        QCOMPARE(m_shop->line(1), (QStringList{goods::milk, "Tam Yağlı Süt 1 L", "3", row.cell, row.total}));
        QCOMPARE(m_shop->toplam(), row.total);
    }

    void pastedNumbers_data() {
        addRows<PastedNumbersRow>({{"groups", {"1.234,5", "1.234,5", "1.234,50", "1523990,25"}},
                                   {"blanks around", {" 7 ", " 7 ", "7,00", "49,00"}},
                                   {"a sign", {"-2", "-2", "-2,00", "4,00"}},
                                   {"an exponent", {"1e3", "1e3", "1.000,00", "1000000,00"}},
                                   {"a dot that groups nothing", {"12.5", "1", "10,00", "10,00"}},
                                   {"no number", {"abc", "1", "10,00", "10,00"}},
                                   {"an apostrophe", {"'", "1", "10,00", "10,00"}}});
    }
    void pastedNumbers() {
        QFETCH(const PastedNumbersRow, row);
        m_shop->scan(goods::bread);
        pressCell(1, 3);
        paste(*ui().adetdegis, row.text);
        paste(*ui().fiyatdegis, row.text);
        QCOMPARE(ui().adetdegis->text(), row.text);  // pasted text passes the keys' rule
        press(*ui().urunislemlerikapat);
        QCOMPARE(m_shop->line(1),
                 (QStringList{goods::bread, "Köy Ekmeği", row.quantity, row.price, row.total}));
        QCOMPARE(m_shop->toplam(), row.total);
    }

    void aShortenedPriceCountsAsItIsShown() {
        m_shop->scan(goods::tea);
        pressCell(1, 4);  // 1.234,50
        for (int letter = 0; letter < 4; ++letter)
            m_shop->key(Qt::Key_Backspace);
        QCOMPARE(ui().fiyatdegis->text(), "123");
        pressKeys("duzenlemetusu", {18});
        QCOMPARE(ui().fiyatdegis->text(), "1235");
        press(*ui().urunislemlerikapat);
        QCOMPARE(m_shop->line(1).at(3), "1.235,00");
    }

    void keysBreakNoGroups() {
        m_shop->scan(goods::tea);
        pressCell(1, 3);
        paste(*ui().adetdegis, "1.234");
        pressKeys("duzenlemetusu", {18});
        QCOMPARE(ui().adetdegis->text(), "12345");
        m_shop->key(Qt::Key_Backspace);
        paste(*ui().adetdegis, "1.234");
        m_shop->key(Qt::Key_Backspace);
        QCOMPARE(ui().adetdegis->text(), "123");
    }

    void anUntouchedPanelChangesNothing() {
        scanThree();
        const QStringList line = m_shop->line(3);
        pressCell(3, 4);  // 1.234,50 is read back whole
        press(*ui().urunislemlerikapat);
        QCOMPARE(m_shop->line(3), line);
        QCOMPARE(m_shop->toplam(), "1277,00");
    }

    void tamamLeavesTheScreenAtRest() {
        scanThree();
        m_shop->press(*ui().resim2);
        pressCell(2, 4);
        retype(*ui().fiyatdegis, "30");
        ui().adet->setText("6");
        ui().barkod->setText("123");
        press(*ui().urunislemlerikapat);
        QVERIFY(!panelIsOpen());
        QTRY_VERIFY(ui().barkod->hasFocus());
        QCOMPARE(ui().barkod->text(), "");
        QCOMPARE(ui().satir->text(), "");
        QCOMPARE(ui().nereye->text(), "1");
        QCOMPARE(grid().row(), 4);
        QCOMPARE(grid().col(), 1);
        QCOMPARE(ui().adet->text(), "6");  // isn't this procedure's business
        QCOMPARE(m_shop->line(1).at(4), "10,00");
        QCOMPARE(m_shop->line(2), (QStringList{goods::milk, "Tam Yağlı Süt 1 L", "1", "30,00", "30,00"}));
        QCOMPARE(m_shop->line(3).at(4), "1234,50");
        QCOMPARE(m_shop->toplam(), "1274,50");
        QCOMPARE(m_shop->kalan(), "-1.074,50");
        QCOMPARE(m_shop->verilen(), "200,00");
    }

    void tamamChangesTheLineThatWasPressedLast() {
        scanThree();
        pressCell(1, 3);
        press(*ui().vazgecc);
        pressCell(3, 3);
        QCOMPARE(ui().satir->text(), "3");
        retype(*ui().adetdegis, "2");
        press(*ui().urunislemlerikapat);
        QCOMPARE(m_shop->line(1).at(2), "1");
        QCOMPARE(m_shop->line(3).at(2), "2");
        QCOMPARE(m_shop->toplam(), "2511,50");
    }

    void tamamWritesTheNameOfThePanel() {
        m_shop->scan(goods::bread);
        pressCell(1, 3);
        grid().setTextMatrix(1, 2, "Başka");
        press(*ui().urunislemlerikapat);
        QCOMPARE(m_shop->line(1).at(1), "Köy Ekmeği");
    }

    void aScanMayComeBetween() {
        m_shop->scan(goods::bread);
        pressCell(1, 3);
        retype(*ui().adetdegis, "4");
        m_shop->press(*ui().korumaresmi);
        m_shop->scan(goods::milk);
        QVERIFY(panelIsOpen());
        press(*ui().urunislemlerikapat);  // knows its row, though another is current
        QCOMPARE(m_shop->line(1).at(2), "4");
        QCOMPARE(m_shop->line(2).at(2), "1");
        QCOMPARE(m_shop->toplam(), "72,50");
    }

    void tamamOnALineThatIsGone_data() {
        addRows<TamamOnALineThatIsGoneRow>(
            {{"sold, nothing since", {1, "F1", {}}},
             {"sold, its row is the entry row", {2, "F1", {goods::bread}}},
             {"sold, its row holds another line", {2, "F1", {goods::bread, goods::tea}}},
             {"sold, its row holds the same product", {2, "F1", {goods::bread, goods::milk}}},
             {"sold with a receipt", {2, "F2", {goods::bread}}},
             {"cancelled", {1, "F3", {}}},
             {"cancelled, its row is beyond the ticket", {3, "F3", {goods::bread}}},
             {"wiped by its total", {1, "99", {goods::milk}}}});
    }
    void tamamOnALineThatIsGone() {
        QFETCH(const TamamOnALineThatIsGoneRow, row);
        m_shop->addProduct("99", "Altın", 0, 1e24);
        scanThree();
        pressCell(row.line, 4);
        retype(*ui().adetdegis, "3");
        m_shop->press(*ui().korumaresmi);
        if (row.way == "F3")
            m_shop->boxes.expect("UYARI", "SATIŞ İPTAL EDİLSİN Mİ?", MessageBoxAnswer::yes);
        if (row.way == "99") {
            m_shop->boxes.expect("Bilgi", "LüTFEN DAHA AZ BASAMAKLI SAYI GÖRüNüZ", MessageBoxAnswer::ok);
            m_shop->scan(row.way);
        } else {
            m_shop->key(row.way == "F1" ? Qt::Key_F1 : row.way == "F2" ? Qt::Key_F2 : Qt::Key_F3);
        }
        QCOMPARE(m_shop->lines(), 0);
        for (const QString& code : row.scans)
            m_shop->scan(code);
        m_shop->sales().toplamhesapla();  // 0,00 for the entry row, which TAMAM brings as well
        const auto before = texts(ui().urunislemleri);
        QVERIFY(panelIsOpen());
        press(*ui().urunislemlerikapat);
        QVERIFY(!panelIsOpen());
        QCOMPARE(texts(ui().urunislemleri), before);
        QCOMPARE(m_shop->line(grid().rows() - 1), (QStringList{"", "", "", "", "0,00"}));
        QTRY_VERIFY(ui().barkod->hasFocus());
    }

    void anOverflowingPriceWipesTheTicket() {
        scanThree();
        pressCell(2, 4);
        retype(*ui().fiyatdegis, QString(24, u'9'));
        m_shop->boxes.expect("Bilgi", "LüTFEN DAHA AZ BASAMAKLI SAYI GÖRüNüZ", MessageBoxAnswer::ok);
        press(*ui().urunislemlerikapat);
        QCOMPARE(m_shop->lines(), 0);
        QCOMPARE(m_shop->line(1), (QStringList{"", "", "", "", "0,00"}));
        QCOMPARE(m_shop->toplam(), "0,00");
        QVERIFY(!panelIsOpen());
        QTRY_VERIFY(ui().barkod->hasFocus());
    }

    // --- leaving without a change

    void leaving_data() {
        QTest::addColumn<QString>("way");
        const auto row = [](const char* name, const QString& way) { QTest::newRow(name) << way; };
        row("VAZGEÇ", "button");
        row("Escape in the quantity", "adetdegis");
        row("Escape in the price", "fiyatdegis");
    }
    void leaving() {
        QFETCH(QString, way);
        scanThree();
        pressCell(2, 3);
        retype(*ui().adetdegis, "9");
        retype(*ui().fiyatdegis, "9");
        ui().barkod->setText("12");
        const auto before = texts();
        if (way == "button") {
            press(*ui().vazgecc);
        } else {
            m_shop->sales().findChild<QLineEdit*>(way)->setFocus();
            m_shop->key(Qt::Key_Escape);
        }
        QVERIFY(!panelIsOpen());
        QTRY_VERIFY(ui().barkod->hasFocus());
        QCOMPARE(texts(), before);
        QCOMPARE(m_shop->line(2).at(2), "1");
    }

    // --- removal

    void removal_data() {
        const QStringList three{goods::bread, goods::milk, goods::tea};
        addRows<RemovalRow>(
            {{"first", {three, 1, QStringList{goods::milk, goods::tea}, "1267,00", "-1.067,00"}},
             {"middle", {three, 2, QStringList{goods::bread, goods::tea}, "1244,50", "-1.044,50"}},
             {"last", {three, 3, QStringList{goods::bread, goods::milk}, "42,50", "157,50"}},
             {"only", {QStringList{goods::bread}, 1, QStringList{}, "0,00", "200,00"}}});
    }
    void removal() {
        QFETCH(const RemovalRow, row);
        for (const QString& code : row.scans)
            m_shop->scan(code);
        m_shop->press(*ui().resim2);
        pressCell(row.line, 4);
        ui().adet->setText("5");
        ui().barkod->setText("12");
        press(*ui().urunsil);  // and no question
        QStringList found;
        for (int line = 1; line <= m_shop->lines(); ++line)
            found.append(m_shop->line(line).at(0));
        QCOMPARE(found, row.left);
        QCOMPARE(m_shop->line(grid().rows() - 1), (QStringList{"", "", "", "", "0,00"}));
        QCOMPARE(m_shop->toplam(), row.toplam);
        QCOMPARE(m_shop->kalan(), row.kalan);
        QCOMPARE(m_shop->verilen(), "200,00");
        QCOMPARE(m_shop->ver2(), "200,00");
        QVERIFY(!panelIsOpen());
        QCOMPARE(ui().nereye->text(), "1");
        QCOMPARE(ui().adet->text(), "");
        QCOMPARE(ui().barkod->text(), "");
        QCOMPARE(grid().row(), grid().rows() - 1);
        QCOMPARE(grid().col(), 1);
        QTRY_VERIFY(ui().barkod->hasFocus());
    }

    void afterTheOnlyLineTheTicketIsEmpty() {
        m_shop->scan(goods::bread);
        pressCell(1, 5);
        press(*ui().urunsil);
        QCOMPARE(grid().rows(), 2);
        for (const Qt::Key key : {Qt::Key_F1, Qt::Key_F2, Qt::Key_F3}) {
            m_shop->boxes.expect("Bilgi", "önce satış yapın", MessageBoxAnswer::ok);
            m_shop->key(key);
        }
        QCOMPARE(soldLines().size(), 0);
        m_shop->scan(goods::milk);
        QCOMPARE(m_shop->lines(), 1);
        QCOMPARE(m_shop->toplam(), "32,50");
    }

    void removedLinesAreNotSold() {
        scanThree();
        pressCell(2, 3);
        press(*ui().urunsil);
        m_shop->key(Qt::Key_F1);
        QCOMPARE(soldLines().size(), 2);
        QCOMPARE(products(goods::milk).at(0).at(4), 10.0);
        QCOMPARE(products(goods::tea).at(0).at(4), 9.0);
    }

    void removalGoesByTheCurrentRow() {
        // A scan behind the open panel makes the entry row current: nothing is removed then.
        m_shop->scan(goods::bread);
        pressCell(1, 3);
        m_shop->press(*ui().korumaresmi);
        m_shop->scan(goods::milk);
        ui().adet->setText("5");
        ui().barkod->setText("12");
        press(*ui().urunsil);
        QCOMPARE(m_shop->lines(), 2);
        QVERIFY(!panelIsOpen());
        QCOMPARE(ui().adet->text(), "");
        QCOMPARE(ui().barkod->text(), "");
        QCOMPARE(ui().nereye->text(), "1");
        QTRY_VERIFY(ui().barkod->hasFocus());
    }

    void aNameInTheEntryRowOfAnEmptyTicketClearsEverything() {
        m_shop->press(*ui().resim2);
        m_shop->scan(goods::bread);
        pressCell(1, 3);
        grid().removeItem(1);
        grid().setTextMatrix(1, 2, "Ekmek");
        ui().toplam->setCaption("5,00");
        press(*ui().urunsil);
        QCOMPARE(grid().rows(), 2);
        QCOMPARE(m_shop->line(0), (QStringList{"BARKOD", "ÜRÜN ADI", "MİKT.", "FİY.", "TOP."}));
        QCOMPARE(m_shop->line(1), (QStringList{"", "", "", "", "0,00"}));
        for (const QString& amount : {m_shop->toplam(), m_shop->verilen(), m_shop->kalan(), m_shop->ver2()})
            QCOMPARE(amount, "0,00");
        QVERIFY(!panelIsOpen());
    }

    // --- what an edit lasts for

    void editedValuesAreSoldAndTheProductStays() {
        m_shop->scan(goods::bread);
        m_shop->scan(goods::milk);
        const auto before = products(goods::bread);
        pressCell(1, 4);
        retype(*ui().fiyatdegis, "8,25");
        retype(*ui().adetdegis, "2");
        press(*ui().urunislemlerikapat);
        QCOMPARE(products(goods::bread), before);
        m_shop->key(Qt::Key_F1);
        QCOMPARE(soldLines(),
                 (QList<QVariantList>{{goods::bread, "Köy Ekmeği", 2.0, 8.25, 7.0, 2.5, 16.5},
                                      {goods::milk, "Tam Yağlı Süt 1 L", 1.0, 32.5, 25.0, 7.5, 32.5}}));
        QCOMPARE(products(goods::bread), (QList<QVariantList>{{goods::bread, "Köy Ekmeği", 7.0, 10.0, 8.0}}));
        m_shop->scan(goods::bread);  // the next ticket has the product's own price
        QCOMPARE(m_shop->line(1).at(3), "10,00");
    }

    void aLaterScanMergesAtTheEditedPrice() {
        m_shop->scan(goods::bread);
        m_shop->scan(goods::milk);
        pressCell(1, 4);
        retype(*ui().fiyatdegis, "8");
        retype(*ui().adetdegis, "2,5");
        press(*ui().urunislemlerikapat);
        m_shop->scan(goods::bread);
        QCOMPARE(m_shop->lines(), 2);
        QCOMPARE(m_shop->line(1), (QStringList{goods::bread, "Köy Ekmeği", "3,5", "8,00", "28,00"}));
        QCOMPARE(m_shop->toplam(), "60,50");
    }

    // --- cancelling the ticket

    void cancelling_data() {
        QTest::addColumn<CancellingRow>("row");
        for (const bool byKey : {true, false}) {
            const char* way = byKey ? "F3" : "press";
            QTest::addRow("%s, yes", way) << CancellingRow{byKey, MessageBoxAnswer::yes, true};
            QTest::addRow("%s, no", way) << CancellingRow{byKey, MessageBoxAnswer::no, false};
            QTest::addRow("%s, Escape", way) << CancellingRow{byKey, BoxAnswers::escape, false};
        }
    }
    void cancelling() {
        QFETCH(const CancellingRow, row);
        scanThree();
        m_shop->press(*ui().resim2);
        ui().adet->setText("4");
        m_shop->sales().eksiltme = 1;
        const auto before = texts();
        const auto stored = tables();
        m_shop->boxes.expect("UYARI", "SATIŞ İPTAL EDİLSİN Mİ?", row.answer);
        if (row.byKey)
            m_shop->key(Qt::Key_F3);
        else
            press(*ui().satisiptal);
        QCOMPARE(m_boxes.size(), 1);
        QCOMPARE(m_boxes.at(0).buttons, (QStringList{"Evet", "Hayır"}));
        QCOMPARE(m_boxes.at(0).icon, QMessageBox::Warning);
        QCOMPARE(m_boxes.at(0).defaultButton, "Evet");
        QCOMPARE(m_shop->sales().eksiltme, 0);
        QCOMPARE(tables(), stored);  // no trace
        if (!row.cancels) {
            QCOMPARE(texts(), before);
            return;
        }
        QCOMPARE(m_shop->lines(), 0);
        for (const QString& amount : {m_shop->toplam(), m_shop->verilen(), m_shop->kalan(), m_shop->ver2()})
            QCOMPARE(amount, "0,00");
        QCOMPARE(ui().adet->text(), "");
        QTRY_VERIFY(ui().barkod->hasFocus());
        m_shop->scan(goods::bread);
        QCOMPARE(m_shop->toplam(), "10,00");
    }

    void cancellingNothing_data() {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("F3") << true;
        QTest::newRow("press") << false;
    }
    void cancellingNothing() {
        QFETCH(bool, byKey);
        m_shop->press(*ui().resim2);
        m_shop->sales().eksiltme = 1;
        m_shop->boxes.expect("Bilgi", "önce satış yapın", MessageBoxAnswer::ok);
        if (byKey)
            m_shop->key(Qt::Key_F3);
        else
            press(*ui().satisiptal);
        QCOMPARE(m_boxes.value(0).buttons, QStringList{"Tamam"});
        QCOMPARE(m_boxes.value(0).icon, QMessageBox::NoIcon);
        QCOMPARE(m_shop->sales().eksiltme, 0);
        QCOMPARE(m_shop->verilen(), "200,00");  // nothing is cleared
        QTRY_VERIFY(ui().barkod->hasFocus());
    }
};

int main(int argc, char** argv) {
    return runTests<LineEditingTest>(argc, argv);
}

#include "test_lineediting.moc"
