#include <memory>

#include "rows.h"
#include "runtests.h"
#include "totalfixture.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr Five standard{255, 16777215, 16777215, 16777215, 16777215};

/// One of the two saved sets: its number and controls, the keys' first number, its colours and the other's.
struct Slot {
    int number;
    QString save;
    QString fetch;
    int first;
    Five five;
    int otherFirst;
    Five other;
};

const Slot slot1{1, u"vkCommand6"_s, u"vkCommand7"_s, 1, set1, 6, set2};
const Slot slot2{2, u"vkCommand9"_s, u"vkCommand8"_s, 6, set2, 1, set1};

QByteArray mode(bool live) {
    return live ? "toplamtemadegisken=1\ntemakaydetme1=False\n"_ba
                : "toplamtemadegisken=0\ntemakaydetme1=True\n"_ba;
}

}  // namespace

/// The two saved sets, the keep switch, the activation of the screen, and what a restart brings back.
class TemaKayitTest : public QObject {
    Q_OBJECT

    struct SlotsRow {
        Slot slot;
        bool liveMode;
    };
    struct SavingWhatTheOtherSetHoldsRow {
        Slot slot;
        int answer;
    };
    struct OneDifferenceIsEnoughRow {
        Slot slot;
        int index;
    };
    struct ComparesByNumberRow {
        QByteArray text;
        ColorValue color;
        bool asks;
    };
    struct ActivationRow {
        QByteArray config;
        bool liveMode;
    };
    struct RestartRow {
        QByteArray config;
        QStringList presses;  ///< "N=V" chooses colour V by CommandN
        Five five;
    };
    struct CaptionsOfASetCanBeReadRow {
        ColorValue text, face;
    };

    std::unique_ptr<TotalFixture> m_shop;

    void begin(const QByteArray& config) {
        m_shop.reset();
        m_shop = std::make_unique<TotalFixture>(config);
        m_shop->open();
    }
    const TotalFixture& shop() const { return *m_shop; }
    DrawnButton& button(const QString& name) const {
        return *qobject_cast<DrawnButton*>(shop().control(name));
    }

    void expectQuestion(int answer) {
        m_shop->boxes.expect(u"UYARI"_s, u"KAYDETMEK İSTEDİĞİNİZE EMİN MİSİNİZ?"_s, answer);
    }
    void verifyMode(bool liveMode) {
        QCOMPARE(toplamtemadegisken, liveMode ? 1 : 0);
        QCOMPARE(shop().onFile("toplamtemadegisken"), liveMode ? "1"_ba : "0"_ba);
        QCOMPARE(shop().onFile("temakaydetme1"), liveMode ? "False"_ba : "True"_ba);
        QCOMPARE(button("temakaydetme").isChecked(), !liveMode);
    }
    /// That the slot holds these colours, and all follows that follows a save.
    void verifySaved(const Slot& slot, const Five& five) {
        QCOMPARE(shop().fiveOnFile("toplamtemakyt", slot.first), texts(five));
        QVERIFY(showsEverywhere(shop(), five));
        QCOMPARE(sonrenk, slot.number);
        QCOMPARE(shop().onFile("sonrenk"), QByteArray::number(slot.number));
        QCOMPARE(colorsOf(button(slot.save)), five);
        QCOMPARE(colorsOf(button(slot.fetch)), five);
    }

private Q_SLOTS:
    void cleanup() {
        const bool answered = !m_shop || allAnswered(m_shop->boxes);
        m_shop.reset();
        QVERIFY(answered);
    }

    void slots_data() {
        addRows<SlotsRow>({{"set 1, KAYDEDİYOR", {slot1, false}},
                           {"set 2, KAYDEDİYOR", {slot2, false}},
                           {"set 1, KAYDETMİYOR", {slot1, true}},
                           {"set 2, KAYDETMİYOR", {slot2, true}}});
    }

