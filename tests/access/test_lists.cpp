#include <QMessageBox>
#include <QScopeGuard>
#include <functional>

#include "app/modTurkce.h"
#include "app/session.h"
#include "data/baglanmamodulu.h"
#include "loginfixture.h"
#include "runtests.h"
#include "sales/satisekrani.h"
#include "servercluster.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

/// The list of users and its hidden companions: in step, out of step, out of date, empty, unreadable.
class ListsTest : public QObject {
    Q_OBJECT

    struct APasswordChangedMeanwhileRow {
        QVariant changed;
        QString entered;
        bool accepted;
    };

    struct ServerFallsAwayRow {
        std::function<void()> trouble;
        bool isTold;
    };

    static QList<int> places(const Ui::frmLogin& ui) {
        return {ui.kullanici->currentRow(), ui.kullaniciid->currentRow(), ui.sifreler->currentRow(),
                ui.acilisi->currentRow()};
    }

private Q_SLOTS:
    void listing() {
        LoginFixture shop;
        shop.addUser(u"  Ayşe "_s, u" gizli "_s, u" Yönetici "_s);
        shop.addUser(u"Bekir"_s, QVariant(), QVariant());
        shop.addUser(u"Ayşe"_s, hashed("1"), u"Kasiyer"_s);
        shop.run(u"DELETE FROM kullanici WHERE id = 2"_s);
        shop.run(u"INSERT INTO kullanici (id, personeladi, sifre, yetki) VALUES (40, NULL, 12.0, 'x&y')"_s);
        const Ui::frmLogin& ui = shop.open().ui;
        QCOMPARE(entries(*ui.kullanici), (QStringList{u"Ayşe"_s, u"Ayşe"_s, u""_s}));
        QCOMPARE(entries(*ui.kullaniciid), (QStringList{u"1"_s, u"3"_s, u"40"_s}));
        QCOMPARE(entries(*ui.sifreler), (QStringList{u"gizli"_s, hashed("1"), u"12.0"_s}));
        QCOMPARE(entries(*ui.acilisi), (QStringList{u"Yönetici"_s, u"Kasiyer"_s, u"x&y"_s}));
        QCOMPARE(places(ui), (QList{0, 0, 0, 0}));
        for (const QListWidget* hidden : {ui.kullaniciid, ui.sifreler, ui.acilisi})
            QVERIFY(!hidden->isVisible());
        QVERIFY(ui.kullanici->isVisible());
        QTRY_VERIFY(ui.sifre->hasFocus());
        QVERIFY(allAnswered(shop.boxes));
    }

    void choosing_data() {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("by mouse") << false;
        QTest::newRow("by arrow keys in the list") << true;
    }
    void choosing() {
        QFETCH(const bool, byKey);
        LoginFixture shop;
        for (const QString& name : {u"Ayşe"_s, u"Bekir"_s, u"Cem"_s})
            shop.addUser(name, name);
        const Ui::frmLogin& ui = shop.open().ui;
        const auto go = [&](int row, Qt::Key key) {
            ui.kullanici->setFocus();
            QVERIFY(!ui.sifre->hasFocus());
            if (byKey)
                QTest::keyClick(ui.kullanici, key);
            else
                shop.choose(row);
            QCOMPARE(places(ui), (QList{row, row, row, row}));
            QVERIFY(ui.sifre->hasFocus());
        };
        go(1, Qt::Key_Down);
        go(2, Qt::Key_Down);
        go(1, Qt::Key_Up);
        go(2, Qt::Key_End);
        go(0, Qt::Key_Home);
        if (!byKey)
            go(0, Qt::Key_unknown);  // the one that is chosen already
    }

    void arrowsInThePassword() {
        LoginFixture shop;
        for (const QString& name : {u"Ayşe"_s, u"Bekir"_s, u"Cem"_s})
            shop.addUser(name, name);
        const Ui::frmLogin& ui = shop.open().ui;
        QTest::keyClicks(ui.sifre, u"Be"_s);
        for (const auto& [key, row] : {std::pair{Qt::Key_Up, 0},
                                       {Qt::Key_Down, 1},
                                       {Qt::Key_Down, 2},
                                       {Qt::Key_Down, 2},
                                       {Qt::Key_Up, 1}}) {
            QTest::keyClick(ui.sifre, key);
            QCOMPARE(places(ui), (QList{row, row, row, row}));
        }
        QTest::keyClicks(ui.sifre, u"kir"_s);
        QTest::keyClick(ui.sifre, Qt::Key_Return);
        QVERIFY(shop.isLoggedIn());
        QCOMPARE(girissifre, u"Bekir"_s);
    }

