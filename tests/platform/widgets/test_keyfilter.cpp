#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <vector>

#include "rows.h"
#include "widgets/keyfilter.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(Qt::KeyboardModifiers)

namespace {

void send(QWidget& field, int key, const QString& text, Qt::KeyboardModifiers modifiers = {},
          bool repeated = false) {
    QKeyEvent event(QEvent::KeyPress, key, modifiers, text, repeated);
    QCoreApplication::sendEvent(&field, &event);
}

}  // namespace

class TestKeyFilter : public QObject {
    Q_OBJECT

    struct StagesRow {
        int key;
        QString text;
        Qt::KeyboardModifiers modifiers;
        int down;
        int code;  ///< -1: never reaches the press stage
    };
    struct DigitsOnlyRow {
        int key;
        QString text;
        QString result;  ///< of a field that holds "12" with its cursor behind the 1
    };
    struct OnlyCharactersTableRow {
        int code, result;
    };
    struct ReplacedCharacterRow {
        QString typed;
        int becomes;
        QString result;
    };
    struct ComposedCharactersAreFilteredRow {
        QString commit, text;
    };

private Q_SLOTS:
    void stages_data() {
        QTest::addColumn<StagesRow>("row");
        const Qt::KeyboardModifiers none;
        const auto row = [](const char* name, int key, const QString& text, Qt::KeyboardModifiers modifiers,
                            int down, int code) {
            QTest::newRow(name) << StagesRow{key, text, modifiers, down, code};
        };
        row("digit", Qt::Key_5, u"5"_s, none, Qt::Key_5, '5');
        row("keypad digit", Qt::Key_5, u"5"_s, Qt::KeypadModifier, Qt::Key_5, '5');
        row("shifted letter", Qt::Key_A, u"A"_s, Qt::ShiftModifier, Qt::Key_A, 'A');
        row("Turkish letter", 0x15F, u"ş"_s, none, 0x15F, 0x15F);
        row("letter beyond the basic plane", 0, u"😀"_s, none, 0, 0x1F600);
        row("AltGr letter", Qt::Key_Q, u"@"_s, Qt::ControlModifier | Qt::AltModifier, Qt::Key_Q, '@');
        row("enter", Qt::Key_Return, u"\r"_s, none, Qt::Key_Return, 13);
        row("keypad enter", Qt::Key_Enter, u"\r"_s, Qt::KeypadModifier, Qt::Key_Return, 13);
        row("enter without a text", Qt::Key_Return, QString(), none, Qt::Key_Return, 13);
        row("backspace", Qt::Key_Backspace, u"\b"_s, none, Qt::Key_Backspace, 8);
        row("tab", Qt::Key_Tab, u"\t"_s, none, Qt::Key_Tab, -1);
        row("backtab", Qt::Key_Backtab, u"\t"_s, Qt::ShiftModifier, Qt::Key_Backtab, -1);
        row("paste by key", Qt::Key_V, u"\x16"_s, Qt::ControlModifier, Qt::Key_V, 22);
        row("select all, text missing", Qt::Key_A, QString(), Qt::ControlModifier, Qt::Key_A, 1);
        row("escape", Qt::Key_Escape, u"\x1b"_s, none, Qt::Key_Escape, 27);
        row("delete", Qt::Key_Delete, u"\x7f"_s, none, Qt::Key_Delete, -1);
        row("left", Qt::Key_Left, QString(), none, Qt::Key_Left, -1);
        row("F1", Qt::Key_F1, QString(), none, Qt::Key_F1, -1);
        row("alt letter", Qt::Key_X, u"x"_s, Qt::AltModifier, Qt::Key_X, -1);
    }
    void stages() {
        QFETCH(const StagesRow, row);
        QLineEdit field;
        std::vector<int> downs;
        std::vector<int> codes;
        new KeyFilter(
            field, [&](int pressed) { downs.push_back(pressed); },
            [&](int pressed) {
                codes.push_back(pressed);
                return 0;
            });
        send(field, row.key, row.text, row.modifiers);
        QCOMPARE(downs, std::vector<int>{row.down});
        QCOMPARE(codes, row.code < 0 ? std::vector<int>{} : std::vector<int>{row.code});
    }

