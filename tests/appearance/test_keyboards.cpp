// The on-screen keyboards themselves: their keys, what each does, and how large they are.

#include "appearance/keyboard.h"
#include "appearance/keyboardfield.h"
#include "appearance/keyboardscreen.h"
#include "appearance/mdlMonitors.h"
#include "desktop/screensize.h"
#include "rows.h"
#include "salestest.h"
#include "widgets/activeresize.h"
#include "widgets/drawnbutton.h"
#include "widgets/drawnframe.h"

using namespace kovanix;

namespace {

const QStringList letterRows{
    "8:1 10:2 13:3 2:4 7:5 12:6 1:7 3:8 4:9 11:0 14:, 62:.",
    "73:Q 72:W 71:E 70:R 69:T 68:Y 67:U 66:I 65:O 64:P 43:Ğ 5:/",
    "0:Ş 63:A 45:S 46:D 47:F 48:G 49:H 50:J 60:L 59:K 42:Ş 41:İ",
    "103:SİL 51:Z 52:X 53:C 54:V 55:B 56:N 57:M 58:Ö 61:Ç 40:Ü 6:Ö",
    "102:<----- 101:BOşLUK 100:ENTER",
};
const QStringList padRows{"8:1 10:2 13:3", "2:4 7:5 12:6", "1:7 3:8 4:9", "18:SİL 11:0 14:,",
                          "0:00 39:ENTER 19:<-----"};

template <class S>
KeyboardScreen& load() {
    return screen<S>();
}

struct BoardRow {
    KeyboardScreen& (*load)();
    QStringList rows;
    const char* keyClass;
    QString title;
};

struct TypeRow {
    bool pad;
    QString before;
    int index;
    QString after;
};

struct WidthRow {
    int width;
    bool drawn;
    bool large;
};

struct SizeRow {
    QSize display;
    bool pad;
    QRect place;
};

/// The keys as they stand, row by row: "index:caption".
QStringList standing(const KeyboardScreen& keyboard) {
    auto keys = keyboard.ui.abc->findChildren<DrawnButton*>();
    keys.removeOne(keyboard.ui.kapat);
    std::ranges::sort(keys, {}, [](const DrawnButton* key) { return std::pair(key->y(), key->x()); });
    QStringList rows;
    int top = -1;
    for (const DrawnButton* key : keys) {
        const QString text = key->objectName().section('_', 1) + ':' + key->caption();
        if (key->y() == top)
            rows.last() += ' ' + text;
        else
            rows.append(text);
        top = key->y();
    }
    return rows;
}

void setDisplay(QSize size) {
    setScreenMetricsSource([size] { return ScreenMetrics{size, 15, 15}; });
    monitorlerioku();
}

}  // namespace

class KeyboardsTest : public SalesTest {
    Q_OBJECT

    KeyboardScreen& openPad() {
        openNumberPad(8, m_shop->sales());
        return screen<klavyesayi>();
    }
    KeyboardScreen& openFull() {
        openKeyboard(19, m_shop->sales());
        return loaded<klavyeyeni>() ? static_cast<KeyboardScreen&>(screen<klavyeyeni>())
                                    : screen<klavyeyeni2>();
    }
    static DrawnButton& key(const KeyboardScreen& keyboard, int index) {
        return *keyboard.findChild<DrawnButton*>("vkCommand1_" + QString::number(index));
    }

private Q_SLOTS:
    void init() {
        SalesTest::init();
        setDisplay({1024, 768});
    }

    void stands_data() {
        addRows<BoardRow>(
            {{"klavyeyeni", {load<klavyeyeni>, letterRows, "kovanix::vkCommand", "KLAVYE"}},
             {"klavyeyeni2", {load<klavyeyeni2>, letterRows, "kovanix::CommandButton", "KLAVYE"}},
             {"klavyesayi", {load<klavyesayi>, padRows, "kovanix::vkCommand", "SAYILAR"}}});
    }
    void stands() {
        QFETCH(const BoardRow, row);
        KeyboardScreen& keyboard = row.load();
        keyboard.open(8, m_shop->sales());
        QCOMPARE(standing(keyboard), row.rows);
        for (const auto* button : keyboard.ui.abc->findChildren<DrawnButton*>())
            QCOMPARE(button->metaObject()->className(), row.keyClass);
        QCOMPARE(keyboard.windowTitle(), row.title);
        QCOMPARE(keyboard.ui.kapat->caption(), "KAPAT");
        QVERIFY(keyboard.ui.nereye->isHidden());
        for (const char* name : {"yazilan", "nereye", "kapat", "abc", "ActiveResize1"})
            QVERIFY2(keyboard.findChild<QWidget*>(name), name);
    }

