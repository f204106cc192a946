// What the users' screen stores: passwords, roles, hostile texts, a file that is locked or an older one.

#include <QFile>

#include "access/kullanicilar.h"
#include "access/roles.h"
#include "access/sifreleme.h"
#include "app/ayarmodul.h"
#include "app/session.h"
#include "data/baglanmamodulu.h"
#include "databasefile.h"
#include "ordinaryuser.h"
#include "rows.h"
#include "runtests.h"
#include "screencontract.h"
#include "usersfixture.h"
#include "widgets/adodc.h"
#include "widgets/tdbgrid.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

const QString ayse = u"1|Ayşe|"_s + hashed("gizli") + u"|Yönetici";
const QString bekir = u"2|Bekir||Kasiyer"_s;

const ExpectedBox noPasswordAsked{words::warning, words::noPassword, MessageBoxAnswer::yes};

}  // namespace

class KullanicilarKayitTest : public QObject {
    Q_OBJECT

    struct RoleRow {
        QString yetki;
        Role role;
        QString selected;  ///< the item that an edit selects, and a save writes
        int items;
    };
    struct AddRow {
        QString name, password;
        QString stored;  ///< name|password|role
    };
    struct EditRow {
        QString stored;    ///< the password before
        QString shown;     ///< in both fields when they open
        QString typed;     ///< instead of that; null leaves it
        QString password;  ///< that is stored afterwards
    };
    struct TextRow {
        QString text;
    };
    struct LockRow {
        void (*act)(UsersFixture&);
        QList<ExpectedBox> boxes;
    };

    std::unique_ptr<UsersFixture> m_shop;

    Ui::kullanicilar& ui() const { return m_shop->ui(); }
    static void press(QWidget* control) { QTest::mouseClick(control, Qt::LeftButton); }

    void open() const {
        ayarla(u"sifresor1k"_s, u"1"_s);
        m_shop->open();
    }
    void startEditing(int id) const {
        m_shop->pick(id);
        press(ui().duzenle3);
    }
    void save(const QList<ExpectedBox>& boxes) const {
        m_shop->expect(boxes);
        press(ui().kaydet);
    }

private Q_SLOTS:
    void init() { m_shop = std::make_unique<UsersFixture>(); }
    void cleanup() {
        QVERIFY(allAnswered(m_shop->boxes));
        m_shop.reset();
    }

    // --- roles

    void roles_data() {
        using enum Role;
        const QString boss = u"Yönetici"_s;
        const QString till = u"Kasiyer"_s;
        addRows<RoleRow>({{"manager", {boss, manager, boss, 2}},
                          {"manager in capitals", {u"YÖNETİCİ"_s, manager, boss, 2}},
                          {"manager in plain letters", {u"yonetici"_s, manager, boss, 2}},
                          {"manager in plain capitals", {u"YONETICI"_s, manager, boss, 2}},
                          {"manager with blanks", {u" Yönetici "_s, manager, boss, 2}},
                          {"manager with a lost letter", {u"y?netici"_s, manager, boss, 2}},
                          {"cashier", {till, cashier, till, 2}},
                          {"cashier in capitals", {u"KASİYER"_s, cashier, till, 2}},
                          {"cashier in plain capitals", {u"KASIYER"_s, cashier, till, 2}},
                          {"warehouse", {u"depo sevk"_s, warehouse, u"depo sevk"_s, 3}},
                          {"warehouse in capitals", {u"DEPO SEVK"_s, warehouse, u"DEPO SEVK"_s, 3}},
                          {"another", {u"Müdür"_s, other, u"Müdür"_s, 3}},
                          {"almost a manager", {u"netici"_s, other, u"netici"_s, 3}},
                          {"none", {u""_s, other, u""_s, 3}}});
    }
    void roles() {
        QFETCH(const RoleRow, row);
        QCOMPARE(roleOf(row.yetki), row.role);
        m_shop->run(u"UPDATE kullanici SET yetki='"_s + row.yetki + u"' WHERE id=2");
        open();
        startEditing(2);
        QCOMPARE(ui().acilisi->currentItem()->text(), row.selected);
        QCOMPARE(ui().acilisi->count(), row.items);
        save({noPasswordAsked, notice(words::changed)});
        QCOMPARE(m_shop->stored().last(), u"2|Bekir||"_s + row.selected);
        // The extra item goes with its user.
        press(ui().kisiekleme3);
        QCOMPARE(entries(*ui().acilisi), (QStringList{u"Yönetici"_s, u"Kasiyer"_s}));
    }

