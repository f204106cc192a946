// The password prompt over the users' screen: what it asks, what it carries out, and where the keyboard goes.

#include "access/sifresorur.h"

#include <QClipboard>

#include "app/ayarmodul.h"
#include "app/session.h"
#include "appearance/keyboardfield.h"
#include "appearance/keyboardscreen.h"
#include "appearance/mdlMonitors.h"
#include "desktop/focus.h"
#include "rows.h"
#include "runtests.h"
#include "sales/satisekrani.h"
#include "usersfixture.h"
#include "widgets/colorvalue.h"
#include "widgets/fittedtext.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

const QString ayse = u"1|Ayşe|"_s + hashed("gizli") + u"|Yönetici";
const QString bekir = u"2|Bekir||Kasiyer"_s;

const ExpectedBox wrong{words::notice, words::wrongPassword};

enum class Action { add, edit, remove };
enum class Way { button, enter, close, escape };

}  // namespace

class SifresorurTest : public QObject {
    Q_OBJECT

    struct PromptRow {
        Action action;
        int picked;  ///< 0 for none
        QString typed;
        Way way = Way::button;
        QList<ExpectedBox> boxes = {};
        bool open = false;    ///< whether the prompt is, afterwards
        QString fields = {};  ///< the caption of the users' frame; empty: it isn't open
        QStringList left = {ayse, bekir};
    };
    struct CompareRow {
        QString session, typed;
        bool passes;
    };

    std::unique_ptr<UsersFixture> m_shop;

    Ui::kullanicilar& ui() const { return m_shop->ui(); }
    Ui::sifresorur& prompt() const { return m_shop->prompt(); }
    static void press(QWidget* control) { QTest::mouseClick(control, Qt::LeftButton); }
    QString fieldsCaption() const {
        return ui().kisiekle->isVisible() ? ui().kisiekle->caption() : QString();
    }

    void ask(Action action, int picked = 0) const {
        m_shop->open();
        if (picked > 0)
            m_shop->pick(picked);
        press(action == Action::add    ? ui().kisiekleme3
              : action == Action::edit ? ui().duzenle3
                                       : ui().kisisil3);
        if (!QTest::qWaitFor([] { return screen<sifresorur>().isActiveWindow(); }))
            qFatal("the prompt doesn't become active");
    }
    void answer(const QString& typed, Way way) const {
        prompt().Text1->setText(typed);
        if (way == Way::button)
            press(prompt().Command1);
        else if (way == Way::enter)
            QTest::keyClick(prompt().Text1, Qt::Key_Return);
        else if (way == Way::close)
            press(prompt().sifrekapat);
        else
            QTest::keyClick(prompt().Text1, Qt::Key_Escape);
    }

private Q_SLOTS:
    void init() { m_shop = std::make_unique<UsersFixture>(); }
    void cleanup() {
        QVERIFY(allAnswered(m_shop->boxes));
        m_shop.reset();
    }

    void carriesOut_data() {
        using enum Action;
        const QString gizli = u"gizli"_s;
        const QString edits = u"D!ZENLE"_s;
        addRows<PromptRow>(
            {{"add", {add, 0, gizli, Way::button, {}, false, u"EKLE"_s}},
             {"edit", {edit, 2, gizli, Way::button, {}, false, edits}},
             {"edit, nothing picked", {edit, 0, gizli, Way::button, {notice(words::pickToEdit)}}},
             {"delete",
              {remove, 2, gizli, Way::button, {deletion(), notice(words::deleted)}, false, {}, {ayse}}},
             {"delete, no", {remove, 2, gizli, Way::button, {deletion(MessageBoxAnswer::no)}}},
             {"delete, nothing picked", {remove, 0, gizli, Way::button, {notice(words::pickToDelete)}}},
             {"delete, the last manager", {remove, 1, gizli, Way::button, {notice(words::lastManager)}}},
             {"Enter carries out no add", {add, 0, gizli, Way::enter}},
             {"Enter carries out no edit", {edit, 2, gizli, Way::enter}},
             {"Enter carries out no delete", {remove, 2, gizli, Way::enter}},
             {"wrong, by the button", {add, 0, u"yanlış"_s, Way::button, {wrong}, true}},
             {"wrong, by Enter", {add, 0, u"yanlış"_s, Way::enter, {wrong}, true}},
             {"wrong, to edit", {edit, 2, u"yanlış"_s, Way::button, {wrong}, true}},
             {"wrong, to delete", {remove, 2, u"yanlış"_s, Way::button, {wrong}, true}},
             {"nothing typed", {add, 0, u""_s, Way::button, {wrong}, true}},
             {"closed", {remove, 2, gizli, Way::close}},
             {"Escape", {remove, 2, gizli, Way::escape}}});
    }
    void carriesOut() {
        QFETCH(const PromptRow, row);
        ask(row.action, row.picked);
        QCOMPARE(fieldsCaption(), u""_s);
        m_shop->expect(row.boxes);
        answer(row.typed, row.way);
        QCOMPARE(m_shop->isPrompted(), row.open);
        QCOMPARE(loaded<sifresorur>(), row.open);
        if (row.open) {
            QCOMPARE(prompt().Text1->text(), u""_s);
            QVERIFY(!prompt().Text1->isUndoAvailable());
            QTRY_VERIFY(prompt().Text1->hasFocus() || !QApplication::activeWindow());
        }
        QCOMPARE(fieldsCaption(), row.fields);
        if (!row.fields.isEmpty())
            QTRY_VERIFY(ui().personeladi->hasFocus());
        QCOMPARE(m_shop->stored(), row.left);
        // Until the next press of a button.
        QCOMPARE(ayar(u"ekledznlsilk"_s), QString::number(static_cast<int>(row.action)));
    }

