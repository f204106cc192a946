// The users' screen: its list, its load, its gate, and what its buttons do.

#include "access/kullanicilar.h"

#include <QMessageBox>

#include "app/ayarmodul.h"
#include "app/session.h"
#include "appearance/keyboardscreen.h"
#include "appearance/mdlMonitors.h"
#include "data/baglanmamodulu.h"
#include "rows.h"
#include "runtests.h"
#include "sales/satisekrani.h"
#include "usersfixture.h"
#include "widgets/adodc.h"
#include "widgets/tdbgrid.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

const QString ayse = u"1|Ayşe|"_s + hashed("gizli") + u"|Yönetici";
const QString bekir = u"2|Bekir||Kasiyer"_s;

enum class Action { add, edit, remove };

TDBGrid* listOf(const UsersFixture& shop) {
    return shop.ui().TDBGrid1;
}

DrawnButton* buttonOf(const Ui::kullanicilar& ui, Action action) {
    return action == Action::add ? ui.kisiekleme3 : action == Action::edit ? ui.duzenle3 : ui.kisisil3;
}

}  // namespace

class KullanicilarTest : public QObject {
    Q_OBJECT

    struct CheckRow {
        QString session;
        QByteArray setting;  ///< the configuration's line
        bool ticked;
        bool enabled;
    };
    struct GateRow {
        Action action;
        QString session;
        QByteArray setting;
        int picked;  ///< 0 for none
        QList<ExpectedBox> boxes;
        bool prompted;
        QString fields;  ///< the frame's caption; empty: it isn't open
        QString sessionAfter;
        QStringList left;  ///< the users that are stored afterwards
    };
    struct SelectionRow {
        void (*act)(UsersFixture&);
        QString selected;
    };
    struct RefusalRow {
        QString name, password, repetition;
        ExpectedBox box;
        QString focus;
    };
    struct WalkRow {
        QString from, to;
    };
    struct PictureRow {
        QString picture, code;
    };

    std::unique_ptr<UsersFixture> m_shop;

    Ui::kullanicilar& ui() const { return m_shop->ui(); }
    /// Opens the screen with its actions behind no password.
    void openUnguarded() {
        ayarla(u"sifresor1k"_s, u"1"_s);
        m_shop->open();
    }
    void openToAdd() {
        openUnguarded();
        press(ui().kisiekleme3);
    }
    static void press(QWidget* control) { QTest::mouseClick(control, Qt::LeftButton); }
    QWidget* control(const QString& name) const { return m_shop->users().findChild<QWidget*>(name); }
    static QString focused() {
        return QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : QString();
    }
    QString fieldsCaption() const {
        return ui().kisiekle->isVisible() ? ui().kisiekle->caption() : QString();
    }

private Q_SLOTS:
    void init() { m_shop = std::make_unique<UsersFixture>(); }
    void cleanup() {
        QVERIFY(allAnswered(m_shop->boxes));
        m_shop.reset();
    }

    // --- the list

    void listAndWords() {
        m_shop->open();
        QStringList headings;
        for (int i = 0; i < ui().TDBGrid1->columnCount(); ++i)
            headings.append(ui().TDBGrid1->columnCaption(i));
        QCOMPARE(headings, (QStringList{u"NO"_s, u"KULLANICI ADI"_s, u"ŞIFRE"_s, u"yetki"_s}));
        QCOMPARE(m_shop->listed(), (QStringList{ayse, bekir}));
        QCOMPARE(ui().vkFrame1->titleNote(), u"2 kullanıcı"_s);
        QStringList captions;
        for (const DrawnButton* button :
             {ui().kisiekleme3, ui().duzenle3, ui().kisisil3, ui().kaydet, ui().vazgec, ui().kapat})
            captions.append(button->caption());
        QCOMPARE(captions,
                 (QStringList{u"EKLE"_s, u"DüZENLE"_s, u"SİL"_s, u"KAYDET"_s, u"VAZGEÇ"_s, u"KAPAT"_s}));
        QCOMPARE(ui().Check1->text(), u"Aşılırken şifre sormasın"_s);
        QCOMPARE(entries(*ui().acilisi), (QStringList{yoneticiyetkisi(), u"Kasiyer"_s}));
        QVERIFY(!ui().kisiekle->isVisible());
        QVERIFY(!ui().kaydet->isEnabled());
        QCOMPARE(ui().kisiekleYeri->accessibleDescription(), u"EKLE’ye ya da bir kullanıcıya dokunun"_s);
    }

