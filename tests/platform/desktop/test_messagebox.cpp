#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QProxyStyle>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <QtMath>
#include <algorithm>
#include <functional>
#include <optional>

#include "desktop/focus.h"
#include "desktop/messagebox.h"
#include "desktop/screensize.h"
#include "widgets/dialogframe.h"

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

QRect placeIn(const QWidget& box, const QWidget& part) {
    return {part.mapTo(&box, QPoint(0, 0)), part.size()};
}

QLabel& label(const QMessageBox& box) {
    return *box.findChild<QLabel*>(u"qt_msgbox_label"_s);
}

bool hasInk(const QLabel& text, const QRect& part) {
    QImage picture(text.size(), QImage::Format_RGB32);
    picture.fill(Qt::white);
    const_cast<QLabel&>(text).render(&picture, {}, {}, {});
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x) {
            if (qGray(picture.pixel(x, y)) < 128)
                return true;
        }
    }
    return false;
}

/// A display of that size, as long as it lives.
class DisplaySize {
public:
    explicit DisplaySize(QSize size) {
        setScreenMetricsSource([size] { return ScreenMetrics{size, 15, 15}; });
    }
    ~DisplaySize() { setScreenMetricsSource({}); }
    Q_DISABLE_COPY_MOVE(DisplaySize)
};

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

    struct FitsRow {
        QSize display;
        QString text;
        QString title;
        int style;
        QSize size;  ///< 0 where it follows the text
        bool scrolls;
    };
    struct KindRow {
        int style;
        std::optional<QRgb> color;
    };
    struct KeysRow {
        QList<Qt::Key> keys;
        int answer;
    };
    struct PlaceRow {
        QRect window;
        bool fits;  ///< the box in its middle
    };
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

    void fits_data() {
        const QString question = u"Silinsin mi?"_s;
        const QString title = u"Uyarı"_s;
        const QString sentence =
            u"Veritabanı bağlantısı kurulamadı: dosya başka bir kasa tarafından kilitli (database is locked)"_s;
        QString paths;
        for (int i = 0; i < 40; ++i)
            paths +=
                u"/srv/kasa/çok/uzun/bir/klasör/adı/ve/daha/uzun/bir/alt/klasör/%1/veritabanı.data\n"_s.arg(
                    i);
        const QString oneWord(2000, u'W');
        const QString marks = u"<b>Kola</b> & <img src='x'> &amp; %1 \\n "_s.repeated(8);
        const QString longTitle =
            u"Bir satıra sığmayan, onun için ikinci satıra geçen ve orada biten bir başlık"_s;
        const QList<std::pair<QSize, QSize>> displays{{{800, 600}, {369, 187}},
                                                      {{1024, 768}, {472, 236}},
                                                      {{1366, 768}, {472, 236}},
                                                      {{1920, 1080}, {664, 333}}};
        QTest::addColumn<FitsRow>("row");
        for (const auto& [display, size] : displays) {
            const auto row = [display = display](const char* name, const FitsRow& values) {
                QTest::addRow("%s, %dx%d", name, display.width(), display.height()) << values;
            };
            const int widest = qRound(720.0 * size.width() / 472);
            row("a question", {display, question, title, 52, size, false});
            row("a notice", {display, u"Eklendi"_s, title, 0, size, false});
            row("no title", {display, question, QString(), 4, {}, false});
            row("no text", {display, QString(), title, 48, size, false});
            row("three lines", {display, sentence, title, 16, {size.width(), 0}, false});
            row("many lines", {display, sentence + sentence, title, 16, {widest, 0}, false});
            row("three answers", {display, question, title, 6 + 48, {}, false});
            row("40 paths", {display, paths, title, 16 + 4, {widest, 0}, true});
            row("one word of 2000 letters", {display, oneWord, title, 48, {widest, 0}, true});
            row("markup", {display, marks, title, 64, {widest, 0}, false});
            row("a long title", {display, question, longTitle, 4, {widest, 0}, false});
            row("a title of one word", {display, question, QString(150, u'M'), 4, {widest, 0}, false});
        }
    }
    void fits() {
        QFETCH(const FitsRow, row);
        const DisplaySize display(row.display);
        answered(row.text, row.style, row.title, [&row](QMessageBox& box) {
            const double scale = std::min(row.display.width() / 1024.0, row.display.height() / 768.0);
            if (row.size.width() > 0)
                QVERIFY2(std::abs(box.width() - row.size.width()) <= 1,
                         qPrintable(QString::number(box.width())));
            if (row.size.height() > 0)
                QVERIFY2(std::abs(box.height() - row.size.height()) <= 2,
                         qPrintable(QString::number(box.height())));
            QVERIFY(QRect(QPoint(0, 0), row.display).contains(box.frameGeometry()));
            for (const QAbstractButton* button : box.buttons()) {
                QCOMPARE(button->height(), qRound(60 * scale));
                QVERIFY(button->height() >= 40);
                QVERIFY(button->width() >= qRound(148 * scale));
                QVERIFY(button->visibleRegion() == QRegion(button->rect()));
                QVERIFY(box.rect().contains(placeIn(box, *button)));
            }
            const QLabel& text = label(box);
            QCOMPARE(text.font().pixelSize(), qRound(20 * scale));
            const auto* view = box.findChild<QScrollArea*>();
            QCOMPARE(view->verticalScrollBar()->isVisible(), row.scrolls);
            QVERIFY(text.width() <= view->viewport()->width());
            QVERIFY(row.scrolls || text.height() <= view->viewport()->height());
            // What is seen at a time isn't cut in the middle of a line.
            QCOMPARE(view->height() % qCeil(text.font().pixelSize() * 1.35), 0);
            QVERIFY(!hasInk(text, text.rect().adjusted(text.width() - 1, 0, 0, 0)));
            QCOMPARE(hasInk(text, text.rect()), !row.text.isEmpty());

            const auto* frame = box.findChild<DialogFrame*>();
            QCOMPARE(frame->geometry(), box.rect());
            QCOMPARE(frame->caption(), row.title);
            // A word that is longer than the line is written smaller, too.
            QFont font = frame->font();
            if (!row.title.contains(u' '))
                font.setPixelSize(11);
            const QRect strip(0, 0, box.width() - 2 * frame->fontMetrics().height(), 10000);
            const int title =
                QFontMetrics(font).boundingRect(strip, Qt::TextWrapAnywhere, row.title).height();
            QVERIFY(row.title.isEmpty() || frame->contentsMargins().top() >= title);
        });
    }

    void kinds_data() {
        QTest::addColumn<KindRow>("row");
        QTest::newRow("warning") << KindRow{48, QRgb(0xFFB36A00)};
        QTest::newRow("question") << KindRow{32, QRgb(0xFF1A5CCB)};
        QTest::newRow("information") << KindRow{64, QRgb(0xFF1A5CCB)};
        QTest::newRow("failure") << KindRow{16, QRgb(0xFFB32626)};
        QTest::newRow("notice") << KindRow{0, std::nullopt};
    }
    // The picture tells the kind, and the text begins at the left with one or without.
    void kinds() {
        QFETCH(const KindRow, row);
        const DisplaySize display({1024, 768});
        answered(row.style, [&row](QMessageBox& box) {
            const auto* icon = box.findChild<QLabel*>(u"qt_msgboxex_icon_label"_s);
            QCOMPARE(icon->isVisible(), row.color.has_value());
            QCOMPARE(placeIn(box, label(box)).left(), row.color ? 24 + 56 + 20 : 24);
            QVERIFY(label(box).alignment().testFlag(Qt::AlignLeft));
            if (!row.color)
                return;
            QCOMPARE(icon->size(), QSize(56, 56));
            const QImage picture = box.iconPixmap().toImage().convertToFormat(QImage::Format_ARGB32);
            QCOMPARE(picture.size(), QSize(56, 56));
            bool found = false;
            for (int x = 0; x < picture.width(); ++x)
                found = found || picture.pixel(x, picture.height() / 2) == *row.color;
            QVERIFY(found);
        });
    }

    void theDefaultIsMarked_data() {
        QTest::addColumn<int>("style");
        QTest::newRow("the first") << 52;
        QTest::newRow("the second") << 292;
        QTest::newRow("the third") << 3 + 512;
        QTest::newRow("the only one") << 0;
    }
    void theDefaultIsMarked() {
        QFETCH(const int, style);
        answered(style, [](QMessageBox& box) {
            for (QAbstractButton* button : box.buttons()) {
                const QColor face = button->grab().toImage().pixelColor(12, button->height() / 2);
                QCOMPARE(face.blue() - face.red() > 100, button == box.defaultButton());
                QCOMPARE(button->hasFocus(), button == box.defaultButton());
            }
        });
    }

    void keys_data() {
        QTest::addColumn<KeysRow>("row");
        QTest::newRow("right") << KeysRow{{Qt::Key_Right, Qt::Key_Return}, MessageBoxAnswer::no};
        QTest::newRow("down") << KeysRow{{Qt::Key_Down, Qt::Key_Enter}, MessageBoxAnswer::no};
        QTest::newRow("Tab, Space") << KeysRow{{Qt::Key_Tab, Qt::Key_Space}, MessageBoxAnswer::no};
        QTest::newRow("there and back")
            << KeysRow{{Qt::Key_Right, Qt::Key_Left, Qt::Key_Return}, MessageBoxAnswer::yes};
        QTest::newRow("all round") << KeysRow{{Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Return},
                                              MessageBoxAnswer::yes};
        QTest::newRow("backwards") << KeysRow{{Qt::Key_Backtab, Qt::Key_Return}, MessageBoxAnswer::cancel};
        QTest::newRow("scrolling moves nothing")
            << KeysRow{{Qt::Key_PageDown, Qt::Key_End, Qt::Key_Return}, MessageBoxAnswer::yes};
    }
    void keys() {
        QFETCH(const KeysRow, row);
        QCOMPARE(answered(MessageBoxStyle::yesNoCancel,
                          [&row](QMessageBox& box) {
                              for (const Qt::Key key : row.keys)
                                  QTest::keyClick(box.focusWidget(), key);
                          }),
                 row.answer);
    }

    void aLongTextIsScrolledByKeys() {
        const DisplaySize display({800, 600});
        QList<int> places;
        int last = 0;
        answered(u"Satır\n"_s.repeated(60), 0, u"Uyarı"_s, [&](QMessageBox& box) {
            const QScrollBar* bar = box.findChild<QScrollArea*>()->verticalScrollBar();
            last = bar->maximum();
            for (const Qt::Key key : {Qt::Key_End, Qt::Key_Home, Qt::Key_PageDown, Qt::Key_PageUp}) {
                QTest::keyClick(box.focusWidget(), key);
                places.append(bar->value());
            }
        });
        QVERIFY(last > 0);
        QCOMPARE(places.at(0), last);
        QCOMPARE(places.at(1), 0);
        QVERIFY(places.at(2) > 0 && places.at(2) < last);
        QCOMPARE(places.at(3), 0);
    }

    void keepsItsDressWhenTheStyleChanges() {
        QSize before;
        QSize after;
        QRect text;
        answered(48, [&](QMessageBox& box) {
            before = box.size();
            QApplication::setStyle(u"windows"_s);
            QApplication::setStyle(u"fusion"_s);
            QCoreApplication::sendPostedEvents();
            after = box.size();
            text = placeIn(box, label(box));
        });
        QCOMPARE(after, before);
        QVERIFY(QRect(QPoint(0, 0), before).contains(text));
        QVERIFY(text.left() > before.width() / 6);
    }

    void standsInTheMiddleOfItsWindow_data() {
        QTest::addColumn<PlaceRow>("row");
        QTest::newRow("in the middle") << PlaceRow{QRect(200, 100, 700, 500), true};
        QTest::newRow("at the edge") << PlaceRow{QRect(900, 700, 100, 60), false};
        QTest::newRow("at the corner") << PlaceRow{QRect(0, 0, 50, 50), false};
    }
    void standsInTheMiddleOfItsWindow() {
        QFETCH(const PlaceRow, row);
        const DisplaySize display({1024, 768});
        QWidget window;
        window.setGeometry(row.window);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QRect box;
        answered(0, [&box](const QMessageBox& open) { box = open.frameGeometry(); });
        QVERIFY(QRect(0, 0, 1024, 768).contains(box));
        if (row.fits)
            QVERIFY((box.center() - row.window.center()).manhattanLength() <= 4);
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
