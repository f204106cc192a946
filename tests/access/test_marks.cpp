#include <fcntl.h>
#include <unistd.h>

#include <QDirIterator>
#include <QFile>
#include <QMessageBox>
#include <QTimer>

#include "access/sifreleme.h"
#include "app/modTrace.h"
#include "app/session.h"
#include "data/baglanmamodulu.h"
#include "loginfixture.h"
#include "rows.h"
#include "runtests.h"
#include "runtime/clock.h"
#include "sales/satisekrani.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

static_assert(!izkapali, "the trace is on in this program");

namespace {

/// Takes over standard error for its lifetime, and has the toolkit's messages go there, as they do without a
/// test's own log.
class ErrorCapture {
public:
    explicit ErrorCapture(const QString& path)
        : m_before(::dup(STDERR_FILENO)), m_handler(qInstallMessageHandler(nullptr)) {
        const int file = ::open(QFile::encodeName(path).constData(), O_CREAT | O_WRONLY | O_APPEND, 0600);
        ::dup2(file, STDERR_FILENO);
        ::close(file);
    }
    ~ErrorCapture() {
        qInstallMessageHandler(m_handler);
        ::dup2(m_before, STDERR_FILENO);
        ::close(m_before);
    }
    ErrorCapture(const ErrorCapture&) = delete;
    ErrorCapture& operator=(const ErrorCapture&) = delete;

private:
    int m_before;
    QtMessageHandler m_handler;
};

const QStringList loadMarks{u"FRM01 giris"_s,      u"FRM01a preMetin"_s, u"FRM01b postMetin"_s,
                            u"FRM02 preEnum"_s,    u"FRM03 postEnum"_s,  u"FRM04 preBaglan"_s,
                            u"FRM05 postListele"_s};

}  // namespace

/// The marks that a login leaves in the trace, and what never gets there.
class MarksTest : public QObject {
    Q_OBJECT

    struct AWrongPasswordRow {
        QString change, mark;
    };

    /// The marks of the families of the login, of the sales screen's load and activation on request.
    static QStringList marks(const ShopFixture& shop, bool withSales = false) {
        QFile log(shop.file(u"kovanix_trace.log"_s));
        if (!log.open(QIODevice::ReadOnly))
            return {};
        QStringList found;
        for (const QString& line : QString::fromUtf8(log.readAll()).split('\n', Qt::SkipEmptyParts)) {
            const QString text = line.section(u"  "_s, 1);
            if (!text.startsWith(u"DB schema") && (withSales || !text.startsWith(u"SAT")))
                found.append(text);
        }
        return found;
    }

    /// The files below a folder that hold these bytes; the database's own are left out on request.
    static QStringList holding(const QString& folder, const QByteArray& bytes, bool databaseToo) {
        QStringList found;
        for (QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories); files.hasNext();) {
            QFile file(files.next());
            if (!databaseToo && file.fileName().contains(u"kovanix.data"))
                continue;
            if (file.open(QIODevice::ReadOnly) && file.readAll().contains(bytes))
                found.append(file.fileName());
        }
        return found;
    }