    void anEmptyList() {
        m_shop->run(u"DELETE FROM kullanici"_s);
        m_shop->open();
        QCOMPARE(ui().TDBGrid1->accessibleDescription(), u"Henüz kullanıcı yok. EKLE’ye dokunun"_s);
    }

    void columnsKeepTheirWidthsOverALoad() {
        m_shop->open();
        m_shop->users().setWindowState(Qt::WindowNoState);
        const auto widths = [this] {
            QList<int> all;
            for (int i = 0; i < 4; ++i)
                all.append(ui().TDBGrid1->column(i).width());
            return all;
        };
        m_shop->users().resize(1024, 768);
        QCoreApplication::processEvents();
        QCOMPARE(widths(), (QList{64, 196, 136, 148}));
        m_shop->users().resize(1366, 768);
        QCoreApplication::processEvents();
        // What the grid grew by, over one column less than grow.
        const int growth = (ui().TDBGrid1->width() - 544) / 2;
        const QList wide{64, 196 + growth, 136 + growth, 148 + growth};
        QVERIFY(growth > 0);
        QCOMPARE(widths(), wide);
        // It doesn't take these for the stored ones, whose fractions would be lost bit by bit.
        for (const int width : {1367, 1369, 1371, 1373}) {
            m_shop->users().resize(width, 768);
            QCoreApplication::processEvents();
            m_shop->users().form_load();
        }
        m_shop->users().resize(1024, 768);
        QCoreApplication::processEvents();
        QCOMPARE(widths(), (QList{64, 196, 136, 148}));
    }

    void selection_data() {
        addRows<SelectionRow>(
            {{"nothing", {[](UsersFixture&) {}, u""_s}},
             {"a click", {[](UsersFixture& shop) { shop.pick(2); }, u"2"_s}},
             {"a move, of the first row", {[](UsersFixture& shop) { listOf(shop)->mousemove(); }, u"1"_s}},
             {"a release", {[](UsersFixture& shop) { listOf(shop)->mouseup(Qt::RightButton); }, u"1"_s}},
             {"a double click", {[](UsersFixture& shop) { listOf(shop)->dblclick(); }, u"1"_s}},
             {"a press alone", {[](UsersFixture& shop) { listOf(shop)->mousedown(Qt::LeftButton); }, u""_s}},
             {"a heading", {[](UsersFixture& shop) { listOf(shop)->headClick(1); }, u"1"_s}},
             {"Down", {[](UsersFixture& shop) { QTest::keyClick(listOf(shop), Qt::Key_Down); }, u"2"_s}},
             {"Enter", {[](UsersFixture& shop) { QTest::keyClick(listOf(shop), Qt::Key_Return); }, u"1"_s}},
             {"Up, at the first row",
              {[](UsersFixture& shop) { QTest::keyClick(listOf(shop), Qt::Key_Up); }, u"1"_s}}});
    }
    void selection() {
        QFETCH(const SelectionRow, row);
        m_shop->open();
        row.act(*m_shop);
        QCOMPARE(ui().sutun->text(), row.selected);
        QVERIFY(ui().Adodc2->recordset().sort().isEmpty());
        QVERIFY(!ui().TDBGrid1->hasFilterBar());
    }

    // --- the load

