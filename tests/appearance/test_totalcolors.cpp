#include "appearance/totalcolors.h"

#include "resetprocess.h"
#include "runtests.h"
#include "runtime/runtimeerror.h"
#include "totalfixture.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

/// The total's five colours: keys, properties, and what a start makes of them.
class TotalColorsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { resetProcess(); }

    void eachColorIsItsOwnProperty_data() {
        QTest::addColumn<TotalColor>("color");
        QTest::addColumn<QByteArray>("property");
        QTest::newRow("forecolor") << TotalColor::forecolor << "forecolor"_ba;
        QTest::newRow("backcolor1") << TotalColor::backcolor1 << "backcolor1"_ba;
        QTest::newRow("backcolor2") << TotalColor::backcolor2 << "backcolor2"_ba;
        QTest::newRow("backcolorpushed1") << TotalColor::backcolorpushed1 << "backcolorpushed1"_ba;
        QTest::newRow("backcolorpushed2") << TotalColor::backcolorpushed2 << "backcolorpushed2"_ba;
    }
    void eachColorIsItsOwnProperty() {
        QFETCH(const TotalColor, color);
        QFETCH(const QByteArray, property);
        vkToggleButton button;
        dress(button, shown);
        setTotalColor(button, color, QColor(1, 2, 3));
        QCOMPARE(button.property(property.constData()).value<QColor>(), QColor(1, 2, 3));
        QCOMPARE(totalColor(button, color), QColor(1, 2, 3));
        QCOMPARE(colorsOf(button), with(shown, static_cast<int>(color), 0x030201));
    }

    void keys_data() {
        QTest::addColumn<TotalSet>("set");
        QTest::addColumn<QStringList>("keys");
        QTest::newRow("live") << TotalSet::live
                              << QStringList{"toplamtema1", "toplamtema2", "toplamtema3", "toplamtema4",
                                             "toplamtema5"};
        QTest::newRow("saved 1") << TotalSet::saved1
                                 << QStringList{"toplamtemakyt1", "toplamtemakyt2", "toplamtemakyt3",
                                                "toplamtemakyt4", "toplamtemakyt5"};
        QTest::newRow("saved 2") << TotalSet::saved2
                                 << QStringList{"toplamtemakyt6", "toplamtemakyt7", "toplamtemakyt8",
                                                "toplamtemakyt9", "toplamtemakyt10"};
    }
    void keys() {
        QFETCH(const TotalSet, set);
        QFETCH(const QStringList, keys);
        QStringList found;
        for (const TotalColor color : totalColors)
            found.append(totalKey(set, color));
        QCOMPARE(found, keys);
    }

    void storesDecimalText_data() {
        QTest::addColumn<QColor>("color");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("black") << QColor(0, 0, 0) << "0"_ba;
        QTest::newRow("red") << QColor(255, 0, 0) << "255"_ba;
        QTest::newRow("green") << QColor(0, 255, 0) << "65280"_ba;
        QTest::newRow("blue") << QColor(0, 0, 255) << "16711680"_ba;
        QTest::newRow("white") << QColor(255, 255, 255) << "16777215"_ba;
        QTest::newRow("half transparent") << QColor(255, 255, 255, 128) << "16777215"_ba;
        QTest::newRow("of another colour model") << QColor::fromHsv(0, 255, 255) << "255"_ba;
    }
    void storesDecimalText() {
        QFETCH(const QColor, color);
        QFETCH(const QByteArray, text);
        const TotalFixture shop;
        storeTotalColor(TotalSet::saved2, TotalColor::backcolor2, color);
        QCOMPARE(shop.config(), "[ayar]\r\ntoplamtemakyt8=" + text + "\r\n");
    }

    void readsText_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QColor>("color");
        const auto row = [](const char* name, const QByteArray& text, const QColor& color) {
            QTest::newRow(name) << text << color;
        };
        row("red", "255", QColor(255, 0, 0));
        row("blue", "16711680", QColor(0, 0, 255));
        row("empty", "", QColor(0, 0, 0));
        row("no number", "mavi", QColor(0, 0, 0));
        row("text behind the number", "255 mavi", QColor(255, 0, 0));
        row("zeros in front", "000255", QColor(255, 0, 0));
        row("a system colour: the button's face", "-2147483633",
            QApplication::palette().color(QPalette::Button));
        row("a system colour that isn't one", "-1", QColor(0, 0, 0));
    }
    void readsText() {
        QFETCH(const QByteArray, text);
        QFETCH(const QColor, color);
        const TotalFixture shop("[ayar]\ntoplamtema2=" + text + '\n');
        QCOMPARE(storedTotalColor(TotalSet::live, TotalColor::backcolor1).rgb(), color.rgb());
    }

    void aNumberBeyondThirtyTwoBitsFails() {
        const TotalFixture shop("[ayar]\ntoplamtema2=2147483648\n");
        QVERIFY_THROWS_EXCEPTION(RuntimeError, storedTotalColor(TotalSet::live, TotalColor::backcolor1));
    }

    void sourceOfTheTotal_data() {
        QTest::addColumn<int>("degisken");
        QTest::addColumn<int>("getir");
        QTest::addColumn<int>("renk");
        QTest::addColumn<Five>("five");
        const auto row = [](const char* name, int degisken, int getir, int renk, const Five& five) {
            QTest::newRow(name) << degisken << getir << renk << five;
        };
        row("nothing chosen: as the palette left it", 0, 0, 0, shown);
        row("live", 1, 0, 0, live);
        row("toplamtemadegisken 1 wins over sonrenk 2", 1, 0, 2, live);
        row("toplamtemadegisken 1 wins over sonrenk 1", 1, 0, 1, live);
        row("toplamtemadegisken 1 wins over kayitgetir1 1", 1, 1, 0, live);
        row("toplamtemadegisken 1 wins over kayitgetir1 2", 1, 2, 0, live);
        row("kayitgetir1 1", 0, 1, 0, set1);
        row("sonrenk 1", 0, 0, 1, set1);
        row("both 1", 0, 1, 1, set1);
        row("kayitgetir1 2", 0, 2, 0, set2);
        row("sonrenk 2", 0, 0, 2, set2);
        row("both 2", 0, 2, 2, set2);
        row("kayitgetir1 1 wins over sonrenk 2", 0, 1, 2, set1);
        row("sonrenk 1 wins over kayitgetir1 2", 0, 2, 1, set1);
        row("toplamtemadegisken 2 is not 1", 2, 0, 0, shown);
        row("toplamtemadegisken 2 leaves it to the sets", 2, 0, 2, set2);
        row("selectors beyond the sets", 0, 3, 3, shown);
        row("selectors below nothing", -1, -1, -1, shown);
    }
    void sourceOfTheTotal() {
        QFETCH(const int, degisken);
        QFETCH(const int, getir);
        QFETCH(const int, renk);
        QFETCH(const Five, five);
        const QByteArray config = configuration("toplamtemadegisken=" + QByteArray::number(degisken) +
                                                "\nkayitgetir1=" + QByteArray::number(getir) + "\nsonrenk=" +
                                                QByteArray::number(renk) + "\ntemakaydetme1=True\n");
        const TotalFixture shop(config);
        toplamtemauygula();
        QCOMPARE(colorsOf(shop.real()), five);
        QCOMPARE(shop.config(), config);  // a start writes nothing
    }

    void theVariablesDecideNotTheFile() {
        const TotalFixture shop(configuration("toplamtemadegisken=1\nsonrenk=1\n"));
        toplamtemadegisken = 0;
        sonrenk = 2;
        toplamtemauygula();
        QCOMPARE(colorsOf(shop.real()), set2);
    }

    void aFileWithoutAnyKeyLeavesTheTotal() {
        const TotalFixture shop;
        toplamtemauygula();
        QCOMPARE(colorsOf(shop.real()), shown);
    }

    void oddTexts_data() {
        QTest::addColumn<QByteArray>("selector");
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<int>("first");
        QTest::newRow("live") << "toplamtemadegisken=1\n"_ba
                              << "toplamtema"_ba << 1;
        QTest::newRow("set 1") << "sonrenk=1\n"_ba
                               << "toplamtemakyt"_ba << 1;
        QTest::newRow("set 2") << "kayitgetir1=2\n"_ba
                               << "toplamtemakyt"_ba << 6;
    }
    void emptyKeysAreBlack() {
        QFETCH(const QByteArray, selector);
        const TotalFixture shop("[ayar]\n" + selector);
        toplamtemauygula();
        QCOMPARE(colorsOf(shop.real()), black);
    }
    void emptyKeysAreBlack_data() { oddTexts_data(); }
    void oddTexts() {
        QFETCH(const QByteArray, selector);
        QFETCH(const QByteArray, name);
        QFETCH(const int, first);
        const auto line = [&](int offset, const QByteArray& text) -> QByteArray {
            return name + QByteArray::number(first + offset) + '=' + text + '\n';
        };
        const TotalFixture shop("[ayar]\n" + selector + line(0, "mavi") + line(1, "99999999999") +
                                line(2, "") + line(3, "-2147483633") + line(4, "255 kadar"));
        toplamtemauygula();
        const ColorValue face = colorValue(QApplication::palette().color(QPalette::Button));
        // The number that is too large leaves its property alone, and the others get theirs all the same.
        QCOMPARE(colorsOf(shop.real()), (Five{0, shown[1], 0, face, 255}));
    }
};

int main(int argc, char** argv) {
    return runTests<TotalColorsTest>(argc, argv);
}
#include "test_totalcolors.moc"
