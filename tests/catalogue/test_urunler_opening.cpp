#include <QApplication>
#include <QSignalSpy>

#include "access/sifresorur.h"
#include "app/ayarmodul.h"
#include "app/modTurkce.h"
#include "app/session.h"
#include "data/baglanmamodulu.h"
#include "productstest.h"
#include "rows.h"
#include "runtime/screenregistry.h"
#include "widgets/adodc.h"
#include "widgets/tdbgrid.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct SettingRow {
    QByteArray config;
    QString password;  ///< of the session
    bool ticked;
    bool enabled = true;
};

using Press = QAbstractButton* (*)(const Ui::urunler&);

QAbstractButton* adding(const Ui::urunler& ui) {
    return ui.kisiekleme2;
}
QAbstractButton* editing(const Ui::urunler& ui) {
    return ui.duzenle2;
}
QAbstractButton* deleting(const Ui::urunler& ui) {
    return ui.kisisil2;
}

struct GateRow {
    Press button;
    QByteArray setting;  ///< of sifresor1, with its line
    QString password;    ///< of the session
    bool selected;
    QString action;  ///< that is noted
    bool asks;
    QString notice = {};
};

}  // namespace

Q_DECLARE_METATYPE(SettingRow)
Q_DECLARE_METATYPE(GateRow)

/// How the screen opens, what it keeps in the settings, and when it asks for the password.
class TestUrunlerOpening : public ProductsTest {
    Q_OBJECT

private Q_SLOTS:
    void opensByItsKey() {
        m_shop->sales().eksiltme = 1;
        m_shop->key(Qt::Key_F6);
        QTRY_VERIFY(catalogue().isActiveWindow());
        QCOMPARE(m_shop->sales().eksiltme, 0);
        QCOMPARE(form().vkFrame1->caption(), u"ÜRÜN LİSTESİ"_s);
        QCOMPARE(form().vkFrame1->titleNote(), u"5 ürün"_s);
        QVERIFY(form().TDBGrid1->hasFocus());
        QVERIFY(!form().kisiekle2->isVisible());
        QCOMPARE(form().kisiekle2->caption(), u"EKLE"_s);
        QStringList headings;
        for (int i = 0; i < form().TDBGrid1->columnCount(); ++i)
            headings << form().TDBGrid1->columnCaption(i);
        QCOMPARE(headings, (QStringList{u"NO"_s, u"BARKOD"_s, u"ÜRÜN ADI"_s, u"ALIŞ FİYAT"_s,
                                        u"SATIŞ FİYATI"_s, u"STOK"_s}));
        QCOMPARE(listed(2),
                 (QStringList{u"3"_s, goods::tea, u"Çay Bahçesi 5 kg"_s, u"1000"_s, u"1234,5"_s, u"10"_s}));
    }

    void aCashiersKeyIsDead() {
        ui().vkCommand3->setEnabled(false);
        m_shop->key(Qt::Key_F6);
        QVERIFY(!loaded<urunler>());
    }

    void selectionIsTheNumberOfTheRow() {
        open();
        QCOMPARE(form().sutun2->text(), QString());
        choose(2);
        QCOMPARE(form().sutun2->text(), u"3"_s);
        QCOMPARE(form().Adodc2->recordset().current(), 2);
    }

    void numericColumnsAreFilteredWhole() {
        open();
        form().TDBGrid1->findChild<QLineEdit*>(u"TDBGrid1_filter_4"_s)->setFocus();
        type(u"32"_s);
        QCOMPARE(names(), QStringList());
        type(u",5"_s);
        QCOMPARE(names(), QStringList{u"Tam Yağlı Süt 1 L"_s});
    }

    // --- Check1
    void check1_data() {
        addRows<SettingRow>({
            {"not set", {"", u"gizli"_s, false}},
            {"0", {"sifresor1=0\r\n", u"gizli"_s, false}},
            {"1", {"sifresor1=1\r\n", u"gizli"_s, true}},
            {"no number", {"sifresor1=evet\r\n", u"gizli"_s, false}},
            {"no password, not set", {"", {}, true, false}},
            {"no password, 0", {"sifresor1=0\r\n", {}, true, false}},
            {"no password, 1", {"sifresor1=1\r\n", {}, true, false}},
        });
    }
    void check1() {
        QFETCH(const SettingRow, row);
        m_shop->writeConfig("[ayar]\r\n" + row.config);
        girissifre = row.password;
        open();
        QCOMPARE(form().Check1->isChecked(), row.ticked);
        QCOMPARE(form().Check1->isEnabled(), row.enabled);
        QCOMPARE(form().Check1->toolTip(), row.enabled ? QString() : metin(u"SIFRESIZ_GIRIS_TOOLTIP"_s));
        QVERIFY(m_shop->config().count("sifresor1") == row.config.count("sifresor1"));  // a load writes none
        QVERIFY(m_shop->config().contains(row.config));
    }