    void check_data() {
        addRows<CheckRow>({{"no password", {u""_s, "sifresor1k=0", true, false}},
                           {"no password, nor a setting", {u""_s, "", true, false}},
                           {"a password, the setting is off", {u"gizli"_s, "sifresor1k=0", false, true}},
                           {"a password, the setting is on", {u"gizli"_s, "sifresor1k=1", true, true}},
                           {"a password, no setting", {u"gizli"_s, "", false, true}},
                           {"a setting that is no number", {u"gizli"_s, "sifresor1k=evet", false, true}},
                           {"the products' setting is another", {u"gizli"_s, "sifresor1=1", false, true}}});
    }
    void check() {
        QFETCH(const CheckRow, row);
        m_shop->writeConfig("[ayar]\n" + row.setting + '\n');
        m_shop->open(row.session);
        QCOMPARE(ui().Check1->isChecked(), row.ticked);
        QCOMPARE(ui().Check1->isEnabled(), row.enabled);
        QCOMPARE(ui().Check1->toolTip(), row.enabled ? u""_s : u"şifresiz kullanıcıyla giriş yapıldı"_s);
        QCOMPARE(m_shop->config().contains("sifresor1k"), row.setting.contains("sifresor1k"));
    }

    void onlyAPressWritesTheSetting() {
        m_shop->writeConfig("[ayar]\nsifresor1k=7\n");
        m_shop->open();
        ui().Check1->setChecked(false);
        QCOMPARE(ayar(u"sifresor1k"_s), u"7"_s);
        press(ui().Check1);
        QCOMPARE(ayar(u"sifresor1k"_s), u"1"_s);
        press(ui().Check1);
        QCOMPARE(ayar(u"sifresor1k"_s), u"0"_s);
    }

    void theTimerLoadsOnce() {
        m_shop->open();
        m_shop->addUser(u"Cem"_s, u""_s, u"Kasiyer"_s);
        QCOMPARE(m_shop->users().yenile.interval(), 0);
        QCOMPARE(m_shop->listed().size(), 2);
        m_shop->users().yenile.setInterval(1);
        QTRY_COMPARE(m_shop->listed().size(), 3);
        QCOMPARE(m_shop->users().yenile.interval(), 0);
    }

    void aLoadConnectsNothingTwice() {
        m_shop->open();
        m_shop->users().form_load();
        m_shop->users().form_load();
        const QSignalSpy written(ui().sutun, &QLineEdit::textChanged);
        m_shop->pick(2);
        QCOMPARE(written.count(), 1);
        m_shop->logInAs(u"gizli"_s, 0);
        m_shop->expect({notice(words::noRight)});
        press(ui().kisiekleme3);  // one box
    }

    void withoutADatabase() {
        QVERIFY(QFile::rename(m_shop->databaseFile(), m_shop->file(u"weg"_s)));
        baglantikapat();
        m_shop->boxes.expectAny(MessageBoxAnswer::ok);
        m_shop->open();
        QCOMPARE(m_shop->listed(), QStringList());
        QVERIFY(QFile::rename(m_shop->file(u"weg"_s), m_shop->databaseFile()));
    }

    // --- the gate

