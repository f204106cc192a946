// A new shop: from an empty folder to the first sale.

#include <QTemporaryDir>

#include "access/firstscreen.h"
#include "access/kullanicilar.h"
#include "app/session.h"
#include "app/shopfolder.h"
#include "data/baglanmamodulu.h"
#include "entry.h"
#include "resetprocess.h"
#include "rows.h"
#include "runtests.h"
#include "sales/satisekrani.h"
#include "usersfixture.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

class FirstUserTest : public QObject {
    Q_OBJECT

    struct UserRow {
        QString password;
        QList<ExpectedBox> boxes;
    };
    struct WayRow {
        void (*leave)(kullanicilar&);
    };

    std::unique_ptr<LoginFixture> m_shop;

    static Ui::kullanicilar& users() { return screen<kullanicilar>().ui; }
    static void press(QWidget* control) { QTest::mouseClick(control, Qt::LeftButton); }
    static void type(const QString& text) {
        for (const QChar sign : text)
            QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), Qt::Key_unknown, QString(sign),
                                Qt::NoModifier);
    }
    static void enter() { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return); }
    void expect(const QList<ExpectedBox>& boxes) const {
        for (const ExpectedBox& box : boxes)
            m_shop->boxes.expect(box.title, box.text, box.answer);
    }
    static const ExpectedBox& addUser() {
        static const ExpectedBox box{words::notice, words::addUser};
        return box;
    }
    /// Opens the login of the empty shop, which opens the users' screen.
    void openEmpty() const {
        expect({addUser()});
        showFirstScreen();
        if (!QTest::qWaitFor(
                [] { return loaded<kullanicilar>() && screen<kullanicilar>().isActiveWindow(); }))
            qFatal("the users' screen doesn't become active");
    }

private Q_SLOTS:
    void init() { m_shop = std::make_unique<LoginFixture>(); }
    void cleanup() {
        QVERIFY(allAnswered(m_shop->boxes));
        m_shop.reset();
    }

    void fromAnEmptyFolderToTheFirstSale_data() {
        addRows<UserRow>(
            {{"a manager with a password", {u"gizli"_s, {notice(words::added)}}},
             {"a manager without one",
              {u""_s, {{words::warning, words::noPassword, MessageBoxAnswer::yes}, notice(words::added)}}}});
    }
    void fromAnEmptyFolderToTheFirstSale() {
        QFETCH(const UserRow, row);
        // Not the fixture's shop: a folder that isn't there yet.
        resetProcess();
        const QTemporaryDir home;
        prepareShopFolder(home.filePath(u"dükkân"_s));
        startConnection();
        openEmpty();
        QVERIFY(screen<frmLogin>().isVisible());
        QCOMPARE(girisyetki, 0);

        press(users().kisiekleme3);
        QVERIFY(users().kisiekle->isVisible());
        QCOMPARE(users().acilisi->currentItem()->text(), u"Yönetici"_s);
        QVERIFY(!users().acilisi->isEnabled());
        type(u"Ayşe"_s);
        enter();
        type(row.password);
        enter();
        type(row.password);
        enter();
        expect(row.boxes);
        enter();
        QVERIFY(!users().kisiekle->isVisible());
        QCOMPARE(users().TDBGrid1->model()->rowCount(), 1);

        press(users().kapat);
        QVERIFY(!loaded<kullanicilar>());
        QVERIFY(screen<frmLogin>().isVisible());
        QTRY_VERIFY(screen<frmLogin>().isActiveWindow());
        QTRY_VERIFY(screen<frmLogin>().ui.sifre->hasFocus());
        type(row.password);
        press(screen<frmLogin>().ui.cmdOK);
        QVERIFY(!loaded<frmLogin>());
        QCOMPARE(girisyetki, 1);
        QCOMPARE(girissifre, row.password);

        auto& sales = screen<satisekrani>();
        Recordset products;
        products.open(u"select * from urunler"_s, baglanti());
        products.addNew();
        products.setField(u"barkod"_s, u"42"_s);
        products.setField(u"urun"_s, u"Ekmek"_s);
        products.setField(u"satis"_s, 10.0);
        products.update();
        products.close();
        QTRY_VERIFY(sales.ui.barkod->hasFocus());
        type(u"42"_s);
        enter();
        sales.ui.kaydet->click();
        Recordset sold;
        sold.open(u"select * from satislar"_s, baglanti());
        QCOMPARE(sold.recordCount(), 1);
        QCOMPARE(sold.field(u"urun"_s).toString(), u"Ekmek"_s);
        sold.close();
        resetProcess();
    }

    void theLoginListsTheNewUser() {
        openEmpty();
        press(users().kisiekleme3);
        users().personeladi->setText(u"Ayşe"_s);
        users().sifre->setText(u"gizli"_s);
        users().sifre1->setText(u"gizli"_s);
        expect({notice(words::added)});
        press(users().kaydet);
        press(users().kapat);
        // A press with nothing typed lists the user, and refuses the empty password.
        expect({{words::notice, words::wrongPassword}});
        press(m_shop->ui().cmdOK);
        QCOMPARE(entries(*m_shop->ui().kullanici), QStringList{u"Ayşe"_s});
        m_shop->enter(u"gizli"_s);
        QVERIFY(m_shop->isLoggedIn());
    }

    void afterTheFirstUserTheRoleCounts() {
        openEmpty();
        press(users().kisiekleme3);
        users().personeladi->setText(u"Ayşe"_s);
        expect({{words::warning, words::noPassword, MessageBoxAnswer::yes}, notice(words::added)});
        press(users().kaydet);
        for (QWidget* button : {users().kisiekleme3, users().duzenle3, users().kisisil3}) {
            expect({notice(words::noRight)});
            press(button);
        }
        QVERIFY(!users().kisiekle->isVisible());
        QCOMPARE(m_shop->users().size(), 1);
    }

    void inAnEmptyTableNothingElsePasses() {
        openEmpty();
        for (QWidget* button : {users().duzenle3, users().kisisil3}) {
            expect({notice(words::noRight)});
            press(button);
        }
    }

    void theSecondUserOfAShopMayBeACashier() {
        openEmpty();
        press(users().kisiekleme3);
        press(users().vazgec);
        m_shop->addUser(u"Ayşe"_s, u""_s);
        girisyetki = 1;
        press(users().kisiekleme3);
        QVERIFY(users().acilisi->isEnabled());
        QCOMPARE(users().acilisi->currentItem()->text(), u"Kasiyer"_s);
    }

    void leftWithoutAUser_data() {
        addRows<WayRow>({{"kapat", {[](kullanicilar& screen) { press(screen.ui.kapat); }}},
                         {"Escape", {[](kullanicilar& screen) { QTest::keyClick(&screen, Qt::Key_Escape); }}},
                         {"X", {[](kullanicilar& screen) { screen.close(); }}}});
    }
    void leftWithoutAUser() {
        QFETCH(const WayRow, row);
        openEmpty();
        row.leave(screen<kullanicilar>());
        QVERIFY(!loaded<kullanicilar>());
        QTRY_VERIFY(m_shop->ui().sifre->hasFocus());
        // The next try leads there again.
        expect({addUser(), addUser()});
        press(m_shop->ui().cmdOK);
        QVERIFY(loaded<kullanicilar>());
    }

    void goesWithTheLogin() {
        openEmpty();
        unload<frmLogin>();
        QTRY_VERIFY(!loaded<kullanicilar>());
    }
};

int main(int argc, char** argv) {
    return runTests<FirstUserTest>(argc, argv);
}

#include "test_firstuser.moc"
