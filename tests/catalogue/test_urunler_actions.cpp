#include <QApplication>
#include <QFile>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>

#include "app/modTurkce.h"
#include "app/session.h"
#include "appearance/keyboard.h"
#include "appearance/keyboardfield.h"
#include "appearance/keyboardscreen.h"
#include "data/baglanmamodulu.h"
#include "database/engineerror.h"
#include "htmltable.h"
#include "productstest.h"
#include "rows.h"
#include "runtime/screenregistry.h"
#include "widgets/adodc.h"
#include "widgets/tdbgrid.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct ReadyRow {
    QString typed;  ///< the barcode
    QString name;   ///< what stands in the field then; empty for untouched
};

}  // namespace

Q_DECLARE_METATYPE(ReadyRow)

/// The steps behind the buttons of the lower row: add, edit, delete, export; and what leaves the frame.
class TestUrunlerActions : public ProductsTest {
    Q_OBJECT

    bool isEdited(int row) const {
        // The edited row is honey where others are white.
        TDBGrid& list = *form().TDBGrid1;
        const QRect place = list.visualRect(list.model()->index(row, 2));
        const QImage picture = list.viewport()->grab().toImage();
        return picture.pixelColor(place.right() - 4, place.center().y()) == roleColor(ColorRole::editedRow);
    }

private Q_SLOTS:
    // --- add
    void addOpensAnEmptyFrame() {
        open();
        fill({u"1"_s, u"a"_s, u"2"_s, u"3"_s, u"4"_s});
        form().barkod2->setEnabled(false);
        press(*form().kisiekleme2);
        QVERIFY(form().kisiekle2->isVisible());
        QCOMPARE(form().kisiekle2->caption(), u"EKLE"_s);
        QCOMPARE(form().kisiekle2->titleNote(), u"Yeni ürün"_s);
        QCOMPARE(fields(), (QStringList{{}, {}, {}, {}, {}}));
        QVERIFY(form().barkod2->isEnabled());
        QVERIFY(form().barkod2->hasFocus());
    }

    void addAfterAnEditUnmarksTheRow() {
        open();
        choose(1);
        press(*form().duzenle2);
        QVERIFY(isEdited(1));
        press(*form().kisiekleme2);
        QVERIFY(!isEdited(1));
        QCOMPARE(form().kisiekle2->caption(), u"EKLE"_s);
        QVERIFY(form().barkod2->isEnabled());
    }

    // --- edit
    void editTakesTheRow() {
        open();
        choose(1);
        press(*form().duzenle2);
        QCOMPARE(fields(), (QStringList{goods::milk, u"Tam Yağlı Süt 1 L"_s, u"25"_s, u"32,5"_s, u"10"_s}));
        QCOMPARE(form().kisiekle2->caption(), u"D!ZENLE"_s);
        QCOMPARE(form().kisiekle2->titleNote(), u"Tam Yağlı Süt 1 L"_s);
        QVERIFY(!form().barkod2->isEnabled());
        QVERIFY(!form().barkod2k->isEnabled());
        QVERIFY(form().fiyat->hasFocus());
        QVERIFY(isEdited(1));
    }

    void editTakesWhatAnotherTillHasStored() {
        open();
        choose(1);
        m_shop->run(u"UPDATE urunler SET stok = 3.5, satis = 35 WHERE no = 2"_s);
        QCOMPARE(listed(1)[5], u"10"_s);
        press(*form().duzenle2);
        QCOMPARE(fields(), (QStringList{goods::milk, u"Tam Yağlı Süt 1 L"_s, u"25"_s, u"35"_s, u"3,5"_s}));
        QCOMPARE(listed(1)[5], u"3,5"_s);
    }

    void editReadsOneRow() {
        open();
        choose(1);
        m_shop->run(u"UPDATE urunler SET stok = stok - 1"_s);
        press(*form().duzenle2);
        QCOMPARE(listed(1)[5], u"9"_s);
        QCOMPARE(listed(2)[5], u"10"_s);  // the rest of the list is as old as it was
    }