    void gate_data() {
        const QByteArray asks = "sifresor1k=0";
        const QByteArray goesOn = "sifresor1k=1";
        const QStringList both{ayse, bekir};
        const QString gizli = u"gizli"_s;
        const QString none = u""_s;
        const QString other = u"yok"_s;  // no manager's password
        const QString mark = u"?"_s;
        using enum Action;
        addRows<GateRow>(
            {{"add, prompted", {add, gizli, asks, 0, {}, true, none, gizli, both}},
             {"add, prompted without a setting", {add, gizli, "", 0, {}, true, none, gizli, both}},
             {"add, without the prompt", {add, gizli, goesOn, 0, {}, false, u"EKLE"_s, gizli, both}},
             {"add, unknown password", {add, other, asks, 0, {}, false, u"EKLE"_s, mark, both}},
             {"edit, prompted", {edit, gizli, asks, 2, {}, true, none, gizli, both}},
             {"edit, prompted before the selection is tested",
              {edit, gizli, asks, 0, {}, true, none, gizli, both}},
             {"edit, without the prompt", {edit, gizli, goesOn, 2, {}, false, u"DüZENLE"_s, gizli, both}},
             {"edit, nothing picked",
              {edit, gizli, goesOn, 0, {notice(words::pickToEdit)}, false, none, gizli, both}},
             {"edit, unknown password", {edit, other, asks, 2, {}, false, u"DüZENLE"_s, mark, both}},
             {"edit, unknown password, nothing picked",
              {edit, other, asks, 0, {notice(words::pickToEdit)}, false, none, mark, both}},
             {"delete, prompted", {remove, gizli, asks, 2, {}, true, none, gizli, both}},
             {"delete, prompted before the selection is tested",
              {remove, gizli, asks, 0, {}, true, none, gizli, both}},
             {"delete, without the prompt",
              {remove, gizli, goesOn, 2, {deletion(), notice(words::deleted)}, false, none, gizli, {ayse}}},
             {"delete, no",
              {remove, gizli, goesOn, 2, {deletion(MessageBoxAnswer::no)}, false, none, gizli, both}},
             {"delete, Escape",
              {remove, gizli, goesOn, 2, {deletion(BoxAnswers::escape)}, false, none, gizli, both}},
             {"delete, nothing picked",
              {remove, gizli, goesOn, 0, {notice(words::pickToDelete)}, false, none, gizli, both}},
             {"delete, the last manager",
              {remove, gizli, goesOn, 1, {notice(words::lastManager)}, false, none, gizli, both}},
             {"delete, unknown password, the last manager isn't looked for",
              {remove, other, asks, 1, {deletion(), notice(words::deleted)}, false, none, mark, {bekir}}},
             {"delete, unknown password, nothing picked",
              {remove, other, asks, 0, {notice(words::pickToDelete)}, false, none, mark, both}}});
    }
    void gate() {
        QFETCH(const GateRow, row);
        m_shop->writeConfig("[ayar]\n" + row.setting + '\n');
        m_shop->open(row.session);
        if (row.picked > 0)
            m_shop->pick(row.picked);
        m_shop->expect(row.boxes);
        press(buttonOf(ui(), row.action));
        const QString code = QString::number(static_cast<int>(row.action));
        QCOMPARE(ayar(u"ekledznlsilk"_s), code);
        QCOMPARE(ekledznlsilk, code);
        QCOMPARE(m_shop->isPrompted(), row.prompted);
        QCOMPARE(loaded<sifresorur>(), row.prompted);
        if (row.prompted)
            QCOMPARE(m_shop->prompt().nereye->text(), u"2"_s);
        QCOMPARE(fieldsCaption(), row.fields);
        QCOMPARE(girissifre, row.sessionAfter);
        QCOMPARE(m_shop->stored(), row.left);
        QCOMPARE(m_shop->listed(), row.left);
        if (row.action == Action::remove)
            QCOMPARE(secilikullanici, row.picked > 0 ? QString::number(row.picked) : u""_s);
    }

    void anUnknownPasswordIsKeptAsAQuestionMark() {
        m_shop->open(u"yok"_s);
        press(ui().kisiekleme3);
        press(ui().vazgec);
        // Still no manager's: the actions go on.
        press(ui().kisiekleme3);
        QCOMPARE(fieldsCaption(), u"EKLE"_s);
        QCOMPARE(girissifre, u"?"_s);
    }

    void aSessionWithoutPasswordIsntPrompted() {
        m_shop->run(u"UPDATE kullanici SET sifre='' WHERE id=1"_s);
        m_shop->open(u""_s);
        press(ui().kisiekleme3);
        QVERIFY(!loaded<sifresorur>());
        QCOMPARE(fieldsCaption(), u"EKLE"_s);
        QCOMPARE(girissifre, u""_s);
    }

