#include "screens/listscreen.h"

#include <QPushButton>
#include <memory>

#include "app/modTurkce.h"
#include "barelist.h"
#include "desktop/focus.h"
#include "runtests.h"
#include "runtime/attempt.h"
#include "runtime/screenregistry.h"
#include "shopfixture.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

/// What the screen under test differs in; set before it is loaded.
ListTraits traits;

const ListTraits& products() {
    static const ListTraits stored{
        .source = u"urunler"_s,
        .columns = {{u"NO"_s, u"no"_s, {}, 114},
                    {u"BARKOD"_s, u"barkod"_s, {}, 158},
                    {u"~R~N ADI"_s, u"urun"_s, {}, 292},
                    {u"ALI@ F!YAT"_s, u"alis"_s, u"#,##0.00"_s, 140},
                    {u"SATI@ F!YATI"_s, u"satis"_s, u"#,##0.00"_s, 150},
                    {u"STOK"_s, u"stok"_s, {}, 50}},
        .selection = onClick | onDoubleClick | onMove | onRelease,
        .filter = {{u"alis"_s, u"satis"_s, u"stok"_s}, {}},
        .focusesToSort = true,
        .scanField = u"barkod"_s,
        .nameField = u"urun"_s,
        .unit = u"ürün"_s,
        .icon = {},
        .noneYet = u"Henüz ürün yok"_s,
        .noneYetHint = u"EKLE’ye dokunun"_s,
    };
    return stored;
}

/// A list screen with a field below its list.
class List : public BareList {
public:
    List() : BareList(traits) { frame.layout()->addWidget(&other); }

    void form_load() override {
        connectData();
        showRows();
        storeWidths();
        ekrandonat(*this);
        grid.setFocus();
    }

    QLineEdit other;
};

enum class Act { click, doubleClick, press, move, release, key };

struct SelectionRow {
    const char* name;
    unsigned selection;
    Act act;
    QString selected;  ///< what the hidden box holds afterwards; "-" stood there before
};

struct FilterRow {
    const char* name;
    QStringList cells;  ///< what is typed, from the first column on
    QList<int> shown;   ///< the numbers of the rows
};

struct RefusedRow {
    const char* name;
    QStringList cells;
    QList<int> refused;  ///< columns whose cell says that it isn't in force
};

struct SizeRow {
    const char* name;
    QSize size;
};

}  // namespace

Q_DECLARE_METATYPE(SelectionRow)
Q_DECLARE_METATYPE(FilterRow)
Q_DECLARE_METATYPE(RefusedRow)
Q_DECLARE_METATYPE(SizeRow)

class TestListScreen : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void headings();
    void count();
    void emptyList();
    void selection_data();
    void selection();
    void programsChangesCopyNothing();
    void sortByHeadings();
    void sortFocus_data();
    void sortFocus();
    void sortStepsOneCellRight();
    void sortOfNumbersAndNames();
    void filters_data();
    void filters();
    void refused_data();
    void refused();
    void refusedUntilMended();
    void refusedCellsSayWhatIsNotInForce();
    void askedBeforeTheRowsCame();
    void filterThatGoesWithItsColumn();
    void clearingGivesAllRows();
    void typingGoesOnInTheCell();
    void filterIsntAskedOfTheDatabase();
    void everythingSurvivesReading();
    void rowDeletedElsewhere();
    void widthsFollow_data();
    void widthsFollow();

private:
    List& open();
    List& list() const { return screen<List>(); }
    TDBGrid& grid() const { return list().grid; }
    QLineEdit& cell(int column) const;
    void type(int column, const QString& text) const;
    void pressHeading(int column) const;
    QList<int> shown() const;
    QPoint rowPoint(int row) const;

    std::unique_ptr<ShopFixture> m_shop;
};

