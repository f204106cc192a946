#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <memory>
#include <optional>

#include "access/frmLogin.h"
#include "app/session.h"
#include "appearance/ekoz.h"
#include "appearance/hallimzda.h"
#include "appearance/menu.h"
#include "appearance/tema.h"
#include "appearance/toplamtema.h"
#include "appearance/uyari.h"
#include "desktop/focus.h"
#include "runtests.h"
#include "runtime/process.h"
#include "runtime/screenregistry.h"
#include "salesfixture.h"

using namespace kovanix;

namespace {

const char* const closeQuestion = "PROGRAMI KAPATMAK İSTEDİĞİNİZE EMİNMİSİNİZ?";
const char* const loginQuestion = "GİRİŞ EKRANINA DÖNMEK İSTEDİĞİNİZE EMİN MİSİNİZ?";

}  // namespace

/// The tools menu, opened above the sales screen.
class MenuTest : public QObject {
    Q_OBJECT

    std::unique_ptr<SalesFixture> m_shop;
    std::optional<int> m_ended;

    Ui::menu& ui() const { return screen<menu>().ui; }

    void open(int role) const {
        girisyetki = role;
        showInFront(screen<menu>());
        // The toolkit's own wait takes a window for active as soon as the one that it belongs to is.
        if (!QTest::qWaitFor([] { return screen<menu>().isActiveWindow(); }))
            qFatal("the menu doesn't become active");
    }
    static void press(QWidget* button) { QTest::mouseClick(button, Qt::LeftButton); }
    static QWidget* control(const char* name) {
        return screen<menu>().findChild<QWidget*>(QString::fromLatin1(name));
    }

private Q_SLOTS:
    void init() {
        m_shop = std::make_unique<SalesFixture>();
        m_ended.reset();
        setProcessEnd([this](int status) { m_ended = status; });
    }
    void cleanup() {
        const bool answered = allAnswered(m_shop->boxes);
        m_shop.reset();
        QVERIFY(answered);
    }

