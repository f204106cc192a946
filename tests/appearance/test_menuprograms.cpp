#include <QDesktopServices>
#include <QFile>

#include "app/session.h"
#include "appearance/menu.h"
#include "desktop/focus.h"
#include "runtime/screenregistry.h"
#include "salestest.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

/// Takes the desktop's place where a file is to be opened.
class UrlOpener : public QObject {
    Q_OBJECT

public:
    UrlOpener() { QDesktopServices::setUrlHandler(u"file"_s, this, "open"); }
    ~UrlOpener() override { QDesktopServices::unsetUrlHandler(u"file"_s); }

    QList<QUrl> opened;

public Q_SLOTS:
    void open(const QUrl& url) { opened.append(url); }
};

/// A PATH that holds nothing but the programs that the case puts there; each writes its name into a file when
/// it is started.
class OwnPath {
public:
    OwnPath() { qputenv("PATH", QFile::encodeName(m_programs.path())); }
    ~OwnPath() { qputenv("PATH", m_before); }
    OwnPath(const OwnPath&) = delete;
    OwnPath& operator=(const OwnPath&) = delete;

    void install(const QString& name) const {
        QFile program(m_programs.filePath(name));
        const QByteArray text =
            "#!/bin/sh\nprintf '%s %s\\n' \"${0##*/}\" \"$#\" >>'" + QFile::encodeName(startsFile()) + "'\n";
        if (!program.open(QIODevice::WriteOnly) || program.write(text) != text.size() ||
            !program.setPermissions(QFile::ReadOwner | QFile::ExeOwner))
            qFatal("no fake program");
    }

    /// The programs that were started, each with the count of its arguments.
    QByteArray started() const {
        QFile file(startsFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QString startsFile() const { return m_starts.filePath(u"started"_s); }

    QTemporaryDir m_programs;
    QTemporaryDir m_starts;
    QByteArray m_before = qgetenv("PATH");
};

}  // namespace

/// What the tools menu has other programs do: the calculator, and the manual by the web button.
class MenuProgramsTest : public SalesTest {
    Q_OBJECT

    struct CalculatorRow {
        QStringList installed;
        QByteArray started;
    };

    Ui::menu& ui() const { return screen<menu>().ui; }

    void open(int role) const {
        girisyetki = role;
        showInFront(screen<menu>());
        // The toolkit's own wait takes a window for active as soon as the one that it belongs to is.
        if (!QTest::qWaitFor([] { return screen<menu>().isActiveWindow(); }))
            qFatal("the menu doesn't become active");
    }

private Q_SLOTS:
    void calculator_data() {
        QTest::addColumn<CalculatorRow>("row");
        for (const char* name : {"gnome-calculator", "kcalc", "mate-calc", "galculator", "qalculate-gtk",
                                 "qalculate-qt", "xcalc", "deepin-calculator", "speedcrunch"})
            QTest::newRow(name) << CalculatorRow{{QString::fromLatin1(name)}, QByteArray(name) + " 0\n"};
        QTest::newRow("the first of two")
            << CalculatorRow{{"kcalc", "gnome-calculator"}, "gnome-calculator 0\n"};
        QTest::newRow("the first of three")
            << CalculatorRow{{"speedcrunch", "xcalc", "mate-calc"}, "mate-calc 0\n"};
        QTest::newRow("not the one that the path names")
            << CalculatorRow{{"calc.exe", "calc", "xcalc"}, "xcalc 0\n"};
    }
    void calculator() {
        QFETCH(const CalculatorRow, row);
        const OwnPath path;
        for (const QString& name : row.installed)
            path.install(name);
        open(1);
        press(*ui().vkCommand4);
        QTRY_COMPARE(path.started(), row.started);
        QVERIFY(screen<menu>().isVisible());
    }

    void noCalculatorIsInstalled_data() {
        QTest::addColumn<QStringList>("installed");
        QTest::newRow("nothing at all") << QStringList();
        QTest::newRow("other programs") << QStringList{"calc.exe", "calc", "gedit"};
    }
    void noCalculatorIsInstalled() {
        QFETCH(QStringList, installed);
        const OwnPath path;
        for (const QString& name : installed)
            path.install(name);
        open(1);
        m_shop->boxes.expect(
            u"UYARI"_s, u"Bu bilgisayarda hesap makinesi bulunamadı. Bir hesap makinesi programı kurun."_s,
            MessageBoxAnswer::ok);
        press(*ui().vkCommand4);
        QCOMPARE(m_shop->boxes.answered(), 1);
        // What a start would have written by now, one that is started later has written.
        path.install("kcalc");
        press(*ui().vkCommand4);
        QTRY_COMPARE(path.started(), QByteArray("kcalc 0\n"));
        QCOMPARE(m_shop->boxes.answered(), 1);
        QVERIFY(screen<menu>().isVisible());
    }

    void aCashierDoesntGetTheCalculator() {
        const OwnPath path;
        path.install("xcalc");
        open(0);
        press(*ui().vkCommand4);
        ui().vkCommand4->setEnabled(true);
        press(*ui().vkCommand4);
        QTRY_COMPARE(path.started(), QByteArray("xcalc 0\n"));
    }

    void theWebButtonOpensTheManual() {
        UrlOpener desktop;
        open(0);
        press(*ui().vkCommand5);
        QCOMPARE(desktop.opened.size(), 1);
        const QString path = desktop.opened.first().toLocalFile();
        QVERIFY2(path.endsWith("/kovanix/kullanim/index.html"), qPrintable(path));
        QFile manual(path);
        QVERIFY2(manual.open(QIODevice::ReadOnly), qPrintable(path));
        QVERIFY(manual.readAll().contains("<html lang=\"tr\">"));
        QVERIFY(screen<menu>().isVisible());
        QCOMPARE(m_shop->boxes.answered(), 0);
    }

    void byKeyboardAlone() {
        const OwnPath path;
        path.install("galculator");
        const UrlOpener desktop;
        open(1);
        m_shop->key(Qt::Key_Tab);
        m_shop->key(Qt::Key_Tab);
        m_shop->key(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), ui().vkCommand4);
        m_shop->key(Qt::Key_Return);
        QTRY_COMPARE(path.started(), QByteArray("galculator 0\n"));
        m_shop->key(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), ui().vkCommand5);
        m_shop->key(Qt::Key_Space);
        QCOMPARE(desktop.opened.size(), 1);
    }
};

int main(int argc, char** argv) {
    return runTests<MenuProgramsTest>(argc, argv);
}

#include "test_menuprograms.moc"
