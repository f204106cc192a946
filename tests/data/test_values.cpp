#include <cmath>
#include <limits>

#include "app/session.h"
#include "data/baglanmamodulu.h"
#include "rows.h"
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

    struct QuotesTextRow {
        QString text, quoted;
    };
    struct EscapesPatternsRow {
        QString text, pattern;
    };
    struct WritesMomentsRow {
        QDateTime moment;
        QString literal;
    };
    struct WritesDayAndTimeRow {
        QDate day;
        QString time, literal;
    };
    struct WritesBetweenRow {
        QString time1, time2, tail;
    };
    struct EngineRefusesWhatIsNoTimeRow {
        QString password, time;
    };
    struct WritesNumbersRow {
        double value;
        QString literal;
    };
    struct ReadsTextsRow {
        QString text;
        double value;
    };
    struct ReadsValuesRow {
        QVariant given;
        double value;
    };
    struct TrimsValuesRow {
        QVariant value;
        QString text;
    };
    struct ManagersRow {
        int right;
        bool manager;
    };

private Q_SLOTS:
    void quotesText_data() {
        addRows<QuotesTextRow>({{"no quote", {u"SÜT 1L"_s, u"SÜT 1L"_s}},
                                {"one quote", {u"Ali'nin"_s, u"Ali''nin"_s}},
                                {"two quotes in a row", {u"''"_s, u"''''"_s}},
                                {"quotes at both ends", {u"'a'"_s, u"''a''"_s}},
                                {"other quotes stay", {u"\"`´’"_s, u"\"`´’"_s}},
                                {"backslash stays", {u"\\'"_s, u"\\''"_s}},
                                {"wildcards stay", {u"%_[]*?"_s, u"%_[]*?"_s}},
                                {"empty", {QString(), QString()}}});
    }
    void quotesText() {
        QFETCH(const QuotesTextRow, row);
        QCOMPARE(sqlmetin(row.text), row.quoted);
    }

    void escapesPatterns_data() {
        addRows<EscapesPatternsRow>({{"no wildcard", {u"SÜT"_s, u"SÜT"_s}},
                                     {"percent", {u"50%"_s, u"50[%]"_s}},
                                     {"underscore", {u"a_b"_s, u"a[_]b"_s}},
                                     {"brackets, the closing one stays", {u"[a]"_s, u"[[]a]"_s}},
                                     {"all", {u"%_[]"_s, u"[%][_][[]]"_s}},
                                     {"bracketed percent", {u"[%]"_s, u"[[][%]]"_s}},
                                     {"star and question mark stay", {u"*?"_s, u"*?"_s}},
                                     {"quotes", {u"'%'"_s, u"''[%]''"_s}},
                                     {"empty", {QString(), QString()}}});
    }
    void escapesPatterns() {
        QFETCH(const EscapesPatternsRow, row);
        QCOMPARE(sqllike(row.text), row.pattern);
    }

    void patternsFindTheirText_data() { bothKinds(); }
    void patternsFindTheirText() {
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
        QCOMPARE(firstColumn(u"select urun from urunler where urun like '"_s + sqllike(u"50%"_s) + u"'"_s,
                             u"urun"_s),
                 QVariantList());
    }

    void writesMoments_data() {
        addRows<WritesMomentsRow>(
            {{"month first, no leading zeros in the date",
              {QDateTime(QDate(2021, 5, 3), QTime(7, 5, 9)), u"#5/3/2021 07:05:09#"_s}},
             {"two digits everywhere",
              {QDateTime(QDate(2021, 12, 31), QTime(23, 59, 59)), u"#12/31/2021 23:59:59#"_s}},
             {"midnight", {QDateTime(QDate(2021, 1, 1), QTime(0, 0)), u"#1/1/2021 00:00:00#"_s}},
             {"parts of a second are dropped",
              {QDateTime(QDate(2021, 5, 3), QTime(7, 5, 9, 999)), u"#5/3/2021 07:05:09#"_s}},
             {"no moment is the present one", {QDateTime(), u"#5/3/2026 07:05:09#"_s}}});
    }
    void writesMoments() {
        QFETCH(const WritesMomentsRow, row);
        const ShopFixture fixture;
        QCOMPARE(sqltarih(row.moment), row.literal);
    }

    void writesDayAndTime_data() {
        QTest::addColumn<WritesDayAndTimeRow>("row");
        const QDate day(2021, 5, 3);
        const auto row = [&day](const char* name, const QString& time, const QString& shown) {
            QTest::newRow(name) << WritesDayAndTimeRow{day, time, QString(u"#5/3/2021 "_s + shown + u"#"_s)};
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
        QTest::newRow("no day is today") << WritesDayAndTimeRow{QDate(), u"7:5"_s, u"#5/3/2026 07:05:00#"_s};
        QTest::newRow("no day and no time")
            << WritesDayAndTimeRow{QDate(), QString(), u"#5/3/2026 00:00:00#"_s};
        QTest::newRow("two digits in the date")
            << WritesDayAndTimeRow{QDate(2021, 12, 31), u"7"_s, u"#12/31/2021 07:00:00#"_s};
    }
    void writesDayAndTime() {
        QFETCH(const WritesDayAndTimeRow, row);
        const ShopFixture fixture;
        QCOMPARE(sqltarihsaat(row.day, row.time), row.literal);
    }

    void writesBetween_data() {
        addRows<WritesBetweenRow>(
            {{"whole days",
              {u"00:00:00"_s, u"23:59:59"_s, u"#5/3/2021 00:00:00# and #12/31/2021 23:59:59#"_s}},
             {"times that were set",
              {u"9:30"_s, u"18"_s, u"#5/3/2021 09:30:00# and #12/31/2021 18:00:00#"_s}},
             {"no times", {QString(), QString(), u"#5/3/2021 00:00:00# and #12/31/2021 00:00:00#"_s}}});
    }
    void writesBetween() {
        QFETCH(const WritesBetweenRow, row);
        QCOMPARE(sqltarihbetween(QDate(2021, 5, 3), row.time1, QDate(2021, 12, 31), row.time2), row.tail);
    }

    void engineReadsDates_data() { bothKinds(); }
    void engineReadsDates() {
        QFETCH(const QString, password);
        ShopFixture fixture;
        fixture.openShop(password);
        const QDate day(2021, 5, 3);
        const QStringList moments{sqltarih(QDateTime(day, QTime(0, 0))),
                                  sqltarih(QDateTime(day, QTime(7, 5, 9))), sqltarihsaat(day, u"23:59:59"_s),
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

    void engineRefusesWhatIsNoTime_data() {
        QTest::addColumn<EngineRefusesWhatIsNoTimeRow>("row");
        for (const char* time : {"25:99:99", "24", "7:60", "7:5:60"}) {
            QTest::addRow("%s, plain file", time)
                << EngineRefusesWhatIsNoTimeRow{QString(), QString::fromLatin1(time)};
            QTest::addRow("%s, password file", time)
                << EngineRefusesWhatIsNoTimeRow{u"gizli"_s, QString::fromLatin1(time)};
        }
    }
    void engineRefusesWhatIsNoTime() {
        QFETCH(const EngineRefusesWhatIsNoTimeRow, row);
        ShopFixture fixture;
        fixture.openShop(row.password);
        const QString sql =
            u"INSERT INTO satislar (tarih) VALUES ("_s + sqltarihsaat(QDate(2021, 5, 3), row.time) + u')';
        QVERIFY_THROWS_EXCEPTION(RuntimeError, baglanti().execute(sql));
        QCOMPARE(fixture.rows(u"SELECT * FROM satislar"_s).size(), 0);
    }

    void writesNumbers_data() {
        addRows<WritesNumbersRow>({{"decimals", {12.5, u"12.5"_s}},
                                   {"whole", {12.0, u"12"_s}},
                                   {"zero", {0.0, u"0"_s}},
                                   {"negative zero", {-0.0, u"0"_s}},
                                   {"negative", {-3.25, u"-3.25"_s}},
                                   {"below one", {0.1, u"0.1"_s}},
                                   {"no groups", {1234567.891, u"1234567.891"_s}},
                                   {"sum of tenths", {0.1 + 0.2, u"0.3"_s}},
                                   {"very large", {1e20, u"1E+20"_s}},
                                   {"very large with decimals", {1.5e20, u"1.5E+20"_s}},
                                   {"very small", {2e-16, u"2E-16"_s}},
                                   {"fifteen digits", {1.0 / 3.0, u"0.333333333333333"_s}}});
    }
    void writesNumbers() {
        QFETCH(const WritesNumbersRow, row);
        QCOMPARE(sqlsayi(row.value), row.literal);
        ShopFixture fixture;
        fixture.openShop();
        baglanti().execute(u"INSERT INTO urunler (stok) VALUES ("_s + sqlsayi(row.value) + u')');
        const double stored = fixture.rows(u"SELECT stok FROM urunler"_s).at(0).at(0).toDouble();
        QVERIFY2(std::abs(stored - row.value) <= std::abs(row.value) * 1e-14,
                 qPrintable(QString::number(stored, 'g', 17)));
    }

    void readsTexts_data() {
        addRows<ReadsTextsRow>({{"empty", {QString(), 0.0}},
                                {"blanks", {u"   "_s, 0.0}},
                                {"whole", {u"12"_s, 12.0}},
                                {"comma decimals", {u"12,5"_s, 12.5}},
                                {"dot decimals", {u"12.5"_s, 12.5}},
                                {"dot group of three is regional", {u"1.234"_s, 1234.0}},
                                {"comma decimals of three", {u"1,234"_s, 1.234}},
                                {"dot groups and comma decimals", {u"1.234,56"_s, 1234.56}},
                                {"comma groups and dot decimals", {u"1,234.56"_s, 1234.56}},
                                {"many dot groups", {u"1.234.567,89"_s, 1234567.89}},
                                {"many comma groups", {u"1,234,567.89"_s, 1234567.89}},
                                {"misplaced dot groups and comma decimals", {u"12.34,5"_s, 1234.5}},
                                {"misplaced comma groups and dot decimals", {u"12,34.5"_s, 1234.5}},
                                {"two dots that aren't groups", {u"1.2.3"_s, 0.0}},
                                {"two commas", {u"1,2,3"_s, 0.0}},
                                {"decimals without whole, comma", {u",5"_s, 0.5}},
                                {"decimals without whole, dot", {u".5"_s, 0.5}},
                                {"comma behind", {u"12,"_s, 12.0}},
                                {"dot behind", {u"12."_s, 12.0}},
                                {"surrounding blanks", {u"  12,5  "_s, 12.5}},
                                {"surrounding blanks, dot decimals", {u"  12.5  "_s, 12.5}},
                                {"minus in front", {u"-12,5"_s, -12.5}},
                                {"minus in front, dot decimals", {u"-12.5"_s, -12.5}},
                                {"plus in front", {u"+3"_s, 3.0}},
                                {"minus behind", {u"3-"_s, -3.0}},
                                {"exponent", {u"1E+20"_s, 1e20}},
                                {"exponent with comma", {u"1,5E+20"_s, 1.5e20}},
                                {"exponent with dot", {u"1.5E+20"_s, 1.5e20}},
                                {"cash display", {u"0,00"_s, 0.0}},
                                {"beyond a double", {u"1E+400"_s, 0.0}},
                                {"digits and a letter", {u"12a"_s, 0.0}},
                                {"letters", {u"abc"_s, 0.0}},
                                {"inner blank", {u"1 2"_s, 0.0}},
                                {"currency", {u"12,50 TL"_s, 0.0}},
                                {"sign alone", {u"-"_s, 0.0}},
                                {"comma alone", {u","_s, 0.0}},
                                {"dot alone", {u"."_s, 0.0}},
                                {"hexadecimal", {u"&H10"_s, 0.0}},
                                {"infinity", {u"inf"_s, 0.0}},
                                {"no number", {u"nan"_s, 0.0}}});
    }
    void readsTexts() {
        QFETCH(const ReadsTextsRow, row);
        QCOMPARE(sayicevir(row.text), row.value);
        QCOMPARE(sayicevir(QVariant(row.text)), row.value);
    }

    void readsValues_data() {
        addRows<ReadsValuesRow>(
            {{"null", {QVariant(), 0.0}},
             {"null of a type", {QVariant(QMetaType(QMetaType::Double)), 0.0}},
             {"double that would be a group as text", {QVariant(1.234), 1.234}},
             {"double with one decimal", {QVariant(12.5), 12.5}},
             {"negative double", {QVariant(-0.125), -0.125}},
             {"double of many digits", {QVariant(1.0 / 3.0), 1.0 / 3.0}},
             {"float", {QVariant(1.5F), 1.5}},
             {"integer", {QVariant(1234), 1234.0}},
             {"unsigned", {QVariant(7U), 7.0}},
             {"long integer", {QVariant(qlonglong{9007199254740991}), 9007199254740991.0}},
             {"text of digits", {QVariant(u"1.234"_s), 1234.0}},
             {"date", {QVariant(QDate(2021, 5, 3)), 0.0}}});
    }
    void readsValues() {
        QFETCH(const ReadsValuesRow, row);
        QCOMPARE(sayicevir(row.given), row.value);
    }

    void trimsValues_data() {
        addRows<TrimsValuesRow>({{"null", {QVariant(), QString()}},
                                 {"null of a type", {QVariant(QMetaType(QMetaType::QString)), QString()}},
                                 {"empty text", {QVariant(u""_s), QString()}},
                                 {"surrounding blanks", {QVariant(u"  SÜT 1L  "_s), u"SÜT 1L"_s}},
                                 {"blanks", {QVariant(u"   "_s), QString()}},
                                 {"integer", {QVariant(42), u"42"_s}},
                                 {"long integer", {QVariant(qlonglong{42}), u"42"_s}},
                                 {"whole double", {QVariant(42.0), u"42"_s}},
                                 {"double as the shop writes it", {QVariant(12.5), u"12,5"_s}},
                                 {"large double has no groups", {QVariant(1234567.5), u"1234567,5"_s}}});
    }
    void trimsValues() {
        QFETCH(const TrimsValuesRow, row);
        QCOMPARE(nullmetin(row.value), row.text);
    }

    void managers_data() {
        addRows<ManagersRow>({{"0", {0, false}}, {"1", {1, true}}, {"2", {2, false}}, {"-1", {-1, false}}});
    }
    void managers() {
        QFETCH(const ManagersRow, row);
        const ShopFixture fixture;
        girisyetki = row.right;
        QCOMPARE(yoneticimi(), row.manager);
    }

    void managersRole() { QCOMPARE(yoneticiyetkisi(), u"Yönetici"_s); }
};

int main(int argc, char** argv) {
    return runTests<TestValues>(argc, argv);
}
#include "test_values.moc"
