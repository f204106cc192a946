#include <cmath>
#include <limits>

#include "app/session.h"
#include "data/baglanmamodulu.h"
#include "runtests.h"
#include "runtime/runtimeerror.h"
#include "shopfixture.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

void bothKinds() {
    QTest::addColumn<QString>("password");
    QTest::newRow("plain file") << QString();
    QTest::newRow("password file") << u"gizli şifre"_s;
}

/// The first column of a select's rows on the shared connection.
QVariantList firstColumn(const QString& sql, const QString& column) {
    Recordset set;
    set.open(sql, baglanti());
    QVariantList values;
    for (; !set.atEnd(); set.moveNext())
        values.append(set.field(column));
    return values;
}

}  // namespace

class TestValues : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void quotesText_data();
    void quotesText();
    void escapesPatterns_data();
    void escapesPatterns();
    void patternsFindTheirText_data();
    void patternsFindTheirText();
    void writesMoments_data();
    void writesMoments();
    void writesDayAndTime_data();
    void writesDayAndTime();
    void writesBetween_data();
    void writesBetween();
    void engineReadsDates_data() { bothKinds(); }
    void engineReadsDates();
    void engineRefusesWhatIsNoTime_data();
    void engineRefusesWhatIsNoTime();
    void writesNumbers_data();
    void writesNumbers();
    void readsTexts_data();
    void readsTexts();
    void readsValues_data();
    void readsValues();
    void trimsValues_data();
    void trimsValues();
    void managers_data();
    void managers();
    void managersRole();
};

void TestValues::quotesText_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("quoted");
    QTest::newRow("no quote") << u"SÜT 1L"_s << u"SÜT 1L"_s;
    QTest::newRow("one quote") << u"Ali'nin"_s << u"Ali''nin"_s;
    QTest::newRow("two quotes in a row") << u"''"_s << u"''''"_s;
    QTest::newRow("quotes at both ends") << u"'a'"_s << u"''a''"_s;
    QTest::newRow("other quotes stay") << u"\"`´’"_s << u"\"`´’"_s;
    QTest::newRow("backslash stays") << u"\\'"_s << u"\\''"_s;
    QTest::newRow("wildcards stay") << u"%_[]*?"_s << u"%_[]*?"_s;
    QTest::newRow("empty") << QString() << QString();
}

void TestValues::quotesText() {
    QFETCH(const QString, text);
    QFETCH(const QString, quoted);
    QCOMPARE(sqlmetin(text), quoted);
}

void TestValues::escapesPatterns_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("pattern");
    QTest::newRow("no wildcard") << u"SÜT"_s << u"SÜT"_s;
    QTest::newRow("percent") << u"50%"_s << u"50[%]"_s;
    QTest::newRow("underscore") << u"a_b"_s << u"a[_]b"_s;
    QTest::newRow("brackets, the closing one stays") << u"[a]"_s << u"[[]a]"_s;
    QTest::newRow("all") << u"%_[]"_s << u"[%][_][[]]"_s;
    QTest::newRow("bracketed percent") << u"[%]"_s << u"[[][%]]"_s;
    QTest::newRow("star and question mark stay") << u"*?"_s << u"*?"_s;
    QTest::newRow("quotes") << u"'%'"_s << u"''[%]''"_s;
    QTest::newRow("empty") << QString() << QString();
}

void TestValues::escapesPatterns() {
    QFETCH(const QString, text);
    QFETCH(const QString, pattern);
    QCOMPARE(sqllike(text), pattern);
}

void TestValues::patternsFindTheirText_data() {
    bothKinds();
}

