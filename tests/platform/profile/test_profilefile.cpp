#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include "profile/profilefile.h"

using namespace kovanix;

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

}  // namespace

class TestProfileFile : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void reads_data();
    void reads();
    void writes_data();
    void writes();
    void refusesNames_data();
    void refusesNames();
    void writtenComesBack_data();
    void writtenComesBack();

private:
    QScopedPointer<QTemporaryDir> m_folder;
    QString m_path;
};

void TestProfileFile::init() {
    m_folder.reset(new QTemporaryDir);
    QVERIFY(m_folder->isValid());
    m_path = m_folder->filePath(QStringLiteral("Kovanix.config"));
}

void TestProfileFile::reads_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");

    QTest::newRow("plain") << QByteArray("[ayar]\r\nip=C:\\kovanix.data\r\n") << "ip"
                           << "C:\\kovanix.data";
    QTest::newRow("IP= for ip") << QByteArray("[ayar]\r\nIP=a\r\n") << "ip"
                                << "a";
    QTest::newRow("ip= for IP") << QByteArray("[ayar]\r\nip=a\r\n") << "IP"
                                << "a";
    QTest::newRow("section in another case") << QByteArray("[AYAR]\nip=a\n") << "ip"
                                             << "a";
    QTest::newRow("blanks around the heading") << QByteArray(" \t[ayar] \t\nip=a\n") << "ip"
                                               << "a";
    QTest::newRow("blanks within the heading") << QByteArray("[ ayar\t]\nip=a\n") << "ip"
                                               << "a";
    QTest::newRow("comment behind the heading") << QByteArray("[ayar] ; x\nip=a\n") << "ip"
                                                << "a";
    QTest::newRow("heading that isn't closed") << QByteArray("[ayar\nip=a\n") << "ip"
                                               << "";
    QTest::newRow("blanks around the key") << QByteArray("[ayar]\n \tip\t =a\n") << "ip"
                                           << "a";
    QTest::newRow("key asked for with blanks") << QByteArray("[ayar]\nip=a\n") << " ip "
                                               << "a";
    QTest::newRow("blanks around the value") << QByteArray("[ayar]\nip= \t a b \t \r\n") << "ip"
                                             << "a b";
    QTest::newRow("double quotes") << QByteArray("[ayar]\nip=\"a\"\n") << "ip"
                                   << "a";
    QTest::newRow("single quotes") << QByteArray("[ayar]\nip='a'\n") << "ip"
                                   << "a";
    QTest::newRow("quotes keep blanks") << QByteArray("[ayar]\nip= \" a \" \n") << "ip"
                                        << " a ";
    QTest::newRow("one pair of quotes only") << QByteArray("[ayar]\nip=\"\"a\"\"\n") << "ip"
                                             << "\"a\"";
    QTest::newRow("unlike quotes stay") << QByteArray("[ayar]\nip=\"a'\n") << "ip"
                                        << "\"a'";
    QTest::newRow("one quote stays") << QByteArray("[ayar]\nip=\"\n") << "ip"
                                     << "\"";
    QTest::newRow("quotes around nothing") << QByteArray("[ayar]\nip=\"\"\n") << "ip"
                                           << "";
    QTest::newRow("equals sign in the value") << QByteArray("[ayar]\nip=a=b;c=d\n") << "ip"
                                              << "a=b;c=d";
    QTest::newRow("semicolon in the value") << QByteArray("[ayar]\nip=a ; b\n") << "ip"
                                            << "a ; b";
    QTest::newRow("nothing behind the equals sign") << QByteArray("[ayar]\nip=\n") << "ip"
                                                    << "";
    QTest::newRow("no equals sign") << QByteArray("[ayar]\nip\nip=a\n") << "ip"
                                    << "a";
    QTest::newRow("comment") << QByteArray("[ayar]\n;ip=a\n ;ip=b\nip=c\n") << "ip"
                             << "c";
    QTest::newRow("a comment is asked for") << QByteArray("[ayar]\n;ip=a\n") << ";ip"
                                            << "";
    QTest::newRow("key that begins alike") << QByteArray("[ayar]\nipa=a\ni=b\nip=c\n") << "ip"
                                           << "c";
    QTest::newRow("first of two equal keys") << QByteArray("[ayar]\nip=a\nIP=b\n") << "ip"
                                             << "a";
    QTest::newRow("first of two equal sections") << QByteArray("[ayar]\nip=a\n[x]\n[AYAR]\nip=b\n") << "ip"
                                                 << "a";
    QTest::newRow("only the first of two equal sections") << QByteArray("[ayar]\n[x]\n[ayar]\nip=b\n") << "ip"
                                                          << "";
    QTest::newRow("same section twice in a row") << QByteArray("[ayar]\n[ayar]\nip=b\n") << "ip"
                                                 << "";
    QTest::newRow("key of another section") << QByteArray("[x]\nip=a\n[ayar]\nab=b\n[y]\nip=c\n") << "ip"
                                            << "";
    QTest::newRow("key before any section") << QByteArray("ip=a\n[ayar]\n") << "ip"
                                            << "";
    QTest::newRow("absent key") << QByteArray("[ayar]\nab=a\n") << "ip"
                                << "";
    QTest::newRow("absent section") << QByteArray("[x]\nip=a\n") << "ip"
                                    << "";
    QTest::newRow("empty file") << QByteArray() << "ip"
                                << "";
    QTest::newRow("empty key") << QByteArray("[ayar]\nip=a\n") << ""
                               << "";
    QTest::newRow("last line without end") << QByteArray("[ayar]\r\nip=a") << "ip"
                                           << "a";
    QTest::newRow("mixed line ends") << QByteArray("[ayar]\nx=1\r\ny=2\nip=a\r\n") << "ip"
                                     << "a";
    QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF[ayar]\r\nip=a\r\n") << "ip"
                                     << "a";
    QTest::newRow("byte order mark alone") << QByteArray("\xEF\xBB\xBF") << "ip"
                                           << "";
    QTest::newRow("Turkish letters") << QByteArray("[ayar]\nip=\xDE\xFD\xF0 \xDD\n") << "ip"
                                     << "Şığ İ";
    QTest::newRow("Turkish key in another case") << QByteArray("[ayar]\n\xDE\xD6=a\n") << "şö"
                                                 << "a";
    QTest::newRow("ı is another letter than i") << QByteArray("[ayar]\n\xFDp=a\n\xDDp=b\nIP=c\n") << "ip"
                                                << "c";
    QTest::newRow("254 characters") << QByteArray("[ayar]\nip=") + QByteArray(254, 'x') + '\n'
                                    << "ip" << QString(254, u'x');
    QTest::newRow("255 characters") << QByteArray("[ayar]\nip=") + QByteArray(255, 'x') + '\n'
                                    << "ip" << QString(254, u'x');
    QTest::newRow("300 characters") << QByteArray("[ayar]\nip=") + QByteArray(300, '\xFE') + '\n'
                                    << "ip" << QString(254, u'ş');
    QTest::newRow("quotes don't count to the 254")
        << QByteArray("[ayar]\nip=\"") + QByteArray(254, 'x') + "\"\n"
        << "ip" << QString(254, u'x');
    QTest::newRow("binary junk before the section")
        << QByteArray("\0\xFF\x81=\n\x1A\n[ayar]\nip=a\n", 19) << "ip"
        << "a";
}