    void aLongHashIsCutShortInTheListAlone() {
        open();
        QVERIFY(ui().TDBGrid1->column(2).isCode());
        QCOMPARE(ui().Adodc2->recordset().text(0, 2).size(), 71);
    }

    // --- a new user

    void add_data() {
        addRows<AddRow>(
            {{"with a password", {u"Cem"_s, u"1234"_s, u"Cem|"_s + hashed("1234") + u"|Kasiyer"}},
             {"without one", {u"Cem"_s, u""_s, u"Cem||Kasiyer"_s}},
             {"a name that there is", {u"Ayşe"_s, u""_s, u"Ayşe||Kasiyer"_s}},
             {"nothing is trimmed", {u" Cem "_s, u" a "_s, u" Cem |"_s + hashed(" a ") + u"|Kasiyer"}},
             {"Turkish letters, in bytes of the shop's code page",
              {u"Çiğdem"_s, u"şİı"_s, u"Çiğdem|"_s + hashed("\xFE\xDD\xFD") + u"|Kasiyer"}},
             {"what looks hashed is hashed",
              {u"Cem"_s, u"sha256:x"_s, u"Cem|"_s + hashed("sha256:x") + u"|Kasiyer"}},
             {"51 letters", {QString(51, u'x'), u""_s, QString(50, u'x') + u"||Kasiyer"}},
             {"a letter that doesn't fit whole",
              {QString(49, u'x') + u"🍞"_s, u""_s, QString(49, u'x') + u"||Kasiyer"}}});
    }
    void add() {
        QFETCH(const AddRow, row);
        open();
        press(ui().kisiekleme3);
        m_shop->fill(row.name, row.password, row.password);
        save(row.password.isEmpty() ? QList<ExpectedBox>{noPasswordAsked, notice(words::added)}
                                    : QList<ExpectedBox>{notice(words::added)});
        QCOMPARE(m_shop->stored(), (QStringList{ayse, bekir, u"3|"_s + row.stored}));
        QCOMPARE(m_shop->listed().size(), 3);
        QVERIFY(!ui().kisiekle->isVisible());
    }

    void aNewManager() {
        open();
        press(ui().kisiekleme3);
        ui().acilisi->setCurrentRow(0);
        m_shop->fill(u"Cem"_s, u"1"_s, u"1"_s);
        save({notice(words::added)});
        QCOMPARE(m_shop->stored().last(), u"3|Cem|"_s + hashed("1") + u"|Yönetici");
    }

    void pastedLineEndsBecomeBlanks() {
        open();
        press(ui().kisiekleme3);
        ui().personeladi->insert(u"Cem\r\n\tCan"_s);
        QTest::keyClick(ui().personeladi, Qt::Key_Exclam);
        save({noPasswordAsked, notice(words::added)});
        QVERIFY2(!m_shop->stored().last().contains(u'\n'), qPrintable(m_shop->stored().last()));
    }

