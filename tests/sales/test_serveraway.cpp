// A till whose database server doesn't answer, at the scan, at the storing and at the start.

#include <QElapsedTimer>
#include <functional>

#include "app/modTurkce.h"
#include "data/baglanmamodulu.h"
#include "database/databaseerror.h"
#include "resetprocess.h"
#include "salestest.h"
#include "servercluster.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr qint64 longestWait = 10000;  // milliseconds

}  // namespace

class ServerAwayTest : public SalesTest {
    Q_OBJECT

    /// Does a step that ends in a box. @return how long the box took, in milliseconds
    qint64 untilTheBox(const std::function<void()>& step) {
        QElapsedTimer timer;
        timer.start();
        qint64 waited = -1;
        m_shop->boxes.askFor([&](const QMessageBox&) {
            waited = timer.elapsed();
            return MessageBoxAnswer::ok;
        });
        step();
        return waited;
    }

private Q_SLOTS:
    void initTestCase() {
        if (const QString missing = ServerCluster::missing(); !missing.isEmpty())
            QSKIP(qPrintable(missing));
    }

    void standsStillAtAScan() {
        m_shop->scan(goods::bread);
        testServer().pause();
        const qint64 waited = untilTheBox([this] { m_shop->scan(goods::milk); });
        testServer().resume();
        QVERIFY2(waited >= 0 && waited < longestWait, qPrintable(QString::number(waited)));
        QCOMPARE(m_shop->lines(), 1);
        QTRY_VERIFY_WITH_TIMEOUT(takesATill(), 5000);
        m_shop->ui().barkod->clear();
        m_shop->scan(goods::milk);
        QCOMPARE(m_shop->lines(), 2);
        m_shop->key(Qt::Key_F1);
        QCOMPARE(soldLines().size(), 2);
    }

    void standsStillAtTheStoring() {
        m_shop->scan(goods::bread);
        m_shop->scan(goods::milk);
        testServer().pause();
        const qint64 waited = untilTheBox([this] { m_shop->key(Qt::Key_F1); });
        testServer().resume();
        QVERIFY2(waited >= 0 && waited < longestWait, qPrintable(QString::number(waited)));
        QCOMPARE(m_shop->lines(), 2);
        QCOMPARE(m_shop->toplam(), u"42,50"_s);
        QTRY_VERIFY_WITH_TIMEOUT(takesATill(), 5000);
        m_shop->key(Qt::Key_F1);
        QCOMPARE(m_shop->lines(), 0);
        // Nor did the server get to the statement that it had in its hands when it stood still.
        QCOMPARE(soldLines().size(), 2);
        QCOMPARE(products(goods::bread).first().last(), QVariant(9.0));
        QCOMPARE(products(goods::milk).first().last(), QVariant(9.0));
    }

    void isAwayAtTheStart() {
        resetProcess();
        testServer().stop();
        const QString words = u"Veritabanı sunucusuna ulaşılamıyor: sunucuyu ve ağ bağlantısını denetleyin"_s;
        qint64 second = 0;
        for (int times = 0; times < 2; ++times) {
            QElapsedTimer timer;
            timer.start();
            QString text;
            m_shop->boxes.askFor([&](const QMessageBox& box) {
                text = box.text();
                return MessageBoxAnswer::ok;
            });
            QVERIFY(!baglantihazir());
            second = timer.elapsed();
            QVERIFY2(text.contains(harfcevir(words)), qPrintable(text));
        }
        QVERIFY2(second < 100, qPrintable(QString::number(second)));
        QVERIFY(testServer().restart());
        QTRY_VERIFY_WITH_TIMEOUT(takesATill(), 5000);
        QVERIFY(baglantihazir());
    }

private:
    /// Whether the server takes a till again; a failed open counts for a moment.
    static bool takesATill() {
        try {
            Connection().open(baglantiyazisi());
            return true;
        } catch (const DatabaseError&) {
            return false;
        }
    }
};

int main(int argc, char** argv) {
    qputenv("KOVANIX_TEST_SERVER", "1");
    return runTests<ServerAwayTest>(argc, argv);
}

#include "test_serveraway.moc"