    void everyKeyJoinsItsCaption_data() { stands_data(); }
    void everyKeyJoinsItsCaption() {
        QFETCH(const BoardRow, row);
        KeyboardScreen& keyboard = row.load();
        keyboard.open(8, m_shop->sales());
        for (const QString& caption : row.rows.join(' ').split(' ')) {
            const int index = caption.section(':', 0, 0).toInt();
            const QString face = caption.section(':', 1);
            if (face.size() > 2)
                continue;  // a word: it does something
            keyboard.ui.yazilan->setText("a");
            keyboard.ui.yazilan->setCursorPosition(0);
            press(key(keyboard, index));
            QCOMPARE(keyboard.ui.yazilan->text(), 'a' + face);
            QCOMPARE(keyboard.ui.yazilan->cursorPosition(), keyboard.ui.yazilan->text().size());
        }
    }

    void theWordsWork_data() {
        addRows<TypeRow>({{"blank", {false, "a", 101, "a "}},
                          {"back space", {false, "abc", 102, "ab"}},
                          {"back space on nothing", {false, "", 102, ""}},
                          {"back space on an emoji", {false, "a🍞", 102, "a"}},
                          {"clear", {false, "abc", 103, ""}},
                          {"clear on nothing", {false, "", 103, ""}},
                          {"the pad's back space", {true, "12", 19, "1"}},
                          {"the pad's back space on nothing", {true, "", 19, ""}},
                          {"the pad's clear", {true, "12", 18, ""}},
                          {"the pad's two zeros", {true, "1", 0, "100"}}});
    }
    void theWordsWork() {
        QFETCH(const TypeRow, row);
        KeyboardScreen& keyboard = row.pad ? openPad() : openFull();
        keyboard.ui.yazilan->setText(row.before);
        keyboard.ui.yazilan->home(true);  // back space takes from the end, whatever is selected
        press(key(keyboard, row.index));
        QCOMPARE(keyboard.ui.yazilan->text(), row.after);
        QCOMPARE(keyboard.ui.yazilan->cursorPosition(), row.after.size());
        QVERIFY(!keyboard.ui.yazilan->isUndoAvailable());
        QTRY_VERIFY(keyboard.ui.yazilan->hasFocus());
    }

    // The other keyboard's numbers mean nothing here; 44 is the pad's blank, though no key has it.
    void strangeIndices_data() {
        addRows<TypeRow>({{"100 on the pad", {true, "1", 100, "1"}},
                          {"101 on the pad", {true, "1", 101, "1"}},
                          {"44 on the pad", {true, "1", 44, "1 "}},
                          {"18 on the full one", {false, "1", 18, "1"}},
                          {"39 on the full one", {false, "1", 39, "1"}}});
    }
    void strangeIndices() {
        QFETCH(const TypeRow, row);
        KeyboardScreen& keyboard = row.pad ? openPad() : openFull();
        keyboard.ui.yazilan->setText(row.before);
        keyboard.vkCommand1_click(row.index);
        QCOMPARE(keyboard.ui.yazilan->text(), row.after);
        QVERIFY(keyboard.isVisible());
    }

    void theCaptionCountsAtThePress() {
        KeyboardScreen& keyboard = openFull();
        key(keyboard, 63).setCaption("é");
        press(key(keyboard, 63));
        QCOMPARE(keyboard.ui.yazilan->text(), "é");
    }

    void realKeysTypeButEnterDoesNothing() {
        KeyboardScreen& keyboard = openPad();
        QTRY_VERIFY(keyboard.isActiveWindow());
        QVERIFY(keyboard.ui.yazilan->hasFocus());
        QTest::keyClicks(keyboard.ui.yazilan, "12");
        for (const Qt::Key enter : {Qt::Key_Return, Qt::Key_Enter})
            QTest::keyClick(keyboard.ui.yazilan, enter);
        QCoreApplication::processEvents();
        QVERIFY(loaded<klavyesayi>());
        QCOMPARE(keyboard.ui.yazilan->text(), "12");
        QCOMPARE(ui().barkod->text(), QString());
    }

