#include "productstest.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

#include "app/modTurkce.h"
#include "app/session.h"
#include "data/baglanmamodulu.h"
#include "runtime/screenregistry.h"
#include "widgets/tdbgrid.h"

namespace kovanix {

using namespace Qt::StringLiterals;

void ProductsTest::init() {
    SalesTest::init();
    girisyetki = 1;
}

urunler& ProductsTest::open() {
    press(*ui().vkCommand3);
    catalogue().resize(1024, 768);
    if (!QTest::qWaitFor([this] { return catalogue().isActiveWindow(); }))
        qFatal("the products don't become active");
    return catalogue();
}

urunler& ProductsTest::catalogue() const {
    return screen<urunler>();
}

void ProductsTest::choose(int row) const {
    TDBGrid& list = *form().TDBGrid1;
    const QRect place = list.visualRect(list.model()->index(row, 2));
    if (!list.viewport()->rect().contains(place.center()))
        qFatal("row %d can't be seen", row);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place.center());
}

QStringList ProductsTest::listed(int row) const {
    QStringList texts;
    const QAbstractItemModel& rows = *form().TDBGrid1->model();
    for (int column = 0; column < rows.columnCount(); ++column)
        texts << rows.index(row, column).data().toString();
    return texts;
}

QStringList ProductsTest::names() const {
    QStringList names;
    for (int row = 0; row < form().TDBGrid1->model()->rowCount(); ++row)
        names << listed(row)[2];
    return names;
}

/// Where a message box has closed, as a window manager does.
void ProductsTest::activate() const {
    if (QApplication::activeWindow())
        return;
    catalogue().activateWindow();
    if (!QTest::qWaitFor([this] { return catalogue().isActiveWindow(); }))
        qFatal("the products don't become active again");
}

void ProductsTest::type(const QString& text) const {
    activate();
    m_shop->type(text);
}

void ProductsTest::key(Qt::Key key) const {
    activate();
    m_shop->key(key);
}

void ProductsTest::fill(const QStringList& texts) const {
    const QList<QLineEdit*> boxes{form().barkod2, form().urun2, form().alis, form().fiyat, form().stok};
    for (int i = 0; i < texts.size(); ++i)
        boxes[i]->setText(texts[i]);
}

QStringList ProductsTest::fields() const {
    return {form().barkod2->text(), form().urun2->text(), form().alis->text(), form().fiyat->text(),
            form().stok->text()};
}

void ProductsTest::addNew(const QStringList& texts) {
    open();
    press(*form().kisiekleme2);
    fill(texts);
}

void ProductsTest::expectNotice(const QString& key) const {
    m_shop->boxes.expect(u"UYARI"_s, metin(key), MessageBoxAnswer::ok);
}

void ProductsTest::expectFailure(const QString& words) const {
    m_shop->boxes.expect(u"Hata"_s, metin(u"DB_HATA"_s) + u": " + harfcevir(words), MessageBoxAnswer::ok);
}

void ProductsTest::expectQuestion(int answer) const {
    m_shop->boxes.expect(metin(u"MSG_SILME_ONAY_BASLIK"_s), metin(u"MSG_URUN_SIL_SOR"_s), answer);
}

qsizetype ProductsTest::rowsInCopy(const QString& sql) const {
    const QTemporaryDir folder;
    const QString copy = folder.filePath(u"copy"_s);
    if (!QFile::copy(m_shop->databaseFile(), copy))
        qFatal("no copy");
    Connection connection;
    connection.open(u"Data Source="_s + copy);
    Recordset rows;
    rows.open(sql, connection);
    return rows.recordCount();
}

QList<QVariantList> ProductsTest::stored() const {
    return m_shop->rows(u"SELECT barkod, urun, alis, satis, stok FROM urunler ORDER BY no"_s);
}

void ProductsTest::dontWaitForLocks() const {
    Recordset setting;
    setting.open(u"PRAGMA busy_timeout = 0"_s, baglanti());
    QCOMPARE(setting.field(u"timeout"_s).toInt(), 0);
}

}  // namespace kovanix
