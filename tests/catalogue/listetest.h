#pragma once

#include "catalogue/liste.h"
#include "data/baglanmamodulu.h"
#include "desktop/screensize.h"
#include "runtime/screenregistry.h"
#include "salestest.h"

namespace kovanix {

/// The base of the customers' test programs: a shop with three customers, and how their list is used.
class ListeTest : public SalesTest {
protected:
    Ui::liste& book() const { return screen<liste>().ui; }
    TDBGrid& rows() const { return *book().TDBGrid1; }
    QLineEdit& field(const char* name) const { return *screen<liste>().findChild<QLineEdit*>(name); }
    QWidget& control(const char* name) const { return *screen<liste>().findChild<QWidget*>(name); }

    /// In place of init.
    void openBook() {
        SalesTest::init();
        customer("Ayhan Yıldız", "05324176028", "ÇINARLI MAH. 3");
        customer("Berna Aksoy", "05449021175", "YENİ MAH. 118");
        customer("Cemil Korkmaz", "05053308419", "BAHÇE MAH. 41/2");
    }
    void customer(const QString& name, const QString& telephone, const QString& address) const {
        m_shop->run("INSERT INTO musteri (adi, telefon, adres) VALUES ('" + sqlmetin(name) + "', '" +
                    sqlmetin(telephone) + "', '" + sqlmetin(address) + "')");
    }
    liste& open() const {
        press(*ui().vkCommand6);
        if (!QTest::qWaitFor([] { return screen<liste>().isActiveWindow(); }))
            qFatal("the list doesn't become active");
        screen<liste>().setWindowState(Qt::WindowNoState);
        screen<liste>().resize(screenMetrics().pixels);
        return screen<liste>();
    }
    static void select(const liste& list, int row) {
        const TDBGrid& grid = *list.ui.TDBGrid1;
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {},
                          grid.visualRect(grid.model()->index(row, 1)).center());
    }
    void selectRow(int row) const { select(screen<liste>(), row); }
    static void beginToAdd(const liste& list) {
        QTest::mouseClick(list.ui.kisiekleme2, Qt::LeftButton);
        list.ui.txtMusteri->setText("Yeni");
    }
    static void beginToEdit(const liste& list) {
        select(list, 0);
        QTest::mouseClick(list.ui.duzenle2, Qt::LeftButton);
    }
    static void selectFirst(const liste& list) { select(list, 0); }
    void edit(int row) const {
        selectRow(row);
        press(*book().duzenle2);
    }
    void fillIn(const QStringList& entered) const {
        paste(*book().txtMusteri, entered[0]);
        paste(*book().telefon, entered[1]);
        paste(*book().adres, entered[2]);
    }
    void notice(const QString& text) const { m_shop->boxes.expect("UYARI", text, MessageBoxAnswer::ok); }
    void failure(const QString& words = {}) const {
        m_shop->boxes.expect("Hata", words.isEmpty() ? noDatabase : QString(noDatabase + ": " + words),
                             MessageBoxAnswer::ok);
    }
    void question(int answer) const { m_shop->boxes.expect("Silme onayı", "adres silinsin mi?", answer); }

    QList<QVariantList> stored() const {
        return m_shop->rows("SELECT adi, telefon, adres FROM musteri ORDER BY no");
    }
    QStringList shown(int column) const {
        QStringList texts;
        for (int row = 0; row < rows().model()->rowCount(); ++row)
            texts << rows().model()->index(row, column).data().toString();
        return texts;
    }
    QStringList fields() const {
        return {book().txtMusteri->text(), book().telefon->text(), book().adres->text()};
    }
    void isClosed() const {
        QVERIFY(!book().kisiekle2->isVisible());
        QCOMPARE(book().kisiekle2->caption(), "EKLE");
        QCOMPARE(fields(), (QStringList{"", "", ""}));
    }
    /// Presses Tab until a control has the keyboard.
    void tabTo(const QWidget& wanted) const {
        for (int step = 0; step < 60 && QApplication::focusWidget() != &wanted; ++step)
            m_shop->key(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), &wanted);
    }
};

}  // namespace kovanix