void TestProfileFile::reads() {
    QFETCH(QByteArray, bytes);
    QFETCH(QString, key);
    writeBytes(m_path, bytes);
    QTEST(ProfileFile::value(m_path, QStringLiteral("ayar"), key), "value");
    QCOMPARE(readBytes(m_path), bytes);
}

void TestProfileFile::writes_data() {
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QByteArray>("after");

    QTest::newRow("empty file") << QByteArray() << "ip"
                                << "a" << QByteArray("[ayar]\r\nip=a\r\n");
    QTest::newRow("new value") << QByteArray("[ayar]\r\nip=a\r\nx=1\r\n") << "ip"
                               << "bcd" << QByteArray("[ayar]\r\nip=bcd\r\nx=1\r\n");
    QTest::newRow("shorter value") << QByteArray("[ayar]\r\nip=abc\r\nx=1\r\n") << "ip"
                                   << "d" << QByteArray("[ayar]\r\nip=d\r\nx=1\r\n");
    QTest::newRow("the key's spelling stays") << QByteArray("[AyAr]\r\n IP =a\r\n") << "ip"
                                              << "b" << QByteArray("[AyAr]\r\n IP =b\r\n");
    QTest::newRow("blanks and quotes of the old value go") << QByteArray("[ayar]\r\nip= \"a\" \r\n") << "ip"
                                                           << "b" << QByteArray("[ayar]\r\nip=b\r\n");
    QTest::newRow("empty value") << QByteArray("[ayar]\r\nip=a\r\n") << "ip"
                                 << "" << QByteArray("[ayar]\r\nip=\r\n");
    QTest::newRow("empty value of a new key") << QByteArray("[ayar]\r\n") << "ana_program"
                                              << "" << QByteArray("[ayar]\r\nana_program=\r\n");
    QTest::newRow("value for an empty one") << QByteArray("[ayar]\nip=\n") << "ip"
                                            << "a" << QByteArray("[ayar]\nip=a\n");
    QTest::newRow("first of two equal keys") << QByteArray("[ayar]\nip=a\nip=b\n") << "ip"
                                             << "c" << QByteArray("[ayar]\nip=c\nip=b\n");
    QTest::newRow("first of two equal sections") << QByteArray("[ayar]\nx=1\n[ayar]\nip=b\n") << "ip"
                                                 << "c" << QByteArray("[ayar]\nx=1\nip=c\n[ayar]\nip=b\n");
    QTest::newRow("key of another section stays") << QByteArray("[x]\nip=a\n[ayar]\nip=b\n") << "ip"
                                                  << "c" << QByteArray("[x]\nip=a\n[ayar]\nip=c\n");
    QTest::newRow("comment is no key") << QByteArray("[ayar]\n;ip=a\n") << "ip"
                                       << "b" << QByteArray("[ayar]\n;ip=a\nip=b\n");
    QTest::newRow("new key at the end of its section")
        << QByteArray("[ayar]\r\nx=1\r\n[y]\r\nz=1\r\n") << "ip"
        << "a" << QByteArray("[ayar]\r\nx=1\r\nip=a\r\n[y]\r\nz=1\r\n");
    QTest::newRow("new key before trailing blank lines")
        << QByteArray("[ayar]\r\nx=1\r\n\r\n \t\r\n[y]\r\n") << "ip"
        << "a" << QByteArray("[ayar]\r\nx=1\r\nip=a\r\n\r\n \t\r\n[y]\r\n");
    QTest::newRow("new key before blank lines at the end") << QByteArray("[ayar]\nx=1\n\n\n") << "ip"
                                                           << "a" << QByteArray("[ayar]\nx=1\nip=a\n\n\n");
    QTest::newRow("new key behind inner blank lines") << QByteArray("[ayar]\nx=1\n\ny=2\n") << "ip"
                                                      << "a" << QByteArray("[ayar]\nx=1\n\ny=2\nip=a\n");
    QTest::newRow("new key behind a comment") << QByteArray("[ayar]\nx=1\n; son\n\n[y]\n") << "ip"
                                              << "a" << QByteArray("[ayar]\nx=1\n; son\nip=a\n\n[y]\n");
    QTest::newRow("new key in an empty section") << QByteArray("[ayar]\n\n[y]\n") << "ip"
                                                 << "a" << QByteArray("[ayar]\nip=a\n\n[y]\n");
    QTest::newRow("new key behind a last line without end") << QByteArray("[ayar]\r\nx=1") << "ip"
                                                            << "a" << QByteArray("[ayar]\r\nx=1\r\nip=a\r\n");
    QTest::newRow("new key behind a heading without end") << QByteArray("[ayar]") << "ip"
                                                          << "a" << QByteArray("[ayar]\r\nip=a\r\n");
    QTest::newRow("value of a last line without end") << QByteArray("[ayar]\nip=a") << "ip"
                                                      << "b" << QByteArray("[ayar]\nip=b");
    QTest::newRow("new section at the end") << QByteArray("[x]\r\nip=a\r\n") << "ip"
                                            << "b" << QByteArray("[x]\r\nip=a\r\n[ayar]\r\nip=b\r\n");
    QTest::newRow("new section behind a last line without end")
        << QByteArray("[x]\nip=a") << "ip"
        << "b" << QByteArray("[x]\nip=a\n[ayar]\nip=b\n");
    QTest::newRow("new section behind lines of no section") << QByteArray("ip=a\n") << "ip"
                                                            << "b" << QByteArray("ip=a\n[ayar]\nip=b\n");
    QTest::newRow("line ends of the file, LF") << QByteArray("[ayar]\nx=1\n") << "ip"
                                               << "a" << QByteArray("[ayar]\nx=1\nip=a\n");
    QTest::newRow("mixed line ends stay") << QByteArray("[ayar]\r\nx=1\ny=2\r\n\n[z]\n") << "ip"
                                          << "a" << QByteArray("[ayar]\r\nx=1\ny=2\r\nip=a\r\n\n[z]\n");
    QTest::newRow("mixed line ends, value") << QByteArray("[ayar]\nip=1\r\ny=2\n") << "ip"
                                            << "a" << QByteArray("[ayar]\nip=a\r\ny=2\n");
    QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF[ayar]\r\nip=a\r\n") << "ip"
                                     << "b" << QByteArray("\xEF\xBB\xBF[ayar]\r\nip=b\r\n");
    QTest::newRow("byte order mark alone") << QByteArray("\xEF\xBB\xBF") << "ip"
                                           << "b" << QByteArray("\xEF\xBB\xBF[ayar]\r\nip=b\r\n");
    QTest::newRow("Turkish letters") << QByteArray("[ayar]\n\xF0=\xFD\n") << "Ğ"
                                     << "Şİ" << QByteArray("[ayar]\n\xF0=\xDE\xDD\n");
    QTest::newRow("what the page lacks")
        << QByteArray("[ayar]\n") << "ip" << QStringLiteral("\U0001F35E₺") << QByteArray("[ayar]\nip=\?\?\n");
    QTest::newRow("blanks and quotes as they are") << QByteArray("[ayar]\n") << "ip"
                                                   << " \"a\" " << QByteArray("[ayar]\nip= \"a\" \n");
    QTest::newRow("value cut at a line feed") << QByteArray("[ayar]\n") << "ip"
                                              << "a\n[x]\nb=c" << QByteArray("[ayar]\nip=a\n");
    QTest::newRow("value cut at a return") << QByteArray("[ayar]\n") << "ip"
                                           << "a\rb" << QByteArray("[ayar]\nip=a\n");
    QTest::newRow("value cut at a NUL")
        << QByteArray("[ayar]\n") << "ip" << QString(u'a' + QString(QChar(u'\0')) + u'b')
        << QByteArray("[ayar]\nip=a\n");
    QTest::newRow("key with blanks around") << QByteArray("[ayar]\n") << " ip "
                                            << "a" << QByteArray("[ayar]\nip=a\n");
    QTest::newRow("binary junk stays")
        << QByteArray("\0\xFF\x81=\r\r\n\x1A\n[ayar]\nip=a\n\x8D\0", 24) << "ip"
        << "bb" << QByteArray("\0\xFF\x81=\r\r\n\x1A\n[ayar]\nip=bb\n\x8D\0", 25);
}

