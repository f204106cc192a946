#include "listetest.h"

#include <QSignalSpy>

#include "database/engineerror.h"
#include "rows.h"
#include "widgets/adodc.h"
#include "widgets/look.h"

using namespace kovanix;

namespace {

/// What is entered, and what the table holds behind it.
struct EntryRow {
    QStringList entered;  ///< name, telephone, address, pasted
    QStringList stored;   ///< the same where it is left out
};

/// What somebody does on the screen while something is wrong.
struct PressRow {
    void (*prepare)(const liste&);
    const char* button;
};

/// Another till that holds the file.
class OtherTill {
public:
    explicit OtherTill(const QString& file) {
        m_connection.open("Data Source=" + file);
        m_connection.execute("BEGIN IMMEDIATE");
    }

private:
    Connection m_connection;  // lets go at its end
};

const QString name50 = QString(50, u'Ş');
const QString name60 = QString(60, u'Ş');

}  // namespace

class ListeRecordsTest : public ListeTest {
    Q_OBJECT

private Q_SLOTS:
    void init() { openBook(); }

    // --- adding

    void addOpensTheFrame() {
        open();
        edit(0);
        press(*book().kisiekleme2);
        QVERIFY(book().kisiekle2->isVisible());
        QCOMPARE(book().kisiekle2->caption(), "EKLE");
        QCOMPARE(book().kisiekle2->titleNote(), "Yeni kayıt");
        QCOMPARE(fields(), (QStringList{"", "", ""}));
        QVERIFY(book().txtMusteri->hasFocus());
    }

    void adds_data() {
        const QString farmer = "👩‍🌾";  // five units
        addRows<EntryRow>({{"ordinary", {{"Fidan Market", "05321180640", "KURTULUŞ CD. 56/A"}, {}}},
                           {"a name alone", {{"Fidan", "", ""}, {}}},
                           {"blanks stay", {{" Fidan ", " 5 ", " X "}, {}}},
                           {"a blank for a name", {{" ", "", ""}, {}}},
                           {"small letters that were pasted stay", {{"fidan", "5", "kurtuluş cd."}, {}}},
                           {"comma in the telephone", {{"Fidan", "0532,118", ""}, {}}},
                           {"name of 50", {{name50, "", ""}, {}}},
                           {"name of 60", {{name60, "", ""}, {name50, "", ""}}},
                           {"address of 60", {{"Fidan", "", name60}, {"Fidan", "", name50}}},
                           {"address of 100", {{"Fidan", "", name50 + name50}, {"Fidan", "", name50}}},
                           {"telephone of 120", {{"Fidan", name60 + name60, ""}, {}}},
                           {"an emoji across the 50th",
                            {{QString(48, u'a') + farmer, "", farmer + QString(43, u'a') + farmer},
                             {QString(48, u'a'), "", farmer + QString(43, u'a')}}},
                           {"emoji whole in the telephone", {{"Fidan", name50 + farmer, ""}, {}}},
                           {"apostrophes", {{"O'nun", "'", "'; DROP TABLE musteri;--''"}, {}}},
                           {"wildcards", {{"%_[a]*", "[%]", "100% [x] _"}, {}}},
                           {"symbols of the transcription", {{"|!#$@%&*^~{}", "|", "^#"}, {}}},
                           {"right to left", {{"\u202Eשלום\u200F", "", "\u202Eשלום"}, {}}},
                           {"markup", {{"<b>x</b>&amp;", "", "<script>"}, {}}},
                           {"line ends", {{"a\nb", "1\r2", "a\tb"}, {"a b", "1 2", "a b"}}},
                           {"number-like", {{"007", "1.234,56", "1e5"}, {}}}});
    }
    void adds() {
        QFETCH(const EntryRow, row);
        open();
        press(*book().kisiekleme2);
        fillIn(row.entered);
        notice("Eklendi");
        press(*book().kaydet2);
        const QStringList expected = row.stored.isEmpty() ? row.entered : row.stored;
        QCOMPARE(stored().size(), 4);
        QCOMPARE(stored().last(), (QVariantList{expected[0], expected[1], expected[2]}));
        QCOMPARE((QStringList{shown(1).last(), shown(2).last(), shown(3).last()}), expected);
        isClosed();
    }

