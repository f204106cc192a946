#include "screens/entryframe.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>

#include "app/modTurkce.h"
#include "rows.h"
#include "runtests.h"
#include "runtime/screen.h"

using namespace kovanix;

namespace {

struct ModeRow {
    QString caption;
    bool adds;
    FrameRole look;
};

struct PasteRow {
    QString before;  ///< "|" is the caret
    QString pasted;
    QString after;
};

/// A screen with a frame of three fields: the first walks to the third, the second takes digits.
class Form : public Screen {
public:
    Form() {
        auto* layout = new QVBoxLayout(&frame);
        for (QWidget* control : std::initializer_list<QWidget*>{&label, &first, &second, &third, &cancel})
            layout->addWidget(control);
        (new QVBoxLayout(this))->addWidget(&frame);
        layout->parentWidget()->setParent(this);
        frame.setFields({{&first, &third}, {&second, nullptr, onlyCharacters(u"0123456789")}, {&third}});
        frame.setCancelButton(cancel);
        label.setText("Al|# fiyat|");
        label.setObjectName("Label1");
        frame.setObjectName("kisiekle2");
        show();
        activateWindow();
        if (!QTest::qWaitForWindowActive(this))
            qFatal("the form doesn't become active");
    }

    EntryFrame frame;
    QLabel label;
    QLineEdit first, second, third;
    QPushButton cancel;
};

}  // namespace

class EntryFrameTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void modes_data() {
        addRows<ModeRow>({{"adding", {"EKLE", true, FrameRole::adds}},
                          {"editing", {"D!ZENLE", false, FrameRole::edits}},
                          {"editing, as users spell it", {"DüZENLE", false, FrameRole::edits}},
                          {"no mode", {"", false, FrameRole::edits}},
                          {"another case", {"ekle", false, FrameRole::edits}},
                          {"a blank behind", {"EKLE ", false, FrameRole::edits}}});
    }
    void modes() {
        QFETCH(const ModeRow, row);
        EntryFrame frame;
        QVERIFY(frame.adds());  // at the start
        frame.setMode(row.caption, "Süt");
        QCOMPARE(frame.caption(), row.caption);
        QCOMPARE(frame.titleNote(), "Süt");
        QCOMPARE(frame.adds(), row.adds);
        QCOMPARE(frame.look(), row.look);
        frame.setMode(row.caption);
        QCOMPARE(frame.titleNote(), "");
    }

    void theModeIsSeen() {
        EntryFrame frame;
        frame.resize(400, 200);
        const auto strip = [&] { return frame.grab().toImage().pixelColor(6, 20); };
        const auto icon = [&] { return frame.titleIcon().pixmap(24, 24).toImage(); };
        const QColor green = strip();
        const QImage plus = icon();
        QVERIFY(green.green() > green.red() + 40);
        frame.setMode("D!ZENLE");
        const QColor honey = strip();
        QVERIFY(honey.red() > honey.blue() + 100);
        QVERIFY(icon() != plus);
        frame.setMode("EKLE");
        QCOMPARE(strip(), green);
    }

    /// The caption is compared as it was set, so the dressing leaves it alone, and only it.
    void theModeIsNeverDressed() {
        Form form;
        form.frame.setMode("D!ZENLE");
        ekrandonat(form);
        QCOMPARE(form.frame.caption(), "D!ZENLE");
        QCOMPARE(form.label.text(), "Alış fiyatı");
    }

    void enterWalks() {
        Form form;
        const QSignalSpy passedOn(&form.second, &QLineEdit::returnPressed);
        for (const Qt::Key enter : {Qt::Key_Return, Qt::Key_Enter}) {
            form.first.setFocus();
            QTest::keyClick(&form.first, enter);
            QVERIFY(form.third.hasFocus());
            QTest::keyClick(&form.third, enter);
            QVERIFY(form.third.hasFocus());
            form.second.setFocus();
            QTest::keyClick(&form.second, enter);
            QVERIFY(form.second.hasFocus());
        }
        for (const QLineEdit* field : {&form.first, &form.second, &form.third})
            QCOMPARE(field->text(), "");
        QCOMPARE(passedOn.size(), 0);
    }

    void fieldsTakeWhatTheyAccept() {
        Form form;
        QTest::keyClicks(&form.first, "1a,");
        QTest::keyClicks(&form.second, "1a,2");
        QCOMPARE(form.first.text(), "1a,");
        QCOMPARE(form.second.text(), "12");
        QTest::keyClick(&form.second, Qt::Key_Backspace);
        QCOMPARE(form.second.text(), "1");
    }

    void pastes_data() {
        addRows<PasteRow>({{"no line end", {"ab|c", "x y", "abx y|c"}},
                           {"line feed", {"ab|c", "x\ny", "abx y|c"}},
                           {"both", {"|", "x\r\ny", "x y|"}},
                           {"carriage return", {"|", "x\ry", "x y|"}},
                           {"tab", {"a|b", "\t", "a |b"}},
                           {"tab ahead of all", {"|ab", "\t", "|ab"}},
                           {"line separator", {"a|b", "\u2028", "a |b"}},
                           {"line end behind all", {"a|", "\u2028", "a|"}},
                           {"paragraph separator", {"a|b", "x\u2029", "ax |b"}},
                           {"letters into digits", {"1|2", "a\nb", "1a b|2"}},
                           {"nothing but line ends", {"|", "\n\n\n", "|"}}});
    }
    void pastes() {
        QFETCH(const PasteRow, row);
        Form form;
        for (QLineEdit* field : {&form.first, &form.second, &form.third}) {
            field->setText(QString(row.before).remove(u'|'));
            field->setCursorPosition(static_cast<int>(row.before.indexOf(u'|')));
            QApplication::clipboard()->setText(row.pasted);
            field->paste();
            QCOMPARE(field->text().insert(field->cursorPosition(), u'|'), row.after);
        }
    }

    void aPasteOverASelection() {
        Form form;
        form.first.setText("eski ad");
        form.first.setSelection(0, 4);
        QApplication::clipboard()->setText("ye\nni");
        form.first.paste();
        QCOMPARE(form.first.text(), "ye ni ad");
        QCOMPARE(form.first.cursorPosition(), 5);
        QTest::keyClicks(&form.first, "!");
        QCOMPARE(form.first.text(), "ye ni! ad");
    }

    void clearingCantBeUndone() {
        Form form;
        for (QLineEdit* field : {&form.first, &form.second, &form.third})
            QTest::keyClicks(field, "123");
        form.frame.clearFields();
        for (QLineEdit* field : {&form.first, &form.second, &form.third}) {
            QCOMPARE(field->text(), "");
            QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier);
            QCOMPARE(field->text(), "");
        }
    }

    void escapePressesCancel() {
        Form form;
        const QSignalSpy presses(&form.cancel, &QAbstractButton::clicked);
        for (QWidget* control :
             std::initializer_list<QWidget*>{&form.first, &form.second, &form.third, &form.cancel})
            QTest::keyClick(control, Qt::Key_Escape);
        QCOMPARE(presses.size(), 4);
        form.cancel.setEnabled(false);  // stays dead
        QTest::keyClick(&form.first, Qt::Key_Escape);
        QCOMPARE(presses.size(), 4);
    }
};

int main(int argc, char** argv) {
    return runTests<EntryFrameTest>(argc, argv);
}

#include "test_entryframe.moc"
