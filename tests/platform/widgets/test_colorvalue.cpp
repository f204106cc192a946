#include <QApplication>
#include <QPalette>
#include <QTest>

#include "runtime/runtimeerror.h"
#include "widgets/colorvalue.h"

using namespace kovanix;

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

private Q_SLOTS:
    void init() { m_palette = QApplication::palette(); }
    void cleanup() { QApplication::setPalette(m_palette); }

    void plainColours_data() {
        QTest::addColumn<quint32>("value");
        QTest::addColumn<QColor>("color");
        QTest::newRow("black") << 0U << QColor(0, 0, 0);
        QTest::newRow("red is the low byte") << 255U << QColor(255, 0, 0);
        QTest::newRow("green is the second") << 65280U << QColor(0, 255, 0);
        QTest::newRow("blue is the third") << 16711680U << QColor(0, 0, 255);
        QTest::newRow("white") << 16777215U << QColor(255, 255, 255);
        QTest::newRow("dark blue") << 12582912U << QColor(0, 0, 0xC0);
        QTest::newRow("purple") << 12583104U << QColor(0xC0, 0, 0xC0);
        QTest::newRow("three channels") << 0x930A2AU << QColor(0x2A, 0x0A, 0x93);
    }
    void plainColours() {
        QFETCH(quint32, value);
        QFETCH(QColor, color);
        QCOMPARE(colorOf(value), color);
        QCOMPARE(colorOf(value).alpha(), 255);
        QCOMPARE(colorValue(color), value);
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
        QTest::addColumn<quint32>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("black") << 0U << QStringLiteral("0");
        QTest::newRow("white") << 0xFFFFFFU << QStringLiteral("16777215");
        QTest::newRow("largest") << 0x7FFFFFFFU << QStringLiteral("2147483647");
        QTest::newRow("button face is negative") << 0x8000000FU << QStringLiteral("-2147483633");
        QTest::newRow("smallest") << 0x80000000U << QStringLiteral("-2147483648");
    }
    void texts() {
        QFETCH(quint32, value);
        QFETCH(QString, text);
        QCOMPARE(colorText(value), text);
        QCOMPARE(colorFromText(text), value);
    }

    void lenientTexts_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<quint32>("value");
        QTest::newRow("empty") << QString() << 0U;
        QTest::newRow("blank") << QStringLiteral("   ") << 0U;
        QTest::newRow("no number") << QStringLiteral("kirmizi") << 0U;
        QTest::newRow("junk before") << QStringLiteral("x255") << 0U;
        QTest::newRow("junk behind") << QStringLiteral("255x") << 255U;
        QTest::newRow("blanks before") << QStringLiteral("  255") << 255U;
        QTest::newRow("comma ends it") << QStringLiteral("7,9") << 7U;
        QTest::newRow("half to even, down") << QStringLiteral("2.5") << 2U;
        QTest::newRow("half to even, up") << QStringLiteral("3.5") << 4U;
        QTest::newRow("exponent") << QStringLiteral("1e3") << 1000U;
        QTest::newRow("plus") << QStringLiteral("+255") << 255U;
        QTest::newRow("rounds back into range") << QStringLiteral("2147483647.4") << 0x7FFFFFFFU;
    }
    void lenientTexts() {
        QFETCH(QString, text);
        QFETCH(quint32, value);
        QCOMPARE(colorFromText(text), value);
    }

    void tooLarge_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("one too many") << QStringLiteral("2147483648");
        QTest::newRow("rounded up") << QStringLiteral("2147483647.5");
        QTest::newRow("unsigned button face") << QStringLiteral("2147483663");
        QTest::newRow("one too few") << QStringLiteral("-2147483649");
        QTest::newRow("beyond a double") << QStringLiteral("1e400");
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
        QTest::addColumn<quint32>("index");
        QTest::addColumn<int>("role");
        QTest::addColumn<int>("group");
        const auto row = [](const char* name, quint32 index, QPalette::ColorRole role,
                            QPalette::ColorGroup group = QPalette::Active) {
            QTest::newRow(name) << index << int(role) << int(group);
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
        QFETCH(quint32, index);
        QFETCH(int, role);
        QFETCH(int, group);
        QApplication::setPalette(distinctPalette(100));
        QCOMPARE(colorOf(0x80000000 | index), QColor(10 + role, 50 + group, 100));
        // Of this moment: a palette that changes changes it.
        QApplication::setPalette(distinctPalette(200));
        QCOMPARE(colorOf(0x80000000 | index), QColor(10 + role, 50 + group, 200));
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
