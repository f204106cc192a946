#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QTableWidget>
#include <QtTest>

#include "aktar/aktarwindow.h"
#include "archives.h"
#include "desktop/messagebox.h"
#include "runtests.h"
#include "shopfixture.h"
#include "widgets/drawnbutton.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

class WindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_shop.emplace();
        m_shop->openShop();
        m_shop->addProduct(u"100"_s, u"SÜT"_s, 10, 12.5, 5.0);
        m_shop->addProduct(u"200"_s, u"UN"_s, 1, 2, 7.0);
        m_window.emplace();
        m_window->show();
    }
    void cleanup() {
        m_window.reset();
        QVERIFY2(allAnswered(m_shop->boxes), "boxes");
        m_shop.reset();
    }

    void writesAFile() {
        press(u"disaaktar"_s);
        const QString path = m_shop->file(u"u.xlsx"_s);
        m_window->exportTo(path, false);
        QTRY_COMPARE(label(u"sonuc"_s), u"2 satır yazıldı"_s);
        QVERIFY(QFileInfo(path).size() > 1000);
        press(u"nedisa1"_s);
        QCOMPARE(label(u"sonuc"_s), QString());
    }

    void theDialogProposesANameOfTheChosenKind() {
        press(u"disaaktar"_s);
        press(u"bicim1"_s);
        press(u"dosyasec"_s);
        auto* const dialog = m_window->findChild<QFileDialog*>();
        QVERIFY(dialog && dialog->isVisible());
        QCOMPARE(dialog->defaultSuffix(), u"csv"_s);
        QCOMPARE(QFileInfo(dialog->selectedFiles().first()).fileName(), u"urunler.csv"_s);
        dialog->reject();
    }

    void takesAFileStepByStep() {
        read("Barkod;Ürün adı;Satış fiyatı;Stok\n100;SÜT;13;9\n200;UN;2;1\n300;TUZ;x;1\n400;ŞEKER;5;2\n");
        QCOMPARE(choice(0).currentText(), u"Barkod"_s);
        QCOMPARE(choice(2).currentText(), u"Satış fiyatı"_s);
        QCOMPARE(choice(3).currentText(), u"(alınmaz)"_s);  // the stock waits to be chosen
        QVERIFY(!button(u"aktar"_s).isVisible());
        press(u"denetle"_s);
        QTRY_VERIFY(button(u"aktar"_s).isVisible());
        QCOMPARE(figures(), (QStringList{u"1"_s, u"1"_s, u"1"_s, u"1"_s}));
        const auto* const notes = m_window->findChild<QTableView*>(u"reddedilenler"_s)->model();
        QCOMPARE(notes->rowCount(), 1);
        QCOMPARE(notes->index(0, 2).data().toString(), u"Satış fiyatı: sayı değil (x)"_s);
        QCOMPARE(products(), (QStringList{u"100 12.5 5"_s, u"200 2 7"_s}));
        // The refused line holds the others back until somebody lets them go.
        const QString question =
            u"1 satır reddedildi ve yazılmayacak.\n\nÖbürleri (1 yeni, 1 değişen) yine de yazılsın mı?"_s;
        for (const int no : {MessageBoxAnswer::no, BoxAnswers::escape}) {
            m_shop->boxes.expect(u"Veri aktarma"_s, question, no);
            press(u"aktar"_s);
            QVERIFY(!m_window->isWorking());
            QCOMPARE(products(), (QStringList{u"100 12.5 5"_s, u"200 2 7"_s}));
        }
        m_shop->boxes.expect(u"Veri aktarma"_s, question, MessageBoxAnswer::yes);
        press(u"aktar"_s);
        QTRY_COMPARE(label(u"ozet"_s), u"Aktarıldı."_s);
        QVERIFY(!button(u"aktar"_s).isVisible());
        QCOMPARE(products(), (QStringList{u"100 13 5"_s, u"200 2 7"_s, u"400 5 0"_s}));
    }

    void theStockIsTakenWhereItIsChosen() {
        read("Barkod;Ürün adı;Stok\n100;SÜT;9\n");
        choose(2, u"Stok"_s);
        press(u"denetle"_s);
        QTRY_VERIFY(button(u"aktar"_s).isVisible());
        press(u"aktar"_s);
        QTRY_COMPARE(products().first(), u"100 12.5 9"_s);
    }

    void whatCantBeReadIsNotGoneOnWith() {
        read("Barkod;Ürün adı;Fiyat\n100;SÜT;9\n");
        QVERIFY(button(u"denetle"_s).isVisible());
        choose(1, u"Satış fiyatı"_s);
        QCOMPARE(label(u"eksik"_s), u"“Satış fiyatı” iki sütun için seçildi"_s);
        QVERIFY(!button(u"denetle"_s).isVisible());
        choose(1, u"Ürün adı"_s);
        QCOMPARE(label(u"eksik"_s), QString());
        QVERIFY(button(u"denetle"_s).isVisible());
    }

    void goingBackChangesTheColumns() {
        read("Barkod;Ürün adı;Fiyat\n100;SÜT;9\n");
        press(u"denetle"_s);
        QTRY_VERIFY(button(u"aktar"_s).isVisible());
        press(u"geri"_s);
        QVERIFY(button(u"denetle"_s).isVisible());
        choose(2, u"(alınmaz)"_s);
        press(u"denetle"_s);
        QTRY_COMPARE(figures(), (QStringList{u"0"_s, u"0"_s, u"1"_s, u"0"_s}));
        QVERIFY(!button(u"aktar"_s).isVisible());
        press(u"geri"_s);
        press(u"geri"_s);
        QVERIFY(button(u"iceaktar"_s).isVisible());
    }

    void customersAreKnownByTheirHeadings() {
        read("Müşteri adı;Telefon\nAli;0500\n");
        QVERIFY(button(u"neice1"_s).isChecked());
        QCOMPARE(choice(0).currentText(), u"Müşteri adı"_s);
        press(u"neice0"_s);
        QCOMPARE(choice(1).currentText(), u"(alınmaz)"_s);
    }

    void settledBarcodesAreTold() {
        read("Barkod;Fiyat\n'100;13\n200,0;2\n");
        press(u"denetle"_s);
        QTRY_COMPARE(label(u"ozet"_s), u"Henüz hiçbir şey yazılmadı. 2 barkod düzeltildi."_s);
        const auto* const notes = m_window->findChild<QTableView*>(u"reddedilenler"_s)->model();
        QCOMPARE(notes->rowCount(), 2);
        QCOMPARE(notes->index(1, 2).data().toString(), u"Barkod düzeltildi, dosyada yazan: 200,0"_s);
    }

    void anotherSheetCanBeChosen() {
        QFile book(m_shop->file(u"kitap.xlsx"_s));
        QVERIFY(book.open(QIODevice::WriteOnly));
        book.write(archiveOf(workbookOf(rowOf({"Barkod", "Fiyat"}) + rowOf({"100", "1"}),
                                        rowOf({"Müşteri adı", "Telefon"}) + rowOf({"Ali", "0500"}))));
        book.close();
        press(u"iceaktar"_s);
        m_window->readFile(book.fileName());
        QTRY_COMPARE(shownCell(1, 0), u"100"_s);
        auto& sheets = *m_window->findChild<QComboBox*>(u"sayfa"_s);
        QVERIFY(sheets.isVisible());
        QCOMPARE(sheets.currentText(), u"A"_s);
        QVERIFY(
            label(u"dosyabilgisi"_s)
                .endsWith(u"\n“A” sayfası okundu; okunmayan: “B”. Sağ üstten başka sayfa seçebilirsiniz."_s));
        pick(sheets, u"B"_s);
        QVERIFY(m_window->isWorking());
        pick(sheets, u"A"_s);  // too early
        QTRY_COMPARE(shownCell(1, 0), u"Ali"_s);
        QVERIFY(!m_window->isWorking());
        QCOMPARE(sheets.currentText(), u"B"_s);
        QVERIFY(button(u"neice1"_s).isChecked());
        // A file that has gone meanwhile leaves the rows that were read, and says so.
        QVERIFY(book.remove());
        m_shop->boxes.expectAny(MessageBoxAnswer::ok);
        pick(sheets, u"A"_s);
        QTRY_COMPARE(m_shop->boxes.answered(), 1);
        QCOMPARE(sheets.currentText(), u"B"_s);
        QCOMPARE(shownCell(1, 0), u"Ali"_s);
        // A text file has none.
        m_window->readFile(write("Barkod;Fiyat\n200;9\n"));
        QTRY_COMPARE(shownCell(1, 0), u"200"_s);
        QVERIFY(!sheets.isVisible());
    }

    /// Enter on the button that leaves would end the program.
    void theKeyboardLiesWhereItDoesNoHarm() {
        QVERIFY(QTest::qWaitForWindowActive(&*m_window));
        QCOMPARE(focused(), u"disaaktar"_s);
        press(u"disaaktar"_s);
        QCOMPARE(focused(), u"dosyasec"_s);
        m_window->exportTo(m_shop->file(u"u.csv"_s), false);
        QTRY_COMPARE(label(u"sonuc"_s), u"2 satır yazıldı"_s);
        QCOMPARE(focused(), u"dosyasec"_s);
        press(u"geri"_s);
        QCOMPARE(focused(), u"disaaktar"_s);
        press(u"iceaktar"_s);
        QCOMPARE(focused(), u"dosyasec"_s);
        m_shop->boxes.expectAny(MessageBoxAnswer::ok);
        m_window->readFile(write("%PDF-1.7"));
        QTRY_COMPARE(m_shop->boxes.answered(), 1);
        QTRY_COMPARE(focused(), u"dosyasec"_s);
        press(u"geri"_s);
        read("Barkod;Fiyat\n100;9\n");
        QCOMPARE(focused(), u"onizleme"_s);
        button(u"denetle"_s).setFocus();
        QTest::keyClick(&button(u"denetle"_s), Qt::Key_Space);
        QTRY_VERIFY(button(u"aktar"_s).isVisible());
        QCOMPARE(focused(), u"geri"_s);
        button(u"aktar"_s).setFocus();
        QTest::keyClick(&button(u"aktar"_s), Qt::Key_Space);
        QTRY_COMPARE(label(u"ozet"_s), u"Aktarıldı."_s);
        QCOMPARE(focused(), u"geri"_s);
    }

    void aBadFileIsABox() {
        press(u"iceaktar"_s);
        const QString path = write("%PDF-1.7");
        m_shop->boxes.expect(u"Veri aktarma"_s, u"Bu bir PDF dosyası; tablo değil."_s, MessageBoxAnswer::ok);
        m_window->readFile(path);
        QTRY_COMPARE(m_shop->boxes.answered(), 1);
        QVERIFY(!button(u"denetle"_s).isVisible());
    }