    void saving_data() { slots_data(); }
    void saving() {
        QFETCH(const SlotsRow, row);
        begin(configuration(mode(row.liveMode) + "kayitgetir1=7\nkaydedilenigetir=7\n"));
        shop().click(row.slot.save);
        verifySaved(row.slot, shown);
        QCOMPARE(shop().fiveOnFile("toplamtemakyt", row.slot.otherFirst), texts(row.slot.other));
        QCOMPARE(shop().fiveOnFile("toplamtema", 1), texts(live));
        QCOMPARE(shop().onFile("kayitgetir1"), "7"_ba);
        QCOMPARE(kayitgetir1, 7);
        QCOMPARE(shop().onFile("kaydedilenigetir"), "7"_ba);
        verifyMode(row.liveMode);
    }

    void savingWritesTheKeysInOrder_data() { slots_data(); }
    void savingWritesTheKeysInOrder() {
        QFETCH(const SlotsRow, row);
        const QByteArray before = "[ayar]\n" + mode(row.liveMode);
        begin(before);
        shop().click(row.slot.save);
        QCOMPARE(shop().config(), before + keyLines("toplamtemakyt", row.slot.first, shown) +
                                      "sonrenk=" + QByteArray::number(row.slot.number) + '\n');
    }

    void savingTheSwatchesNotTheTotal() {
        begin(configuration(mode(false)));
        shop().click("vkCommand2");  // a preset leaves the swatches as they were
        QCOMPARE(colorsOf(shop().real()), standard);
        shop().click(slot1.save);
        verifySaved(slot1, shown);
        QCOMPARE(shop().fiveOnFile("toplamtema", 1), texts(standard));
    }

    void savingWhatTheOtherSetHolds_data() {
        using Row = SavingWhatTheOtherSetHoldsRow;
        QTest::addColumn<Row>("row");
        for (const Slot& slot : {slot1, slot2}) {
            QTest::addRow("set %d, yes", slot.number) << Row{slot, MessageBoxAnswer::yes};
            QTest::addRow("set %d, no", slot.number) << Row{slot, MessageBoxAnswer::no};
            QTest::addRow("set %d, Escape", slot.number) << Row{slot, BoxAnswers::escape};
        }
    }
    void savingWhatTheOtherSetHolds() {
        QFETCH(const SavingWhatTheOtherSetHoldsRow, row);
        begin(configuration(mode(false)));
        dress(shop().real(), row.slot.other);
        shop().total().toplamrenkaktar();
        const QByteArray before = shop().config();
        const Five preview = colorsOf(shop().preview());
        expectQuestion(row.answer);
        shop().click(row.slot.save);
        if (row.answer == MessageBoxAnswer::yes) {
            verifySaved(row.slot, row.slot.other);
            QCOMPARE(shop().fiveOnFile("toplamtemakyt", row.slot.otherFirst), texts(row.slot.other));
            return;
        }
        QCOMPARE(shop().config(), before);
        QCOMPARE(colorsOf(shop().preview()), preview);
        QCOMPARE(colorsOf(button(row.slot.save)), row.slot.five);
        QCOMPARE(sonrenk, 0);
    }

    void oneDifferenceIsEnough_data() {
        QTest::addColumn<OneDifferenceIsEnoughRow>("row");
        for (const Slot& slot : {slot1, slot2}) {
            for (int index = 0; index < 5; ++index)
                QTest::addRow("set %d, colour %d differs", slot.number, index + 1)
                    << OneDifferenceIsEnoughRow{slot, index};
        }
    }
    void oneDifferenceIsEnough() {
        QFETCH(const OneDifferenceIsEnoughRow, row);
        begin(configuration(mode(false)));
        const Five five = with(row.slot.other, row.index, 0x010203);
        dress(shop().real(), five);
        shop().total().toplamrenkaktar();
        shop().click(row.slot.save);  // no question: the strict queue would fail
        verifySaved(row.slot, five);
    }

    void savingOverItselfAsksNothing() {
        begin(configuration(mode(false) + "sonrenk=1\n"));
        dress(shop().real(), set1);
        shop().total().toplamrenkaktar();
        shop().click(slot1.save);
        verifySaved(slot1, set1);
    }

