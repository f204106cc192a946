#include "appearance/totalcolors.h"
#include "rows.h"

#include "resetprocess.h"
#include "runtests.h"
#include "runtime/runtimeerror.h"
#include "totalfixture.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

/// The total's five colours: keys, properties, and what a start makes of them.
class TotalColorsTest : public QObject {
    Q_OBJECT

    struct EachColorIsItsOwnPropertyRow {
        TotalColor color;
        QByteArray property;
    };
    struct KeysRow {
        TotalSet set;
        QStringList keys;
    };
    struct StoresDecimalTextRow {
        QColor color;
        QByteArray text;
    };
    struct ReadsTextRow {
        QByteArray text;
        QColor color;
    };
    struct SourceOfTheTotalRow {
        int degisken, getir, renk;
        Five five;
    };
    struct OddTextsRow {
        QByteArray selector, name;
        int first;
    };

private Q_SLOTS:
    void init() { resetProcess(); }

    void eachColorIsItsOwnProperty_data() {
        addRows<EachColorIsItsOwnPropertyRow>(
            {{"forecolor", {TotalColor::forecolor, "forecolor"_ba}},
             {"backcolor1", {TotalColor::backcolor1, "backcolor1"_ba}},
             {"backcolor2", {TotalColor::backcolor2, "backcolor2"_ba}},
             {"backcolorpushed1", {TotalColor::backcolorpushed1, "backcolorpushed1"_ba}},
             {"backcolorpushed2", {TotalColor::backcolorpushed2, "backcolorpushed2"_ba}}});
    }
    void eachColorIsItsOwnProperty() {
        QFETCH(const EachColorIsItsOwnPropertyRow, row);
        vkToggleButton button;
        dress(button, shown);
        setTotalColor(button, row.color, QColor(1, 2, 3));
        QCOMPARE(button.property(row.property.constData()).value<QColor>(), QColor(1, 2, 3));
        QCOMPARE(totalColor(button, row.color), QColor(1, 2, 3));
        QCOMPARE(colorsOf(button), with(shown, static_cast<int>(row.color), 0x030201));
    }

    void keys_data() {
        addRows<KeysRow>(
            {{"live",
              {TotalSet::live,
               QStringList{"toplamtema1", "toplamtema2", "toplamtema3", "toplamtema4", "toplamtema5"}}},
             {"saved 1",
              {TotalSet::saved1, QStringList{"toplamtemakyt1", "toplamtemakyt2", "toplamtemakyt3",
                                             "toplamtemakyt4", "toplamtemakyt5"}}},
             {"saved 2",
              {TotalSet::saved2, QStringList{"toplamtemakyt6", "toplamtemakyt7", "toplamtemakyt8",
                                             "toplamtemakyt9", "toplamtemakyt10"}}}});
    }
    void keys() {
        QFETCH(const KeysRow, row);
        QStringList found;
        for (const TotalColor color : totalColors)
            found.append(totalKey(row.set, color));
        QCOMPARE(found, row.keys);
    }

    void storesDecimalText_data() {
        addRows<StoresDecimalTextRow>(
            {{"black", {QColor(0, 0, 0), "0"_ba}},
             {"red", {QColor(255, 0, 0), "255"_ba}},
             {"green", {QColor(0, 255, 0), "65280"_ba}},
             {"blue", {QColor(0, 0, 255), "16711680"_ba}},
             {"white", {QColor(255, 255, 255), "16777215"_ba}},
             {"half transparent", {QColor(255, 255, 255, 128), "16777215"_ba}},
             {"of another colour model", {QColor::fromHsv(0, 255, 255), "255"_ba}}});
    }
    void storesDecimalText() {
        QFETCH(const StoresDecimalTextRow, row);
        const TotalFixture shop;
        storeTotalColor(TotalSet::saved2, TotalColor::backcolor2, row.color);
        QCOMPARE(shop.config(), "[ayar]\r\ntoplamtemakyt8=" + row.text + "\r\n");
    }

