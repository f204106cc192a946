#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <optional>

#include "access/frmLogin.h"
#include "access/kullanicilar.h"
#include "app/session.h"
#include "appearance/ekoz.h"
#include "appearance/hallimzda.h"
#include "appearance/menu.h"
#include "appearance/tema.h"
#include "appearance/toplamtema.h"
#include "appearance/uyari.h"
#include "desktop/focus.h"
#include "rows.h"
#include "runtime/process.h"
#include "runtime/screenregistry.h"
#include "salestest.h"

using namespace kovanix;

namespace {

const char* const closeQuestion = "PROGRAMI KAPATMAK İSTEDİĞİNİZE EMİNMİSİNİZ?";
const char* const loginQuestion = "GİRİŞ EKRANINA DÖNMEK İSTEDİĞİNİZE EMİN MİSİNİZ?";

}  // namespace

/// The tools menu, opened above the sales screen.
class MenuTest : public SalesTest {
    Q_OBJECT

    struct CaptionsRow {
        QString name, caption, tip;
    };
    struct RolesRow {
        int role;
        QString disabledOnTheMenu;
        bool salesLeftAlone;
    };
    struct EndOfTheProgramRow {
        int answer;
        bool ends;
    };
    struct QuestionsRow {
        QString button, defaultButton;
    };
    struct TabOrderRow {
        int role;
        QStringList order;
    };

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
        SalesTest::init();
        m_ended.reset();
        setProcessEnd([this](int status) { m_ended = status; });
    }

    void captions_data() {
        QTest::addColumn<CaptionsRow>("row");
        const auto row = [](const char* name, const char* caption, const char* tip = "") {
            QTest::newRow(name) << CaptionsRow{QString::fromLatin1(name), QString::fromUtf8(caption),
                                               QString::fromUtf8(tip)};
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
        QFETCH(const CaptionsRow, row);
        open(1);
        const QWidget* found = screen<menu>().findChild<QWidget*>(row.name);
        QVERIFY(found);
        QCOMPARE(found->property("caption").toString(), row.caption);
        QCOMPARE(found->toolTip(), row.tip);
        QCOMPARE(found->accessibleName(), row.caption);
        QCOMPARE(screen<menu>().windowTitle(), "MENU");
    }

    void roles_data() {
        addRows<RolesRow>({{"manager", {1, "", true}},
                           {"cashier", {0, "vkCommand3 vkCommand4 vkCommand2", false}},
                           {"another value counts as a manager's", {-1, "", true}}});
    }
    void roles() {
        QFETCH(const RolesRow, row);
        const QList<vkCommand*> sales{m_shop->ui().vkCommand1, m_shop->ui().vkCommand2,
                                      m_shop->ui().vkCommand3, m_shop->ui().vkCommand4};
        for (QWidget* button : sales)
            button->setEnabled(true);
        open(row.role);
        QStringList disabled;
        for (const char* name :
             {"vkCommand1", "vkCommand3", "vkCommand4", "vkCommand5", "vkCommand2", "vkCommand10", "kapat"}) {
            if (!control(name)->isEnabled())
                disabled.append(QString::fromLatin1(name));
        }
        QCOMPARE(disabled.join(u' '), row.disabledOnTheMenu);
        QCOMPARE(m_shop->ui().vkCommand2->isEnabled(), row.salesLeftAlone);
        QCOMPARE(m_shop->ui().vkCommand3->isEnabled(), row.salesLeftAlone);
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
        QVERIFY(loaded<kullanicilar>());
        QTRY_VERIFY(screen<kullanicilar>().isActiveWindow());
        QCOMPARE(screen<kullanicilar>().windowModality(), Qt::NonModal);
        QVERIFY(screen<menu>().isVisible());
    }

    void noUsersForACashier() {
        open(0);
        press(ui().vkCommand3);
        ui().vkCommand3->click();
        QVERIFY(!loaded<kullanicilar>());
    }

    void endOfTheProgram_data() {
        addRows<EndOfTheProgramRow>({{"yes", {MessageBoxAnswer::yes, true}},
                                     {"no", {MessageBoxAnswer::no, false}},
                                     {"Escape", {BoxAnswers::escape, false}}});
    }
    void endOfTheProgram() {
        QFETCH(const EndOfTheProgramRow, row);
        m_shop->scan(goods::bread);
        open(0);
        m_shop->boxes.expect("Program kapatma", closeQuestion, row.answer);
        press(ui().vkCommand10);
        QCOMPARE(m_ended.has_value(), row.ends);
        QCOMPARE(m_ended.value_or(0), 0);
        QVERIFY(loaded<menu>());
        QVERIFY(screen<menu>().isVisible());
        QCOMPARE(m_shop->lines(), 1);
    }

    void questions_data() {
        addRows<QuestionsRow>({{"the end of the program", {"vkCommand10", "Hayır"}},
                               {"back to the login", {"vkCommand2", "Evet"}}});
    }
    void questions() {
        QFETCH(const QuestionsRow, row);
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
        press(screen<menu>().findChild<QWidget*>(row.button));
        captions.sort();
        QCOMPARE(captions, (QStringList{"Evet", "Hayır"}));
        QCOMPARE(preset, row.defaultButton);
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
        for (const char* name :
             {"vkCommand1", "vkCommand3", "vkCommand4", "vkCommand5", "vkCommand2", "vkCommand10"}) {
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

    // The themes were looked at, and the next customer's goods come.
    void scansAfterTheThemesReachTheTicket() {
        open(1);
        press(ui().vkCommand1);
        QTRY_VERIFY(screen<tema>().isActiveWindow());
        press(screen<tema>().ui.vkCommand1);
        QTRY_VERIFY(screen<menu>().isActiveWindow());
        m_shop->scan(goods::bread);
        QVERIFY(!loaded<menu>());
        QVERIFY(!loaded<tema>());
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
        m_shop->scan(goods::milk);
        QCOMPARE(m_shop->lines(), 1);
    }

    void tabOrder_data() {
        addRows<TabOrderRow>(
            {{"manager",
              {1, QStringList{"kapat", "vkCommand1", "vkCommand3", "vkCommand4", "vkCommand5", "vkCommand2",
                              "vkCommand10", "kapat"}}},
             {"cashier", {0, QStringList{"kapat", "vkCommand1", "vkCommand5", "vkCommand10", "kapat"}}}});
    }
    void tabOrder() {
        QFETCH(const TabOrderRow, row);
        open(row.role);
        QStringList found{QApplication::focusWidget()->objectName()};
        for (int i = 1; i < row.order.size(); ++i) {
            m_shop->key(Qt::Key_Tab);
            found.append(QApplication::focusWidget()->objectName());
        }
        QCOMPARE(found, row.order);
    }

    void byKeyboardAlone() {
        open(1);
        m_shop->key(Qt::Key_Tab);
        m_shop->key(Qt::Key_Return);
        QVERIFY(loaded<tema>());
        unload<tema>();
        screen<menu>().activateWindow();
        QTRY_VERIFY(screen<menu>().isActiveWindow());
        QTRY_COMPARE(QApplication::focusWidget(), ui().kapat);
        for (int tab = 0; tab < 5; ++tab)
            m_shop->key(Qt::Key_Tab);
        m_shop->boxes.expect("UYARI", loginQuestion, MessageBoxAnswer::no);
        m_shop->key(Qt::Key_Return);
        screen<menu>().activateWindow();
        QTRY_COMPARE(QApplication::focusWidget(), ui().kapat);
        for (int tab = 0; tab < 6; ++tab)
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