    void theWidthChoosesTheKeyboard_data() {
        addRows<WidthRow>({{"800", {800, false, true}},
                           {"1024", {1024, false, true}},
                           {"1025", {1025, true, true}},
                           {"1280", {1280, true, true}},
                           {"1281", {1281, true, false}},
                           {"1920", {1920, true, false}}});
    }
    void theWidthChoosesTheKeyboard() {
        QFETCH(const WidthRow, row);
        setDisplay({row.width, row.width * 3 / 4});
        KeyboardScreen& keyboard = openFull();
        QCOMPARE(loaded<klavyeyeni>(), row.drawn);
        QCOMPARE(loaded<klavyeyeni2>(), !row.drawn);
        QCOMPARE(keyboard.isMaximized(), row.large);
        QCOMPARE(openPad().isMaximized(), row.large);
    }

    void aLargeDisplayKeepsTheFieldInSight_data() {
        addRows<SizeRow>({{"1366x768", {{1366, 768}, false, {133, 288, 1100, 480}}},
                          {"1920x1080", {{1920, 1080}, false, {186, 405, 1547, 675}}},
                          {"pad, 1366x768", {{1366, 768}, true, {886, 74, 480, 620}}},
                          {"pad, 1920x1080", {{1920, 1080}, true, {1245, 104, 675, 872}}}});
    }
    void aLargeDisplayKeepsTheFieldInSight() {
        QFETCH(const SizeRow, row);
        setDisplay(row.display);
        const KeyboardScreen& keyboard = row.pad ? openPad() : openFull();
        QCOMPARE(keyboard.size(), row.place.size());
        // Within the few pixels of the platform's frame.
        QVERIFY2((keyboard.geometry().center() - row.place.center()).manhattanLength() <= 10,
                 qPrintable(QString("%1,%2").arg(keyboard.x()).arg(keyboard.y())));
    }

    void aBarcodeIsSeenWhole_data() {
        addRows<SizeRow>({{"800x600", {{800, 600}, true, {}}},
                          {"1024x768", {{1024, 768}, true, {}}},
                          {"1366x768", {{1366, 768}, true, {}}},
                          {"1920x1080", {{1920, 1080}, true, {}}}});
    }
    void aBarcodeIsSeenWhole() {
        QFETCH(const SizeRow, row);
        setDisplay(row.display);
        const KeyboardScreen& pad = openPad();
        const KeyboardField& field = *pad.ui.yazilan;
        const int full = field.font().pixelSize();
        for (int i = 0; i < 13; ++i)
            press(key(pad, 3));  // "8"
        QCOMPARE(field.text(), QString(13, u'8'));
        const QMargins margins = field.textMargins();
        QVERIFY(field.fontMetrics().horizontalAdvance(field.text()) <
                field.width() - margins.left() - margins.right());
        press(key(pad, 18));  // SİL
        QCOMPARE(field.font().pixelSize(), full);
    }

    void theNameStaysWhereItIs() {
        const KeyboardScreen& pad = openPad();
        KeyboardField& field = *pad.ui.yazilan;
        const auto topOfName = [&field] {
            const QImage picture = field.grab().toImage();
            constexpr int margin = 8;  // the focus line
            for (int y = margin; y < picture.height(); ++y) {
                for (int x = margin; x < 60; ++x) {
                    if (picture.pixelColor(x, y).lightness() < 160)
                        return y;
                }
            }
            return -1;
        };
        field.setText("8");
        const int full = field.font().pixelSize();
        const int top = topOfName();
        QVERIFY(top > 0 && top < field.height() / 2);
        field.setText(QString(13, u'8'));
        QVERIFY(field.font().pixelSize() < full);
        QCOMPARE(topOfName(), top);
    }

    void thePicturesOpenTheirKeyboards() {
        press(*ui().Image4);
        QVERIFY(loaded<klavyesayi>());
        QCOMPARE(screen<klavyesayi>().ui.nereye->text(), "8");
        QVERIFY(screen<klavyesayi>().isVisible());
    }
};

int main(int argc, char** argv) {
    return runTests<KeyboardsTest>(argc, argv);
}

#include "test_keyboards.moc"
