#include "salesfixture.h"

#include <QApplication>

#include "runtime/screenregistry.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

/// What the keyboard goes to. Where a message box has closed, the screen below it is made active again, as a
/// window manager does.
QWidget& receiver() {
    if (!QApplication::activeWindow())
        screen<satisekrani>().activateWindow();
    if (!QTest::qWaitFor([] { return QApplication::focusWidget() != nullptr; }))
        qFatal("nothing has the focus");
    return *QApplication::focusWidget();
}

void addGoods(ShopFixture& shop) {
    shop.addProduct(goods::bread, u"Köy Ekmeği"_s, 7, 10);
    shop.addProduct(goods::milk, u"Tam Yağlı Süt 1 L"_s, 25, 32.5);
    shop.addProduct(goods::tea, u"Çay Bahçesi 5 kg"_s, 1000, 1234.5);
    shop.addProduct(goods::bag, u"Poşet"_s, 0, 0, QVariant());
    shop.addProduct(goods::tomatoes, u"Domates"_s, 30, 40, 100.0);
}

}  // namespace

SalesFixture::SalesFixture(const QString& password) {
    openShop(password, addGoods);
    sales().show();
    if (!QTest::qWaitForWindowActive(&sales()))
        qFatal("the sales screen doesn't become active");
}

satisekrani& SalesFixture::sales() const {
    return screen<satisekrani>();
}

void SalesFixture::scan(const QString& code) const {
    type(code);
    key(Qt::Key_Return);
}

void SalesFixture::type(const QString& text) const {
    for (const char32_t character : text.toUcs4()) {
        const Qt::Key key =
            character < 0x80 ? QTest::asciiToKey(static_cast<char>(character)) : Qt::Key_unknown;
        QTest::sendKeyEvent(QTest::Click, &receiver(), key, QString::fromUcs4(&character, 1), Qt::NoModifier);
    }
}

void SalesFixture::key(Qt::Key key) const {
    QTest::keyClick(&receiver(), key);
}

void SalesFixture::typeInto(QWidget& field, const QString& text) const {
    field.setFocus();
    type(text);
}

void SalesFixture::press(Image& picture) const {
    QTest::mouseClick(&picture, Qt::LeftButton);
}

QStringList SalesFixture::line(int row) const {
    QStringList cells;
    for (int column = 1; column <= 5; ++column)
        cells.append(ui().satisekrani1->textMatrix(row, column));
    return cells;
}

int SalesFixture::lines() const {
    return ui().satisekrani1->rows() - 2;
}

}  // namespace kovanix
