#include <sys/stat.h>

#include <QBuffer>
#include <QtTest>

#include "aktar/htmlreader.h"
#include "aktar/newfile.h"
#include "aktar/sheetfile.h"
#include "cells.h"
#include "rows.h"
#include "values/codepage.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

struct HtmlRow {
    QByteArray bytes;
    QList<QStringList> rows;
};

struct FileRow {
    QByteArray bytes;
    QString description;  // of what was read, or the words of the refusal
};

}  // namespace

class FilesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder.emplace(); }
    void cleanup() { m_folder.reset(); }

    void readsPages_data() {
        addRows<HtmlRow>({
            {"as the till writes them",
             {"\xEF\xBB\xBF<!DOCTYPE html>\n<html><head><style>\ntd.t { x:\"<td>y</td>\" "
              "}</style></head><body>\n"
              "<table border=\"1\">\n<thead>\n<tr><th>BARKOD</th><th>ÜRÜN ADI</th></tr>\n</thead>\n<tbody>\n"
              "<tr><td class=\"t\" sdnum=\"1055;0;@\">0012</td><td class=\"n\">a &lt;b&gt; &amp; "
              "&quot;c&quot;</td></tr>\n"
              "</tbody>\n</table>\n</body></html>",
              {{u"BARKOD"_s, u"ÜRÜN ADI"_s}, {u"0012"_s, u"a <b> & \"c\""_s}}}},
            {"without closing tags",
             {"<table><tr><td>a<td>b<tr><td>c</table>", {{u"a"_s, u"b"_s}, {u"c"_s}}}},
            {"empty cells", {"<table><tr><td></td><td>b</td></tr></table>", {{QString(), u"b"_s}}}},
            {"numbered entities",
             {"<table><tr><td>&#350;&#x131;&#0;&#1114112;&yok;&</td></tr></table>",
              {{u"Şı&#0;&#1114112;&yok;&"_s}}}},
            {"line breaks", {"<TABLE><TR><TD>a<BR>b</TD></TR></TABLE>", {{u"a b"_s}}}},
            {"text outside", {"x<table>y<tr>z<td>a</td>w</tr>v</table>u", {{u"a"_s}}}},
            {"Windows-1254", {toWindows1254(u"<table><tr><td>ŞEKER</td></tr></table>"), {{u"ŞEKER"_s}}}},
            {"a tag that doesn't end", {"<table><tr><td>a</td></tr><tr><td>b</td><td", {{u"a"_s}, {u"b"_s}}}},
            {"no table", {"<html>a</html>", {}}},
        });
    }
    void readsPages() {
        QFETCH(const HtmlRow, row);
        QBuffer file;
        file.setData(row.bytes);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(cellsOf(readHtml(file)), row.rows);
    }

    void knowsFiles_data() {
        addRows<FileRow>({
            {"text", {"barkod;ad\n1;a\n", u"CSV, UTF-8, ayırıcı ;"_s}},
            {"tabs", {"barkod\tad\n1\ta\n", u"CSV, UTF-8, ayırıcı sekme"_s}},
            {"page",
             {"\xEF\xBB\xBF<!DOCTYPE html><html><table><tr><td>a</td></tr></table>",
              u"Kasanın .xls dökümü"_s}},
            {"old workbook",
             {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1",
              u"Bu eski biçimli bir .xls dosyası ya da parolası var. Tablo programında açıp parolasız .xlsx ya da .csv olarak kaydedin."_s}},
            {"PDF", {"%PDF-1.7", u"Bu bir PDF dosyası; tablo değil."_s}},
            {"archive of something else", {"PK\x03\x04xxxx", u"Dosya bozuk ya da .xlsx değil"_s}},
            {"only blanks", {"\n \n\n", u"Dosyada hiç satır yok: %1"_s}},
            {"nothing", {"", u"Dosyada hiç satır yok: %1"_s}},
        });
    }
    void knowsFiles() {
        QFETCH(const FileRow, row);
        const QString path = write(u"x.xls"_s, row.bytes);
        QString words;
        const QString failure = failureOf([&] { words = readSheetFile(path).description; });
        QCOMPARE(failure.isEmpty() ? words : failure,
                 row.description.contains(u"%1"_s) ? row.description.arg(path) : row.description);
    }

    void refusesWhatIsNoFile() {
        const QString none = m_folder->filePath(u"yok.csv"_s);
        QCOMPARE(failureOf([&] { readSheetFile(none); }), u"Dosya yok: "_s + none);
        QCOMPARE(failureOf([&] { readSheetFile(m_folder->path()); }),
                 u"Bu bir dosya değil: "_s + m_folder->path());
        QCOMPARE(failureOf([] { readSheetFile(u"/dev/zero"_s); }), u"Bu bir dosya değil: /dev/zero"_s);
        const QString pipe = m_folder->filePath(u"boru"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QCOMPARE(failureOf([&] { readSheetFile(pipe); }), u"Bu bir dosya değil: "_s + pipe);
    }

    void refusesAGigabyte() {
        const QString path = write(u"buyuk.csv"_s, "a;b\n");
        QVERIFY(QFile::resize(path, qint64(1) << 30));  // takes no room
        QCOMPARE(failureOf([&] { readSheetFile(path); }),
                 u"Dosya çok büyük (1024 MB); en çok 256 MB okunur. Bölerek aktarın."_s);
    }

    void aNewFileComesWholeOrNotAtAll() {
        const QString path = m_folder->filePath(u"a b/../yeni.csv"_s);
        QVERIFY(QDir(m_folder->path()).mkdir(u"a b"_s));
        {
            const NewFile file(path, false);
            writeInto(file.path(), "yarım");
        }
        QVERIFY(names().isEmpty());
        {
            NewFile file(path, false);
            writeInto(file.path(), "tam");
            QVERIFY(!QFileInfo::exists(path));
            file.commit();
        }
        QCOMPARE(names(), QStringList{u"yeni.csv"_s});
        QCOMPARE(read(path), "tam");
        const mode_t mask = ::umask(0);
        ::umask(mask);
        struct stat about {};
        QCOMPARE(::stat(QFile::encodeName(path).constData(), &about), 0);
        QCOMPARE(about.st_mode & 0777, 0666 & ~mask);
    }

    void whatIsThereStays() {
        const QString path = write(u"eski.csv"_s, "eski");
        const QString words = u"Bu adla bir dosya zaten var: "_s + path;
        QCOMPARE(failureOf([&] { NewFile(path, false); }), words);
        {
            NewFile file(path, true);
            writeInto(file.path(), "yeni");
            QCOMPARE(read(path), "eski");
            file.commit();
            QCOMPARE(read(path), "yeni");
        }
        // One that somebody makes meanwhile.
        const QString late = m_folder->filePath(u"gec.csv"_s);
        NewFile file(late, false);
        write(u"gec.csv"_s, "onun");
        QCOMPARE(failureOf([&] { file.commit(); }), u"Bu adla bir dosya zaten var: "_s + late);
        QCOMPARE(read(late), "onun");
    }

    void placesThatTakeNothing() {
        const QString folder = m_folder->path();
        QCOMPARE(failureOf([&] { NewFile(folder, true); }), folder + u" yazılamadı: bu bir klasör"_s);
        const QString nowhere = m_folder->filePath(u"yok/a.csv"_s);
        QCOMPARE(failureOf([&] { NewFile(nowhere, true); }), nowhere + u" yazılamadı: klasör yok"_s);
        const QString inFile = write(u"dosya"_s, "") + u"/a.csv"_s;
        QCOMPARE(failureOf([&] { NewFile(inFile, true); }), inFile + u" yazılamadı: klasör yok"_s);
        const QString proc = u"/proc/a.csv"_s;
        QVERIFY(failureOf([&] { NewFile(proc, true); }).startsWith(proc + u" yazılamadı: "_s));
    }

private:
    QString write(const QString& name, const QByteArray& bytes) {
        const QString path = m_folder->filePath(name);
        writeInto(path, bytes);
        return path;
    }
    static void writeInto(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), bytes.size());
    }
    static QByteArray read(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("?");
    }
    QStringList names() const { return QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden); }

    std::optional<QTemporaryDir> m_folder;
};

}  // namespace kovanix::aktar

Q_DECLARE_METATYPE(kovanix::aktar::HtmlRow)
Q_DECLARE_METATYPE(kovanix::aktar::FileRow)

QTEST_GUILESS_MAIN(kovanix::aktar::FilesTest)
#include "test_files.moc"