    void check1IsWrittenAtOnce() {
        girissifre = u"gizli"_s;
        open();
        press(*form().Check1);
        QCOMPARE(ayar(u"sifresor1"_s), u"1"_s);
        press(*form().Check1);
        QCOMPARE(ayar(u"sifresor1"_s), u"0"_s);
    }

    void check1IsOnlyTheUsersToWrite() {
        girissifre = u"gizli"_s;
        open();
        form().Check1->setChecked(true);
        QCOMPARE(ayar(u"sifresor1"_s), QString());
    }

    // --- the password
    void gate_data() {
        const QString some = u"gizli"_s;
        const QString noEdit = u"MSG_URUN_SECIN"_s;
        const QString noDelete = u"MSG_URUN_SIL_SEC"_s;
        addRows<GateRow>({
            {"add, not set", {adding, "", some, false, u"0"_s, true}},
            {"add, 0", {adding, "sifresor1=0\r\n", some, false, u"0"_s, true}},
            {"add, empty", {adding, "sifresor1=\r\n", some, false, u"0"_s, true}},
            {"add, 1", {adding, "sifresor1=1\r\n", some, false, u"0"_s, false}},
            {"add, no password", {adding, "", {}, false, u"0"_s, false}},
            {"edit", {editing, "", some, true, u"1"_s, true}},
            {"edit, 1", {editing, "sifresor1=1\r\n", some, true, u"1"_s, false}},
            {"edit, no password", {editing, "", {}, true, u"1"_s, false}},
            {"edit of none: no prompt", {editing, "", some, false, u"1"_s, false, noEdit}},
            {"edit of none, 1", {editing, "sifresor1=1\r\n", some, false, u"1"_s, false, noEdit}},
            {"delete", {deleting, "", some, true, u"2"_s, true}},
            {"delete, no password", {deleting, "", {}, true, u"2"_s, false}},
            {"delete of none: no prompt", {deleting, "", some, false, u"2"_s, false, noDelete}},
        });
    }
    void gate() {
        QFETCH(const GateRow, row);
        m_shop->writeConfig("[ayar]\r\nekledznlsil=9\r\n" + row.setting);
        girissifre = row.password;
        open();
        if (row.selected)
            choose(1);
        if (!row.notice.isEmpty())
            expectNotice(row.notice);
        const bool goesOn = !row.asks && row.notice.isEmpty();
        if (goesOn && row.button == deleting)
            expectQuestion(MessageBoxAnswer::no);
        press(*row.button(form()));
        QCOMPARE(ayar(u"ekledznlsil"_s), row.action);
        QCOMPARE(ekledznlsil, row.action);
        QCOMPARE(loaded<sifresorur>(), row.asks);
        if (row.asks) {
            QVERIFY(screen<sifresorur>().isVisible());
            QCOMPARE(screen<sifresorur>().ui.nereye->text(), u"1"_s);
        }
        QCOMPARE(form().kisiekle2->isVisible(), goesOn && row.button != deleting);
    }

    void settingsThatCantBeWrittenStillLead() {
        QFile config(ayardosyasi());
        m_shop->writeConfig("[ayar]\r\nekledznlsil=2\r\n");
        QVERIFY(QFile::remove(config.fileName()));
        QVERIFY(QDir().mkdir(config.fileName()));  // nothing can be written there, by root either
        open();
        press(*form().kisiekleme2);
        QVERIFY(form().kisiekle2->isVisible());
        QCOMPARE(ekledznlsil, u"0"_s);  // what was pressed
    }

    void thePromptGoesWithItsScreen_data() {
        QTest::addColumn<bool>("byX");
        QTest::newRow("by the button") << false;
        QTest::newRow("by the window's X") << true;
    }
    void thePromptGoesWithItsScreen() {
        QFETCH(const bool, byX);
        girissifre = u"gizli"_s;
        open();
        press(*form().kisiekleme2);
        QVERIFY(loaded<sifresorur>());
        if (byX)
            catalogue().close();
        else
            form().vkCommand4->click();
        QTRY_VERIFY(!loaded<sifresorur>());
    }
};

int main(int argc, char** argv) {
    return runTests<TestUrunlerOpening>(argc, argv);
}

#include "test_urunler_opening.moc"
