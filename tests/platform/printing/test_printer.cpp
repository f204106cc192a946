#include <unistd.h>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <future>
#include <vector>

#include "printing/printer.h"
#include "rows.h"
#include "runtime/runtimeerror.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

QString output(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        return u"%1 failed: %2"_s.arg(program, QString::fromUtf8(process.readAllStandardError()));
    return QString::fromUtf8(process.readAllStandardOutput());
}

/// The lines that stand on the pages; runs of blanks count as one, pages are divided by a form feed.
QStringList printedLines(const QString& file) {
    QString text = output(u"pdftotext"_s, {u"-layout"_s, file, u"-"_s});
    text.remove(QLatin1Char('\f'));
    QStringList lines;
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        if (!line.trimmed().isEmpty())
            lines << line.simplified();
    }
    return lines;
}

int pageCount(const QString& file) {
    const QString text = output(u"pdfinfo"_s, {file});
    return QRegularExpression(u"Pages:\\s+(\\d+)"_s).match(text).captured(1).toInt();
}

/// Width and height of the first page in millimetres.
QSizeF pageSize(const QString& file) {
    const QString text = output(u"pdfinfo"_s, {file});
    const auto match = QRegularExpression(u"Page size:\\s+([\\d.]+) x ([\\d.]+) pts"_s).match(text);
    return QSizeF(match.captured(1).toDouble(), match.captured(2).toDouble()) / 72 * 25.4;
}

/// The left edge of a word on the first page, in points.
double leftEdgeOf(const QString& word, const QString& file) {
    const QString text = output(u"pdftotext"_s, {u"-bbox"_s, file, u"-"_s});
    const QRegularExpression pattern(u"xMin=\"([\\d.]+)\"[^>]*>%1<"_s.arg(word));
    const auto match = pattern.match(text);
    return match.hasMatch() ? match.captured(1).toDouble() : -1;
}

}  // namespace

class PrinterTest : public QObject {
    Q_OBJECT

    struct TextsRow {
        QString text;
        QStringList lines;
    };
    struct TheSlipIsARollRow {
        int lines;
        double shortest, longest;
    };

private Q_SLOTS:
    void initTestCase() {
        QVERIFY2(!QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty(),
                 "pdftotext (package poppler-utils) is needed");
    }

    void init() {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        printInto(m_dir->filePath(u"slips"_s));
    }

    void texts_data() {
        const QStringList two{u"bir"_s, u"iki"_s};
        addRows<TextsRow>(
            {{"one line", {"bir", QStringList{u"bir"_s}}},
             {"CR LF", {"bir\r\niki", two}},
             {"LF", {"bir\niki", two}},
             {"CR", {"bir\riki", two}},
             {"a break at the end", {"bir\r\niki\r\n", two}},
             {"Turkish letters", {u"ÇĞİÖŞÜ çğıöşü Iıİi"_s, QStringList{u"ÇĞİÖŞÜ çğıöşü Iıİi"_s}}},
             {"letters that fonts join", {"fi fl ffi ffl ofis tt", QStringList{u"fi fl ffi ffl ofis tt"_s}}},
             {"signs of mark-up stay text", {"<b>A&B</b> 5 < 6 %1", QStringList{u"<b>A&B</b> 5 < 6 %1"_s}}},
             {"a receipt",
              {u"\r\n Tarih 05.03.2026\r\n Saat 14:07:09\r\nMüşteri :PEŞİN MÜŞTERİ\r\n\r\nKola 1 lt\r\n"
               u"2,5 X 10,00 T.L. = 25,00 T.L.\r\n\r\n0 X 0,00 T.L. = 0,00 T.L.\r\n\r\n"
               u"\tTOPLAM TUTAR  :\t25,00\r\n\r\n\tTEŞEKKÜR EDERİZ"_s,
               QStringList{u"Tarih 05.03.2026"_s, u"Saat 14:07:09"_s, u"Müşteri :PEŞİN MÜŞTERİ"_s,
                           u"Kola 1 lt"_s, u"2,5 X 10,00 T.L. = 25,00 T.L."_s, u"0 X 0,00 T.L. = 0,00 T.L."_s,
                           u"TOPLAM TUTAR : 25,00"_s, u"TEŞEKKÜR EDERİZ"_s}}}});
    }

    void texts() {
        QFETCH(const TextsRow, row);
        print({row.text});
        QCOMPARE(printedLines(job(1)), row.lines);
        QCOMPARE(pageCount(job(1)), 1);
    }

