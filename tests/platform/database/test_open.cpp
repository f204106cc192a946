#include <sys/stat.h>

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QStorageInfo>

#include "database/engineerror.h"
#include "database/recordset.h"
#include "databasefile.h"
#include "ordinaryuser.h"

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct FailureRow {
    QString state;  ///< of the file
    QString openedWith;
    QString words;
};

struct PathRow {
    QString name;
    QString password;
};

struct JournalRow {
    QString journal;
    bool opens;
    QString description;
};

void overwrite(const QString& path, qint64 place, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(place) && file.write(bytes) == bytes.size());
}

QString value(Connection& connection, const QString& sql) {
    Recordset set;
    set.open(sql, connection);
    return set.field(sql.section(u' ', 1)).toString();
}

}  // namespace

Q_DECLARE_METATYPE(FailureRow)
Q_DECLARE_METATYPE(JournalRow)
Q_DECLARE_METATYPE(PathRow)

class TestOpen : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void failsInTheEnginesWords_data();
    void failsInTheEnginesWords();
    void opensAnyPath_data();
    void opensAnyPath();
    void setsDurability_data() { DatabaseFile::bothKinds(); }
    void setsDurability();
    void anEmptyFileBecomesADatabase_data() { DatabaseFile::bothKinds(); }
    void anEmptyFileBecomesADatabase();
    void waitsForALockedFile_data() { DatabaseFile::bothKinds(); }
    void waitsForALockedFile();
    void aFolderThatCanOnlyBeRead_data();
    void aFolderThatCanOnlyBeRead();
    void findsDamageBehindTheCatalogue_data() { DatabaseFile::bothKinds(); }
    void findsDamageBehindTheCatalogue();
    void opensAndClosesAgain_data() { DatabaseFile::bothKinds(); }
    void opensAndClosesAgain();
    void eachKindHasItsOwnLibrary();
    void leavesNoConnectionBehind_data() { DatabaseFile::bothKinds(); }
    void leavesNoConnectionBehind();
};

void TestOpen::failsInTheEnginesWords_data() {
    QTest::addColumn<QString>("password");
    QTest::addColumn<FailureRow>("row");
    const QString unable = u"^unable to open database file$"_s;
    const QString noDatabase = u"^file is (encrypted or is )?not a database$"_s;
    const QString p = u"gizli"_s;
    const auto row = [](const char* name, const QString& state, const QString& password, const QString& with,
                        const QString& words) {
        QTest::newRow(name) << password << FailureRow{state, with, words};
    };
    row("missing, plain", u"missing"_s, {}, {}, unable);
    row("missing, password", u"missing"_s, p, p, unable);
    row("folder, plain", u"folder"_s, {}, {}, unable);
    row("folder, password", u"folder"_s, p, p, unable);
    row("no path, plain", u"no path"_s, {}, {}, unable);
    row("no path, password", u"no path"_s, p, p, unable);
    row("garbage, plain", u"garbage"_s, {}, {}, noDatabase);
    row("garbage, password", u"garbage"_s, p, p, noDatabase);
    row("truncated header, plain", u"truncated"_s, {}, {},
        u"^(file is not a database|database disk image is malformed)$"_s);
    row("truncated header, password", u"truncated"_s, p, p, noDatabase);
    row("damaged catalogue, plain", u"catalogue"_s, {}, {}, u"^database disk image is malformed$"_s);
    row("damaged catalogue, password", u"catalogue"_s, p, p, noDatabase);
    row("wrong password", u"whole"_s, p, u"Gizli"_s, noDatabase);
    row("no password for a password file", u"whole"_s, p, {}, noDatabase);
    row("password for a plain file", u"whole"_s, {}, p, noDatabase);
}

