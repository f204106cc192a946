#include <QBoxLayout>
#include <QElapsedTimer>
#include <QImage>
#include <map>
#include <memory>

#include "gridfixture.h"
#include "paintcounter.h"
#include "widgets/activeresize.h"
#include "widgets/drawnframe.h"
#include "widgets/look.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct SizeRow {
    QSize display;
    int bar = 44;        // height of heading and filter bar
    int scrollBar = 28;  // width
    int rowText = 16;
};

struct WidthRow {
    QList<int> widths;
    QList<int> edges;
};

struct PageRow {
    QList<QColor> grounds;  // that the page takes, one after the other
    Tone tone;
};

struct Screen : QWidget {
    ActiveResize* container = new ActiveResize(this);

    Screen(TDBGrid& grid, QSize size) {
        auto* outer = new QVBoxLayout(this);
        outer->setContentsMargins(0, 0, 0, 0);
        outer->addWidget(container);
        auto* inner = new QVBoxLayout(container);
        inner->setContentsMargins(8, 56, 8, 80);
        inner->addWidget(&grid);
        resize(size);
    }
};

QImage picture(const QWidget& widget) {
    return const_cast<QWidget&>(widget).grab().toImage();
}

/// How many pixels of a colour a part of a picture has.
int pixels(const QImage& image, const QRect& part, QColor color) {
    int count = 0;
    const QRect area = part.intersected(image.rect());
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x)
            count += image.pixel(x, y) == color.rgb() ? 1 : 0;
    }
    return count;
}

/// The rightmost place at which a row's band isn't of its ground.
int rightmostInk(const QImage& image, const QRect& cell) {
    const QRgb ground = image.pixel(cell.right(), cell.center().y());
    for (int x = cell.right(); x >= cell.left(); --x) {
        for (int y = cell.top() + 2; y < cell.bottom() - 2; ++y) {
            if (image.pixel(x, y) != ground)
                return x;
        }
    }
    return -1;
}

}  // namespace

Q_DECLARE_METATYPE(SizeRow)
Q_DECLARE_METATYPE(WidthRow)
Q_DECLARE_METATYPE(PageRow)

