#include <QApplication>
#include <QPalette>
#include <QTest>

#include "rows.h"
#include "runtime/runtimeerror.h"
#include "widgets/colorvalue.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

/// A colour of its own for every role in every group, so that none can stand in for another.
QPalette distinctPalette(int blue) {
    QPalette palette;
    for (int group = 0; group < QPalette::NColorGroups; ++group) {
        for (int role = 0; role < QPalette::NColorRoles; ++role) {
            palette.setColor(static_cast<QPalette::ColorGroup>(group), static_cast<QPalette::ColorRole>(role),
                             QColor(10 + role, 50 + group, blue));
        }
    }
    return palette;
}

}  // namespace

class TestColorValue : public QObject {
    Q_OBJECT

    struct PlainColoursRow {
        quint32 value;
        QColor color;
    };
    struct TextsRow {
        quint32 value;
        QString text;
    };
    struct LenientTextsRow {
        QString text;
        quint32 value;
    };
    struct SystemColoursRow {
        quint32 index;
        int role, group;
    };

private Q_SLOTS:
    void init() { m_palette = QApplication::palette(); }
    void cleanup() { QApplication::setPalette(m_palette); }

    void plainColours_data() {
        addRows<PlainColoursRow>({{"black", {0U, QColor(0, 0, 0)}},
                                  {"red is the low byte", {255U, QColor(255, 0, 0)}},
                                  {"green is the second", {65280U, QColor(0, 255, 0)}},
                                  {"blue is the third", {16711680U, QColor(0, 0, 255)}},
                                  {"white", {16777215U, QColor(255, 255, 255)}},
                                  {"dark blue", {12582912U, QColor(0, 0, 0xC0)}},
                                  {"purple", {12583104U, QColor(0xC0, 0, 0xC0)}},
                                  {"three channels", {0x930A2AU, QColor(0x2A, 0x0A, 0x93)}}});
    }
    void plainColours() {
        QFETCH(const PlainColoursRow, row);
        QCOMPARE(colorOf(row.value), row.color);
        QCOMPARE(colorOf(row.value).alpha(), 255);
        QCOMPARE(colorValue(row.color), row.value);
    }

    void everyChannelComesBack() {
        for (quint32 part = 0; part < 256; ++part) {
            for (const quint32 value : {part, part << 8, part << 16, part * 0x010101U})
                QCOMPARE(colorValue(colorOf(value)), value);
        }
    }

    void transparencyIsDropped() { QCOMPARE(colorValue(QColor(1, 2, 3, 4)), 0x030201U); }

    void otherColourModels() { QCOMPARE(colorValue(QColor::fromHsv(120, 255, 255)), 65280U); }

    void texts_data() {
        addRows<TextsRow>({{"black", {0U, u"0"_s}},
                           {"white", {0xFFFFFFU, u"16777215"_s}},
                           {"largest", {0x7FFFFFFFU, u"2147483647"_s}},
                           {"button face is negative", {0x8000000FU, u"-2147483633"_s}},
                           {"smallest", {0x80000000U, u"-2147483648"_s}}});
    }
    void texts() {
        QFETCH(const TextsRow, row);
        QCOMPARE(colorText(row.value), row.text);
        QCOMPARE(colorFromText(row.text), row.value);
    }

    void lenientTexts_data() {
        addRows<LenientTextsRow>({{"empty", {QString(), 0U}},
                                  {"blank", {u"   "_s, 0U}},
                                  {"no number", {u"kirmizi"_s, 0U}},
                                  {"junk before", {u"x255"_s, 0U}},
                                  {"junk behind", {u"255x"_s, 255U}},
                                  {"blanks before", {u"  255"_s, 255U}},
                                  {"comma ends it", {u"7,9"_s, 7U}},
                                  {"half to even, down", {u"2.5"_s, 2U}},
                                  {"half to even, up", {u"3.5"_s, 4U}},
                                  {"exponent", {u"1e3"_s, 1000U}},
                                  {"plus", {u"+255"_s, 255U}},
                                  {"rounds back into range", {u"2147483647.4"_s, 0x7FFFFFFFU}}});
    }
    void lenientTexts() {
        QFETCH(const LenientTextsRow, row);
        QCOMPARE(colorFromText(row.text), row.value);
    }

    void tooLarge_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("one too many") << u"2147483648"_s;
        QTest::newRow("rounded up") << u"2147483647.5"_s;
        QTest::newRow("unsigned button face") << u"2147483663"_s;
        QTest::newRow("one too few") << u"-2147483649"_s;
        QTest::newRow("beyond a double") << u"1e400"_s;
    }
    void tooLarge() {
        QFETCH(QString, text);
        try {
            colorFromText(text);
            QFAIL("no error");
        } catch (const RuntimeError& error) {
            QCOMPARE(error.number(), RuntimeError::overflow);
        }
    }

    void systemColours_data() {
        QTest::addColumn<SystemColoursRow>("row");
        const auto row = [](const char* name, quint32 index, QPalette::ColorRole role,
                            QPalette::ColorGroup group = QPalette::Active) {
            QTest::newRow(name) << SystemColoursRow{index, int(role), int(group)};
        };
        row("window background", 0x05, QPalette::Base);
        row("window text", 0x08, QPalette::Text);
        row("button face", 0x0F, QPalette::Button);
        row("button text", 0x12, QPalette::ButtonText);
        row("selection", 0x0D, QPalette::Highlight);
        row("selected text", 0x0E, QPalette::HighlightedText);
        row("greyed text", 0x11, QPalette::WindowText, QPalette::Disabled);
        row("button shadow", 0x10, QPalette::Dark);
        row("button highlight", 0x14, QPalette::Light);
        row("first", 0x00, QPalette::Mid);
        row("last", 0x18, QPalette::ToolTipBase);
    }
    void systemColours() {
        QFETCH(const SystemColoursRow, row);
        QApplication::setPalette(distinctPalette(100));
        QCOMPARE(colorOf(0x80000000 | row.index), QColor(10 + row.role, 50 + row.group, 100));
        // Of this moment: a palette that changes changes it.
        QApplication::setPalette(distinctPalette(200));
        QCOMPARE(colorOf(0x80000000 | row.index), QColor(10 + row.role, 50 + row.group, 200));
    }

    void everySystemColourIsOpaque() {
        for (quint32 index = 0; index < 256; ++index)
            QCOMPARE(colorOf(0x80000000 | index).alpha(), 255);
    }

    void onlyTheLowByteIsTheIndex() {
        QApplication::setPalette(distinctPalette(100));
        QCOMPARE(colorOf(0x80ABCD0F), colorOf(0x8000000F));
        QVERIFY(colorOf(0x8000000F) != colorOf(0x80000012));
    }

    void unknownIndexIsBlack() {
        QApplication::setPalette(distinctPalette(100));
        QCOMPARE(colorOf(0x80000019), QColor(Qt::black));
        QCOMPARE(colorOf(0x800000FF), QColor(Qt::black));
    }

private:
    QPalette m_palette;
};

QTEST_MAIN(TestColorValue)
#include "test_colorvalue.moc"