    void digitsOnly_data() {
        QTest::addColumn<DigitsOnlyRow>("row");
        QTest::newRow("digit passes") << DigitsOnlyRow{int(Qt::Key_3), u"3"_s, u"132"_s};
        QTest::newRow("comma passes") << DigitsOnlyRow{int(Qt::Key_Comma), u","_s, u"1,2"_s};
        QTest::newRow("letter drops") << DigitsOnlyRow{int(Qt::Key_A), u"a"_s, u"12"_s};
        QTest::newRow("dot drops") << DigitsOnlyRow{int(Qt::Key_Period), u"."_s, u"12"_s};
        QTest::newRow("blank drops") << DigitsOnlyRow{int(Qt::Key_Space), u" "_s, u"12"_s};
        QTest::newRow("backspace passes") << DigitsOnlyRow{int(Qt::Key_Backspace), u"\b"_s, u"2"_s};
        QTest::newRow("delete passes") << DigitsOnlyRow{int(Qt::Key_Delete), u"\x7f"_s, u"1"_s};
        QTest::newRow("Arabic digit drops") << DigitsOnlyRow{0, u"٣"_s, u"12"_s};
    }
    void digitsOnly() {
        QFETCH(const DigitsOnlyRow, row);
        QLineEdit field(u"12"_s);
        field.setCursorPosition(1);
        new KeyFilter(field, {}, onlyCharacters(u",0123456789"));
        send(field, row.key, row.text);
        QCOMPARE(field.text(), row.result);
    }

    void onlyCharactersTable_data() {
        addRows<OnlyCharactersTableRow>({{"first control", {1, 1}},
                                         {"last control", {26, 26}},
                                         {"escape", {27, 0}},
                                         {"allowed", {int('7'), int('7')}},
                                         {"not allowed", {int('x'), 0}}});
    }
    void onlyCharactersTable() {
        QFETCH(const OnlyCharactersTableRow, row);
        QCOMPARE(onlyCharacters(u"7")(row.code), row.result);
    }

    void droppedEnterPressesNothing() {
        QLineEdit field;
        const QSignalSpy entered(&field, &QLineEdit::returnPressed);
        QPointer<KeyFilter> filter = new KeyFilter(field, {}, [](int code) { return code == 13 ? 0 : code; });
        send(field, Qt::Key_Return, u"\r"_s);
        QCOMPARE(entered.count(), 0);
        delete filter;
        send(field, Qt::Key_Return, u"\r"_s);
        QCOMPARE(entered.count(), 1);
    }

    void droppedKeyReachesNoParent() {
        QWidget window;
        QLineEdit field(&window);
        int reached = 0;
        struct Watch : QObject {
            int& count;
            explicit Watch(int& counter) : count(counter) {}
            bool eventFilter(QObject*, QEvent* event) override {
                count += event->type() == QEvent::KeyPress ? 1 : 0;
                return false;
            }
        } watch(reached);
        window.installEventFilter(&watch);
        new KeyFilter(field, {}, [](int) { return 0; });
        send(field, Qt::Key_Return, u"\r"_s);
        QCOMPARE(reached, 0);
    }

    void replacedCharacter_data() {
        addRows<ReplacedCharacterRow>({{"i becomes İ", {u"i"_s, 0x130, u"aİb"_s}},
                                       {"dot becomes comma", {u"."_s, int(','), u"a,b"_s}},
                                       {"beyond the basic plane", {u"x"_s, 0x1F600, u"a😀b"_s}},
                                       {"becomes backspace", {u"x"_s, 8, u"b"_s}}});
    }
    void replacedCharacter() {
        QFETCH(const ReplacedCharacterRow, row);
        QLineEdit field(u"ab"_s);
        field.setCursorPosition(1);
        int calls = 0;
        new KeyFilter(field, {}, [&](int) {
            ++calls;
            return row.becomes;
        });
        const QSignalSpy edited(&field, &QLineEdit::textEdited);
        send(field, 0, row.typed);
        QCOMPARE(field.text(), row.result);
        QCOMPARE(calls, 1);
        QCOMPARE(edited.count(), 1);
    }

