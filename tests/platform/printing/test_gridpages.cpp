#include "printing/gridpages.h"

#include <QPainter>
#include <QPdfWriter>
#include <QTemporaryDir>
#include <cmath>

#include "pdfpages.h"
#include "printing/printer.h"
#include "rows.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

// A4, which leaves room for 42 lines between margins of half an inch.
constexpr QSizeF a4(595, 842);
constexpr int linesAPage = 42;

struct CountRow {
    int rows;
    bool repeat;
    bool footers;
    int pages;
};

struct RowsEndRow {
    int rows;
    int page;
    int lines;
};

struct BandRow {
    QString text;
    QString left, middle, right;  ///< words, where there is one
};

struct CellRow {
    QString text;
    bool number;
    QStringList shown;  ///< the lines that are read back
};

struct MarginsRow {
    QMarginsF twips;
    double left;  ///< where the first column's text begins, in points
};

/// Rows "Ürün 1", "1,50"; two columns, the first three times as wide.
PrintTable table(int rows) {
    PrintTable made;
    made.columns = {{u"ÜRÜN ADI"_s, 300, false, false}, {u"FİYAT"_s, 100, true, false}};
    made.rowCount = rows;
    made.text = [](qsizetype row, std::size_t column) {
        return column == 0 ? u"Ürün %1"_s.arg(row + 1) : u"%1,50"_s.arg(row + 1);
    };
    return made;
}

PrintInfo info() {
    PrintInfo made;
    made.margins = {720, 720, 720, 720};
    return made;
}

QStringList rowLines(int first, int last) {
    QStringList lines;
    for (int row = first; row <= last; ++row)
        lines << u"Ürün %1 %1,50"_s.arg(row);
    return lines;
}

}  // namespace

Q_DECLARE_METATYPE(CountRow)
Q_DECLARE_METATYPE(RowsEndRow)
Q_DECLARE_METATYPE(BandRow)
Q_DECLARE_METATYPE(CellRow)
Q_DECLARE_METATYPE(MarginsRow)

class GridPagesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rowsEnd_data() {
        addRows<RowsEndRow>({{"none", {0, 0, 0}},
                             {"some", {3, 0, 3}},
                             {"a full page", {linesAPage - 1, 0, linesAPage - 1}},
                             {"the first of two", {linesAPage + 4, 0, linesAPage - 1}},
                             {"the rest", {linesAPage + 4, 1, 5}}});
    }
    void rowsEnd() {
        QFETCH(const RowsEndRow, row);
        PrintInfo stored = info();
        stored.repeatColumnHeaders = true;
        const GridPages pages(table(row.rows), stored, a4);
        // Half an inch of margin, the heading, and rows of a quarter of an inch.
        const double points = 36 + 18.0 * (1 + row.lines);
        QVERIFY(std::abs(pages.rowsEnd(row.page) * a4.height() - points) < 1);
    }

    void pageCounts_data() {
        addRows<CountRow>({
            {"no rows", {0, true, false, 1}},
            {"one", {1, true, false, 1}},
            {"a full page", {41, true, false, 1}},
            {"one more", {42, true, false, 2}},
            {"two full pages", {82, true, false, 2}},
            {"one more than two", {83, true, false, 3}},
            {"headings on the first page alone: a full page", {41, false, false, 1}},
            {"one more, without", {42, false, false, 2}},
            {"two full pages, without", {83, false, false, 2}},
            {"one more than two, without", {84, false, false, 3}},
            {"footers alone", {0, true, true, 1}},
            {"footers on the last line", {40, true, true, 1}},
            {"footers on a page of their own", {41, true, true, 2}},
            {"a million", {1000000, true, false, 24391}},
        });
    }
    void pageCounts() {
        QFETCH(const CountRow, row);
        PrintTable counted = table(row.rows);
        counted.text = [](qsizetype number, std::size_t) -> QString {
            if (number >= 50)  // the first ones tell how wide the columns have to be
                qFatal("no row is needed to count the pages");
            return {};
        };
        if (row.footers)
            counted.footers = {u"TOPLAM"_s, u"1,00"_s};
        PrintInfo around = info();
        around.repeatColumnHeaders = row.repeat;
        QCOMPARE(GridPages(counted, around, a4).pageCount(), row.pages);
    }

    void everyRowStandsOnce_data() {
        QTest::addColumn<bool>("repeat");
        QTest::newRow("headings on each page") << true;
        QTest::newRow("headings on the first") << false;
    }
    void everyRowStandsOnce() {
        QFETCH(const bool, repeat);
        PrintTable printed = table(90);
        printed.footers = {u"TOPLAM"_s, u"4.140,00"_s};
        PrintInfo around = info();
        around.repeatColumnHeaders = repeat;
        const QStringList headings{u"ÜRÜN ADI FİYAT"_s};
        const QStringList again = repeat ? headings : QStringList();
        const int second = linesAPage - 1 + (repeat ? linesAPage - 1 : linesAPage);
        QCOMPARE(
            pagesOf(write(GridPages(printed, around, a4))),
            (QList<QStringList>{headings + rowLines(1, linesAPage - 1), again + rowLines(linesAPage, second),
                                again + rowLines(second + 1, 90) + QStringList(u"TOPLAM 4.140,00"_s)}));
    }

    void headerAndFooterAreOnEachPage() {
        PrintInfo around = info();
        around.pageHeader = u"Rapor4 Mayıs"_s;
        around.pageFooter = u"ACME International Co.\\t\\tPage \\p of \\P"_s;
        const QList<QStringList> pages = pagesOf(write(GridPages(table(90), around, a4)));
        QCOMPARE(pages.size(), 3);
        for (int page = 0; page < pages.size(); ++page) {
            QCOMPARE(pages[page].first(), u"Rapor4 Mayıs"_s);
            QCOMPARE(pages[page].last(), u"ACME International Co. Page %1 of 3"_s.arg(page + 1));
        }
    }

    void bands_data() {
        const QString none;
        addRows<BandRow>({
            {"one part", {u"sol"_s, u"sol"_s, none, none}},
            {"three parts", {u"sol\\torta\\tsag"_s, u"sol"_s, u"orta"_s, u"sag"_s}},
            {"empty middle", {u"sol\\t\\tsag"_s, u"sol"_s, none, u"sag"_s}},
            {"right alone", {u"\\t\\tsag"_s, none, none, u"sag"_s}},
            {"a fourth part", {u"sol\\torta\\tsag\\tfazla"_s, u"sol"_s, u"orta"_s, u"sag"_s}},
            {"page numbers", {u"\\t\\t\\p/\\P"_s, none, none, u"1/1"_s}},
        });
    }
    void bands() {
        QFETCH(const BandRow, row);
        PrintInfo around = info();
        around.pageFooter = row.text;
        const QString file = write(GridPages(table(1), around, a4));
        const auto stands = [&](const QString& word, const auto& place, double where) {
            return word.isEmpty() || std::abs(place(placeOf(word, file)) - where) < 1;
        };
        QVERIFY(stands(
            row.left, [](const QRectF& at) { return at.left(); }, 36));
        QVERIFY(stands(
            row.middle, [](const QRectF& at) { return at.center().x(); }, a4.width() / 2));
        QVERIFY(stands(
            row.right, [](const QRectF& at) { return at.right(); }, a4.width() - 36));
        QVERIFY(placeOf(u"fazla"_s, file).isEmpty());
    }

    void longBandsDontMeet() {
        PrintInfo around = info();
        const QString words = u" sözcük"_s.repeated(15);
        around.pageHeader = u"sol"_s + words + u" orta\\t\\tsag"_s + words + u" son"_s;
        const QString file = write(GridPages(table(1), around, a4));
        QVERIFY(placeOf(u"sol"_s, file).left() >= 35);
        QVERIFY(placeOf(u"orta"_s, file).right() <= placeOf(u"sag"_s, file).left());
        QVERIFY(placeOf(u"son"_s, file).right() <= a4.width() - 35);
    }

    void cells_data() {
        const QString longWord(300, u'W');
        addRows<CellRow>({
            {"a name", {u"Çay & Şeker <1 kg>"_s, false, {u"Çay & Şeker <1 kg>"_s}}},
            {"letters that fonts join", {u"ofis fiyat"_s, false, {u"ofis fiyat"_s}}},
            {"a long name that has room",
             {u"Rize Bardak Poşet Çay 100'lü Ekonomik"_s,
              false,
              {u"Rize Bardak Poşet Çay 100'lü Ekonomik"_s}}},
            {"a line end", {u"bir\niki"_s, false, {u"bir iki"_s}}},
            {"a long number is whole",
             {u"123.456.789.012.345,67 TL."_s, true, {u"123.456.789.012.345,67 TL."_s}}},
            {"a longer one, too",
             {u"123.456.789.012.345.678.901.234.567,89 TL."_s,
              true,
              {u"123.456.789.012.345.678.901.234.567,89 TL."_s}}},
            {"markers stay text", {u"%1 \\p \\P \\t"_s, false, {u"%1 \\p \\P \\t"_s}}},
        });
    }
    void cells() {
        QFETCH(const CellRow, row);
        PrintTable printed;
        printed.columns = {{{}, 100, row.number, false}, {{}, 400, false, false}};
        printed.rowCount = 1;
        printed.text = [&row](qsizetype, std::size_t column) { return column == 0 ? row.text : QString(); };
        const QString file = write(GridPages(printed, info(), a4));
        QCOMPARE(pagesOf(file), QList<QStringList>{row.shown});
    }

    void aWordWithoutABlankStaysInItsColumn() {
        PrintTable printed;
        printed.columns = {{{}, 100, false, false}, {{}, 100, false, false}};
        printed.rowCount = 1;
        printed.text = [](qsizetype, std::size_t column) {
            return column == 0 ? QString(5000, u'W') : u"yanda"_s;
        };
        const QString file = write(GridPages(printed, info(), a4));
        const QStringList words = pagesOf(file).first().first().split(u' ');
        QVERIFY(words.first().startsWith(u"WWW"_s));
        QVERIFY(placeOf(words.first(), file).right() < placeOf(u"yanda"_s, file).left());
    }

    void columnsShareTheWidth() {
        const QString file = write(GridPages(table(1), info(), a4));
        QVERIFY(std::abs(placeOf(u"Ürün"_s, file).left() - 39) < 1);
        QVERIFY(std::abs(placeOf(u"1,50"_s, file).right() - (a4.width() - 39)) < 1);
    }

    // Where there is room for all, nothing shrinks and no name breaks, whatever the grid's widths.
    void columnsFollowWhatStandsInThem() {
        PrintTable printed = table(2);
        printed.columns[1].number = false;
        printed.columns[1].width = 1;
        printed.text = [](qsizetype, std::size_t column) {
            return column == 0 ? u"Renkli Plastik Bardak 250 cc 50'li"_s : u"05.05.2026"_s;
        };
        const QString file = write(GridPages(printed, info(), a4));
        QCOMPARE(placeOf(u"05.05.2026"_s, file).height(), placeOf(u"Renkli"_s, file).height());
        QCOMPARE(placeOf(u"250"_s, file).top(), placeOf(u"Renkli"_s, file).top());
    }

    // Else the widest gives way, which is a name's.
    void aLongNameGivesWay() {
        PrintTable printed = table(1);
        printed.columns[1].number = false;
        printed.text = [](qsizetype, std::size_t column) {
            return column == 0 ? u"Birinci "_s + u"Renkli Plastik Bardak "_s.repeated(6) + u"Sonuncu"_s
                               : u"05.05.2026 09:22:24"_s;
        };
        const QString file = write(GridPages(printed, info(), a4));
        QCOMPARE(placeOf(u"05.05.2026"_s, file).top(), placeOf(u"09:22:24"_s, file).top());
        QVERIFY(placeOf(u"Sonuncu"_s, file).top() > placeOf(u"Birinci"_s, file).bottom() - 1);
    }

    void aSumKeepsItsSize() {
        PrintTable printed = table(1);
        printed.columns[0].width = 900;
        printed.footers = {u"TOPLAM"_s, u"1.234.567.890,00"_s};
        const QString file = write(GridPages(printed, info(), a4));
        QCOMPARE(placeOf(u"1.234.567.890,00"_s, file).height(), placeOf(u"TOPLAM"_s, file).height());
        printed.footers[1] = QString(200, u'7');  // more than there is
        QCOMPARE(pagesOf(write(GridPages(printed, info(), a4))).size(), 1);
    }

    void margins_data() {
        addRows<MarginsRow>({
            {"none", {{}, 3}},
            {"half an inch", {{720, 720, 720, 720}, 39}},
            {"one inch at the left", {{1440, 0, 0, 0}, 75}},
            {"too wide", {{6000, 0, 6000, 0}, 3}},
            {"too high", {{720, 9000, 720, 9000}, 3}},
            {"below zero", {{-720, 0, 0, 0}, 3}},
        });
    }
    void margins() {
        QFETCH(const MarginsRow, row);
        PrintInfo around = info();
        around.margins = row.twips;
        const QString file = write(GridPages(table(1), around, a4));
        QVERIFY(std::abs(placeOf(u"Ürün"_s, file).left() - row.left) < 1);
    }

    void halfAnInchIsWhatAReportWorksOut() {
        constexpr double share = 0.5;
        constexpr double dots = 600;
        QCOMPARE(Printer::twipsPerPixelX() * share * dots, 720.0);
        QCOMPARE(Printer::twipsPerPixelY() * share * dots, 720.0);
    }

    void paperOfAnySize() {
        for (const QSizeF paper : {QSizeF(10, 10), QSizeF(227, 227), QSizeF(842, 595)}) {
            PrintInfo around = info();
            around.pageHeader = u"baş"_s;
            around.pageFooter = u"son"_s;
            const GridPages pages(table(5), around, paper);
            QVERIFY(pages.pageCount() >= 1 && pages.pageCount() <= 5);
            QCOMPARE(pagesOf(write(pages)).size(), pages.pageCount());
        }
    }

    void withoutColumns() {
        QCOMPARE(GridPages().pageCount(), 1);
        QCOMPARE(pagesOf(write(GridPages({}, info(), a4))), QList<QStringList>{{}});
    }

private:
    /// @return the file in which the pages stand
    QString write(const GridPages& pages) const {
        const QString file = m_folder.filePath(u"pages.pdf"_s);
        QPdfWriter writer(file);
        writer.setResolution(1200);
        writer.setPageLayout(
            QPageLayout(QPageSize(pages.paper(), QPageSize::Point), QPageLayout::Portrait, {}));
        QPainter painter(&writer);
        for (int page = 0; page < pages.pageCount(); ++page) {
            if (page > 0)
                writer.newPage();
            pages.paint(painter, page, writer.logicalDpiX());
        }
        return file;
    }

    QTemporaryDir m_folder;
};

QTEST_MAIN(GridPagesTest)
#include "test_gridpages.moc"