class TestGridLook : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void sizes_data() {
        QTest::addColumn<SizeRow>("row");
        QTest::newRow("800x600") << SizeRow{{800, 600}, 40, 22};
        QTest::newRow("1024x768") << SizeRow{{1024, 768}, 44, 28};
        QTest::newRow("1366x768") << SizeRow{{1366, 768}, 44, 28};
        QTest::newRow("1920x1080") << SizeRow{{1920, 1080}, 62, 39};
        QTest::newRow("far too small") << SizeRow{{480, 360}, 40, 17};
    }
    void sizes() {
        QFETCH(const SizeRow, row);
        ProductList list(100);
        TDBGrid& grid = list.grid;
        {
            Screen screen(grid, row.display);
            screen.show();
            QVERIFY(QTest::qWaitForWindowExposed(&screen));
            QCOMPARE(grid.headingRect(0).height(), row.bar);
            QCOMPARE(list.cell(0)->height(), row.bar);
            QCOMPARE(grid.verticalScrollBar()->width(), row.scrollBar);
            QVERIFY(!grid.horizontalScrollBar()->isVisible());
            // The columns end where the rows do, and no row is cut or too low for a finger.
            QCOMPARE(grid.headingRect(5).right() - 1, grid.viewport()->width() - 1);
            const QRect last =
                grid.visualRect(grid.model()->index(grid.firstRow() + grid.visibleRows() - 1, 0));
            QCOMPARE(last.bottom(), grid.viewport()->height() - 1);
            QVERIFY(grid.rowHeight() >= row.bar);
            QVERIFY(grid.rowHeight() < 2 * row.bar);
            grid.verticalScrollBar()->setValue(grid.verticalScrollBar()->maximum());
            QCOMPARE(grid.visualRect(grid.model()->index(99, 0)).bottom(), grid.viewport()->height() - 1);
            // The rim goes around the scroll bar too.
            QCoreApplication::processEvents();
            const QColor rim = roleColor(ColorRole::edge);
            QCOMPARE(picture(grid).pixelColor(grid.width() - 1, grid.height() / 2), rim);
            QCOMPARE(picture(grid).pixelColor(0, grid.height() / 2), rim);
            for (int index = 0; index < 5; ++index)
                QCOMPARE(list.cell(index)->geometry().right() + 1, list.cell(index + 1)->x());
            grid.setParent(nullptr);
        }
    }

    void columnWidths_data() {
        QTest::addColumn<WidthRow>("row");
        QTest::newRow("last takes the rest") << WidthRow{{100, 200, 50}, {0, 100, 300, 971}};
        QTest::newRow("last is too wide") << WidthRow{{100, 200, 5000}, {0, 100, 300, 971}};
        QTest::newRow("others give way") << WidthRow{{1000, 1000, 50}, {0, 447, 893, 971}};
        QTest::newRow("hidden") << WidthRow{{100, 0, 50}, {0, 100, 100, 971}};
        QTest::newRow("below nothing") << WidthRow{{100, -60, 50}, {0, 100, 100, 971}};
    }
    void columnWidths() {
        QFETCH(const WidthRow, row);
        TDBGrid grid;
        grid.setObjectName(u"TDBGrid1"_s);
        grid.resize(1000, 400);
        for (const int width : row.widths)
            grid.addColumn(u"X"_s, {}, width);
        grid.show();
        QVERIFY(QTest::qWaitForWindowExposed(&grid));
        QList<int> edges{0};
        for (int index = 0; index < grid.columnCount(); ++index) {
            edges << grid.headingRect(index).right();
            QCOMPARE(grid.findChild<QWidget*>(u"TDBGrid1_filter_%1"_s.arg(index))->isVisible(),
                     grid.headingRect(index).width() > 0);
            QCOMPARE(grid.column(index).width(), row.widths[index]);
        }
        QCOMPARE(edges, row.edges);
    }

    // A format that ends in a blank moves no figure.
    void numbersStandBelowTheirHeading() {
        ProductList list(3);
        list.run(u"UPDATE urunler SET alis = 8, satis = 8"_s);
        list.source.refresh();
        list.grid.column(3).setFormat(u"#,##0.00"_s);
        list.show();
        const QImage image = picture(*list.grid.viewport());
        const auto ink = [&](int index) {
            const QRect cell = list.grid.visualRect(list.grid.model()->index(1, index));
            return cell.right() - rightmostInk(image, cell);
        };
        QCOMPARE(ink(4), ink(3));
    }

    void numbersAreNeverCut_data() {
        QTest::addColumn<int>("width");
        for (const int width : {140, 90, 60, 40})
            QTest::addRow("%d wide", width) << width;
    }
    void numbersAreNeverCut() {
        QFETCH(const int, width);
        ProductList list;
        list.add(u"8690000000001"_s, u"Süt"_s, 9876543210.55);
        list.source.refresh();
        list.grid.column(4).setWidth(width);
        list.show();
        const QImage image = picture(*list.grid.viewport());
        const QRect cell = list.grid.visualRect(list.grid.model()->index(0, 4));
        const QRect padding(cell.left() + 2, cell.top() + 2, 5, cell.height() - 4);
        QCOMPARE(pixels(image, padding, roleColor(ColorRole::selection)), padding.width() * padding.height());
    }

    // A barcode that lost its middle would look like another one.
    void barcodesKeepTheirMiddle() {
        ProductList list;
        for (int row = 0; row < 5; ++row)
            list.add(row == 4 ? u"8690009000001"_s : u"8690000000001"_s, u"Süt"_s, 1);
        list.source.refresh();
        list.grid.column(ProductList::barcode).setWidth(100);
        // Twelve rows of 45 each, so that a cell looks like another with the same text.
        list.show({1008, 90 + 12 * 45});
        list.source.setCurrent(1);
        const QImage image = picture(*list.grid.viewport());
        const auto cell = [&](int row) {
            return image.copy(list.grid.visualRect(list.grid.model()->index(row, ProductList::barcode)));
        };
        QVERIFY(cell(0) == cell(2));
        QVERIFY(cell(0) != cell(4));
    }

    // Nobody reads it: it keeps its size and its place on one line, and loses its end.
    void codesLoseTheirEnd() {
        ProductList list;
        for (const char16_t* end : {u"aaaa", u"bbbb"})
            list.add(u"1"_s, u"sha256:9f86d081 "_s + QString(40, u'c') + end, 1);
        list.source.refresh();
        list.grid.column(ProductList::name).setWidth(150);
        list.show({1008, 90 + 12 * 45});
        list.source.setCurrent(-1);
        const auto cell = [&](int row) {
            return picture(*list.grid.viewport())
                .copy(list.grid.visualRect(list.grid.model()->index(row, ProductList::name)))
                .copy(0, 2, 140, 40);
        };
        const auto lines = [&](const QImage& image) {  // of letters, one above the other
            int count = 0;
            bool inLine = false;
            for (int y = 0; y < image.height(); ++y) {
                bool inked = false;
                for (int x = 8; x < image.width(); ++x)
                    inked = inked || image.pixelColor(x, y).lightness() < 160;
                count += inked && !inLine;
                inLine = inked;
            }
            return count;
        };
        QVERIFY(lines(cell(0)) > 1);
        list.grid.column(ProductList::name).setCode(true);
        QCOMPARE(lines(cell(0)), 1);
        QVERIFY(pixels(cell(0), cell(0).rect(), roleColor(ColorRole::ink)) == 0);
        list.grid.setEditedRow(list.source.recordset().identity(0));
        QVERIFY(pixels(cell(0), cell(0).rect(), roleColor(ColorRole::ink)) > 0);
    }

    void rowColours() {
        ProductList list(20);
        list.show();
        list.source.setCurrent(2);
        list.grid.setCol(3);
        const auto ground = [&](int row) {
            const QRect cell = list.grid.visualRect(list.grid.model()->index(row, 2));
            return picture(*list.grid.viewport()).pixelColor(cell.right() - 3, cell.top() + 4);
        };
        const auto bar = [&](int row) {
            return picture(*list.grid.viewport()).pixelColor(2, list.middleOf(row, 0).y());
        };
        QCOMPARE(ground(0), roleColor(ColorRole::card));
        QCOMPARE(ground(1), roleColor(ColorRole::zebra));
        QCOMPARE(ground(2), roleColor(ColorRole::selection));
        QCOMPARE(bar(2), roleColor(ColorRole::selectionBar));
        QCOMPARE(bar(1), roleColor(ColorRole::zebra));
        list.grid.setEditedRow(list.source.recordset().identity(5));
        QCOMPARE(ground(5), roleColor(ColorRole::editedRow));
        QCOMPARE(bar(5), roleColor(ColorRole::editedBar));
        // One row stands out at a time.
        QCOMPARE(ground(2), roleColor(ColorRole::card));
        list.source.setSort(u"no DESC"_s);
        QCOMPARE(ground(static_cast<int>(list.source.recordset().placeOf(6))),
                 roleColor(ColorRole::editedRow));
        list.grid.setEditedRow({});
        QCOMPARE(list.grid.currentIndex().row(), 17);
    }

    void colorsFollowThePage_data() {
        QTest::addColumn<PageRow>("row");
        const QColor dark = roleColor(ColorRole::ground, Tone::dark);
        QTest::newRow("light") << PageRow{{}, Tone::light};
        QTest::newRow("dark") << PageRow{{dark}, Tone::dark};
        QTest::newRow("turned dark while it is shown") << PageRow{{Qt::white, dark}, Tone::dark};
        QTest::newRow("turned light again") << PageRow{{dark, Qt::white}, Tone::light};
    }
    void colorsFollowThePage() {
        QFETCH(const PageRow, row);
        vkFrame page;  // outlives the grid, which is no child to delete
        ProductList list(100);
        TDBGrid& grid = list.grid;
        grid.column(0).setFooterText(u"TOPLAM"_s);
        grid.column(4).setFooterText(u"7,50"_s);
        grid.setFooterTotal(4);
        grid.setSortMark(4);
        page.setLook(FrameRole::page);
        page.resize(1024, 768);
        grid.setParent(&page);
        grid.setGeometry(8, 8, 1008, 632);
        page.show();
        QVERIFY(QTest::qWaitForWindowExposed(&page));
        for (const QColor& ground : row.grounds) {
            page.setBackcolor1(ground);
            page.setBackcolor2(ground);
        }
        list.source.setCurrent(2);
        {
            const QSignalBlocker still(grid);
            list.cell(1)->setText(u"869"_s);
        }
        grid.setFilterRefused(3, true);
        QCoreApplication::processEvents();

        const QImage shown = picture(grid);
        const int rows = grid.viewport()->y();
        const auto at = [&](int x, int y) { return shown.pixelColor(x, y).name(); };
        const auto color = [&](ColorRole role) { return roleColor(role, row.tone).name(); };
        const auto band = [&](int index) {
            return rows + grid.visualRect(grid.model()->index(index, 0)).top();
        };
        const int left = grid.headingRect(1).right() - 3;
        const auto holds = [&](int index, int column, ColorRole role) {
            const QRect cell = grid.visualRect(grid.model()->index(index, column));
            return pixels(shown, cell.translated(1, rows), roleColor(role, row.tone)) > 0;
        };
        QCOMPARE(at(left, band(0) + 4), color(ColorRole::card));
        QCOMPARE(at(left, band(1) + 4), color(ColorRole::zebra));
        QCOMPARE(at(left, band(1) - 1), color(ColorRole::rowLine));
        QCOMPARE(at(left, band(2) + 4), color(ColorRole::selection));
        QCOMPARE(at(3, band(2) + 20), color(ColorRole::selectionBar));
        QVERIFY(holds(0, 0, ColorRole::mutedInk));
        QVERIFY(holds(0, 2, ColorRole::ink));
        QCOMPARE(at(left, 8), color(ColorRole::heading));
        QCOMPARE(at(grid.headingRect(4).center().x(), 4), color(ColorRole::sortedHeading));
        QCOMPARE(at(grid.width() - 10, 60), color(ColorRole::filterStrip));
        QCOMPARE(at(list.cell(2)->geometry().center().x(), rows - 15), color(ColorRole::filterCell));
        QCOMPARE(at(list.cell(1)->geometry().center().x() + 10, rows - 15), color(ColorRole::filterInForce));
        QCOMPARE(at(grid.width() - 3, rows + 100), color(ColorRole::ground));
        QCOMPARE(at(300, grid.height() - 10), color(ColorRole::footer));
        QVERIFY(pixels(shown, QRect(500, grid.height() - 60, 480, 58),
                       roleColor(ColorRole::footerTotal, row.tone)) > 0);
        QCOMPARE(at(0, 200), color(ColorRole::edge));
        QCOMPARE(at(0, 0), page.backcolor1().name());

        list.source.setFilter(u"urun LIKE 'yok'"_s);
        grid.setEmptyState({{}, u"Henüz ürün yok"_s, u"EKLE"_s});
        grid.setNoMatchState({{}, u"Aramaya uyan ürün yok"_s, u"silin"_s});
        const QImage empty = picture(*grid.viewport());
        QVERIFY(pixels(empty, empty.rect(), roleColor(ColorRole::ink, row.tone)) > 0);
        QVERIFY(pixels(empty, empty.rect(), roleColor(ColorRole::mutedInk, row.tone)) > 0);
        grid.setParent(nullptr);
    }

    void takesTheColorsOfThePageItIsMadeOn() {
        vkFrame page;
        page.setBackcolor1(Qt::black);
        page.setBackcolor2(Qt::black);
        TDBGrid grid(&page);
        grid.setObjectName(u"TDBGrid1"_s);
        grid.addColumn(u"NO"_s);
        grid.resize(400, 300);
        page.resize(400, 300);
        page.show();
        QVERIFY(QTest::qWaitForWindowExposed(&page));
        const QImage shown = picture(grid);
        QCOMPARE(shown.pixelColor(200, 4), roleColor(ColorRole::heading, Tone::dark));
        QCOMPARE(shown.pixelColor(200, 65), roleColor(ColorRole::filterCell, Tone::dark));
        QCOMPARE(shown.pixelColor(200, 200), roleColor(ColorRole::card, Tone::dark));
        QCOMPARE(shown.pixelColor(390, 200), roleColor(ColorRole::ground, Tone::dark));
    }

    void editedRowComesIntoSight() {
        ProductList list(100);
        list.show();
        list.grid.setEditedRow(81);
        QVERIFY(list.grid.firstRow() <= 80);
        QVERIFY(list.grid.firstRow() + list.grid.visibleRows() > 80);
        // A frame that opens below takes room.
        list.grid.resize(1008, 300);
        QVERIFY(list.grid.firstRow() + list.grid.visibleRows() > 80);
    }

    void numbersOfRowsAreMuted() {
        ProductList list(5);
        list.show();
        const QImage image = picture(*list.grid.viewport());
        const auto inked = [&](int column, ColorRole role) {
            return pixels(image, list.grid.visualRect(list.grid.model()->index(2, column)), roleColor(role)) >
                   0;
        };
        QVERIFY(!inked(0, ColorRole::ink));
        QVERIFY(inked(2, ColorRole::ink));
    }

    void currentCellIsFramedWithTheFocus() {
        ProductList list(5);
        list.show();
        list.grid.setCol(1);
        const QRect cell = list.grid.visualRect(list.grid.model()->index(0, 1));
        const QRect edge(cell.left() + 4, cell.top(), cell.width() - 8, 2);
        const QColor frame = roleColor(ColorRole::selectionBar);
        QVERIFY(pixels(picture(*list.grid.viewport()), edge, frame) > 0);
        list.cell(1)->setFocus();
        QCOMPARE(pixels(picture(*list.grid.viewport()), edge, frame), 0);
    }

    void sortMarkStandsBesideTheCaption() {
        ProductList list(5);
        list.show();
        const auto arrow = [&](int index) {
            return pixels(picture(list.grid), list.grid.headingRect(index), roleColor(ColorRole::sortArrow));
        };
        QCOMPARE(arrow(2), 0);
        list.grid.setSortMark(2, Qt::DescendingOrder);
        QVERIFY(arrow(2) > 20);
        list.grid.setSortMark(4, Qt::AscendingOrder);
        QCOMPARE(arrow(2), 0);
        QVERIFY(arrow(4) > 20);
        QRect left = list.grid.headingRect(4);
        left.setWidth(left.width() / 2);
        QVERIFY(pixels(picture(list.grid), left, roleColor(ColorRole::sortArrow)) > 20);
        list.grid.setSortMark(-1);
        QCOMPARE(arrow(4), 0);
    }

    void scrollBarKeepsItsTrack() {
        ProductList list(3);
        list.show();
        QVERIFY(list.grid.verticalScrollBar()->isVisible());
        QVERIFY(!list.grid.verticalScrollBar()->isEnabled());
        const int width = list.grid.viewport()->width();
        const QImage track = picture(*list.grid.verticalScrollBar());
        QCOMPARE(pixels(track, track.rect(), roleColor(ColorRole::ground)), track.width() * track.height());
        list.run(u"INSERT INTO urunler (urun) SELECT a.urun FROM urunler a, urunler b, urunler c"_s);
        list.source.refresh();
        QVERIFY(list.grid.verticalScrollBar()->isEnabled());
        QCOMPARE(list.grid.viewport()->width(), width);
        // Heading and filter bar run over it.
        QVERIFY(list.grid.verticalScrollBar()->mapTo(&list.grid, QPoint(0, 0)).y() >= 88);
        QCOMPARE(picture(list.grid).pixelColor(list.grid.width() - 10, 60),
                 roleColor(ColorRole::filterStrip));
    }

    void footersComeWithTheirTexts() {
        ProductList list(50);
        list.show();
        const int rows = list.grid.visibleRows();
        QCOMPARE(list.grid.footerTexts(), QStringList(6));
        list.grid.column(2).setFooterText(u"SATIŞ TOPLAMI"_s);
        list.grid.column(4).setFooterText(u"18.764,25 TL."_s);
        list.grid.setFooterTotal(4);
        list.grid.setFooterNote(u"tümü"_s);
        QCOMPARE(list.grid.footerTexts(),
                 (QStringList{{}, {}, u"SATIŞ TOPLAMI"_s, {}, u"18.764,25 TL."_s, {}}));
        QVERIFY(list.grid.visibleRows() < rows);
        const QRect band(0, 632 - 71, 1008, 70);
        const QImage image = picture(list.grid);
        QVERIFY(pixels(image, band, roleColor(ColorRole::footerTotal)) > 100);
        QVERIFY(pixels(image, QRect(0, band.top(), 300, 70), roleColor(ColorRole::ink)) > 100);
        list.grid.column(2).setFooterText({});
        list.grid.column(4).setFooterText({});
        QCOMPARE(list.grid.visibleRows(), rows);
    }

    // Figures of a large shop on a small display.
    void footersAreNeverCut() {
        ProductList list(5);
        for (int index = 3; index < 6; ++index)
            list.grid.column(index).setFooterText(u"987.654.321.098,75 TL."_s);
        list.grid.column(2).setFooterText(u"SATIŞ TOPLAMI"_s);
        list.grid.setScale(0.78);
        list.show({788, 400});
        const QImage image = picture(list.grid);
        const QRect gap(153, 400 - 30, 12, 20);
        QCOMPARE(pixels(image, gap, roleColor(ColorRole::footer)), gap.width() * gap.height());
    }

    void emptyStates() {
        ProductList list;
        list.grid.setEmptyState({{}, u"Henüz ürün yok"_s, u"EKLE’ye dokunun"_s});
        list.grid.setNoMatchState({{}, u"Aramaya uyan ürün yok, hiç yok"_s, {}});
        list.show();
        const QRect middle(200, 150, 600, 300);
        const auto ink = [&] {
            const QImage image = picture(*list.grid.viewport());
            return pixels(image, middle, roleColor(ColorRole::ink));
        };
        const int empty = ink();
        QVERIFY(empty > 0);
        list.grid.column(2).setFilterText(u"x"_s);  // finds none where there are none
        QCOMPARE(ink(), empty);
        list.add(u"1"_s, u"Süt"_s, 1);
        list.source.refresh();
        QCOMPARE(ink(), 0);
        list.source.setFilter(u"urun LIKE 'x'"_s);
        QVERIFY(ink() > 0 && ink() != empty);
    }

    void onlyVisibleRowsAreAsked() {
        ProductList list(100'000);
        list.show();
        QElapsedTimer clock;
        const auto paint = [&] {
            clock.restart();
            list.grid.viewport()->repaint();
            return clock.nsecsElapsed();
        };
        paint();
        const qint64 many = paint();
        list.grid.verticalScrollBar()->setValue(99'000);
        const qint64 far = paint();
        qInfo("painting %.2f ms, at the end %.2f ms", static_cast<double>(many) / 1e6,
              static_cast<double>(far) / 1e6);
        QVERIFY(many < 100'000'000);
        QVERIFY(far < 100'000'000);
    }

    void currentRowRepaintsItsLineAlone() {
        ProductList list(20);
        list.show();
        QCoreApplication::processEvents();
        PaintCounter counter(*list.grid.viewport());
        list.source.setCurrent(3);
        QTRY_VERIFY(counter.count() > 0);
        const QRect first = list.grid.visualRect(list.grid.model()->index(0, 0));
        const QRect other = list.grid.visualRect(list.grid.model()->index(8, 0));
        QVERIFY(counter.region().intersects(first));
        QVERIFY(!counter.region().intersects(other));
    }

    void hostileCellsPaint_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("very long") << QString(200'000, u'w');
        QTest::newRow("very long words") << u"uzun ürün adı "_s.repeated(20'000);
        QTest::newRow("lines") << u"a\nb\nc\nd\ne"_s;
        QTest::newRow("line separators") << u"a\u2028b\u2029c"_s;
        QTest::newRow("markup") << u"<b>x</b>"_s;
        QTest::newRow("right to left") << u"\u202e\u05d0\u05d1 12"_s;
    }
    void hostileCellsPaint() {
        QFETCH(const QString, text);
        ProductList list;
        list.add(u"1"_s, text, 1);
        list.add(u"2"_s, u"Süt"_s, 1);
        list.source.refresh();
        list.show();
        QElapsedTimer clock;
        clock.start();
        const QImage image = picture(*list.grid.viewport());
        QVERIFY2(clock.elapsed() < 2000, qPrintable(QString::number(clock.elapsed())));
        // Nothing runs into the row below or into the neighbour.
        const QRect below = list.grid.visualRect(list.grid.model()->index(1, 2)).adjusted(60, 1, 0, -2);
        QCOMPARE(pixels(image, below, roleColor(ColorRole::zebra)), below.width() * below.height());
        const QRect beside(list.grid.visualRect(list.grid.model()->index(0, 3)).left() + 4, 4, 40, 30);
        QCOMPARE(pixels(image, beside, roleColor(ColorRole::selection)), beside.width() * beside.height());
    }

    // What a key in a filter cell leaves as it is isn't painted again, and the rows are painted once.
    void aKeyRepaintsRowsAndItsCell() {
        ProductList list(100);
        list.grid.column(4).setFooterText(u"7,50 TL."_s);
        list.show();
        list.cell(2)->setFocus();
        QTest::sendKeyEvent(QTest::Click, list.cell(2), Qt::Key_unknown, u"1"_s, Qt::NoModifier);
        QCoreApplication::processEvents();
        std::map<QWidget*, std::unique_ptr<PaintCounter>> paintings;
        for (QWidget* part : list.grid.findChildren<QWidget*>())
            paintings[part] = std::make_unique<PaintCounter>(*part);
        connect(&list.grid, &TDBGrid::filterChange, &list.grid, [&] { list.filterAsTyped(); });
        QTest::sendKeyEvent(QTest::Click, list.cell(2), Qt::Key_unknown, u"2"_s, Qt::NoModifier);
        QCOMPARE(list.grid.model()->rowCount(), 1);
        // Whatever was put off until the next turn has its turn too.
        for (int turn = 0; turn < 3; ++turn)
            QCoreApplication::processEvents();
        QCOMPARE(paintings.at(list.grid.viewport())->count(), 1);
        QCOMPARE(paintings.at(list.cell(2))->count(), 1);
        // Of all else no more than what lies behind the cell and the bar.
        const auto on = [](const QWidget* part, const QWidget* painted) {
            return QRect(part->mapFromGlobal(painted->mapToGlobal(QPoint())), painted->size());
        };
        for (const auto& [part, painted] : paintings) {
            if (part != list.grid.viewport())
                QCOMPARE(painted->region() - on(part, list.cell(2)) - on(part, list.grid.verticalScrollBar()),
                         QRegion());
        }
    }
};

QTEST_MAIN(TestGridLook)
#include "test_gridlook.moc"
