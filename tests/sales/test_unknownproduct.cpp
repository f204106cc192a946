#include <QLineEdit>

#include "database/engineerror.h"
#include "salestest.h"

using namespace kovanix;

/// The panel that makes a product of a barcode that has none, and sells it.
class UnknownProductTest : public SalesTest {
    Q_OBJECT

    struct AFailingInsertRow {
        QStringList breaking, mending;
        QString description;
        QString shown;  ///< the name: as it would be stored, once it has got that far
    };
    struct TheBannerRow {
        QString way;
        int answer;
    };

    bool panelIsOpen() const { return ui().urunbulunamadiframesi->isVisible(); }
    QStringList fields() const {
        return {ui().bulunulamayaurun->text(), ui().urunadi->text(), ui().urunsatisi->text()};
    }
    int productCount() const {
        return m_shop->rows("SELECT COUNT(*) FROM urunler").value(0).value(0).toInt();
    }
    void expectUnknownBox(int answer = MessageBoxAnswer::goOn) const {
        m_shop->boxes.expect("Bilgi", "Bu ürün daha önce kaydedilmemiş", answer);
    }

private Q_SLOTS:
    void captions() {
        const std::pair<const char*, const char*> controls[] = {{"urunbuunamadibeklet", "ÜRÜN BULUNAMADI"},
                                                                {"Label1", "Barkodu"},
                                                                {"Label2", "ürün adı"},
                                                                {"Label3", "Satış fiyatı"},
                                                                {"urunbuunamadikaydet", "KAYDET"},
                                                                {"urunbulunamadikapat", "KAPAT"}};
        for (const auto& [control, text] : controls)
            QCOMPARE(captionOf(control), text);
        const QStringList keys{"12: 1", "13: 4", "14: 7", "15: ,", "16: 2", "17: 3",
                               "18: 5", "19: 6", "20: 8", "21: 9", "22: 0", "23: SİL"};
        QCOMPARE(captionsOf("bununamayanurunfiyat"), keys);
    }

    // --- the whole road

    void fromTheScanToTheSale_data() {
        QTest::addColumn<QString>("password");
        QTest::newRow("plain file") << "";
        QTest::newRow("password file") << "gizli";
    }
    void fromTheScanToTheSale() {
        QFETCH(QString, password);
        if (!password.isEmpty())
            openShop(password);
        m_shop->scan(goods::bread);
        m_shop->press(*ui().resim2);
        m_shop->typeInto(*ui().adet, "4");
        ui().barkod->setFocus();
        m_shop->scan(unknown);
        QVERIFY(panelIsOpen());
        QTRY_VERIFY(ui().urunbuunamadibeklet->hasFocus());
        QCOMPARE(fields(), (QStringList{unknown, "", ""}));
        QCOMPARE(ui().barkod->text(), "");
        QCOMPARE(ui().adet->text(), "");
        QCOMPARE(m_shop->lines(), 1);

        press(*ui().urunadi);
        m_shop->type("ılık çilekli süt");
        pressKeys("bununamayanurunfiyat", {12, 16, 15, 18});  // 12,5
        press(*ui().urunbuunamadikaydet);

        QCOMPARE(products(unknown), (QList<QVariantList>{{unknown, "ILIK ÇİLEKLİ SÜT", 12.5, 12.5, 1.0}}));
        QVERIFY(!panelIsOpen());
        QTRY_VERIFY(ui().barkod->hasFocus());
        QCOMPARE(fields(), (QStringList{unknown, "", ""}));
        QCOMPARE(ui().barkod->text(), "");
        QCOMPARE(ui().adet->text(), "");
        QCOMPARE(m_shop->lines(), 2);
        QCOMPARE(m_shop->line(2), (QStringList{unknown, "ILIK ÇİLEKLİ SÜT", "1", "12,50", "12,50"}));
        QCOMPARE(m_shop->toplam(), "22,50");
        QCOMPARE(m_shop->kalan(), "177,50");

        m_shop->key(Qt::Key_F1);
        QCOMPARE(products(unknown).value(0).value(4), 0.0);
        QCOMPARE(soldLines().value(1),
                 (QVariantList{unknown, "ILIK ÇİLEKLİ SÜT", 1.0, 12.5, 12.5, 0.0, 12.5}));
        m_shop->scan(unknown);  // known from now on
        QVERIFY(!panelIsOpen());
        QCOMPARE(m_shop->lines(), 1);
    }

    void nothingElseIsStored() {
        fillInUnknown("sakız", "1");
        auto expected = tables();
        const QVariantList row = [this] {
            press(*ui().urunbuunamadikaydet);
            return m_shop->rows("SELECT * FROM urunler").constLast();
        }();
        expected["urunler"].append(row);
        QCOMPARE(row.contains(unknown), true);
        auto found = tables();
        for (auto* each : {&expected, &found})
            each->remove("sqlite_sequence");
        QCOMPARE(found, expected);
    }

