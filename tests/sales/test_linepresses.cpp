#include <QLineEdit>
#include <QMouseEvent>

#include "rows.h"
#include "salestest.h"

using namespace kovanix;

/// Presses on the ticket, and the fields and keys of the panel that they open.
class LinePressesTest : public SalesTest {
    Q_OBJECT

    struct OtherButtonsDoNothingRow {
        Qt::MouseButton button;
        int line, column;
    };
    struct TheEntryRowOpensNothingRow {
        int lines, column;
    };
    struct CellsOfALineRow {
        int line, column;
        QStringList panel;  ///< name, quantity, price, active field; none where it stays closed
    };
    struct AScanAfterAPressOnTheTicketReachesNoFieldRow {
        int line, column;
    };
    struct APressInAFieldEmptiesItRow {
        int column;
        QString field, code;
    };
    struct FieldsTakeDigitsAndCommasRow {
        int column;
        QString typed, text;
    };

    /// bread 10,00; milk 32,50; tea 1.234,50
    void scanThree() const {
        for (const QString& code : {goods::bread, goods::milk, goods::tea})
            m_shop->scan(code);
    }
    QString mark(int row) const { return grid().textMatrix(row, 0); }
    bool panelIsOpen() const { return ui().urunislemleri->isVisible(); }
    /// Empties a field of the panel by a press and types into it.
    void retype(QLineEdit& field, const QString& text) const {
        press(field);
        m_shop->type(text);
    }

private Q_SLOTS:
    // --- presses on the ticket

    void otherButtonsDoNothing_data() {
        QTest::addColumn<OtherButtonsDoNothingRow>("row");
        for (const auto& [name, button] :
             {std::pair("right", Qt::RightButton), {"middle", Qt::MiddleButton}}) {
            for (const int row : {0, 1, 4}) {
                for (int column = 1; column <= 5; ++column)
                    QTest::addRow("%s, row %d, column %d", name, row, column)
                        << OtherButtonsDoNothingRow{button, row, column};
            }
        }
    }
    void otherButtonsDoNothing() {
        QFETCH(const OtherButtonsDoNothingRow, row);
        scanThree();
        const auto before = texts();
        pressCell(row.line, row.column, row.button);
        QCOMPARE(texts(), before);
        QVERIFY(!panelIsOpen());
        QVERIFY(ui().barkod->hasFocus());
        m_shop->scan(goods::bag);  // which reaches the ticket
        QCOMPARE(m_shop->lines(), 4);
    }

    void theHeadingDoesNothing_data() {
        QTest::addColumn<int>("column");
        for (int column = 1; column <= 5; ++column)
            QTest::addRow("column %d", column) << column;
    }
    void theHeadingDoesNothing() {
        QFETCH(int, column);
        scanThree();
        const auto before = texts();
        pressCell(0, column);
        QCOMPARE(texts(), before);
        QVERIFY(!panelIsOpen());
    }

    void theEntryRowOpensNothing_data() {
        QTest::addColumn<TheEntryRowOpensNothingRow>("row");
        for (const int lines : {0, 3}) {
            for (int column = 1; column <= 5; ++column)
                QTest::addRow("%d lines above, column %d", lines, column)
                    << TheEntryRowOpensNothingRow{lines, column};
        }
    }
    void theEntryRowOpensNothing() {
        QFETCH(const TheEntryRowOpensNothingRow, row);
        if (row.lines == 3)
            scanThree();
        pressCell(row.lines + 1, row.column);
        QVERIFY(!panelIsOpen());
        QCOMPARE(mark(row.lines + 1), "");
        QCOMPARE(grid().row(), row.lines + 1);
        QCOMPARE(grid().col(), row.column);
        QCOMPARE(ui().satir->text(), QString::number(row.lines + 1));
        QVERIFY(grid().hasFocus());
        QCOMPARE(m_shop->lines(), row.lines);
        for (const QLineEdit* field : {ui().adetdegis, ui().fiyatdegis, ui().nereye})
            QCOMPARE(field->text(), "");
    }