    void comparesAsTyped_data() {
        addRows<CompareRow>({{"the same", {u"gizli"_s, u"gizli"_s, true}},
                             {"another letter case", {u"gizli"_s, u"GIZLI"_s, false}},
                             {"a blank behind it", {u"gizli"_s, u"gizli "_s, false}},
                             {"a number written otherwise", {u"007"_s, u"7"_s, false}},
                             {"the stored form", {u"gizli"_s, hashed("gizli"), false}},
                             {"Turkish letters", {u"şİıĞ"_s, u"şİıĞ"_s, true}}});
    }
    void comparesAsTyped() {
        QFETCH(const CompareRow, row);
        m_shop->run(u"UPDATE kullanici SET sifre='"_s + row.session + u"' WHERE id=1");
        m_shop->open(row.session);
        press(ui().kisiekleme3);
        if (!row.passes)
            m_shop->expect({wrong});
        m_shop->answerPrompt(row.typed);
        QCOMPARE(fieldsCaption(), row.passes ? u"EKLE"_s : u""_s);
    }

    void onlyAQuestionMarkPassesForAnUnknownPassword() {
        ask(Action::add);
        girissifre = u"?"_s;
        m_shop->expect({wrong});
        m_shop->answerPrompt(u"gizli"_s);
        m_shop->answerPrompt(u"?"_s);
        QCOMPARE(fieldsCaption(), u"EKLE"_s);
    }

    void twoPressesCarryOutOnce() {
        ask(Action::remove, 2);
        sifresorur& asked = screen<sifresorur>();
        asked.ui.Text1->setText(u"gizli"_s);
        bool pressed = false;
        connect(&m_shop->boxes, &BoxAnswers::opened, this, [&] {
            if (!std::exchange(pressed, true))
                asked.ui.Command1->click();  // while the first one's question stands open
        });
        m_shop->expect({deletion(), notice(words::deleted)});
        asked.ui.Command1->click();
        asked.ui.Command1->click();  // and once it is gone
        QTest::keyClick(asked.ui.Text1, Qt::Key_Return);
        QVERIFY(pressed);
        QCOMPARE(m_shop->stored(), QStringList{ayse});
    }

    void aLapsedActionIsNeverCarriedOut() {
        ask(Action::remove, 2);
        answer({}, Way::close);
        m_shop->users().activateWindow();
        press(ui().kisiekleme3);
        m_shop->answerPrompt(u"gizli"_s);
        QCOMPARE(fieldsCaption(), u"EKLE"_s);
        QCOMPARE(m_shop->stored(), (QStringList{ayse, bekir}));
    }

    void anotherButtonBehindThePromptTakesOver() {
        ask(Action::remove, 2);
        press(ui().duzenle3);
        m_shop->answerPrompt(u"gizli"_s);
        QCOMPARE(fieldsCaption(), u"D!ZENLE"_s);
    }

    void theRowThatWasPickedAtThePressIsDeleted() {
        m_shop->addUser(u"Cem"_s, u""_s, u"Kasiyer"_s);
        ask(Action::remove, 2);
        m_shop->pick(3);  // behind the prompt
        m_shop->expect({deletion(), notice(words::deleted)});
        m_shop->answerPrompt(u"gizli"_s);
        QCOMPARE(m_shop->stored(), (QStringList{ayse, u"3|Cem||Kasiyer"_s}));
    }