    void nothingButCustomersIsWritten() {
        auto before = tables();
        open();
        press(*book().kisiekleme2);
        fillIn({"Fidan", "5", "X"});
        notice("Eklendi");
        press(*book().kaydet2);
        auto after = tables();
        QVERIFY(before.take("musteri") != after.take("musteri"));
        if (!ShopFixture::isOnServer())
            QVERIFY(before.take("sqlite_sequence") != after.take("sqlite_sequence"));
        QCOMPARE(after, before);
    }

    void aNameIsWanted_data() {
        QTest::addColumn<bool>("editing");
        QTest::newRow("adding") << false;
        QTest::newRow("editing") << true;
    }
    void aNameIsWanted() {
        QFETCH(const bool, editing);
        open();
        editing ? edit(0) : press(*book().kisiekleme2);
        fillIn({"", "5", "X"});
        const QString mode = book().kisiekle2->caption();
        notice("Müşteri adı alanını boş bırakmayın");
        press(*book().kaydet2);
        QVERIFY(book().kisiekle2->isVisible());
        QCOMPARE(book().kisiekle2->caption(), mode);
        QCOMPARE(fields(), (QStringList{"", "5", "X"}));
        QTRY_VERIFY(book().txtMusteri->hasFocus());
        QCOMPARE(stored().size(), 3);
        QCOMPARE(stored().first(), (QVariantList{"Ayhan Yıldız", "05324176028", "ÇINARLI MAH. 3"}));
    }

    /// A save keeps the order, the filter and the selected number.
    void theListKeepsItsPlaceBehindASave() {
        open();
        selectRow(1);
        m_shop->typeInto(field("TDBGrid1_filter_1"), "a");
        press(*book().kisiekleme2);
        fillIn({"Zzz", "", ""});
        notice("Eklendi");
        press(*book().kaydet2);
        QCOMPARE(shown(1), (QStringList{"Ayhan Yıldız", "Berna Aksoy", "Cemil Korkmaz"}));
        QCOMPARE(book().vkFrame1->titleNote(), "3 / 4 kayıt");
        QCOMPARE(book().sutun2->text(), "2");
        QTRY_VERIFY(rows().hasFocus());
    }

    /// The list is read once for a save.
    void aSaveReadsOnce() {
        open();
        press(*book().kisiekleme2);
        fillIn({"Fidan", "", ""});
        notice("Eklendi");
        QSignalSpy reads(book().Adodc2, &Adodc::rowsChanged);
        press(*book().kaydet2);
        QCOMPARE(reads.count(), 1);
    }

    // --- editing

    void editOpensCrossed() {
        open();
        edit(1);
        QVERIFY(book().kisiekle2->isVisible());
        QCOMPARE(book().kisiekle2->caption(), "D!ZENLE");  // never dressed
        QCOMPARE(book().kisiekle2->titleNote(), "Berna Aksoy");
        QCOMPARE(fields(), (QStringList{"Berna Aksoy", "YENİ MAH. 118", "05449021175"}));
        QVERIFY(book().telefon->hasFocus());
    }

    void twoEditsBringTheValuesBack() {
        open();
        const QVariantList before = stored()[1];
        edit(1);
        notice("Düzenlendi");
        press(*book().kaydet2);
        QCOMPARE(stored()[1], (QVariantList{before[0], before[2], before[1]}));
        QCOMPARE((QStringList{shown(2)[1], shown(3)[1]}), (QStringList{"YENİ MAH. 118", "05449021175"}));
        isClosed();
        edit(1);
        notice("Düzenlendi");
        press(*book().kaydet2);
        QCOMPARE(stored()[1], before);
        QCOMPARE(stored().size(), 3);
    }

    /// An address of another till's may be longer: whole as a telephone, cut on its way back.
    void aLongAddressTwiceRound() {
        customer("Uzun", "5", name60);
        open();
        for (const QVariantList& expected :
             {QVariantList{"Uzun", name60, "5"}, QVariantList{"Uzun", "5", name50}}) {
            edit(3);
            notice("Düzenlendi");
            press(*book().kaydet2);
            QCOMPARE(stored().last(), expected);
        }
    }

