#include "screens/capitals.h"

#include <QtTest>

#include "rows.h"

using namespace kovanix;

namespace {

struct LetterRow {
    int code;
    int typed;
};

struct CutRow {
    QString text;
    QString cut = {};  ///< empty: the text stays whole
};

}  // namespace

class CapitalsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void capitalLetters_data() {
        addRows<LetterRow>({{"i", {u'i', u'İ'}},
                            {"dotless", {u'ı', u'I'}},
                            {"ordinary", {u'ş', u'Ş'}},
                            {"capital", {u'İ', u'İ'}},
                            {"digit", {u'7', u'7'}},
                            {"sign", {u'%', u'%'}},
                            {"sharp s, which has none of one letter", {u'ß', u'ß'}},
                            {"beyond 16 bits", {U'𐐨', U'𐐀'}},
                            {"emoji", {U'🍞', U'🍞'}},
                            {"Backspace", {8, 8}},
                            {"Ctrl+V", {22, 22}},
                            {"Escape", {27, 27}},
                            {"Enter", {13, 0}}});
    }
    void capitalLetters() {
        QFETCH(const LetterRow, row);
        QCOMPARE(capitals()(row.code), row.typed);
    }

    void cuts_data() {
        const QString a49(49, u'a');
        const QString a48(48, u'a');
        const QString farmer = "👩‍🌾";
        const QString flag = "🇹🇷";
        addRows<CutRow>(
            {{"nothing", {""}},
             {"exactly 50", {QString(50, u'ş')}},
             {"51", {QString(51, u'ş'), QString(50, u'ş')}},
             {"1000", {QString(1000, u'x'), QString(50, u'x')}},
             {"blanks are letters", {QString(60, u' '), QString(50, u' ')}},
             {"a pair that ends at the 50th", {a48 + "🍞" + "x", a48 + "🍞"}},
             {"a pair across it", {a49 + "🍞", a49}},
             {"a mark behind the 50th letter", {a49 + "e\u0301", a49}},
             {"a mark at the 50th", {a48 + "e\u0301x", a48 + "e\u0301"}},
             {"joined emoji across it", {a48 + farmer, a48}},
             {"joined emoji that ends at it", {QString(45, u'a') + farmer + "x", QString(45, u'a') + farmer}},
             {"a flag across it", {a48 + flag, a48}},
             {"a line end across it", {a49 + "\r\n", a49}},
             {"one letter with too many marks",
              {"e" + QString(60, QChar(0x301)), "e" + QString(49, QChar(0x301))}},
             {"one emoji with too many parts",
              {"🍞" + QString("\u200D🍞").repeated(20),
               QString("🍞" + QString("\u200D🍞").repeated(20)).left(50)}},
             {"half a pair by itself", {a49 + QChar(0xD83C), {}}}});
    }
    void cuts() {
        QFETCH(const CutRow, row);
        const QString cut = cutToField(row.text);
        QCOMPARE(cut, row.cut.isEmpty() ? row.text : row.cut);
        QVERIFY(cut.size() <= 50);
        QVERIFY(cut.isValidUtf16() || !row.text.isValidUtf16());
    }
};

QTEST_GUILESS_MAIN(CapitalsTest)
#include "test_capitals.moc"
