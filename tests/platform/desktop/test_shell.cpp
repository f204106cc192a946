#include <unistd.h>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include "desktop/shell.h"
#include "rows.h"

using namespace kovanix;

/// Notes what the desktop was asked to open.
class Opener : public QObject {
    Q_OBJECT

public:
    explicit Opener(const QStringList& schemes) : m_schemes(schemes) {
        for (const QString& scheme : m_schemes)
            QDesktopServices::setUrlHandler(scheme, this, "open");
    }
    ~Opener() override {
        for (const QString& scheme : m_schemes)
            QDesktopServices::unsetUrlHandler(scheme);
    }

    QList<QUrl> opened;

public Q_SLOTS:
    void open(const QUrl& url) { opened << url; }

private:
    QStringList m_schemes;
};

class ShellTest : public QObject {
    Q_OBJECT

    struct DocumentsRow {
        QString asked, opened;
    };

private Q_SLOTS:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_path = qgetenv("PATH");
        qputenv("PATH", m_folder->path().toLocal8Bit() + ':' + m_path);
    }
    void cleanup() { qputenv("PATH", m_path); }

    void startsByNameAndByPath_data() {
        QTest::addColumn<bool>("byPath");
        QTest::newRow("name on PATH") << false;
        QTest::newRow("path") << true;
    }
    void startsByNameAndByPath() {
        QFETCH(bool, byPath);
        const QString script = makeScript(QStringLiteral("hesap"), QStringLiteral("echo ran > '%1'"));
        QVERIFY(startProgram(byPath ? script : QStringLiteral("hesap")));
        QTRY_COMPARE(marker(), QByteArray("ran\n"));
    }

    void argumentsArriveAsTheyAre() {
        makeScript(QStringLiteral("hesap"), QStringLiteral("printf '%%s|' \"$@\" > '%1'"));
        QVERIFY(
            startProgram(QStringLiteral("hesap"), {QStringLiteral("iki kelime"), QString(),
                                                   QStringLiteral("$HOME; 'x' \"y\""), QStringLiteral("ş")}));
        QTRY_COMPARE(marker(), QByteArray("iki kelime||$HOME; 'x' \"y\"|\xC5\x9F|"));
    }

    void doesNotWait() {
        // Goes on only when the file appears that this case makes after the start has returned.
        const QString gate = m_folder->filePath(QStringLiteral("gate"));
        makeScript(QStringLiteral("hesap"),
                   QStringLiteral("for i in $(seq 500); do [ -e '%1.go' ] && break; sleep 0.01; done; "
                                  "[ -e '%1.go' ] && echo passed > '%1'"));
        QVERIFY(startProgram(QStringLiteral("hesap")));
        QVERIFY(!QFile::exists(m_folder->filePath(QStringLiteral("marker"))));
        QFile go(m_folder->filePath(QStringLiteral("marker.go")));
        QVERIFY(go.open(QIODevice::WriteOnly));
        QTRY_COMPARE(marker(), QByteArray("passed\n"));
    }

    void itsStreamsLeadNowhere() {
        makeScript(QStringLiteral("hesap"),
                   QStringLiteral("( for fd in 0 1 2; do readlink /proc/$$/fd/$fd; done ) > '%1.part' && "
                                  "mv '%1.part' '%1'"));
        QVERIFY(startProgram(QStringLiteral("hesap")));
        QTRY_COMPARE(marker(), QByteArray("/dev/null\n/dev/null\n/dev/null\n"));
    }

    // What the till started must not go down with it (Ctrl+C in the terminal, the end of the session's
    // group).
    void isNotOfTheTillsProcessGroup() {
        makeScript(QStringLiteral("hesap"),
                   QStringLiteral("cut -d' ' -f5 /proc/$$/stat > '%1.part' && mv '%1.part' '%1'"));
        QVERIFY(startProgram(QStringLiteral("hesap")));
        QTRY_VERIFY(!marker().isEmpty());
        QVERIFY(marker().trimmed().toInt() > 0);
        QVERIFY(marker().trimmed().toInt() != getpgrp());
    }

    void whatCannotBeStarted_data() {
        QTest::addColumn<QString>("program");
        QTest::newRow("empty") << QString();
        QTest::newRow("not on PATH") << QStringLiteral("boyle-bir-program-yok");
        QTest::newRow("missing path") << QStringLiteral("/yok/hesap");
        QTest::newRow("not executable") << QStringLiteral("duz");
        QTest::newRow("path, not executable") << QStringLiteral("%1/duz");
        QTest::newRow("folder") << QStringLiteral("%1");
        QTest::newRow("a path of another platform") << QStringLiteral("c:\\windows\\system32\\calc.exe");
    }
    void whatCannotBeStarted() {
        QFETCH(QString, program);
        QFile plain(m_folder->filePath(QStringLiteral("duz")));
        QVERIFY(plain.open(QIODevice::WriteOnly));
        plain.write("#!/bin/sh\n");
        plain.close();
        QVERIFY(!startProgram(program.replace(QStringLiteral("%1"), m_folder->path())));
    }

    void firstInstalledIsFirstOfTheList() {
        const QString second = makeScript(QStringLiteral("ikinci"), QStringLiteral("true '%1'"));
        const QString third = makeScript(QStringLiteral("ucuncu"), QStringLiteral("true '%1'"));
        const QString missing = QStringLiteral("boyle-bir-program-yok");
        const auto names = [](const char* a, const char* b) {
            return QStringList{QString::fromLatin1(a), QString::fromLatin1(b)};
        };
        QCOMPARE(firstInstalled({missing, QStringLiteral("ikinci"), QStringLiteral("ucuncu")}), second);
        QCOMPARE(firstInstalled(names("ucuncu", "ikinci")), third);
        QCOMPARE(firstInstalled({missing}), QString());
        QCOMPARE(firstInstalled({}), QString());
        QVERIFY(startProgram(firstInstalled(names("ikinci", "ucuncu"))));
    }

    void documents_data() {
        addRows<DocumentsRow>(
            {{"address",
              {QStringLiteral("https://example.com/a?b=c#d"), QStringLiteral("https://example.com/a?b=c#d")}},
             {"address without a scheme",
              {QStringLiteral("www.example.com"), QStringLiteral("http://www.example.com")}},
             {"file", {QStringLiteral("%1/rapor.html"), QStringLiteral("file://%1/rapor.html")}},
             {"file with signs of an address",
              {QStringLiteral("%1/a #1 %20?.html"), QStringLiteral("file://%1/a%20%231%20%2520%3F.html")}},
             {"folder", {QStringLiteral("%1"), QStringLiteral("file://%1")}}});
    }
    void documents() {
        QFETCH(DocumentsRow, row);
        for (const char* name : {"rapor.html", "a #1 %20?.html"}) {
            QFile file(m_folder->filePath(QString::fromLatin1(name)));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        const Opener opener({QStringLiteral("http"), QStringLiteral("https"), QStringLiteral("file")});
        QVERIFY(openDocument(row.asked.replace(QStringLiteral("%1"), m_folder->path())));
        QCOMPARE(opener.opened.size(), 1);
        QCOMPARE(opener.opened[0].toString(QUrl::FullyEncoded),
                 row.opened.replace(QStringLiteral("%1"), m_folder->path()));
    }

    void whatCannotBeOpened_data() {
        QTest::addColumn<QString>("asked");
        QTest::newRow("empty") << QString();
        QTest::newRow("missing file") << QStringLiteral("%1/yok.html");
    }
    void whatCannotBeOpened() {
        QFETCH(QString, asked);
        const Opener opener({QStringLiteral("http"), QStringLiteral("file")});
        QVERIFY(!openDocument(asked.replace(QStringLiteral("%1"), m_folder->path())));
        QVERIFY(opener.opened.isEmpty());
    }

private:
    /// A program in the folder that stands first on PATH; %1 in its line is the marker's path, %% a percent
    /// sign.
    QString makeScript(const QString& name, QString line) const {
        line.replace(QStringLiteral("%1"), m_folder->filePath(QStringLiteral("marker")));
        line.replace(QStringLiteral("%%"), QStringLiteral("%"));
        QFile script(m_folder->filePath(name));
        if (!script.open(QIODevice::WriteOnly))
            qFatal("no script");
        script.write("#!/bin/sh\n" + line.toUtf8() + '\n');
        script.close();
        script.setPermissions(script.permissions() | QFile::ExeOwner);
        return script.fileName();
    }

    QByteArray marker() const {
        QFile file(m_folder->filePath(QStringLiteral("marker")));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QByteArray m_path;
};

QTEST_MAIN(ShellTest)
#include "test_shell.moc"