    void aCashierMayLookOnly() {
        m_shop->open(u"gizli"_s, 0);
        QCOMPARE(m_shop->listed().size(), 2);
        m_shop->pick(2);
        const QByteArray before = m_shop->config();
        for (DrawnButton* button : {ui().kisiekleme3, ui().duzenle3, ui().kisisil3}) {
            m_shop->expect({notice(words::noRight)});
            button->setFocus();
            press(button);
            QTRY_VERIFY(ui().TDBGrid1->hasFocus());  // an Enter too many would bring the notice back
        }
        QCOMPARE(fieldsCaption(), u""_s);
        QCOMPARE(m_shop->config(), before);
        QVERIFY(!loaded<sifresorur>());
    }

    void theDeletionAsksAsAWarning() {
        openUnguarded();
        m_shop->pick(2);
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        connect(&m_shop->boxes, &BoxAnswers::opened, this,
                [&](const QMessageBox& box) { icon = box.icon(); });
        m_shop->expect({deletion(MessageBoxAnswer::no)});
        press(ui().kisisil3);
        QCOMPARE(icon, QMessageBox::Warning);
        QCOMPARE(ui().sutun->text(), u"2"_s);  // stays after a no
    }

    void ofTwoManagersEitherGoes() {
        ayarla(u"sifresor1k"_s, u"1"_s);
        m_shop->addUser(u"Cem"_s, u"x"_s);
        m_shop->open();
        m_shop->pick(1);  // the session's own
        m_shop->expect({deletion(), notice(words::deleted)});
        press(ui().kisisil3);
        QCOMPARE(m_shop->stored(), (QStringList{bekir, u"3|Cem|x|Yönetici"_s}));
        QCOMPARE(ui().sutun->text(), u""_s);
        QCOMPARE(girisyetki, 1);
    }

    // --- the fields

    void fieldsOfANewUser() {
        openUnguarded();
        m_shop->pick(1);
        press(ui().duzenle3);
        m_shop->fill(u"a"_s, u"b"_s, u"c"_s);
        press(ui().kisiekleme3);
        QCOMPARE(ui().personeladi->text() + ui().sifre->text() + ui().sifre1->text() + ui().id->text(),
                 u""_s);
        QCOMPARE(ui().acilisi->currentItem()->text(), u"Kasiyer"_s);
        QVERIFY(ui().acilisi->isEnabled());
        QVERIFY(ui().kaydet->isEnabled());
        QCOMPARE(focused(), u"personeladi"_s);
        QCOMPARE(ui().kisiekle->titleNote(), u"Yeni kullanıcı"_s);
        QCOMPARE(ui().sifre->passwordchar() + ui().sifre1->passwordchar(), u"**"_s);
    }

    void fieldsOfAUser() {
        openUnguarded();
        m_shop->pick(1);
        press(ui().duzenle3);
        QCOMPARE(ui().id->text(), u"1"_s);
        QCOMPARE(secilikullanici, u"1"_s);
        QCOMPARE(ui().personeladi->text(), u"Ayşe"_s);
        QCOMPARE(ui().sifre->text() + ui().sifre1->text(), u""_s);  // hashed
        QCOMPARE(ui().acilisi->currentItem()->text(), u"Yönetici"_s);
        QCOMPARE(ui().kisiekle->titleNote(), u"1 · Ayşe"_s);
        QCOMPARE(focused(), u"personeladi"_s);
    }

    void theRowIsReadAnewForAChange() {
        openUnguarded();
        m_shop->pick(2);
        m_shop->run(u"UPDATE kullanici SET personeladi='Bekir Can' WHERE id=2"_s);
        press(ui().duzenle3);
        QCOMPARE(ui().personeladi->text(), u"Bekir Can"_s);
    }

