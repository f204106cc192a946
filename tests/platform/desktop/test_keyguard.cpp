#include "desktop/keyguard.h"

#include <QKeyEvent>
#include <QTest>
#include <QWidget>
#include <QWindow>

#include "rows.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct PairRow {
    Qt::Key key;
    QString text;
    quint64 released;  ///< the moment of the release, and of the next press
    quint64 pressed;
    bool repeated;
};

struct EnterRow {
    Qt::Key first;
    QString between;  ///< characters
    Qt::Key second;
    quint64 pause;  ///< milliseconds between the two presses
    int presses;    ///< that arrive
};

struct ScanRow {
    QString typed;  ///< ahead of the last key
    Qt::Key last;
    int pause;  ///< milliseconds between them
    bool scanned;
    quint64 by = 0;  ///< milliseconds between them by the keyboard's clock; 0 for a keyboard without one
};

/// Notes whether the last key that it was given is a repeated one.
class Listener : public QWidget {
public:
    bool repeated = false;
    int presses = 0;

protected:
    void keyPressEvent(QKeyEvent* event) override {
        repeated = event->isAutoRepeat();
        ++presses;
    }
};

void send(QWindow& window, QEvent::Type type, const PairRow& row, quint64 moment) {
    QKeyEvent key(type, row.key, {}, row.text);
    key.setTimestamp(moment);
    QCoreApplication::sendEvent(&window, &key);
}

}  // namespace

Q_DECLARE_METATYPE(PairRow)
Q_DECLARE_METATYPE(EnterRow)
Q_DECLARE_METATYPE(ScanRow)

class TestKeyGuard : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void repeatedPresses_data() {
        addRows<PairRow>({{"Enter, at once", {Qt::Key_Return, u"\r"_s, 1000, 1000, true}},
                          {"Space, at once", {Qt::Key_Space, u" "_s, 1000, 1000, true}},
                          {"Enter, a moment later", {Qt::Key_Return, u"\r"_s, 1000, 1001, false}},
                          {"a digit of a scan", {Qt::Key_1, u"1"_s, 1000, 1000, false}},
                          {"without a clock", {Qt::Key_Return, u"\r"_s, 0, 0, false}}});
    }
    void repeatedPresses() {
        QFETCH(const PairRow, row);
        const RepeatedKeys guard;
        Listener listener;
        listener.show();
        QVERIFY(QTest::qWaitForWindowExposed(&listener));
        listener.setFocus();
        QWindow& window = *listener.windowHandle();
        send(window, QEvent::KeyPress, row, row.released / 2);
        QVERIFY(!listener.repeated);
        send(window, QEvent::KeyRelease, row, row.released);
        send(window, QEvent::KeyPress, row, row.pressed);
        QCOMPARE(listener.presses, 2);
        QCOMPARE(listener.repeated, row.repeated);
    }

    /// Scanners that end a code with two Enters mean one.
    void secondEnters_data() {
        addRows<EnterRow>({{"a scanner's", {Qt::Key_Return, {}, Qt::Key_Return, 20, 1}},
                           {"at once", {Qt::Key_Return, {}, Qt::Key_Return, 0, 1}},
                           {"of the other Enter key", {Qt::Key_Return, {}, Qt::Key_Enter, 20, 1}},
                           {"a person's", {Qt::Key_Return, {}, Qt::Key_Return, 90, 2}},
                           {"of the next scan", {Qt::Key_Return, u"869"_s, Qt::Key_Return, 20, 5}},
                           {"Space", {Qt::Key_Space, {}, Qt::Key_Space, 20, 2}}});
    }
    void secondEnters() {
        QFETCH(const EnterRow, row);
        const RepeatedKeys guard;
        Listener listener;
        listener.show();
        QVERIFY(QTest::qWaitForWindowExposed(&listener));
        listener.setFocus();
        const auto press = [&](Qt::Key key, const QString& text, quint64 moment) {
            const PairRow pair{key, text, 0, 0, false};
            send(*listener.windowHandle(), QEvent::KeyPress, pair, moment);
            send(*listener.windowHandle(), QEvent::KeyRelease, pair, moment);
        };
        press(row.first, u"\r"_s, 1000);
        for (const QChar letter : row.between)
            press(Qt::Key(letter.unicode()), letter, 1000);
        press(row.second, u"\r"_s, 1000 + row.pause);
        QCOMPARE(listener.presses, row.presses);
    }

    void anotherKeyAtOnce() {
        const RepeatedKeys guard;
        Listener listener;
        listener.show();
        QVERIFY(QTest::qWaitForWindowExposed(&listener));
        QWindow& window = *listener.windowHandle();
        const PairRow enter{Qt::Key_Return, u"\r"_s, 0, 0, false};
        send(window, QEvent::KeyRelease, {Qt::Key_Space, u" "_s, 0, 0, false}, 1000);
        send(window, QEvent::KeyPress, enter, 1000);
        QVERIFY(!listener.repeated);
    }

    void endsOfScans_data() {
        addRows<ScanRow>({{"scan with Enter", {u"869"_s, Qt::Key_Return, 0, true}},
                          {"with the other Enter", {u"869"_s, Qt::Key_Enter, 0, true}},
                          {"with Tab", {u"869"_s, Qt::Key_Tab, 0, true}},
                          {"second Enter", {u"869\r"_s, Qt::Key_Return, 0, true}},
                          {"blank inside", {u"AB"_s, Qt::Key_Space, 0, true}},
                          {"Enter alone", {QString(), Qt::Key_Return, 0, false}},
                          {"Enter later", {u"869"_s, Qt::Key_Return, 350, false}},
                          {"got late, sent at once", {u"869"_s, Qt::Key_Return, 350, true, 2}},
                          {"sent later", {u"869"_s, Qt::Key_Return, 350, false, 350}},
                          {"an arrow", {u"869"_s, Qt::Key_Left, 0, false}},
                          {"a digit", {u"869"_s, Qt::Key_4, 0, false}}});
    }
    void endsOfScans() {
        QFETCH(const ScanRow, row);
        ScannedKeys keys;
        for (const QChar letter : row.typed) {
            const int key = letter == u'\r' ? int(Qt::Key_Return) : letter.toUpper().unicode();
            QKeyEvent typed(QEvent::KeyPress, key, {}, letter);
            typed.setTimestamp(row.by == 0 ? 0 : 1000);
            keys.isEndOfScan(typed);
        }
        QElapsedTimer pause;
        pause.start();
        QTRY_VERIFY(pause.hasExpired(row.pause));
        QKeyEvent last(QEvent::KeyPress, row.last, {});
        last.setTimestamp(row.by == 0 ? 0 : 1000 + row.by);
        QCOMPARE(keys.isEndOfScan(last), row.scanned);
    }
};

QTEST_MAIN(TestKeyGuard)
#include "test_keyguard.moc"
