#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>

#include "app/modTrace.h"
#include "desktop/folders.h"
#include "rows.h"
#include "runtests.h"
#include "shopfixture.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

static_assert(!izkapali, "this program is linked with the trace switched on");

namespace {

const QString logName = u"kovanix_trace.log"_s;

QByteArray bytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Runs on as an ordinary user while it lives: the superuser may write anywhere.
class OrdinaryUser {
public:
    OrdinaryUser() : m_changed(geteuid() == 0 && seteuid(nobody) == 0) {}
    ~OrdinaryUser() {
        if (m_changed && seteuid(0) != 0)
            qFatal("the superuser's rights didn't come back");
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    static constexpr uid_t nobody = 65534;
    bool m_changed;
};

/// The folder that TEMP names while it lives, open to every user.
class TempFolder {
public:
    TempFolder() {
        qputenv("TEMP", QFile::encodeName(m_folder.path()));
        chmod(QFile::encodeName(m_folder.path()).constData(), 0777);
    }
    ~TempFolder() { qunsetenv("TEMP"); }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    QByteArray log() const { return bytesOf(m_folder.filePath(logName)); }

private:
    QTemporaryDir m_folder;
};

}  // namespace

class TestTrace : public QObject {
    Q_OBJECT

    struct WritesOneLineToBothFilesRow {
        QDateTime now;
        QString text;
        QByteArray line;
    };

private Q_SLOTS:
    void writesOneLineToBothFiles_data() {
        const auto moment = [](int year, int month, int day, int hour, int minute, int second) {
            return QDateTime(QDate(year, month, day), QTime(hour, minute, second));
        };
        addRows<WritesOneLineToBothFilesRow>(
            {{"leading zeros",
              {moment(2026, 5, 3, 7, 5, 9), u"SAT01 Form_Load"_s,
               "2026-05-03 07:05:09  SAT01 Form_Load\n"_ba}},
             {"afternoon, 24 hours",
              {moment(2026, 12, 31, 23, 59, 59), u"GIR05 tamam"_s, "2026-12-31 23:59:59  GIR05 tamam\n"_ba}},
             {"midnight", {moment(2026, 1, 1, 0, 0, 0), u"x"_s, "2026-01-01 00:00:00  x\n"_ba}},
             {"empty text", {moment(2026, 5, 3, 7, 5, 9), QString(), "2026-05-03 07:05:09  \n"_ba}},
             {"signs as they stand",
              {moment(2026, 5, 3, 7, 5, 9), u"SATERR db: a%1|b  "_s,
               "2026-05-03 07:05:09  SATERR db: a%1|b  \n"_ba}}});
    }
    void writesOneLineToBothFiles() {
        QFETCH(const WritesOneLineToBothFilesRow, row);
        ShopFixture fixture;
        const TempFolder temp;
        fixture.setNow(row.now);
        izyaz(row.text);
        QCOMPARE(bytesOf(fixture.file(logName)), row.line);
        QCOMPARE(temp.log(), row.line);
    }

    void appends() {
        ShopFixture fixture;
        const TempFolder temp;
        izyaz(u"SAT01 Form_Load"_s);
        fixture.setNow(QDateTime(QDate(2026, 5, 3), QTime(7, 5, 10)));
        izyaz(u"SAT02 preDB"_s);
        const QByteArray both = "2026-05-03 07:05:09  SAT01 Form_Load\n2026-05-03 07:05:10  SAT02 preDB\n"_ba;
        QCOMPARE(bytesOf(fixture.file(logName)), both);
        QCOMPARE(temp.log(), both);
    }

    void oneFolderForBoth() {
        const ShopFixture fixture;
        const TempFolder temp;
        setApplicationFolder(qEnvironmentVariable("TEMP"));
        izyaz(u"x"_s);
        QCOMPARE(temp.log(), "2026-05-03 07:05:09  x\n2026-05-03 07:05:09  x\n"_ba);
    }

    void applicationFolderIsAFile() {
        ShopFixture fixture;
        fixture.makeDatabase();
        const TempFolder temp;
        setApplicationFolder(fixture.databaseFile());
        izyaz(u"x"_s);
        QCOMPARE(temp.log(), "2026-05-03 07:05:09  x\n"_ba);
        QCOMPARE(bytesOf(fixture.databaseFile()), QByteArray());
    }

    void readOnlyApplicationFolder() {
        const ShopFixture fixture;
        const TempFolder temp;
        const QByteArray folder = QFile::encodeName(fixture.folder());
        QCOMPARE(chmod(folder.constData(), 0555), 0);
        {
            const OrdinaryUser user;
            izyaz(u"x"_s);
        }
        QCOMPARE(chmod(folder.constData(), 0700), 0);
        QCOMPARE(QDir(fixture.folder()).entryList(QDir::Files), QStringList());
        QCOMPARE(temp.log(), "2026-05-03 07:05:09  x\n"_ba);
    }

    void readOnlyLog() {
        const ShopFixture fixture;
        const TempFolder temp;
        QVERIFY(QDir(fixture.folder()).mkdir(logName));
        izyaz(u"x"_s);
        QVERIFY(QFileInfo(fixture.file(logName)).isDir());
        QCOMPARE(temp.log(), "2026-05-03 07:05:09  x\n"_ba);
    }

    void tempIsAFile() {
        ShopFixture fixture;
        fixture.makeDatabase();
        qputenv("TEMP", QFile::encodeName(fixture.databaseFile()));
        izyaz(u"x"_s);
        qunsetenv("TEMP");
        QCOMPARE(bytesOf(fixture.file(logName)), "2026-05-03 07:05:09  x\n"_ba);
        QCOMPARE(bytesOf(fixture.databaseFile()), QByteArray());
    }

    // The second path is then the bare name below the root, where an ordinary user can't write.
    void tempUnset() {
        const ShopFixture fixture;
        qunsetenv("TEMP");
        QCOMPARE(chmod(QFile::encodeName(fixture.folder()).constData(), 0777), 0);
        const bool stoodThere = QFile::exists(u"/"_s + logName);
        {
            const OrdinaryUser user;
            izyaz(u"x"_s);
        }
        QCOMPARE(bytesOf(fixture.file(logName)), "2026-05-03 07:05:09  x\n"_ba);
        QCOMPARE(QFile::exists(u"/"_s + logName), stoodThere);
    }
};

int main(int argc, char** argv) {
    return runTests<TestTrace>(argc, argv);
}
#include "test_trace.moc"
