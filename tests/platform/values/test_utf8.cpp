#include "values/utf8.h"

#include <QTest>
#include <vector>

using namespace kovanix;

namespace {

struct Text {
    std::string bytes;
    std::vector<char32_t> characters;
};

}  // namespace

Q_DECLARE_METATYPE(Text)

class TestUtf8 : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsAndWrites_data();
    void readsAndWrites();
};

void TestUtf8::readsAndWrites_data() {
    QTest::addColumn<Text>("row");
    const auto stray = [](unsigned byte) { return utf8::strayBytes + (byte - 0x80U); };
    QTest::newRow("empty") << Text{"", {}};
    QTest::newRow("ASCII") << Text{std::string("a\0z\x7F", 4), {U'a', 0, U'z', 0x7F}};
    QTest::newRow("two bytes") << Text{"\xC2\x80ığ\xDF\xBF", {0x80, U'ı', U'ğ', 0x7FF}};
    QTest::newRow("three bytes") << Text{"\xE0\xA0\x80€\xEF\xBF\xBF", {0x800, U'€', 0xFFFF}};
    QTest::newRow("four bytes") << Text{"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", {0x10000, 0x10FFFF}};
    QTest::newRow("lone tail") << Text{"a\x80z", {U'a', stray(0x80), U'z'}};
    QTest::newRow("cut at the end") << Text{"\xE2\x82", {stray(0xE2), stray(0x82)}};
    QTest::newRow("cut by a letter") << Text{"\xC4z", {stray(0xC4), U'z'}};
    QTest::newRow("longer than needed") << Text{"\xC1\x81", {stray(0xC1), stray(0x81)}};
    QTest::newRow("surrogate") << Text{"\xED\xA0\x80", {stray(0xED), stray(0xA0), stray(0x80)}};
    QTest::newRow("beyond the last") << Text{"\xF4\x90\x80\x80",
                                             {stray(0xF4), stray(0x90), stray(0x80), stray(0x80)}};
    QTest::newRow("bytes of no character") << Text{"\xFF\xF8", {stray(0xFF), stray(0xF8)}};
}

void TestUtf8::readsAndWrites() {
    QFETCH(const Text, row);
    std::vector<char32_t> characters;
    std::string again;
    for (std::size_t place = 0; place < row.bytes.size();) {
        characters.push_back(utf8::next(row.bytes, place));
        utf8::append(again, characters.back());
    }
    QCOMPARE(characters, row.characters);
    QCOMPARE(again, row.bytes);
}

QTEST_GUILESS_MAIN(TestUtf8)
#include "test_utf8.moc"
