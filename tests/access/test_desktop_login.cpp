// Logging in on a display with a window manager: where the keyboard goes, and the built till behind it.

#include <QMessageBox>
#include <QRegularExpression>
#include <QSignalSpy>

#include "access/firstscreen.h"
#include "access/kullanicilar.h"
#include "access/sifresorur.h"
#include "desktop/focus.h"
#include "loginfixture.h"
#include "programs.h"
#include "runtests.h"
#include "sales/satisekrani.h"
#include "virtualdisplay.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr int soon = 10000;  // milliseconds

bool hasKeyboard(const QWidget& control) {
    return QApplication::focusWidget() == &control && control.isActiveWindow();
}

QString activeTitle() {
    return xdotool({u"getwindowfocus"_s, u"-f"_s, u"getwindowname"_s});
}

qint64 activeProcess() {
    return xdotool({u"getwindowfocus"_s, u"-f"_s, u"getwindowpid"_s}).toLongLong();
}

QProcessEnvironment displayEnvironment() {
    QProcessEnvironment environment = tillEnvironment();
    for (const char* variable : {"DISPLAY", "QT_QPA_PLATFORM"})
        environment.insert(QString::fromLatin1(variable), qEnvironmentVariable(variable));
    return environment;
}

}  // namespace

class DesktopLoginTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (!displayTrouble().isEmpty())
            QSKIP(qPrintable(displayTrouble()));
        QTRY_VERIFY2_WITH_TIMEOUT(!someTillAnswers(), "a till is open on this machine: close it", soon);
    }

    void aMorning() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u"gizli"_s);
        shop.open();
        QTRY_VERIFY(hasKeyboard(*shop.ui().sifre));
        typeKeys(u"gizli\n"_s);
        QTRY_VERIFY_WITH_TIMEOUT(shop.isLoggedIn(), soon);
        QTRY_VERIFY(hasKeyboard(*screen<satisekrani>().ui.barkod));
        QVERIFY(screen<satisekrani>().isMaximized());
        typeKeys(u"123"_s);
        QTRY_COMPARE(screen<satisekrani>().ui.barkod->text(), u"123"_s);
    }

    void aWrongPassword() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u"gizli"_s);
        shop.open();
        QTRY_VERIFY(hasKeyboard(*shop.ui().sifre));
        shop.boxes.expect(words::notice, words::wrongPassword, BoxAnswers::byHand);
        connect(&shop.boxes, &BoxAnswers::opened, this, [](QMessageBox& box) {
            if (!QTest::qWaitFor([&box] { return box.isActiveWindow(); }, soon))
                qFatal("the box doesn't become active");
            pressKeys({u"Return"_s});
        });
        typeKeys(u"yanlis\n"_s);
        QTRY_COMPARE_WITH_TIMEOUT(shop.boxes.answered(), 1, soon);
        QTRY_VERIFY(!QApplication::activeModalWidget());
        QTRY_VERIFY(hasKeyboard(*shop.ui().sifre));
        QCOMPARE(shop.ui().sifre->text(), QString());
        typeKeys(u"gizli\n"_s);
        QTRY_VERIFY_WITH_TIMEOUT(shop.isLoggedIn(), soon);
        QVERIFY(allAnswered(shop.boxes));
    }

    void byTheKeyboardAlone() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u"bir"_s);
        shop.addUser(u"Bekir"_s, u"iki"_s);
        shop.open();
        QTRY_VERIFY(hasKeyboard(*shop.ui().sifre));
        pressKeys({u"shift+Tab"_s});
        QTRY_VERIFY(hasKeyboard(*shop.ui().kullanici));
        pressKeys({u"Down"_s});
        QTRY_VERIFY(hasKeyboard(*shop.ui().sifre));
        QCOMPARE(shop.ui().kullanici->currentRow(), 1);
        typeKeys(u"iki"_s);
        pressKeys({u"Tab"_s, u"Tab"_s});
        QTRY_VERIFY(hasKeyboard(*shop.ui().cmdOK));
        pressKeys({u"space"_s});
        QTRY_VERIFY_WITH_TIMEOUT(shop.isLoggedIn(), soon);
    }

    void backToTheLogin() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u""_s);
        shop.open();
        const QSignalSpy lastClosed(qApp, &QGuiApplication::lastWindowClosed);
        for (int round = 0; round < 2; ++round) {
            QTRY_VERIFY(hasKeyboard(*shop.ui().sifre));
            pressKeys({u"Return"_s});
            QTRY_VERIFY_WITH_TIMEOUT(shop.isLoggedIn(), soon);
            QTRY_VERIFY(hasKeyboard(*screen<satisekrani>().ui.barkod));
            unloadAllScreens();
            showFirstScreen();
        }
        QTRY_VERIFY(hasKeyboard(*shop.ui().sifre));
        QCOMPARE(lastClosed.count(), 0);  // the process would end by it
    }

    // From an empty table to the sales screen, by the keyboard alone. Without a password two boxes come in a
    // row: the screen they belong to has the keyboard behind both.
    void theFirstUser_data() {
        QTest::addColumn<QString>("password");
        QTest::newRow("with a password") << u"gizli"_s;
        QTest::newRow("without one") << QString();
    }
    void theFirstUser() {
        QFETCH(const QString, password);
        LoginFixture shop;
        shop.boxes.expect(words::notice, words::addUser, MessageBoxAnswer::ok);
        showFirstScreen();
        QTRY_VERIFY_WITH_TIMEOUT(loaded<kullanicilar>(), soon);
        const Ui::kullanicilar& users = screen<kullanicilar>().ui;
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*users.TDBGrid1), soon);
        QVERIFY(screen<frmLogin>().isVisible());
        pressKeys({u"Tab"_s});
        QTRY_VERIFY(hasKeyboard(*users.kisiekleme3));
        pressKeys({u"Return"_s});
        QTRY_VERIFY(hasKeyboard(*users.personeladi));
        typeKeys(u"ali\n%1\n%1\n"_s.arg(password));
        QTRY_VERIFY(hasKeyboard(*users.kaydet));
        if (password.isEmpty())
            shop.boxes.expect(u"UYARI"_s, u"Şifre koymak istemedi\u011finize emin misiniz?"_s,
                              MessageBoxAnswer::yes);
        shop.boxes.expect(u"UYARI"_s, u"Eklendi"_s, MessageBoxAnswer::ok);
        pressKeys({u"space"_s});
        QTRY_COMPARE_WITH_TIMEOUT(shop.boxes.answered(), password.isEmpty() ? 3 : 2, soon);
        QTRY_VERIFY(hasKeyboard(*users.TDBGrid1));
        pressKeys({u"Escape"_s});
        QTRY_VERIFY_WITH_TIMEOUT(!loaded<kullanicilar>(), soon);
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*shop.ui().sifre), soon);
        typeKeys(password + u'\n');
        QTRY_VERIFY_WITH_TIMEOUT(shop.isLoggedIn(), soon);
        QTRY_VERIFY(hasKeyboard(*screen<satisekrani>().ui.barkod));
        QVERIFY(allAnswered(shop.boxes));
    }

    // The prompt stands above the users' screen, and what it opens keeps the keyboard.
    void thePrompt() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u"gizli"_s);
        shop.open();
        QTRY_VERIFY(hasKeyboard(*shop.ui().sifre));
        typeKeys(u"gizli\n"_s);
        QTRY_VERIFY_WITH_TIMEOUT(shop.isLoggedIn(), soon);
        showInFront(screen<kullanicilar>());
        const Ui::kullanicilar& users = screen<kullanicilar>().ui;
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*users.TDBGrid1), soon);
        const auto ask = [] {
            pressKeys({u"space"_s});
            return QTest::qWaitFor(
                [] { return loaded<sifresorur>() && hasKeyboard(*screen<sifresorur>().ui.Text1); }, soon);
        };
        pressKeys({u"Tab"_s});
        QTRY_VERIFY(hasKeyboard(*users.kisiekleme3));
        QVERIFY(ask());
        pressKeys({u"Escape"_s});
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*users.kisiekleme3), soon);
        QVERIFY(!loaded<sifresorur>());
        QVERIFY(ask());
        typeKeys(u"gizli"_s);
        pressKeys({u"Tab"_s, u"Tab"_s, u"space"_s});
        QTRY_VERIFY_WITH_TIMEOUT(!loaded<sifresorur>(), soon);
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*users.personeladi), soon);
        typeKeys(u"veli"_s);
        QTRY_COMPARE(users.personeladi->text(), u"veli"_s);
        screen<kullanicilar>().close();
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*screen<satisekrani>().ui.barkod), soon);
        QVERIFY(allAnswered(shop.boxes));
    }

    void theBuiltTill() {
        const ClosedShop shop;
        shop.run(u"UPDATE kullanici SET sifre='gizli', yetki='Kasiyer'"_s);
        Program till(shop.till(), displayEnvironment());
        QVERIFY(QTest::qWaitFor([&] { return activeProcess() == till.id(); }, soon));
        QTRY_COMPARE_WITH_TIMEOUT(activeTitle(), u"Kovanix"_s, soon);
        typeKeys(u"gizli\n"_s);
        QTRY_COMPARE_WITH_TIMEOUT(activeTitle(), u"Kovanix Satis"_s, soon);
        typeKeys(shelf::bread + u'\n');
        pressKeys({u"F1"_s});
        const auto sales = [&shop] { return shop.value(u"SELECT count(*) FROM satislar"_s).toInt(); };
        QTRY_COMPARE_WITH_TIMEOUT(sales(), 1, soon);
        QVERIFY(shop.value(u"SELECT sifre FROM kullanici"_s).toString().startsWith(u"sha256:"));
        // It forbids core files to itself.
        QFile limits(u"/proc/%1/limits"_s.arg(till.id()));
        QVERIFY(limits.open(QIODevice::ReadOnly));
        QVERIFY(QString::fromLatin1(limits.readAll())
                    .contains(QRegularExpression(u"Max core file size +0 +0 "_s)));
    }
};

int main(int argc, char** argv) {
    if (displayTrouble().isEmpty() && !isOnVirtualDisplay())
        return runOnVirtualDisplay(argc, argv);
    isolateFromOtherTills();
    return runTests<DesktopLoginTest>(argc, argv);
}

#include "test_desktop_login.moc"
