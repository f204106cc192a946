#include "widgets/fieldedits.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QTest>

#include "rows.h"
#include "widgets/keyfilter.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct EditRow {
    QString before;  ///< the selection stands between two "|", or the caret at one
    void (*edit)(QLineEdit& field);
    QString after;  ///< with the caret
};

void key(QLineEdit& field, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&field, key, modifiers);
}

void compose(QLineEdit& field, const QString& text) {
    QInputMethodEvent event;
    event.setCommitString(text);
    QCoreApplication::sendEvent(&field, &event);
}

/// Opens the field's own menu and chooses from it.
void choose(QLineEdit& field, const QString& action) {
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(2, 2), field.mapToGlobal(QPoint(2, 2)));
    QCoreApplication::sendEvent(&field, &event);
    auto* menu = field.findChild<QMenu*>();
    if (!menu)
        qFatal("the field has no menu");
    for (QAction* offered : menu->actions()) {
        if (offered->text().section(u'\t', 0, 0).remove(u'&') == action)
            offered->trigger();
    }
    delete menu;
}

void drop(QLineEdit& field, const QString& text) {
    QMimeData data;
    data.setText(text);
    QDragEnterEvent enter(QPoint(1, 1), Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&field, &enter);
    QDropEvent event(QPointF(1, 1), Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&field, &event);
}

}  // namespace

class TestFieldEdits : public QObject {
    Q_OBJECT