void TestListScreen::init() {
    traits = products();
    m_shop = std::make_unique<ShopFixture>();
    m_shop->openShop();
    m_shop->addProduct(u"8690000000012"_s, u"Köy Ekmeği"_s, 7, 10);
    m_shop->addProduct(u"8690000000029"_s, u"Tam Yağlı Süt 1 L"_s, 25, 32.5);
    m_shop->addProduct(u"8690000000036"_s, u"ÇAY BAHÇESİ 5 KG"_s, 1000, 1234.5);
    m_shop->addProduct(u"8690000000043"_s, u"%50 kakao"_s, 0, 12.5);
    m_shop->addProduct(u"0012"_s, u"Ilık_Domates [kg]"_s, 30, 12, 100.0);
}

void TestListScreen::cleanup() {
    m_shop.reset();
}

List& TestListScreen::open() {
    showInFront(list());
    list().resize(1024, 768);
    if (!QTest::qWaitForWindowActive(&list()))
        qFatal("the list doesn't become active");
    QCoreApplication::processEvents();
    return list();
}

QLineEdit& TestListScreen::cell(int column) const {
    return *list().findChild<QLineEdit*>(u"TDBGrid1_filter_%1"_s.arg(column));
}

void TestListScreen::type(int column, const QString& text) const {
    cell(column).setFocus();
    cell(column).selectAll();
    if (text.isEmpty())
        QTest::keyClick(&cell(column), Qt::Key_Delete);
    for (const QChar character : text)
        QTest::sendKeyEvent(QTest::Click, &cell(column), Qt::Key_unknown, QString(character), Qt::NoModifier);
}

void TestListScreen::pressHeading(int column) const {
    const QPoint place = grid().headingRect(column).center();
    QWidget* heading = grid().childAt(place);
    QTest::mouseClick(heading, Qt::LeftButton, {}, heading->mapFrom(&grid(), place));
    QCoreApplication::sendPostedEvents();  // the key that steps one cell on
}

QList<int> TestListScreen::shown() const {
    QList<int> numbers;
    const QAbstractItemModel& rows = *grid().model();
    for (int row = 0; row < rows.rowCount(); ++row)
        numbers.append(rows.index(row, 0).data().toInt());
    return numbers;
}

QPoint TestListScreen::rowPoint(int row) const {
    return grid().visualRect(grid().model()->index(row, 2)).center();
}

void TestListScreen::headings() {
    open();
    QStringList captions;
    for (int i = 0; i < grid().columnCount(); ++i)
        captions << grid().columnCaption(i);
    QCOMPARE(captions, (QStringList{u"NO"_s, u"BARKOD"_s, u"ÜRÜN ADI"_s, u"ALIŞ FİYAT"_s, u"SATIŞ FİYATI"_s,
                                    u"STOK"_s}));
    QCOMPARE(shown(), (QList<int>{1, 2, 3, 4, 5}));
    QCOMPARE(grid().model()->index(2, 4).data().toString(), u"1.234,50"_s);
    QCOMPARE(cell(2).accessibleName(), u"ÜRÜN ADI"_s);
}

void TestListScreen::count() {
    open();
    QCOMPARE(list().frame.titleNote(), u"5 ürün"_s);
    type(2, u"süt"_s);
    QCOMPARE(list().frame.titleNote(), u"1 / 5 ürün"_s);
    type(2, u""_s);
    QCOMPARE(list().frame.titleNote(), u"5 ürün"_s);
    m_shop->run(
        u"INSERT INTO urunler (urun) WITH RECURSIVE n(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM n "
        u"WHERE i < 1000) SELECT 'x' FROM n"_s);
    list().showRows();
    QCOMPARE(list().frame.titleNote(), u"1.005 ürün"_s);
}

void TestListScreen::emptyList() {
    m_shop->run(u"DELETE FROM urunler"_s);
    open();
    QCOMPARE(shown(), QList<int>());
    QCOMPARE(list().frame.titleNote(), u"0 ürün"_s);
    pressHeading(2);
    type(2, u"x"_s);
    QCOMPARE(list().frame.titleNote(), u"0 / 0 ürün"_s);
    QTest::mouseClick(grid().viewport(), Qt::LeftButton, {}, QPoint(200, 20));
    QCOMPARE(list().selected.text(), QString());
}