void TestValues::patternsFindTheirText() {
    QFETCH(const QString, password);
    ShopFixture fixture;
    fixture.openShop(password);
    const QStringList names{u"KOLA 50% INDIRIM"_s,
                            u"KOLA 505 INDIRIM"_s,
                            u"a_b"_s,
                            u"axb"_s,
                            u"kutu[12]"_s,
                            u"kutu1"_s,
                            u"kutu[%]"_s,
                            u"Ali'nin"_s,
                            u"a\\b"_s,
                            u"*?"_s,
                            u"dz"_s,
                            u"_%"_s,
                            u"[[]"_s,
                            u"[_]"_s};
    for (const QString& name : names)
        fixture.addProduct(name, name, 0, 0);
    for (const QString& name : names) {
        QVariantList holders;
        for (const QString& other : names) {
            if (other.contains(name))
                holders.append(other);
        }
        QCOMPARE(firstColumn(u"select urun from urunler where urun like '%"_s + sqllike(name) + u"%'"_s,
                             u"urun"_s),
                 holders);
    }
    QCOMPARE(
        firstColumn(u"select urun from urunler where urun like '"_s + sqllike(u"50%"_s) + u"'"_s, u"urun"_s),
        QVariantList());
}

void TestValues::writesMoments_data() {
    QTest::addColumn<QDateTime>("moment");
    QTest::addColumn<QString>("literal");
    QTest::newRow("month first, no leading zeros in the date")
        << QDateTime(QDate(2021, 5, 3), QTime(7, 5, 9)) << u"#5/3/2021 07:05:09#"_s;
    QTest::newRow("two digits everywhere")
        << QDateTime(QDate(2021, 12, 31), QTime(23, 59, 59)) << u"#12/31/2021 23:59:59#"_s;
    QTest::newRow("midnight") << QDateTime(QDate(2021, 1, 1), QTime(0, 0)) << u"#1/1/2021 00:00:00#"_s;
    QTest::newRow("parts of a second are dropped")
        << QDateTime(QDate(2021, 5, 3), QTime(7, 5, 9, 999)) << u"#5/3/2021 07:05:09#"_s;
    QTest::newRow("no moment is the present one") << QDateTime() << u"#5/3/2026 07:05:09#"_s;
}

void TestValues::writesMoments() {
    QFETCH(const QDateTime, moment);
    QFETCH(const QString, literal);
    const ShopFixture fixture;
    QCOMPARE(sqltarih(moment), literal);
}

void TestValues::writesDayAndTime_data() {
    QTest::addColumn<QDate>("day");
    QTest::addColumn<QString>("time");
    QTest::addColumn<QString>("literal");
    const QDate day(2021, 5, 3);
    const auto row = [&day](const char* name, const QString& time, const QString& shown) {
        QTest::newRow(name) << day << time << QString(u"#5/3/2021 "_s + shown + u"#"_s);
    };
    row("hours", u"7"_s, u"07:00:00"_s);
    row("hours and minutes of one digit", u"7:5"_s, u"07:05:00"_s);
    row("hours and minutes", u"12:30"_s, u"12:30:00"_s);
    row("all three", u"12:30:15"_s, u"12:30:15"_s);
    row("end of the day", u"23:59:59"_s, u"23:59:59"_s);
    row("empty is midnight", QString(), u"00:00:00"_s);
    row("blanks are midnight", u"   "_s, u"00:00:00"_s);
    row("surrounding blanks", u"  7:5  "_s, u"07:05:00"_s);
    row("blanks behind the colons", u"7: 5: 9"_s, u"07:05:09"_s);
    row("no number", u"saat"_s, u"00:00:00"_s);
    row("a number stops at a letter", u"7a:5b:9c"_s, u"07:05:09"_s);
    row("colon without minutes", u"7:"_s, u"07:00:00"_s);
    row("colons alone", u"::"_s, u"00:00:00"_s);
    row("seconds without minutes", u"7::9"_s, u"07:00:09"_s);
    row("colon in front", u":30"_s, u"00:30:00"_s);
    row("a fourth part is dropped", u"7:5:9:1"_s, u"07:05:09"_s);
    row("hours are rounded", u"7.6"_s, u"08:00:00"_s);
    row("half an hour rounds to the even one, up", u"7.5"_s, u"08:00:00"_s);
    row("half an hour rounds to the even one, down", u"6.5"_s, u"06:00:00"_s);
    row("a comma ends the number", u"7,9:30"_s, u"07:30:00"_s);
    row("ranges aren't checked", u"25:99:99"_s, u"25:99:99"_s);
    QTest::newRow("no day is today") << QDate() << u"7:5"_s << u"#5/3/2026 07:05:00#"_s;
    QTest::newRow("no day and no time") << QDate() << QString() << u"#5/3/2026 00:00:00#"_s;
    QTest::newRow("two digits in the date") << QDate(2021, 12, 31) << u"7"_s << u"#12/31/2021 07:00:00#"_s;
}

