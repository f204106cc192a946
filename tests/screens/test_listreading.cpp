#include <memory>

#include "../platform/widgets/paintcounter.h"
#include "barelist.h"
#include "runtests.h"
#include "shopfixture.h"

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const ListTraits products{
    .source = u"urunler"_s,
    .columns = {{u"NO"_s, u"no"_s, {}, 114}, {u"BARKOD"_s, u"barkod"_s, {}, 158}},
    .filter = {},
    .scanField = {},
    .nameField = {},
    .unit = u"ürün"_s,
    .icon = {},
    .noneYet = {},
    .noneYetHint = {},
};

/// A list screen whose reading takes as long as it is told.
class List : public BareList {
public:
    List() : BareList(products) {}

    std::chrono::milliseconds taken = 1h;

private:
    std::chrono::milliseconds readingTime() const override { return taken; }
};

/// The progress at each painting of a frame, and what happens at the first.
class Watcher : public QObject {
public:
    explicit Watcher(vkFrame& frame) : m_frame(frame) { frame.installEventFilter(this); }

    QList<double> shares;
    std::function<void()> atFirst;

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint && m_frame.progress()) {
            shares.append(*m_frame.progress());
            if (const auto step = std::exchange(atFirst, {}))
                step();
        }
        return false;
    }

private:
    vkFrame& m_frame;
};

}  // namespace

class TestListReading : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void growsWithTheRows();
    void aShortReadPaintsNothing();
    void isGoneWhereTheReadFails();

private:
    void add(int rows) const;

    std::unique_ptr<ShopFixture> m_shop;
    std::unique_ptr<List> m_list;
};

void TestListReading::init() {
    m_shop = std::make_unique<ShopFixture>();
    m_shop->openShop();
    m_shop->addProduct(u"8690000000012"_s, u"Köy Ekmeği"_s, 7, 10);
    m_list = std::make_unique<List>();
    m_list->connectData();
    m_list->showRows();
    m_list->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_list.get()));
    QCoreApplication::processEvents();
}

void TestListReading::cleanup() {
    m_list.reset();
    m_shop.reset();
}

void TestListReading::add(int rows) const {
    m_shop->run(
        u"INSERT INTO urunler (barkod) WITH RECURSIVE n(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM n WHERE i < %1) SELECT i FROM n"_s
            .arg(rows));
}

void TestListReading::growsWithTheRows() {
    add(79999);
    Watcher watcher(m_list->frame);
    int shownMeanwhile = 0;
    watcher.atFirst = [&] { shownMeanwhile = m_list->grid.model()->rowCount(); };
    m_list->showRows();
    QCOMPARE(watcher.shares, (QList<double>{0.25, 0.5, 0.75, 1.0}));
    QCOMPARE(shownMeanwhile, 1);  // the rows of before, until the new ones stand
    QCOMPARE(m_list->grid.model()->rowCount(), 80000);
    QVERIFY(!m_list->frame.progress());
}

void TestListReading::aShortReadPaintsNothing() {
    add(40000);
    m_list->taken = 149ms;
    PaintCounter paintings(m_list->frame);
    m_list->showRows();
    QCOMPARE(paintings.count(), 0);
    QCOMPARE(m_list->grid.model()->rowCount(), 40001);
}

void TestListReading::isGoneWhereTheReadFails() {
    add(80000);
    Watcher watcher(m_list->frame);
    watcher.atFirst = [this] { m_shop->run(u"ALTER TABLE urunler RENAME TO gone"_s); };
    m_list->showRows();
    QCOMPARE(watcher.shares, QList<double>{20000.0 / 80001});
    QVERIFY(!m_list->frame.progress());
    QCOMPARE(m_list->grid.model()->rowCount(), 1);
    m_shop->run(u"ALTER TABLE gone RENAME TO urunler"_s);
}

int main(int argc, char** argv) {
    return runTests<TestListReading>(argc, argv);
}

#include "test_listreading.moc"