    void emptyAndMissingValues() {
        m_shop->run("INSERT INTO musteri (adi) VALUES ('Boş')");
        open();
        edit(3);
        QCOMPARE(fields(), (QStringList{"Boş", "", ""}));
        notice("Düzenlendi");
        press(*book().kaydet2);
        QCOMPARE(stored().last(), (QVariantList{"Boş", "", ""}));
    }

    void ofTwoOfOneNameTheFirstIsChanged() {
        customer("Ayhan Yıldız", "2", "İKİNCİ");
        open();
        edit(3);
        fillIn({"Ayhan Yıldız", "3", "ÜÇ"});
        notice("Düzenlendi");
        press(*book().kaydet2);
        QCOMPARE(stored().first(), (QVariantList{"Ayhan Yıldız", "3", "ÜÇ"}));
        QCOMPARE(stored().last(), (QVariantList{"Ayhan Yıldız", "2", "İKİNCİ"}));
    }

    void aChangedNameFindsNoRow() {
        const auto before = tables();
        open();
        edit(0);
        fillIn({"Ayhan Yılmaz", "1", "A"});
        failure(describeFailure(DatabaseError::Kind::noRow,
                                "Either BOF or EOF is True, or the current record has been deleted."));
        press(*book().kaydet2);
        QCOMPARE(tables(), before);
        isClosed();  // whatever became of the save
    }

    void blanksAroundTheNameAreStored() {
        open();
        edit(0);
        fillIn({" Ayhan Yıldız ", "1", "A"});
        notice("Düzenlendi");
        press(*book().kaydet2);
        QCOMPARE(stored().first(), (QVariantList{" Ayhan Yıldız ", "1", "A"}));
    }

    void aHostileNameFindsItsRow_data() {
        QTest::addColumn<QString>("name");
        for (const char* name :
             {"O'nun", "'' OR ''='", "%", "[a]", "a_b", "\\", "🍞👩‍🌾", "\"q\"", "#1#"})
            QTest::newRow(name) << name;
    }
    void aHostileNameFindsItsRow() {
        QFETCH(const QString, name);
        customer(name, "1", "A");
        open();
        edit(3);
        notice("Düzenlendi");
        press(*book().kaydet2);
        QCOMPARE(stored().last(), (QVariantList{name, "A", "1"}));
        QCOMPARE(stored().first(), (QVariantList{"Ayhan Yıldız", "05324176028", "ÇINARLI MAH. 3"}));
    }

    void editWantsASelection() {
        open();
        notice("Listeden bir Müşteri seçin");
        press(*book().duzenle2);
        QVERIFY(!book().kisiekle2->isVisible());
        QCOMPARE(book().kisiekle2->caption(), "D!ZENLE");  // before the question, as required
        press(*book().kisiekleme2);
        QCOMPARE(book().kisiekle2->caption(), "EKLE");
    }

    void editWantsARow() {
        open();
        selectRow(0);
        m_shop->typeInto(field("TDBGrid1_filter_1"), "yok böyle biri");
        notice("Listede Müşteri bulunmamaktadır");
        press(*book().duzenle2);
        QVERIFY(!book().kisiekle2->isVisible());
    }

    void editShowsWhatAnotherTillStored() {
        open();
        m_shop->run("UPDATE musteri SET telefon='1', adres='TAŞINDI' WHERE no=1");
        edit(0);
        QCOMPARE(fields(), (QStringList{"Ayhan Yıldız", "TAŞINDI", "1"}));
        QCOMPARE(shown(3).first(), "TAŞINDI");
    }

    void editOfACustomerWhoIsGone() {
        open();
        m_shop->run("DELETE FROM musteri WHERE no=1");
        edit(0);
        QCOMPARE(fields(), (QStringList{"Ayhan Yıldız", "ÇINARLI MAH. 3", "05324176028"}));
        failure(describeFailure(DatabaseError::Kind::noRow,
                                "Either BOF or EOF is True, or the current record has been deleted."));
        press(*book().kaydet2);
        QCOMPARE(stored().size(), 2);
        isClosed();
    }