    void editOfARowThatIsGone() {
        open();
        choose(1);
        m_shop->run(u"DELETE FROM urunler WHERE no = 2"_s);
        press(*form().duzenle2);
        QCOMPARE(form().urun2->text(), u"Tam Yağlı Süt 1 L"_s);  // what the list still shows
        QVERIFY(form().kisiekle2->isVisible());
    }

    void editOfNullStock() {
        open();
        choose(3);
        press(*form().duzenle2);
        QCOMPARE(fields(), (QStringList{goods::bag, u"Poşet"_s, u"0"_s, u"0"_s, QString()}));
    }

    void editFromASearch() {
        open();
        form().TDBGrid1->findChild<QLineEdit*>(u"TDBGrid1_filter_2"_s)->setFocus();
        type(u"poşet"_s);
        choose(0);
        m_shop->run(u"UPDATE urunler SET urun = 'Torba' WHERE no = 4"_s);
        press(*form().duzenle2);
        QCOMPARE(form().urun2->text(), u"Torba"_s);  // though the search wouldn't find it any more
        QCOMPARE(form().barkod2->text(), goods::bag);
    }

    void editWithoutASelection() {
        open();
        expectNotice(u"MSG_URUN_SECIN"_s);
        catalogue().edit();
        QCOMPARE(form().kisiekle2->caption(), u"D!ZENLE"_s);
        QVERIFY(!form().barkod2->isEnabled());
        QVERIFY(!form().kisiekle2->isVisible());
    }

    void editOfAnEmptyList() {
        m_shop->run(u"DELETE FROM urunler"_s);
        open();
        form().sutun2->setText(u"1"_s);
        expectNotice(u"MSG_URUN_LISTE_BOS"_s);
        press(*form().duzenle2);
        QVERIFY(!form().kisiekle2->isVisible());
    }

    // --- leaving the frame
    void cancelKeepsPurchasePriceAndStock() {
        open();
        choose(1);
        press(*form().duzenle2);
        press(*form().vazgec2);
        QCOMPARE(fields(), (QStringList{{}, {}, u"25"_s, {}, u"10"_s}));
        QCOMPARE(form().kisiekle2->caption(), u"EKLE"_s);
        QVERIFY(!form().kisiekle2->isVisible());
        QVERIFY(!isEdited(1));
        QVERIFY(form().TDBGrid1->hasFocus());
        QCOMPARE(form().sutun2->text(), u"2"_s);
        // The next scan goes into the list, and its Enter doesn't ask once more.
        QTRY_VERIFY(form().TDBGrid1->hasFocus());
    }

    void theListStaysWhereADeletionWas() {
        open();
        choose(3);
        expectQuestion(MessageBoxAnswer::yes);
        expectNotice(u"MSG_URUN_SILINDI"_s);
        press(*form().kisisil2);
        QCOMPARE(form().TDBGrid1->column(0).value(), u"5"_s);
        QCOMPARE(form().sutun2->text(), QString());
    }

    // Another row is marked then.
    void aSelectedRowThatAFilterHidesIsNoLongerSelected() {
        open();
        choose(0);
        form().TDBGrid1->findChild<QLineEdit*>(u"TDBGrid1_filter_2"_s)->setFocus();
        type(u"süt"_s);
        QCOMPARE(form().sutun2->text(), QString());
        expectNotice(u"MSG_URUN_SIL_SEC"_s);
        catalogue().remove();
        QCOMPARE(stored().size(), 5);
    }

    void anEditThatCantReadItsRowOpensNothing() {
        if (ShopFixture::isOnServer())
            QSKIP("moves the file away");
        open();
        choose(1);
        loseDatabase();
        m_shop->boxes.expectAny(MessageBoxAnswer::ok);  // the open's own box
        m_shop->boxes.expect(u"Hata"_s, noDatabase, MessageBoxAnswer::ok);
        press(*form().duzenle2);
        QVERIFY(form().kisiekle2->isHidden());
        // What is being added stays a new product.
        press(*form().kisiekleme2);
        m_shop->boxes.expectAny(MessageBoxAnswer::ok);
        m_shop->boxes.expect(u"Hata"_s, noDatabase, MessageBoxAnswer::ok);
        press(*form().duzenle2);
        QVERIFY(form().kisiekle2->adds());
        QVERIFY(form().barkod2->isEnabled());
    }