    void anyText_data() {
        QTest::addColumn<TextRow>("row");
        for (const auto& [name, text] : hostileTexts()) {
            // A server's texts hold none.
            if (!ShopFixture::isOnServer() || !text.contains(QChar(u'\0')))
                QTest::newRow(qPrintable(name)) << TextRow{text};
        }
    }
    void anyText() {
        QFETCH(const TextRow, row);
        open();
        const auto others = m_shop->rows(u"SELECT count(*) FROM urunler"_s);
        for (int round = 0; round < 2; ++round) {
            round == 0 ? press(ui().kisiekleme3) : startEditing(2);
            ui().personeladi->setText(row.text);
            ui().sifre->setText(row.text);
            ui().sifre1->setText(row.text);
            save({notice(round == 0 ? words::added : words::changed)});
        }
        const auto users = m_shop->rows(u"SELECT personeladi, sifre FROM kullanici ORDER BY id"_s);
        QCOMPARE(users.size(), 3);
        QCOMPARE(m_shop->rows(u"SELECT count(*) FROM urunler"_s), others);
        for (const qsizetype user : {1, 2}) {
            const QString name = users[user][0].toString();
            QVERIFY(!name.isEmpty() && row.text.startsWith(name.left(1)));
            QVERIFY(name.size() <= 50);
            QCOMPARE(users[user][1].toString().size(), 71);
            QVERIFY(sifredogrula(row.text, users[user][1].toString()));
        }
        QCOMPARE(m_shop->stored().first(), ayse);
    }

    // --- a change

    void edit_data() {
        const QString hash = hashed("gizli");
        addRows<EditRow>(
            {{"a hash stays when nothing is typed", {hash, u""_s, {}, hash}},
             {"a hash in capitals too", {hash.toUpper(), u""_s, {}, hash.toUpper()}},
             {"a bare prefix too", {u"sha256:"_s, u""_s, {}, u"sha256:"_s}},
             {"a new one is hashed", {hash, u""_s, u"yeni"_s, hashed("yeni")}},
             {"a plain one is shown, and hashed by the save", {u"eski"_s, u"eski"_s, {}, hashed("eski")}},
             {"a plain one that is emptied stays", {u"eski"_s, u"eski"_s, u""_s, u"eski"_s}},
             {"none stays none", {u""_s, u""_s, {}, u""_s}}});
    }
    void edit() {
        QFETCH(const EditRow, row);
        m_shop->run(u"UPDATE kullanici SET sifre='"_s + row.stored + u"' WHERE id=2");
        open();
        startEditing(2);
        QCOMPARE(ui().sifre->text(), row.shown);
        QCOMPARE(ui().sifre1->text(), row.shown);
        ui().personeladi->setText(u"Berk"_s);
        if (!row.typed.isNull()) {
            ui().sifre->setText(row.typed);
            ui().sifre1->setText(row.typed);
        }
        save(ui().sifre->text().isEmpty() ? QList<ExpectedBox>{noPasswordAsked, notice(words::changed)}
                                          : QList<ExpectedBox>{notice(words::changed)});
        QCOMPARE(m_shop->stored(), (QStringList{ayse, u"2|Berk|"_s + row.password + u"|Kasiyer"}));
        QCOMPARE(m_shop->listed(), m_shop->stored());
    }

    void oneOfTwoOfAName() {
        m_shop->addUser(u"Bekir"_s, u""_s, u"Kasiyer"_s);
        open();
        startEditing(3);
        ui().acilisi->setCurrentRow(0);
        save({noPasswordAsked, notice(words::changed)});
        QCOMPARE(m_shop->stored(), (QStringList{ayse, bekir, u"3|Bekir||Yönetici"_s}));
    }

    void theCaptionOfThePromptStoresAChangeToo() {
        open();
        m_shop->pick(2);
        m_shop->users().edit(u"D!ZENLE"_s);
        ui().personeladi->setText(u"Berk"_s);
        save({noPasswordAsked, notice(words::changed)});
        QCOMPARE(m_shop->stored(), (QStringList{ayse, u"2|Berk||Kasiyer"_s}));
    }

    void aPasswordOfNumbersInAnOlderColumn() {
        m_shop->makePasswordColumn(u"DOUBLE"_s);
        m_shop->addUser(u"Ayşe"_s, 1234);
        open();
        startEditing(1);
        QCOMPARE(ui().sifre->text(), u"1234"_s);
    }

    // --- what goes wrong

