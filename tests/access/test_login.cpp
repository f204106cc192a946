#include "app/session.h"
#include "appearance/menu.h"
#include "loginfixture.h"
#include "rows.h"
#include "runtests.h"
#include "sales/satisekrani.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

/// Logging in through the real screen, with real keys.
class LoginTest : public QObject {
    Q_OBJECT

    struct PasswordsRow {
        QString file;
        QVariant stored;
        QString entered;
        bool accepted;
        QVariant after;  ///< what the row holds then
    };
    struct NumberColumnsRow {
        QString type, literal, entered;
        bool accepted;
    };
    struct AnUpgradeThatCantBeStoredRow {
        QString trigger, after;
    };
    struct RolesRow {
        QVariant yetki;
        bool manager;
    };
    struct TheMenusButtonOfACashierRow {
        QString yetki;
        bool enabled;
    };
    struct TheWarehouseRow {
        QString yetki;
        bool stays;
    };
    struct TwoUsersOfOneNameRow {
        int place;
        QString entered;
        bool accepted;
    };
    struct ApostrophesEverywhereRow {
        QString file, typed;
    };

private Q_SLOTS:
    void passwords_data() {
        QTest::addColumn<PasswordsRow>("row");
        const auto add = [](const QString& file, const QString& name, const QVariant& stored,
                            const QString& entered, bool accepted, const QVariant& after) {
            QTest::newRow(qUtf8Printable(name)) << PasswordsRow{file, stored, entered, accepted, after};
        };
        const auto row = [&](const QString& name, const QVariant& stored, const QString& entered,
                             bool accepted,
                             const QVariant& after) { add({}, name, stored, entered, accepted, after); };
        const QString whole = hashed("1234");
        row(u"none"_s, u""_s, u""_s, true, u""_s);
        row(u"null"_s, QVariant(), u""_s, true, QVariant());
        row(u"none, something entered"_s, u""_s, u"1"_s, false, u""_s);
        row(u"hashed"_s, whole, u"1234"_s, true, whole);
        row(u"hashed, wrong"_s, whole, u"1235"_s, false, whole);
        row(u"hashed, nothing entered"_s, whole, u""_s, false, whole);
        row(u"hashed in upper case"_s, whole.toUpper(), u"1234"_s, true, whole.toUpper());
        row(u"hashed, Turkish letters"_s, hashed("\xFEifre"), u"şifre"_s, true, hashed("\xFEifre"));
        row(u"cut hash, nothing entered"_s, whole.left(50), u""_s, true, whole.left(50));
        row(u"cut hash, its password"_s, whole.left(50), u"1234"_s, false, whole.left(50));
        row(u"bare prefix"_s, u"sha256:"_s, u""_s, true, u"sha256:"_s);
        row(u"plain"_s, u"gizli"_s, u"gizli"_s, true, hashed("gizli"));
        row(u"plain, blanks around"_s, u"gizli"_s, u" gizli "_s, true, hashed("gizli"));
        // The case and the form that were typed are what is hashed.
        row(u"plain, another case"_s, u"gizli"_s, u"GİZLİ"_s, true, hashed("G\xDDZL\xDD"));
        row(u"plain 007"_s, u"007"_s, u"7"_s, true, hashed("7"));
        row(u"plain, wrong"_s, u"gizli"_s, u"gizlo"_s, false, u"gizli"_s);
        row(u"plain, nothing entered"_s, u"gizli"_s, u""_s, false, u"gizli"_s);
        row(u"a number in a text column"_s, 1234, u"1234"_s, true, hashed("1234"));
        row(u"plain with an apostrophe"_s, u"o'neil"_s, u"o'neil"_s, true, hashed("o'neil"));
        // The same on a file with a password.
        add(u"kilit"_s, u"password file, none"_s, QVariant(), u""_s, true, QVariant());
        add(u"kilit"_s, u"password file, hashed"_s, whole, u"1234"_s, true, whole);
        add(u"kilit"_s, u"password file, hashed, wrong"_s, whole, u"12345"_s, false, whole);
        add(u"kilit"_s, u"password file, plain"_s, u"gizli"_s, u"Gizli"_s, true, hashed("Gizli"));
        add(u"kilit"_s, u"password file, a number"_s, 1234, u"01234"_s, true, hashed("01234"));
    }
    void passwords() {
        QFETCH(const PasswordsRow, row);
        LoginFixture shop(row.file);
        shop.addUser(u"Ayşe"_s, row.stored);
        shop.addUser(u"Mehmet"_s, u"başka"_s);
        QList<QVariantList> expected = shop.users();
        if (!row.after.isNull())
            expected[0][2] = row.after;
        shop.open();
        if (row.accepted)
            shop.enter(row.entered);
        else
            shop.enterWrong(row.entered);
        QCOMPARE(shop.isLoggedIn(), row.accepted);
        QVERIFY(allAnswered(shop.boxes));
        QCOMPARE(shop.users(), expected);
        QCOMPARE(shop.users().at(0).at(2).isNull(), row.after.isNull());
    }