    void printsPileUpToOneJob() {
        print({u"bir"_s, u"iki"_s});
        QCOMPARE(printedLines(job(1)), QStringList({u"bir"_s, u"iki"_s}));
        QCOMPARE(jobs(), QStringList{u"0001.pdf"_s});
    }

    void tabsGoToStops() {
        print({u"AAA\nBBB\tCCC\n0000000\tDDD\n00000000\tEEE\n\t\tFFF"_s});
        const double start = leftEdgeOf(u"BBB"_s, job(1));
        const double stop = leftEdgeOf(u"CCC"_s, job(1)) - start;
        // Eight digits of a ten-point face are 35 to 55 points wide.
        QVERIFY2(start > 0 && stop > 35 && stop < 55, qPrintable(QString::number(stop)));
        const auto isAt = [&](const char* word, double where) {
            return std::abs(leftEdgeOf(QString::fromLatin1(word), job(1)) - start - where) < 2;
        };
        QVERIFY(isAt("DDD", stop));
        QVERIFY(isAt("EEE", 2 * stop));
        QVERIFY(isAt("FFF", 2 * stop));
    }

    void longLinesBreak_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("without a blank") << QString(500, QLatin1Char('W'));
        QTest::newRow("of words") << u"sözcük "_s.repeated(71) + u"son"_s;
    }

    void longLinesBreak() {
        QFETCH(QString, text);
        print({text});
        const QStringList lines = printedLines(job(1));
        QVERIFY(lines.size() > 5);
        const QString joined = lines.join(text.contains(QLatin1Char(' ')) ? u" "_s : QString());
        QCOMPARE(joined, text);
    }

    void manyLinesTakeSeveralPages() {
        QStringList lines;
        for (int i = 1; i <= 200; ++i)
            lines << u"kalem %1"_s.arg(i);
        print({lines.join(u"\r\n"_s)});
        QVERIFY(pageCount(job(1)) > 1);
        QCOMPARE(printedLines(job(1)), lines);
    }

    void blankLinesAtTheEndTakeNoPage() {
        print({u"bir"_s + u"\r\n"_s.repeated(500)});
        QCOMPARE(pageCount(job(1)), 1);
    }

    void everyPageCarriesText() {
        // Whatever number of lines fills a page exactly is among these.
        for (int count = 55; count <= 75; ++count) {
            QStringList lines;
            for (int i = 1; i <= count; ++i)
                lines << QString::number(i);
            print({lines.join(QLatin1Char('\n'))});
            const QString file = m_dir->filePath(u"slips/"_s + jobs().last());
            const QString text = output(u"pdftotext"_s, {file, u"-"_s});
            const QStringList pages = text.split(QLatin1Char('\f'));
            QCOMPARE(pages.size() - 1, pageCount(file));
            for (int page = 0; page < pages.size() - 1; ++page)
                QVERIFY(!pages.at(page).trimmed().isEmpty());
        }
    }

    void theSlipIsARoll_data() {
        addRows<TheSlipIsARollRow>({{"one line: 80 by 80", {1, 79.5, 80.5}},
                                    {"thirty lines: longer", {30, 100.0, 200.0}},
                                    {"two hundred lines: not endless", {200, 296.0, 298.0}}});
    }

    void theSlipIsARoll() {
        QFETCH(const TheSlipIsARollRow, row);
        print({u"kalem\n"_s.repeated(row.lines)});
        const QSizeF size = pageSize(job(1));
        QVERIFY2(std::abs(size.width() - 80) < 0.5, qPrintable(QString::number(size.width())));
        QVERIFY2(size.height() >= row.shortest && size.height() <= row.longest,
                 qPrintable(QString::number(size.height())));
    }

    void numbersGoOn() {
        print({u"bir"_s});
        print({u"iki"_s});
        QCOMPARE(jobs(), QStringList({u"0001.pdf"_s, u"0002.pdf"_s}));
        QCOMPARE(printedLines(job(1)), QStringList{u"bir"_s});
        QCOMPARE(printedLines(job(2)), QStringList{u"iki"_s});
    }

    void numbersGoOnBehindTheHighest() {
        print({u"bir"_s});
        QVERIFY(QFile::rename(job(1), job(41)));
        print({u"iki"_s});
        QCOMPARE(jobs(), QStringList({u"0041.pdf"_s, u"0042.pdf"_s}));
    }

    void printersAtOneTimeShareNoFile() {
        constexpr int jobsEach = 20;
        std::vector<std::future<void>> printing;
        for (int i = 0; i < 4; ++i) {
            printing.push_back(std::async(std::launch::async, [] {
                for (int count = 0; count < jobsEach; ++count)
                    print({u"bir"_s});
            }));
        }
        for (std::future<void>& each : printing)
            each.get();
        QCOMPARE(jobs().size(), 4 * jobsEach);
    }

    void aDanglingLinkIsNotFollowed() {
        QVERIFY(QDir().mkpath(m_dir->filePath(u"slips"_s)));
        const QString target = m_dir->filePath(u"elsewhere"_s);
        QVERIFY(QFile::link(target, job(1)));
        print({u"bir"_s});
        QVERIFY(!QFile::exists(target));
        QCOMPARE(printedLines(job(2)), QStringList{u"bir"_s});
    }

    void otherFilesDoNotCount() {
        QVERIFY(QDir().mkpath(m_dir->filePath(u"slips"_s)));
        QFile other(m_dir->filePath(u"slips/abcd.pdf"_s));
        QVERIFY(other.open(QIODevice::WriteOnly));
        print({u"bir"_s});
        QVERIFY(jobs().contains(u"0001.pdf"_s));
    }

    void aFullFolderFails() {
        QVERIFY(QDir().mkpath(m_dir->filePath(u"slips"_s)));
        QFile last(job(9999));
        QVERIFY(last.open(QIODevice::WriteOnly));
        QVERIFY(failure(u"bir"_s) != 0);
        QCOMPARE(last.size(), 0);
    }

    void nothingPrintedMakesNoJob() {
        Printer printer;
        printer.endDocument();
        QVERIFY(!QDir(m_dir->filePath(u"slips"_s)).exists());
    }

    void anEmptyTextIsABlankPage() {
        print({QString()});
        QCOMPARE(pageCount(job(1)), 1);
        QCOMPARE(printedLines(job(1)), QStringList());
    }

    void theTextIsGoneAfterTheJob() {
        Printer printer;
        printer.print(u"bir"_s);
        printer.endDocument();
        printer.endDocument();
        QCOMPARE(jobs(), QStringList{u"0001.pdf"_s});
    }

    void aFolderThatCannotBeMade() {
        QFile file(m_dir->filePath(u"file"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        printInto(file.fileName() + u"/below"_s);
        QCOMPARE(failure(u"bir"_s), RuntimeError::printerError);
    }

    void aFolderThatIsClosedToUs() {
        if (geteuid() == 0)
            QSKIP("the superuser writes anywhere");
        QTemporaryDir closed;
        QVERIFY(QFile::setPermissions(closed.path(), QFile::ReadOwner | QFile::ExeOwner));
        printInto(closed.path());
        QCOMPARE(failure(u"bir"_s), RuntimeError::printerError);
        QVERIFY(QFile::setPermissions(closed.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }

    void theTextIsGoneAfterAFailure() {
        QFile file(m_dir->filePath(u"file"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        printInto(file.fileName());
        Printer printer;
        printer.print(u"bir"_s);
        QVERIFY_THROWS_EXCEPTION(RuntimeError, printer.endDocument());
        printInto(m_dir->filePath(u"slips"_s));
        printer.endDocument();
        QCOMPARE(jobs(), QStringList());
        printer.print(u"iki"_s);
        printer.endDocument();
        QCOMPARE(printedLines(job(1)), QStringList{u"iki"_s});
    }

private:
    static void printInto(const QString& folder) {
        qputenv("KOVANIX_PRINTER", "pdf:" + QFile::encodeName(folder));
    }

    static void print(const QStringList& texts) {
        Printer printer;
        for (const QString& text : texts)
            printer.print(text);
        printer.endDocument();
    }

    /// The number of the error that printing a text ends in; 0 when it succeeds.
    static int failure(const QString& text) {
        try {
            print({text});
        } catch (const RuntimeError& error) {
            return error.number();
        }
        return 0;
    }

    QString job(int number) const {
        return m_dir->filePath(u"slips/%1.pdf"_s.arg(number, 4, 10, QLatin1Char('0')));
    }

    QStringList jobs() const { return QDir(m_dir->filePath(u"slips"_s)).entryList(QDir::Files, QDir::Name); }

    std::unique_ptr<QTemporaryDir> m_dir;
};

QTEST_MAIN(PrinterTest)
#include "test_printer.moc"
