#include <QApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTextBoundaryFinder>

#include "app/modTurkce.h"
#include "app/session.h"
#include "data/baglanmamodulu.h"
#include "database/engineerror.h"
#include "productstest.h"
#include "rows.h"
#include "runtime/screenregistry.h"
#include "screencontract.h"
#include "widgets/adodc.h"
#include "widgets/tdbgrid.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct RefusedRow {
    QStringList texts;  ///< barcode, name, purchase price, sale price, stock
    QString notice;
    QLineEdit* Ui::urunler::*focus;
};

struct NumbersRow {
    QString purchase;
    QString sale;
    QString stock;
    QVariantList stored;  ///< purchase, sale, stock
};

struct TextsRow {
    QString barcode;
    QString name;
    QString storedBarcode;
    QString storedName;
};

}  // namespace

Q_DECLARE_METATYPE(RefusedRow)
Q_DECLARE_METATYPE(NumbersRow)
Q_DECLARE_METATYPE(TextsRow)

/// What KAYDET and KAYDET VE KAPAT refuse, store, say and leave behind.
class TestUrunlerSaving : public ProductsTest {
    Q_OBJECT

    const QStringList complete{u"777"_s, u"YENİ"_s, u"1,5"_s, u"2,25"_s, u"3"_s};
    const QVariantList completeStored{u"777"_s, u"YENİ"_s, 1.5, 2.25, 3.0};

    void editRow(int row) {
        open();
        choose(row);
        press(*form().duzenle2);
    }

private Q_SLOTS:
    // --- what is refused
    void refused_data() {
        const QString some = u"1"_s;
        addRows<RefusedRow>({
            {"no barcode", {{{}, {}, {}, {}, {}}, u"MSG_BARKOD_BOS"_s, &Ui::urunler::barkod2}},
            {"no name", {{some, {}, {}, {}, {}}, u"MSG_URUN_ADI_BOS"_s, &Ui::urunler::urun2}},
            {"no price", {{some, some, {}, {}, {}}, u"MSG_SATIS_FIYAT_BOS"_s, &Ui::urunler::fiyat}},
            {"price of letters",
             {{some, some, {}, u"x"_s, {}}, u"MSG_SATIS_FIYAT_BOS"_s, &Ui::urunler::fiyat}},
            {"price 12.5", {{some, some, {}, u"12.5"_s, {}}, u"MSG_SATIS_FIYAT_BOS"_s, &Ui::urunler::fiyat}},
            {"price ,", {{some, some, {}, u","_s, {}}, u"MSG_SATIS_FIYAT_BOS"_s, &Ui::urunler::fiyat}},
            {"price of a blank",
             {{some, some, {}, u" "_s, {}}, u"MSG_SATIS_FIYAT_BOS"_s, &Ui::urunler::fiyat}},
        });
    }
    void refused() {
        QFETCH(const RefusedRow, row);
        addNew(row.texts);
        expectNotice(row.notice);
        catalogue().ui.kayit->click();
        QTRY_VERIFY((form().*row.focus)->hasFocus());
        QCOMPARE(stored().size(), 5);
        QCOMPARE(fields(), row.texts);  // purchase price and stock aren't looked at before
    }

    void saveAndCloseRefuses_data() { refused_data(); }
    void saveAndCloseRefuses() {
        QFETCH(const RefusedRow, row);
        addNew(row.texts);
        expectNotice(row.notice);
        form().kaydet2->click();
        QCOMPARE(stored().size(), 5);
        // Only what is empty keeps the frame open.
        QCOMPARE(form().kisiekle2->isVisible(), row.texts[3].isEmpty());
    }

    // --- what is stored
    void addsAndGoesOn() {
        addNew(complete);
        choose(1);
        const QSignalSpy reads(form().Adodc2, &Adodc::rowsChanged);
        expectNotice(u"MSG_EKLENDI"_s);
        press(*form().kayit);
        QCOMPARE(m_boxes[0].icon, QMessageBox::NoIcon);
        QCOMPARE(stored().size(), 6);
        QCOMPARE(stored().last(), completeStored);
        QCOMPARE(listed(5), (QStringList{u"6"_s, u"777"_s, u"YENİ"_s, u"1,5"_s, u"2,25"_s, u"3"_s}));
        QCOMPARE(reads.count(), 1);
        QCOMPARE(fields(), (QStringList{{}, {}, {}, {}, {}}));
        QVERIFY(form().kisiekle2->isVisible());
        QCOMPARE(form().kisiekle2->caption(), u"EKLE"_s);
        QTRY_VERIFY(form().barkod2->hasFocus());
        QCOMPARE(form().sutun2->text(), u"2"_s);  // a save leaves the selection
        QVERIFY(!kayit().isOpen());
    }

    void saveAndCloseCloses() {
        addNew(complete);
        expectNotice(u"MSG_EKLENDI"_s);
        press(*form().kaydet2);
        QCOMPARE(stored().last(), completeStored);
        QVERIFY(!form().kisiekle2->isVisible());
        QTRY_VERIFY(form().TDBGrid1->hasFocus());
    }