    void nothingSelected() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u"gizli"_s);
        shop.addUser(u"Bekir"_s, u"başka"_s);
        const Ui::frmLogin& ui = shop.open().ui;
        ui.kullanici->setCurrentRow(-1);
        shop.enter(u"gizli"_s);
        QVERIFY(shop.isLoggedIn());
    }

    void anEmptyTable() {
        LoginFixture shop;
        shop.boxes.expect(words::notice, words::addUser, MessageBoxAnswer::ok);
        const Ui::frmLogin& ui = shop.open().ui;
        QVERIFY(allAnswered(shop.boxes));
        QCOMPARE(ui.kullanici->count(), 0);
        // A press lists once more, with the listing's notice, and then has its own.
        shop.boxes.expect(words::notice, words::addUser, MessageBoxAnswer::ok);
        shop.boxes.expect(words::notice, words::addUser, MessageBoxAnswer::ok);
        ui.cmdOK->click();
        QVERIFY(allAnswered(shop.boxes));
        shop.boxes.expect(words::notice, words::addUser, MessageBoxAnswer::ok);
        shop.boxes.expect(words::notice, words::addUser, MessageBoxAnswer::ok);
        ui.sifre->setFocus();
        shop.enter(u""_s);  // Enter is the same as a press
        QVERIFY(allAnswered(shop.boxes));
        QVERIFY(!loaded<satisekrani>());

        shop.addUser(u"Ayşe"_s, u"gizli"_s);
        shop.enterWrong(u"yanlış"_s);
        QCOMPARE(entries(*ui.kullanici), QStringList{u"Ayşe"_s});
        QCOMPARE(places(ui), (QList{0, 0, 0, 0}));
        shop.enter(u"gizli"_s);
        QVERIFY(shop.isLoggedIn());
        QVERIFY(allAnswered(shop.boxes));
    }

    void anEmptyTableAndTheFirstUserAtOnce() {
        LoginFixture shop;
        shop.boxes.expect(words::notice, words::addUser, MessageBoxAnswer::ok);
        shop.open();
        shop.addUser(u"Ayşe"_s, u"gizli"_s);
        shop.ui().sifre->setFocus();
        shop.enter(u"gizli"_s);
        QVERIFY(shop.isLoggedIn());
        QVERIFY(allAnswered(shop.boxes));
    }

    void aSecondListing() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u"1111"_s);
        shop.addUser(u"Bekir"_s, u"2222"_s);
        shop.addUser(u"Cem"_s, u"3333"_s);
        frmLogin& login = shop.open();
        shop.run(u"DELETE FROM kullanici WHERE id = 1"_s);
        login.FrmloginBaglantiSonrasi();
        QCOMPARE(entries(*login.ui.kullanici), (QStringList{u"Bekir"_s, u"Cem"_s}));
        QCOMPARE(entries(*login.ui.sifreler), (QStringList{u"2222"_s, u"3333"_s}));
        QCOMPARE(entries(*login.ui.acilisi), (QStringList{u"Yönetici"_s, u"Yönetici"_s}));
        // Behind the old ones: Cem now stands beside Bekir's id.
        QCOMPARE(entries(*login.ui.kullaniciid), (QStringList{u"1"_s, u"2"_s, u"3"_s, u"2"_s, u"3"_s}));
        shop.choose(1);
        QCOMPARE(places(login.ui), (QList{1, 1, 1, 1}));
        shop.enter(u"3333"_s);
        QVERIFY(shop.isLoggedIn());
        // The hash goes to the id that stands there, which is another user's.
        QCOMPARE(shop.storedPassword(u"Cem"_s).toString(), u"3333"_s);
        QCOMPARE(shop.storedPassword(u"Bekir"_s).toString(), hashed("3333"));
        // A screen loaded anew mends it.
        unloadAllScreens();
        shop.open();
        QCOMPARE(entries(*shop.ui().kullaniciid), (QStringList{u"2"_s, u"3"_s}));
        QVERIFY(allAnswered(shop.boxes));
    }

    void anotherUsersPasswordByTheWrongId() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u"1111"_s);
        shop.addUser(u"Bekir"_s, u"2222"_s);
        frmLogin& login = shop.open();
        shop.run(u"DELETE FROM kullanici WHERE id = 1"_s);
        shop.addUser(u"Cem"_s, u"3333"_s);
        login.FrmloginBaglantiSonrasi();
        shop.choose(1);  // Cem, beside Bekir's id
        shop.enter(u"2222"_s);
        QVERIFY(shop.isLoggedIn());
        QVERIFY(allAnswered(shop.boxes));
    }

    void aPasswordChangedMeanwhile_data() {
        QTest::addColumn<APasswordChangedMeanwhileRow>("row");
        QTest::newRow("the new one, hashed")
            << APasswordChangedMeanwhileRow{QVariant(hashed("yeni")), u"yeni"_s, true};
        QTest::newRow("the new one, plain")
            << APasswordChangedMeanwhileRow{QVariant(u"yeni"_s), u"yeni"_s, true};
        // The list is asked first, and still knows it.
        QTest::newRow("the old one") << APasswordChangedMeanwhileRow{QVariant(hashed("yeni")), u"eski"_s,
                                                                     true};
        QTest::newRow("neither") << APasswordChangedMeanwhileRow{QVariant(hashed("yeni")), u"başka"_s, false};
        QTest::newRow("taken away, nothing entered")
            << APasswordChangedMeanwhileRow{QVariant(u""_s), u""_s, true};
        QTest::newRow("taken away, something entered")
            << APasswordChangedMeanwhileRow{QVariant(u""_s), u"yeni"_s, false};
    }
    void aPasswordChangedMeanwhile() {
        QFETCH(const APasswordChangedMeanwhileRow, row);
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, hashed("eski"));
        shop.open();
        shop.run(u"UPDATE kullanici SET sifre = '%1'"_s.arg(row.changed.toString()));
        if (row.accepted)
            shop.enter(row.entered);
        else
            shop.enterWrong(row.entered);
        QCOMPARE(shop.isLoggedIn(), row.accepted);
        const bool upgraded = row.changed == u"yeni"_s;
        QCOMPARE(shop.storedPassword(u"Ayşe"_s), upgraded ? QVariant(hashed("yeni")) : row.changed);
        QVERIFY(allAnswered(shop.boxes));
    }

    void aUserDeletedMeanwhile() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, hashed("1111"));
        shop.addUser(u"Bekir"_s, hashed("2222"));
        shop.open();
        shop.run(u"DELETE FROM kullanici WHERE id = 1"_s);
        shop.enterWrong(u"yanlış"_s);
        // The list still knows the password.
        shop.enter(u"1111"_s);
        QVERIFY(shop.isLoggedIn());
        QVERIFY(allAnswered(shop.boxes));
    }

    void aUserDeletedAndEnteredAnew() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, hashed("1111"));
        shop.open();
        shop.run(u"DELETE FROM kullanici"_s);
        shop.addUser(u"Ayşe"_s, u"2222"_s);  // another id, found by name
        shop.enterWrong(u"3333"_s);
        shop.enter(u"2222"_s);
        QVERIFY(shop.isLoggedIn());
        QCOMPARE(shop.storedPassword(u"Ayşe"_s).toString(), u"2222"_s);  // the old id leads to no row
        QVERIFY(allAnswered(shop.boxes));
    }

    void idsOfText() {
        LoginFixture shop;
        shop.run(u"DROP TABLE kullanici"_s);
        shop.run(
            u"CREATE TABLE kullanici (id TEXT(50), personeladi TEXT(50), sifre TEXT(50), yetki TEXT(50))"_s);
        shop.run(u"INSERT INTO kullanici VALUES ('a''b', 'Ayşe', 'eski', 'Kasiyer')"_s);
        shop.run(u"INSERT INTO kullanici VALUES (NULL, 'Bekir', 'eski', 'Kasiyer')"_s);
        shop.open();
        QCOMPARE(entries(*shop.ui().kullaniciid), (QStringList{u"a'b"_s, u""_s}));
        shop.run(u"UPDATE kullanici SET sifre = 'yeni'"_s);
        shop.choose(1);
        shop.enterWrong(u"yeni"_s);  // no id, so the table isn't asked
        shop.choose(0);
        shop.enterWrong(u"yine"_s);
        shop.enter(u"yeni"_s);
        QVERIFY(shop.isLoggedIn());
        QCOMPARE(shop.storedPassword(u"Ayşe"_s).toString(), hashed("yeni"));
        QCOMPARE(shop.storedPassword(u"Bekir"_s).toString(), u"yeni"_s);
        QVERIFY(allAnswered(shop.boxes));
    }

    void manyUsers() {
        LoginFixture shop;
        shop.run(
            u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 500) "
            "INSERT INTO kullanici (personeladi, sifre, yetki) SELECT 'Kişi ' || i, i, 'Kasiyer' FROM n"_s);
        shop.open();
        QCOMPARE(shop.ui().kullanici->count(), 500);
        shop.logIn(499, u"500"_s);
        QVERIFY(shop.isLoggedIn());
        QCOMPARE(shop.storedPassword(u"Kişi 500"_s).toString(), hashed("500"));
        QVERIFY(allAnswered(shop.boxes));
    }

    void noDatabaseAtTheStart() {
        LoginFixture shop;
        baglantikapat();
        QVERIFY(QFile::remove(shop.databaseFile()));
        semahazir = false;  // no file was ever open
        const auto openFails = [&shop] { shop.boxes.expectAny(MessageBoxAnswer::ok); };
        openFails();
        shop.open();
        QVERIFY(allAnswered(shop.boxes));
        openFails();
        shop.boxes.expect(words::error, words::noDatabase, MessageBoxAnswer::ok);
        shop.ui().cmdOK->click();
        QVERIFY(allAnswered(shop.boxes));
        QVERIFY(shop.login().isVisible());
        // The file comes back: the next press lists and logs in.
        shop.makeDatabase();
        QVERIFY(baglantihazir());
        shop.addUser(u"Ayşe"_s, u"gizli"_s);
        shop.ui().sifre->setFocus();
        shop.enter(u"gizli"_s);
        QVERIFY(shop.isLoggedIn());
        QVERIFY(!shop.ended);
        QVERIFY(allAnswered(shop.boxes));
    }

    void theDatabaseDisappears() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, hashed("gizli"));
        shop.open();
        baglantikapat();
        QVERIFY(QFile::rename(shop.databaseFile(), shop.file(u"başka.yerde"_s)));
        for (int press = 0; press < 2; ++press) {
            shop.boxes.expectAny(MessageBoxAnswer::ok);
            shop.boxes.expect(words::error, words::noDatabase, MessageBoxAnswer::ok);
            shop.enter(u"gizli"_s);
            QVERIFY(allAnswered(shop.boxes));
            QVERIFY(shop.login().isVisible());
            QCOMPARE(shop.ui().sifre->text(), u"gizli"_s);
            shop.login().activateWindow();
        }
        QVERIFY(!loaded<satisekrani>());
        QVERIFY(QFile::rename(shop.file(u"başka.yerde"_s), shop.databaseFile()));
        shop.enter(u"gizli"_s);
        QVERIFY(shop.isLoggedIn());
        QVERIFY(!shop.ended);
        QVERIFY(allAnswered(shop.boxes));
    }

    void theFileIsMovedUnderAnOpenConnection() {
        if (ShopFixture::isOnServer())
            QSKIP("moves the file away");
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, hashed("gizli"));
        shop.open();
        for (const QString& tail : {u""_s, u"-wal"_s, u"-shm"_s})
            static_cast<void>(QFile::rename(shop.databaseFile() + tail, shop.file(u"başka"_s + tail)));
        // The list knows the password; the sales screen has a connection of its own, and tells.
        shop.boxes.expectAny(MessageBoxAnswer::ok);
        shop.enter(u"gizli"_s);
        QVERIFY(allAnswered(shop.boxes));
        QVERIFY(shop.isLoggedIn());
        QVERIFY(!shop.ended);
    }

    void theServerFallsAwayAheadOfTheList_data() {
        QTest::addColumn<ServerFallsAwayRow>("row");
        QTest::newRow("stopped") << ServerFallsAwayRow{[] { testServer().stop(); }, true};
        QTest::newRow("stands still") << ServerFallsAwayRow{[] { testServer().pause(); }, true};
        QTest::newRow("was started again") << ServerFallsAwayRow{[] {
                                                                     testServer().stop();
                                                                     testServer().restart();
                                                                 },
                                                                 false};
    }
    /// Between the open and the reading of the users.
    void theServerFallsAwayAheadOfTheList() {
        if (!ShopFixture::isOnServer())
            QSKIP("stops the server");
        QFETCH(const ServerFallsAwayRow, row);
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, hashed("gizli"));
        QVERIFY(baglantihazir());
        const auto back = qScopeGuard([] {
            testServer().resume();
            if (!testServer().isRunning())
                testServer().restart();
        });
        QStringList told;
        shop.boxes.askFor([&](const QMessageBox& box) {
            told.append(box.text());
            return MessageBoxAnswer::ok;
        });
        row.trouble();
        const Ui::frmLogin& ui = shop.open().ui;
        // The box that a server gives that is away at the start.
        QCOMPARE(told.size(), row.isTold ? 1 : 0);
        if (row.isTold) {
            QVERIFY2(told.first().startsWith(metin(u"MSG_DB_ACILAMADI"_s)), qPrintable(told.first()));
            QVERIFY2(told.first().contains(harfcevir(u"Veritabanı sunucusu"_s)), qPrintable(told.first()));
        }
        QCOMPARE(entries(*ui.kullanici), row.isTold ? QStringList() : QStringList{u"Ayşe"_s});
        QCOMPARE(entries(*ui.kullaniciid), row.isTold ? QStringList() : QStringList{u"1"_s});
        // The login button tries again, and lists them.
        testServer().resume();
        QVERIFY(testServer().isRunning() || testServer().restart());
        QTRY_VERIFY_WITH_TIMEOUT(baglantihazir(), 20000);
        shop.enter(u"gizli"_s);
        QVERIFY(shop.isLoggedIn());
    }

    void theConnectionIsClosed() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, hashed("gizli"));
        shop.open();
        baglantikapat();
        shop.enter(u"gizli"_s);  // opened again without a word
        QVERIFY(shop.isLoggedIn());
        QVERIFY(allAnswered(shop.boxes));
    }

    void theTableIsGone() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, hashed("gizli"));
        shop.open();
        shop.run(u"DROP TABLE kullanici"_s);
        shop.boxes.expectAny(MessageBoxAnswer::ok);
        QString said;
        connect(&shop.boxes, &BoxAnswers::opened, this,
                [&said](const QMessageBox& box) { said = box.windowTitle() + u'|' + box.text(); });
        shop.enter(u"başka"_s);
        QVERIFY2(said.startsWith(u"Hata|Giriş sırasında hata: "), qUtf8Printable(said));
        QVERIFY2(said.contains(ShopFixture::noTable(u"kullanici"_s)), qUtf8Printable(said));
        QVERIFY2(!said.contains(u"başka"), qUtf8Printable(said));
        QVERIFY(shop.login().isVisible());
        QVERIFY(!shop.ended);
        // The next press is heard.
        shop.enter(u"gizli"_s);
        QVERIFY(shop.isLoggedIn());
        QVERIFY(allAnswered(shop.boxes));
    }

    void theTableCantBeReadAtTheStart() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, hashed("gizli"));
        shop.run(u"ALTER TABLE kullanici RENAME TO eski"_s);
        shop.open();  // the list stays empty, without a word
        QVERIFY(allAnswered(shop.boxes));
        QCOMPARE(shop.ui().kullanici->count(), 0);
        QString said;
        shop.boxes.expectAny(MessageBoxAnswer::ok);
        connect(&shop.boxes, &BoxAnswers::opened, this,
                [&said](const QMessageBox& box) { said = box.text(); });
        shop.ui().cmdOK->click();
        QVERIFY2(said.startsWith(u"Giriş sırasında hata: "), qUtf8Printable(said));
        shop.run(u"ALTER TABLE eski RENAME TO kullanici"_s);
        shop.ui().sifre->setFocus();
        shop.enter(u"gizli"_s);
        QVERIFY(shop.isLoggedIn());
        QVERIFY(allAnswered(shop.boxes));
    }
};

int main(int argc, char** argv) {
    return runTests<ListsTest>(argc, argv);
}

#include "test_lists.moc"