private Q_SLOTS:
    void initTestCase() { qputenv("TEMP", m_temp.path().toLocal8Bit()); }

    void load() {
        const LoginFixture shop;
        screen<frmLogin>();
        QCOMPARE(marks(shop), loadMarks);
    }

    void aManager() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u"gizli"_s);
        shop.open();
        shop.enter(u"gizli"_s);
        QVERIFY(shop.isLoggedIn());
        const QStringList found = marks(shop, true);
        QStringList expected = loadMarks;
        expected << u"CMD girisyap cagir"_s << u"GIR01 preLoad satisekrani"_s << u"SAT01 Form_Load"_s
                 << u"SAT02 preDB"_s << u"SAT03 dbOK"_s << u"SAT04 Form_Load bitti"_s << u"GIR02 postLoad"_s
                 << u"GIR03 postShow"_s << u"GIR03a uyari unload"_s << u"GIR03b login hide"_s;
        QCOMPARE(found.first(expected.size()), expected);
        // The activation comes with the pending events or behind them, as the window system has it.
        QCOMPARE(marks(shop).last(3),
                 (QStringList{u"GIR03c doevents"_s, u"GIR04 zorder"_s, u"GIR05 tamam"_s}));
        QTRY_COMPARE(marks(shop, true).count(u"SAT05 Form_Activate"_s), 1);
    }

    void theWarehouse() {
        LoginFixture shop;
        shop.addUser(u"Depo"_s, u""_s, u"depo sevk"_s);
        shop.open();
        shop.enter(u""_s);
        QCOMPARE(marks(shop, true),
                 loadMarks + QStringList({u"CMD girisyap cagir"_s, u"GIR depo sevk - cikis"_s}));
    }

    void aWrongPassword_data() {
        addRows<AWrongPasswordRow>(
            {{"plain",
              {u"UPDATE kullanici SET sifre = 'gizli'"_s, u"CMD sifre uyusmadi uid=1 storedlen=5"_s}},
             {"hashed",
              {u"UPDATE kullanici SET sifre = '"_s + hashed("gizli") + u'\'',
               u"CMD sifre uyusmadi uid=1 storedlen=71"_s}},
             {"empty", {u"UPDATE kullanici SET sifre = ''"_s, u"CMD sifre uyusmadi uid=1 storedlen=0"_s}},
             {"gone", {u"DELETE FROM kullanici"_s, u"CMD sifre: kullanici bulunamadi id=1"_s}}});
    }
    void aWrongPassword() {
        QFETCH(const AWrongPasswordRow, row);
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, hashed("eski"));
        shop.open();
        shop.run(row.change);
        shop.enterWrong(u"yanlış"_s);
        QCOMPARE(marks(shop), loadMarks + QStringList({row.mark, u"CMD sifre uyusmadi"_s}));
        QVERIFY(allAnswered(shop.boxes));
    }

    void aUserWithoutId() {
        LoginFixture shop;
        shop.run(u"DROP TABLE kullanici"_s);
        shop.run(
            u"CREATE TABLE kullanici (id TEXT(50), personeladi TEXT(50), sifre TEXT(50), yetki TEXT(50))"_s);
        shop.run(u"INSERT INTO kullanici VALUES (NULL, 'Ayşe', 'gizli', 'Kasiyer')"_s);
        shop.open();
        shop.enterWrong(u"yanlış"_s);
        QCOMPARE(marks(shop),
                 loadMarks + QStringList({u"CMD sifre: kullanici id bos"_s, u"CMD sifre uyusmadi"_s}));
    }

    void aSalesScreenThatDoesntLoad() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u"gizli"_s);
        shop.open();
        // The clock fails for the sales screen and not for the trace.
        Clock::setSource([]() -> QDateTime {
            if (girissifre == u"gizli" && !loaded<satisekrani>() && s_clockReads++ > 0)
                throw RuntimeError(5, u"saat yok"_s);
            return QDateTime(QDate(2026, 5, 3), QTime(7, 5, 9));
        });
        s_clockReads = 0;
        shop.boxes.expectAny(MessageBoxAnswer::ok);
        shop.enter(u"gizli"_s);
        shop.setNow(QDateTime(QDate(2026, 5, 3), QTime(7, 5, 9)));
        QCOMPARE(marks(shop, true),
                 loadMarks + QStringList({u"CMD girisyap cagir"_s, u"GIR01 preLoad satisekrani"_s}));
        QVERIFY(allAnswered(shop.boxes));
    }

    void aPressWhileTheLoginRuns() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u"gizli"_s);
        const frmLogin& login = shop.open();
        int presses = 0;
        // Comes due while pending events are let through.
        bool hidden = false;
        QTimer::singleShot(0, &login, [&login, &presses, &hidden] {
            ++presses;
            hidden = !login.isVisible() && screen<satisekrani>().isVisible();
            login.ui.cmdOK->click();
        });
        login.ui.sifre->setText(u"gizli"_s);
        QTest::keyClick(login.ui.sifre, Qt::Key_Return);
        QCOMPARE(presses, 1);
        QVERIFY(hidden);
        QVERIFY(shop.isLoggedIn());
        QCOMPARE(marks(shop).count(u"GIR01 preLoad satisekrani"_s), 1);
        QCOMPARE(marks(shop).count(u"CMD girisyap cagir"_s), 1);
    }

    void thePasswordStaysInTheProcess() {
        // Typed rightly, wrongly, over a failing table and into a failing start: in no file, no box and no
        // word on standard error.
        const QByteArray right = "SuGibiGizli7";
        const QByteArray wrong = "YanlisSoz9";
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, QString::fromLatin1(right));
        QString shown;
        connect(&shop.boxes, &BoxAnswers::opened, this,
                [&shown](const QMessageBox& box) { shown += box.text(); });
        {
            const ErrorCapture capture(shop.file(u"stderr"_s));
            qWarning("the capture works");
            shop.open();
            shop.enterWrong(QString::fromLatin1(wrong));
            shop.run(u"ALTER TABLE kullanici RENAME TO eski"_s);
            shop.boxes.expectAny(MessageBoxAnswer::ok);
            shop.enter(QString::fromLatin1(wrong) + u'\'');
            shop.run(u"ALTER TABLE eski RENAME TO kullanici"_s);
            shop.refuse(u"UPDATE"_s, u"kullanici"_s, u"dar"_s);
            shop.enter(QString::fromLatin1(right));
            QVERIFY(shop.isLoggedIn());
            QVERIFY(!yoneticisifresimi(QString::fromLatin1(wrong)));
            unloadAllScreens();
            shop.allow(u"UPDATE"_s, u"kullanici"_s);
            shop.open();
            shop.enter(QString::fromLatin1(right));
            QVERIFY(shop.isLoggedIn());
        }
        QVERIFY(allAnswered(shop.boxes));
        QVERIFY(shown.contains(u"Giriş sırasında hata"));
        QCOMPARE(girissifre, QString::fromLatin1(right));
        const QString folder = shop.folder();
        QCOMPARE(holding(folder, "the capture works", false), QStringList{shop.file(u"stderr"_s)});
        QVERIFY(!holding(folder, "GIR05 tamam", false).isEmpty());
        QVERIFY(!holding(m_temp.path(), "GIR05 tamam", false).isEmpty());
        for (const QByteArray& secret : {right, wrong}) {
            QCOMPARE(holding(folder, secret, false), QStringList());
            QCOMPARE(holding(m_temp.path(), secret, false), QStringList());
            QVERIFY(!shown.contains(QString::fromLatin1(secret)));
        }
        // The wrong one isn't even in the database.
        QCOMPARE(holding(folder, wrong, true), QStringList());
    }

private:
    static inline int s_clockReads = 0;
    QTemporaryDir m_temp;
};

int main(int argc, char** argv) {
    return runTests<MarksTest>(argc, argv);
}

#include "test_marks.moc"