    void numberColumns_data() {
        QTest::addColumn<NumberColumnsRow>("row");
        const auto row = [](const char* name, const QString& type, const QString& literal,
                            const QString& entered, bool accepted) {
            QTest::newRow(name) << NumberColumnsRow{type, literal, entered, accepted};
        };
        row("double, as typed", u"DOUBLE"_s, u"1234"_s, u"1234"_s, true);
        row("double, a zero in front", u"DOUBLE"_s, u"1234"_s, u"01234"_s, true);
        row("double, another number", u"DOUBLE"_s, u"1234"_s, u"1235"_s, false);
        row("double, nothing entered", u"DOUBLE"_s, u"1234"_s, u""_s, false);
        row("double zero isn't nothing", u"DOUBLE"_s, u"0"_s, u""_s, false);
        row("double with a fraction", u"DOUBLE"_s, u"12.5"_s, u"12,5"_s, true);
        row("double null", u"DOUBLE"_s, u"NULL"_s, u""_s, true);
        row("integer", u"INTEGER"_s, u"1234"_s, u"1234"_s, true);
        if (!ShopFixture::isOnServer())
            row("no affinity, a real", u"BLOB"_s, u"1234.0"_s, u"1234"_s, true);
        // The engine turns the number into text on its way into such a column, decimals and all.
        row("text column, a real, as its text", u"TEXT(50)"_s, u"1234.0"_s, u"1234.0"_s, true);
        row("text column, a real, as typed once", u"TEXT(50)"_s, u"1234.0"_s, u"1234"_s, false);
    }
    void numberColumns() {
        QFETCH(const NumberColumnsRow, row);
        LoginFixture shop;
        shop.makePasswordColumn(row.type);
        shop.run(u"INSERT INTO kullanici (personeladi, sifre, yetki) VALUES ('Ayşe', %1, 'Yönetici')"_s.arg(
            row.literal));
        shop.open();
        if (row.accepted)
            shop.enter(row.entered);
        else
            shop.enterWrong(row.entered);
        QCOMPARE(shop.isLoggedIn(), row.accepted);
        QVERIFY(allAnswered(shop.boxes));
        if (!row.accepted || row.entered.isEmpty())
            return;
        // A server's column of numbers refuses the hash, and the password stays what it is.
        const QString stored = shop.storedPassword(u"Ayşe"_s).toString();
        if (ShopFixture::isOnServer() && !row.type.startsWith(u"TEXT"_s))
            QCOMPARE(stored, row.literal);
        else
            QCOMPARE(stored, hashed(row.entered.toLatin1()));
    }

