#include "catalogue/urunbul.h"

#include <QApplication>
#include <QSignalSpy>
#include <memory>

#include "data/baglanmamodulu.h"
#include "runtests.h"
#include "runtime/screenregistry.h"
#include "salesfixture.h"
#include "widgets/adodc.h"
#include "widgets/tdbgrid.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct ChoiceRow {
    const char* name;
    QString target;  ///< what `nereye` holds
    QString barkod;  ///< of the sales screen, afterwards; "-" stood there before
    QString kisayolbarkod;
    QString hizliurunadi;
    int interval;  ///< of kontorsat, in milliseconds
};

}  // namespace

Q_DECLARE_METATYPE(ChoiceRow)

class TestUrunbul : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void opensFromTheSalesScreen();
    void subtractModeStays();
    void openedTwiceIsOneWindow();
    void choice_data();
    void choice();
    void choiceReachesTheTicketByTheTimer();
    void choiceOverwritesThePressedLine();
    void labelCodeIsntSplit();
    void choiceFromAFilteredList();
    void choiceFromAnEmptyList();
    void enterChooses();
    void scanIntoTheOpenList();
    void enterChoosesNothingWhileACellIsRefused();
    void activationShowsChanges();
    void openingReadsOnce();
    void activationKeepsEverything();
    void neverChangesTheProducts();
    void withoutADatabase();

private:
    urunbul& open();
    urunbul& finder() const { return screen<urunbul>(); }
    SalesControls& sales() const { return m_shop->ui(); }
    QPoint rowPoint(int row) const;
    void choose(int row) const;
    void type(int column, const QString& text) const;
    QStringList names() const;

    std::unique_ptr<SalesFixture> m_shop;
};

void TestUrunbul::init() {
    m_shop = std::make_unique<SalesFixture>();
}

void TestUrunbul::cleanup() {
    QVERIFY(allAnswered(m_shop->boxes));
    m_shop.reset();
}

urunbul& TestUrunbul::open() {
    QTest::mouseClick(sales().urunbulmak, Qt::LeftButton);
    finder().resize(1024, 768);
    if (!QTest::qWaitFor([this] { return finder().isActiveWindow(); }))
        qFatal("the finder doesn't become active");
    return finder();
}

QPoint TestUrunbul::rowPoint(int row) const {
    TDBGrid& grid = *finder().ui.TDBGrid1;
    return grid.visualRect(grid.model()->index(row, 2)).center();
}

void TestUrunbul::choose(int row) const {
    QWidget* rows = finder().ui.TDBGrid1->viewport();
    QTest::mouseClick(rows, Qt::LeftButton, {}, rowPoint(row));
    QTest::mouseDClick(rows, Qt::LeftButton, {}, rowPoint(row));
}

void TestUrunbul::type(int column, const QString& text) const {
    auto* cell = finder().findChild<QLineEdit*>(u"TDBGrid1_filter_%1"_s.arg(column));
    cell->setFocus();
    m_shop->type(text);
}

QStringList TestUrunbul::names() const {
    QStringList names;
    const QAbstractItemModel& rows = *finder().ui.TDBGrid1->model();
    for (int row = 0; row < rows.rowCount(); ++row)
        names << rows.index(row, 2).data().toString();
    return names;
}

void TestUrunbul::opensFromTheSalesScreen() {
    open();
    QCOMPARE(finder().windowTitle(), u"URUN ARA"_s);
    QCOMPARE(finder().ui.vkFrame1->caption(), u"ÜRÜN ARA"_s);
    QCOMPARE(finder().ui.nereye->text(), u"1"_s);
    QVERIFY(finder().ui.TDBGrid1->hasFocus());
    const TDBGrid& grid = *finder().ui.TDBGrid1;
    QStringList captions;
    for (int i = 0; i < grid.columnCount(); ++i)
        captions << grid.columnCaption(i);
    QCOMPARE(captions, (QStringList{u"no"_s, u"BARKOD"_s, u"ÜRÜN ADI"_s, u"FİYAT"_s}));
    QCOMPARE(grid.model()->index(2, 3).data().toString(), u"1.234,50 "_s);
    QCOMPARE(finder().ui.vkFrame1->titleNote(), u"5 ürün"_s);
}

