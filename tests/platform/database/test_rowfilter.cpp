#include "database/rowfilter.h"

#include <QRandomGenerator>
#include <QTest>
#include <ctime>

#include "databasefile.h"
#include "sanitized.h"
#include "values/lettercase.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct Parsed {
    QString text;
    QStringList terms;  ///< "field = pattern" or "field ~ pattern"
};

struct Match {
    QString text;
    QString pattern;
    bool matches;
};

struct Pattern {
    RowFilter::Term term;
    bool wildcards;
    QString literal;
};

/// The matcher as anyone would write it down, for texts without surrogates.
bool naiveMatch(QStringView text, QStringView pattern) {
    if (pattern.isEmpty())
        return text.isEmpty();
    if (pattern[0] == u'%')
        return naiveMatch(text, pattern.sliced(1)) ||
               (!text.isEmpty() && naiveMatch(text.sliced(1), pattern));
    if (text.isEmpty())
        return false;
    const bool bracketed =
        pattern.size() > 2 && pattern[0] == u'[' && pattern[2] == u']' && u"%_["_s.contains(pattern[1]);
    if (bracketed)
        return text[0] == pattern[1] && naiveMatch(text.sliced(1), pattern.sliced(3));
    const bool fits = pattern[0] == u'_' || lowerTurkish(text.first(1)) == lowerTurkish(pattern.first(1));
    return fits && naiveMatch(text.sliced(1), pattern.sliced(1));
}

QString randomText(QRandomGenerator& random, QStringView letters, int longest) {
    QString text(random.bounded(longest + 1), Qt::Uninitialized);
    for (QChar& letter : text)
        letter = letters[random.bounded(letters.size())];
    return text;
}

}  // namespace

Q_DECLARE_METATYPE(Parsed)
Q_DECLARE_METATYPE(Match)
Q_DECLARE_METATYPE(Pattern)

class TestRowFilter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void parses_data();
    void parses();
    void refuses_data();
    void refuses();
    void knowsWildcards_data();
    void knowsWildcards();
    void matches_data();
    void matches();
    void matchesAsANaiveMatcherDoes();
    void longPatternsAreQuick();
};

void TestRowFilter::parses_data() {
    QTest::addColumn<Parsed>("row");
    const auto row = [](const char* name, const QString& text, const QStringList& terms) {
        QTest::newRow(name) << Parsed{text, terms};
    };
    row("nothing", u""_s, {});
    row("blanks", u" \t\n"_s, {});
    row("one term", u"urun LIKE '%süt%'"_s, {u"urun ~ %süt%"_s});
    row("two terms", u"urun LIKE '%süt%' AND satis LIKE '12.5'"_s, {u"urun ~ %süt%"_s, u"satis ~ 12.5"_s});
    row("three terms, any case", u"a like 'x' and b Like 'y' aNd c LIKE 'z'"_s,
        {u"a ~ x"_s, u"b ~ y"_s, u"c ~ z"_s});
    row("equal", u"barkod = '8690000000012'"_s, {u"barkod = 8690000000012"_s});
    row("equal without blanks", u"barkod='869'"_s, {u"barkod = 869"_s});
    row("two blanks behind LIKE", u"urun LIKE  '%a%'"_s, {u"urun ~ %a%"_s});
    row("no blanks around the text", u"urun LIKE'a'AND no like'1'"_s, {u"urun ~ a"_s, u"no ~ 1"_s});
    row("apostrophe", u"urun LIKE '%Ülker''in%'"_s, {u"urun ~ %Ülker'in%"_s});
    row("only an apostrophe", u"urun = ''''"_s, {u"urun = '"_s});
    row("empty text", u"no like ''"_s, {u"no ~ "_s});
    row("AND inside the text", u"urun LIKE 'a'' AND b LIKE ''c'"_s, {u"urun ~ a' AND b LIKE 'c"_s});
    row("brackets stay", u"urun LIKE '%[%][_][[]%'"_s, {u"urun ~ %[%][_][[]%"_s});
    row("bracketed field", u"[no] = '1'"_s, {u"no = 1"_s});
    row("hash in the text", u"urun LIKE '%#5%'"_s, {u"urun ~ %#5%"_s});
}

void TestRowFilter::parses() {
    QFETCH(const Parsed, row);
    const RowFilter filter = RowFilter::parse(row.text);
    QStringList terms;
    for (const RowFilter::Term& term : filter.terms()) {
        const QString sign = term.comparison == RowFilter::Comparison::like ? u" ~ "_s : u" = "_s;
        terms.append(term.field + sign + term.pattern);
    }
    QCOMPARE(terms, row.terms);
    QCOMPARE(filter.isEmpty(), row.terms.isEmpty());
}