    void afterTheUpgrade() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u"gizli"_s);
        shop.open();
        shop.enter(u"gizli"_s);
        QVERIFY(shop.isLoggedIn());
        unloadAllScreens();
        shop.open();
        shop.enterWrong(u"GİZLİ"_s);  // a hashed row knows its case
        shop.enter(u"gizli"_s);
        QVERIFY(shop.isLoggedIn());
        QVERIFY(allAnswered(shop.boxes));
    }

    void anUpgradeThatCantBeStored_data() {
        addRows<AnUpgradeThatCantBeStoredRow>(
            {{"refused",
              {u"CREATE TRIGGER dar BEFORE UPDATE ON kullanici WHEN length(NEW.sifre) > 50 "
               "BEGIN SELECT RAISE(ABORT, 'The field is too small'); END"_s,
               u"gizli"_s}},
             {"cut",
              {u"CREATE TRIGGER dar AFTER UPDATE ON kullanici WHEN length(NEW.sifre) > 50 "
               "BEGIN UPDATE kullanici SET sifre = substr(NEW.sifre, 1, 50) WHERE id = NEW.id; END"_s,
               hashed("gizli").left(50)}}});
    }
    void anUpgradeThatCantBeStored() {
        if (ShopFixture::isOnServer())
            QSKIP("triggers of a file");
        QFETCH(const AnUpgradeThatCantBeStoredRow, row);
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u"gizli"_s);
        shop.run(row.trigger);
        shop.open();
        shop.enter(u"gizli"_s);
        QVERIFY(shop.isLoggedIn());
        QVERIFY(allAnswered(shop.boxes));
        QCOMPARE(shop.storedPassword(u"Ayşe"_s).toString(), row.after);
    }

    void roles_data() {
        addRows<RolesRow>({{"Yönetici", {u"Yönetici"_s, true}},
                           {"upper case", {u"YÖNETİCİ"_s, true}},
                           {"upper case with ordinary I", {u"YÖNETICI"_s, true}},
                           {"lower case", {u"yönetici"_s, true}},
                           {"lower case with dotless i", {u"yönetıcı"_s, true}},
                           {"without the dots", {u"yonetici"_s, true}},
                           {"upper case without the dots", {u"YONETICI"_s, true}},
                           {"upper case with the capitals' dots alone", {u"YONETİCİ"_s, true}},
                           {"blanks around", {u"  Yönetici "_s, true}},
                           {"the ö in two characters", {u"Yo\u0308netici"_s, true}},
                           {"the ö as an unknown sign", {u"Y?netici"_s, true}},
                           {"the ö missing", {u"Ynetici"_s, true}},
                           {"as stored in texts", {u"Y&netici"_s, true}},
                           {"a longer start", {u"Yardımcı yönetici"_s, true}},
                           {"Kasiyer", {u"Kasiyer"_s, false}},
                           {"empty", {u""_s, false}},
                           {"null", {QVariant(), false}},
                           {"a longer end", {u"Yönetici yardımcısı"_s, false}},
                           {"another start", {u"Genel yönetici"_s, false}},
                           {"netici alone", {u"netici"_s, false}},
                           {"an apostrophe", {u"Yönetici'"_s, false}},
                           {"a number", {1, false}}});
    }
    void roles() {
        QFETCH(const RolesRow, row);
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, hashed("1234"), row.yetki);
        girisyetki = 77;
        girissifre = u"önceki"_s;
        // Whatever the screens that they open do to them.
        for (QWidget* button : {screen<satisekrani>().ui.vkCommand2, screen<satisekrani>().ui.vkCommand3})
            button->setEnabled(true);
        shop.open();
        shop.enter(u" 1234"_s);
        QVERIFY(shop.isLoggedIn());
        QVERIFY(allAnswered(shop.boxes));
        QCOMPARE(girisyetki, row.manager ? 1 : 0);
        // Other roles leave it as it was.
        QCOMPARE(girissifre, row.manager ? u"1234"_s : u"önceki"_s);
        const SalesControls& sales = screen<satisekrani>().ui;
        QCOMPARE(sales.vkCommand2->isEnabled(), row.manager);
        QCOMPARE(sales.vkCommand3->isEnabled(), row.manager);
        QVERIFY(sales.vkCommand1->isEnabled());
        QVERIFY(sales.kaydet->isEnabled());
        QVERIFY(!loaded<menu>());
    }

    void theMenusButtonOfACashier_data() {
        addRows<TheMenusButtonOfACashierRow>(
            {{"cashier", {u"Kasiyer"_s, false}}, {"manager", {u"Yönetici"_s, true}}});
    }
    void theMenusButtonOfACashier() {
        QFETCH(const TheMenusButtonOfACashierRow, row);
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u""_s, row.yetki);
        shop.open();
        girisyetki = 1;  // so that the menu itself leaves its buttons alone
        screen<menu>().ui.vkCommand3->setEnabled(true);
        shop.enter(u""_s);
        QVERIFY(shop.isLoggedIn());
        QCOMPARE(screen<menu>().ui.vkCommand3->isEnabled(), row.enabled);
    }

    void theWarehouse_data() {
        addRows<TheWarehouseRow>({{"as written", {u"depo sevk"_s, true}},
                                  {"upper case", {u"DEPO SEVK"_s, true}},
                                  {"blanks around", {u" Depo Sevk "_s, true}},
                                  {"with an ö", {u"DEPÖ SEVK"_s, true}},
                                  {"two blanks inside", {u"depo  sevk"_s, false}},
                                  {"depo alone", {u"depo"_s, false}}});
    }
    void theWarehouse() {
        QFETCH(const TheWarehouseRow, row);
        LoginFixture shop;
        shop.addUser(u"Depo"_s, u"gizli"_s, row.yetki);
        girisyetki = 77;
        girissifre = u"önceki"_s;
        shop.open();
        shop.enter(u"gizli"_s);
        QVERIFY(allAnswered(shop.boxes));
        QCOMPARE(shop.isLoggedIn(), !row.stays);
        QCOMPARE(loaded<satisekrani>(), !row.stays);
        QCOMPARE(girisyetki, row.stays ? 77 : 0);
        QCOMPARE(girissifre, u"önceki"_s);
        // The password was the right one all the same.
        QCOMPARE(shop.storedPassword(u"Depo"_s).toString(), hashed("gizli"));
        if (row.stays)
            QVERIFY(shop.login().isVisible());
    }

    void aWrongPassword() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, hashed("1234"));
        shop.addUser(u"Mehmet"_s, hashed("5678"));
        girisyetki = 77;
        shop.open();
        shop.choose(1);
        for (int attempt = 0; attempt < 5; ++attempt) {  // no count, no lock-out
            shop.enterWrong(u"1234"_s);
            QCOMPARE(shop.ui().sifre->text(), u""_s);
            shop.login().activateWindow();
            QTRY_VERIFY(shop.ui().sifre->hasFocus());
            QCOMPARE(shop.ui().kullanici->currentRow(), 1);
            QVERIFY(!loaded<satisekrani>());
        }
        QCOMPARE(girisyetki, 77);
        shop.enter(u"5678"_s);
        QVERIFY(shop.isLoggedIn());
        QVERIFY(allAnswered(shop.boxes));
    }

    void eachUserByTheirOwnPassword() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, hashed("1111"));
        shop.addUser(u"Mehmet"_s, u"2222"_s, u"Kasiyer"_s);
        shop.addUser(u"Fatma"_s, u""_s, u"Kasiyer"_s);
        shop.open();
        shop.choose(2);
        shop.enterWrong(u"1111"_s);
        shop.choose(1);
        shop.enterWrong(u"1111"_s);
        shop.choose(0);
        shop.enterWrong(u"2222"_s);
        shop.logIn(1, u"2222"_s);
        QVERIFY(shop.isLoggedIn());
        QCOMPARE(girisyetki, 0);
        QVERIFY(allAnswered(shop.boxes));
        QCOMPARE(shop.storedPassword(u"Mehmet"_s).toString(), hashed("2222"));
    }

    void twoUsersOfOneName_data() {
        addRows<TwoUsersOfOneNameRow>({{"the first one", {0, u"1111"_s, true}},
                                       {"the first one by the other's password", {0, u"2222"_s, false}},
                                       {"the second one", {1, u"2222"_s, true}},
                                       {"the second one by the other's password", {1, u"1111"_s, false}}});
    }
    void twoUsersOfOneName() {
        QFETCH(const TwoUsersOfOneNameRow, row);
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u"1111"_s);
        shop.addUser(u"Ayşe"_s, u"2222"_s, u"Kasiyer"_s);
        QList<QVariantList> expected = shop.users();
        shop.open();
        QCOMPARE(entries(*shop.ui().kullanici), (QStringList{u"Ayşe"_s, u"Ayşe"_s}));
        shop.choose(row.place);
        if (row.accepted) {
            shop.enter(row.entered);
            expected[row.place][2] = hashed(row.entered.toLatin1());
            QCOMPARE(girisyetki, row.place == 0 ? 1 : 0);
        } else {
            shop.enterWrong(row.entered);
        }
        QCOMPARE(shop.isLoggedIn(), row.accepted);
        QCOMPARE(shop.users(), expected);
        QVERIFY(allAnswered(shop.boxes));
    }

    void apostrophesEverywhere_data() {
        QTest::addColumn<ApostrophesEverywhereRow>("row");
        const QStringList tries{u"' OR '1'='1"_s, u"'; DELETE FROM kullanici; --"_s,
                                u"'"_s,           u"''"_s,
                                u"\\'"_s,         u"x' UNION SELECT 'x"_s,
                                u"%"_s,           u"\" OR 1=1 --"_s,
                                u"#1/1/2020#"_s,  u"[sifre]"_s};
        for (const QString& typed : tries)
            QTest::newRow(qUtf8Printable(typed)) << ApostrophesEverywhereRow{QString(), typed};
        QTest::newRow("password file") << ApostrophesEverywhereRow{u"kilit"_s, tries.first()};
    }
    void apostrophesEverywhere() {
        QFETCH(const ApostrophesEverywhereRow, row);
        LoginFixture shop(row.file);
        shop.addUser(u"D'Artagnan' OR '1'='1"_s, hashed("1234"), u"'Kasiyer'"_s);
        shop.addUser(row.typed, row.typed, u"Kasiyer"_s);
        QList<QVariantList> expected = shop.users();
        shop.open();
        QCOMPARE(entries(*shop.ui().kullanici), (QStringList{u"D'Artagnan' OR '1'='1"_s, row.typed}));
        shop.enterWrong(row.typed);
        QCOMPARE(shop.users(), expected);
        // The table is asked by name too: the id that the list knows is gone.
        shop.run(u"UPDATE kullanici SET id = id + 100, sifre = 'dd'"_s);
        expected = shop.users();
        shop.enterWrong(row.typed);
        QCOMPARE(shop.users(), expected);
        shop.choose(1);
        shop.enterWrong(row.typed + u"x"_s);
        QCOMPARE(shop.users(), expected);
        shop.enter(u"dd"_s);
        QVERIFY(shop.isLoggedIn());
        // Accepted by name; the list's old id leads to no row, so nothing is upgraded.
        QCOMPARE(shop.users(), expected);
        QVERIFY(allAnswered(shop.boxes));
    }

    void aPlainPasswordOfApostrophes() {
        LoginFixture shop;
        shop.addUser(u"O'Neil"_s, u"' OR '1'='1"_s);
        shop.addUser(u"Ayşe"_s, u"x"_s);
        QList<QVariantList> expected = shop.users();
        expected[0][2] = hashed("' OR '1'='1");
        shop.open();
        shop.enter(u"' OR '1'='1"_s);
        QVERIFY(shop.isLoggedIn());
        QCOMPARE(shop.users(), expected);
        QVERIFY(allAnswered(shop.boxes));
    }

    void aLongName() {
        LoginFixture shop;
        const QString name = QString(199, u'W') + u'\'';
        shop.addUser(name, u"gizli"_s);
        shop.open();
        const QListWidget& list = *shop.ui().kullanici;
        QCOMPARE(entries(list), QStringList{name});
        QVERIFY(list.visualItemRect(list.item(0)).width() <= list.viewport()->width());
        shop.enter(u"gizli"_s);
        QVERIFY(shop.isLoggedIn());
    }

    void aLongPassword() {
        LoginFixture shop;
        const QByteArray password(2000, 'x');
        shop.addUser(u"Ayşe"_s, hashed(password));
        shop.open();
        shop.ui().sifre->setText(QString::fromLatin1(password));
        QTest::keyClick(shop.ui().sifre, Qt::Key_Return);
        QVERIFY(shop.isLoggedIn());
    }

    void byTheButton() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, hashed("1234"));
        shop.open();
        QTest::keyClicks(shop.ui().sifre, u"1234"_s);
        QTest::mouseClick(shop.ui().cmdOK, Qt::LeftButton);
        QVERIFY(shop.isLoggedIn());
    }

    void theFocusOfTheTill() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u""_s);
        shop.open();
        shop.enter(u""_s);
        QVERIFY(shop.isLoggedIn());
        QVERIFY(screen<satisekrani>().isMaximized());
        QTRY_VERIFY(screen<satisekrani>().ui.barkod->hasFocus());
    }
};

int main(int argc, char** argv) {
    return runTests<LoginTest>(argc, argv);
}

#include "test_login.moc"