    void readsText_data() {
        addRows<ReadsTextRow>({{"red", {"255", QColor(255, 0, 0)}},
                               {"blue", {"16711680", QColor(0, 0, 255)}},
                               {"empty", {"", QColor(0, 0, 0)}},
                               {"no number", {"mavi", QColor(0, 0, 0)}},
                               {"text behind the number", {"255 mavi", QColor(255, 0, 0)}},
                               {"zeros in front", {"000255", QColor(255, 0, 0)}},
                               {"a system colour: the button's face",
                                {"-2147483633", QApplication::palette().color(QPalette::Button)}},
                               {"a system colour that isn't one", {"-1", QColor(0, 0, 0)}}});
    }
    void readsText() {
        QFETCH(const ReadsTextRow, row);
        const TotalFixture shop("[ayar]\ntoplamtema2=" + row.text + '\n');
        QCOMPARE(storedTotalColor(TotalSet::live, TotalColor::backcolor1).rgb(), row.color.rgb());
    }

    void aNumberBeyondThirtyTwoBitsFails() {
        const TotalFixture shop("[ayar]\ntoplamtema2=2147483648\n");
        QVERIFY_THROWS_EXCEPTION(RuntimeError, storedTotalColor(TotalSet::live, TotalColor::backcolor1));
    }

    void sourceOfTheTotal_data() {
        addRows<SourceOfTheTotalRow>({{"nothing chosen: as the palette left it", {0, 0, 0, shown}},
                                      {"live", {1, 0, 0, live}},
                                      {"toplamtemadegisken 1 wins over sonrenk 2", {1, 0, 2, live}},
                                      {"toplamtemadegisken 1 wins over sonrenk 1", {1, 0, 1, live}},
                                      {"toplamtemadegisken 1 wins over kayitgetir1 1", {1, 1, 0, live}},
                                      {"toplamtemadegisken 1 wins over kayitgetir1 2", {1, 2, 0, live}},
                                      {"kayitgetir1 1", {0, 1, 0, set1}},
                                      {"sonrenk 1", {0, 0, 1, set1}},
                                      {"both 1", {0, 1, 1, set1}},
                                      {"kayitgetir1 2", {0, 2, 0, set2}},
                                      {"sonrenk 2", {0, 0, 2, set2}},
                                      {"both 2", {0, 2, 2, set2}},
                                      {"kayitgetir1 1 wins over sonrenk 2", {0, 1, 2, set1}},
                                      {"sonrenk 1 wins over kayitgetir1 2", {0, 2, 1, set1}},
                                      {"toplamtemadegisken 2 is not 1", {2, 0, 0, shown}},
                                      {"toplamtemadegisken 2 leaves it to the sets", {2, 0, 2, set2}},
                                      {"selectors beyond the sets", {0, 3, 3, shown}},
                                      {"selectors below nothing", {-1, -1, -1, shown}}});
    }
    void sourceOfTheTotal() {
        QFETCH(const SourceOfTheTotalRow, row);
        const QByteArray config =
            configuration("toplamtemadegisken=" + QByteArray::number(row.degisken) +
                          "\nkayitgetir1=" + QByteArray::number(row.getir) +
                          "\nsonrenk=" + QByteArray::number(row.renk) + "\ntemakaydetme1=True\n");
        const TotalFixture shop(config);
        toplamtemauygula();
        QCOMPARE(colorsOf(shop.real()), row.five);
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
        addRows<OddTextsRow>({{"live", {"toplamtemadegisken=1\n"_ba, "toplamtema"_ba, 1}},
                              {"set 1", {"sonrenk=1\n"_ba, "toplamtemakyt"_ba, 1}},
                              {"set 2", {"kayitgetir1=2\n"_ba, "toplamtemakyt"_ba, 6}}});
    }
    void emptyKeysAreBlack() {
        QFETCH(const OddTextsRow, row);
        const TotalFixture shop("[ayar]\n" + row.selector);
        toplamtemauygula();
        QCOMPARE(colorsOf(shop.real()), black);
    }
    void emptyKeysAreBlack_data() { oddTexts_data(); }
    void oddTexts() {
        QFETCH(const OddTextsRow, row);
        const auto line = [&](int offset, const QByteArray& text) -> QByteArray {
            return row.name + QByteArray::number(row.first + offset) + '=' + text + '\n';
        };
        const TotalFixture shop("[ayar]\n" + row.selector + line(0, "mavi") + line(1, "99999999999") +
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