    void belowTheRowsIsNothing() {
        m_shop->scan(goods::bread);
        const auto before = texts();
        const QRect last = grid().cellRect(2, 3);
        QTest::mouseClick(grid().viewport(), Qt::LeftButton, {}, last.center() + QPoint(0, last.height()));
        QCOMPARE(texts(), before);
        QVERIFY(!panelIsOpen());
    }

    void cellsOfALine_data() {
        QTest::addColumn<CellsOfALineRow>("row");
        const QList<QStringList> lines{{"Köy Ekmeği", "1", "10,00"},
                                       {"Tam Yağlı Süt 1 L", "1", "32,50"},
                                       {"Çay Bahçesi 5 kg", "1", "1.234,50"}};
        for (int row = 1; row <= 3; ++row) {
            const QStringList& line = lines.at(row - 1);
            for (int column = 1; column <= 2; ++column)
                QTest::addRow("row %d, column %d", row, column)
                    << CellsOfALineRow{row, column, QStringList()};
            QTest::addRow("row %d, column 3", row) << CellsOfALineRow{row, 3, (line + QStringList("1"))};
            QTest::addRow("row %d, column 4", row) << CellsOfALineRow{row, 4, (line + QStringList("2"))};
            QTest::addRow("row %d, column 5", row) << CellsOfALineRow{row, 5, (line + QStringList("2"))};
        }
    }
    void cellsOfALine() {
        QFETCH(const CellsOfALineRow, row);
        scanThree();
        const QStringList total{m_shop->toplam(), m_shop->kalan()};
        pressCell(row.line, row.column);
        QCOMPARE(grid().row(), row.line);
        QCOMPARE(grid().col(), row.column);
        QCOMPARE(ui().satir->text(), QString::number(row.line));
        QCOMPARE(mark(row.line), row.column == 1 ? "-1" : "");
        QCOMPARE(panelIsOpen(), !row.panel.isEmpty());
        if (row.panel.isEmpty()) {
            QVERIFY(grid().hasFocus());
            QCOMPARE(ui().nereye->text(), "");
        } else {
            QCOMPARE((QStringList{ui().urununadi->text(), ui().adetdegis->text(), ui().fiyatdegis->text(),
                                  ui().nereye->text()}),
                     row.panel);
            QVERIFY((row.column == 3 ? ui().adetdegis : ui().fiyatdegis)->hasFocus());
        }
        QCOMPARE((QStringList{m_shop->toplam(), m_shop->kalan()}), total);
    }

    void theHiddenColumnOpensNothing() {
        scanThree();
        QCOMPARE(grid().cellRect(2, 0).width(), 0);
        m_shop->sales().hucrebasildi(2, 0);
        QCOMPARE(grid().row(), 2);
        QCOMPARE(grid().col(), 0);
        QCOMPARE(ui().satir->text(), "2");
        QCOMPARE(mark(2), "");
        QVERIFY(!panelIsOpen());
    }

    void theMarkToggles() {
        scanThree();
        for (const char* expected : {"-1", "0", "-1", "0"}) {
            pressCell(2, 1);
            QCOMPARE(mark(2), expected);
            QVERIFY(!panelIsOpen());
            QVERIFY(grid().hasFocus());
        }
        pressCell(3, 1);
        QCOMPARE((QStringList{mark(1), mark(2), mark(3), mark(4)}), (QStringList{"", "0", "-1", ""}));
    }

