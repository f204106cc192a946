// Logging in on a display with a window manager: where the keyboard goes, and the built till behind it.

#include <QMessageBox>
#include <QRegularExpression>
#include <QSignalSpy>

#include "access/firstscreen.h"
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
