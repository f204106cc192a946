#include "salestest.h"

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <utility>

#include "data/baglanmamodulu.h"
#include "widgets/caption.h"
#include "widgets/controlarray.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

BoxLook lookOf(const QMessageBox& box) {
    BoxLook look{box.windowTitle(), box.text(), {}, box.icon(), {}};
    for (const QAbstractButton* button : box.buttons())
        look.buttons.append(button->text());
    if (const QPushButton* button = box.defaultButton())
        look.defaultButton = button->text();
    return look;
}

}  // namespace

void SalesTest::openShop(const QString& password) {
    closeShop();  // the old one first: there is one screen and one application folder
    m_boxes.clear();
    m_shop = std::make_unique<SalesFixture>(password);
    connect(&m_shop->boxes, &BoxAnswers::opened, this,
            [this](const QMessageBox& box) { m_boxes.append(lookOf(box)); });
}

void SalesTest::closeShop() {
    if (!m_shop)
        return;
    m_answered = allAnswered(m_shop->boxes) && m_answered;
    m_shop.reset();
}

void SalesTest::init() {
    openShop();
}

void SalesTest::cleanup() {
    closeShop();
    QVERIFY(std::exchange(m_answered, true));
}

void SalesTest::pressCell(int row, int column, Qt::MouseButton button) const {
    const QRect cell = grid().cellRect(row, column);
    if (!grid().viewport()->rect().contains(cell.center()))
        qFatal("no such cell to press: row %d, column %d", row, column);
    QTest::mouseClick(grid().viewport(), button, {}, cell.center());
}

void SalesTest::press(QWidget& control, Qt::MouseButton button) const {
    if (!control.isVisible())
        qFatal("nobody can press %s: it isn't shown", qUtf8Printable(control.objectName()));
    QTest::mouseClick(&control, button);
}

void SalesTest::pressKeys(const QString& array, const QList<int>& indices) const {
    for (const int index : indices) {
        auto* key = m_shop->sales().findChild<QWidget*>(array + u'_' + QString::number(index));
        if (!key)
            qFatal("no key %d in %s", index, qUtf8Printable(array));
        press(*key);
    }
}

void SalesTest::paste(QLineEdit& field, const QString& text) const {
    QApplication::clipboard()->setText(text);
    field.selectAll();
    field.paste();
}

void SalesTest::compose(const QString& text) const {
    QInputMethodEvent event;
    event.setCommitString(text);
    QCoreApplication::sendEvent(QApplication::focusWidget(), &event);
}

void SalesTest::fillInUnknown(const QString& name, const QString& price) const {
    m_shop->scan(unknown);
    press(*ui().urunadi);
    m_shop->type(name);
    press(*ui().urunsatisi);
    m_shop->type(price);
}

void SalesTest::loseDatabase() const {
    baglantikapat();
    if (!QFile::rename(m_shop->databaseFile(), m_shop->file(u"elsewhere"_s)))
        qFatal("the database file can't be moved away");
}

void SalesTest::bringDatabaseBack() const {
    if (!QFile::rename(m_shop->file(u"elsewhere"_s), m_shop->databaseFile()))
        qFatal("the database file can't be moved back");
}

QString SalesTest::captionOf(const QString& control) const {
    const auto* found = m_shop->sales().findChild<QWidget*>(control);
    if (!found)
        qFatal("no control %s", qUtf8Printable(control));
    return caption(*found);
}

QStringList SalesTest::captionsOf(const QString& array) const {
    QStringList captions;
    for (const QWidget* member : controlArray(m_shop->sales(), array))
        captions.append(QString::number(controlIndex(*member).value()) + u": " + caption(*member));
    return captions;
}

QList<QVariantList> SalesTest::products(const QString& barcode) const {
    return m_shop->rows(u"SELECT barkod, urun, alis, satis, stok FROM urunler WHERE barkod='" +
                        sqlmetin(barcode) + u'\'');
}

QList<QVariantList> SalesTest::soldLines() const {
    return m_shop->rows(u"SELECT barkod, urun, adet, fiyat, alis, kar, toplam FROM satislar ORDER BY no"_s);
}

QMap<QString, QString> SalesTest::texts(const QWidget* without) const {
    QMap<QString, QString> found;
    for (const QWidget* control : m_shop->sales().findChildren<QWidget*>()) {
        if (control->objectName().isEmpty() || (without && without->isAncestorOf(control)))
            continue;
        const auto* field = qobject_cast<const QLineEdit*>(control);
        found[control->objectName()] = field ? field->text() : caption(*control);
    }
    for (int row = 0; row < grid().rows(); ++row) {
        for (int column = 0; column < grid().cols(); ++column)
            found[u"cell %1/%2"_s.arg(row).arg(column)] = grid().textMatrix(row, column);
    }
    found[u"current cell"_s] = u"%1/%2"_s.arg(grid().row()).arg(grid().col());
    return found;
}

}  // namespace kovanix