    void theEditedRowStaysInSight() {
        setScreenMetricsSource([] { return ScreenMetrics{{800, 600}, 15, 15}; });
        for (int i = 0; i < 40; ++i)
            customer("Z" + QString::number(i), "", "");
        open();
        m_shop->key(Qt::Key_End);
        m_shop->key(Qt::Key_Up);
        const int current = static_cast<int>(book().Adodc2->recordset().current());
        press(*book().duzenle2);
        const QRect place = rows().visualRect(rows().model()->index(current, 0));
        QVERIFY(rows().viewport()->rect().contains(place));
        QVERIFY(rows().geometry().bottom() < book().kisiekle2->geometry().top());
        QCOMPARE(rows().viewport()->grab().toImage().pixelColor(place.left() + 2, place.center().y()),
                 roleColor(ColorRole::editedBar));
        press(*book().vazgec2);
        QVERIFY(rows().viewport()->grab().toImage().pixelColor(place.left() + 2, place.center().y()) !=
                roleColor(ColorRole::editedBar));
    }

    void cancelStoresNothing() {
        const auto before = tables();
        open();
        edit(0);
        fillIn({"X", "1", "Y"});
        press(*book().vazgec2);
        isClosed();
        QTRY_VERIFY(rows().hasFocus());
        QCOMPARE(book().sutun2->text(), "1");
        QCOMPARE(tables(), before);
    }

    // --- deleting

    /// Neither where a filter leaves no row, nor where an edit has taken the row out of what is shown.
    void deletesNothingThatCantBeSeen() {
        open();
        selectRow(0);
        m_shop->typeInto(field("TDBGrid1_filter_1"), "yok böyle biri");
        notice("Silmek istediğiniz adres seçin");
        press(*book().kisisil2);

        QTest::keyClick(&field("TDBGrid1_filter_1"), Qt::Key_Escape);
        QTest::keyClicks(&field("TDBGrid1_filter_2"), "05");
        edit(0);
        fillIn({"Ayhan Yıldız", "", ""});
        notice("Düzenlendi");
        press(*book().kaydet2);
        QCOMPARE(shown(1), (QStringList{"Berna Aksoy", "Cemil Korkmaz"}));
        notice("Silmek istediğiniz adres seçin");
        press(*book().kisisil2);
        QCOMPARE(stored().size(), 3);
    }

    void deletes() {
        open();
        m_shop->typeInto(field("TDBGrid1_filter_1"), "a");
        selectRow(1);
        question(MessageBoxAnswer::yes);
        notice("adres silindi");
        const QSignalSpy reads(book().Adodc2, &Adodc::rowsChanged);
        press(*book().kisisil2);
        QCOMPARE(reads.size(), 1);
        QCOMPARE(book().eklemedatasi2->recordset().totalCount(), 0);  // nobody sees what it would read
        QCOMPARE(stored().size(), 2);
        QCOMPARE(shown(1), (QStringList{"Ayhan Yıldız", "Cemil Korkmaz"}));
        QCOMPARE(book().vkFrame1->titleNote(), "2 / 2 kayıt");
        QCOMPARE(book().sutun2->text(), "");
        QTRY_VERIFY(rows().hasFocus());
        QCOMPARE(m_boxes.first().buttons, (QStringList{"Evet", "Hayır"}));
        QCOMPARE(m_boxes.first().icon, QMessageBox::Warning);
    }

    void deletesNothingWithoutAYes_data() {
        QTest::addColumn<int>("answer");
        QTest::newRow("no") << int(MessageBoxAnswer::no);
        QTest::newRow("Escape") << int(BoxAnswers::escape);
    }
    void deletesNothingWithoutAYes() {
        QFETCH(const int, answer);
        open();
        selectRow(1);
        question(answer);
        press(*book().kisisil2);
        QCOMPARE(stored().size(), 3);
        QCOMPARE(book().sutun2->text(), "2");
    }

    void deleteWantsASelection() {
        open();
        notice("Silmek istediğiniz adres seçin");
        press(*book().kisisil2);
        QCOMPARE(stored().size(), 3);
    }

    void aSecondDeleteWantsAnotherSelection() {
        open();
        selectRow(0);
        question(MessageBoxAnswer::yes);
        notice("adres silindi");
        press(*book().kisisil2);
        notice("Silmek istediğiniz adres seçin");
        press(*book().kisisil2);
        QCOMPARE(stored().size(), 2);
    }

    void deletingWhoIsGoneSaysNothing() {
        open();
        selectRow(0);
        m_shop->run("DELETE FROM musteri WHERE no=1");
        question(MessageBoxAnswer::yes);
        press(*book().kisisil2);
        QCOMPARE(stored().size(), 2);
        QCOMPARE(book().sutun2->text(), "");
    }