    // What was opened for one product must not be written into another.
    void keyboardsCloseWithTheirRecord() {
        open();
        press(*form().kisiekleme2);
        for (QWidget* next : std::initializer_list<QWidget*>{form().duzenle2, form().kayit, form().vazgec2}) {
            press(*form().fiyatk);
            QVERIFY(loaded<klavyesayi>());
            choose(1);
            if (next == form().kayit)
                expectNotice(u"MSG_DUZENLENDI"_s);
            press(*next);
            QVERIFY(!loaded<klavyesayi>());
        }
        press(*form().duzenle2);
        openNumberPad(1, catalogue());
        screen<klavyesayi>().ui.yazilan->setText(u"1"_s);
        QTest::mouseClick(screen<klavyesayi>().findChild<QWidget*>(u"vkCommand1_39"_s), Qt::LeftButton);
        QCOMPARE(form().barkod2->text(), goods::milk);  // not even by the pad that is open
    }

    void escapeInTheFrameCancels() {
        open();
        press(*form().kisiekleme2);
        type(goods::milk);  // a barcode that is known: nothing is asked of it
        key(Qt::Key_Escape);
        QVERIFY(!form().kisiekle2->isVisible());
        QVERIFY(loaded<urunler>());
        key(Qt::Key_Escape);
        QVERIFY(!loaded<urunler>());
    }

    // --- delete
    void deletes() {
        open();
        form().TDBGrid1->findChild<QLineEdit*>(u"TDBGrid1_filter_1"_s)->setFocus();
        type(u"869"_s);
        choose(1);
        const QSignalSpy reads(form().Adodc2, &Adodc::rowsChanged);
        const QSignalSpy hiddenReads(form().eklemedatasi2, &Adodc::rowsChanged);
        expectQuestion(MessageBoxAnswer::yes);
        expectNotice(u"MSG_URUN_SILINDI"_s);
        press(*form().kisisil2);
        QCOMPARE(m_boxes[0].icon, QMessageBox::Warning);
        QCOMPARE(names(), (QStringList{u"Köy Ekmeği"_s, u"Çay Bahçesi 5 kg"_s, u"Poşet"_s}));
        QCOMPARE(stored().size(), 4);
        QCOMPARE(products(goods::milk).size(), 0);
        QCOMPARE(form().sutun2->text(), QString());
        QTRY_VERIFY(form().TDBGrid1->hasFocus());
        QCOMPARE(reads.count(), 1);
        // The second list is bound, but has nothing to read.
        QCOMPARE(hiddenReads.count(), 0);
        QCOMPARE(form().kayitgridi2->dataSource(), form().eklemedatasi2);
        QCOMPARE(form().eklemedatasi2->recordset().totalCount(), 0);
        QCOMPARE(form().eklemedatasi2->recordSource(), u"urunler"_s);
    }

    void deletesOneOfTheSameBarcode() {
        m_shop->addProduct(goods::milk, u"İkinci"_s, 1, 2);
        open();
        choose(5);
        expectQuestion(MessageBoxAnswer::yes);
        expectNotice(u"MSG_URUN_SILINDI"_s);
        press(*form().kisisil2);
        QCOMPARE(products(goods::milk).size(), 1);
        QCOMPARE(names().size(), 5);
    }

    void theRowIsSeenThatIsAskedAbout() {
        for (int product = 0; product < 60; ++product)
            m_shop->addProduct(QString::number(product), u"Çok"_s, 1, 2);
        const TDBGrid& list = *open().ui.TDBGrid1;
        choose(1);
        list.verticalScrollBar()->setValue(50);
        connect(&m_shop->boxes, &BoxAnswers::opened, this,
                [&list] { QVERIFY(list.viewport()->rect().contains(list.visualRect(list.currentIndex()))); });
        expectQuestion(MessageBoxAnswer::no);
        press(*form().kisisil2);
    }

    void aNoDeletesNothing() {
        open();
        choose(1);
        expectQuestion(MessageBoxAnswer::no);
        press(*form().kisisil2);
        QCOMPARE(stored().size(), 5);
        QCOMPARE(form().sutun2->text(), u"2"_s);
    }

