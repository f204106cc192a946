#include "access/sifreleme.h"
#include "rows.h"

#include "app/session.h"
#include "data/baglanmamodulu.h"
#include "loginfixture.h"
#include "runtests.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

// Worked out by sha256sum over the bytes given beside them.
const QString digestOfAbc = u"ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"_s;
const QString digestOfNothing = u"e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"_s;
const QString digestOf1234 = u"03ac674216f3e15c761ee1a5e255f067953623c8b388b4459e13f978d7c846f4"_s;
const QString digestOfSifre = u"726d081cc0f5704cd6a88efc62ddbc4a9e6c6e07fb6f0f43acbdada1aac9a668"_s;

}  // namespace

/// Passwords: their stored forms, their comparison, their rows.
class SifrelemeTest : public QObject {
    Q_OBJECT

    struct DigestsRow {
        QString text, digest;
    };
    struct HashedFormRow {
        QString stored;
        bool hashed;
    };
    struct TextOfAValueRow {
        QVariant value;
        QString text;
    };
    struct ComparisonRow {
        QString entered, stored;
        bool accepted;
    };
    struct PasswordsOfManagersRow {
        QString file, entered;
        bool found;
    };
    struct StoringRow {
        QString file, entered, stored;
    };

private Q_SLOTS:
    void digests_data() {
        addRows<DigestsRow>(
            {{"empty", {u""_s, digestOfNothing}},
             {"abc", {u"abc"_s, digestOfAbc}},
             {"two blocks",
              {u"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"_s,
               u"248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"_s}},
             {"a million times a",
              {QString(1000000, u'a'),
               u"cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"_s}},
             {"şifre: FE 69 66 72 65", {u"şifre"_s, digestOfSifre}},
             {"all Turkish letters: D0 DC DE DD D6 C7 F0 FC FE FD F6 E7",
              {u"ĞÜŞİÖÇğüşıöç"_s, u"a1db3e1e05306ad1887e82d59c0fd71a198e196e5ee6668c27bd1e7a4770d858"_s}},
             {"euro: 80", {u"€"_s, u"76be8b528d0075f7aae98d6fa57a6d3c83ae480a8469e668d7b0af968995ac71"_s}},
             {"lacking in the code page: ?",
              {u"語"_s, u"8a8de823d5ed3e12746a62ef169bcf372be0ca44f0a1236abc35df05d96928e1"_s}},
             {"lacking but for its mark: the base letter",
              {u"ýžč"_s, u"198edd662c327a0d8a89581db32a8a833951f2a4c08a93c50f2deab418619baa"_s}},
             {"apostrophe",
              {u"o'neil"_s, u"eb1aed4f494ca276a88d3161252e48e0fe703f32666fe44fe4652f660b82cda4"_s}}});
    }
    void digests() {
        QFETCH(const DigestsRow, row);
        QCOMPARE(sha256hex(row.text), row.digest);
        QCOMPARE(sifreozet(row.text), u"sha256:"_s + row.digest);
        QCOMPARE(sifreozet(row.text).size(), 71);
    }

    void blanksCountInADigest() { QVERIFY(sha256hex(u" abc"_s) != digestOfAbc); }

    void hashedForm_data() {
        addRows<HashedFormRow>({{"whole", {u"sha256:"_s + digestOfAbc, true}},
                                {"bare prefix", {u"sha256:"_s, true}},
                                {"upper case", {u"SHA256:"_s + digestOfAbc.toUpper(), true}},
                                {"mixed case", {u"Sha256:x"_s, true}},
                                {"blanks around", {u"  sha256:12  "_s, true}},
                                {"no colon", {u"sha256"_s, false}},
                                {"blank inside", {u"sha256 :"_s, false}},
                                {"prefix further behind", {u"xsha256:"_s, false}},
                                {"empty", {u""_s, false}},
                                {"a letter that only folds to s", {u"\u017Fha256:"_s, false}}});
    }
    void hashedForm() {
        QFETCH(const HashedFormRow, row);
        QCOMPARE(sifreozetmi(row.stored), row.hashed);
    }