    void saveAndCloseClosesOverARefusedPrice() {
        addNew({u"777"_s, u"YENİ"_s, u"1"_s, u"x"_s, u"4"_s});
        expectNotice(u"MSG_SATIS_FIYAT_BOS"_s);
        press(*form().kaydet2);
        QCOMPARE(stored().size(), 5);
        QVERIFY(!form().kisiekle2->isVisible());
        QCOMPARE(fields(), (QStringList{{}, {}, u"1"_s, {}, u"4"_s}));
    }

    void numbers_data() {
        addRows<NumbersRow>({
            {"empty is 0", {{}, u"1"_s, {}, {0.0, 1.0, 0.0}}},
            {"letters are 0", {u"x"_s, u"1"_s, u"y"_s, {0.0, 1.0, 0.0}}},
            {"12.5 is 0 where it isn't asked for", {u"12.5"_s, u"1"_s, u"12.5"_s, {0.0, 1.0, 0.0}}},
            {"groups", {u"1.234,56"_s, u"1.234,56"_s, u"1.234"_s, {1234.56, 1234.56, 1234.0}}},
            {"a comma at the end", {u"12,"_s, u"12,"_s, u",5"_s, {12.0, 12.0, 0.5}}},
            {"negative", {u"-1"_s, u"-2,5"_s, u"-3"_s, {-1.0, -2.5, -3.0}}},
            {"blanks around", {u" 1 "_s, u" 2 "_s, u" 3 "_s, {1.0, 2.0, 3.0}}},
        });
    }
    void numbers() {
        QFETCH(const NumbersRow, row);
        addNew({u"777"_s, u"A"_s, row.purchase, row.sale, row.stock});
        expectNotice(u"MSG_EKLENDI"_s);
        form().kayit->click();
        QCOMPARE(stored().last().mid(2), row.stored);
    }

    void texts_data() {
        const QString fifty = u"12345678901234567890123456789012345678901234567890"_s;
        const QString smile = u"😀"_s;             // two units
        const QString marked = u"e\u0301"_s;      // a letter and its mark
        const QString family = u"👩‍🌾"_s;  // one picture of five units
        addRows<TextsRow>({
            {"fifty", {fifty, fifty, fifty, fifty}},
            {"sixty digits", {fifty + u"1234567890"_s, fifty + u"x"_s, fifty, fifty}},
            {"a pair isn't split", {u"1"_s, fifty.left(49) + smile, u"1"_s, fifty.left(49)}},
            {"a mark stays with its letter", {u"1"_s, fifty.left(49) + marked, u"1"_s, fifty.left(49)}},
            {"a joined picture is whole", {u"1"_s, fifty.left(47) + family, u"1"_s, fifty.left(47)}},
            {"blanks stay", {u" 1 "_s, u" a "_s, u" 1 "_s, u" a "_s}},
            {"small letters stay", {u"1"_s, u"ıi"_s, u"1"_s, u"ıi"_s}},
            {"control characters", {u"1\u0001"_s, u"\u0007a\u007F"_s, u"1\u0001"_s, u"\u0007a\u007F"_s}},
        });
        for (const auto& [name, text] : hostileTexts()) {
            if (text.contains(QChar(u'\0')))
                continue;
            const QString cut = text.size() > 50 ? text.left(50) : text;
            QTest::newRow(qUtf8Printable(name)) << TextsRow{text, text, cut, cut};
        }
    }
    void texts() {
        QFETCH(const TextsRow, row);
        addNew({row.barcode, row.name, {}, u"1"_s, {}});
        expectNotice(u"MSG_EKLENDI"_s);
        form().kayit->click();
        QCOMPARE(stored().size(), 6);
        QCOMPARE(stored().last().mid(0, 2), (QVariantList{row.storedBarcode, row.storedName}));
    }

    void aDuplicateThatWasNeverLeftIsInserted() {
        addNew({goods::milk, u"ÇİFT"_s, u"1"_s, u"2"_s, u"3"_s});
        expectNotice(u"MSG_EKLENDI"_s);
        form().kayit->click();
        QCOMPARE(products(goods::milk).size(), 2);
    }

    // --- changing
    void changesAndGoesOnAdding() {
        editRow(1);
        form().urun2->setText(u"Süt"_s);
        form().fiyat->setText(u"40"_s);
        const QSignalSpy reads(form().Adodc2, &Adodc::rowsChanged);
        expectNotice(u"MSG_DUZENLENDI"_s);
        press(*form().kayit);
        QCOMPARE(stored()[1], (QVariantList{goods::milk, u"Süt"_s, 25.0, 40.0, 10.0}));
        QCOMPARE(stored().size(), 5);
        QCOMPARE(reads.count(), 1);
        QCOMPARE(form().kisiekle2->caption(), u"EKLE"_s);
        QVERIFY(form().kisiekle2->isVisible());
        QVERIFY(form().barkod2->isEnabled());
        QTRY_VERIFY(form().barkod2->hasFocus());
        QCOMPARE(form().sutun2->text(), u"2"_s);
    }