private:
    QString write(const QByteArray& bytes) const {
        QFile file(m_shop->file(u"veri.csv"_s));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) > 0 ? file.fileName() : QString();
    }
    void read(const QByteArray& bytes) {
        press(u"iceaktar"_s);
        m_window->readFile(write(bytes));
        QTRY_VERIFY(m_window->findChild<QComboBox*>(u"sutun0"_s));
        QTRY_VERIFY(!m_window->isWorking());
    }
    DrawnButton& button(const QString& name) const { return *m_window->findChild<DrawnButton*>(name); }
    void press(const QString& name) const {
        QVERIFY2(button(name).isVisible() && button(name).isEnabled(), qPrintable(name));
        button(name).click();
    }
    QString label(const QString& name) const { return m_window->findChild<QLabel*>(name)->text(); }
    QStringList figures() const {
        return {label(u"yeni"_s), label(u"değişen"_s), label(u"aynı"_s), label(u"reddedilen"_s)};
    }
    QComboBox& choice(int column) const {
        auto* const choices = m_window->findChild<QTableWidget*>(u"secimler"_s);
        return *qobject_cast<QComboBox*>(choices->cellWidget(0, column));
    }
    void choose(int column, const QString& field) const { pick(choice(column), field); }
    /// As a user's choice: the signals come with it.
    static void pick(QComboBox& box, const QString& text) {
        box.setCurrentText(text);
        Q_EMIT box.activated(box.currentIndex());
        Q_EMIT box.textActivated(box.currentText());
    }
    QString shownCell(int row, int column) const {
        const auto* const item = m_window->findChild<QTableWidget*>(u"onizleme"_s)->item(row, column);
        return item ? item->text() : QString();
    }
    QString focused() const {
        return m_window->focusWidget() ? m_window->focusWidget()->objectName() : QString();
    }
    QStringList products() const {
        QStringList lines;
        const QList<QVariantList> rows = m_shop->rows(u"SELECT barkod, satis, stok FROM urunler"_s);
        for (const QVariantList& row : rows)
            lines << row[0].toString() + u' ' + row[1].toString() + u' ' + row[2].toString();
        return lines;
    }

    std::optional<ShopFixture> m_shop;
    std::optional<AktarWindow> m_window;
};

}  // namespace kovanix::aktar

int main(int argc, char** argv) {
    return kovanix::runTests<kovanix::aktar::WindowTest>(argc, argv);
}
#include "test_window.moc"
