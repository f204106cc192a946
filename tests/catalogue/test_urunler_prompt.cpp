#include "access/sifresorur.h"
#include "app/modTurkce.h"
#include "app/session.h"
#include "desktop/messagebox.h"
#include "productstest.h"
#include "rows.h"
#include "runtime/screenregistry.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

enum class Way { button, enter, close };

struct PromptRow {
    QString action;  ///< the button's name
    int chosen;      ///< the row of the list; -1 for none
    QString session = u"gizli"_s;
    QString typed = u"gizli"_s;
    Way way = Way::button;
    QString frame = {};   ///< its caption afterwards, where it is open
    QString focus = {};   ///< what has the keyboard then
    QString notice = {};  ///< the key of its text
    int answer = 0;       ///< to the question whether to delete; 0 where it isn't put
    bool stays = false;   ///< the prompt, asking once more
};

}  // namespace

Q_DECLARE_METATYPE(PromptRow)

/// The password in front of what changes the products.
class TestUrunlerPrompt : public ProductsTest {
    Q_OBJECT

    static Ui::sifresorur& prompt() { return screen<sifresorur>().ui; }

    void ask(const QString& button) {
        press(*catalogue().findChild<QWidget*>(button));
        QVERIFY(QTest::qWaitFor([] { return screen<sifresorur>().isActiveWindow(); }));
    }

private Q_SLOTS:
    void carriesOut_data() {
        const QString add = u"kisiekleme2"_s;
        const QString edit = u"duzenle2"_s;
        const QString remove = u"kisisil2"_s;
        const QString wrong = u"SIFRE_YANLIS"_s;
        addRows<PromptRow>(
            {{"add", {.action = add, .chosen = -1, .frame = u"EKLE"_s, .focus = u"barkod2"_s}},
             {"edit", {.action = edit, .chosen = 1, .frame = u"D!ZENLE"_s, .focus = u"fiyat"_s}},
             {"delete",
              {.action = remove,
               .chosen = 1,
               .notice = u"MSG_URUN_SILINDI"_s,
               .answer = MessageBoxAnswer::yes}},
             {"delete, no", {.action = remove, .chosen = 1, .answer = MessageBoxAnswer::no}},
             {"Enter adds nothing", {.action = add, .chosen = -1, .way = Way::enter}},
             {"Enter edits nothing", {.action = edit, .chosen = 1, .way = Way::enter}},
             {"Enter deletes nothing", {.action = remove, .chosen = 1, .way = Way::enter}},
             {"left", {.action = remove, .chosen = 1, .way = Way::close}},
             {"wrong", {.action = add, .chosen = -1, .typed = u"Gizli"_s, .notice = wrong, .stays = true}},
             {"wrong, by Enter",
              {.action = add,
               .chosen = -1,
               .typed = u"gizli "_s,
               .way = Way::enter,
               .notice = wrong,
               .stays = true}},
             {"the stand-in for a password",
              {.action = add,
               .chosen = -1,
               .session = u"?"_s,
               .typed = u"?"_s,
               .frame = u"EKLE"_s,
               .focus = u"barkod2"_s}},
             {"any other text for the stand-in",
              {.action = add,
               .chosen = -1,
               .session = u"?"_s,
               .typed = u"gizli"_s,
               .notice = wrong,
               .stays = true}}});
    }
    void carriesOut() {
        QFETCH(const PromptRow, row);
        girissifre = row.session;
        open();
        const qsizetype before = names().size();
        if (row.chosen >= 0)
            choose(row.chosen);
        ask(row.action);
        QVERIFY(form().kisiekle2->isHidden());
        if (row.answer != 0)
            expectQuestion(row.answer);
        if (row.stays)
            m_shop->boxes.expect(metin(u"BILGI"_s), metin(row.notice), MessageBoxAnswer::ok);
        else if (!row.notice.isEmpty())
            expectNotice(row.notice);
        prompt().Text1->setText(row.typed);
        if (row.way == Way::enter)
            QTest::keyClick(prompt().Text1, Qt::Key_Return);
        else
            press(row.way == Way::close ? *prompt().sifrekapat : *prompt().Command1);
        QCOMPARE(loaded<sifresorur>(), row.stays);
        if (row.stays)
            QCOMPARE(prompt().Text1->text(), QString());
        QCOMPARE(form().kisiekle2->isVisible(), !row.frame.isEmpty());
        if (!row.frame.isEmpty())
            QCOMPARE(form().kisiekle2->caption(), row.frame);
        if (!row.focus.isEmpty())
            QTRY_VERIFY(catalogue().findChild<QWidget*>(row.focus)->hasFocus());
        const bool deleted = row.answer == MessageBoxAnswer::yes;
        QCOMPARE(names().size(), before - (deleted ? 1 : 0));
    }

    // The last press is what the prompt carries out.
    void anotherActionTakesItsPlace() {
        girissifre = u"gizli"_s;
        open();
        choose(1);
        ask(u"kisisil2"_s);
        ask(u"kisiekleme2"_s);
        prompt().Text1->setText(u"gizli"_s);
        press(*prompt().Command1);
        QCOMPARE(form().kisiekle2->caption(), u"EKLE"_s);
        QVERIFY(form().kisiekle2->isVisible());
    }
};

int main(int argc, char** argv) {
    return runTests<TestUrunlerPrompt>(argc, argv);
}

#include "test_urunler_prompt.moc"