void TestProfileFile::writes() {
    QFETCH(QByteArray, before);
    QFETCH(QString, key);
    QFETCH(QString, value);
    writeBytes(m_path, before);
    QVERIFY(ProfileFile::setValue(m_path, QStringLiteral("ayar"), key, value));
    QTEST(readBytes(m_path), "after");
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden).size(),
             1);
}

void TestProfileFile::refusesNames_data() {
    QTest::addColumn<QString>("section");
    QTest::addColumn<QString>("key");

    QTest::newRow("empty section") << ""
                                   << "ip";
    QTest::newRow("blank section") << " "
                                   << "ip";
    QTest::newRow("section with a bracket") << "a]b"
                                            << "ip";
    QTest::newRow("section with a line end") << "a\nb"
                                             << "ip";
    QTest::newRow("empty key") << "ayar"
                               << "";
    QTest::newRow("key with an equals sign") << "ayar"
                                             << "a=b";
    QTest::newRow("key with a line end") << "ayar"
                                         << "a\r\nb";
    QTest::newRow("key like a comment") << "ayar"
                                        << ";a";
    QTest::newRow("key like a heading") << "ayar"
                                        << "[a]";
}

void TestProfileFile::refusesNames() {
    QFETCH(QString, section);
    QFETCH(QString, key);
    const QByteArray bytes("[ayar]\nip=a\n");
    writeBytes(m_path, bytes);
    QVERIFY(!ProfileFile::setValue(m_path, section, key, QStringLiteral("b")));
    QCOMPARE(readBytes(m_path), bytes);
}