    void comparesByNumber_data() {
        QTest::addColumn<ComparesByNumberRow>("row");
        const auto row = [](const char* name, const QByteArray& text, ColorValue color, bool asks) {
            QTest::newRow(name) << ComparesByNumberRow{text, color, asks};
        };
        row("zeros in front", "00255", 255, true);
        row("blanks around it", "  255  ", 255, true);
        row("text behind the number", "255 kadar", 255, true);
        row("an empty key is black", "", 0, true);
        row("no number is black", "mavi", 0, true);
        row("an empty key is no white", "", 0xFFFFFF, false);
        row("a number beyond 32 bits equals nothing", "99999999999", 0, false);
        const ColorValue face = colorValue(QApplication::palette().color(QPalette::Button));
        row("a system colour, by what it looks like", "-2147483633", face, true);
        row("a system colour of other looks", "-2147483633", 0x010203, false);
    }
    void comparesByNumber() {
        QFETCH(const ComparesByNumberRow, row);
        QByteArray config = "[ayar]\n" + mode(false);
        for (int i = 6; i <= 10; ++i)
            config += "toplamtemakyt" + QByteArray::number(i) + '=' + row.text + '\n';
        begin(config);
        const Five five{row.color, row.color, row.color, row.color, row.color};
        dress(shop().real(), five);
        shop().total().toplamrenkaktar();
        if (row.asks)
            expectQuestion(MessageBoxAnswer::no);
        shop().click(slot1.save);
        QCOMPARE(shop().onFile("toplamtemakyt1"), row.asks ? QByteArray() : QByteArray::number(row.color));
    }

    void aSaveThatTheFileDoesNotTake() {
        begin(configuration(mode(false)));
        shop().blockFile();
        shop().click(slot1.save);
        QVERIFY(showsEverywhere(shop(), black));  // what is applied is what can be read back
        QCOMPARE(sonrenk, 1);
    }

    void fetching_data() { slots_data(); }
    void fetching() {
        QFETCH(const SlotsRow, row);
        begin(configuration(mode(row.liveMode) + "kayitgetir1=7\nkaydedilenigetir=7\n"));
        const QByteArray before = shop().config();
        kaydedilenigetir = 7;
        shop().click(row.slot.fetch);
        QVERIFY(showsEverywhere(shop(), row.slot.five));
        const QByteArray number = QByteArray::number(row.slot.number);
        const QByteArray other = QByteArray::number(row.slot.number - 1);
        const QByteArray after = replaced(replaced(before, "kayitgetir1", number), "kaydedilenigetir", other);
        QCOMPARE(shop().config(), after + "sonrenk=" + number + '\n');
        QCOMPARE(kaydedilenigetir, row.slot.number - 1);
        QCOMPARE(sonrenk, row.slot.number);
        QCOMPARE(kayitgetir1, 7);  // in the file only
        verifyMode(row.liveMode);
    }

    void fetchingWhatWasNeverSaved() {
        begin("[ayar]\n" + mode(false));
        shop().click(slot2.fetch);
        QVERIFY(showsEverywhere(shop(), black));
        QCOMPARE(shop().onFile("kayitgetir1"), "2"_ba);
    }

    void fetchingPassesOverANumberThatIsTooLarge() {
        begin(replaced(configuration(mode(false)), "toplamtemakyt3", "99999999999"));
        shop().click(slot1.fetch);
        QVERIFY(showsEverywhere(shop(), with(set1, 2, shown[2])));
        QCOMPARE(sonrenk, 1);
    }

    void fetchingIntoSwatchesThatDiffer() {
        begin(configuration(mode(false)));
        shop().click("vkCommand2");
        shop().click(slot1.fetch);
        QVERIFY(showsEverywhere(shop(), set1));
        shop().click(slot2.fetch);
        QVERIFY(showsEverywhere(shop(), set2));
        QCOMPARE(sonrenk, 2);
    }

    void applyingWorksWithoutTheScreen() {
        m_shop = std::make_unique<TotalFixture>(configuration());
        kayit2uygula();
        QVERIFY(showsEverywhere(shop(), set2));
        kayit1uygula();
        QVERIFY(showsEverywhere(shop(), set1));
        QCOMPARE(shop().config(), configuration());
    }