void TestRowFilter::refuses_data() {
    QTest::addColumn<QString>("row");
    QTest::newRow("a field alone") << u"urun"_s;
    QTest::newRow("no text") << u"urun LIKE"_s;
    QTest::newRow("no field") << u"LIKE 'a'"_s;
    QTest::newRow("no comparison") << u"urun 'a'"_s;
    QTest::newRow("another comparison") << u"no > '1'"_s;
    QTest::newRow("a bare number") << u"no = 17"_s;
    QTest::newRow("a bare word") << u"urun = süt"_s;
    QTest::newRow("double quotes") << u"urun LIKE \"a\""_s;
    QTest::newRow("text without an end") << u"urun LIKE 'a"_s;
    QTest::newRow("only the opening quote") << u"urun LIKE '"_s;
    QTest::newRow("text that ends in a doubled quote") << u"urun LIKE 'a''"_s;
    QTest::newRow("apostrophe not doubled") << u"urun LIKE 'Ülker'in'"_s;
    QTest::newRow("AND at the end") << u"urun LIKE 'a' AND"_s;
    QTest::newRow("AND at the start") << u"AND urun LIKE 'a'"_s;
    QTest::newRow("two ANDs") << u"urun LIKE 'a' AND AND no = '1'"_s;
    QTest::newRow("no AND") << u"urun LIKE 'a' no = '1'"_s;
    QTest::newRow("OR") << u"urun LIKE 'a' OR no = '1'"_s;
    QTest::newRow("NOT") << u"urun NOT LIKE 'a'"_s;
    QTest::newRow("parentheses") << u"(urun LIKE 'a')"_s;
    QTest::newRow("something behind") << u"urun LIKE 'a';"_s;
    QTest::newRow("number as a field") << u"12 LIKE 'a'"_s;
    QTest::newRow("lone hash") << u"urun LIKE #a"_s;
}

void TestRowFilter::refuses() {
    QFETCH(const QString, row);
    const auto error = errorOf([&row] { RowFilter::parse(row); });
    QVERIFY(error);
    QCOMPARE(error->number(), RuntimeError::databaseFailure);
}

void TestRowFilter::knowsWildcards_data() {
    QTest::addColumn<Pattern>("row");
    const auto like = [](const char* name, const QString& pattern, bool wildcards, const QString& literal) {
        QTest::newRow(name) << Pattern{{u"f"_s, RowFilter::Comparison::like, pattern}, wildcards, literal};
    };
    like("none", u"12.5"_s, false, u"12.5"_s);
    like("empty", u""_s, false, u""_s);
    like("percent", u"1%"_s, true, u""_s);
    like("underscore", u"_1"_s, true, u""_s);
    like("bare percent", u"50[%]"_s, false, u"50%"_s);
    like("bare underscore and bracket", u"[_][[]"_s, false, u"_["_s);
    like("bare percent and a percent", u"[%]%"_s, true, u""_s);
    like("bracket that is none", u"[a]]["_s, false, u"[a]]["_s);
    like("bracket without an end", u"[%"_s, true, u""_s);
    const RowFilter::Term equal{u"f"_s, RowFilter::Comparison::equal, u"5%[_]"_s};
    QTest::newRow("equality has none") << Pattern{equal, false, u"5%[_]"_s};
}

void TestRowFilter::knowsWildcards() {
    QFETCH(const Pattern, row);
    QCOMPARE(row.term.hasWildcards(), row.wildcards);
    if (!row.wildcards)
        QCOMPARE(row.term.literal(), row.literal);
}

