#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include "desktop/sendkeys.h"
#include "rows.h"

using namespace kovanix;

namespace {

/// A window with two fields that writes down which keys they get: "first+Return" pressed, "first-Return"
/// released.
class Window : public QWidget {
public:
    explicit Window(QStringList& log) : m_log(log) {
        auto* layout = new QVBoxLayout(this);
        for (QLineEdit* field : {first, second}) {
            layout->addWidget(field);
            field->installEventFilter(this);
        }
        first->setObjectName("first");
        second->setObjectName("second");
    }

    void showActive() {
        show();
        activateWindow();
        QTRY_VERIFY(isActiveWindow());
    }

    QLineEdit* first = new QLineEdit;
    QLineEdit* second = new QLineEdit;
    std::function<void()> onPress = [] {};

    bool eventFilter(QObject* field, QEvent* event) override {
        if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease)
            return false;
        const bool press = event->type() == QEvent::KeyPress;
        const auto* key = static_cast<QKeyEvent*>(event);
        m_log.append(field->objectName() + (press ? '+' : '-') +
                     QString::fromLatin1(QMetaEnum::fromType<Qt::Key>().valueToKey(key->key())).mid(4));
        if (press)
            onPress();
        return press && m_closing;
    }

    void closeOnPress() {
        m_closing = true;
        onPress = [this] { delete first; };
    }

private:
    bool m_closing = false;
    QStringList& m_log;
};

/// Everything that is due now has happened.
void settle() {
    for (int turn = 0; turn < 5; ++turn)
        QCoreApplication::processEvents();
}

}  // namespace

class SendKeysTest : public QObject {
    Q_OBJECT

    QStringList m_log;

    struct LossRow {
        void (*lose)(std::unique_ptr<Window>& meant, QMessageBox& box);
    };

private Q_SLOTS:
    void init() { m_log.clear(); }

    void comesBehindTheRunningEvent() {
        Window window(m_log);
        window.showActive();
        window.first->setFocus();
        sendKey(Qt::Key_Return);
        window.second->setFocus();  // still in the event
        QCOMPARE(m_log, QStringList());
        settle();
        QCOMPARE(m_log, (QStringList{"second+Return", "second-Return"}));
    }

    void enterCarriesItsCharacter() {
        Window window(m_log);
        window.showActive();
        window.first->setFocus();
        QString text;
        connect(window.first, &QLineEdit::returnPressed, this, [&text] { text += "returned"; });
        sendKey(Qt::Key_Return, *window.first);
        QTRY_COMPARE(text, "returned");
    }

    void keepsTheOrder() {
        Window window(m_log);
        window.showActive();
        window.first->setFocus();
        sendKey(Qt::Key_End);
        sendKey(Qt::Key_Right, window);
        sendKey(Qt::Key_Return, *window.second);
        sendFocus(*window.first);
        sendKey(Qt::Key_Home);
        settle();
        m_log.removeIf([](const QString& half) { return half.contains('-'); });
        QCOMPARE(m_log, (QStringList{"first+End", "first+Right", "second+Return", "first+Home"}));
    }

    void waitsForItsWindow() {
        Window meant(m_log), active(m_log);
        meant.show();
        meant.second->setFocus();
        active.showActive();
        active.first->setFocus();
        sendKey(Qt::Key_Return, meant);
        sendKey(Qt::Key_End);  // for whatever has the focus by then
        settle();
        QCOMPARE(m_log, QStringList());
        meant.activateWindow();
        QTRY_COMPARE(m_log, (QStringList{"second+Return", "second-Return", "second+End", "second-End"}));
    }