void TestOpen::failsInTheEnginesWords() {
    QFETCH(const FailureRow, row);
    const DatabaseFile file;
    file.execute({u"CREATE TABLE t (no COUNTER, a TEXT(50))"_s, u"INSERT INTO t (a) VALUES ('x')"_s});
    QString path = file.path();
    if (row.state == u"missing"_s) {
        QVERIFY(QFile::remove(path));
    } else if (row.state == u"folder"_s) {
        path = file.folder();
    } else if (row.state == u"no path"_s) {
        path.clear();
    } else if (row.state == u"garbage"_s) {
        overwrite(path, 0, QByteArray(QFileInfo(path).size(), 'x'));
    } else if (row.state == u"truncated"_s) {
        QVERIFY(QFile::resize(path, 60));
    } else if (row.state == u"catalogue"_s) {
        overwrite(path, 100, QByteArray(400, '\xff'));
    }
    const QFileInfo before(file.path());
    const bool existed = before.exists();
    const qint64 size = before.size();

    Connection connection;
    const auto error =
        errorOf([&] { connection.open(DatabaseFile::connectionString(path, row.openedWith)); });
    QVERIFY(error);
    QVERIFY2(QRegularExpression(row.words).match(enginesWords(error->description())).hasMatch(),
             qPrintable(error->description()));
    QCOMPARE(error->number(), RuntimeError::databaseFailure);
    QCOMPARE(error->source(), row.openedWith.isEmpty() ? u"SQLite"_s : u"SQLCipher"_s);
    QVERIFY(!connection.isOpen());
    QCOMPARE(QFileInfo::exists(file.path()), existed);
    QCOMPARE(QFileInfo(file.path()).size(), size);
    QCOMPARE(wordsOf([&] { connection.tables(); }), u"Operation is not allowed when the object is closed."_s);
}

void TestOpen::opensAnyPath_data() {
    QTest::addColumn<PathRow>("row");
    const QStringList names{u"a b  c.data"_s,      u"50%.data"_s,         u"a%20b.data"_s,
                            u"no#1.data"_s,        u"why?mode=ro.data"_s, u"a&b=c+d.data"_s,
                            u"İşçi ığüşöç.data"_s, u"it's.data"_s,        u"back\\slash;x=1.data"_s,
                            u"日本.data"_s};
    for (const QString& name : names) {
        QTest::addRow("%s, plain", qPrintable(name)) << PathRow{name, {}};
        QTest::addRow("%s, password", qPrintable(name)) << PathRow{name, name};
    }
}

void TestOpen::opensAnyPath() {
    QFETCH(const PathRow, row);
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(u"d #?%"_s + row.name));
    const QString path = folder.filePath(u"d #?%"_s + row.name + u'/' + row.name);
    QVERIFY(QFile(path).open(QIODevice::WriteOnly));
    Connection connection;
    connection.open(DatabaseFile::connectionString(path, row.password));
    connection.execute(u"CREATE TABLE t (a TEXT(50))"_s);
    connection.execute(u"INSERT INTO t VALUES ('Ş')"_s);
    connection.close();
    QVERIFY(QFileInfo(path).size() > 0);
    QCOMPARE(QDir(QFileInfo(path).path()).entryList(QDir::Files), QStringList{row.name});
    QCOMPARE(RawDatabase(path, row.password).rows(u"SELECT a FROM t"_s), QStringList{u"Ş"_s});
}

void TestOpen::setsDurability() {
    const DatabaseFile file;
    Connection connection;
    connection.open(file.connectionString());
    const bool network = isNetworkFileSystem(QStorageInfo(file.folder()).fileSystemType());
    QCOMPARE(value(connection, u"PRAGMA journal_mode"_s), network ? u"delete"_s : u"wal"_s);
    QCOMPARE(value(connection, u"PRAGMA synchronous"_s), u"3"_s);
}

void TestOpen::anEmptyFileBecomesADatabase() {
    const DatabaseFile file;
    QCOMPARE(QFileInfo(file.path()).size(), 0);
    file.execute({u"CREATE TABLE t (a TEXT(50))"_s, u"INSERT INTO t VALUES ('ordinary words')"_s});
    QCOMPARE(file.rows(u"SELECT a FROM t"_s), QStringList{u"ordinary words"_s});
    QFile bytes(file.path());
    QVERIFY(bytes.open(QIODevice::ReadOnly));
    const QByteArray content = bytes.readAll();
    const bool plain = file.password().isEmpty();
    QCOMPARE(content.contains("ordinary words"), plain);
    QCOMPARE(content.startsWith("SQLite format 3"), plain);
}