    void changesTheFirstOfABarcode() {
        m_shop->addProduct(goods::milk, u"İkinci"_s, 1, 2, 3.0);
        editRow(5);
        form().urun2->setText(u"Hangisi"_s);
        expectNotice(u"MSG_DUZENLENDI"_s);
        form().kayit->click();
        QCOMPARE(stored()[1], (QVariantList{goods::milk, u"Hangisi"_s, 1.0, 2.0, 3.0}));
        QCOMPARE(stored()[5], (QVariantList{goods::milk, u"İkinci"_s, 1.0, 2.0, 3.0}));
    }

    void changesARowThatIsGone() {
        editRow(1);
        m_shop->run(u"DELETE FROM urunler WHERE no = 2"_s);
        expectFailure(
            describeFailure(DatabaseError::Kind::noRow,
                            u"Either BOF or EOF is True, or the current record has been deleted."_s));
        form().kayit->click();
        QCOMPARE(stored().size(), 4);
        QCOMPARE(form().kisiekle2->caption(), u"D!ZENLE"_s);  // nothing is lost
        QCOMPARE(form().barkod2->text(), goods::milk);
        QVERIFY(!kayit().isOpen());
    }

    void aBarcodeStoredWithBlanksIsNotFoundAgain() {
        m_shop->addProduct(u" 55"_s, u"Boşluklu"_s, 1, 2);
        editRow(5);
        expectFailure(
            describeFailure(DatabaseError::Kind::noRow,
                            u"Either BOF or EOF is True, or the current record has been deleted."_s));
        form().kayit->click();
        QCOMPARE(stored()[5][1], u"Boşluklu"_s);
    }

    void theOtherTillsSaleIsNotUndone() {
        open();
        choose(1);
        m_shop->run(u"UPDATE urunler SET stok = stok - 4 WHERE no = 2"_s);
        press(*form().duzenle2);
        form().fiyat->setText(u"33"_s);
        expectNotice(u"MSG_DUZENLENDI"_s);
        press(*form().kaydet2);
        QCOMPARE(stored()[1], (QVariantList{goods::milk, u"Tam Yağlı Süt 1 L"_s, 25.0, 33.0, 6.0}));
    }

    void theSearchStaysInForce() {
        open();
        auto* cell = form().TDBGrid1->findChild<QLineEdit*>(u"TDBGrid1_filter_2"_s);
        cell->setFocus();
        type(u"süt"_s);
        choose(0);
        press(*form().duzenle2);
        form().urun2->setText(u"Yarım Yağlı Süt"_s);
        expectNotice(u"MSG_DUZENLENDI"_s);
        press(*form().kayit);
        QCOMPARE(names(), QStringList{u"Yarım Yağlı Süt"_s});
        QCOMPARE(cell->text(), u"süt"_s);
    }

    // --- failures
    void withoutADatabase() {
        if (ShopFixture::isOnServer())
            QSKIP("moves the file away");
        addNew(complete);
        loseDatabase();
        m_shop->boxes.expectAny(MessageBoxAnswer::ok);  // the connection's own
        m_shop->boxes.expect(u"Hata"_s, metin(u"DB_HATA"_s), MessageBoxAnswer::ok);
        form().kayit->click();
        QCOMPARE(m_boxes.last().icon, QMessageBox::Critical);
        QCOMPARE(fields(), complete);
        bringDatabaseBack();
    }

    void aLockedFile_data() {
        QTest::addColumn<bool>("adds");
        QTest::newRow("adding") << true;
        QTest::newRow("changing") << false;
    }
    void aLockedFile() {
        if (ShopFixture::isOnServer())
            QSKIP("locks a file");
        QFETCH(const bool, adds);
        if (adds)
            addNew(complete);
        else
            editRow(1);
        const QStringList typed = fields();
        const auto before = stored();
        dontWaitForLocks();
        {
            const auto lock = m_shop->lockFile();
            expectFailure(describeFailure(DatabaseError::Kind::busy, u"database is locked"_s));
            form().kayit->click();
        }
        QCOMPARE(m_boxes.last().icon, QMessageBox::Critical);
        QCOMPARE(stored(), before);
        QCOMPARE(fields(), typed);
        QCOMPARE(form().kisiekle2->adds(), adds);
        // The next press stores it, once.
        expectNotice(adds ? u"MSG_EKLENDI"_s : u"MSG_DUZENLENDI"_s);
        form().kayit->click();
        QCOMPARE(stored().size(), before.size() + (adds ? 1 : 0));
    }

    void anOpenSharedRecordsetIsClosed() {
        addNew(complete);
        kayit().open(u"select * from kullanici"_s, baglanti());
        expectNotice(u"MSG_EKLENDI"_s);
        form().kayit->click();
        QCOMPARE(stored().last(), completeStored);
    }

    void aSaveIsInTheFileAtOnce() {
        if (ShopFixture::isOnServer())
            QSKIP("copies the file");
        addNew(complete);
        expectNotice(u"MSG_EKLENDI"_s);
        form().kayit->click();
        QTRY_COMPARE(rowsInCopy(u"select * from urunler where barkod='777'"_s), 1);
    }
};

int main(int argc, char** argv) {
    return runTests<TestUrunlerSaving>(argc, argv);
}

#include "test_urunler_saving.moc"