void TestListScreen::selection_data() {
    const unsigned products = onClick | onDoubleClick | onMove | onRelease;
    const unsigned customers = products | onPress;
    QTest::addColumn<SelectionRow>("row");
    for (const SelectionRow& row : QList<SelectionRow>{
             {"click", onClick, Act::click, u"2"_s},
             {"double click", onDoubleClick, Act::doubleClick, u"2"_s},
             // A press may be the start of scrolling: it doesn't choose yet, and copies the row of before.
             {"press where it copies", onPress, Act::press, u"1"_s},
             {"press where it doesn't", products, Act::press, u"-"_s},
             {"press among the customers", customers, Act::press, u"1"_s},
             {"move", onMove, Act::move, u"1"_s},
             {"move where it doesn't", onClick, Act::move, u"-"_s},
             {"release", onRelease, Act::release, u"2"_s},
             {"another row by key counts as a click", onClick, Act::key, u"2"_s},
             {"by key where a click doesn't copy", onMove, Act::key, u"-"_s},
             {"nothing copies", 0, Act::doubleClick, u"-"_s},
         })
        QTest::newRow(row.name) << row;
}

void TestListScreen::selection() {
    QFETCH(const SelectionRow, row);
    traits.selection = row.selection;
    open();
    list().selected.setText(u"-"_s);
    QWidget* rows = grid().viewport();
    QMouseEvent move(QEvent::MouseMove, rowPoint(1), rows->mapToGlobal(rowPoint(1)), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    switch (row.act) {
        case Act::click:
            QTest::mouseClick(rows, Qt::LeftButton, {}, rowPoint(1));
            break;
        case Act::doubleClick:
            QTest::mouseClick(rows, Qt::LeftButton, {}, rowPoint(1));
            QTest::mouseDClick(rows, Qt::LeftButton, {}, rowPoint(1));
            break;
        case Act::press:
            QTest::mousePress(rows, Qt::LeftButton, {}, rowPoint(1));
            break;
        case Act::move:
            // The pointer is above the second row; what is copied is the current one.
            grid().setCurrentIndex(grid().model()->index(0, 0));
            list().selected.setText(u"-"_s);
            QCoreApplication::sendEvent(rows, &move);
            break;
        case Act::release:
            QTest::mousePress(rows, Qt::LeftButton, {}, rowPoint(1));
            list().selected.setText(u"-"_s);
            QTest::mouseRelease(rows, Qt::LeftButton, {}, rowPoint(1));
            break;
        case Act::key:
            grid().setCurrentIndex(grid().model()->index(0, 0));
            list().selected.setText(u"-"_s);
            QTest::keyClick(&grid(), Qt::Key_Down);
            break;
    }
    QCOMPARE(list().selected.text(), row.selected);
}

void TestListScreen::programsChangesCopyNothing() {
    open();
    QTest::mouseClick(grid().viewport(), Qt::LeftButton, {}, rowPoint(1));
    list().selected.setText(u"-"_s);
    pressHeading(2);
    type(2, u"süt"_s);
    list().showRows();
    type(2, u""_s);
    QCOMPARE(list().selected.text(), u"-"_s);
}

void TestListScreen::sortByHeadings() {
    open();
    QList<QList<int>> orders;
    for (const int column : {0, 0, 2, 2, 4}) {
        pressHeading(column);
        orders << shown();
    }
    // no ASC, no DESC, urun ASC, urun DESC, satis ASC: the direction runs on across the columns.
    QCOMPARE(orders,
             (QList<QList<int>>{
                 {1, 2, 3, 4, 5}, {5, 4, 3, 2, 1}, {4, 3, 5, 1, 2}, {2, 1, 5, 3, 4}, {1, 5, 4, 2, 3}}));
}

void TestListScreen::sortFocus_data() {
    QTest::addColumn<bool>("focuses");
    QTest::newRow("gives the grid the focus") << true;
    QTest::newRow("leaves the focus where it is") << false;
}

void TestListScreen::sortFocus() {
    QFETCH(const bool, focuses);
    traits.focusesToSort = focuses;
    open();
    list().other.setFocus();
    pressHeading(1);
    QCOMPARE(grid().hasFocus(), focuses);
    QCOMPARE(list().other.hasFocus(), !focuses);
}

void TestListScreen::sortStepsOneCellRight() {
    open();
    grid().setCol(1);
    pressHeading(4);
    QCOMPARE(grid().col(), 2);
    pressHeading(4);
    QCOMPARE(grid().col(), 3);
}

void TestListScreen::sortOfNumbersAndNames() {
    m_shop->run(
        u"INSERT INTO urunler (barkod, urun, satis) VALUES ('9', NULL, NULL), ('10', '', 2), ('11', 'ılık', 100)"_s);
    open();
    pressHeading(2);  // empty first, ı before i, case ignored: Ilık_Domates before and ılık
    QCOMPARE(shown(), (QList<int>{6, 7, 4, 3, 8, 5, 1, 2}));
    pressHeading(2);
    pressHeading(4);  // a new column after DESC: numbers as numbers, none first
    QCOMPARE(shown(), (QList<int>{6, 7, 1, 5, 4, 2, 8, 3}));
}

void TestListScreen::filters_data() {
    const QString none;
    QTest::addColumn<FilterRow>("row");
    for (const FilterRow& row : QList<FilterRow>{
             {"part of a name", {none, none, u"süt"_s}, {2}},
             {"in capitals", {none, none, u"SÜT"_s}, {2}},
             {"dotless i", {none, none, u"ılık"_s}, {5}},
             {"dotless i in capitals", {none, none, u"ILIK"_s}, {5}},
             {"an i that is another letter", {none, none, u"ilik"_s}, {}},
             {"İ against i", {none, none, u"bahçesi"_s}, {3}},
             {"percent sign is itself", {none, none, u"%"_s}, {4}},
             {"underscore is itself", {none, none, u"_"_s}, {5}},
             {"bracket is itself", {none, none, u"["_s}, {5}},
             {"apostrophe", {none, none, u"'"_s}, {}},
             {"blank inside", {none, none, u" y"_s}, {2}},
             {"blanks alone", {none, none, u"  "_s}, {1, 2, 3, 4, 5}},
             {"part of a barcode", {none, u"00000"_s}, {1, 2, 3, 4}},
             {"digits of the number", {u"1"_s}, {1}},
             {"a price with a comma", {none, none, none, none, u"12,5"_s}, {4}},
             {"a price with another nought", {none, none, none, none, u"12,50"_s}, {4}},
             {"12 doesn't find 12,50", {none, none, none, none, u"12"_s}, {5}},
             {"a comma behind", {none, none, none, none, u"12,"_s}, {5}},
             {"a number matches whole", {none, none, none, none, u"1234"_s}, {}},
             {"stock", {none, none, none, none, none, u"100"_s}, {5}},
             {"two cells", {none, u"869"_s, u"k"_s}, {1, 3, 4}},
             {"two cells that contradict", {none, u"0012"_s, u"süt"_s}, {}},
         })
        QTest::newRow(row.name) << row;
}

void TestListScreen::filters() {
    QFETCH(const FilterRow, row);
    open();
    for (int column = 0; column < row.cells.size(); ++column)
        type(column, row.cells[column]);
    QCOMPARE(shown(), row.shown);
}

void TestListScreen::refused_data() {
    const QString none;
    QTest::addColumn<RefusedRow>("row");
    for (const RefusedRow& row : QList<RefusedRow>{
             {"letters", {none, none, none, none, u"abc"_s}, {4}},
             {"comma alone", {none, none, none, none, u","_s}, {4}},
             {"grouped", {none, none, none, none, u"1.234,50"_s}, {4}},
             {"wildcard", {none, none, none, none, u"5%"_s}, {4}},
             {"two of them", {none, none, none, u"x"_s, u"y"_s}, {3, 4}},
             {"beside a name that is found", {none, none, u"süt"_s, none, u"abc"_s}, {4}},
             {"a text is never refused", {u"abc"_s, u"'"_s, u"[%_]"_s}, {}},
         })
        QTest::newRow(row.name) << row;
}

void TestListScreen::refused() {
    QFETCH(const RefusedRow, row);
    open();
    for (int column = 0; column < row.cells.size(); ++column)
        type(column, row.cells[column]);
    QList<int> refused;
    for (int column = 0; column < grid().columnCount(); ++column) {
        if (grid().isFilterRefused(column))
            refused << column;
    }
    QCOMPARE(refused, row.refused);
}

void TestListScreen::refusedUntilMended() {
    open();
    type(2, u"süt"_s);
    type(4, u"32,5,"_s);  // "3", "32", "32," and "32,5" are numbers; the last comma makes it none
    QVERIFY(grid().isFilterRefused(4));
    QCOMPARE(shown(), QList<int>{2});  // "32,5" is still in force
    QTest::keyClick(&cell(4), Qt::Key_Backspace);
    QVERIFY(!grid().isFilterRefused(4));
    QCOMPARE(shown(), QList<int>{2});
}

void TestListScreen::refusedCellsSayWhatIsNotInForce() {
    open();
    type(2, u"süt"_s);
    type(4, u"abc"_s);
    QCOMPARE(shown(), QList<int>{2});
    type(1, u"  "_s);  // asks for nothing
    QVERIFY(!grid().isFilterRefused(1));
    // The name is given up, but its filter goes on until the price is mended.
    type(2, u""_s);
    QCOMPARE(shown(), QList<int>{2});
    QVERIFY(grid().isFilterRefused(2));
    QVERIFY(grid().isFilterRefused(4));
    type(4, u""_s);
    QCOMPARE(shown(), (QList<int>{1, 2, 3, 4, 5}));
    QVERIFY(!grid().isFilterRefused(2));
    QVERIFY(!grid().isFilterRefused(4));
}

void TestListScreen::askedBeforeTheRowsCame() {
    m_shop->run(u"ALTER TABLE urunler RENAME TO gone"_s);
    open();
    type(1, u"86"_s);
    pressHeading(4);
    QVERIFY(grid().isFilterRefused(1));
    QCOMPARE(grid().sortColumn(), -1);
    m_shop->run(u"ALTER TABLE gone RENAME TO urunler"_s);
    list().showRows();
    QCOMPARE(shown(), (QList<int>{1, 4, 2, 3}));
    QVERIFY(!grid().isFilterRefused(1));
    QCOMPARE(grid().sortColumn(), 4);
    m_shop->run(u"ALTER TABLE urunler RENAME TO gone"_s);
    list().showRows();  // says nothing, and keeps what it shows
    QCOMPARE(shown(), (QList<int>{1, 4, 2, 3}));
}

void TestListScreen::filterThatGoesWithItsColumn() {
    open();
    type(4, u"12,5"_s);
    QCOMPARE(shown(), QList<int>{4});
    m_shop->run(u"ALTER TABLE urunler RENAME COLUMN satis TO gone"_s);
    list().showRows();
    QCOMPARE(shown(), (QList<int>{1, 2, 3, 4, 5}));
    QVERIFY(grid().isFilterRefused(4));
    m_shop->run(u"ALTER TABLE urunler RENAME COLUMN gone TO satis"_s);
    list().showRows();
    QCOMPARE(shown(), QList<int>{4});
    QVERIFY(!grid().isFilterRefused(4));
}

void TestListScreen::clearingGivesAllRows() {
    open();
    type(1, u"869"_s);
    type(2, u"süt"_s);
    type(1, u""_s);
    QCOMPARE(shown(), QList<int>{2});
    type(2, u""_s);
    QCOMPARE(shown(), (QList<int>{1, 2, 3, 4, 5}));
}

void TestListScreen::typingGoesOnInTheCell() {
    open();
    cell(2).setFocus();
    for (const QChar letter : u"köy"_s) {
        QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), Qt::Key_unknown, QString(letter),
                            Qt::NoModifier);
        QVERIFY(cell(2).hasFocus());
    }
    QCOMPARE(cell(2).text(), u"köy"_s);
    // In the middle of the text, too.
    cell(2).setCursorPosition(1);
    QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), Qt::Key_unknown, u"x"_s, Qt::NoModifier);
    QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), Qt::Key_unknown, u"y"_s, Qt::NoModifier);
    QCOMPARE(cell(2).text(), u"kxyöy"_s);
}

