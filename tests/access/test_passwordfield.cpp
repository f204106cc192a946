#include "access/passwordfield.h"
#include "loginfixture.h"
#include "runtests.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

/// Characters given to the field one after the other, and how it then shows "abc".
struct Shown {
    QStringList characters;
    QString shown;
};

}  // namespace

Q_DECLARE_METATYPE(Shown)

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

    void undoDoesntBringARefusedOneBack_data() {
        QTest::addColumn<bool>("row");
        QTest::newRow("hidden") << true;
        QTest::newRow("shown") << false;
    }
    void undoDoesntBringARefusedOneBack() {
        QFETCH(const bool, row);
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u"gizli"_s);
        shop.open();
        QLineEdit& field = *shop.ui().sifre;
        if (!row)
            shop.ui().sifre->setPasswordchar({});
        shop.enterWrong(u"gizlo"_s);
        QTest::keyClick(&field, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(field.text(), QString());
        QVERIFY(!field.isUndoAvailable());
    }
};

int main(int argc, char** argv) {
    return runTests<PasswordFieldTest>(argc, argv);
}
#include "test_passwordfield.moc"
