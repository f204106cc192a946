// The reports of a till whose database server doesn't answer: each says so, and shows no figure that it
// hasn't read.

#include <QDir>
#include <QElapsedTimer>
#include <functional>

#include "app/modTurkce.h"
#include "reports/stokraporu.h"
#include "reports/zparogu.h"
#include "salesreporttest.h"
#include "servercluster.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr qint64 longestWait = 10000;  // milliseconds

}  // namespace

class ReportsAwayTest : public SalesReportTest {
    Q_OBJECT

    /// Does a step that shows boxes of the connection's. Asserts that they came in time.
    void tells(const std::function<void()>& step, int boxes = 1) {
        QElapsedTimer timer;
        timer.start();
        QStringList texts;
        qint64 waited = 0;
        bool waitCursor = false;
        m_shop->boxes.askFor([&](const QMessageBox& box) {
            texts.append(box.text());
            waited = timer.elapsed();
            waitCursor = QGuiApplication::overrideCursor() != nullptr;
            return MessageBoxAnswer::ok;
        });
        step();
        m_shop->boxes.askFor({});
        QCOMPARE(texts.size(), boxes);
        QVERIFY2(texts.first().contains(harfcevir(u"Veritabanı sunucusu"_s)), qPrintable(texts.first()));
        QVERIFY2(waited < longestWait, qPrintable(QString::number(waited)));
        QVERIFY(!waitCursor);
    }
    /// The server stands still for the step.
    void tellsOfSilence(const std::function<void()>& step) {
        testServer().pause();
        tells(step);
        testServer().resume();
    }
    /// A failed open counts for a moment.
    bool isBack() {
        m_shop->boxes.askFor([](const QMessageBox&) { return MessageBoxAnswer::ok; });
        const bool back = QTest::qWaitFor([] { return baglantihazir(); }, 8000);
        m_shop->boxes.askFor({});
        return back;
    }

    static Ui::zparogu& z() { return screen<zparogu>().ui; }
    static QStringList zFigures() { return {z().ilk->text(), z().son->text(), z().toplam->text()}; }
    static void openZ() {
        showInFront(screen<zparogu>());
        if (!QTest::qWaitFor([] { return screen<zparogu>().isActiveWindow(); }))
            qFatal("the report doesn't become active");
    }
    static QStringList stockFigures() {
        const Ui::stokraporu& ui = screen<stokraporu>().ui;
        return {ui.urunsayisi->text(), ui.stokgelis->text(), ui.stoksatis->text(), ui.stokkar->text()};
    }

private Q_SLOTS:
    void initTestCase() {
        if (const QString missing = ServerCluster::missing(); !missing.isEmpty())
            QSKIP(qPrintable(missing));
    }
    void init() { openManagersShop(); }
    void cleanup() {
        testServer().resume();
        qunsetenv("KOVANIX_PRINTER");
        SalesTest::cleanup();
    }

    void theZReport() {
        const QString prints = m_shop->file("ciktilar");
        qputenv("KOVANIX_PRINTER", ("pdf:" + prints).toUtf8());
        sell({.total = "182.5"});
        openZ();
        const QStringList figures{"04.05.2026 10:00:00", "04.05.2026 10:00:00", "182,50 "};
        QCOMPARE(zFigures(), figures);
        tellsOfSilence([] { z().Command3->click(); });
        QCOMPARE(zFigures(), QStringList({"", "", ""}));
        // Nor does it print them: it reads once more.
        testServer().stop();
        tells([] { z().Command1->click(); });
        QVERIFY(QDir(prints).entryList({"*.pdf"}).isEmpty());
        QVERIFY(testServer().restart());
        QVERIFY(isBack());
        z().Command1->click();
        QCOMPARE(zFigures(), figures);
        QCOMPARE(QDir(prints).entryList({"*.pdf"}).size(), 1);
    }

    /// The first rows are there when the server falls silent.
    void theZReportInTheMidst() {
        m_shop->run(
            "INSERT INTO satislar (tarih, toplam) SELECT '2026-05-04 10:00:00', 1 FROM generate_series(1, "
            "45000)");
        openZ();
        QCOMPARE(z().toplam->text(), "45.000,00 ");
        const auto silence = connect(z().ilk, &QLineEdit::textChanged, this, [](const QString& text) {
            if (!text.isEmpty())
                testServer().pause();
        });
        tells([] { z().Command3->click(); });
        disconnect(silence);
        testServer().resume();
        QCOMPARE(zFigures(), QStringList({"", "", ""}));
    }

    void theStockReport() {
        tellsOfSilence([] { showInFront(screen<stokraporu>()); });
        QCOMPARE(stockFigures(), QStringList({"", "", "", ""}));
        QCOMPARE(screen<stokraporu>().ui.vkFrame1->titleNote(), QString());
    }

    void theSalesReportWithAnotherRange() {
        sell();
        sell({.moment = "2026-04-20 10:00:00", .name = "Süt"});
        open();
        form().acilis.setInterval(0);
        const QStringList sums = footers();
        const QString range = words();
        QCOMPARE(names(), QStringList{"Ekmek"});
        tellsOfSilence([this] { report().ayliksatis->click(); });
        // What stands there is still what its title says.
        QCOMPARE(names(), QStringList{"Ekmek"});
        QCOMPARE(footers(), sums);
        QCOMPARE(words(), range);
        QVERIFY(isBack());
        report().ayliksatis->click();
        QCOMPARE(names(), (QStringList{"Ekmek", "Süt"}));
    }

    void theSalesReportAfterAnEmptyRange() {
        open();
        form().acilis.setInterval(0);
        QVERIFY(rows().accessibleDescription().startsWith("Bu aralıkta satış yok"));
        tellsOfSilence([this] { report().ayliksatis->click(); });
        QCOMPARE(rows().accessibleDescription(), "Liste okunamadı. Ekranı kapatıp yeniden açın");
    }

    void theSalesReportOpenedWithoutAServer() {
        sell();
        testServer().stop();
        baglantikapat();
        // Twice: a second behind its opening the report reads once more.
        tells(
            [this] {
                open();
                if (form().acilis.interval() > 0)
                    Q_EMIT form().acilis.tick();
            },
            2);
        QCOMPARE(rows().accessibleDescription(), "Liste okunamadı. Ekranı kapatıp yeniden açın");
        QVERIFY(testServer().restart());
    }
};

int main(int argc, char** argv) {
    qputenv("KOVANIX_TEST_SERVER", "1");
    return runTests<ReportsAwayTest>(argc, argv);
}

#include "test_reportsaway.moc"