    void theLastManagerIsntDeletedByPickingAnotherRow() {
        ask(Action::remove, 1);
        m_shop->pick(2);
        m_shop->expect({notice(words::lastManager)});
        m_shop->answerPrompt(u"gizli"_s);
        QCOMPARE(m_shop->stored().size(), 2);
    }

    void goesWithItsScreen() {
        screen<satisekrani>().show();
        ask(Action::add);
        press(ui().kapat);
        QVERIFY(!loaded<kullanicilar>());
        QTRY_VERIFY(!loaded<sifresorur>());
        screen<satisekrani>().activateWindow();
        QTRY_VERIFY(screen<satisekrani>().ui.barkod->hasFocus());
    }

    void leavesTheKeyboardToTheUsersScreen() {
        screen<satisekrani>().show();
        for (const Way way : {Way::close, Way::enter, Way::escape}) {
            ask(Action::add);
            answer(u"gizli"_s, way);
            QVERIFY(!loaded<sifresorur>());
            QTRY_VERIFY(m_shop->users().isActiveWindow());
            QCOMPARE(QApplication::focusWidget(), ui().kisiekleme3);
        }
        ask(Action::add);
        answer(u"gizli"_s, Way::button);
        QTRY_VERIFY(ui().personeladi->hasFocus());
        QCoreApplication::processEvents();
        QVERIFY(ui().personeladi->hasFocus());
    }

    void words() {
        ask(Action::add);
        QCOMPARE(screen<sifresorur>().windowTitle(), u"SIFRE"_s);
        QCOMPARE(screen<sifresorur>().windowModality(), Qt::NonModal);
        QCOMPARE(prompt().Command1->caption(), u"Tamam"_s);
        QCOMPARE(prompt().sifrekapat->caption(), u"Kapat"_s);
        QVERIFY(prompt().Text1->hasFocus());
    }

    void showsAndHidesThePassword() {
        ask(Action::add);
        const auto state = [this] {
            const vkCommand& button = *prompt().vkCommand1;
            return QStringList{prompt().Text1->passwordchar(), button.caption(), button.toolTip(),
                               button.backcolor1().name(), button.backcolor2().name()};
        };
        const QStringList hidden{u"*"_s, u"\u009D\u009DFRE G\u009DSTER"_s,
                                 u"\u009D\u009DFREY\u009D G\u009DSTERMEK \u009D\u009D\u009DN TIKLAYIN"_s,
                                 u"#fbfbfb"_s, u"#ffff00"_s};
        const QStringList shown{u""_s, u"\u009D\u009DFRE G\u009DZLE"_s,
                                u"\u009D\u009DFREY\u009D G\u009DZLEMEK \u009D\u009D\u009DN TIKLAYIN"_s,
                                u"#fbfbfb"_s, u"#80ff80"_s};
        QCOMPARE(state(), hidden);
        press(prompt().vkCommand1);
        QCOMPARE(state(), shown);
        press(prompt().vkCommand1);
        QCOMPARE(state(), hidden);
        // The next prompt hides it again.
        press(prompt().vkCommand1);
        answer({}, Way::close);
        ask(Action::add);
        QCOMPARE(state(), hidden);
    }

    void keyboard() {
        monitorlerioku();
        ask(Action::add);
        press(prompt().Image2);
        QVERIFY(loaded<klavyeyeni>() != loaded<klavyeyeni2>());
        const KeyboardScreen& keyboard =
            loaded<klavyeyeni>() ? static_cast<KeyboardScreen&>(screen<klavyeyeni>()) : screen<klavyeyeni2>();
        QCOMPARE(keyboard.ui.nereye->text(), u"15"_s);
        // Its ENTER is one in the field: the prompt closes, nothing is carried out.
        keyboard.ui.yazilan->setText(u"gizli"_s);
        press(keyboard.findChild<QWidget*>(u"vkCommand1_100"_s));
        QTRY_VERIFY(!loaded<sifresorur>());
        QCOMPARE(fieldsCaption(), u""_s);
    }

    void thePasswordIsntCopied() {
        ask(Action::add);
        prompt().Text1->setText(u"gizli"_s);
        QApplication::clipboard()->setText(u"vorher"_s);
        prompt().Text1->selectAll();
        prompt().Text1->copy();
        QCOMPARE(QApplication::clipboard()->text(), u"vorher"_s);
    }
};

int main(int argc, char** argv) {
    return runTests<SifresorurTest>(argc, argv);
}

#include "test_sifresorur.moc"
