// How long a till waits whose database server doesn't answer: for each thing that a cashier does, no longer
// than for one answer, however often the till asks and however long its message boxes stand.

#include <QElapsedTimer>
#include <functional>

#include "access/firstscreen.h"
#include "access/frmLogin.h"
#include "access/kullanicilar.h"
#include "app/modTurkce.h"
#include "app/session.h"
#include "catalogue/liste.h"
#include "catalogue/urunbul.h"
#include "catalogue/urunler.h"
#include "data/baglanmamodulu.h"
#include "database/databaseerror.h"
#include "database/failedopens.h"
#include "database/serverengine.h"
#include "desktop/focus.h"
#include "ownsurroundings.h"
#include "reports/satisraporlar.h"
#include "reports/stokraporu.h"
#include "reports/zparogu.h"
#include "runtime/screenregistry.h"
#include "salestest.h"
#include "servercluster.h"
#include "wantedtimes.h"

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QString missingNetwork;  ///< why this program has no network of its own; empty when it has

}  // namespace

class ServerAwayTest : public SalesTest {
    Q_OBJECT

    struct ActionRow {
        std::function<void(ServerAwayTest&)> prepare;
        std::function<void(ServerAwayTest&)> act;
        std::function<void()> trouble;
        bool cutsNetwork;
    };

    /// Shows a screen and has it read what it reads when it becomes active, where no box takes that from it.
    template <class AnyScreen>
    void show() {
        showInFront(screen<AnyScreen>());
        screen<AnyScreen>().activateWindow();
        QCoreApplication::processEvents();
    }
    void checkPrice() {
        ui().fiyargorbarkodu->setText(goods::bread);
        QTest::keyClick(ui().fiyargorbarkodu, Qt::Key_Return);
    }
    void showSalesReport() {
        show<satisraporlar>();
        // A second behind its opening it reads once more.
        Q_EMIT screen<satisraporlar>().acilis.tick();
    }
    static void enterWrongPassword() {
        // One that the list doesn't know is looked up in the table.
        screen<frmLogin>().ui.sifre->setText(u"yanlış"_s);
        screen<frmLogin>().ui.cmdOK->click();
    }
    void scanTwo() {
        m_shop->scan(goods::bread);
        m_shop->scan(goods::milk);
        QCOMPARE(m_shop->lines(), 2);
    }

    static bool takesATill() {
        try {
            Connection().open(baglantiyazisi());
            return true;
        } catch (const DatabaseError&) {
            return false;
        }
    }

private Q_SLOTS:
    void initTestCase() {
        if (const QString missing = ServerCluster::missing(); !missing.isEmpty())
            QSKIP(qPrintable(missing));
        ServerEngine::deadline = std::chrono::milliseconds(wantedTimes("KOVANIX_DEADLINE_MS", 2000));
        FailedOpens::moment = 100ms;
    }
    void cleanup() {
        setLoopback(true);
        testServer().resume();
        QTRY_VERIFY_WITH_TIMEOUT(takesATill(), 20000);
        SalesTest::cleanup();
    }

    void nobodyWaitsTwice_data() {
        using Test = ServerAwayTest;
        struct Action {
            const char* name;
            std::function<void(Test&)> prepare;
            std::function<void(Test&)> act;
        };
        const std::function<void(Test&)> nothing = [](Test&) {};
        const std::array actions{
            Action{"a scan", nothing, [](Test& t) { t.m_shop->scan(goods::bread); }},
            Action{"a price check", [](Test& t) { t.ui().fiyatgor->click(); },
                   [](Test& t) { t.checkPrice(); }},
            Action{"storing a sale", [](Test& t) { t.scanTwo(); },
                   [](Test& t) { t.m_shop->key(Qt::Key_F1); }},
            Action{"the finder", nothing,
                   [](Test& t) {
                       t.ui().urunbulmak->click();
                       t.show<urunbul>();
                   }},
            Action{"the products", nothing, [](Test& t) { t.show<urunler>(); }},
            Action{"the customers", nothing, [](Test& t) { t.show<liste>(); }},
            Action{"the users", nothing, [](Test& t) { t.show<kullanicilar>(); }},
            Action{"the Z report", nothing, [](Test& t) { t.show<zparogu>(); }},
            Action{"the stock report", nothing, [](Test& t) { t.show<stokraporu>(); }},
            Action{"the sales report", nothing, [](Test& t) { t.showSalesReport(); }},
            Action{"the login", nothing, [](Test&) { showFirstScreen(); }},
            Action{"a password", [](Test&) { showFirstScreen(); }, [](Test&) { enterWrongPassword(); }},
        };
        struct Trouble {
            const char* name;
            std::function<void()> begin;
            bool cutsNetwork;
        };
        const std::array troubles{
            Trouble{"stands still", [] { testServer().pause(); }, false},
            Trouble{"fell, and stands still since",
                    [] {
                        testServer().stop();
                        QVERIFY(testServer().restart());
                        testServer().pause();
                    },
                    false},
            Trouble{"behind a network that is cut", [] { QVERIFY(setLoopback(false)); }, true},
        };
        QTest::addColumn<ActionRow>("row");
        for (const Action& action : actions) {
            for (const Trouble& trouble : troubles)
                QTest::addRow("%s, a server that %s", action.name, trouble.name)
                    << ActionRow{action.prepare, action.act, trouble.begin, trouble.cutsNetwork};
        }
    }

    void nobodyWaitsTwice() {
        QFETCH(const ActionRow, row);
        if (row.cutsNetwork && !missingNetwork.isEmpty())
            QSKIP(qPrintable(missingNetwork));
        girisyetki = 1;
        m_shop->run(u"INSERT INTO kullanici (personeladi, sifre, yetki) VALUES ('Ayşe', 'x', 'Yönetici')"_s);
        row.prepare(*this);
        row.trouble();
        QStringList told;
        qint64 reading = 0;  // milliseconds in which the boxes stood
        m_shop->boxes.askFor([&](const QMessageBox& box) {
            told.append(box.text());
            QElapsedTimer stands;
            stands.start();
            QTest::qWait(static_cast<int>(2 * FailedOpens::moment.count()));
            reading += stands.elapsed();
            return MessageBoxAnswer::ok;
        });
        const int lines = m_shop->lines();
        QElapsedTimer timer;
        timer.start();
        row.act(*this);
        const qint64 waited = timer.elapsed() - reading;
        qInfo("%lld ms, %lld boxes", waited, static_cast<long long>(told.size()));
        m_shop->boxes.askFor([](const QMessageBox&) { return MessageBoxAnswer::ok; });
        QVERIFY2(waited <= ServerEngine::deadline.count() * 9 / 8, qPrintable(QString::number(waited)));
        QVERIFY2(told.join(u'\n').contains(harfcevir(u"Veritabanı sunucusu"_s)),
                 qPrintable(told.join(u'\n')));
        QCOMPARE(m_shop->lines(), lines);
    }
};

int main(int argc, char** argv) {
    qputenv("KOVANIX_TEST_SERVER", "1");
    missingNetwork = enterOwnSurroundings();
    return runTests<ServerAwayTest>(argc, argv);
}

#include "test_serveraway.moc"