    void deletedByAnotherTillMeanwhile() {
        open();
        startEditing(2);
        m_shop->run(u"DELETE FROM kullanici WHERE id=2"_s);
        ui().personeladi->setText(u"Berk"_s);
        save({noPasswordAsked, notice(words::changed)});  // also then
        QCOMPARE(m_shop->stored(), QStringList{ayse});
        QCOMPARE(m_shop->listed(), QStringList{ayse});
        m_shop->addUser(u"Cem"_s, u""_s, u"Kasiyer"_s);
        m_shop->users().form_load();
        m_shop->pick(3);
        m_shop->run(u"DELETE FROM kullanici WHERE id=3"_s);
        m_shop->expect({deletion(), notice(words::deleted)});
        press(ui().kisisil3);
        QCOMPARE(m_shop->stored(), QStringList{ayse});
    }

    void aTriggerRefuses() {
        m_shop->refuse(u"INSERT"_s, u"kullanici"_s, u"dar"_s);
        open();
        press(ui().kisiekleme3);
        m_shop->fill(u"Cem"_s, u"1"_s, u"1"_s);
        save({notice(words::added)});
        QCOMPARE(m_shop->stored(), (QStringList{ayse, bekir}));
        QVERIFY(!ui().kisiekle->isVisible());
    }

    void withoutADatabase() {
        open();
        press(ui().kisiekleme3);
        m_shop->fill(u"Cem"_s, u"1"_s, u"1"_s);
        QVERIFY(QFile::rename(m_shop->databaseFile(), m_shop->file(u"weg"_s)));
        baglantikapat();
        m_shop->boxes.expectAny(MessageBoxAnswer::ok);  // the connection's own, with the file's path
        m_shop->expect({{words::error, words::noDatabase}});
        press(ui().kaydet);
        QVERIFY(QFile::rename(m_shop->file(u"weg"_s), m_shop->databaseFile()));
        QCOMPARE(ui().personeladi->text(), u"Cem"_s);  // nothing of it is lost
        save({notice(words::added)});
        QCOMPARE(m_shop->stored().size(), 3);
    }

    void lockedByAnotherTill_data() {
        addRows<LockRow>({{"add",
                           {[](UsersFixture& shop) {
                                press(shop.ui().kisiekleme3);
                                shop.fill(u"Cem"_s, u"1"_s, u"1"_s);
                                press(shop.ui().kaydet);
                            },
                            {notice(words::added)}}},
                          {"edit",
                           {[](UsersFixture& shop) {
                                shop.pick(2);
                                press(shop.ui().duzenle3);
                                shop.fill(u"Berk"_s, u"1"_s, u"1"_s);
                                press(shop.ui().kaydet);
                            },
                            {notice(words::changed)}}},
                          {"delete",
                           {[](UsersFixture& shop) {
                                shop.pick(2);
                                press(shop.ui().kisisil3);
                            },
                            {deletion(), notice(words::deleted)}}}});
    }
    void lockedByAnotherTill() {
        if (ShopFixture::isOnServer())
            QSKIP("locks a file");
        QFETCH(const LockRow, row);
        open();
        m_shop->expect(row.boxes);
        RawDatabase otherTill(m_shop->databaseFile(), {});
        QVERIFY(otherTill.run(u"BEGIN IMMEDIATE"_s));
        row.act(*m_shop);
        QVERIFY(otherTill.run(u"COMMIT"_s));
        QCOMPARE(m_shop->stored(), (QStringList{ayse, bekir}));
        QCOMPARE(m_shop->listed(), (QStringList{ayse, bekir}));
        // And goes on once the file is free.
        m_shop->expect(row.boxes);
        row.act(*m_shop);
        QVERIFY(m_shop->stored() != (QStringList{ayse, bekir}));
    }