void TestValues::writesDayAndTime() {
    QFETCH(const QDate, day);
    QFETCH(const QString, time);
    QFETCH(const QString, literal);
    const ShopFixture fixture;
    QCOMPARE(sqltarihsaat(day, time), literal);
}

void TestValues::writesBetween_data() {
    QTest::addColumn<QString>("time1");
    QTest::addColumn<QString>("time2");
    QTest::addColumn<QString>("tail");
    QTest::newRow("whole days") << u"00:00:00"_s << u"23:59:59"_s
                                << u"#5/3/2021 00:00:00# and #12/31/2021 23:59:59#"_s;
    QTest::newRow("times that were set")
        << u"9:30"_s << u"18"_s << u"#5/3/2021 09:30:00# and #12/31/2021 18:00:00#"_s;
    QTest::newRow("no times") << QString() << QString() << u"#5/3/2021 00:00:00# and #12/31/2021 00:00:00#"_s;
}

void TestValues::writesBetween() {
    QFETCH(const QString, time1);
    QFETCH(const QString, time2);
    QFETCH(const QString, tail);
    QCOMPARE(sqltarihbetween(QDate(2021, 5, 3), time1, QDate(2021, 12, 31), time2), tail);
}

void TestValues::engineReadsDates() {
    QFETCH(const QString, password);
    ShopFixture fixture;
    fixture.openShop(password);
    const QDate day(2021, 5, 3);
    const QStringList moments{sqltarih(QDateTime(day, QTime(0, 0))), sqltarih(QDateTime(day, QTime(7, 5, 9))),
                              sqltarihsaat(day, u"23:59:59"_s),
                              sqltarih(QDateTime(day.addDays(1), QTime(0, 0)))};
    for (const QString& moment : moments)
        baglanti().execute(u"INSERT INTO satislar (tarih) VALUES ("_s + moment + u')');
    QCOMPARE(fixture.rows(u"SELECT tarih FROM satislar"_s),
             (QList<QVariantList>{{u"2021-05-03 00:00:00"_s},
                                  {u"2021-05-03 07:05:09"_s},
                                  {u"2021-05-03 23:59:59"_s},
                                  {u"2021-05-04 00:00:00"_s}}));
    const auto numbers = [&day](const QString& time1, const QString& time2) {
        return firstColumn(
            u"select no from satislar where tarih between "_s + sqltarihbetween(day, time1, day, time2),
            u"no"_s);
    };
    QCOMPARE(numbers(u"00:00:00"_s, u"23:59:59"_s), (QVariantList{1, 2, 3}));
    QCOMPARE(numbers(u"7:5:9"_s, u"7:5:9"_s), QVariantList{2});
    QCOMPARE(numbers(u"7:5:10"_s, u"23:59:58"_s), QVariantList{});
}

void TestValues::engineRefusesWhatIsNoTime_data() {
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("time");
    for (const char* time : {"25:99:99", "24", "7:60", "7:5:60"}) {
        QTest::addRow("%s, plain file", time) << QString() << QString::fromLatin1(time);
        QTest::addRow("%s, password file", time) << u"gizli"_s << QString::fromLatin1(time);
    }
}

void TestValues::engineRefusesWhatIsNoTime() {
    QFETCH(const QString, password);
    QFETCH(const QString, time);
    ShopFixture fixture;
    fixture.openShop(password);
    const QString sql =
        u"INSERT INTO satislar (tarih) VALUES ("_s + sqltarihsaat(QDate(2021, 5, 3), time) + u')';
    QVERIFY_THROWS_EXCEPTION(RuntimeError, baglanti().execute(sql));
    QCOMPARE(fixture.rows(u"SELECT * FROM satislar"_s).size(), 0);
}