void TestUrunbul::subtractModeStays() {
    m_shop->sales().eksiltme = 1;
    open();
    QCOMPARE(m_shop->sales().eksiltme, 1);
}

void TestUrunbul::openedTwiceIsOneWindow() {
    const urunbul* first = &open();
    finder().ui.nereye->setText(u"2"_s);
    QCOMPARE(&open(), first);
    QCOMPARE(finder().ui.nereye->text(), u"1"_s);
}

void TestUrunbul::choice_data() {
    const QString milk = goods::milk;
    const QString stays = u"-"_s;
    QTest::addColumn<ChoiceRow>("row");
    for (const ChoiceRow& row : QList<ChoiceRow>{
             {"onto the ticket", u"1"_s, milk, stays, stays, 100},
             {"into the quick button's set-up", u"2"_s, stays, milk, u"Tam Yağlı Süt 1 L"_s, 0},
             {"three does nothing", u"3"_s, stays, stays, stays, 0},
             {"nor does any other", u"11"_s, stays, stays, stays, 0},
             {"nor does none", u""_s, stays, stays, stays, 0},
             {"nor one with a blank", u"1 "_s, stays, stays, stays, 0},
         })
        QTest::newRow(row.name) << row;
}

void TestUrunbul::choice() {
    QFETCH(const ChoiceRow, row);
    open();
    for (QLineEdit* field : {sales().barkod, sales().kisayolbarkod, sales().hizliurunadi})
        field->setText(u"-"_s);
    finder().ui.nereye->setText(row.target);
    choose(1);
    QCOMPARE(sales().barkod->text(), row.barkod);
    QCOMPARE(sales().kisayolbarkod->text(), row.kisayolbarkod);
    QCOMPARE(sales().hizliurunadi->text(), row.hizliurunadi);
    QCOMPARE(m_shop->sales().kontorsat.interval(), row.interval);
    QVERIFY(!loaded<urunbul>());
    m_shop->sales().kontorsat.setInterval(0);
    QTRY_VERIFY(sales().barkod->hasFocus());
}

void TestUrunbul::choiceReachesTheTicketByTheTimer() {
    open();
    choose(1);
    QCOMPARE(m_shop->lines(), 0);
    QTRY_COMPARE(m_shop->lines(), 1);
    QCOMPARE(m_shop->line(1),
             (QStringList{goods::milk, u"Tam Yağlı Süt 1 L"_s, u"1"_s, u"32,50"_s, u"32,50"_s}));
    QCOMPARE(m_shop->sales().kontorsat.interval(), 0);  // it fires once
}

void TestUrunbul::choiceOverwritesThePressedLine() {
    m_shop->scan(goods::bread);
    sales().satisekrani1->setRow(1);
    open();
    choose(1);
    QTRY_COMPARE(m_shop->line(1).first(), goods::milk);  // the line that was pressed, and no new one
}

void TestUrunbul::labelCodeIsntSplit() {
    m_shop->addProduct(u"2700121234567"_s, u"Etiket gibi"_s, 1, 2);
    open();
    choose(5);
    QTRY_COMPARE(m_shop->lines(), 1);
    QCOMPARE(m_shop->line(1).first(), u"2700121234567"_s);
}

void TestUrunbul::choiceFromAFilteredList() {
    open();
    type(2, u"süt"_s);
    QCOMPARE(names(), QStringList{u"Tam Yağlı Süt 1 L"_s});
    choose(0);
    QCOMPARE(sales().barkod->text(), goods::milk);
    m_shop->sales().kontorsat.setInterval(0);
}

void TestUrunbul::choiceFromAnEmptyList() {
    m_shop->run(u"DELETE FROM urunler"_s);
    open();
    sales().barkod->setText(u"-"_s);
    QTest::mouseDClick(finder().ui.TDBGrid1->viewport(), Qt::LeftButton, {}, QPoint(200, 100));
    QCOMPARE(sales().barkod->text(), QString());
    QVERIFY(!loaded<urunbul>());
    m_shop->sales().kontorsat.setInterval(0);
}