    void twoQuickPressesToggleTwice() {
        scanThree();
        pressCell(1, 1);
        const QPointF place = grid().cellRect(1, 1).center();
        QMouseEvent second(QEvent::MouseButtonDblClick, place, grid().viewport()->mapToGlobal(place),
                           Qt::LeftButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(grid().viewport(), &second);
        QCOMPARE(mark(1), "0");
    }

    void aBlankBarcodeTakesNoMarkButOpens() {
        m_shop->scan(goods::bread);
        grid().setTextMatrix(1, 1, "  ");
        pressCell(1, 1);
        QCOMPARE(mark(1), "");
        pressCell(1, 3);
        QVERIFY(panelIsOpen());
    }

    void theMarkChangesNothingElse() {
        scanThree();
        pressCell(1, 1);
        press(*ui().kaydet);
        QCOMPARE(soldLines().size(), 3);
        QCOMPARE(soldLines().at(0).at(0).toString(), goods::bread);
    }

    void aScanAfterAPressOnTheTicketReachesNoField_data() {
        addRows<AScanAfterAPressOnTheTicketReachesNoFieldRow>({{"barcode", {1, 1}},
                                                               {"name", {1, 2}},
                                                               {"name of the entry row", {4, 2}},
                                                               {"quantity of the entry row", {4, 3}}});
    }
    void aScanAfterAPressOnTheTicketReachesNoField() {
        QFETCH(const AScanAfterAPressOnTheTicketReachesNoFieldRow, row);
        scanThree();
        pressCell(row.line, row.column);
        const auto before = texts();
        m_shop->scan(goods::bag);
        QCOMPARE(texts(), before);
        QCOMPARE(grid().row(), row.line);
        QCOMPARE(grid().col(), row.column);
        m_shop->press(*ui().korumaresmi);
        m_shop->scan(goods::bag);
        QCOMPARE(m_shop->lines(), 4);
        QCOMPARE(m_shop->line(4).at(0), goods::bag);
    }

    void aLineOfALongTicket() {
        for (int product = 0; product < 40; ++product) {
            m_shop->addProduct(QString::number(500000 + product), "Ürün " + QString::number(product), 1, 1);
            m_shop->scan(QString::number(500000 + product));
        }
        pressCell(40, 3);  // the ticket has scrolled
        QCOMPARE(ui().urununadi->text(), "Ürün 39");
        QCOMPARE(ui().satir->text(), "40");
        retype(*ui().adetdegis, "5");
        press(*ui().urunislemlerikapat);
        QCOMPARE(m_shop->line(40), (QStringList{"500039", "Ürün 39", "5", "1,00", "5,00"}));
        QCOMPARE(m_shop->toplam(), "44,00");
    }

    // --- the fields and keys of the panel

    void captions() {
        const std::pair<const char*, const char*> controls[] = {
            {"urunislemleri", "SATIŞ DÜZENLE"}, {"Label5", "ADET"},    {"Label6", "BİRİM FİYAT"},
            {"urunislemlerikapat", "TAMAM"},    {"vazgecc", "VAZGEÇ"}, {"urunsil", "ÜRÜNÜ LİSTEDEN SİL"},
            {"satisiptal", "SATIŞ İPTAL"}};
        for (const auto& [control, text] : controls)
            QCOMPARE(captionOf(control), text);
        const QStringList keys{"12: 1", "13: 4", "14: 7", "15: ,", "16: 2", "17: 3",
                               "18: 5", "19: 6", "20: 8", "21: 9", "22: 0", "23: SİL"};
        QCOMPARE(captionsOf("duzenlemetusu"), keys);
    }

    void aPressInAFieldEmptiesIt_data() {
        addRows<APressInAFieldEmptiesItRow>({{"the quantity that is active", {3, "adetdegis", "1"}},
                                             {"the quantity while the price is", {4, "adetdegis", "1"}},
                                             {"the price that is active", {5, "fiyatdegis", "2"}},
                                             {"the price while the quantity is", {3, "fiyatdegis", "2"}}});
    }
    void aPressInAFieldEmptiesIt() {
        QFETCH(const APressInAFieldEmptiesItRow, row);
        m_shop->scan(goods::bread);
        pressCell(1, row.column);
        auto* edit = m_shop->sales().findChild<QLineEdit*>(row.field);
        for (const Qt::MouseButton other : {Qt::RightButton, Qt::MiddleButton}) {
            press(*edit, other);
            QVERIFY(!edit->text().isEmpty());
        }
        press(*edit);
        QCOMPARE(edit->text(), "");
        QVERIFY(edit->hasFocus());
        QCOMPARE(ui().nereye->text(), row.code);
        const QLineEdit* untouched = edit == ui().adetdegis ? ui().fiyatdegis : ui().adetdegis;
        QVERIFY(!untouched->text().isEmpty());
        m_shop->type("7");
        QCOMPARE(edit->text(), "7");
    }

    void fieldsTakeDigitsAndCommas_data() {
        QTest::addColumn<FieldsTakeDigitsAndCommasRow>("row");
        for (const int column : {3, 4}) {
            const auto row = [column](const char* name, const char* typed, const char* text) {
                QTest::addRow("%s: %s", column == 3 ? "quantity" : "price", name)
                    << FieldsTakeDigitsAndCommasRow{column, QString::fromUtf8(typed),
                                                    QString::fromUtf8(text)};
            };
            row("digits and comma", "0123456789,", "0123456789,");
            row("letters and signs", "a1b,.;-+2e'3", "1,23");
            row("Turkish letters", "ıİşçğüö5", "5");
            row("a blank, as the keys send one", " 4 ", "4");
            row("two commas", ",,", ",,");
            row("an emoji", "9🍞", "9");
        }
    }
    void fieldsTakeDigitsAndCommas() {
        QFETCH(const FieldsTakeDigitsAndCommasRow, row);
        m_shop->scan(goods::bread);
        pressCell(1, row.column);
        QLineEdit& field = row.column == 3 ? *ui().adetdegis : *ui().fiyatdegis;
        retype(field, row.typed);
        QCOMPARE(field.text(), row.text);
        field.clear();
        compose(row.typed);
        QCOMPARE(field.text(), row.text);
        m_shop->key(Qt::Key_Backspace);
        QCOMPARE(field.text(), row.text.chopped(1));
    }

    void keysWriteIntoTheActiveField_data() {
        QTest::addColumn<int>("column");
        const auto row = [](const char* name, int column) { QTest::newRow(name) << column; };
        row("quantity", 3);
        row("price", 4);
        row("price, by the total", 5);
    }
    void keysWriteIntoTheActiveField() {
        QFETCH(int, column);
        m_shop->scan(goods::bread);
        pressCell(1, column);
        QLineEdit& active = column == 3 ? *ui().adetdegis : *ui().fiyatdegis;
        const QLineEdit& other = column == 3 ? *ui().fiyatdegis : *ui().adetdegis;
        const QString untouched = other.text();
        const QString stood = active.text();
        active.setCursorPosition(0);
        pressKeys("duzenlemetusu", {12});
        QCOMPARE(active.text(), stood + "1");  // behind what stands, wherever the caret was
        QCOMPARE(active.cursorPosition(), active.text().size());
        press(*ui().vazgecc);
        pressCell(1, column);
        pressKeys("duzenlemetusu", {23});
        QCOMPARE(active.text(), "");
        QVERIFY(active.hasFocus());
        pressKeys("duzenlemetusu", {12, 16, 17, 13, 18, 19, 14, 20, 21, 22, 15});
        QCOMPARE(active.text(), "1234567890,");
        QVERIFY(active.hasFocus());
        QCOMPARE(active.cursorPosition(), 11);
        QCOMPARE(other.text(), untouched);
        m_shop->type("5");
        QCOMPARE(active.text(), "1234567890,5");
    }

    void keysFollowThePressedField() {
        m_shop->scan(goods::bread);
        pressCell(1, 3);
        press(*ui().fiyatdegis);
        pressKeys("duzenlemetusu", {14});
        press(*ui().adetdegis);
        pressKeys("duzenlemetusu", {18});
        QCOMPARE(ui().fiyatdegis->text(), "7");
        QCOMPARE(ui().adetdegis->text(), "5");
        press(*ui().urunislemlerikapat);
        QCOMPARE(m_shop->line(1), (QStringList{goods::bread, "Köy Ekmeği", "5", "7,00", "35,00"}));
    }

    void byKeyboardAlone() {
        m_shop->scan(goods::bread);
        pressCell(1, 3);
        ui().adetdegis->selectAll();
        m_shop->type("4");
        m_shop->key(Qt::Key_Tab);
        ui().fiyatdegis->selectAll();
        m_shop->type("2,5");
        m_shop->key(Qt::Key_Tab);
        QVERIFY(ui().urunislemlerikapat->hasFocus());
        m_shop->key(Qt::Key_Return);
        QCOMPARE(m_shop->line(1), (QStringList{goods::bread, "Köy Ekmeği", "4", "2,50", "10,00"}));
    }
};

int main(int argc, char** argv) {
    return runTests<LinePressesTest>(argc, argv);
}

#include "test_linepresses.moc"