    void textOfAValue_data() {
        addRows<TextOfAValueRow>(
            {{"nothing", {QVariant(), u""_s}},
             {"a null text", {QVariant(QString()), u""_s}},
             {"a null number", {QVariant(QMetaType(QMetaType::Double)), u""_s}},
             {"integer", {QVariant(1234), u"1234"_s}},
             {"long integer", {QVariant(qlonglong(98765432109876)), u"98765432109876"_s}},
             {"byte", {QVariant::fromValue<uchar>(7), u"7"_s}},
             {"negative integer", {QVariant(-5), u"-5"_s}},
             {"true", {QVariant(true), u"-1"_s}},
             {"false", {QVariant(false), u"0"_s}},
             {"whole double", {QVariant(1234.0), u"1234"_s}},
             {"whole single", {QVariant(12.0F), u"12"_s}},
             {"double zero", {QVariant(0.0), u"0"_s}},
             {"double minus zero", {QVariant(-0.0), u"0"_s}},
             {"sixteen digits as typed", {QVariant(1234567890123456.0), u"1234567890123456"_s}},
             {"double with a fraction", {QVariant(12.5), u"12,5"_s}},
             {"negative fraction", {QVariant(-0.25), u"-0,25"_s}},
             {"text", {QVariant(u"gizli"_s), u"gizli"_s}},
             {"text with blanks around", {QVariant(u"  gizli söz "_s), u"gizli söz"_s}},
             {"digits as text keep their zeros", {QVariant(u"007"_s), u"007"_s}},
             {"bytes", {QVariant("abc"_ba), u"abc"_s}}});
    }
    void textOfAValue() {
        QFETCH(const TextOfAValueRow, row);
        QCOMPARE(sifremetni(row.value), row.text);
    }

    void comparison_data() {
        const QString abc = u"sha256:"_s + digestOfAbc;
        addRows<ComparisonRow>(
            {{"empty, nothing entered", {{}, {}, true}},
             {"empty, blanks entered", {u"  "_s, {}, true}},
             {"blanks stored", {{}, u"   "_s, true}},
             {"empty, something entered", {u"x"_s, {}, false}},
             {"empty, zero entered", {u"0"_s, {}, false}},
             {"hashed", {u"abc"_s, abc, true}},
             {"hashed, blanks around what is entered", {u" abc "_s, abc, true}},
             {"hashed, blanks around what is stored", {u"abc"_s, u" "_s + abc + u" "_s, true}},
             {"hashed, another password", {u"abd"_s, abc, false}},
             {"hashed, another case", {u"ABC"_s, abc, false}},
             {"hashed, nothing entered", {{}, abc, false}},
             {"hashed in upper case", {u"abc"_s, abc.toUpper(), true}},
             {"hashed in upper case, another password", {u"abd"_s, abc.toUpper(), false}},
             {"hashed, Turkish letters", {u"şifre"_s, u"sha256:"_s + digestOfSifre, true}},
             {"hashed, Turkish letters in another case", {u"ŞİFRE"_s, u"sha256:"_s + digestOfSifre, false}},
             {"hashed number, written in another way", {u"01234"_s, u"sha256:"_s + digestOf1234, false}},
             {"hash of the empty text, nothing entered", {{}, u"sha256:"_s + digestOfNothing, true}},
             {"hash of the empty text, something entered", {u"x"_s, u"sha256:"_s + digestOfNothing, false}},
             {"the stored form itself is entered", {abc, abc, false}},
             {"bare prefix, nothing entered", {{}, u"sha256:"_s, true}},
             {"bare prefix, blanks entered", {u" "_s, u"sha256:"_s, true}},
             {"bare prefix, something entered", {u"abc"_s, u"sha256:"_s, false}},
             {"hash cut to 50 characters, nothing entered", {{}, abc.left(50), true}},
             {"hash cut to 50 characters, its password", {u"abc"_s, abc.left(50), false}},
             {"hash cut by one digit, nothing entered", {{}, abc.left(70), true}},
             {"hash cut by one digit, its password", {u"abc"_s, abc.left(70), false}},
             {"hash with a digit too many, nothing entered", {{}, abc + u"0"_s, false}},
             {"hash with a digit too many, its password", {u"abc"_s, abc + u"0"_s, false}},
             {"plain", {u"gizli"_s, u"gizli"_s, true}},
             {"plain, blanks around", {u" gizli"_s, u"gizli "_s, true}},
             {"plain, another password", {u"gizlo"_s, u"gizli"_s, false}},
             {"plain, nothing entered", {{}, u"gizli"_s, false}},
             {"plain, a part", {u"giz"_s, u"gizli"_s, false}},
             {"plain, upper case", {u"ABC"_s, u"abc"_s, true}},
             {"plain, upper case stored", {u"abc"_s, u"ABC"_s, true}},
             {"plain, dotted capital i", {u"ŞİFRE"_s, u"şifre"_s, true}},
             {"plain, dotless capital i", {u"IŞIK"_s, u"ışık"_s, true}},
             {"plain, ordinary capital i", {u"GIZLI"_s, u"gizli"_s, true}},
             {"plain, other letters", {u"sifre"_s, u"şifre"_s, false}},
             {"plain 007", {u"7"_s, u"007"_s, true}},
             {"plain 7", {u"007"_s, u"7"_s, true}},
             {"plain 123", {u"0123"_s, u"123"_s, true}},
             {"plain 12 as 12,0", {u"12,0"_s, u"12"_s, true}},
             {"plain 12 as 12.0: no number here", {u"12.0"_s, u"12"_s, false}},
             {"plain 12 as 12,5: the prefix ends at the comma", {u"12,5"_s, u"12"_s, true}},
             {"plain 12 as 13", {u"13"_s, u"12"_s, false}},
             {"plain 12 as -12", {u"-12"_s, u"12"_s, false}},
             {"plain 12 as +12", {u"+12"_s, u"12"_s, true}},
             {"plain 100 as 1E2", {u"1E2"_s, u"100"_s, true}},
             {"plain 12 as 12a: no number", {u"12a"_s, u"12"_s, false}},
             {"plain 1234 as 1.234: another prefix", {u"1.234"_s, u"1234"_s, false}},
             {"plain 0 as nothing", {{}, u"0"_s, false}},
             {"plain apostrophes", {u"' OR ''='"_s, u"gizli"_s, false}},
             {"plain that looks like a prefix", {u"sha256"_s, u"sha256"_s, true}}});
    }
    void comparison() {
        QFETCH(const ComparisonRow, row);
        QCOMPARE(sifredogrula(row.entered, row.stored), row.accepted);
    }

