// What a newcomer without a display gets: the demo shop, and the script that is played on it.

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include "programs.h"
#include "runtests.h"
#include "script.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

class DemoTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theScriptPlaysOnTheDemoShop() {
        QTemporaryDir place;
        const QString folder = place.filePath(u"shop"_s);
        const QString output = place.filePath(u"replay"_s);
        const QString receipts = place.filePath(u"receipts"_s);

        const Outcome made = runProgram({demoShopProgram(), u"--folder"_s, folder});
        QCOMPARE(made.errors, QString());
        QCOMPARE(made.status, 0);

        QProcessEnvironment environment = tillEnvironment();
        environment.insert(u"KOVANIX_PRINTER"_s, u"pdf:" + receipts);
        const Outcome played = runProgram(
            {replayProgram(), u"--folder"_s, folder, u"--output"_s, output, QStringLiteral(DEMO_SCRIPT)},
            environment);
        QCOMPARE(played.errors, QString());
        QCOMPARE(played.status, 0);

        QFile script(QStringLiteral(DEMO_SCRIPT));
        QVERIFY(script.open(QIODevice::ReadOnly));
        QStringList errors;
        const QList<ScriptStep> steps = readScript(QString::fromUtf8(script.readAll()), errors);
        QCOMPARE(errors, QStringList());
        int pictures = 0;
        qsizetype printed = 0;
        int tables = 0;
        for (const ScriptStep& step : steps) {
            if (step.command == u"screenshot") {
                const QImage picture(QDir(output).filePath(step.argument));
                QVERIFY2(!picture.isNull(), qPrintable(step.argument));
                QVERIFY(picture.width() >= 640 && picture.height() >= 480);
                ++pictures;
            } else if (step.command == u"rows") {
                QFile rows(QDir(output).filePath(step.first()));
                QVERIFY2(rows.open(QIODevice::ReadOnly), qPrintable(step.first()));
                QVERIFY2(rows.readAll().count('\n') > 0, qPrintable(step.first()));
                ++tables;
            } else if (step.command == u"key" && step.argument == u"F2") {
                ++printed;
            }
        }
        QVERIFY(pictures > 0 && printed > 0 && tables > 0);
        const QFileInfoList pages = QDir(receipts).entryInfoList({u"*.pdf"_s}, QDir::Files);
        QCOMPARE(pages.size(), printed);
        for (const QFileInfo& page : pages)
            QVERIFY(page.size() > 0);
    }
};

int main(int argc, char** argv) {
    return runTests<DemoTest>(argc, argv);
}

#include "test_demo.moc"
