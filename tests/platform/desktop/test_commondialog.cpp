#include <QApplication>
#include <QPointer>
#include <QPushButton>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>
#include <functional>
#include <memory>

#include "desktop/commondialog.h"
#include "desktop/screensize.h"
#include "rows.h"
#include "widgets/colordialog.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

QPointer<ColorDialog> openDialog() {
    return qobject_cast<ColorDialog*>(QApplication::activeModalWidget());
}

/// What a shopkeeper does with the open dialog.
enum class Way { ok, cancel, escape, closeButton };

void press(ColorDialog& dialog, const QString& button) {
    QTest::mouseClick(dialog.findChild<QAbstractButton*>(button), Qt::LeftButton);
}

void leave(ColorDialog& dialog, Way way) {
    switch (way) {
        case Way::ok:
            return press(dialog, u"ok"_s);
        case Way::cancel:
            return press(dialog, u"cancel"_s);
        case Way::escape:
            return QTest::keyClick(&dialog, Qt::Key_Escape);
        case Way::closeButton:
            dialog.close();
    }
}

void runPendingDeletes() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

}  // namespace

Q_DECLARE_METATYPE(Way)

class TestCommonDialog : public QObject {
    Q_OBJECT

    struct PlaceRow {
        QSize screen;
        QSize dialog;
    };
    struct IsLeftRow {
        Way way;
        QColor kept;
    };

private Q_SLOTS:
    void init() {
        m_runs = 0;
        m_window = std::make_unique<QWidget>();
        m_window->resize(400, 300);
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }
    void cleanup() {
        if (const QPointer<ColorDialog> left = openDialog())
            left->close();
        m_window.reset();
        runPendingDeletes();
        QVERIFY(!QApplication::activeModalWidget());
    }

    void startsBlack() { QCOMPARE(CommonDialog().color(), QColor(Qt::black)); }

    void opensOnItsColourAndReturnsAtOnce() {
        CommonDialog control;
        control.setColor(QColor(10, 20, 30));
        control.showColor(*m_window, count());
        const QPointer<ColorDialog> dialog = openDialog();
        QVERIFY(dialog);
        QVERIFY(dialog->isVisible());
        QCOMPARE(dialog->currentColor(), QColor(10, 20, 30));
        QCOMPARE(dialog->parentWidget(), m_window.get());
        QCOMPARE(m_runs, 0);
    }

    // Whatever control of the window opens it, the window is what it stands above.
    void opensAboveTheControlsWindow() {
        auto* inner = new QPushButton(m_window.get());
        CommonDialog control;
        control.showColor(*inner, count());
        QVERIFY(openDialog());
        QCOMPARE(openDialog()->parentWidget(), m_window.get());
    }

    void isLeft_data() {
        addRows<IsLeftRow>({{"ok", {Way::ok, QColor(1, 2, 200)}},
                            {"cancel", {Way::cancel, QColor(9, 8, 7)}},
                            {"escape", {Way::escape, QColor(9, 8, 7)}},
                            {"the window's close button", {Way::closeButton, QColor(9, 8, 7)}}});
    }
    void isLeft() {
        QFETCH(const IsLeftRow, row);
        CommonDialog control;
        control.setColor(QColor(9, 8, 7));
        bool closedWhenDone = false;
        QColor colorWhenDone;
        control.showColor(*m_window, [&] {
            ++m_runs;
            closedWhenDone = !QApplication::activeModalWidget();
            colorWhenDone = control.color();
        });
        const QPointer<ColorDialog> dialog = openDialog();
        QVERIFY(QTest::qWaitForWindowExposed(dialog));
        dialog->setCurrentColor(QColor(1, 2, 200));
        leave(*dialog, row.way);
        QCOMPARE(m_runs, 1);
        QVERIFY(closedWhenDone);
        QCOMPARE(colorWhenDone, row.kept);
        QCOMPARE(control.color(), row.kept);
        runPendingDeletes();
        QVERIFY(!dialog);
        QCOMPARE(m_runs, 1);
    }

    void aScanAnswersNothing() {
        CommonDialog control;
        control.showColor(*m_window, count());
        const QPointer<ColorDialog> dialog = openDialog();
        QVERIFY(QTest::qWaitForWindowActive(dialog));
        auto* ok = dialog->findChild<QAbstractButton*>(u"ok"_s);
        QCOMPARE(dialog->focusWidget(), ok);
        QTest::keyClicks(ok, u"8695463115280"_s);
        QTest::keyClick(ok, Qt::Key_Return);
        QVERIFY(dialog->isVisible());
        QCOMPARE(m_runs, 0);
    }

