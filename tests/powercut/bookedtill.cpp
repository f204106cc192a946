#include "bookedtill.h"

#include <QMessageBox>
#include <utility>

#include "data/baglanmamodulu.h"
#include "runtime/screenregistry.h"

namespace kovanix {

using namespace Qt::StringLiterals;
using Kind = FileStep::Kind;

const QString BookedTill::refused = u"8690000000999"_s;

namespace {

const QDateTime opening(QDate(2026, 5, 3), QTime(7, 0));

/// Behind it nobody has the file open.
ShopContents prepare(BookedTill& till, const QString& password) {
    till.end();
    till.shop().addProduct(BookedTill::refused, u"Satılmayan"_s, 1, 2);
    till.shop().run(u"CREATE TRIGGER dur BEFORE INSERT ON satislar WHEN NEW.barkod='"_s +
                    BookedTill::refused + u"' BEGIN SELECT RAISE(ABORT, 'dolu'); END"_s);
    return readShop(till.shop().databaseFile(), password);
}

}  // namespace

BookedTill::BookedTill(const QString& password)
    : m_shop(password),
      m_layer(FileLayer::under(!password.isEmpty())),
      m_purchase{{goods::bread, 7}, {goods::milk, 25},     {goods::tea, 1000},
                 {goods::bag, 0},   {goods::tomatoes, 30}, {refused, 1}},
      m_book(prepare(*this, password)) {
    connect(&m_shop.boxes, &BoxAnswers::opened, this, [this](const QMessageBox& box) {
        m_box = box.text();
        m_layer.mark(Kind::told, m_toldByBox);
    });
}

void BookedTill::end() {
    ScreenRegistry::clear();
    kayitkapat();
    baglantikapat();
}

void BookedTill::start() {
    if (!baglantihazir())
        qFatal("the shop doesn't open");
    m_shop.sales().show();
    if (!QTest::qWaitForWindowActive(&m_shop.sales()))
        qFatal("the sales screen doesn't become active");
}

void BookedTill::passTime() {
    m_shop.setNow(opening.addSecs(++m_seconds));
}

void BookedTill::scan(const QString& barcode, int times) {
    for (int i = 0; i < times; ++i)
        m_shop.scan(barcode);
}

void BookedTill::scanQuantity(const QString& quantity, const QString& barcode) {
    m_shop.typeInto(*m_shop.ui().adet, quantity);
    m_shop.ui().barkod->setFocus();
    m_shop.scan(barcode);
}

void BookedTill::store() {
    const QString now = opening.addSecs(m_seconds).toString(u"yyyy-MM-dd hh:mm:ss"_s);
    const int lines = m_shop.lines();
    bool isRefused = false;
    for (int row = 1; row <= lines && !isRefused; ++row) {
        const QStringList cells = m_shop.line(row);
        isRefused = cells.at(0) == refused;
        if (isRefused)
            continue;
        const double quantity = sayicevir(cells.at(2));
        const double price = sayicevir(cells.at(3));
        const double purchase = m_purchase.value(cells.at(0));
        const double total = quantity * price;
        const double profit = total - quantity * purchase;
        m_book.store({now, cells.at(0), cells.at(1), {quantity, price, purchase, profit, total, profit}});
    }
    for (int row = 1; row <= lines && !isRefused; ++row) {
        const QStringList cells = m_shop.line(row);
        m_book.take(cells.at(0), sayicevir(cells.at(2)));
    }
    m_box.clear();
    m_toldByBox = m_book.statements();
    m_layer.mark(Kind::begun, m_book.statements());
    if (isRefused)
        m_shop.boxes.expect(u"Hata"_s, u"Satış kaydedilemedi: dolu - satislar"_s, MessageBoxAnswer::ok);
    m_shop.key(Qt::Key_F1);
    if (m_box.isEmpty())
        m_layer.mark(Kind::told, m_book.statements());
}

void BookedTill::dropTicket() {
    m_shop.sales().satistemizle();
}

void BookedTill::office(const std::function<void()>& statements) {
    m_layer.mark(Kind::begun, m_book.statements());
    storeTogether(statements);
    m_layer.mark(Kind::told, m_book.statements());
}

void BookedTill::putProduct(const QString& barcode, double purchase, double stock) {
    m_purchase[barcode] = purchase;
    m_book.setStock(barcode, stock);
    office([&] {
        Recordset products;
        products.open(u"select * from urunler"_s, baglanti());
        products.addNew();
        products.setField(u"barkod"_s, barcode);
        products.setField(u"urun"_s, QString(u"Ürün "_s + barcode));
        products.setField(u"alis"_s, purchase);
        products.setField(u"satis"_s, 2 * purchase);
        products.setField(u"stok"_s, stock);
        products.update();
    });
}

void BookedTill::setStock(const QString& barcode, double stock) {
    m_book.setStock(barcode, stock);
    office([&] {
        Recordset products;
        products.open(u"select * from urunler where barkod='"_s + barcode + u'\'', baglanti());
        products.setField(u"stok"_s, stock);
        products.update();
    });
}

void BookedTill::removeProduct(const QString& barcode) {
    m_purchase.remove(barcode);
    m_book.remove(barcode);
    office([&] { baglanti().execute(u"delete from urunler where barkod='"_s + barcode + u'\''); });
}

}  // namespace kovanix