void TestRowFilter::matches_data() {
    QTest::addColumn<Match>("row");
    const auto row = [](const char* name, const QString& text, const QString& pattern, bool matches) {
        QTest::newRow(name) << Match{text, pattern, matches};
    };
    row("whole", u"süt"_s, u"süt"_s, true);
    row("only a part", u"sütlaç"_s, u"süt"_s, false);
    row("anywhere", u"Pınar Süt 1L"_s, u"%süt%"_s, true);
    row("at the start", u"süt"_s, u"%süt%"_s, true);
    row("nowhere", u"peynir"_s, u"%süt%"_s, false);
    row("prefix", u"sütlaç"_s, u"süt%"_s, true);
    row("prefix in the middle", u"bol süt"_s, u"süt%"_s, false);
    row("suffix", u"bol süt"_s, u"%süt"_s, true);
    row("suffix in the middle", u"sütlaç"_s, u"%süt"_s, false);
    row("ends don't share letters", u"aba"_s, u"ab%ba"_s, false);
    row("ends that touch", u"abba"_s, u"ab%ba"_s, true);
    row("pieces in order", u"a1b2c3"_s, u"%a%b%c%"_s, true);
    row("pieces out of order", u"a1b2c3"_s, u"%b%a%"_s, false);
    row("piece behind the last", u"abc"_s, u"a%c%c"_s, false);
    row("first hit too early", u"xabxaab"_s, u"%a_b"_s, true);
    row("any one", u"süt"_s, u"s_t"_s, true);
    row("any one is one", u"sütt"_s, u"s_t"_s, false);
    row("any one isn't none", u"st"_s, u"s_t"_s, false);
    row("any one, at both ends", u"çaş"_s, u"_a_"_s, true);
    row("any one behind any", u"abc"_s, u"%__c"_s, true);
    row("three of two", u"ab"_s, u"___"_s, false);
    row("three or more", u"ğüş"_s, u"%___%"_s, true);
    row("any one inside a piece", u"xxaçbyy"_s, u"%a_b%"_s, true);
    row("any one beyond the BMP", u"a😀b"_s, u"a_b"_s, true);
    row("empty and empty", u""_s, u""_s, true);
    row("empty and any", u""_s, u"%"_s, true);
    row("empty and any twice", u""_s, u"%%"_s, true);
    row("empty and one", u""_s, u"_"_s, false);
    row("text and empty", u"a"_s, u""_s, false);
    row("i and İ", u"İNCİR"_s, u"incir"_s, true);
    row("İ and i", u"incir"_s, u"İNCİR"_s, true);
    row("ı and I", u"ISPANAK"_s, u"ıspanak"_s, true);
    row("I and ı", u"ıspanak"_s, u"ISPANAK"_s, true);
    row("i and I", u"INCIR"_s, u"incir"_s, false);
    row("ı and i", u"ışık"_s, u"işik"_s, false);
    row("other Turkish letters", u"ÇĞÖŞÜ"_s, u"çğöşü"_s, true);
    row("no letter for another", u"şeker"_s, u"seker"_s, false);
    row("bare percent", u"%50"_s, u"[%]50"_s, true);
    row("bare percent isn't any", u"x50"_s, u"[%]50"_s, false);
    row("bare percent anywhere", u"İndirim %50!"_s, u"%[%]%"_s, true);
    row("bare underscore", u"a_b"_s, u"a[_]b"_s, true);
    row("bare underscore isn't any", u"axb"_s, u"a[_]b"_s, false);
    row("bare bracket", u"a[b"_s, u"a[[]b"_s, true);
    row("closing bracket", u"a]b"_s, u"a]b"_s, true);
    row("bracket that is no form", u"a[x]b"_s, u"a[x]b"_s, true);
    row("no wildcards of other engines", u"abc"_s, u"a*"_s, false);
    row("question mark is itself", u"a?"_s, u"a?"_s, true);
    row("NUL", u"a\0b"_s, u"%\0b"_s, true);
}

void TestRowFilter::matches() {
    QFETCH(const Match, row);
    QCOMPARE(RowFilter::matches(row.text, row.pattern), row.matches);
}

void TestRowFilter::matchesAsANaiveMatcherDoes() {
    QRandomGenerator random(20260503);
    int hits = 0;
    constexpr int pairs = 200000;
    for (int i = 0; i < pairs; ++i) {
        const QString text = randomText(random, u"abIıiİşŞ%_[]", 9);
        const QString pattern = randomText(random, u"abIıiİş%%__[]", 7);
        const bool expected = naiveMatch(text, pattern);
        hits += expected ? 1 : 0;
        QVERIFY2(RowFilter::matches(text, pattern) == expected, qUtf8Printable(text + u" ~ "_s + pattern));
    }
    QVERIFY(hits > pairs / 50 && hits < pairs / 2);
}

void TestRowFilter::longPatternsAreQuick() {
    constexpr int length = 1000000;
    const QString many = u"%a_"_s.repeated(length / 3);
    const std::clock_t start = std::clock();  // of the processor: the machine may be busy with something else
    QVERIFY(!RowFilter::matches(QString(100, u'a'), many));
    QVERIFY(RowFilter::matches(u"ab"_s.repeated(length / 3), many));
    QVERIFY(RowFilter::matches(QString(length, u'a'), QString(length, u'%')));
    QVERIFY(RowFilter::matches(QString(length, u'a'), QString(length, u'_')));
    const QString filter = u"urun LIKE '"_s + many + u'\'';
    QCOMPARE(RowFilter::parse(filter).terms().first().pattern, many);
    const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    QVERIFY2(seconds < (sanitized ? 20 : 2), qPrintable(QString::number(seconds)));
}

QTEST_GUILESS_MAIN(TestRowFilter)
#include "test_rowfilter.moc"