    void aConfigurationThatCantBeWritten() {
        ayarla(u"sifresor1k"_s, u"0"_s);
        ayarla(u"ekledznlsilk"_s, u"2"_s);
        m_shop->open();
        QFile file(m_shop->file(u"Kovanix.config"_s));
        QVERIFY(file.setPermissions(QFile::ReadOther | QFile::ReadOwner));
        QVERIFY(QFile(m_shop->folder())
                    .setPermissions(QFile::ReadOther | QFile::ExeOther | QFile::ReadOwner | QFile::ExeOwner));
        const QByteArray before = m_shop->config();
        {
            const OrdinaryUser user;
            QVERIFY(!user.failed());
            press(ui().Check1);
            m_shop->pick(2);
            press(ui().duzenle3);
        }
        QVERIFY(
            QFile(m_shop->folder()).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QCOMPARE(m_shop->config(), before);
        QVERIFY(m_shop->isPrompted());
        m_shop->answerPrompt(u"gizli"_s);
        QCOMPARE(ui().kisiekle->caption(), u"D!ZENLE"_s);  // and not what stands there from before
        QVERIFY(ui().kisiekle->isVisible());
        QCOMPARE(m_shop->stored(), (QStringList{ayse, bekir}));
    }

    void aFileCopiedRightAfterASaveHoldsIt() {
        if (ShopFixture::isOnServer())
            QSKIP("copies the file");
        open();
        press(ui().kisiekleme3);
        m_shop->fill(u"Cem"_s, u"1"_s, u"1"_s);
        save({notice(words::added)});
        // What was logged goes into the file in the till's next idle moment.
        const auto copied = [this] {
            QFile file(m_shop->databaseFile());
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        };
        QTRY_VERIFY(copied().contains("Cem"));
    }

    // --- older files

    void anOlderTableWithoutId() {
        m_shop->run(u"DROP TABLE kullanici"_s);
        m_shop->run(
            u"CREATE TABLE kullanici (no INTEGER PRIMARY KEY, personeladi TEXT(50), sifre TEXT(50), "
            u"yetki TEXT(50))"_s);
        m_shop->run(u"INSERT INTO kullanici VALUES (7, 'Ayşe', 'gizli', 'Yönetici')"_s);
        m_shop->run(u"INSERT INTO kullanici VALUES (8, 'Bekir', '', 'Kasiyer')"_s);
        LoginFixture& login = *m_shop;
        login.LoginFixture::open();
        QCOMPARE(entries(*login.login().ui.kullanici), (QStringList{u"Ayşe"_s, u"Bekir"_s}));
        QCOMPARE(entries(*login.login().ui.kullaniciid), QStringList());
        login.enterWrong(u"yanlış"_s);
        login.enter(u"gizli"_s);
        QVERIFY(login.isLoggedIn());
        QCOMPARE(login.storedPassword(u"Ayşe"_s).toString(), u"gizli"_s);  // no id to store the hash by
        // Its users can be looked at; none can be picked.
        open();
        QCOMPARE(m_shop->listed(), (QStringList{u"|Ayşe|gizli|Yönetici"_s, u"|Bekir||Kasiyer"_s}));
        m_shop->expect({notice(words::pickToEdit)});
        press(ui().duzenle3);
    }

    void twoRowsOfOneId() {
        m_shop->run(u"DROP TABLE kullanici"_s);
        m_shop->run(
            u"CREATE TABLE kullanici (id INTEGER, personeladi TEXT(50), sifre TEXT(71), yetki TEXT(50))"_s);
        for (const char16_t* name : {u"Ayşe", u"Bekir"})
            m_shop->run(u"INSERT INTO kullanici VALUES (1, '%1', 'gizli', 'Yönetici')"_s.arg(name));
        open();
        m_shop->pick(1);
        m_shop->expect({deletion(), notice(words::deleted)});
        press(ui().kisisil3);
        QCOMPARE(m_shop->stored(), QStringList{u"1|Bekir|gizli|Yönetici"_s});  // the first goes
    }
};

int main(int argc, char** argv) {
    return runTests<KullanicilarKayitTest>(argc, argv);
}

#include "test_kullanicilar_kayit.moc"
