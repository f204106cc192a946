#include <QSet>
#include <QTest>

#include "rows.h"
#include "values/codepage.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

class TestCodePage : public QObject {
    Q_OBJECT

    struct EveryByteRow {
        int byte;
        int character;
    };
    struct EncodesRow {
        QString text;
        QByteArray bytes;
    };

private Q_SLOTS:
    void everyByte_data() {
        QTest::addColumn<EveryByteRow>("row");

        // The published table of Windows-1254 where it isn't Latin-1; 0xFFFD where it has nothing.
        const QMap<int, int> others = {
            {0x80, 0x20AC}, {0x81, 0xFFFD}, {0x82, 0x201A}, {0x83, 0x0192}, {0x84, 0x201E}, {0x85, 0x2026},
            {0x86, 0x2020}, {0x87, 0x2021}, {0x88, 0x02C6}, {0x89, 0x2030}, {0x8A, 0x0160}, {0x8B, 0x2039},
            {0x8C, 0x0152}, {0x8D, 0xFFFD}, {0x8E, 0xFFFD}, {0x8F, 0xFFFD}, {0x90, 0xFFFD}, {0x91, 0x2018},
            {0x92, 0x2019}, {0x93, 0x201C}, {0x94, 0x201D}, {0x95, 0x2022}, {0x96, 0x2013}, {0x97, 0x2014},
            {0x98, 0x02DC}, {0x99, 0x2122}, {0x9A, 0x0161}, {0x9B, 0x203A}, {0x9C, 0x0153}, {0x9D, 0xFFFD},
            {0x9E, 0xFFFD}, {0x9F, 0x0178}, {0xD0, 0x011E}, {0xDD, 0x0130}, {0xDE, 0x015E}, {0xF0, 0x011F},
            {0xFD, 0x0131}, {0xFE, 0x015F}};
        for (int byte = 0; byte < 256; ++byte)
            QTest::addRow("0x%02X", byte) << EveryByteRow{byte, others.value(byte, byte)};
    }
    void everyByte() {
        QFETCH(const EveryByteRow, row);
        const QByteArray bytes(1, static_cast<char>(row.byte));
        const QString text = fromWindows1254(bytes);
        QCOMPARE(text.size(), 1);
        QCOMPARE(static_cast<int>(text[0].unicode()), row.character);
        QCOMPARE(toWindows1254(text), row.character == 0xFFFD ? QByteArray("?") : bytes);
    }

    void noTwoBytesAreOneCharacter() {
        QSet<QChar> seen;
        int undefinedBytes = 0;
        for (int byte = 0; byte < 256; ++byte) {
            const QChar character = fromWindows1254(QByteArray(1, static_cast<char>(byte)))[0];
            if (character == QChar::ReplacementCharacter)
                ++undefinedBytes;
            else
                seen.insert(character);
        }
        QCOMPARE(undefinedBytes, 7);
        QCOMPARE(seen.size(), 256 - 7);
    }

    void encodes_data() {
        addRows<EncodesRow>(
            {{"empty", {"", QByteArray()}},
             {"Turkish letters",
              {"ğıİşŞĞçÇöÖüÜ", QByteArray("\xF0\xFD\xDD\xFE\xDE\xD0\xE7\xC7\xF6\xD6\xFC\xDC")}},
             {"euro", {"5 €", QByteArray("5 \x80")}},
             {"lira sign is lacking", {"5 ₺", QByteArray("5 ?")}},
             {"Cyrillic is lacking", {"Иi", QByteArray("?i")}},
             {"Icelandic letters gave way", {"ÐÝÞðýþ", QByteArray("??????")}},
             {"control characters of the upper range",
              {QString(QChar(0x81)) + QChar(0x8E), QByteArray("??")}},
             {"replacement character", {QString(QChar(0xFFFD)), QByteArray("?")}},
             {"one ? beyond the BMP", {u"a\U0001F35Eb"_s, QByteArray("a?b")}},
             {"two beyond the BMP", {u"\U0001F35E\U0001F35E"_s, QByteArray("??")}},
             {"half a character at the end", {QString(u'a' + QString(QChar(0xD83C))), QByteArray("a?")}},
             {"half a character within", {QString(QString(QChar(0xD83C)) + u'b'), QByteArray("?b")}},
             {"second half alone", {QString(QString(QChar(0xDF5E)) + u'b'), QByteArray("?b")}},
             {"combining dot is lacking", {u"i\u0307"_s, QByteArray("i?")}},
             {"NUL stays", {QString(QChar(u'\0')), QByteArray(1, '\0')}}});
    }
    void encodes() {
        QFETCH(const EncodesRow, row);
        QCOMPARE(toWindows1254(row.text), row.bytes);
    }

    void encodesByBaseLetters_data() {
        addRows<EncodesRow>(
            {{"carons", {"čžČŽ", QByteArray("czCZ")}},
             {"Icelandic letters", {"ýÝþÞðÐ", QByteArray("yY????")}},
             {"what the page has stays", {"ğıİşŠ?é", QByteArray("\xF0\xFD\xDD\xFE\x8A?\xE9")}},
             {"two marks", {"ǘậ", QByteArray("\xFC\x61")}},
             {"a base letter that is lacking", {"ѐΐ", QByteArray("??")}},
             {"another spelling of a letter", {u"\u212A\u212B"_s, QByteArray("K\xC5")}},
             {"no letter of two", {u"\uFB01\u2460\uFF21"_s, QByteArray("???")}},
             {"a stroke is no mark", {"łđ", QByteArray("??")}},
             {"combining mark", {u"c\u030C"_s, QByteArray("c?")}},
             {"one ? beyond the BMP", {u"\U0001F35E\U0001D15E"_s, QByteArray("??")}}});
    }
    void encodesByBaseLetters() {
        QFETCH(const EncodesRow, row);
        QCOMPARE(toWindows1254(row.text, Lacking::baseLetter), row.bytes);
    }

    void wholeText() {
        const QString text = u"Şişli'de çığır açan ürün – 12,50 €"_s;
        QCOMPARE(toWindows1254(text).size(), text.size());
        QCOMPARE(fromWindows1254(toWindows1254(text)), text);
    }
};

QTEST_GUILESS_MAIN(TestCodePage)
#include "test_codepage.moc"