    // What becomes active may move the focus by itself.
    void aControlHasTheFocusWhenItsWindowIsActive_data() {
        QTest::addColumn<bool>("withKey");
        QTest::newRow("for a key") << true;
        QTest::newRow("by itself") << false;
    }
    void aControlHasTheFocusWhenItsWindowIsActive() {
        QFETCH(const bool, withKey);
        Window meant(m_log), active(m_log);
        meant.show();
        active.showActive();
        const QObject whileBothStand;
        connect(qApp, &QApplication::focusChanged, &whileBothStand, [&meant](QWidget* /*old*/, QWidget* now) {
            if (now == meant.second && !meant.property("once").toBool()) {
                meant.setProperty("once", true);
                meant.first->setFocus();
            }
        });
        meant.second->setFocus();
        if (withKey)
            sendKey(Qt::Key_Return, *meant.second);
        else
            sendFocus(*meant.second);
        meant.activateWindow();
        QTRY_VERIFY(meant.property("once").toBool());
        QTRY_VERIFY(meant.second->hasFocus());
        QCOMPARE(m_log, withKey ? (QStringList{"second+Return", "second-Return"}) : QStringList());
    }

    void isLost_data() {
        addRows<LossRow>(
            {{"its window is gone", {[](std::unique_ptr<Window>& meant, QMessageBox&) { meant.reset(); }}},
             {"its window is hidden", {[](std::unique_ptr<Window>& meant, QMessageBox&) { meant->hide(); }}},
             {"a box came up", {[](std::unique_ptr<Window>& meant, QMessageBox& box) {
                  box.show();
                  settle();
                  box.hide();
                  meant->activateWindow();
              }}}});
    }
    void isLost() {
        QFETCH(const LossRow, row);
        auto meant = std::make_unique<Window>(m_log);
        Window active(m_log);
        active.first->setObjectName("other");
        meant->show();
        meant->first->setFocus();
        active.showActive();
        active.first->setFocus();
        QMessageBox box;
        box.setModal(true);
        sendKey(Qt::Key_Return, *meant);
        settle();
        row.lose(meant, box);
        // What is sent behind it isn't held up, and comes alone.
        sendKey(Qt::Key_End, active);
        active.activateWindow();
        QTRY_COMPARE(m_log, (QStringList{"other+End", "other-End"}));
    }

    void isLostWhereItsWindowIsNotActiveInTime() {
        Window meant(m_log), active(m_log);
        active.first->setObjectName("other");
        meant.show();
        active.showActive();
        active.first->setFocus();
        sendKey(Qt::Key_Return, meant);
        const auto isOver = [&active, this] {
            sendKey(Qt::Key_Home, active);
            settle();
            return !m_log.isEmpty();
        };
        QTRY_VERIFY_WITH_TIMEOUT(isOver(), 10000);
        m_log.clear();
        meant.activateWindow();
        QTRY_VERIFY(meant.isActiveWindow());
        settle();
        QVERIFY2(!m_log.contains("first+Return"), qPrintable(m_log.join(' ')));
    }

    void theOpenBoxGetsItsKeys() {
        QMessageBox box;
        box.setModal(true);
        auto* field = new QLineEdit(&box);
        box.show();
        box.activateWindow();
        QTRY_VERIFY(box.isActiveWindow());
        field->setFocus();
        const QSignalSpy returned(field, &QLineEdit::returnPressed);
        sendKey(Qt::Key_Return, *field);
        QTRY_COMPARE(returned.count(), 1);
    }

    void aKeyThatClosesItsField() {
        auto window = std::make_unique<Window>(m_log);
        window->showActive();
        window->first->setFocus();
        window->closeOnPress();
        sendKey(Qt::Key_Return, *window);
        settle();
        QCOMPARE(m_log, QStringList{"first+Return"});
    }

    void aKeyThatSendsAnother() {
        Window window(m_log);
        window.showActive();
        window.first->setFocus();
        bool once = false;
        window.onPress = [&] {
            if (!std::exchange(once, true))
                sendKey(Qt::Key_End);
        };
        sendKey(Qt::Key_Return);
        settle();
        QCOMPARE(m_log, (QStringList{"first+Return", "first-Return", "first+End", "first-End"}));
    }
};

QTEST_MAIN(SendKeysTest)
#include "test_sendkeys.moc"