void TestValues::writesNumbers_data() {
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("literal");
    QTest::newRow("decimals") << 12.5 << u"12.5"_s;
    QTest::newRow("whole") << 12.0 << u"12"_s;
    QTest::newRow("zero") << 0.0 << u"0"_s;
    QTest::newRow("negative zero") << -0.0 << u"0"_s;
    QTest::newRow("negative") << -3.25 << u"-3.25"_s;
    QTest::newRow("below one") << 0.1 << u"0.1"_s;
    QTest::newRow("no groups") << 1234567.891 << u"1234567.891"_s;
    QTest::newRow("sum of tenths") << 0.1 + 0.2 << u"0.3"_s;
    QTest::newRow("very large") << 1e20 << u"1E+20"_s;
    QTest::newRow("very large with decimals") << 1.5e20 << u"1.5E+20"_s;
    QTest::newRow("very small") << 2e-16 << u"2E-16"_s;
    QTest::newRow("fifteen digits") << 1.0 / 3.0 << u"0.333333333333333"_s;
}

void TestValues::writesNumbers() {
    QFETCH(const double, value);
    QFETCH(const QString, literal);
    QCOMPARE(sqlsayi(value), literal);
    ShopFixture fixture;
    fixture.openShop();
    baglanti().execute(u"INSERT INTO urunler (stok) VALUES ("_s + sqlsayi(value) + u')');
    const double stored = fixture.rows(u"SELECT stok FROM urunler"_s).at(0).at(0).toDouble();
    QVERIFY2(std::abs(stored - value) <= std::abs(value) * 1e-14,
             qPrintable(QString::number(stored, 'g', 17)));
}

void TestValues::readsTexts_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    QTest::newRow("empty") << QString() << 0.0;
    QTest::newRow("blanks") << u"   "_s << 0.0;
    QTest::newRow("whole") << u"12"_s << 12.0;
    QTest::newRow("comma decimals") << u"12,5"_s << 12.5;
    QTest::newRow("dot decimals") << u"12.5"_s << 12.5;
    QTest::newRow("dot group of three is regional") << u"1.234"_s << 1234.0;
    QTest::newRow("comma decimals of three") << u"1,234"_s << 1.234;
    QTest::newRow("dot groups and comma decimals") << u"1.234,56"_s << 1234.56;
    QTest::newRow("comma groups and dot decimals") << u"1,234.56"_s << 1234.56;
    QTest::newRow("many dot groups") << u"1.234.567,89"_s << 1234567.89;
    QTest::newRow("many comma groups") << u"1,234,567.89"_s << 1234567.89;
    QTest::newRow("misplaced dot groups and comma decimals") << u"12.34,5"_s << 1234.5;
    QTest::newRow("misplaced comma groups and dot decimals") << u"12,34.5"_s << 1234.5;
    QTest::newRow("two dots that aren't groups") << u"1.2.3"_s << 0.0;
    QTest::newRow("two commas") << u"1,2,3"_s << 0.0;
    QTest::newRow("decimals without whole, comma") << u",5"_s << 0.5;
    QTest::newRow("decimals without whole, dot") << u".5"_s << 0.5;
    QTest::newRow("comma behind") << u"12,"_s << 12.0;
    QTest::newRow("dot behind") << u"12."_s << 12.0;
    QTest::newRow("surrounding blanks") << u"  12,5  "_s << 12.5;
    QTest::newRow("surrounding blanks, dot decimals") << u"  12.5  "_s << 12.5;
    QTest::newRow("minus in front") << u"-12,5"_s << -12.5;
    QTest::newRow("minus in front, dot decimals") << u"-12.5"_s << -12.5;
    QTest::newRow("plus in front") << u"+3"_s << 3.0;
    QTest::newRow("minus behind") << u"3-"_s << -3.0;
    QTest::newRow("exponent") << u"1E+20"_s << 1e20;
    QTest::newRow("exponent with comma") << u"1,5E+20"_s << 1.5e20;
    QTest::newRow("exponent with dot") << u"1.5E+20"_s << 1.5e20;
    QTest::newRow("cash display") << u"0,00"_s << 0.0;
    QTest::newRow("beyond a double") << u"1E+400"_s << 0.0;
    QTest::newRow("digits and a letter") << u"12a"_s << 0.0;
    QTest::newRow("letters") << u"abc"_s << 0.0;
    QTest::newRow("inner blank") << u"1 2"_s << 0.0;
    QTest::newRow("currency") << u"12,50 TL"_s << 0.0;
    QTest::newRow("sign alone") << u"-"_s << 0.0;
    QTest::newRow("comma alone") << u","_s << 0.0;
    QTest::newRow("dot alone") << u"."_s << 0.0;
    QTest::newRow("hexadecimal") << u"&H10"_s << 0.0;
    QTest::newRow("infinity") << u"inf"_s << 0.0;
    QTest::newRow("no number") << u"nan"_s << 0.0;
}