    void nothingToChangeInAnEmptyList() {
        openUnguarded();
        m_shop->pick(1);
        m_shop->run(u"DELETE FROM kullanici"_s);
        m_shop->users().form_load();
        QCOMPARE(ui().sutun->text(), u"1"_s);
        m_shop->expect({notice(words::noUsers)});
        press(ui().duzenle3);
        QCOMPARE(fieldsCaption(), u""_s);
    }

    void nobodyElseIsChangedInPlaceOfAUserWhoIsGone() {
        openUnguarded();
        m_shop->pick(2);
        m_shop->run(u"DELETE FROM kullanici WHERE id=2"_s);
        m_shop->users().form_load();
        m_shop->expect({notice(words::pickToEdit)});
        press(ui().duzenle3);
        QCOMPARE(fieldsCaption(), u""_s);
    }

    void refusals_data() {
        addRows<RefusalRow>(
            {{"no name", {u""_s, u"x"_s, u"y"_s, notice(words::noName), u"personeladi"_s}},
             {"passwords differ", {u"Cem"_s, u"x"_s, u"y"_s, notice(words::passwordsDiffer), u"sifre1"_s}},
             {"in letter case", {u"Cem"_s, u"x"_s, u"X"_s, notice(words::passwordsDiffer), u"sifre1"_s}},
             {"in a blank", {u"Cem"_s, u"x"_s, u"x "_s, notice(words::passwordsDiffer), u"sifre1"_s}},
             {"none repeated", {u"Cem"_s, u"x"_s, u""_s, notice(words::passwordsDiffer), u"sifre1"_s}},
             {"no password, no",
              {u"Cem"_s,
               u""_s,
               u""_s,
               {words::warning, words::noPassword, MessageBoxAnswer::no},
               u"sifre1"_s}},
             {"no password, Escape",
              {u"Cem"_s,
               u""_s,
               u""_s,
               {words::warning, words::noPassword, BoxAnswers::escape},
               u"sifre1"_s}}});
    }
    void refusals() {
        QFETCH(const RefusalRow, row);
        openToAdd();
        m_shop->fill(row.name, row.password, row.repetition);
        m_shop->expect({row.box});
        press(ui().kaydet);
        m_shop->users().activateWindow();  // as a window manager does where a box has closed
        QTRY_COMPARE(focused(), row.focus);
        QCOMPARE(m_shop->stored().size(), 2);
        QCOMPARE(ui().sifre->text(), row.password);
        QCOMPARE(fieldsCaption(), u"EKLE"_s);
    }

    void cancelling() {
        openUnguarded();
        m_shop->pick(1);
        press(ui().duzenle3);
        m_shop->fill(u"a"_s, u"b"_s, u"b"_s);
        press(ui().vazgec);
        QVERIFY(!ui().kisiekle->isVisible());
        QCOMPARE(ui().kisiekle->caption(), u"EKLE"_s);
        QVERIFY(!ui().kaydet->isEnabled());
        QCOMPARE(ui().personeladi->text() + ui().sifre->text() + ui().sifre1->text() + ui().id->text(),
                 u""_s);
        for (QLineEdit* field : {ui().personeladi, static_cast<QLineEdit*>(ui().sifre)})
            QVERIFY(!field->isUndoAvailable());
        QCOMPARE(focused(), u"TDBGrid1"_s);
        QCOMPARE(ui().sutun->text(), u"1"_s);
    }

    void walk_data() {
        addRows<WalkRow>({{"name", {u"personeladi"_s, u"sifre"_s}},
                          {"password", {u"sifre"_s, u"sifre1"_s}},
                          {"repetition, which presses nothing", {u"sifre1"_s, u"kaydet"_s}}});
    }
    void walk() {
        QFETCH(const WalkRow, row);
        openToAdd();
        control(row.from)->setFocus();
        QTest::keyClick(control(row.from), Qt::Key_Return);
        QCOMPARE(focused(), row.to);
        QCOMPARE(ui().personeladi->text() + ui().sifre->text() + ui().sifre1->text(), u""_s);
    }