void TestUrunbul::enterChooses() {
    open();
    m_shop->key(Qt::Key_Down);
    m_shop->key(Qt::Key_Return);
    QVERIFY(!loaded<urunbul>());
    QCOMPARE(sales().barkod->text(), goods::milk);
    m_shop->sales().kontorsat.setInterval(0);
}

void TestUrunbul::scanIntoTheOpenList() {
    open();
    m_shop->type(goods::tea);
    QCOMPARE(names(), QStringList{u"Çay Bahçesi 5 kg"_s});
    m_shop->key(Qt::Key_Return);
    QTRY_COMPARE(m_shop->lines(), 1);
    QCOMPARE(m_shop->line(1).first(), goods::tea);
}

void TestUrunbul::enterChoosesNothingWhileACellIsRefused() {
    open();
    type(2, u"süt"_s);
    type(3, u"abc"_s);
    QCOMPARE(names().size(), 1);
    m_shop->key(Qt::Key_Return);
    QVERIFY(loaded<urunbul>());
    QCOMPARE(sales().barkod->text(), QString());
}

void TestUrunbul::activationShowsChanges() {
    open();
    m_shop->addProduct(u"42"_s, u"Yeni gelen"_s, 1, 2);
    QCOMPARE(names().size(), 5);
    finder().form_activate();
    QCOMPARE(names().last(), u"Yeni gelen"_s);
}

void TestUrunbul::openingReadsOnce() {
    // Loaded, but not shown: the activation is still to come.
    urunbul& loadedScreen = screen<urunbul>();
    QSignalSpy reads(loadedScreen.ui.Adodc2, &Adodc::rowsChanged);
    loadedScreen.form_activate();
    QCOMPARE(reads.count(), 0);
    m_shop->addProduct(u"42"_s, u"Yeni gelen"_s, 1, 2);
    loadedScreen.form_activate();
    QCOMPARE(reads.count(), 1);
}

void TestUrunbul::activationKeepsEverything() {
    open();
    const QRect heading = finder().ui.TDBGrid1->headingRect(2);
    QWidget* bar = finder().ui.TDBGrid1->childAt(heading.center());
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->mapFrom(finder().ui.TDBGrid1, heading.center()));
    type(1, u"869"_s);
    const QStringList before{u"Çay Bahçesi 5 kg"_s, u"Köy Ekmeği"_s, u"Poşet"_s, u"Tam Yağlı Süt 1 L"_s};
    QCOMPARE(names(), before);
    m_shop->addProduct(u"0099"_s, u"Ayran"_s, 1, 2);
    m_shop->addProduct(u"8691"_s, u"Zeytin"_s, 1, 2);
    finder().form_activate();
    QCOMPARE(names(), before + QStringList{u"Zeytin"_s});
}

void TestUrunbul::neverChangesTheProducts() {
    const QList<QVariantList> before = m_shop->rows(u"SELECT * FROM urunler"_s);
    open();
    for (int column = 0; column < 4; ++column)
        type(column, u"12,5' OR 1=1 --"_s);
    m_shop->key(Qt::Key_Delete);
    m_shop->key(Qt::Key_Escape);
    finder().form_activate();
    finder().ui.vkCommand4->click();
    QCOMPARE(m_shop->rows(u"SELECT * FROM urunler"_s), before);
}

void TestUrunbul::withoutADatabase() {
    m_shop->run(u"ALTER TABLE urunler RENAME TO gone"_s);
    open();  // says nothing
    QCOMPARE(names(), QStringList());
    finder().ui.vkCommand4->click();
    QVERIFY(!loaded<urunbul>());
    m_shop->run(u"ALTER TABLE gone RENAME TO urunler"_s);
}

int main(int argc, char** argv) {
    return runTests<TestUrunbul>(argc, argv);
}

#include "test_urunbul.moc"
