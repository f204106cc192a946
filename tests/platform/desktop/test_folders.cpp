#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include "desktop/folders.h"

using namespace kovanix;

class FoldersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        QVERIFY(m_dir.isValid());
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_dir.filePath(QStringLiteral("data"))));
        qunsetenv("KOVANIX_FOLDER");
    }

    void choice_data() {
        QTest::addColumn<QString>("commandLine");
        QTest::addColumn<QString>("variable");
        QTest::addColumn<QString>("markerMade");  // in the program's own folder; empty makes none
        QTest::addColumn<QString>("expected");    // %1 the temporary, %2 the program's, %3 the current folder

        const QString marker = QStringLiteral("FoldersTest.marker");
        QTest::newRow("nothing given: the user's data folder") << ""
                                                               << ""
                                                               << ""
                                                               << "%1/data/kovanix";
        QTest::newRow("a marker beside the program") << ""
                                                     << "" << marker << "%2";
        QTest::newRow("the second marker counts too") << ""
                                                      << ""
                                                      << "FoldersTest.second"
                                                      << "%2";
        QTest::newRow("a folder named like a marker is none") << ""
                                                              << ""
                                                              << "FoldersTest.folder/"
                                                              << "%1/data/kovanix";
        QTest::newRow("the variable before the marker") << ""
                                                        << "/srv/shop" << marker << "/srv/shop";
        QTest::newRow("the command line before all") << "/srv/other"
                                                     << "/srv/shop" << marker << "/srv/other";
        QTest::newRow("a trailing separator goes") << "/srv/other/"
                                                   << ""
                                                   << ""
                                                   << "/srv/other";
        QTest::newRow("the variable's too") << ""
                                            << "/srv/shop//"
                                            << ""
                                            << "/srv/shop";
        QTest::newRow("a relative folder starts at the current one") << "shop"
                                                                     << ""
                                                                     << ""
                                                                     << "%3/shop";
        QTest::newRow("dots are resolved") << "/srv/./a/../shop"
                                           << ""
                                           << ""
                                           << "/srv/shop";
        QTest::newRow("blanks and Turkish letters") << QStringLiteral("/srv/Şık Dükkân") << ""
                                                    << "" << QStringLiteral("/srv/Şık Dükkân");
        QTest::newRow("the root") << "/"
                                  << ""
                                  << ""
                                  << "/";
    }

    void choice() {
        QFETCH(QString, commandLine);
        QFETCH(QString, variable);
        QFETCH(QString, markerMade);
        QFETCH(QString, expected);
        const QDir own(QCoreApplication::applicationDirPath());
        const auto cleanUp = qScopeGuard([&] {
            if (markerMade.endsWith(QLatin1Char('/')))
                own.rmdir(markerMade);
            else if (!markerMade.isEmpty())
                QFile::remove(own.filePath(markerMade));
        });
        if (markerMade.endsWith(QLatin1Char('/'))) {
            QVERIFY(own.mkpath(markerMade));
        } else if (!markerMade.isEmpty()) {
            QFile file(own.filePath(markerMade));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        if (!variable.isEmpty())
            qputenv("KOVANIX_FOLDER", QFile::encodeName(variable));

        const QString chosen = chooseApplicationFolder(
            commandLine, {QStringLiteral("FoldersTest.marker"), QStringLiteral("FoldersTest.second"),
                          QStringLiteral("FoldersTest.folder")});
        expected.replace(QStringLiteral("%1"), m_dir.path());
        expected.replace(QStringLiteral("%2"), own.absolutePath());
        expected.replace(QStringLiteral("%3"), QDir::currentPath());
        QCOMPARE(chosen, expected);
    }

    void theFolderIsKept_data() {
        QTest::addColumn<QString>("set");
        QTest::addColumn<QString>("kept");
        QTest::newRow("as given") << "/srv/shop"
                                  << "/srv/shop";
        QTest::newRow("without a trailing separator") << "/srv/shop//"
                                                      << "/srv/shop";
        QTest::newRow("the root") << "/"
                                  << "/";
        QTest::newRow("none") << ""
                              << "";
    }

    void theFolderIsKept() {
        QFETCH(QString, set);
        setApplicationFolder(set);
        QTEST(applicationFolder(), "kept");
    }

    void joinedNames_data() {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("path");
        QTest::newRow("a stored name") << "/srv/shop"
                                       << "\\Kovanix.config"
                                       << "/srv/shop/Kovanix.config";
        QTest::newRow("no folder: below the root") << ""
                                                   << "\\Kovanix.config"
                                                   << "/Kovanix.config";
        QTest::newRow("the root itself") << "/"
                                         << "\\Kovanix.config"
                                         << "/Kovanix.config";
        QTest::newRow("a name without a separator") << "/srv/shop"
                                                    << "Kovanix.config"
                                                    << "/srv/shop/Kovanix.config";
        QTest::newRow("a folder with a separator") << "/srv/shop/"
                                                   << "\\kovanix.data"
                                                   << "/srv/shop/kovanix.data";
        QTest::newRow("a name in a subfolder") << "/srv/shop"
                                               << "\\yedek\\kovanix.data"
                                               << "/srv/shop/yedek/kovanix.data";
        QTest::newRow("a blank in the name") << "/srv/shop"
                                             << "\\satis raporu"
                                             << "/srv/shop/satis raporu";
        QTest::newRow("a backslash in the folder is a letter") << "/srv/a\\b"
                                                               << "\\x"
                                                               << "/srv/a\\b/x";
    }

    void joinedNames() {
        QFETCH(QString, folder);
        QFETCH(QString, name);
        QTEST(joinStored(folder, name), "path");
    }

    void pathsWithADriveLetter_data() {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("path");
        const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
        QTest::newRow("C") << "C:\\kovanix\\urun raporu.xls"
                           << "/srv/c/kovanix/urun raporu.xls";
        QTest::newRow("small letter") << "c:\\satis raporu.xls"
                                      << "/srv/c/satis raporu.xls";
        QTest::newRow("the drive itself") << "C:\\"
                                          << "/srv/c/";
        QTest::newRow("a drive that nothing names") << "D:\\x.xls" << documents + "/x.xls";
        QTest::newRow("no drive letter") << "\\SITE.doc"
                                         << "\\SITE.doc";
        QTest::newRow("a path of this machine") << "/srv/x"
                                                << "/srv/x";
        QTest::newRow("empty") << ""
                               << "";
    }

    void pathsWithADriveLetter() {
        QFETCH(QString, stored);
        qputenv("KOVANIX_DRIVE_C", "/srv/c");
        QTEST(drivePath(stored), "path");
        qunsetenv("KOVANIX_DRIVE_C");
    }

private:
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(FoldersTest)
#include "test_folders.moc"
