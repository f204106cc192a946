#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include "profile/profilefile.h"
#include "rows.h"

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

}  // namespace

class TestProfileFile : public QObject {
    Q_OBJECT

    struct ReadsRow {
        QByteArray bytes;
        QString key, value;
    };
    struct WritesRow {
        QByteArray before;
        QString key, value;
        QByteArray after;
    };
    struct RefusesNamesRow {
        QString section, key;
    };
    struct WrittenComesBackRow {
        QString value, read;
    };

private Q_SLOTS:
    void init() {
        m_folder.reset(new QTemporaryDir);
        QVERIFY(m_folder->isValid());
        m_path = m_folder->filePath(u"Kovanix.config"_s);
    }

    void reads_data() {
        addRows<ReadsRow>(
            {{"plain", {QByteArray("[ayar]\r\nip=C:\\kovanix.data\r\n"), "ip", "C:\\kovanix.data"}},
             {"IP= for ip", {QByteArray("[ayar]\r\nIP=a\r\n"), "ip", "a"}},
             {"ip= for IP", {QByteArray("[ayar]\r\nip=a\r\n"), "IP", "a"}},
             {"section in another case", {QByteArray("[AYAR]\nip=a\n"), "ip", "a"}},
             {"blanks around the heading", {QByteArray(" \t[ayar] \t\nip=a\n"), "ip", "a"}},
             {"blanks within the heading", {QByteArray("[ ayar\t]\nip=a\n"), "ip", "a"}},
             {"comment behind the heading", {QByteArray("[ayar] ; x\nip=a\n"), "ip", "a"}},
             {"heading that isn't closed", {QByteArray("[ayar\nip=a\n"), "ip", "a"}},
             {"blanks behind a heading that isn't closed", {QByteArray("[ AYAR \r\nip=a\r\n"), "ip", "a"}},
             {"heading that isn't closed, a closed one behind it",
              {QByteArray("[ayar\nip=a\n[ayar]\nip=b\n"), "ip", "b"}},
             {"another section's heading that isn't closed", {QByteArray("[ayar]\n[x\nip=a\n"), "ip", ""}},
             {"bracket before an entry", {QByteArray("[ayar]\n[x=1\nip=a\n"), "ip", "a"}},
             {"blanks around the key", {QByteArray("[ayar]\n \tip\t =a\n"), "ip", "a"}},
             {"key asked for with blanks", {QByteArray("[ayar]\nip=a\n"), " ip ", "a"}},
             {"blanks around the value", {QByteArray("[ayar]\nip= \t a b \t \r\n"), "ip", "a b"}},
             {"double quotes", {QByteArray("[ayar]\nip=\"a\"\n"), "ip", "a"}},
             {"single quotes", {QByteArray("[ayar]\nip='a'\n"), "ip", "a"}},
             {"quotes keep blanks", {QByteArray("[ayar]\nip= \" a \" \n"), "ip", " a "}},
             {"one pair of quotes only", {QByteArray("[ayar]\nip=\"\"a\"\"\n"), "ip", "\"a\""}},
             {"unlike quotes stay", {QByteArray("[ayar]\nip=\"a'\n"), "ip", "\"a'"}},
             {"one quote stays", {QByteArray("[ayar]\nip=\"\n"), "ip", "\""}},
             {"quotes around nothing", {QByteArray("[ayar]\nip=\"\"\n"), "ip", ""}},
             {"equals sign in the value", {QByteArray("[ayar]\nip=a=b;c=d\n"), "ip", "a=b;c=d"}},
             {"semicolon in the value", {QByteArray("[ayar]\nip=a ; b\n"), "ip", "a ; b"}},
             {"nothing behind the equals sign", {QByteArray("[ayar]\nip=\n"), "ip", ""}},
             {"no equals sign", {QByteArray("[ayar]\nip\nip=a\n"), "ip", "a"}},
             {"comment", {QByteArray("[ayar]\n;ip=a\n ;ip=b\nip=c\n"), "ip", "c"}},
             {"a comment is asked for", {QByteArray("[ayar]\n;ip=a\n"), ";ip", ""}},
             {"key that begins alike", {QByteArray("[ayar]\nipa=a\ni=b\nip=c\n"), "ip", "c"}},
             {"first of two equal keys", {QByteArray("[ayar]\nip=a\nIP=b\n"), "ip", "a"}},
             {"first of two equal sections", {QByteArray("[ayar]\nip=a\n[x]\n[AYAR]\nip=b\n"), "ip", "a"}},
             {"only the first of two equal sections", {QByteArray("[ayar]\n[x]\n[ayar]\nip=b\n"), "ip", ""}},
             {"same section twice in a row", {QByteArray("[ayar]\n[ayar]\nip=b\n"), "ip", ""}},
             {"key of another section", {QByteArray("[x]\nip=a\n[ayar]\nab=b\n[y]\nip=c\n"), "ip", ""}},
             {"key before any section", {QByteArray("ip=a\n[ayar]\n"), "ip", ""}},
             {"absent key", {QByteArray("[ayar]\nab=a\n"), "ip", ""}},
             {"absent section", {QByteArray("[x]\nip=a\n"), "ip", ""}},
             {"empty file", {QByteArray(), "ip", ""}},
             {"empty key", {QByteArray("[ayar]\nip=a\n"), "", ""}},
             {"last line without end", {QByteArray("[ayar]\r\nip=a"), "ip", "a"}},
             {"mixed line ends", {QByteArray("[ayar]\nx=1\r\ny=2\nip=a\r\n"), "ip", "a"}},
             {"byte order mark", {QByteArray("\xEF\xBB\xBF[ayar]\r\nip=a\r\n"), "ip", "a"}},
             {"byte order mark alone", {QByteArray("\xEF\xBB\xBF"), "ip", ""}},
             {"Turkish letters", {QByteArray("[ayar]\nip=\xDE\xFD\xF0 \xDD\n"), "ip", "Şığ İ"}},
             {"Turkish key in another case", {QByteArray("[ayar]\n\xDE\xD6=a\n"), "şö", "a"}},
             {"ı is another letter than i", {QByteArray("[ayar]\n\xFDp=a\n\xDDp=b\nIP=c\n"), "ip", "c"}},
             {"254 characters",
              {QByteArray("[ayar]\nip=") + QByteArray(254, 'x') + '\n', "ip", QString(254, u'x')}},
             {"255 characters",
              {QByteArray("[ayar]\nip=") + QByteArray(255, 'x') + '\n', "ip", QString(254, u'x')}},
             {"300 characters",
              {QByteArray("[ayar]\nip=") + QByteArray(300, '\xFE') + '\n', "ip", QString(254, u'ş')}},
             {"quotes don't count to the 254",
              {QByteArray("[ayar]\nip=\"") + QByteArray(254, 'x') + "\"\n", "ip", QString(254, u'x')}},
             {"binary junk before the section",
              {QByteArray("\0\xFF\x81=\n\x1A\n[ayar]\nip=a\n", 19), "ip", "a"}}});
    }
    void reads() {
        QFETCH(const ReadsRow, row);
        writeBytes(m_path, row.bytes);
        QCOMPARE(ProfileFile::value(m_path, u"ayar"_s, row.key), row.value);
        QCOMPARE(readBytes(m_path), row.bytes);
    }