void TestListScreen::filterIsntAskedOfTheDatabase() {
    open();
    m_shop->addProduct(u"77"_s, u"Sonradan gelen süt"_s, 1, 2);
    type(2, u"süt"_s);
    pressHeading(2);
    QCOMPARE(shown(), QList<int>{2});
    list().showRows();
    QCOMPARE(shown(), (QList<int>{6, 2}));
}

void TestListScreen::everythingSurvivesReading() {
    open();
    pressHeading(2);
    pressHeading(2);  // urun DESC
    type(1, u"869"_s);
    QCOMPARE(shown(), (QList<int>{2, 1, 3, 4}));
    QTest::mouseClick(grid().viewport(), Qt::LeftButton, {}, rowPoint(2));
    m_shop->run(u"DELETE FROM urunler WHERE no = 2"_s);
    m_shop->addProduct(u"8699"_s, u"Zeytin"_s, 1, 2);
    list().showRows();
    QCOMPARE(shown(), (QList<int>{6, 1, 3, 4}));
    QCOMPARE(cell(1).text(), u"869"_s);
    QCOMPARE(grid().column(0).value(), u"3"_s);
}

void TestListScreen::rowDeletedElsewhere() {
    open();
    QTest::mouseClick(grid().viewport(), Qt::LeftButton, {}, rowPoint(1));
    m_shop->run(u"DELETE FROM urunler WHERE no = 2"_s);
    QCOMPARE(grid().column(1).value(), u"8690000000029"_s);  // what the list shows
    list().showRows();
    QCOMPARE(shown(), (QList<int>{1, 3, 4, 5}));
    list().selected.setText(u"-"_s);
    QTest::mouseClick(grid().viewport(), Qt::LeftButton, {}, rowPoint(1));
    QCOMPARE(list().selected.text(), u"3"_s);
}

void TestListScreen::widthsFollow_data() {
    QTest::addColumn<SizeRow>("row");
    for (const SizeRow& row : QList<SizeRow>{{"800x600", {800, 600}},
                                             {"1024x768", {1024, 768}},
                                             {"wider at the same height", {1366, 768}},
                                             {"1920x1080", {1920, 1080}}})
        QTest::newRow(row.name) << row;
}

void TestListScreen::widthsFollow() {
    QFETCH(const SizeRow, row);
    open();
    constexpr int before = 1024 - 2 * 8;  // at the design size
    list().resize(row.size);
    QCoreApplication::processEvents();
    const double change = (grid().width() - before) / 4.0;  // six columns: their last index less one
    QCOMPARE(grid().column(0).width(), 114);
    QCOMPARE(grid().column(1).width(), qRound(158 + change));
    QCOMPARE(grid().column(4).width(), qRound(150 + change));
    QCOMPARE(grid().column(5).width(), qRound(50 + change));
    list().resize(1024, 768);
    QCoreApplication::processEvents();
    QCOMPARE(grid().column(5).width(), 50);
}

int main(int argc, char** argv) {
    return runTests<TestListScreen>(argc, argv);
}

#include "test_listscreen.moc"