void TestOpen::waitsForALockedFile() {
    const DatabaseFile file;
    RawDatabase other(file.path(), file.password());
    QVERIFY(other.run(u"CREATE TABLE t (a)"_s));
    QVERIFY(other.run(u"BEGIN EXCLUSIVE"_s));
    Connection connection(300ms);
    QElapsedTimer timer;
    timer.start();
    const auto error = errorOf([&] { connection.open(file.connectionString()); });
    const qint64 waited = timer.elapsed();
    QVERIFY(error);
    QCOMPARE(enginesWords(error->description()), u"database is locked"_s);
    QCOMPARE(error->source(), file.source());
    QVERIFY(!connection.isOpen());
    QVERIFY2(waited >= 290, qPrintable(QString::number(waited)));
    QVERIFY(other.run(u"COMMIT"_s));
    connection.open(file.connectionString());
    QVERIFY(connection.isOpen());
}

void TestOpen::aFolderThatCanOnlyBeRead_data() {
    QTest::addColumn<QString>("password");
    QTest::addColumn<JournalRow>("row");
    const QString noWriting =
        describeFailure(DatabaseError::Kind::readOnly, u"attempt to write a readonly database"_s);
    // The older engine's words for the same. Both say that the folder is to be written.
    const QString noOpening =
        describeFailure(DatabaseError::Kind::missing, u"unable to open database file"_s);
    QTest::newRow("a file that no till has opened, plain")
        << QString() << JournalRow{u"DELETE"_s, true, noWriting};
    QTest::newRow("a file that no till has opened, password")
        << u"gizli"_s << JournalRow{u"DELETE"_s, true, noWriting};
    QTest::newRow("a till's file, plain") << QString() << JournalRow{u"WAL"_s, false, noWriting};
    QTest::newRow("a till's file, password") << u"gizli"_s << JournalRow{u"WAL"_s, false, noOpening};
}

void TestOpen::aFolderThatCanOnlyBeRead() {
    QFETCH(const JournalRow, row);
    const DatabaseFile file;
    {
        RawDatabase maker(file.path(), file.password());
        QVERIFY(maker.run(u"PRAGMA journal_mode = "_s + row.journal));
        QVERIFY(maker.run(u"CREATE TABLE t (a)"_s) && maker.run(u"INSERT INTO t VALUES ('x')"_s));
    }
    // With its last user a write-ahead log goes, and with it the memory that its readers share.
    QCOMPARE(QDir(file.folder()).entryList(QDir::Files), QStringList{u"shop.data"_s});
    QVERIFY(chmod(qPrintable(file.path()), 0444) == 0);
    QVERIFY(chmod(qPrintable(file.folder()), 0555) == 0);
    {
        const OrdinaryUser user;
        if (user.failed() || !QFileInfo::exists(file.path()))
            QSKIP("an ordinary user can't be had here");
        Connection connection;
        Recordset set;
        const auto read = [&] {
            connection.open(file.connectionString());
            set.open(u"select * from t"_s, connection);
        };
        const auto write = [&] { connection.execute(u"INSERT INTO t VALUES ('y')"_s); };
        const std::optional<RuntimeError> opening = errorOf(read);
        QCOMPARE(!opening, row.opens);
        const std::optional<RuntimeError> error = opening ? opening : errorOf(write);
        QVERIFY(error);
        QCOMPARE(error->description(), row.description);
        if (row.opens)
            QCOMPARE(set.field(u"a"_s), u"x"_s);
    }
    QVERIFY(chmod(qPrintable(file.folder()), 0755) == 0);
    QCOMPARE(QDir(file.folder()).entryList(QDir::Files), QStringList{u"shop.data"_s});
}