    void writes_data() {
        addRows<WritesRow>(
            {{"empty file", {QByteArray(), "ip", "a", QByteArray("[ayar]\r\nip=a\r\n")}},
             {"new value",
              {QByteArray("[ayar]\r\nip=a\r\nx=1\r\n"), "ip", "bcd",
               QByteArray("[ayar]\r\nip=bcd\r\nx=1\r\n")}},
             {"shorter value",
              {QByteArray("[ayar]\r\nip=abc\r\nx=1\r\n"), "ip", "d",
               QByteArray("[ayar]\r\nip=d\r\nx=1\r\n")}},
             {"the key's spelling stays",
              {QByteArray("[AyAr]\r\n IP =a\r\n"), "ip", "b", QByteArray("[AyAr]\r\n IP =b\r\n")}},
             {"blanks and quotes of the old value go",
              {QByteArray("[ayar]\r\nip= \"a\" \r\n"), "ip", "b", QByteArray("[ayar]\r\nip=b\r\n")}},
             {"empty value", {QByteArray("[ayar]\r\nip=a\r\n"), "ip", "", QByteArray("[ayar]\r\nip=\r\n")}},
             {"empty value of a new key",
              {QByteArray("[ayar]\r\n"), "ana_program", "", QByteArray("[ayar]\r\nana_program=\r\n")}},
             {"value for an empty one",
              {QByteArray("[ayar]\nip=\n"), "ip", "a", QByteArray("[ayar]\nip=a\n")}},
             {"first of two equal keys",
              {QByteArray("[ayar]\nip=a\nip=b\n"), "ip", "c", QByteArray("[ayar]\nip=c\nip=b\n")}},
             {"first of two equal sections",
              {QByteArray("[ayar]\nx=1\n[ayar]\nip=b\n"), "ip", "c",
               QByteArray("[ayar]\nx=1\nip=c\n[ayar]\nip=b\n")}},
             {"key of another section stays",
              {QByteArray("[x]\nip=a\n[ayar]\nip=b\n"), "ip", "c", QByteArray("[x]\nip=a\n[ayar]\nip=c\n")}},
             {"comment is no key",
              {QByteArray("[ayar]\n;ip=a\n"), "ip", "b", QByteArray("[ayar]\n;ip=a\nip=b\n")}},
             {"new key at the end of its section",
              {QByteArray("[ayar]\r\nx=1\r\n[y]\r\nz=1\r\n"), "ip", "a",
               QByteArray("[ayar]\r\nx=1\r\nip=a\r\n[y]\r\nz=1\r\n")}},
             {"new key before trailing blank lines",
              {QByteArray("[ayar]\r\nx=1\r\n\r\n \t\r\n[y]\r\n"), "ip", "a",
               QByteArray("[ayar]\r\nx=1\r\nip=a\r\n\r\n \t\r\n[y]\r\n")}},
             {"new key before blank lines at the end",
              {QByteArray("[ayar]\nx=1\n\n\n"), "ip", "a", QByteArray("[ayar]\nx=1\nip=a\n\n\n")}},
             {"new key behind inner blank lines",
              {QByteArray("[ayar]\nx=1\n\ny=2\n"), "ip", "a", QByteArray("[ayar]\nx=1\n\ny=2\nip=a\n")}},
             {"new key behind a comment",
              {QByteArray("[ayar]\nx=1\n; son\n\n[y]\n"), "ip", "a",
               QByteArray("[ayar]\nx=1\n; son\nip=a\n\n[y]\n")}},
             {"new key in an empty section",
              {QByteArray("[ayar]\n\n[y]\n"), "ip", "a", QByteArray("[ayar]\nip=a\n\n[y]\n")}},
             {"new key behind a last line without end",
              {QByteArray("[ayar]\r\nx=1"), "ip", "a", QByteArray("[ayar]\r\nx=1\r\nip=a\r\n")}},
             {"new key behind a heading without end",
              {QByteArray("[ayar]"), "ip", "a", QByteArray("[ayar]\r\nip=a\r\n")}},
             {"value of a last line without end",
              {QByteArray("[ayar]\nip=a"), "ip", "b", QByteArray("[ayar]\nip=b")}},
             {"new key below a heading that isn't closed",
              {QByteArray("[ayar\r\nx=1\r\n"), "ip", "a", QByteArray("[ayar\r\nx=1\r\nip=a\r\n")}},
             {"new section at the end",
              {QByteArray("[x]\r\nip=a\r\n"), "ip", "b", QByteArray("[x]\r\nip=a\r\n[ayar]\r\nip=b\r\n")}},
             {"new section behind a last line without end",
              {QByteArray("[x]\nip=a"), "ip", "b", QByteArray("[x]\nip=a\n[ayar]\nip=b\n")}},
             {"new section behind lines of no section",
              {QByteArray("ip=a\n"), "ip", "b", QByteArray("ip=a\n[ayar]\nip=b\n")}},
             {"line ends of the file, LF",
              {QByteArray("[ayar]\nx=1\n"), "ip", "a", QByteArray("[ayar]\nx=1\nip=a\n")}},
             {"mixed line ends stay",
              {QByteArray("[ayar]\r\nx=1\ny=2\r\n\n[z]\n"), "ip", "a",
               QByteArray("[ayar]\r\nx=1\ny=2\r\nip=a\r\n\n[z]\n")}},
             {"mixed line ends, value",
              {QByteArray("[ayar]\nip=1\r\ny=2\n"), "ip", "a", QByteArray("[ayar]\nip=a\r\ny=2\n")}},
             {"byte order mark",
              {QByteArray("\xEF\xBB\xBF[ayar]\r\nip=a\r\n"), "ip", "b",
               QByteArray("\xEF\xBB\xBF[ayar]\r\nip=b\r\n")}},
             {"byte order mark alone",
              {QByteArray("\xEF\xBB\xBF"), "ip", "b", QByteArray("\xEF\xBB\xBF[ayar]\r\nip=b\r\n")}},
             {"Turkish letters",
              {QByteArray("[ayar]\n\xF0=\xFD\n"), "Ğ", "Şİ", QByteArray("[ayar]\n\xF0=\xDE\xDD\n")}},
             {"what the page lacks",
              {QByteArray("[ayar]\n"), "ip", u"\U0001F35E₺"_s, QByteArray("[ayar]\nip=\?\?\n")}},
             {"blanks and quotes as they are",
              {QByteArray("[ayar]\n"), "ip", " \"a\" ", QByteArray("[ayar]\nip= \"a\" \n")}},
             {"value cut at a line feed",
              {QByteArray("[ayar]\n"), "ip", "a\n[x]\nb=c", QByteArray("[ayar]\nip=a\n")}},
             {"value cut at a return", {QByteArray("[ayar]\n"), "ip", "a\rb", QByteArray("[ayar]\nip=a\n")}},
             {"value cut at a NUL",
              {QByteArray("[ayar]\n"), "ip", QString(u'a' + QString(QChar(u'\0')) + u'b'),
               QByteArray("[ayar]\nip=a\n")}},
             {"key with blanks around", {QByteArray("[ayar]\n"), " ip ", "a", QByteArray("[ayar]\nip=a\n")}},
             {"binary junk stays",
              {QByteArray("\0\xFF\x81=\r\r\n\x1A\n[ayar]\nip=a\n\x8D\0", 24), "ip", "bb",
               QByteArray("\0\xFF\x81=\r\r\n\x1A\n[ayar]\nip=bb\n\x8D\0", 25)}}});
    }
    void writes() {
        QFETCH(const WritesRow, row);
        writeBytes(m_path, row.before);
        QVERIFY(ProfileFile::setValue(m_path, u"ayar"_s, row.key, row.value));
        QCOMPARE(readBytes(m_path), row.after);
        QCOMPARE(
            QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden).size(),
            1);
    }

    void refusesNames_data() {
        addRows<RefusesNamesRow>({{"empty section", {"", "ip"}},
                                  {"blank section", {" ", "ip"}},
                                  {"section with a bracket", {"a]b", "ip"}},
                                  {"section with a line end", {"a\nb", "ip"}},
                                  {"empty key", {"ayar", ""}},
                                  {"key with an equals sign", {"ayar", "a=b"}},
                                  {"key with a line end", {"ayar", "a\r\nb"}},
                                  {"key like a comment", {"ayar", ";a"}},
                                  {"key like a heading", {"ayar", "[a]"}}});
    }
    void refusesNames() {
        QFETCH(const RefusesNamesRow, row);
        const QByteArray bytes("[ayar]\nip=a\n");
        writeBytes(m_path, bytes);
        QVERIFY(!ProfileFile::setValue(m_path, row.section, row.key, u"b"_s));
        QCOMPARE(readBytes(m_path), bytes);
    }

    void writtenComesBack_data() {
        addRows<WrittenComesBackRow>(
            {{"plain", {"a", "a"}},
             {"empty", {"", ""}},
             {"blanks around go", {"  a b  ", "a b"}},
             {"quotes go", {"\"a\"", "a"}},
             {"connection string",
              {"Provider=x;Data Source=C:\\a b\\k.data;", "Provider=x;Data Source=C:\\a b\\k.data;"}},
             {"heading as a value", {"[x]", "[x]"}},
             {"300 characters", {QString(300, u'İ'), QString(254, u'İ')}}});
    }
    void writtenComesBack() {
        QFETCH(const WrittenComesBackRow, row);
        QVERIFY(ProfileFile::setValue(m_path, u"ayar"_s, u"x"_s, u"1"_s));
        QVERIFY(ProfileFile::setValue(m_path, u"ayar"_s, u"ip"_s, row.value));
        QCOMPARE(ProfileFile::value(m_path, u"AYAR"_s, u"IP"_s), row.read);
        QCOMPARE(ProfileFile::value(m_path, u"ayar"_s, u"x"_s), u"1"_s);
    }

private:
    QScopedPointer<QTemporaryDir> m_folder;
    QString m_path;
};

QTEST_GUILESS_MAIN(TestProfileFile)
#include "test_profilefile.moc"