    void aSecondScanOfTheNewProductMerges() {
        fillInUnknown("sakız", "1,5");
        press(*ui().urunbuunamadikaydet);
        m_shop->scan(unknown);
        QCOMPARE(m_shop->lines(), 1);
        QCOMPARE(m_shop->line(1), (QStringList{unknown, "SAKIZ", "2", "1,50", "3,00"}));
    }

    void byKeyboardAlone() {
        m_shop->scan(unknown);
        m_shop->key(Qt::Key_Tab);
        QVERIFY(ui().bulunulamayaurun->hasFocus());
        m_shop->key(Qt::Key_Tab);
        m_shop->type("su");
        m_shop->key(Qt::Key_Tab);
        m_shop->type("5");
        m_shop->key(Qt::Key_Tab);
        m_shop->key(Qt::Key_Return);
        QCOMPARE(m_shop->line(1), (QStringList{unknown, "SU", "1", "5,00", "5,00"}));
    }

    // --- what can go wrong

    void withoutAConnection() {
        if (ShopFixture::isOnServer())
            QSKIP("moves the file away");
        fillInUnknown("sakız", "3");
        const auto before = texts();
        loseDatabase();
        m_shop->boxes.expectAny(MessageBoxAnswer::ok);  // the open's own box
        m_shop->boxes.expect("Hata", noDatabase, MessageBoxAnswer::ok);
        press(*ui().urunbuunamadikaydet);
        QCOMPARE(m_boxes.value(1).icon, QMessageBox::Critical);
        QVERIFY(panelIsOpen());
        QCOMPARE(texts(), before);
        bringDatabaseBack();
        QCOMPARE(productCount(), 5);
        press(*ui().urunbuunamadikaydet);
        QCOMPARE(m_shop->line(1), (QStringList{unknown, "SAKIZ", "1", "3,00", "3,00"}));
        QCOMPARE(productCount(), 6);
    }

    void aFailingInsert_data() {
        QTest::addColumn<AFailingInsertRow>("row");
        const auto row = [](const char* name, const QStringList& breaking, const QStringList& mending,
                            const QString& description, const QString& shown) {
            QTest::newRow(name) << AFailingInsertRow{breaking, mending, description, shown};
        };
        row("the file refuses the row",
            QStringList{"CREATE TRIGGER dur BEFORE INSERT ON urunler BEGIN SELECT RAISE(ABORT, 'dolu'); END"},
            QStringList{"DROP TRIGGER dur"}, describeFailure(DatabaseError::Kind::value, "dolu"), "SAKIZ");
        // Another program took it away.
        row("no table", QStringList{"ALTER TABLE urunler RENAME TO eski"},
            QStringList{"ALTER TABLE eski RENAME TO urunler"},
            describeFailure(DatabaseError::Kind::noSuchTable, ShopFixture::noTable("urunler")), "sakız");
        row("a view in the table's place",
            QStringList{"ALTER TABLE urunler RENAME TO eski", "CREATE VIEW urunler AS SELECT * FROM eski"},
            QStringList{"DROP VIEW urunler", "ALTER TABLE eski RENAME TO urunler"},
            "cannot modify urunler because it is a view", "SAKIZ");
    }
    void aFailingInsert() {
        if (ShopFixture::isOnServer())
            QSKIP("statements of a file");
        QFETCH(const AFailingInsertRow, row);
        fillInUnknown("", "3");
        paste(*ui().urunadi, "sakız");
        for (const QString& statement : row.breaking)
            m_shop->run(statement);
        const auto before = tables();
        m_shop->boxes.expect("Hata", noDatabase + ": " + row.description, MessageBoxAnswer::ok);
        press(*ui().urunbuunamadikaydet);
        QCOMPARE(m_boxes.value(0).icon, QMessageBox::Critical);
        QCOMPARE(m_boxes.value(0).buttons, QStringList{"Tamam"});
        QVERIFY(panelIsOpen());
        QCOMPARE(ui().bulunulamayaurun->text(), unknown);
        QCOMPARE(ui().urunadi->text(), row.shown);
        QCOMPARE(ui().urunsatisi->text(), "3");
        QCOMPARE(ui().barkod->text(), "");
        QCOMPARE(m_shop->lines(), 0);
        QCOMPARE(tables(), before);
        for (const QString& statement : row.mending)
            m_shop->run(statement);
        press(*ui().urunbuunamadikaydet);
        QCOMPARE(products(unknown), (QList<QVariantList>{{unknown, "SAKIZ", 3.0, 3.0, 1.0}}));
        QCOMPARE(m_shop->line(1), (QStringList{unknown, "SAKIZ", "1", "3,00", "3,00"}));
        QVERIFY(!panelIsOpen());
    }

    void theNameIsShownAsItWouldBeStored() {
        fillInUnknown("", "3");
        paste(*ui().urunadi, QString(60, u'i'));
        m_shop->refuse("INSERT", "urunler", "dolu");
        m_shop->boxes.expect("Hata", noDatabase + ": " + describeFailure(DatabaseError::Kind::value, "dolu"),
                             MessageBoxAnswer::ok);
        press(*ui().urunbuunamadikaydet);
        QCOMPARE(ui().urunadi->text(), QString(50, u'İ'));
    }

    // --- leaving