void TestValues::readsTexts() {
    QFETCH(const QString, text);
    QFETCH(const double, value);
    QCOMPARE(sayicevir(text), value);
    QCOMPARE(sayicevir(QVariant(text)), value);
}

void TestValues::readsValues_data() {
    QTest::addColumn<QVariant>("given");
    QTest::addColumn<double>("value");
    QTest::newRow("null") << QVariant() << 0.0;
    QTest::newRow("null of a type") << QVariant(QMetaType(QMetaType::Double)) << 0.0;
    QTest::newRow("double that would be a group as text") << QVariant(1.234) << 1.234;
    QTest::newRow("double with one decimal") << QVariant(12.5) << 12.5;
    QTest::newRow("negative double") << QVariant(-0.125) << -0.125;
    QTest::newRow("double of many digits") << QVariant(1.0 / 3.0) << 1.0 / 3.0;
    QTest::newRow("float") << QVariant(1.5F) << 1.5;
    QTest::newRow("integer") << QVariant(1234) << 1234.0;
    QTest::newRow("unsigned") << QVariant(7U) << 7.0;
    QTest::newRow("long integer") << QVariant(qlonglong{9007199254740991}) << 9007199254740991.0;
    QTest::newRow("text of digits") << QVariant(u"1.234"_s) << 1234.0;
    QTest::newRow("date") << QVariant(QDate(2021, 5, 3)) << 0.0;
}

void TestValues::readsValues() {
    QFETCH(const QVariant, given);
    QFETCH(const double, value);
    QCOMPARE(sayicevir(given), value);
}

void TestValues::trimsValues_data() {
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("null") << QVariant() << QString();
    QTest::newRow("null of a type") << QVariant(QMetaType(QMetaType::QString)) << QString();
    QTest::newRow("empty text") << QVariant(u""_s) << QString();
    QTest::newRow("surrounding blanks") << QVariant(u"  SÜT 1L  "_s) << u"SÜT 1L"_s;
    QTest::newRow("blanks") << QVariant(u"   "_s) << QString();
    QTest::newRow("integer") << QVariant(42) << u"42"_s;
    QTest::newRow("long integer") << QVariant(qlonglong{42}) << u"42"_s;
    QTest::newRow("whole double") << QVariant(42.0) << u"42"_s;
    QTest::newRow("double as the shop writes it") << QVariant(12.5) << u"12,5"_s;
    QTest::newRow("large double has no groups") << QVariant(1234567.5) << u"1234567,5"_s;
}

void TestValues::trimsValues() {
    QFETCH(const QVariant, value);
    QFETCH(const QString, text);
    QCOMPARE(nullmetin(value), text);
}

void TestValues::managers_data() {
    QTest::addColumn<int>("right");
    QTest::addColumn<bool>("manager");
    QTest::newRow("0") << 0 << false;
    QTest::newRow("1") << 1 << true;
    QTest::newRow("2") << 2 << false;
    QTest::newRow("-1") << -1 << false;
}

void TestValues::managers() {
    QFETCH(const int, right);
    QFETCH(const bool, manager);
    const ShopFixture fixture;
    girisyetki = right;
    QCOMPARE(yoneticimi(), manager);
}

void TestValues::managersRole() {
    QCOMPARE(yoneticiyetkisi(), u"Yönetici"_s);
}

int main(int argc, char** argv) {
    return runTests<TestValues>(argc, argv);
}
#include "test_values.moc"
