#include <QSignalSpy>
#include <functional>

#include "access/passwordfield.h"
#include "loginfixture.h"
#include "runtests.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

/// What happens to a field in which "sifre" was typed, and what it holds after an undo.
struct Undone {
    std::function<void(PasswordField&)> change;
    QString left;
};

/// Characters given to the field one after the other, and how it then shows "abc".
struct Shown {
    QStringList characters;
    QString shown;
};

}  // namespace

Q_DECLARE_METATYPE(Shown)
Q_DECLARE_METATYPE(Undone)

class PasswordFieldTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void shows_data() {
        QTest::addColumn<Shown>("row");
        QTest::newRow("at the start") << Shown{{}, u"abc"_s};
        QTest::newRow("hidden") << Shown{{u"*"_s}, u"***"_s};
        QTest::newRow("only the first character counts") << Shown{{u"#x"_s}, u"###"_s};
        QTest::newRow("shown again") << Shown{{u"*"_s, QString()}, u"abc"_s};
        QTest::newRow("hidden again") << Shown{{u"*"_s, QString(), u"*"_s}, u"***"_s};
        QTest::newRow("by another character") << Shown{{u"*"_s, u"#"_s}, u"###"_s};
    }
    void shows() {
        QFETCH(const Shown, row);
        PasswordField field;
        field.setText(u"abc"_s);
        for (const QString& character : row.characters)
            field.setPasswordchar(character);
        QCOMPARE(field.displayText(), row.shown);
        QCOMPARE(field.text(), u"abc"_s);
        if (!row.characters.isEmpty())
            QCOMPARE(field.passwordchar(), row.characters.constLast().left(1));
    }

    void aHiddenOneCantBeCopied() {
        PasswordField field;
        field.setText(u"abc"_s);
        field.setPasswordchar(u"*"_s);
        field.selectAll();
        QGuiApplication::clipboard()->setText(u"before"_s);
        field.copy();
        QCOMPARE(QGuiApplication::clipboard()->text(), u"before"_s);
    }

    void keepsNoHistory_data() {
        QTest::addColumn<Undone>("row");
        const auto stays = [](PasswordField&) {};
        const auto bySetting = [](PasswordField& field) { field.setText({}); };
        const auto byClearing = [](PasswordField& field) { field.clear(); };
        const auto byHand = [](PasswordField& field) {
            field.selectAll();
            QTest::keyClick(&field, Qt::Key_Delete);
        };
        const auto byBackspace = [](PasswordField& field) { QTest::keyClick(&field, Qt::Key_Backspace); };
        QTest::newRow("undo of what was typed") << Undone{stays, u"sifre"_s};
        QTest::newRow("undo of a backspace") << Undone{byBackspace, u"sifr"_s};
        QTest::newRow("undo of a setting") << Undone{bySetting, {}};
        QTest::newRow("undo of a clearing") << Undone{byClearing, {}};
        QTest::newRow("undo of a deletion by hand") << Undone{byHand, {}};
    }
    void keepsNoHistory() {
        QFETCH(const Undone, row);
        PasswordField field;
        field.setPasswordchar(u"*"_s);
        QTest::keyClicks(&field, u"sifre"_s);
        row.change(field);
        field.setPasswordchar({});
        QTest::keyClick(&field, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(field.text(), row.left);
        QVERIFY(!field.isUndoAvailable());
        QVERIFY(!field.isRedoAvailable());
    }

    void whatIsTypedInTheMiddleStaysThere() {
        PasswordField field;
        const QSignalSpy changed(&field, &QLineEdit::textChanged);
        QTest::keyClicks(&field, u"ad"_s);
        QTest::keyClick(&field, Qt::Key_Left);
        QTest::keyClicks(&field, u"bc"_s);
        QCOMPARE(field.text(), u"abcd"_s);
        QCOMPARE(field.cursorPosition(), 3);
        QCOMPARE(changed.count(), 4);
    }

    void undoDoesntBringRefusedOnesBack() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u"gizli"_s);
        shop.open();
        QLineEdit& field = *shop.ui().sifre;
        for (const QString& wrong : {u"gizlo"_s, u"gizla"_s, u"gizle"_s})
            shop.enterWrong(wrong);
        shop.ui().sifre->setPasswordchar({});
        for (int times = 0; times < 3; ++times) {
            QTest::keyClick(&field, Qt::Key_Z, Qt::ControlModifier);
            QCOMPARE(field.text(), QString());
        }
    }
};

int main(int argc, char** argv) {
    return runTests<PasswordFieldTest>(argc, argv);
}
#include "test_passwordfield.moc"