    void aPersonsEnterAnswers() {
        CommonDialog control;
        control.showColor(*m_window, count());
        const QPointer<ColorDialog> dialog = openDialog();
        QVERIFY(QTest::qWaitForWindowActive(dialog));
        QTest::keyClick(dialog->findChild<QAbstractButton*>(u"ok"_s), Qt::Key_Return);
        QVERIFY(!dialog->isVisible());
        QCOMPARE(m_runs, 1);
    }

    void theNextOneStartsOnTheChosenColour() {
        CommonDialog control;
        control.showColor(*m_window, count());
        openDialog()->setCurrentColor(Qt::green);
        openDialog()->accept();
        runPendingDeletes();
        control.showColor(*m_window, count());
        QCOMPARE(openDialog()->currentColor(), QColor(Qt::green));
    }

    void noOtherWindowCanBePressed() {
        QPushButton other;
        other.resize(100, 50);
        other.show();
        QVERIFY(QTest::qWaitForWindowExposed(&other));
        const QSignalSpy clicked(&other, &QPushButton::clicked);
        const auto pressOther = [&] {
            QTest::mouseClick(other.windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 25));
        };
        pressOther();
        QCOMPARE(clicked.count(), 1);
        CommonDialog control;
        control.showColor(*m_window, count());
        QVERIFY(QTest::qWaitForWindowExposed(openDialog()));
        pressOther();
        QCOMPARE(clicked.count(), 1);
        openDialog()->reject();
        pressOther();
        QCOMPARE(clicked.count(), 2);
    }

    void theControlGoesAway() {
        auto control = std::make_unique<CommonDialog>();
        control->showColor(*m_window, count());
        const QPointer<ColorDialog> dialog = openDialog();
        QVERIFY(dialog);
        control.reset();
        QVERIFY(!QApplication::activeModalWidget());
        runPendingDeletes();
        QVERIFY(!dialog);
        QCOMPARE(m_runs, 0);
    }

    void theWindowGoesAway() {
        CommonDialog control;
        control.setColor(Qt::red);
        control.showColor(*m_window, count());
        const QPointer<ColorDialog> dialog = openDialog();
        QVERIFY(dialog);
        dialog->setCurrentColor(Qt::blue);
        m_window.reset();
        QVERIFY(!dialog);
        QCOMPARE(m_runs, 0);
        QCOMPARE(control.color(), QColor(Qt::red));
    }

    // A screen that owns the control, with the dialog above it.
    void bothGoAway() {
        auto* control = new CommonDialog(m_window.get());
        control->showColor(*m_window, count());
        const QPointer<ColorDialog> dialog = openDialog();
        QVERIFY(dialog);
        m_window.reset();
        QVERIFY(!dialog);
        QCOMPARE(m_runs, 0);
    }

    void whatRunsBehindItMayDeleteEverything() {
        auto control = std::make_unique<CommonDialog>();
        control->showColor(*m_window, [&] {
            ++m_runs;
            control.reset();
        });
        const QPointer<ColorDialog> dialog = openDialog();
        dialog->accept();
        QCOMPARE(m_runs, 1);
        QVERIFY(!control);
        runPendingDeletes();
        QVERIFY(!dialog);
    }

    void whatRunsBehindItMayOpenTheNext() {
        CommonDialog control;
        control.showColor(*m_window, [&] {
            ++m_runs;
            control.showColor(*m_window, count());
        });
        const QPointer<ColorDialog> first = openDialog();
        first->accept();
        const QPointer<ColorDialog> second = openDialog();
        QVERIFY(second);
        QVERIFY(second != first);
        second->reject();
        QCOMPARE(m_runs, 2);
    }

    void growsWithTheScreen_data() {
        addRows<PlaceRow>({{"800x600", {{800, 600}, {675, 463}}},
                           {"1024x768", {{1024, 768}, {864, 592}}},
                           {"1366x768", {{1366, 768}, {864, 592}}},
                           {"1920x1080", {{1920, 1080}, {1215, 833}}}});
    }
    void growsWithTheScreen() {
        QFETCH(const PlaceRow, row);
        setScreenMetricsSource([&row] { return ScreenMetrics{row.screen, 15, 15}; });
        const auto restore = qScopeGuard([] { setScreenMetricsSource({}); });
        m_window->setGeometry(QRect(QPoint(0, 0), row.screen));
        CommonDialog control;
        control.showColor(*m_window, count());
        const QRect place = openDialog()->frameGeometry();
        QCOMPARE(place.size(), row.dialog);
        QVERIFY(m_window->frameGeometry().contains(place));
        // Within the window's frame, which this platform is late to tell.
        QVERIFY((place.center() - m_window->geometry().center()).manhattanLength() <= 4);
    }

private:
    std::function<void()> count() {
        return [this] { ++m_runs; };
    }

    std::unique_ptr<QWidget> m_window;
    int m_runs = 0;
};

QTEST_MAIN(TestCommonDialog)
#include "test_commondialog.moc"