    void passwordsOfManagers_data() {
        QTest::addColumn<PasswordsOfManagersRow>("row");
        for (const QString& file : {u""_s, u"kilit"_s}) {
            const auto row = [&file](const QString& name, const QString& entered, bool found) {
                QTest::newRow(qUtf8Printable(name + (file.isEmpty() ? u""_s : u", password file"_s)))
                    << PasswordsOfManagersRow{file, entered, found};
            };
            row(u"the hashed one's"_s, u"1234"_s, true);
            row(u"the plain one's"_s, u"GİZLİ"_s, true);
            row(u"the number's"_s, u"0077"_s, true);
            row(u"a cashier's"_s, u"kasa"_s, false);
            row(u"of a role in another spelling"_s, u"eski"_s, false);
            row(u"no one's"_s, u"yok"_s, false);
            row(u"apostrophes"_s, u"' OR '1'='1"_s, false);
            row(u"nothing, and no manager without password"_s, u""_s, false);
        }
    }
    void passwordsOfManagers() {
        QFETCH(const PasswordsOfManagersRow, row);
        LoginFixture shop(row.file);
        shop.addUser(u"Kasa"_s, u"kasa"_s, u"Kasiyer"_s);
        shop.addUser(u"Eski"_s, u"eski"_s, u"yonetici"_s);
        shop.addUser(u"Bir"_s, hashed("1234"));
        shop.addUser(u"İki"_s, u"gizli"_s);
        shop.addUser(u"Üç"_s, 77);
        QCOMPARE(yoneticisifresimi(row.entered), row.found);
        QVERIFY(allAnswered(shop.boxes));
    }

    void aManagerWithoutPassword() {
        LoginFixture shop;
        shop.addUser(u"Bir"_s, hashed("1234"));
        shop.addUser(u"İki"_s, QVariant());
        QVERIFY(yoneticisifresimi(u""_s));
        QVERIFY(!yoneticisifresimi(u"yok"_s));
    }