    static void select(QLineEdit& field, QString marked) {
        const auto from = static_cast<int>(marked.indexOf(u'|'));
        const auto to = static_cast<int>(marked.lastIndexOf(u'|')) - 1;
        field.setText(marked.remove(u'|'));
        if (to > from)
            field.setSelection(from, to - from);
        else
            field.setCursorPosition(from);
    }

private Q_SLOTS:
    void edits_data() {
        QTest::addColumn<EditRow>("row");
        const auto row = [](const char* name, const QString& before, void (*edit)(QLineEdit&),
                            const QString& after) {
            QTest::newRow(name) << EditRow{before, edit, after};
        };
        row(
            "Backspace", u"1.200|"_s, [](QLineEdit& field) { key(field, Qt::Key_Backspace); }, u"120|"_s);
        row(
            "Delete", u"1.|200,00"_s, [](QLineEdit& field) { key(field, Qt::Key_Delete); }, u"1|00,00"_s);
        row(
            "digits", u"1.2|00"_s, [](QLineEdit& field) { QTest::keyClicks(&field, u"345"_s); },
            u"12345|00"_s);
        row(
            "composed digits", u"1.2|00"_s, [](QLineEdit& field) { compose(field, u"345"_s); },
            u"12345|00"_s);
        row(
            "a digit over a selection", u"1.|23|4"_s, [](QLineEdit& field) { key(field, Qt::Key_7); },
            u"17|4"_s);
        row(
            "cut by keys", u"1.2|00|,00"_s,
            [](QLineEdit& field) { key(field, Qt::Key_X, Qt::ControlModifier); }, u"12|,00"_s);
        row(
            "cut by the menu", u"1.2|00|,00"_s, [](QLineEdit& field) { choose(field, u"Cut"_s); },
            u"12|,00"_s);
        row(
            "deleted by the menu", u"1.20|0,00|"_s, [](QLineEdit& field) { choose(field, u"Delete"_s); },
            u"120|"_s);
        row(
            "pasted by keys", u"|1.200,00|"_s,
            [](QLineEdit& field) { key(field, Qt::Key_V, Qt::ControlModifier); }, u"1.20|"_s);
        row(
            "pasted by the menu", u"|1.200,00|"_s, [](QLineEdit& field) { choose(field, u"Paste"_s); },
            u"1.20|"_s);
        row(
            "pasted after typing", u"1.200,0|"_s,
            [](QLineEdit& field) {
                key(field, Qt::Key_1);
                field.selectAll();
                field.paste();
            },
            u"1.20|"_s);
        row(
            "dropped", u"|"_s,
            [](QLineEdit& field) {
                field.setText(u"1.200"_s);
                key(field, Qt::Key_Home);
                drop(field, u"5.5"_s);
                field.deselect();
            },
            u"5.5|1.200"_s);
        row(
            "undone", u"1.200|"_s,
            [](QLineEdit& field) {
                key(field, Qt::Key_Backspace);
                key(field, Qt::Key_Z, Qt::ControlModifier);
            },
            u"120|"_s);
        row(
            "a paste undone and done again", u"1.200|"_s,
            [](QLineEdit& field) {
                field.selectAll();
                key(field, Qt::Key_V, Qt::ControlModifier);
                key(field, Qt::Key_Z, Qt::ControlModifier);
                key(field, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
            },
            u"1.20|"_s);
    }
    void edits() {
        QFETCH(const EditRow, row);
        QApplication::clipboard()->setText(u"1.20"_s);
        QLineEdit field;
        new KeyFilter(field, {}, onlyCharacters(u",0123456789"));
        keepGroups(field);
        field.show();
        select(field, row.before);
        row.edit(field);
        QCOMPARE(field.text().insert(field.cursorPosition(), u'|'), row.after);
    }

    void onOneLine_data() {
        addRows<QStringList>({{"a line end of two signs", {u"|"_s, u"Rize\r\nÇay"_s, u"Rize Çay|"_s}},
                              {"one sign each", {u"|"_s, u"a\nb\rc\td"_s, u"a b c d|"_s}},
                              {"an empty line", {u"|"_s, u"a\r\n\r\nb"_s, u"a  b|"_s}},
                              {"the page's own", {u"|"_s, u"a\u2028b\u2029c\u0085d"_s, u"a b c d|"_s}},
                              {"at the ends", {u"|"_s, u"\r\n\tÇay 400 g \r\n"_s, u"Çay 400 g|"_s}},
                              {"nothing else", {u"|"_s, u"\r\n"_s, u"|"_s}},
                              {"before a text", {u"|Çay"_s, u"Rize\r\n"_s, u"Rize |Çay"_s}},
                              {"behind a text", {u"Rize |"_s, u"Çay\r\n"_s, u"Rize Çay|"_s}},
                              {"a blank that is pasted stays", {u"Rize|"_s, u" Çay "_s, u"Rize Çay |"_s}}});
    }
    void onOneLine() {
        QFETCH(const QStringList, row);
        QApplication::clipboard()->setText(row.at(1));
        QLineEdit field;
        keepOnOneLine(field);
        select(field, row.at(0));
        field.paste();
        QCOMPARE(field.text().insert(field.cursorPosition(), u'|'), row.at(2));
    }

    void aBlankAtTheEndIsTyped() {
        QLineEdit field;
        keepOnOneLine(field);
        QTest::keyClicks(&field, u"Rize "_s);
        QCOMPARE(field.text(), u"Rize "_s);
    }

    void whatListensFindsTheGroupsMended() {
        QLineEdit field(u"1.200"_s);
        keepGroups(field);
        QStringList seen;
        connect(&field, &QLineEdit::textChanged, this, [&] { seen.append(field.text()); });
        key(field, Qt::Key_Backspace);
        QVERIFY(!seen.isEmpty());
        QVERIFY(!seen.contains(u"1.20"_s));
        QCOMPARE(seen.last(), u"120"_s);
        field.disconnect(this);
    }

    void whatTheProgramSetsStays() {
        QLineEdit field(u"1.200"_s);
        keepGroups(field);
        key(field, Qt::Key_End);
        field.setText(u"1.20"_s);
        QCOMPARE(field.text(), u"1.20"_s);
    }

    void keysOfAPanel_data() {
        addRows<QStringList>({{"a digit", {u"1.234"_s, u"5"_s, u"12345"_s}},
                              {"a comma", {u"1.234"_s, u","_s, u"1.234,"_s}},
                              {"behind the comma", {u"1.234,5"_s, u"6"_s, u"1.234,56"_s}},
                              {"no number", {u"1.234"_s, u"SİL"_s, u"1.234SİL"_s}}});
    }
    void keysOfAPanel() {
        QFETCH(const QStringList, row);
        QCOMPARE(withKey(row.at(0), row.at(1)), row.at(2));
    }
};

QTEST_MAIN(TestFieldEdits)
#include "test_fieldedits.moc"