    void theSwitch() {
        begin("[ayar]\ntemakaydetme1=True\ntoplamtemadegisken=0\n");
        const DrawnButton& toggle = button("temakaydetme");
        shop().click("temakaydetme");
        QCOMPARE(toggle.caption(), u"KAYDETMİYOR"_s);
        QCOMPARE(toggle.toolTip(), u"KAYDETMİYORSA TIKLAYIN"_s);
        QCOMPARE(temakaydetme1, u"False"_s);
        QCOMPARE(shop().config(), "[ayar]\ntemakaydetme1=False\ntoplamtemadegisken=1\n"_ba);
        verifyMode(true);
        QTest::keyClick(shop().control("temakaydetme"), Qt::Key_Space);
        QCOMPARE(toggle.caption(), u"KAYDEDİYOR"_s);
        QCOMPARE(toggle.toolTip(), u"KAYDEDİYORSA TIKLAYIN"_s);
        QCOMPARE(temakaydetme1, u"True"_s);
        QCOMPARE(shop().config(), "[ayar]\ntemakaydetme1=True\ntoplamtemadegisken=0\n"_ba);
        verifyMode(false);
        QCOMPARE(colorsOf(shop().real()), shown);
    }

    void theSwitchReadsBackWhatTheFileTook() {
        begin(configuration(mode(false)));
        shop().blockFile();
        shop().click("temakaydetme");
        QCOMPARE(toplamtemadegisken, 0);
        QCOMPARE(temakaydetme1, u"False"_s);
        QCOMPARE(button("temakaydetme").caption(), u"KAYDETMİYOR"_s);
    }

    void activation_data() {
        addRows<ActivationRow>(
            {{"True, 0", {"temakaydetme1=True\ntoplamtemadegisken=0\n"_ba, false}},
             {"True wins over 1", {"temakaydetme1=True\ntoplamtemadegisken=1\n"_ba, false}},
             {"True alone", {"temakaydetme1=True\n"_ba, false}},
             {"False, 1", {"temakaydetme1=False\ntoplamtemadegisken=1\n"_ba, true}},
             {"False wins over 0", {"temakaydetme1=False\ntoplamtemadegisken=0\n"_ba, true}},
             {"False alone", {"temakaydetme1=False\n"_ba, true}},
             {"no key", {""_ba, false}},
             {"no word, 0", {"toplamtemadegisken=0\n"_ba, false}},
             {"no word, 1", {"toplamtemadegisken=1\n"_ba, true}},
             {"another word, 1", {"temakaydetme1=dogru\ntoplamtemadegisken=1\n"_ba, true}}});
    }
    void activation() {
        QFETCH(const ActivationRow, row);
        begin(configuration(row.config));
        verifyMode(row.liveMode);
        QCOMPARE(button("temakaydetme").caption(), row.liveMode ? u"KAYDETMİYOR"_s : u"KAYDEDİYOR"_s);
        QCOMPARE(temakaydetme1, row.liveMode ? u"False"_s : u"True"_s);
        QVERIFY(showsEverywhere(shop(), shown));
        for (const Slot& slot : {slot1, slot2}) {
            QCOMPARE(colorsOf(button(slot.save)), slot.five);
            QCOMPARE(colorsOf(button(slot.fetch)), slot.five);
            QCOMPARE(shop().fiveOnFile("toplamtemakyt", slot.first), texts(slot.five));
        }
        QCOMPARE(shop().fiveOnFile("toplamtema", 1), texts(live));
        for (const char* key : {"sonrenk", "kayitgetir1", "kaydedilenigetir"})
            QCOMPARE(shop().onFile(key), QByteArray());
    }

    void slotsOfOddTexts() {
        QByteArray config = replaced(configuration(mode(false)), "toplamtemakyt6", "mavi");
        config = replaced(config, "toplamtemakyt7", "99999999999");
        m_shop = std::make_unique<TotalFixture>(config);
        const Five stored = colorsOf(button("vkCommand8"));
        shop().open();
        QCOMPARE(colorsOf(button("vkCommand8")), (Five{0, stored[1], set2[2], set2[3], set2[4]}));
    }

    void eachActivationReadsAnew() {
        begin(configuration(mode(false)));
        shop().sales().activateWindow();
        QTRY_COMPARE(QApplication::activeWindow(), &shop().sales());
        shop().writeConfig("[ayar]\n" + mode(true) + keyLines("toplamtemakyt", 1, standard));
        dress(shop().real(), set2);
        showInFront(shop().total());
        QTRY_COMPARE(button("temakaydetme").caption(), u"KAYDETMİYOR"_s);
        verifyMode(true);
        QVERIFY(showsEverywhere(shop(), set2));
        QCOMPARE(colorsOf(button("vkCommand6")), standard);
        QCOMPARE(colorsOf(button("vkCommand9")), black);
    }