    void byTheKeyboardAlone() {
        m_shop->open();
        const auto key = [](Qt::Key pressed, int times = 1) {
            while (times-- > 0)
                QTest::keyClick(QApplication::focusWidget(), pressed);
        };
        const auto type = [](const QString& text) {
            for (const QChar sign : text)
                QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), Qt::Key_unknown, QString(sign),
                                    Qt::NoModifier);
        };
        const auto answer = [&] {
            QTRY_VERIFY(m_shop->isPrompted() && screen<sifresorur>().isActiveWindow());
            type(u"gizli"_s);
            key(Qt::Key_Tab, 2);
            key(Qt::Key_Space);
            QVERIFY(!loaded<sifresorur>());
        };
        // Added …
        key(Qt::Key_Tab);
        QCOMPARE(focused(), u"kisiekleme3"_s);
        key(Qt::Key_Return);
        answer();
        QTRY_COMPARE(focused(), u"personeladi"_s);
        type(u"Cem"_s);
        key(Qt::Key_Return);
        type(u"1"_s);
        key(Qt::Key_Return);
        type(u"1"_s);
        key(Qt::Key_Return);
        m_shop->expect({notice(words::added)});
        key(Qt::Key_Return);
        m_shop->users().activateWindow();
        QTRY_COMPARE(focused(), u"TDBGrid1"_s);
        QCOMPARE(m_shop->stored().last(), u"3|Cem|"_s + hashed("1") + u"|Kasiyer");
        // … changed …
        key(Qt::Key_End);
        key(Qt::Key_Tab, 2);
        key(Qt::Key_Return);
        answer();
        QTRY_COMPARE(focused(), u"personeladi"_s);
        key(Qt::Key_End);
        type(u"al"_s);
        key(Qt::Key_Tab, 3);
        key(Qt::Key_Up);
        key(Qt::Key_Tab);
        m_shop->expect({{words::warning, words::noPassword, MessageBoxAnswer::yes}, notice(words::changed)});
        key(Qt::Key_Return);
        m_shop->users().activateWindow();
        QTRY_COMPARE(focused(), u"TDBGrid1"_s);
        QCOMPARE(m_shop->stored().last(), u"3|Cemal|"_s + hashed("1") + u"|Yönetici");
        // … and deleted.
        key(Qt::Key_Tab, 3);
        m_shop->expect({deletion(), notice(words::deleted)});
        key(Qt::Key_Return);
        answer();
        QCOMPARE(m_shop->stored(), (QStringList{ayse, bekir}));
        m_shop->users().activateWindow();
        QTRY_COMPARE(focused(), u"TDBGrid1"_s);
        key(Qt::Key_Escape);
        QVERIFY(!loaded<kullanicilar>());
    }

    void keyboardPictures_data() {
        addRows<PictureRow>({{"name", {u"Image1"_s, u"7"_s}},
                             {"password", {u"Image2"_s, u"8"_s}},
                             {"repetition", {u"Image3"_s, u"9"_s}}});
    }
    void keyboardPictures() {
        QFETCH(const PictureRow, row);
        monitorlerioku();
        openToAdd();
        press(control(row.picture));
        QVERIFY(loaded<klavyeyeni>() != loaded<klavyeyeni2>());
        const KeyboardScreen& keyboard =
            loaded<klavyeyeni>() ? static_cast<KeyboardScreen&>(screen<klavyeyeni>()) : screen<klavyeyeni2>();
        QCOMPARE(keyboard.ui.nereye->text(), row.code);
    }
};

int main(int argc, char** argv) {
    return runTests<KullanicilarTest>(argc, argv);
}

#include "test_kullanicilar.moc"
