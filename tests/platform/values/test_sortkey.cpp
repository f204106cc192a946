#include "values/sortkey.h"

#include <QTest>

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct Order {
    QStringList texts;  ///< each ahead of the next
};

struct Same {
    QString first;
    QString second;
};

}  // namespace

Q_DECLARE_METATYPE(Order)
Q_DECLARE_METATYPE(Same)

class TestSortKey : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void orders_data();
    void orders();
    void takesForTheSame_data();
    void takesForTheSame();
    void hasNoZeroByte();
    void takesBytesOfNoCharacter();
};

void TestSortKey::orders_data() {
    QTest::addColumn<Order>("row");
    const auto row = [](const char* name, const QStringList& texts) { QTest::newRow(name) << Order{texts}; };
    row("small letters", u"abcçdefgğhıijklmnoöpqrsştuüvwxyz"_s.split(u""_s, Qt::SkipEmptyParts));
    row("capitals", u"ABCÇDEFGĞHIİJKLMNOÖPQRSŞTUÜVWXYZ"_s.split(u""_s, Qt::SkipEmptyParts));
    row("c and ç", {u"cz"_s, u"ça"_s, u"d"_s});
    row("g and ğ", {u"dag"_s, u"dagz"_s, u"dağ"_s, u"dah"_s});
    row("ı and i", {u"kır"_s, u"kız"_s, u"kir"_s});
    row("o and ö", {u"oz"_s, u"öa"_s, u"pa"_s});
    row("s and ş", {u"su"_s, u"şa"_s, u"ta"_s});
    row("u and ü", {u"uz"_s, u"üa"_s, u"va"_s});
    row("q w x", {u"p"_s, u"q"_s, u"r"_s, u"v"_s, u"w"_s, u"x"_s, u"y"_s});
    row("case mixed", {u"ELMA"_s, u"elmas"_s, u"Erik"_s, u"ISPANAK"_s, u"İncir"_s});
    row("empty first", {u""_s, u" "_s, u"a"_s});
    row("blank, signs, digits, letters", {u" x"_s, u"!x"_s, u"~x"_s, u"€x"_s, u"0x"_s, u"9x"_s, u"ax"_s});
    row("signs between the runs of ASCII",
        {u"!"_s, u"/"_s, u":"_s, u"@"_s, u"["_s, u"`"_s, u"{"_s, u"~"_s, u"0"_s});
    row("digits one by one", {u"1"_s, u"10"_s, u"2"_s});
    row("shorter first", {u"süt"_s, u"süt 1 L"_s, u"sütlaç"_s});
    row("blank ahead of a letter", {u"ak un"_s, u"aka"_s});
    row("other scripts behind", {u"z"_s, u"α"_s, u"β"_s, u"ж"_s, u"日"_s, u"本"_s});
    row("accented among its letter", {u"bal"_s, u"bâlz"_s, u"balzz"_s});
}

void TestSortKey::orders() {
    QFETCH(const Order, row);
    for (qsizetype i = 1; i < row.texts.size(); ++i) {
        const QString pair = row.texts[i - 1] + u" < "_s + row.texts[i];
        QVERIFY2(sortKey(row.texts[i - 1]) < sortKey(row.texts[i]), qUtf8Printable(pair));
    }
}

void TestSortKey::takesForTheSame_data() {
    QTest::addColumn<Same>("row");
    QTest::newRow("letter case") << Same{u"ÇĞÖŞÜ abc"_s, u"çğöşü ABC"_s};
    QTest::newRow("i and İ") << Same{u"incir"_s, u"İNCİR"_s};
    QTest::newRow("ı and I") << Same{u"ışık"_s, u"IŞIK"_s};
    QTest::newRow("roofs") << Same{u"kâğıt hâlâ ûlîm"_s, u"kağıt hala ulim"_s};
    QTest::newRow("accents") << Same{u"Café Señor Ångström"_s, u"cafe senor angström"_s};
    QTest::newRow("two letters in one") << Same{u"Straße Æ œ"_s, u"strasse ae oe"_s};
    QTest::newRow("letters that aren't taken apart") << Same{u"Øł Đ þ"_s, u"ol d th"_s};
    QTest::newRow("small digits") << Same{u"m²"_s, u"m2"_s};
    QTest::newRow("hard blank") << Same{u"5 L"_s, u"5 L"_s};
    QTest::newRow("marks of their own")
        << Same{u"s\u0327eker c\u0327ay g\u0306 o\u0308 u\u0308 I\u0307"_s, u"şeker çay ğ ö ü i"_s};
    QTest::newRow("mark that joins no letter of ours") << Same{u"x\u0301y"_s, u"xy"_s};
}

void TestSortKey::takesForTheSame() {
    QFETCH(const Same, row);
    QCOMPARE(sortKey(row.first), sortKey(row.second));
}

void TestSortKey::hasNoZeroByte() {
    for (char32_t character = 0; character <= QChar::LastValidCodePoint; ++character) {
        const std::string key = sortKey(QString::fromUcs4(&character, 1));
        QVERIFY2(key.find('\0') == std::string::npos, qPrintable(QString::number(character, 16)));
    }
}

void TestSortKey::takesBytesOfNoCharacter() {
    std::string key;
    appendSortKey(key, "a\xFF");
    std::string other;
    appendSortKey(other, "a\xFEz");
    QVERIFY(sortKey(u"a") < other && other < key);
}

QTEST_GUILESS_MAIN(TestSortKey)
#include "test_sortkey.moc"
