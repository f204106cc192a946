#include <QTest>

#include "rows.h"
#include "widgets/activeresize.h"
#include "widgets/vsflexgrid.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct WidthRow {
    QSize display;
    int names;  ///< the width of their column there
};

}  // namespace

/// The room and the letters that a ticket's columns get on displays of several sizes.
class TestGridLetters : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theLongestStandsWholeInTheSmallestLetters_data() {
        addRows<int>({{"ordinary letters of 11 pixels", 11}, {"of 12", 12}, {"of 15", 15}, {"of 21", 21}});
    }
    void theLongestStandsWholeInTheSmallestLetters() {
        QFETCH(const int, row);
        VSFlexGrid grid;
        QFont letters(u"Roboto"_s);
        letters.setPixelSize(row);
        grid.setFont(letters);
        grid.resize(400, 400);
        grid.show();
        grid.setCols(2);
        grid.setColWidth(0, -1);
        grid.setColAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
        grid.setRows(3);
        const auto width = [&] { return grid.cellRect(1, 1).width(); };
        grid.setColSample(1, u"1.234.567,89"_s);
        const int usual = width();
        grid.setColSample(1, u"1.234.567,89"_s, u"888888888,88"_s);
        grid.setTextMatrix(1, 1, u"185185170,00"_s);
        letters.setPixelSize(grid.letterSize(1));
        constexpr int padding = 12;
        QVERIFY(QFontMetrics(letters).horizontalAdvance(u"185185170,00"_s) <= width() - padding);
        // No wider than it has to be: the names need the room.
        QCOMPARE(width() > usual, row <= 12);
    }

    // A word that is too long for any display leaves the others alone, with a short one beside it, too.
    void oneWordLeavesTheOtherNamesTheirSize_data() {
        addRows<WidthRow>({{"800x600", {{800, 600}, 140}},
                           {"1024x768", {{1024, 768}, 200}},
                           {"1366x768", {{1366, 768}, 350}},
                           {"1920x1080", {{1920, 1080}, 560}}});
    }
    void oneWordLeavesTheOtherNamesTheirSize() {
        QFETCH(const WidthRow, row);
        ActiveResize page;
        page.setDesignSize({1024, 768});
        auto* grid = new VSFlexGrid(&page);
        QFont letters(u"Roboto"_s);
        letters.setPixelSize(15);
        grid->setFont(letters);
        page.resize(row.display);
        page.show();
        // As wide as the sales screen leaves for names on that display.
        grid->resize(row.names, 400);
        grid->setCols(3);
        grid->setColWidth(0, 0);
        grid->setColWidth(1, 0);
        grid->setColWidth(2, -1);
        grid->setRows(4);
        grid->setTextMatrix(1, 2, u"Rize Bardak Poşet Çay 100'lü"_s);
        const int before = grid->letterSize(2);
        const QString word = u"ABCDEFGHIJKLMNOPQRSTUVWX"_s.repeated(2);
        for (const QString& name : QStringList{word + u"YZ"_s, u"A "_s + word, word + u" A"_s}) {
            grid->setTextMatrix(2, 2, name);
            QCOMPARE(grid->letterSize(2), before);
        }
    }
};

QTEST_MAIN(TestGridLetters)
#include "test_gridletters.moc"