    void restart_data() {
        QTest::addColumn<RestartRow>("row");
        const auto row = [](const char* name, const QByteArray& config, const QStringList& presses,
                            const Five& five) {
            QTest::newRow(name) << RestartRow{configuration(config), presses, five};
        };
        const QByteArray keep = mode(false);
        const QByteArray dontKeep = mode(true);
        row("a fetched set stays", keep, {"vkCommand7"}, set1);
        row("the second set too", keep, {"vkCommand8"}, set2);
        row("of two fetches the last, where it is the first set", keep, {"vkCommand8", "vkCommand7"}, set1);
        row("of two fetches the last, where it is the second set", keep, {"vkCommand7", "vkCommand8"}, set2);
        row("a fetched set gives way to the live colours", dontKeep, {"vkCommand7"}, live);
        row("a saved set stays", keep, {"vkCommand6"}, shown);
        row("a saved first set wins over a fetched second one", keep,
            {"vkCommand8", "Command1=77", "vkCommand6"}, with(set2, 0, 77));
        // The first set counts wherever one of the two selectors names it: that is meant.
        row("a fetched first set wins over a saved second one", keep,
            {"vkCommand7", "Command1=77", "vkCommand9"}, set1);
        row("a choice is lost in keep-mode", keep, {"Command2=1193046"}, shown);
        row("and the fetched set comes back", keep, {"vkCommand8", "Command2=1193046"}, set2);
        row("a choice stays with KAYDETMİYOR", dontKeep, {"Command2=1193046"}, with(live, 1, 1193046));
        row("a swatch's copy stays with KAYDETMİYOR", dontKeep, {"Frame2"}, with(live, 3, shown[1]));
        row("a preset is written in keep-mode, but not followed", keep, {"vkCommand3"}, shown);
        row("until the switch is turned", keep, {"vkCommand3", "temakaydetme"}, {65280, 0, 0, 0, 0});
        row("a preset stays with KAYDETMİYOR", dontKeep, {"vkCommand3"}, {65280, 0, 0, 0, 0});
        row("the switch turned to keep leaves it to the palette", dontKeep, {"temakaydetme"}, shown);
    }
    void restart() {
        QFETCH(const RestartRow, row);
        begin(row.config);
        for (const QString& press : row.presses) {
            const QStringList parts = press.split(u'=');
            if (parts.size() == 2)
                shop().choose(parts[0], parts[1].toUInt());
            else
                shop().click(press);
        }
        shop().restart();
        QCOMPARE(colorsOf(shop().real()), row.five);
        shop().open();
        QVERIFY(showsEverywhere(shop(), row.five));
    }

    void captionsOfASetCanBeRead_data() {
        addRows<CaptionsOfASetCanBeReadRow>({{"black on black", {ColorValue{0}, ColorValue{0}}},
                                             {"white on white", {ColorValue{0xFFFFFF}, ColorValue{0xFFFFFF}}},
                                             {"red on red", {ColorValue{0x0000FF}, ColorValue{0x0000FF}}},
                                             {"black on white", {ColorValue{0}, ColorValue{0xFFFFFF}}}});
    }
    void captionsOfASetCanBeRead() {
        QFETCH(const CaptionsOfASetCanBeReadRow, row);
        begin("[ayar]\n" + mode(false) +
              keyLines("toplamtemakyt", 1, {row.text, row.face, row.face, row.face, row.face}));
        const QImage picture = button("vkCommand6").grab().toImage();
        // The lightness that the middle of the button spans, where the caption stands.
        int darkest = 255;
        int lightest = 0;
        for (int x = picture.width() / 4; x < picture.width() * 3 / 4; ++x) {
            const int grey = qGray(picture.pixel(x, picture.height() / 2));
            darkest = std::min(darkest, grey);
            lightest = std::max(lightest, grey);
        }
        QVERIFY2(lightest - darkest > 200, qPrintable(u"%1 to %2"_s.arg(darkest).arg(lightest)));
    }
};

int main(int argc, char** argv) {
    return runTests<TemaKayitTest>(argc, argv);
}
#include "test_temakayit.moc"