    void deleteOfARowThatIsGoneSaysNothing() {
        open();
        choose(1);
        m_shop->run(u"DELETE FROM urunler WHERE no = 2"_s);
        expectQuestion(MessageBoxAnswer::yes);
        press(*form().kisisil2);
        QCOMPARE(stored().size(), 4);
        QCOMPARE(form().sutun2->text(), QString());
    }

    void deleteWithoutASelection() {
        open();
        expectNotice(u"MSG_URUN_SIL_SEC"_s);
        catalogue().remove();
    }

    void deleteFromALockedFile() {
        if (ShopFixture::isOnServer())
            QSKIP("locks a file");
        open();
        choose(1);
        dontWaitForLocks();
        const auto lock = m_shop->lockFile();
        expectQuestion(MessageBoxAnswer::yes);
        expectFailure(describeFailure(DatabaseError::Kind::busy, u"database is locked"_s));
        press(*form().kisisil2);
        QCOMPARE(stored().size(), 5);
    }

    void deleteIsInTheFileAtOnce() {
        if (ShopFixture::isOnServer())
            QSKIP("copies the file");
        open();
        choose(1);
        expectQuestion(MessageBoxAnswer::yes);
        expectNotice(u"MSG_URUN_SILINDI"_s);
        press(*form().kisisil2);
        QTRY_COMPARE(rowsInCopy(u"select * from urunler"_s), 4);
    }

    // --- export
    void exportsWhatIsShown() {
        QTemporaryDir drive;
        qputenv("KOVANIX_DRIVE_C", QFile::encodeName(drive.path()));
        QVERIFY(QDir(drive.path()).mkdir(u"kovanix"_s));
        open();
        form().TDBGrid1->findChild<QLineEdit*>(u"TDBGrid1_filter_2"_s)->setFocus();
        type(u"süt"_s);
        expectNotice(u"MSG_URUN_EXPORT"_s);
        press(*form().excelekaydet);
        qunsetenv("KOVANIX_DRIVE_C");
        QCOMPARE(htmlTable(drive.filePath(u"kovanix/urun raporu.xls"_s)),
                 (QList<QStringList>{
                     {u"NO"_s, u"BARKOD"_s, u"ÜRÜN ADI"_s, u"ALIŞ FİYAT"_s, u"SATIŞ FİYATI"_s, u"STOK"_s},
                     {u"2"_s, goods::milk, u"Tam Yağlı Süt 1 L"_s, u"25"_s, u"32,5"_s, u"10"_s}}));
    }

    void exportThatFailsSaysTheSame() {
        qputenv("KOVANIX_DRIVE_C", "/nowhere");
        open();
        expectNotice(u"MSG_URUN_EXPORT"_s);
        press(*form().excelekaydet);
        qunsetenv("KOVANIX_DRIVE_C");
    }

    // --- the ready-made catalogue
    void readyMade_data() {
        addRows<ReadyRow>({
            {"known", {u"111"_s, u"Hazır"_s}},
            {"unknown", {u"222"_s, {}}},
            {"wildcard", {u"1%"_s, {}}},
            {"other letter case", {u"ABC"_s, {}}},
            {"apostrophe", {u"a'b"_s, u"Tırnak"_s}},
        });
    }
    void readyMade() {
        QFETCH(const ReadyRow, row);
        m_shop->run(
            u"INSERT INTO urunler_hazir (barkod, urun) VALUES ('111', 'Hazır'), ('abc', 'Harf'), "
            "('a''b', 'Tırnak')"_s);
        open();
        press(*form().kisiekleme2);
        fill({row.typed, u"-"_s});
        if (!row.name.isEmpty())
            m_shop->boxes.expect(metin(u"BILGI"_s), metin(u"URUN_TANINDI"_s), MessageBoxAnswer::ok);
        catalogue().hazirbarkodbak();
        QCOMPARE(form().urun2->text(), row.name.isEmpty() ? u"-"_s : row.name);
        QTRY_COMPARE(form().fiyat->hasFocus(), !row.name.isEmpty());
    }
};

int main(int argc, char** argv) {
    return runTests<TestUrunlerActions>(argc, argv);
}

#include "test_urunler_actions.moc"