    void deletesTheNumberAndNoOther_data() {
        QTest::addColumn<QString>("number");
        for (const char* number : {"1 ", "01", "4"})
            QTest::newRow(number) << number;
    }
    void deletesTheNumberAndNoOther() {
        QFETCH(const QString, number);
        open();
        book().sutun2->setText(number);
        notice("Silmek istediğiniz adres seçin");
        press(*book().kisisil2);
        QCOMPARE(stored().size(), 3);
    }

    // --- when the file won't

    void aLockedFile_data() {
        addRows<PressRow>({{"adding", {ListeTest::beginToAdd, "kaydet2"}},
                           {"editing", {beginToEdit, "kaydet2"}},
                           {"deleting", {selectFirst, "kisisil2"}}});
    }
    void aLockedFile() {
        if (ShopFixture::isOnServer())
            QSKIP("locks a file");
        QFETCH(const PressRow, row);
        baglanti().execute("PRAGMA busy_timeout = 20");
        open();
        row.prepare(screen<liste>());
        const auto before = tables();
        auto lock = std::make_unique<OtherTill>(m_shop->databaseFile());
        const bool deletes = row.button == QByteArray("kisisil2");
        if (deletes)
            question(MessageBoxAnswer::yes);
        m_shop->boxes.expectAny(MessageBoxAnswer::ok);
        press(control(row.button));
        QCOMPARE(m_boxes.last().title, "Hata");
        QVERIFY2(m_boxes.last().text.startsWith(noDatabase + ": "), qUtf8Printable(m_boxes.last().text));
        lock.reset();
        QCOMPARE(tables(), before);
        if (!deletes)
            isClosed();
        // It goes on once the file is free.
        row.prepare(screen<liste>());
        if (deletes)
            question(MessageBoxAnswer::yes);
        m_shop->boxes.expectAny(MessageBoxAnswer::ok);
        press(control(row.button));
        QVERIFY(tables() != before);
    }

    void aRefusedRow_data() { aLockedFile_data(); }
    void aRefusedRow() {
        QFETCH(const PressRow, row);
        for (const char* write : {"INSERT", "UPDATE", "DELETE"})
            m_shop->refuse(write, "musteri", "dolu");
        open();
        row.prepare(screen<liste>());
        const auto before = tables();
        if (row.button == QByteArray("kisisil2"))
            question(MessageBoxAnswer::yes);
        failure(describeFailure(DatabaseError::Kind::value, "dolu"));
        press(control(row.button));
        QCOMPARE(tables(), before);
    }

    void noDatabaseAtAll_data() { aLockedFile_data(); }
    void noDatabaseAtAll() {
        if (ShopFixture::isOnServer())
            QSKIP("moves the file away");
        QFETCH(const PressRow, row);
        open();
        row.prepare(screen<liste>());
        loseDatabase();
        if (row.button == QByteArray("kisisil2"))
            question(MessageBoxAnswer::yes);
        m_shop->boxes.expectAny(MessageBoxAnswer::ok);  // the connection's own
        failure();
        press(control(row.button));
        bringDatabaseBack();
        QCOMPARE(stored().size(), 3);
    }

    void withoutItsTable() {
        m_shop->run("ALTER TABLE musteri RENAME TO gone");
        open();  // says nothing
        QCOMPARE(rows().accessibleDescription(), "Liste okunamadı. Ekranı kapatıp yeniden açın");
        m_shop->run("ALTER TABLE gone RENAME TO musteri");
    }

    void passwordFile() {
        openShop("gizli");
        open();
        press(*book().kisiekleme2);
        fillIn({"Fidan", "5", "X"});
        notice("Eklendi");
        press(*book().kaydet2);
        QCOMPARE(stored(), (QList<QVariantList>{{"Fidan", "5", "X"}}));
        edit(0);
        notice("Düzenlendi");
        press(*book().kaydet2);
        selectRow(0);
        question(MessageBoxAnswer::yes);
        notice("adres silindi");
        press(*book().kisisil2);
        QCOMPARE(stored(), QList<QVariantList>());
    }
};

int main(int argc, char** argv) {
    return runTests<ListeRecordsTest>(argc, argv);
}

#include "test_listerecords.moc"