void TestOpen::findsDamageBehindTheCatalogue() {
    const DatabaseFile file;
    QStringList statements{u"CREATE TABLE t (no COUNTER, a TEXT(50))"_s};
    statements.resize(400, u"INSERT INTO t (a) VALUES ('%1')"_s.arg(QString(80, u'x')));
    file.execute(statements);
    const qint64 size = QFileInfo(file.path()).size();
    overwrite(file.path(), size / 2, QByteArray(int(size / 2), '\xa5'));

    Connection connection;
    connection.open(file.connectionString());
    Recordset set;
    set.open(u"select * from t"_s, connection);
    const auto error = errorOf([&] {
        while (!set.atEnd()) {
            set.moveNext();
        }
    });
    QVERIFY(error);
    QCOMPARE(enginesWords(error->description()), u"database disk image is malformed"_s);
    QCOMPARE(error->source(), file.source());
}

void TestOpen::opensAndClosesAgain() {
    const DatabaseFile file;
    Connection connection;
    connection.close();
    QVERIFY(!connection.isOpen());
    for (int i = 0; i < 3; ++i) {
        connection.open(file.connectionString());
        QVERIFY(connection.isOpen());
        QCOMPARE(wordsOf([&] { connection.open(file.connectionString()); }),
                 u"Operation is not allowed when the object is open."_s);
        QVERIFY(connection.isOpen());
        connection.close();
        connection.close();
        QVERIFY(!connection.isOpen());
    }
    QCOMPARE(wordsOf([&] { connection.execute(u"CREATE TABLE t (a)"_s); }),
             u"Operation is not allowed when the object is closed."_s);
    QCOMPARE(wordsOf([&] { connection.shape(u"t"_s); }),
             u"Operation is not allowed when the object is closed."_s);
    QCOMPARE(wordsOf([&] { connection.idle(); }), u"Operation is not allowed when the object is closed."_s);
}

void TestOpen::eachKindHasItsOwnLibrary() {
    const DatabaseFile plainFile{QString()};
    const DatabaseFile passwordFile(u"gizli"_s);
    Connection plain;
    Connection password;
    plain.open(plainFile.connectionString());
    password.open(passwordFile.connectionString());
    const auto version = [](Connection& connection) {
        Recordset set;
        set.open(u"select sqlite_version() as v"_s, connection);
        return set.field(u"v"_s).toString();
    };
    QVERIFY(!version(plain).isEmpty());
    QVERIFY(version(plain) != version(password));
    QCOMPARE(version(plain),
             RawDatabase(plainFile.path(), {}).rows(u"select sqlite_version()"_s).constFirst());
    const auto cipherVersion = [](Connection& connection) {
        Recordset set;
        set.open(u"PRAGMA cipher_version"_s, connection);
        return set.atEnd();
    };
    QVERIFY(cipherVersion(plain));
    QVERIFY(!cipherVersion(password));
}

void TestOpen::leavesNoConnectionBehind() {
    // A handle that outlives its connection's name makes the toolkit warn.
    static QStringList messages;
    messages.clear();
    const QtMessageHandler handler = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& text) { messages.append(text); });
    const QStringList before = QSqlDatabase::connectionNames();
    {
        const DatabaseFile file;
        Recordset unread;
        Recordset halfRead;
        Connection connection;
        connection.open(file.connectionString());
        connection.execute(u"CREATE TABLE t (a)"_s);
        for (int i = 0; i < 5; ++i) {
            connection.execute(u"INSERT INTO t VALUES (1)"_s);
        }
        unread.open(u"select * from t"_s, connection);
        halfRead.open(u"select * from t"_s, connection);
        halfRead.moveNext();
        connection.close();
        errorOf([&] { connection.open(u"Data Source=/nowhere"_s); });
        errorOf([&] { connection.open(DatabaseFile::connectionString(file.path(), u"wrong"_s)); });
    }
    qInstallMessageHandler(handler);
    QCOMPARE(messages, QStringList());
    QCOMPARE(QSqlDatabase::connectionNames(), before);
}

QTEST_GUILESS_MAIN(TestOpen)
#include "test_open.moc"
