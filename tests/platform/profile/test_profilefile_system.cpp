#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include "ordinaryuser.h"
#include "profile/profilefile.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

void writeBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QByteArray readBytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

mode_t modeOf(const QString& path) {
    struct stat status {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777U : 0;
}

}  // namespace

// What the file system does to a profile file: absence, links, owners, permissions.
class TestProfileFileSystem : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_folder.reset(new QTemporaryDir);
        QVERIFY(m_folder->isValid());
        QCOMPARE(::chmod(QFile::encodeName(m_folder->path()).constData(), 0755), 0);
        m_path = m_folder->filePath(u"Kovanix.config"_s);
    }

    void cleanup() { ::chmod(QFile::encodeName(m_folder->path()).constData(), 0755); }

    void missingFileReadsEmpty() {
        QCOMPARE(ProfileFile::value(m_path, u"ayar"_s, u"ip"_s), QString());
        QVERIFY(!QFile::exists(m_path));
    }

    void missingFileIsMade() {
        QVERIFY(ProfileFile::setValue(m_path, u"ayar"_s, u"tema"_s, u"2"_s));
        QCOMPARE(readBytes(m_path), QByteArray("[ayar]\r\ntema=2\r\n"));
        QCOMPARE(modeOf(m_path), 0600U);
    }

    void missingFolderFails() {
        const QString path = m_folder->filePath(u"none/Kovanix.config"_s);
        QVERIFY(!ProfileFile::setValue(path, u"ayar"_s, u"ip"_s, u"a"_s));
        QVERIFY(!QFile::exists(m_folder->filePath(u"none"_s)));
    }

    void directoryInPlaceOfTheFile() {
        QVERIFY(QDir().mkdir(m_path));
        QCOMPARE(ProfileFile::value(m_path, u"ayar"_s, u"ip"_s), QString());
        QVERIFY(!ProfileFile::setValue(m_path, u"ayar"_s, u"ip"_s, u"a"_s));
        QVERIFY(QFileInfo(m_path).isDir());
    }

    void pipeInPlaceOfTheFile() {
        QCOMPARE(::mkfifo(QFile::encodeName(m_path).constData(), 0600), 0);
        QCOMPARE(ProfileFile::value(m_path, u"ayar"_s, u"ip"_s), QString());
        QVERIFY(!ProfileFile::setValue(m_path, u"ayar"_s, u"ip"_s, u"a"_s));
    }

    void everyByteSurvives() {
        QByteArray every("[ayar]\r\nip=a\r\nx=");
        for (int byte = 0; byte < 256; ++byte)
            every += static_cast<char>(byte);
        writeBytes(m_path, every);
        QVERIFY(ProfileFile::setValue(m_path, u"ayar"_s, u"ip"_s, u"b"_s));
        QCOMPARE(readBytes(m_path), every.replace("ip=a", "ip=b"));
    }

    void keepsPermissions() {
        for (const mode_t mode : {0600U, 0644U, 0666U, 0660U}) {
            writeBytes(m_path, "[ayar]\r\nip=a\r\n");
            QCOMPARE(::chmod(QFile::encodeName(m_path).constData(), mode), 0);
            QVERIFY(ProfileFile::setValue(m_path, u"ayar"_s, u"ip"_s, u"b"_s));
            QCOMPARE(modeOf(m_path), mode);
        }
    }

    void keepsTheOwner() {
        if (::geteuid() != 0)
            QSKIP("only the administrator can give a file away");
        constexpr uid_t nobody = 65534;
        writeBytes(m_path, "[ayar]\r\nip=a\r\n");
        const QByteArray path = QFile::encodeName(m_path);
        QCOMPARE(::chmod(path.constData(), 0640), 0);
        QCOMPARE(::chown(path.constData(), nobody, nobody), 0);
        QVERIFY(ProfileFile::setValue(m_path, u"ayar"_s, u"ip"_s, u"b"_s));
        struct stat status {};
        QCOMPARE(::stat(path.constData(), &status), 0);
        QCOMPARE(status.st_uid, nobody);
        QCOMPARE(status.st_gid, nobody);
        QCOMPARE(modeOf(m_path), 0640U);
        QCOMPARE(readBytes(m_path), QByteArray("[ayar]\r\nip=b\r\n"));

        // The other way round an ordinary user can't: the file is written in place and stays the
        // administrator's.
        QCOMPARE(::chown(path.constData(), 0, 0), 0);
        QCOMPARE(::chmod(path.constData(), 0666), 0);
        QCOMPARE(::chmod(QFile::encodeName(m_folder->path()).constData(), 0777), 0);
        bool written = false;
        {
            const OrdinaryUser user;
            if (user.failed() || !QFileInfo::exists(m_path))
                QSKIP("an ordinary user can't be had here");
            written = ProfileFile::setValue(m_path, u"ayar"_s, u"ip"_s, u"c"_s);
        }
        QVERIFY(written);
        QCOMPARE(::stat(path.constData(), &status), 0);
        QCOMPARE(status.st_uid, 0U);
        QCOMPARE(readBytes(m_path), QByteArray("[ayar]\r\nip=c\r\n"));
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
    }

    void followsLinks() {
        const QString target = m_folder->filePath(u"target"_s);
        const QString between = m_folder->filePath(u"between"_s);
        writeBytes(target, "[ayar]\r\nip=a\r\n");
        QVERIFY(QFile::link(u"target"_s, between));
        QVERIFY(QFile::link(between, m_path));
        QCOMPARE(ProfileFile::value(m_path, u"ayar"_s, u"ip"_s), u"a"_s);
        QVERIFY(ProfileFile::setValue(m_path, u"ayar"_s, u"ip"_s, u"b"_s));
        QVERIFY(QFileInfo(m_path).isSymLink());
        QVERIFY(QFileInfo(between).isSymLink());
        QVERIFY(!QFileInfo(target).isSymLink());
        QCOMPARE(readBytes(target), QByteArray("[ayar]\r\nip=b\r\n"));
    }

    void followsALinkToNothing() {
        const QString target = m_folder->filePath(u"target"_s);
        QVERIFY(QFile::link(target, m_path));
        QVERIFY(ProfileFile::setValue(m_path, u"ayar"_s, u"ip"_s, u"b"_s));
        QVERIFY(QFileInfo(m_path).isSymLink());
        QCOMPARE(readBytes(target), QByteArray("[ayar]\r\nip=b\r\n"));

        // A link to itself leads nowhere.
        const QString loop = m_folder->filePath(u"loop"_s);
        QVERIFY(QFile::link(loop, loop));
        QCOMPARE(ProfileFile::value(loop, u"ayar"_s, u"ip"_s), QString());
    }

    void replacesInOneStep() {
        writeBytes(m_path, "[ayar]\r\nip=a\r\n");
        // Whoever has the old file open goes on reading the old file, whole.
        QFile reader(m_path);
        QVERIFY(reader.open(QIODevice::ReadOnly));
        QVERIFY(ProfileFile::setValue(m_path, u"ayar"_s, u"ip"_s, u"b"_s));
        QCOMPARE(reader.readAll(), QByteArray("[ayar]\r\nip=a\r\n"));
        QCOMPARE(readBytes(m_path), QByteArray("[ayar]\r\nip=b\r\n"));
    }

    void sameValueLeavesTheFileAlone() {
        writeBytes(m_path, "[ayar]\r\nip=a\r\n");
        struct stat before {};
        struct stat after {};
        const QByteArray path = QFile::encodeName(m_path);
        QCOMPARE(::stat(path.constData(), &before), 0);
        QVERIFY(ProfileFile::setValue(m_path, u"ayar"_s, u"ip"_s, u"a"_s));
        QCOMPARE(::stat(path.constData(), &after), 0);
        QCOMPARE(after.st_ino, before.st_ino);
    }

    void readOnlyFolder() {
        writeBytes(m_path, "[ayar]\r\nip=abcdef\r\n");
        const QString other = m_folder->filePath(u"other.config"_s);
        QCOMPARE(::chmod(QFile::encodeName(m_path).constData(), 0666), 0);
        QCOMPARE(::chmod(QFile::encodeName(m_folder->path()).constData(), 0555), 0);
        bool written = false;
        bool made = true;
        {
            const OrdinaryUser user;
            if (user.failed() || !QFileInfo::exists(m_path))
                QSKIP("an ordinary user can't be had here");
            written = ProfileFile::setValue(m_path, u"ayar"_s, u"ip"_s, u"b"_s);
            made = ProfileFile::setValue(other, u"ayar"_s, u"ip"_s, u"b"_s);
        }
        QVERIFY(written);
        QCOMPARE(readBytes(m_path), QByteArray("[ayar]\r\nip=b\r\n"));
        QVERIFY(!made);
        QVERIFY(!QFile::exists(other));
    }

    void readOnlyFile() {
        writeBytes(m_path, "[ayar]\r\nip=a\r\n");
        QCOMPARE(::chmod(QFile::encodeName(m_path).constData(), 0444), 0);
        QCOMPARE(::chmod(QFile::encodeName(m_folder->path()).constData(), 0777), 0);
        bool written = true;
        QString read;
        {
            const OrdinaryUser user;
            if (user.failed() || !QFileInfo::exists(m_path))
                QSKIP("an ordinary user can't be had here");
            written = ProfileFile::setValue(m_path, u"ayar"_s, u"ip"_s, u"b"_s);
            read = ProfileFile::value(m_path, u"ayar"_s, u"ip"_s);
        }
        QVERIFY(!written);
        QCOMPARE(read, u"a"_s);
        QCOMPARE(readBytes(m_path), QByteArray("[ayar]\r\nip=a\r\n"));
    }

    void unreadableFile() {
        writeBytes(m_path, "[ayar]\r\nip=a\r\n");
        QCOMPARE(::chmod(QFile::encodeName(m_path).constData(), 0222), 0);
        QCOMPARE(::chmod(QFile::encodeName(m_folder->path()).constData(), 0777), 0);
        bool written = true;
        QString read(u'?');
        {
            const OrdinaryUser user;
            if (user.failed() || !QFileInfo::exists(m_path))
                QSKIP("an ordinary user can't be had here");
            read = ProfileFile::value(m_path, u"ayar"_s, u"ip"_s);
            written = ProfileFile::setValue(m_path, u"ayar"_s, u"ip"_s, u"b"_s);
        }
        QCOMPARE(read, QString());
        QVERIFY(!written);
        ::chmod(QFile::encodeName(m_path).constData(), 0644);
        QCOMPARE(readBytes(m_path), QByteArray("[ayar]\r\nip=a\r\n"));
    }

private:
    QScopedPointer<QTemporaryDir> m_folder;
    QString m_path;
};

QTEST_GUILESS_MAIN(TestProfileFileSystem)
#include "test_profilefile_system.moc"