void TestProfileFile::writtenComesBack_data() {
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("read");

    QTest::newRow("plain") << "a"
                           << "a";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("blanks around go") << "  a b  "
                                      << "a b";
    QTest::newRow("quotes go") << "\"a\""
                               << "a";
    QTest::newRow("connection string") << "Provider=x;Data Source=C:\\a b\\k.data;"
                                       << "Provider=x;Data Source=C:\\a b\\k.data;";
    QTest::newRow("heading as a value") << "[x]"
                                        << "[x]";
    QTest::newRow("300 characters") << QString(300, u'İ') << QString(254, u'İ');
}

void TestProfileFile::writtenComesBack() {
    QFETCH(QString, value);
    QVERIFY(ProfileFile::setValue(m_path, QStringLiteral("ayar"), QStringLiteral("x"), QStringLiteral("1")));
    QVERIFY(ProfileFile::setValue(m_path, QStringLiteral("ayar"), QStringLiteral("ip"), value));
    QTEST(ProfileFile::value(m_path, QStringLiteral("AYAR"), QStringLiteral("IP")), "read");
    QCOMPARE(ProfileFile::value(m_path, QStringLiteral("ayar"), QStringLiteral("x")), QStringLiteral("1"));
}

QTEST_GUILESS_MAIN(TestProfileFile)
#include "test_profilefile.moc"
