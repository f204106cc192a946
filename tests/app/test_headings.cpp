#include <QGroupBox>
#include <QVBoxLayout>

#include "app/modTurkce.h"
#include "rows.h"
#include "runtests.h"
#include "runtime/screen.h"
#include "widgets/activeresize.h"
#include "widgets/drawnframe.h"
#include "widgets/tdbgrid.h"
#include "widgets/vsflexgrid.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

class TestHeadings : public QObject {
    Q_OBJECT

    struct ListGridRow {
        QString stored, heading;
    };
    struct StartsAtDepthRow {
        int depth;
        QString outer, inner;
    };

private Q_SLOTS:
    void listGrid_data() {
        addRows<ListGridRow>({{"user name", {u"personeladi"_s, u"KULLANICI ADI"_s}},
                              {"user name, other case and blanks", {u" PersonelAdi "_s, u"KULLANICI ADI"_s}},
                              {"user name in capitals", {u"PERSONELADI"_s, u"KULLANICI ADI"_s}},
                              {"user name in Turkish capitals", {u"PERSONELADİ"_s, u"KULLANICI ADI"_s}},
                              {"password", {u"sifre"_s, u"ŞIFRE"_s}},
                              {"password in capitals", {u"SIFRE"_s, u"ŞIFRE"_s}},
                              {"password with blanks", {u"  Sifre\t"_s, u"ŞIFRE"_s}},
                              {"number", {u"id"_s, u"NO"_s}},
                              {"number in capitals", {u"ID"_s, u"NO"_s}},
                              {"number with blanks", {u" Id "_s, u"NO"_s}},
                              {"symbols", {u"~R~N !SM!"_s, u"ÜRÜN İSMİ"_s}},
                              {"symbols keep their blanks", {u" ~R~N "_s, u" ÜRÜN "_s}},
                              {"no symbols", {u"BARKOD"_s, u"BARKOD"_s}},
                              {"no symbols, blanks stay", {u" barkod "_s, u" barkod "_s}},
                              {"beginning of a name", {u"sifre2"_s, u"sifre2"_s}},
                              {"empty", {QString(), QString()}}});
    }
    void listGrid() {
        QFETCH(const ListGridRow, row);
        TDBGrid grid;
        grid.setColumnCaptions({row.stored});
        gridbasliklari(grid);
        QCOMPARE(grid.columnCaption(0), row.heading);
        QCOMPARE(grid.printInfo().previewPageOf, u"Toplam \\P sayfa  \\p  sayfadasınız."_s);
        gridbasliklari(grid);
        QCOMPARE(grid.columnCaption(0), row.heading);
    }

    void everyColumn() {
        TDBGrid grid;
        grid.setColumnCaptions({u"id"_s, u"personeladi"_s, u"sifre"_s, u"yetki"_s, u"M!KTAR"_s});
        gridbasliklari(grid);
        QStringList headings;
        for (int column = 0; column < grid.columnCount(); ++column)
            headings << grid.columnCaption(column);
        QCOMPARE(headings, (QStringList{u"NO"_s, u"KULLANICI ADI"_s, u"ŞIFRE"_s, u"yetki"_s, u"MİKTAR"_s}));
    }

    void noColumns() {
        TDBGrid grid;
        gridbasliklari(grid);
        QCOMPARE(grid.columnCount(), 0);
        QCOMPARE(grid.printInfo().previewPageOf, u"Toplam \\P sayfa  \\p  sayfadasınız."_s);
    }

    void ticketGrid() {
        VSFlexGrid grid;
        grid.setCols(6);
        grid.setTextMatrix(0, 0, u"gizli"_s);
        grid.setTextMatrix(1, 1, u"8690000000001"_s);
        std::vector<int> widths;
        for (int column = 0; column < 6; ++column) {
            grid.setColWidth(column, 100 + column);
            widths.push_back(column == 0 ? 0 : 100 + column);
        }
        gridbasliklari(grid);
        QStringList headings;
        for (int column = 0; column < 6; ++column) {
            headings << grid.textMatrix(0, column);
            QCOMPARE(grid.colWidth(column), widths[static_cast<size_t>(column)]);
        }
        QCOMPARE(headings,
                 (QStringList{u"gizli"_s, u"BARKOD"_s, u"ÜRÜN ADI"_s, u"MİKT."_s, u"FİY."_s, u"TOP."_s}));
        QCOMPARE(grid.textMatrix(1, 1), u"8690000000001"_s);
    }

    // As the grid is before the sales screen has set it up.
    void ticketGridWithoutColumns() {
        VSFlexGrid grid;
        QCOMPARE(grid.cols(), 2);
        satisgridbasliklari(grid);
        QCOMPARE(grid.cols(), 2);
        QCOMPARE(grid.colWidth(0), 0);
        QCOMPARE(grid.textMatrix(0, 1), u"BARKOD"_s);
    }

    void walksContainers_data() {
        QTest::addColumn<QString>("kind");
        QTest::newRow("resizing containers") << u"ActiveResize"_s;
        QTest::newRow("drawn frames") << u"vkFrame"_s;
        QTest::newRow("groups") << u"QGroupBox"_s;
        QTest::newRow("plain containers") << u"QWidget"_s;
    }
    void walksContainers() {
        QFETCH(const QString, kind);
        constexpr int levels = 9;
        Screen screen;
        QWidget* container = &screen;
        std::vector<TDBGrid*> grids;
        for (int level = 0; level < levels; ++level) {
            auto* grid = new TDBGrid;
            grid->setColumnCaptions({u"id"_s});
            QWidget* inner = kind == u"ActiveResize" ? new ActiveResize
                             : kind == u"vkFrame"    ? static_cast<QWidget*>(new vkFrame)
                             : kind == u"QGroupBox"  ? new QGroupBox
                                                     : new QWidget;
            auto* layout = new QVBoxLayout(container);
            layout->addWidget(grid);
            layout->addWidget(inner);
            grids.push_back(grid);
            container = inner;
        }
        ekrandonat(screen);
        for (size_t level = 0; level < levels; ++level)
            QCOMPARE(grids[level]->columnCaption(0), level < 7 ? u"NO"_s : u"id"_s);
    }

    void startsAtDepth_data() {
        addRows<StartsAtDepthRow>({{"from the screen", {0, u"NO"_s, u"NO"_s}},
                                   {"sixth container", {5, u"NO"_s, u"NO"_s}},
                                   {"seventh container", {6, u"NO"_s, u"id"_s}},
                                   {"eighth container", {7, u"id"_s, u"id"_s}}});
    }
    void startsAtDepth() {
        QFETCH(const StartsAtDepthRow, row);
        QWidget container;
        TDBGrid outerGrid(&container);
        outerGrid.setColumnCaptions({u"id"_s});
        QWidget held(&container);
        TDBGrid innerGrid(&held);
        innerGrid.setColumnCaptions({u"id"_s});
        gridleridolas(container, row.depth);
        QCOMPARE(outerGrid.columnCaption(0), row.outer);
        QCOMPARE(innerGrid.columnCaption(0), row.inner);
    }
};

int main(int argc, char** argv) {
    return runTests<TestHeadings>(argc, argv);
}
#include "test_headings.moc"