    void noManagersWhereTheTableCantBeRead() {
        LoginFixture shop;
        shop.addUser(u"Bir"_s, u"gizli"_s);
        QVERIFY(yoneticisifresimi(u"gizli"_s));
        shop.run(u"DROP TABLE kullanici"_s);
        QVERIFY(!yoneticisifresimi(u"gizli"_s));
        QVERIFY(allAnswered(shop.boxes));  // without a message
    }

    void noManagersWithoutADatabase() {
        LoginFixture shop;
        baglantikapat();
        QVERIFY(QFile::remove(shop.databaseFile()));
        shop.boxes.expectAny(MessageBoxAnswer::ok);  // the open's own
        QVERIFY(!yoneticisifresimi(u""_s));
        QVERIFY(allAnswered(shop.boxes));
    }

    void storing_data() {
        QTest::addColumn<StoringRow>("row");
        for (const QString& file : {u""_s, u"kilit"_s}) {
            const auto row = [&file](const QString& name, const QString& entered, const QString& stored) {
                QTest::newRow(qUtf8Printable(name + (file.isEmpty() ? u""_s : u", password file"_s)))
                    << StoringRow{file, entered, stored};
            };
            row(u"a password"_s, u"abc"_s, u"sha256:"_s + digestOfAbc);
            row(u"Turkish letters"_s, u"şifre"_s, u"sha256:"_s + digestOfSifre);
            row(u"nothing"_s, {}, u""_s);
            row(u"blanks"_s, u"   "_s, u""_s);
        }
    }
    void storing() {
        QFETCH(const StoringRow, row);
        LoginFixture shop(row.file);
        shop.addUser(u"Bir"_s, u"eski"_s);
        shop.addUser(u"İki"_s, u"eski"_s, u"Kasiyer"_s);
        QList<QVariantList> expected = shop.users();
        expected[1][2] = row.stored;
        sifreguncelle(u" 2 "_s, row.entered);
        QCOMPARE(shop.users(), expected);
        QVERIFY(!shop.users().at(1).at(2).isNull());
    }

    void storingNowhere_data() {
        QTest::addColumn<QString>("id");
        QTest::newRow("no id") << u""_s;
        QTest::newRow("blanks") << u"  "_s;
        QTest::newRow("no such id") << u"99"_s;
        QTest::newRow("apostrophes") << u"' OR '1'='1"_s;
        QTest::newRow("a second statement") << u"1'; DELETE FROM kullanici; --"_s;
    }
    void storingNowhere() {
        QFETCH(const QString, id);
        LoginFixture shop;
        shop.addUser(u"Bir"_s, u"eski"_s);
        const QList<QVariantList> before = shop.users();
        sifreguncelle(id, u"yeni"_s);
        QCOMPARE(shop.users(), before);
        QVERIFY(allAnswered(shop.boxes));
    }

    void storingIntoTheFirstOfTwoRows() {
        LoginFixture shop;
        shop.run(u"DROP TABLE kullanici"_s);
        shop.run(
            u"CREATE TABLE kullanici (id TEXT(50), personeladi TEXT(50), sifre TEXT(50), yetki TEXT(50))"_s);
        for (const QString& name : {u"Bir"_s, u"İki"_s})
            shop.run(u"INSERT INTO kullanici VALUES ('a''1', '%1', 'eski', '')"_s.arg(name));
        sifreguncelle(u"a'1"_s, u"abc"_s);
        QCOMPARE(shop.storedPassword(u"Bir"_s).toString(), u"sha256:"_s + digestOfAbc);
        QCOMPARE(shop.storedPassword(u"İki"_s).toString(), u"eski"_s);
    }

    void storingIsRefused() {
        LoginFixture shop;
        shop.addUser(u"Bir"_s, u"eski"_s);
        shop.refuse(u"UPDATE"_s, u"kullanici"_s, u"The field is too small"_s, u"length(NEW.sifre) > 50"_s);
        sifreguncelle(u"1"_s, u"yeni"_s);
        QCOMPARE(shop.storedPassword(u"Bir"_s).toString(), u"eski"_s);
        QVERIFY(allAnswered(shop.boxes));
    }
};

int main(int argc, char** argv) {
    return runTests<SifrelemeTest>(argc, argv);
}

#include "test_sifreleme.moc"
