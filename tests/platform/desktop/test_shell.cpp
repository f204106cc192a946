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
using namespace Qt::StringLiterals;

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
        const QString script = makeScript(u"hesap"_s, u"echo ran > '%1'"_s);
        QVERIFY(startProgram(byPath ? script : u"hesap"_s));
        QTRY_COMPARE(marker(), QByteArray("ran\n"));
    }

    void argumentsArriveAsTheyAre() {
        makeScript(u"hesap"_s, u"printf '%%s|' \"$@\" > '%1'"_s);
        QVERIFY(startProgram(u"hesap"_s, {u"iki kelime"_s, QString(), u"$HOME; 'x' \"y\""_s, u"ş"_s}));
        QTRY_COMPARE(marker(), QByteArray("iki kelime||$HOME; 'x' \"y\"|\xC5\x9F|"));
    }

    void doesNotWait() {
        // Goes on only when the file appears that this case makes after the start has returned.
        const QString gate = m_folder->filePath(u"gate"_s);
        makeScript(u"hesap"_s,
                   u"for i in $(seq 500); do [ -e '%1.go' ] && break; sleep 0.01; done; "
                   u"[ -e '%1.go' ] && echo passed > '%1'"_s);
        QVERIFY(startProgram(u"hesap"_s));
        QVERIFY(!QFile::exists(m_folder->filePath(u"marker"_s)));
        QFile go(m_folder->filePath(u"marker.go"_s));
        QVERIFY(go.open(QIODevice::WriteOnly));
        QTRY_COMPARE(marker(), QByteArray("passed\n"));
    }

    void itsStreamsLeadNowhere() {
        makeScript(u"hesap"_s,
                   u"( for fd in 0 1 2; do readlink /proc/$$/fd/$fd; done ) > '%1.part' && "
                   u"mv '%1.part' '%1'"_s);
        QVERIFY(startProgram(u"hesap"_s));
        QTRY_COMPARE(marker(), QByteArray("/dev/null\n/dev/null\n/dev/null\n"));
    }

    // What the till started must not go down with it (Ctrl+C in the terminal, the end of the session's
    // group).
    void isNotOfTheTillsProcessGroup() {
        makeScript(u"hesap"_s, u"cut -d' ' -f5 /proc/$$/stat > '%1.part' && mv '%1.part' '%1'"_s);
        QVERIFY(startProgram(u"hesap"_s));
        QTRY_VERIFY(!marker().isEmpty());
        QVERIFY(marker().trimmed().toInt() > 0);
        QVERIFY(marker().trimmed().toInt() != getpgrp());
    }

    void whatCannotBeStarted_data() {
        QTest::addColumn<QString>("program");
        QTest::newRow("empty") << QString();
        QTest::newRow("not on PATH") << u"boyle-bir-program-yok"_s;
        QTest::newRow("missing path") << u"/yok/hesap"_s;
        QTest::newRow("not executable") << u"duz"_s;
        QTest::newRow("path, not executable") << u"%1/duz"_s;
        QTest::newRow("folder") << u"%1"_s;
        QTest::newRow("a path of another platform") << u"c:\\windows\\system32\\calc.exe"_s;
    }
    void whatCannotBeStarted() {
        QFETCH(QString, program);
        QFile plain(m_folder->filePath(u"duz"_s));
        QVERIFY(plain.open(QIODevice::WriteOnly));
        plain.write("#!/bin/sh\n");
        plain.close();
        QVERIFY(!startProgram(program.replace(u"%1"_s, m_folder->path())));
    }

    void firstInstalledIsFirstOfTheList() {
        const QString second = makeScript(u"ikinci"_s, u"true '%1'"_s);
        const QString third = makeScript(u"ucuncu"_s, u"true '%1'"_s);
        const QString missing = u"boyle-bir-program-yok"_s;
        const auto names = [](const char* a, const char* b) {
            return QStringList{QString::fromLatin1(a), QString::fromLatin1(b)};
        };
        QCOMPARE(firstInstalled({missing, u"ikinci"_s, u"ucuncu"_s}), second);
        QCOMPARE(firstInstalled(names("ucuncu", "ikinci")), third);
        QCOMPARE(firstInstalled({missing}), QString());
        QCOMPARE(firstInstalled({}), QString());
        QVERIFY(startProgram(firstInstalled(names("ikinci", "ucuncu"))));
    }

    void documents_data() {
        addRows<DocumentsRow>(
            {{"address", {u"https://example.com/a?b=c#d"_s, u"https://example.com/a?b=c#d"_s}},
             {"address without a scheme", {u"www.example.com"_s, u"http://www.example.com"_s}},
             {"file", {u"%1/rapor.html"_s, u"file://%1/rapor.html"_s}},
             {"file with signs of an address",
              {u"%1/a #1 %20?.html"_s, u"file://%1/a%20%231%20%2520%3F.html"_s}},
             {"folder", {u"%1"_s, u"file://%1"_s}}});
    }
    void documents() {
        QFETCH(DocumentsRow, row);
        for (const char* name : {"rapor.html", "a #1 %20?.html"}) {
            QFile file(m_folder->filePath(QString::fromLatin1(name)));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        const Opener opener({u"http"_s, u"https"_s, u"file"_s});
        QVERIFY(openDocument(row.asked.replace(u"%1"_s, m_folder->path())));
        QCOMPARE(opener.opened.size(), 1);
        QCOMPARE(opener.opened[0].toString(QUrl::FullyEncoded),
                 row.opened.replace(u"%1"_s, m_folder->path()));
    }

    void whatCannotBeOpened_data() {
        QTest::addColumn<QString>("asked");
        QTest::newRow("empty") << QString();
        QTest::newRow("missing file") << u"%1/yok.html"_s;
    }
    void whatCannotBeOpened() {
        QFETCH(QString, asked);
        const Opener opener({u"http"_s, u"file"_s});
        QVERIFY(!openDocument(asked.replace(u"%1"_s, m_folder->path())));
        QVERIFY(opener.opened.isEmpty());
    }

private:
    /// A program in the folder that stands first on PATH; %1 in its line is the marker's path, %% a percent
    /// sign.
    QString makeScript(const QString& name, QString line) const {
        line.replace(u"%1"_s, m_folder->filePath(u"marker"_s));
        line.replace(u"%%"_s, u"%"_s);
        QFile script(m_folder->filePath(name));
        if (!script.open(QIODevice::WriteOnly))
            qFatal("no script");
        script.write("#!/bin/sh\n" + line.toUtf8() + '\n');
        script.close();
        script.setPermissions(script.permissions() | QFile::ExeOwner);
        return script.fileName();
    }

    QByteArray marker() const {
        QFile file(m_folder->filePath(u"marker"_s));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QByteArray m_path;
};

QTEST_MAIN(ShellTest)
#include "test_shell.moc"