    void captions_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("tip");
        const auto row = [](const char* name, const char* caption, const char* tip = "") {
            QTest::newRow(name) << QString::fromLatin1(name) << QString::fromUtf8(caption)
                                << QString::fromUtf8(tip);
        };
        row("vkFrame1", "Menü");
        row("vkCommand1", "TEMALAR");
        row("vkCommand2", "GİRİŞ EKRANINA DÖN");
        row("vkCommand3", "KULLANICILAR");
        row("vkCommand4", "Hesap Makinesi");
        row("vkCommand5", "WEB SİTEMİZ");
        row("vkCommand10", "PROGRAMI KAPAT", "Programı kapatır");
        row("kapat", "KAPAT");
    }
    void captions() {
        QFETCH(QString, name);
        QFETCH(QString, caption);
        QFETCH(QString, tip);
        open(1);
        const QWidget* found = screen<menu>().findChild<QWidget*>(name);
        QVERIFY(found);
        QCOMPARE(found->property("caption").toString(), caption);
        QCOMPARE(found->toolTip(), tip);
        QCOMPARE(found->accessibleName(), caption);
        QCOMPARE(screen<menu>().windowTitle(), "MENU");
    }

    void roles_data() {
        QTest::addColumn<int>("role");
        QTest::addColumn<QString>("disabledOnTheMenu");
        QTest::addColumn<bool>("salesLeftAlone");
        QTest::newRow("manager; the users' screen isn't there yet") << 1 << "vkCommand3" << true;
        QTest::newRow("cashier") << 0 << "vkCommand3 vkCommand4 vkCommand2" << false;
        QTest::newRow("another value counts as a manager's") << -1 << "vkCommand3" << true;
    }
    void roles() {
        QFETCH(int, role);
        QFETCH(QString, disabledOnTheMenu);
        QFETCH(bool, salesLeftAlone);
        const QList<vkCommand*> sales{m_shop->ui().vkCommand1, m_shop->ui().vkCommand2,
                                      m_shop->ui().vkCommand3, m_shop->ui().vkCommand4};
        for (QWidget* button : sales)
            button->setEnabled(true);
        open(role);
        QStringList disabled;
        for (const char* name :
             {"vkCommand1", "vkCommand3", "vkCommand4", "vkCommand5", "vkCommand2", "vkCommand10", "kapat"}) {
            if (!control(name)->isEnabled())
                disabled.append(QString::fromLatin1(name));
        }
        QCOMPARE(disabled.join(u' '), disabledOnTheMenu);
        QCOMPARE(m_shop->ui().vkCommand2->isEnabled(), salesLeftAlone);
        QCOMPARE(m_shop->ui().vkCommand3->isEnabled(), salesLeftAlone);
        QVERIFY(m_shop->ui().vkCommand1->isEnabled());
        QVERIFY(m_shop->ui().vkCommand4->isEnabled());
    }

    void aManagerDoesntSwitchTheSalesButtonsOn() {
        m_shop->ui().vkCommand2->setEnabled(false);
        m_shop->ui().vkCommand3->setEnabled(false);
        open(1);
        QVERIFY(!m_shop->ui().vkCommand2->isEnabled());
        QVERIFY(!m_shop->ui().vkCommand3->isEnabled());
    }

    void themes() {
        open(1);
        press(ui().vkCommand1);
        QVERIFY(loaded<tema>());
        QVERIFY(screen<tema>().isVisible());
        QCOMPARE(screen<tema>().windowModality(), Qt::NonModal);
        QTRY_VERIFY(screen<tema>().isActiveWindow());
        QVERIFY(loaded<menu>());
        QVERIFY(screen<menu>().isVisible());
    }

    void users() {
        open(1);
        press(ui().vkCommand3);
        QVERIFY(screen<menu>().isVisible());
        QTRY_VERIFY(screen<menu>().isActiveWindow());
    }

    void endOfTheProgram_data() {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("ends");
        QTest::newRow("yes") << MessageBoxAnswer::yes << true;
        QTest::newRow("no") << MessageBoxAnswer::no << false;
        QTest::newRow("Escape") << BoxAnswers::escape << false;
    }
    void endOfTheProgram() {
        QFETCH(int, answer);
        QFETCH(bool, ends);
        m_shop->scan(goods::bread);
        open(0);
        m_shop->boxes.expect("Program kapatma", closeQuestion, answer);
        press(ui().vkCommand10);
        QCOMPARE(m_ended.has_value(), ends);
        QCOMPARE(m_ended.value_or(0), 0);
        QVERIFY(loaded<menu>());
        QVERIFY(screen<menu>().isVisible());
        QCOMPARE(m_shop->lines(), 1);
    }

    void questions_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("defaultButton");
        QTest::newRow("the end of the program") << "vkCommand10"
                                                << "Hayır";
        QTest::newRow("back to the login") << "vkCommand2"
                                           << "Evet";
    }
    void questions() {
        QFETCH(QString, button);
        QFETCH(QString, defaultButton);
        open(1);
        m_shop->boxes.expectAny(BoxAnswers::byHand);
        QStringList captions;
        QString preset;
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        connect(&m_shop->boxes, &BoxAnswers::opened, this, [&](QMessageBox& box) {
            for (const QAbstractButton* choice : box.buttons())
                captions.append(choice->text());
            preset = box.defaultButton()->text();
            icon = box.icon();
            box.reject();
        });
        press(screen<menu>().findChild<QWidget*>(button));
        captions.sort();
        QCOMPARE(captions, (QStringList{"Evet", "Hayır"}));
        QCOMPARE(preset, defaultButton);
        QCOMPARE(icon, QMessageBox::Question);
    }

    void backToTheLogin() {
        m_shop->scan(goods::bread);
        showInFront(screen<tema>());
        showInFront(screen<toplamtema>());
        showInFront(screen<hallimzda>());
        showInFront(screen<ekoz>());
        screen<uyari>().show();
        open(1);
        QList<QPointer<Screen>> before{&m_shop->sales(),     &screen<tema>(), &screen<toplamtema>(),
                                       &screen<hallimzda>(), &screen<ekoz>(), &screen<uyari>(),
                                       &screen<menu>()};
        m_shop->run("INSERT INTO kullanici (personeladi, sifre, yetki) VALUES ('Ayşe', '', 'Kasiyer')");
        QSignalSpy lastClosed(qApp, &QGuiApplication::lastWindowClosed);
        m_shop->boxes.expect("UYARI", loginQuestion, MessageBoxAnswer::yes);
        press(ui().vkCommand2);

        QVERIFY(!loaded<menu>());
        QVERIFY(!loaded<toplamtema>());
        QVERIFY(!loaded<hallimzda>());
        QVERIFY(!loaded<ekoz>());
        QVERIFY(!loaded<uyari>());
        for (const QPointer<Screen>& screen : before)
            QTRY_VERIFY(!screen);
        // The first screen stands anew, and alone.
        QVERIFY(!loaded<satisekrani>());
        QVERIFY(loaded<frmLogin>());
        QTRY_VERIFY(screen<frmLogin>().isActiveWindow());
        QCOMPARE(screen<frmLogin>().ui.kullanici->count(), 1);  // ready for the next user
        for (const QWidget* window : QApplication::topLevelWidgets())
            QVERIFY2(!window->isVisible() || window == &screen<frmLogin>(),
                     window->metaObject()->className());
        QCOMPARE(lastClosed.count(), 0);  // it would end the program
    }

    void notBackToTheLogin_data() {
        QTest::addColumn<int>("answer");
        QTest::newRow("no") << MessageBoxAnswer::no;
        QTest::newRow("Escape") << BoxAnswers::escape;
    }
    void notBackToTheLogin() {
        QFETCH(int, answer);
        m_shop->scan(goods::bread);
        showInFront(screen<tema>());
        open(1);
        const QWidget* menuBefore = &screen<menu>();
        const QWidget* salesBefore = &m_shop->sales();
        m_shop->boxes.expect("UYARI", loginQuestion, answer);
        press(ui().vkCommand2);
        QVERIFY(loaded<menu>());
        QCOMPARE(&screen<menu>(), menuBefore);
        QVERIFY(menuBefore->isVisible());
        QVERIFY(loaded<tema>());
        QCOMPARE(&m_shop->sales(), salesBefore);
        QCOMPARE(m_shop->lines(), 1);
    }

    void aCashierIsntEvenAsked() {
        open(0);
        press(ui().vkCommand2);
        QVERIFY(screen<menu>().isVisible());
        QCOMPARE(m_shop->boxes.answered(), 0);
    }

    void closing_data() {
        QTest::addColumn<QString>("way");
        QTest::newRow("KAPAT") << "button";
        QTest::newRow("Escape") << "escape";
        QTest::newRow("the window's X") << "x";
    }
    void closing() {
        QFETCH(QString, way);
        m_shop->scan(goods::bread);
        m_shop->ui().adet->setFocus();
        open(1);
        const QPointer<menu> old(&screen<menu>());
        if (way == "button")
            press(ui().kapat);
        else if (way == "escape")
            QTest::keyClick(&screen<menu>(), Qt::Key_Escape);
        else
            screen<menu>().close();
        QVERIFY(!loaded<menu>());
        QTRY_VERIFY(!old);
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
        QCOMPARE(m_shop->lines(), 1);
        m_shop->scan(goods::milk);
        QCOMPARE(m_shop->lines(), 2);
    }

    void kapatShowsAHiddenSalesScreen() {
        open(1);
        m_shop->sales().hide();
        press(ui().kapat);
        QVERIFY(m_shop->sales().isVisible());
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
    }

    void escapeFromEveryButton() {
        for (const char* name : {"vkCommand1", "vkCommand4", "vkCommand5", "vkCommand2", "vkCommand10"}) {
            open(1);
            control(name)->setFocus();
            m_shop->key(Qt::Key_Escape);
            QVERIFY2(!loaded<menu>(), name);
            QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
        }
    }

    void aScanThatArrivesHereClosesTheMenuAndDoesNothingElse() {
        open(1);
        m_shop->scan(goods::bread);
        QVERIFY(!loaded<menu>());
        QVERIFY(!m_ended);
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
        QCOMPARE(m_shop->lines(), 0);
    }

    void tabOrder_data() {
        QTest::addColumn<int>("role");
        QTest::addColumn<QStringList>("order");
        QTest::newRow("manager") << 1 << QStringList{"kapat",      "vkCommand1",  "vkCommand4", "vkCommand5",
                                                     "vkCommand2", "vkCommand10", "kapat"};
        QTest::newRow("cashier") << 0
                                 << QStringList{"kapat", "vkCommand1", "vkCommand5", "vkCommand10", "kapat"};
    }
    void tabOrder() {
        QFETCH(int, role);
        QFETCH(QStringList, order);
        open(role);
        QStringList found{QApplication::focusWidget()->objectName()};
        for (int i = 1; i < order.size(); ++i) {
            m_shop->key(Qt::Key_Tab);
            found.append(QApplication::focusWidget()->objectName());
        }
        QCOMPARE(found, order);
    }

    void byKeyboardAlone() {
        open(1);
        m_shop->key(Qt::Key_Tab);
        m_shop->key(Qt::Key_Return);
        QVERIFY(loaded<tema>());
        unload<tema>();
        screen<menu>().activateWindow();
        QTRY_VERIFY(screen<menu>().isActiveWindow());
        QCOMPARE(QApplication::focusWidget(), ui().vkCommand1);
        m_shop->key(Qt::Key_Tab);
        m_shop->key(Qt::Key_Tab);
        m_shop->key(Qt::Key_Tab);
        m_shop->boxes.expect("UYARI", loginQuestion, MessageBoxAnswer::no);
        m_shop->key(Qt::Key_Return);
        screen<menu>().activateWindow();
        QTRY_COMPARE(QApplication::focusWidget(), ui().vkCommand2);
        m_shop->key(Qt::Key_Tab);
        m_shop->boxes.expect("Program kapatma", closeQuestion, MessageBoxAnswer::yes);
        m_shop->key(Qt::Key_Return);
        QCOMPARE(m_ended, 0);
    }
};

int main(int argc, char** argv) {
    return runTests<MenuTest>(argc, argv);
}

#include "test_menu.moc"