    void kapatKeepsTheFields() {
        fillInUnknown("sakız", "3");
        press(*ui().urunbulunamadikapat);
        QVERIFY(!panelIsOpen());
        QTRY_VERIFY(ui().barkod->hasFocus());
        QCOMPARE(fields(), (QStringList{unknown, "SAKIZ", "3"}));
        QCOMPARE(productCount(), 5);
        QCOMPARE(m_shop->lines(), 0);
        m_shop->scan("4321");  // and shows them again at the next unknown barcode
        QCOMPARE(fields(), (QStringList{"4321", "SAKIZ", "3"}));
    }

    void escapeOnTheBanner() {
        fillInUnknown("sakız", "3");
        ui().barkod->setText("12");
        ui().urunbuunamadibeklet->setFocus();
        m_shop->key(Qt::Key_Escape);
        QVERIFY(panelIsOpen());
        QCOMPARE(fields(), (QStringList{unknown, "", ""}));
        QCOMPARE(ui().barkod->text(), "");
        QTRY_VERIFY(ui().barkod->hasFocus());
        m_shop->scan(goods::bread);  // sells below the panel
        QCOMPARE(m_shop->lines(), 1);
        QVERIFY(panelIsOpen());
    }

    void otherKeysOnTheBannerDoNothing_data() {
        QTest::addColumn<int>("key");
        const auto row = [](const char* name, int key) { QTest::newRow(name) << key; };
        row("a digit", int(Qt::Key_5));
        row("a letter", int(Qt::Key_A));
        row("F1", int(Qt::Key_F1));
        row("F9", int(Qt::Key_F9));
        row("Backspace", int(Qt::Key_Backspace));
    }
    void otherKeysOnTheBannerDoNothing() {
        QFETCH(int, key);
        m_shop->scan(goods::bread);
        fillInUnknown("sakız", "3");
        ui().urunbuunamadibeklet->setFocus();
        const auto before = texts();
        m_shop->key(Qt::Key(key));
        QCOMPARE(texts(), before);
        QVERIFY(panelIsOpen());
        QVERIFY(ui().urunbuunamadibeklet->hasFocus());
    }

    // --- the banner

    void theBanner_data() {
        QTest::addColumn<TheBannerRow>("row");
        for (const char* way : {"press", "Enter", "Space"}) {
            QTest::addRow("%s, cancel", way) << TheBannerRow{way, MessageBoxAnswer::cancel};
            QTest::addRow("%s, try again", way) << TheBannerRow{way, MessageBoxAnswer::tryAgain};
            QTest::addRow("%s, continue", way) << TheBannerRow{way, MessageBoxAnswer::goOn};
            QTest::addRow("%s, Escape", way) << TheBannerRow{way, BoxAnswers::escape};
        }
    }
    void theBanner() {
        QFETCH(const TheBannerRow, row);
        fillInUnknown("sakız", "3");
        ui().urunbuunamadibeklet->setFocus();
        const auto before = texts();
        const auto stored = tables();
        expectUnknownBox(row.answer);
        if (row.way == "press")
            press(*ui().urunbuunamadibeklet);
        else
            m_shop->key(row.way == "Enter" ? Qt::Key_Return : Qt::Key_Space);
        QCOMPARE(m_boxes.size(), 1);
        QCOMPARE(m_boxes.at(0).buttons, (QStringList{"İptal", "Yeniden dene", "Devam"}));
        QCOMPARE(m_boxes.at(0).icon, QMessageBox::NoIcon);
        QCOMPARE(m_boxes.at(0).defaultButton, "İptal");
        QCOMPARE(texts(), before);  // whatever the answer
        QCOMPARE(tables(), stored);
        QVERIFY(panelIsOpen());
    }

    void aFurtherScanEndsInTheBox_data() {
        QTest::addColumn<QString>("barcode");
        const auto row = [](const char* name, const QString& barcode) { QTest::newRow(name) << barcode; };
        row("known", goods::milk);
        row("unknown", "4321");
        row("the same again", unknown);
    }
    void aFurtherScanEndsInTheBox() {
        QFETCH(QString, barcode);
        m_shop->scan(goods::bread);
        m_shop->scan(unknown);
        const auto before = texts();
        expectUnknownBox();
        m_shop->scan(barcode);
        QCOMPARE(m_boxes.size(), 1);
        QCOMPARE(texts(), before);
        QVERIFY(panelIsOpen());
    }

    void aPressOnAnotherColumnMeanwhileLosesTheSale() {
        // The product is made; the sale is lost as for every entry with another column current.
        m_shop->scan(goods::bread);
        fillInUnknown("sakız", "3");
        grid().setRow(1);
        grid().setCol(2);
        press(*ui().urunbuunamadikaydet);
        QCOMPARE(products(unknown).size(), 1);
        QCOMPARE(m_shop->lines(), 1);
        QCOMPARE(grid().row(), 2);
        QCOMPARE(grid().col(), 1);
        QVERIFY(!panelIsOpen());
    }
};

int main(int argc, char** argv) {
    return runTests<UnknownProductTest>(argc, argv);
}

#include "test_unknownproduct.moc"