    void replacementReplacesTheSelection() {
        QLineEdit field(u"abc"_s);
        field.selectAll();
        new KeyFilter(field, {}, [](int) { return int('Z'); });
        send(field, Qt::Key_Y, u"y"_s);
        QCOMPARE(field.text(), u"Z"_s);
    }

    void heldKeysPassBothStages() {
        QLineEdit field;
        int downs = 0;
        new KeyFilter(
            field, [&](int) { ++downs; }, onlyCharacters(u"5"));
        send(field, Qt::Key_5, u"5"_s);
        send(field, Qt::Key_5, u"5"_s, {}, true);
        send(field, Qt::Key_5, u"5"_s, {}, true);
        QCOMPARE(downs, 3);
        QCOMPARE(field.text(), u"555"_s);
    }

    void pastedTextPasses() {
        QLineEdit field;
        new KeyFilter(field, {}, onlyCharacters(u"5"));
        field.insert(u"abc"_s);
        QCOMPARE(field.text(), u"abc"_s);
    }

    void composedCharactersAreFiltered_data() {
        addRows<ComposedCharactersAreFilteredRow>({{"a dead key's letter", {u"â"_s, QString()}},
                                                   {"several, one allowed", {u"a5b"_s, u"5"_s}},
                                                   {"all allowed", {u"55"_s, u"55"_s}}});
    }
    void composedCharactersAreFiltered() {
        QFETCH(const ComposedCharactersAreFilteredRow, row);
        QLineEdit field;
        new KeyFilter(field, {}, onlyCharacters(u"5"));
        QInputMethodEvent event;
        event.setCommitString(row.commit);
        QCoreApplication::sendEvent(&field, &event);
        QCOMPARE(field.text(), row.text);
    }

    void altWithALetterTypesNothing() {
        QLineEdit field;
        new KeyFilter(field, {}, onlyCharacters(u"5"));
        send(field, Qt::Key_A, u"a"_s, Qt::AltModifier);
        send(field, Qt::Key_5, u"5"_s, Qt::AltModifier);
        QCOMPARE(field.text(), QString());
    }

    void aKeyWithSeveralCharactersIsFilteredByEach() {
        QLineEdit field;
        new KeyFilter(field, {}, onlyCharacters(u"5"));
        send(field, 0, u"a5b"_s);
        QCOMPARE(field.text(), u"5"_s);
    }

    void fieldMayGoInEitherStage_data() {
        QTest::addColumn<bool>("inKeyDown");
        QTest::newRow("key down") << true;
        QTest::newRow("key press") << false;
    }
    void fieldMayGoInEitherStage() {
        QFETCH(bool, inKeyDown);
        auto* field = new QLineEdit;
        const QPointer<QLineEdit> alive(field);
        int presses = 0;
        new KeyFilter(
            *field,
            [&](int) {
                if (inKeyDown)
                    delete field;
            },
            [&](int code) {
                ++presses;
                delete field;
                return code;
            });
        send(*field, Qt::Key_A, u"a"_s);
        QVERIFY(!alive);
        QCOMPARE(presses, inKeyDown ? 0 : 1);
    }

    void emptyStagesLetPass() {
        QLineEdit field;
        new KeyFilter(field, {}, {});
        send(field, Qt::Key_A, u"a"_s);
        QCOMPARE(field.text(), u"a"_s);
    }
};

QTEST_MAIN(TestKeyFilter)
#include "test_keyfilter.moc"
