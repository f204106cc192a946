#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include "desktop/folders.h"
#include "rows.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

class FoldersTest : public QObject {
    Q_OBJECT

    struct ChoiceRow {
        QString commandLine, variable;
        QString markerMade;  ///< in the program's own folder; empty makes none
        QString expected;    ///< %1 the temporary, %2 the program's, %3 the current folder
    };
    struct TheFolderIsKeptRow {
        QString set, kept;
    };
    struct JoinedNamesRow {
        QString folder, name, path;
    };
    struct PathsWithADriveLetterRow {
        QString stored, path;
    };

private Q_SLOTS:
    void init() {
        QVERIFY(m_dir.isValid());
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_dir.filePath(u"data"_s)));
        qunsetenv("KOVANIX_FOLDER");
    }

    void choice_data() {
        QTest::addColumn<ChoiceRow>("row");

        const QString marker = u"FoldersTest.marker"_s;
        QTest::newRow("nothing given: the user's data folder") << ChoiceRow{"", "", "", "%1/data/kovanix"};
        QTest::newRow("a marker beside the program") << ChoiceRow{"", "", marker, "%2"};
        QTest::newRow("the second marker counts too") << ChoiceRow{"", "", "FoldersTest.second", "%2"};
        QTest::newRow("a folder named like a marker is none")
            << ChoiceRow{"", "", "FoldersTest.folder/", "%1/data/kovanix"};
        QTest::newRow("the variable before the marker") << ChoiceRow{"", "/srv/shop", marker, "/srv/shop"};
        QTest::newRow("the command line before all")
            << ChoiceRow{"/srv/other", "/srv/shop", marker, "/srv/other"};
        QTest::newRow("a trailing separator goes") << ChoiceRow{"/srv/other/", "", "", "/srv/other"};
        QTest::newRow("the variable's too") << ChoiceRow{"", "/srv/shop//", "", "/srv/shop"};
        QTest::newRow("a relative folder starts at the current one") << ChoiceRow{"shop", "", "", "%3/shop"};
        QTest::newRow("dots are resolved") << ChoiceRow{"/srv/./a/../shop", "", "", "/srv/shop"};
        QTest::newRow("blanks and Turkish letters")
            << ChoiceRow{u"/srv/Şık Dükkân"_s, "", "", u"/srv/Şık Dükkân"_s};
        QTest::newRow("the root") << ChoiceRow{"/", "", "", "/"};
    }

    void choice() {
        QFETCH(ChoiceRow, row);
        const QDir own(QCoreApplication::applicationDirPath());
        const auto cleanUp = qScopeGuard([&] {
            if (row.markerMade.endsWith(QLatin1Char('/')))
                own.rmdir(row.markerMade);
            else if (!row.markerMade.isEmpty())
                QFile::remove(own.filePath(row.markerMade));
        });
        if (row.markerMade.endsWith(QLatin1Char('/'))) {
            QVERIFY(own.mkpath(row.markerMade));
        } else if (!row.markerMade.isEmpty()) {
            QFile file(own.filePath(row.markerMade));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        if (!row.variable.isEmpty())
            qputenv("KOVANIX_FOLDER", QFile::encodeName(row.variable));

        const QString chosen = chooseApplicationFolder(
            row.commandLine, {u"FoldersTest.marker"_s, u"FoldersTest.second"_s, u"FoldersTest.folder"_s});
        row.expected.replace(u"%1"_s, m_dir.path());
        row.expected.replace(u"%2"_s, own.absolutePath());
        row.expected.replace(u"%3"_s, QDir::currentPath());
        QCOMPARE(chosen, row.expected);
    }

    void theFolderIsKept_data() {
        addRows<TheFolderIsKeptRow>({{"as given", {"/srv/shop", "/srv/shop"}},
                                     {"without a trailing separator", {"/srv/shop//", "/srv/shop"}},
                                     {"the root", {"/", "/"}},
                                     {"none", {"", ""}}});
    }

    void theFolderIsKept() {
        QFETCH(const TheFolderIsKeptRow, row);
        setApplicationFolder(row.set);
        QCOMPARE(applicationFolder(), row.kept);
    }

    void joinedNames_data() {
        addRows<JoinedNamesRow>(
            {{"a stored name", {"/srv/shop", "\\Kovanix.config", "/srv/shop/Kovanix.config"}},
             {"no folder: below the root", {"", "\\Kovanix.config", "/Kovanix.config"}},
             {"the root itself", {"/", "\\Kovanix.config", "/Kovanix.config"}},
             {"a name without a separator", {"/srv/shop", "Kovanix.config", "/srv/shop/Kovanix.config"}},
             {"a folder with a separator", {"/srv/shop/", "\\kovanix.data", "/srv/shop/kovanix.data"}},
             {"a name in a subfolder",
              {"/srv/shop", "\\yedek\\kovanix.data", "/srv/shop/yedek/kovanix.data"}},
             {"a blank in the name", {"/srv/shop", "\\satis raporu", "/srv/shop/satis raporu"}},
             {"a backslash in the folder is a letter", {"/srv/a\\b", "\\x", "/srv/a\\b/x"}}});
    }

    void joinedNames() {
        QFETCH(const JoinedNamesRow, row);
        QCOMPARE(joinStored(row.folder, row.name), row.path);
    }

    void pathsWithADriveLetter_data() {
        const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
        addRows<PathsWithADriveLetterRow>(
            {{"C", {"C:\\kovanix\\urun raporu.xls", "/srv/c/kovanix/urun raporu.xls"}},
             {"small letter", {"c:\\satis raporu.xls", "/srv/c/satis raporu.xls"}},
             {"the drive itself", {"C:\\", "/srv/c/"}},
             {"a drive that nothing names", {"D:\\x.xls", documents + "/x.xls"}},
             {"no drive letter", {"\\SITE.doc", "\\SITE.doc"}},
             {"a path of this machine", {"/srv/x", "/srv/x"}},
             {"empty", {"", ""}}});
    }

    void pathsWithADriveLetter() {
        QFETCH(const PathsWithADriveLetterRow, row);
        qputenv("KOVANIX_DRIVE_C", "/srv/c");
        QCOMPARE(drivePath(row.stored), row.path);
        qunsetenv("KOVANIX_DRIVE_C");
    }

private:
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(FoldersTest)
#include "test_folders.moc"
