#include <QAccessible>

#include "focuslog.h"
#include "gridfixture.h"
#include "widgets/drawnframe.h"
#include "widgets/vsflexgrid.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

// What assistive tools are told of a list grid and of the ticket.
class TestGridAccessible : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tellsTheSort() {
        ProductList list(5);
        list.show();
        const auto told = [&] {
            QStringList words;
            QAccessibleInterface* grid = QAccessible::queryAccessibleInterface(&list.grid);
            for (int index = 0; index < 6; ++index)
                words << grid->child(index)->text(QAccessible::Description);
            return words.join(u'|');
        };
        QCOMPARE(told(), u"|||||"_s);
        list.grid.setSortMark(2);
        QCOMPARE(told(), u"||Artan sırada|||"_s);
        list.grid.setSortMark(4, Qt::DescendingOrder);
        QCOMPARE(told(), u"||||Azalan sırada|"_s);
        list.grid.setSortMark(-1);
        QCOMPARE(told(), u"|||||"_s);
    }

    void tellsThatThereAreNoRows() {
        ProductList list;
        list.show();
        QAccessibleInterface* grid = QAccessible::queryAccessibleInterface(&list.grid);
        const auto told = [&] { return grid->text(QAccessible::Description); };
        QCOMPARE(told(), QString());
        list.grid.setEmptyState({{}, u"Henüz ürün yok"_s, u"EKLE’ye dokunun"_s});
        list.grid.setNoMatchState({{}, u"Aramaya uyan ürün yok"_s, {}});
        QCOMPARE(told(), u"Henüz ürün yok. EKLE’ye dokunun"_s);
        list.add(u"1"_s, u"Süt"_s, 1);
        list.source.refresh();
        QCOMPARE(told(), QString());
        list.source.setFilter(u"urun LIKE 'yok'"_s);
        QCOMPARE(told(), u"Aramaya uyan ürün yok"_s);
    }

    void hasAName() {
        vkFrame page;
        page.setCaption(u"ÜRÜN ARA"_s);
        TDBGrid grid(&page);
        QAccessibleInterface* table = QAccessible::queryAccessibleInterface(&grid);
        QCOMPARE(table->text(QAccessible::Name), u"ÜRÜN ARA"_s);
        grid.setAccessibleName(u"Ürünler"_s);
        QCOMPARE(table->text(QAccessible::Name), u"Ürünler"_s);
    }

    void isATable() {
        ProductList list(1000);
        list.grid.column(4).setFooterText(u"7,50 TL."_s);
        list.show();
        QAccessibleInterface* grid = QAccessible::queryAccessibleInterface(&list.grid);
        QCOMPARE(grid->role(), QAccessible::Table);
        QAccessibleTableInterface* table = grid->tableInterface();
        QVERIFY(table);
        QCOMPARE(table->rowCount(), 1000);
        QCOMPARE(table->columnCount(), 6);
        QCOMPARE(table->cellAt(899, 2)->text(QAccessible::Name), u"Ürün 900"_s);
        QCOMPARE(table->cellAt(899, 2)->role(), QAccessible::Cell);
        QVERIFY(table->cellAt(899, 2)->state().offscreen);
        QVERIFY(!table->cellAt(1000, 0));
        // Headings, rows in sight, filter bar and footers: no tool is sent through all rows.
        QCOMPARE(grid->childCount(), 6 * (1 + list.grid.visibleRows()) + 2);
        for (int index = 0; index < grid->childCount(); ++index) {
            QVERIFY(grid->child(index));
            QCOMPARE(grid->indexOfChild(grid->child(index)), index);
            QCOMPARE(grid->child(index)->parent(), grid);
        }
        QCOMPARE(grid->child(6 + 2)->text(QAccessible::Name), u"Ürün 1"_s);
        const QRect cell = list.grid.visualRect(list.grid.model()->index(0, 2));
        QCOMPARE(grid->child(6 + 2)->rect(),
                 QRect(list.grid.viewport()->mapToGlobal(cell.topLeft()), cell.size()));
        QAccessibleInterface* bar = grid->child(grid->childCount() - 2);
        QCOMPARE(bar->childCount(), 6);
        QCOMPARE(bar->child(2)->text(QAccessible::Name), u"ÜRÜN ADI"_s);
        QCOMPARE(bar->child(2)->role(), QAccessible::EditableText);
        QCOMPARE(grid->child(grid->childCount() - 1)->text(QAccessible::Name), u"SATIŞ FİYATI 7,50 TL."_s);

        const QSignalSpy heads(&list.grid, &TDBGrid::headClick);
        QCOMPARE(grid->child(3)->text(QAccessible::Name), u"ALIŞ FİYAT"_s);
        grid->child(3)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(heads.size(), 1);
        QCOMPARE(heads[0][0].toInt(), 3);
        QVERIFY(table->selectRow(4));
        QCOMPARE(list.source.recordset().current(), 4);
        QVERIFY(grid->child(6 * 5)->state().selected);
        list.source.setFilter(u"urun LIKE 'yok'"_s);
        QCOMPARE(grid->childCount(), 6 + 2);
        QCOMPARE(table->selectedRowCount(), 0);
    }

    void theTicketIsATable() {
        VSFlexGrid ticket;
        ticket.setCols(3);
        ticket.setRows(40);
        for (int row = 0; row < 40; ++row) {
            ticket.setTextMatrix(row, 1, row == 0 ? u"ÜRÜN ADI"_s : u"Ürün %1"_s.arg(row));
        }
        ticket.resize(400, 36 * 11);
        ticket.show();
        QAccessibleInterface* grid = QAccessible::queryAccessibleInterface(&ticket);
        QCOMPARE(grid->role(), QAccessible::Table);
        QAccessibleTableInterface* table = grid->tableInterface();
        QVERIFY(table);
        QCOMPARE(table->rowCount(), 39);
        QCOMPARE(table->columnDescription(1), u"ÜRÜN ADI"_s);
        QCOMPARE(table->cellAt(0, 1)->text(QAccessible::Name), u"Ürün 1"_s);
        QCOMPARE(table->cellAt(0, 1)->text(QAccessible::Description), u"ÜRÜN ADI"_s);
        QVERIFY(!table->cellAt(0, 1)->state().offscreen);
        QVERIFY(table->cellAt(38, 1)->state().offscreen);
        QCOMPARE(table->selectedRowCount(), 0);  // the heading is the current row of a new ticket
        QVERIFY(table->selectRow(38));
        QCOMPARE(ticket.row(), 39);
        QVERIFY(!table->cellAt(38, 1)->state().offscreen);
        QVERIFY(grid->childCount() < 3 * 13);
        for (int index = 0; index < grid->childCount(); ++index)
            QCOMPARE(grid->indexOfChild(grid->child(index)), index);
        const QRect cell = ticket.cellRect(39, 1);
        QCOMPARE(table->cellAt(38, 1)->rect(),
                 QRect(ticket.viewport()->mapToGlobal(cell.topLeft()), cell.size()));
        ticket.setRows(2);
        QCOMPARE(table->rowCount(), 1);
        QVERIFY(!table->cellAt(38, 1));
    }

    // --- moves of the focus

    void aMoveInTheTicketIsTold() {
        VSFlexGrid ticket;
        ticket.setRows(5);
        ticket.setTextMatrix(2, 0, u"Süt"_s);
        ticket.show();
        ticket.setFocus();
        QVERIFY(QTest::qWaitForWindowActive(&ticket));
        const FocusLog log;
        ticket.setRow(2);
        QCOMPARE(log.names(), QStringList{u"Süt"_s});
    }

    void aMoveInAListIsTold() {
        ProductList list(5);
        list.show();
        list.grid.setFocus();
        QTRY_VERIFY(list.grid.hasFocus());
        list.grid.setCurrentIndex(list.grid.model()->index(0, 2));
        const FocusLog log;
        QTest::keyClick(&list.grid, Qt::Key_Down);
        QCOMPARE(log.last(), u"Ürün 2"_s);
    }
};

QTEST_MAIN(TestGridAccessible)
#include "test_gridaccessible.moc"
