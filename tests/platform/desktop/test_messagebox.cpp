#include <QApplication>
#include <QElapsedTimer>
#include <QFontInfo>
#include <QKeyEvent>
#include <QMessageBox>
#include <QProxyStyle>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <functional>

#include "desktop/focus.h"
#include "desktop/messagebox.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

const QString tamam = u"Tamam"_s;
const QString iptal = u"İptal"_s;
const QString yenidenDene = u"Yeniden dene"_s;
const QString evet = u"Evet"_s;
const QString hayir = u"Hayır"_s;
const QString tekrarDene = u"Tekrar dene"_s;
const QString devam = u"Devam"_s;

/// Lays a dialog's buttons out as one of the desktops does.
class ButtonLayoutStyle : public QProxyStyle {
public:
    explicit ButtonLayoutStyle(int buttonLayout) : QProxyStyle(u"fusion"_s), m_layout(buttonLayout) {}

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        return hint == SH_DialogButtonLayout ? m_layout : QProxyStyle::styleHint(hint, option, widget, data);
    }

private:
    int m_layout;
};

QMessageBox* openBox() {
    return qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
}

QList<QAbstractButton*> fromLeftToRight(const QMessageBox& box) {
    QList<QAbstractButton*> buttons = box.buttons();
    std::sort(buttons.begin(), buttons.end(), [&box](const QAbstractButton* a, const QAbstractButton* b) {
        return a->mapTo(&box, QPoint()).x() < b->mapTo(&box, QPoint()).x();
    });
    return buttons;
}

QStringList captionsOf(const QMessageBox& box) {
    QStringList texts;
    for (const QAbstractButton* button : fromLeftToRight(box))
        texts << button->text();
    return texts;
}

/// Opens a box and lets the given function answer the real one. The box is closed when the function left it
/// open, so that a failed case ends too.
int answered(const QString& text, int style, const QString& title,
             const std::function<void(QMessageBox&)>& answer) {
    bool seen = false;
    QTimer::singleShot(0, qApp, [&] {
        QMessageBox* box = openBox();
        if (!box)
            return;
        seen = QTest::qWaitForWindowExposed(box);
        answer(*box);
        if (openBox() == box)
            box->done(-1);
    });
    const int result = messageBox(text, style, title);
    return seen ? result : -1;
}

int answered(int style, const std::function<void(QMessageBox&)>& answer) {
    return answered(u"Silinsin mi?"_s, style, u"Uyarı"_s, answer);
}

}  // namespace

class MessageBoxTest : public QObject {
    Q_OBJECT

    struct StylesRow {
        int style;
        QStringList captions;
        QList<int> answers;
        QString defaultCaption;
        QMessageBox::Icon icon;
        int escape;
    };

private Q_SLOTS:
    void initTestCase() {
        // The toolkit's words first: nobody has set captions yet.
        QStringList seen;
        answered(MessageBoxStyle::yesNoCancel, [&](QMessageBox& box) { seen = captionsOf(box); });
        QCOMPARE(seen, QStringList({u"Yes"_s, u"No"_s, u"Cancel"_s}));
        setMessageBoxCaptions({tamam, iptal, yenidenDene, evet, hayir, tekrarDene, devam});
    }

    void styles_data() {
        QTest::addColumn<StylesRow>("row");

        const auto row = [](int style, const QStringList& captions, const QList<int>& answers,
                            const QString& defaultCaption, QMessageBox::Icon icon, int escape) {
            QTest::newRow(qPrintable(QString::number(style)))
                << StylesRow{style, captions, answers, defaultCaption, icon, escape};
        };
        const QStringList yesNo{evet, hayir};
        const QList<int> yesNoAnswers{6, 7};
        row(0, {tamam}, {1}, tamam, QMessageBox::NoIcon, 1);
        row(4, yesNo, yesNoAnswers, evet, QMessageBox::NoIcon, 7);
        row(16, {tamam}, {1}, tamam, QMessageBox::Critical, 1);
        row(32, {tamam}, {1}, tamam, QMessageBox::Question, 1);
        row(36, yesNo, yesNoAnswers, evet, QMessageBox::Question, 7);
        row(48, {tamam}, {1}, tamam, QMessageBox::Warning, 1);
        row(52, yesNo, yesNoAnswers, evet, QMessageBox::Warning, 7);
        row(64, {tamam}, {1}, tamam, QMessageBox::Information, 1);
        row(292, yesNo, yesNoAnswers, hayir, QMessageBox::Question, 7);
        row(1, {tamam, iptal}, {1, 2}, tamam, QMessageBox::NoIcon, 2);
        row(3, {evet, hayir, iptal}, {6, 7, 2}, evet, QMessageBox::NoIcon, 2);
        row(5, {yenidenDene, iptal}, {4, 2}, yenidenDene, QMessageBox::NoIcon, 2);
        row(6, {iptal, tekrarDene, devam}, {2, 10, 11}, iptal, QMessageBox::NoIcon, 2);
        // Third as the default, a default that no button is, unknown buttons, unknown icon.
        row(3 + 512, {evet, hayir, iptal}, {6, 7, 2}, iptal, QMessageBox::NoIcon, 2);
        row(4 + 512, yesNo, yesNoAnswers, evet, QMessageBox::NoIcon, 7);
        row(256, {tamam}, {1}, tamam, QMessageBox::NoIcon, 1);
        row(9, {tamam}, {1}, tamam, QMessageBox::NoIcon, 1);
        row(4 + 80, yesNo, yesNoAnswers, evet, QMessageBox::NoIcon, 7);
        row(4 + 144, yesNo, yesNoAnswers, evet, QMessageBox::NoIcon, 7);
    }

    void styles() {
        QFETCH(const StylesRow, row);

        QStringList seen;
        QString seenDefault;
        QString focused;
        QMessageBox::Icon seenIcon = QMessageBox::NoIcon;
        for (int i = 0; i < row.captions.size(); ++i) {
            const int result = answered(row.style, [&](QMessageBox& box) {
                seen = captionsOf(box);
                seenIcon = box.icon();
                seenDefault = box.defaultButton() ? box.defaultButton()->text() : QString();
                focused =
                    box.focusWidget() ? qobject_cast<QPushButton*>(box.focusWidget())->text() : QString();
                QTest::mouseClick(fromLeftToRight(box).at(i), Qt::LeftButton);
            });
            QCOMPARE(seen, row.captions);
            QCOMPARE(result, row.answers.at(i));
        }
        QCOMPARE(seenIcon, row.icon);
        QCOMPARE(seenDefault, row.defaultCaption);
        QCOMPARE(focused, row.defaultCaption);
        QCOMPARE(answered(row.style, [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); }),
                 row.escape);
        QCOMPARE(answered(row.style, [](QMessageBox& box) { box.close(); }), row.escape);
        const int defaultAnswer = row.answers.at(row.captions.indexOf(row.defaultCaption));
        QCOMPARE(answered(row.style, [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); }),
                 defaultAnswer);
    }

    void orderOnEveryDesktop_data() {
        QTest::addColumn<int>("buttonLayout");
        QTest::newRow("Windows") << 0;
        QTest::newRow("Mac") << 1;
        QTest::newRow("KDE") << 2;
        QTest::newRow("GNOME") << 3;
        QTest::newRow("Android") << 5;
    }

    void orderOnEveryDesktop() {
        QFETCH(int, buttonLayout);
        QApplication::setStyle(new ButtonLayoutStyle(buttonLayout));
        QStringList yesNo;
        QStringList three;
        answered(MessageBoxStyle::yesNo, [&](QMessageBox& box) { yesNo = captionsOf(box); });
        answered(MessageBoxStyle::cancelTryContinue, [&](QMessageBox& box) { three = captionsOf(box); });
        QApplication::setStyle(u"fusion"_s);
        QCOMPARE(yesNo, QStringList({evet, hayir}));
        QCOMPARE(three, QStringList({iptal, tekrarDene, devam}));
    }

    // It was pressed for what has opened the box.
    void aKeyThatIsHeldDownAnswersNothing() {
        bool open = false;
        const int answer = answered(MessageBoxStyle::yesNo, [&](QMessageBox& box) {
            for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_Escape}) {
                for (QWidget* receiver : {static_cast<QWidget*>(&box), box.focusWidget()}) {
                    QKeyEvent held(QEvent::KeyPress, key, {}, {}, true);
                    QApplication::sendEvent(receiver, &held);
                }
            }
            open = box.isVisible();
            QTest::keyClick(&box, Qt::Key_Return);
        });
        QVERIFY(open);
        QCOMPARE(answer, MessageBoxAnswer::yes);
    }

    void aScanAnswersNothing() {
        bool open = false;
        const int answer = answered(MessageBoxStyle::yesNo, [&](QMessageBox& box) {
            QTest::keyClicks(box.focusWidget(), u"8690000000012"_s);
            QTest::keyClick(box.focusWidget(), Qt::Key_Return);
            QTest::keyClick(box.focusWidget(), Qt::Key_Return);
            open = box.isVisible();
            QElapsedTimer behind;
            behind.start();
            QTRY_VERIFY(behind.hasExpired(350));
            QTest::keyClick(box.focusWidget(), Qt::Key_Return);
        });
        QVERIFY(open);
        QCOMPARE(answer, MessageBoxAnswer::yes);
    }

    void theTextStandsAsItIs() {
        const QString text = u"<b>Kola & Çay</b>\nC:\\kovanix\\ 5 < 6"_s;
        QString seen;
        QString title;
        Qt::TextFormat format = Qt::AutoText;
        answered(text, 0, u"Ürün & adı"_s, [&](QMessageBox& box) {
            seen = box.text();
            title = box.windowTitle();
            format = box.textFormat();
        });
        QCOMPARE(seen, text);
        QCOMPARE(title, u"Ürün & adı"_s);
        QCOMPARE(format, Qt::PlainText);
    }

    void captionsHaveNoMnemonics() {
        setMessageBoxCaptions({u"A&B"_s, iptal, yenidenDene, evet, hayir, tekrarDene, devam});
        QString text;
        const int result = answered(MessageBoxStyle::okCancel, [&](QMessageBox& box) {
            text = fromLeftToRight(box).first()->text();
            // A scanned "b" answers nothing; the box then stands open and Escape closes it.
            QTest::keyClick(&box, Qt::Key_B);
            QTest::keyClick(&box, Qt::Key_Escape);
        });
        setMessageBoxCaptions({tamam, iptal, yenidenDene, evet, hayir, tekrarDene, devam});
        QCOMPARE(text, u"A&&B"_s);
        QCOMPARE(result, 2);
    }

    void buttonsAreBigEnoughForAThumb() {
        QSize smallest(10000, 10000);
        double font = 1000;
        double bodyFont = 0;
        answered(MessageBoxStyle::yesNoCancel, [&](QMessageBox& box) {
            for (const QAbstractButton* button : box.buttons()) {
                smallest = smallest.boundedTo(button->size());
                font = std::min(font, QFontInfo(button->font()).pointSizeF());
            }
            bodyFont = QFontInfo(box.font()).pointSizeF();
        });
        QVERIFY2(smallest.height() >= 44, qPrintable(QString::number(smallest.height())));
        QVERIFY2(smallest.width() >= 110, qPrintable(QString::number(smallest.width())));
        QVERIFY(font >= 12.0 && font < 1000);
        QVERIFY(bodyFont >= 12.0);
    }

    void theBoxBelongsToTheActiveWindow() {
        QWidget window;
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const QWidget* parent = nullptr;
        Qt::WindowModality modality = Qt::NonModal;
        answered(0, [&](QMessageBox& box) {
            parent = box.parentWidget();
            modality = box.windowModality();
        });
        QCOMPARE(parent, &window);
        QCOMPARE(modality, Qt::ApplicationModal);
    }

    // Between two boxes no window is active: the second belongs where the first did, or to what has opened
    // meanwhile.
    void aBoxBehindABoxBelongsToTheWindowInFront() {
        QWidget till;
        till.show();
        till.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&till));
        QWidget screen;
        showInFront(screen);
        QTRY_VERIFY(screen.isActiveWindow());
        QList<const QWidget*> parents;
        const auto ask = [&] {
            answered(0, [&](QMessageBox& box) { parents.append(box.parentWidget()); });
            QApplication::setActiveWindow(nullptr);  // as long as the window manager takes its time
        };
        ask();
        ask();
        QWidget opened;
        showInFront(opened);
        ask();
        opened.hide();
        QApplication::setActiveWindow(&till);
        ask();
        QCOMPARE(parents, (QList<const QWidget*>{&screen, &screen, &opened, &till}));
    }

    void theWindowBelowGoesAway() {
        auto window = std::make_unique<QWidget>();
        window->show();
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        QTimer::singleShot(0, qApp, [&window] { window.reset(); });
        // Nobody answered: what Escape would have given.
        QCOMPARE(messageBox(u"Silinsin mi?"_s, MessageBoxStyle::yesNo, QString()), 7);
        QVERIFY(!openBox());
    }

    void aBoxOverABox() {
        int inner = 0;
        const int outer = answered(MessageBoxStyle::yesNo, [&](QMessageBox& box) {
            inner = answered(MessageBoxStyle::okCancel,
                             [](QMessageBox& second) { QTest::keyClick(&second, Qt::Key_Escape); });
            QTest::mouseClick(fromLeftToRight(box).first(), Qt::LeftButton);
        });
        QCOMPARE(inner, 2);
        QCOMPARE(outer, 6);
    }
};

QTEST_MAIN(MessageBoxTest)
#include "test_messagebox.moc"
