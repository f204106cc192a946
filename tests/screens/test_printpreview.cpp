#include "screens/printpreview.h"

#include <sys/resource.h>
#include <QMessageBox>
#include <QPointer>
#include <csignal>
#include <memory>

#include "app/modTurkce.h"
#include "barelist.h"
#include "desktop/focus.h"
#include "ordinaryuser.h"
#include "pdfpages.h"
#include "runtests.h"
#include "runtime/screenregistry.h"
#include "screens/focusreturn.h"
#include "screens/pageview.h"
#include "shopfixture.h"
#include "widgets/drawnbutton.h"
#include "widgets/vklabel.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

const ListTraits& products() {
    static const ListTraits stored{
        .source = u"urunler"_s,
        .columns = {{u"NO"_s, u"no"_s, {}, 114},
                    {u"~R~N ADI"_s, u"urun"_s, {}, 292},
                    {u"SATI@ F!YATI"_s, u"satis"_s, u"#,##0.00"_s, 150}},
        .filter = {{u"satis"_s}, {}},
        .scanField = {},
        .nameField = u"urun"_s,
        .unit = u"ürün"_s,
        .icon = {},
        .noneYet = {},
        .noneYetHint = {},
    };
    return stored;
}

/// A list that is printed as the till's reports are.
class Report : public BareList {
public:
    Report() : BareList(products()) { frame.layout()->addWidget(&field); }

    void form_load() override {
        connectData();
        showRows();
        storeWidths();
        ekrandonat(*this);
        grid.column(1).setFooterText(u"TOPLAM"_s);
        grid.column(2).setFooterText(u"1.234,50"_s);
        PrintInfo& info = grid.printInfo();
        info.pageHeader = u"Rapor4 Mayıs 2026 Pazartesi"_s;
        info.pageHeaderFont = {.name = u"Times New Roman"_s, .size = 14, .bold = true, .italic = true};
        info.pageFooter = u"ACME International Co.\\t\\tPage \\p of \\P"_s;
        info.pageFooterFont = {.name = u"Times New Roman"_s, .italic = true};
        info.repeatColumnHeaders = true;
        info.margins = {720, 720, 720, 720};
        info.previewCaption = u"Rapor"_s;
        field.setFocus();
    }

    QLineEdit field;
};

struct TurnRow {
    const char* name;
    int from;
    QList<Qt::Key> keys;
    int page;
};

struct LeaveRow {
    const char* name;
    void (*leave)(PrintPreview& preview);
};

struct FailureRow {
    const char* name;
    QString printer;  ///< below the test's folder
    bool fullDisk = false;
    bool ordinaryUser = false;
    QString reason = {};  ///< what the box says below its first line; nothing for whatever the system says
};

/// No file of this process gets larger than that while it lives.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes) {
        ::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit limit = m_before;
        limit.rlim_cur = bytes;
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() { ::setrlimit(RLIMIT_FSIZE, &m_before); }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit m_before{};
};

}  // namespace

Q_DECLARE_METATYPE(TurnRow)
Q_DECLARE_METATYPE(LeaveRow)
Q_DECLARE_METATYPE(FailureRow)

class TestPrintPreview : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void opens();
    void turning_data();
    void turning();
    void turnsFromEveryControl();
    void ends();
    void oneAndOnlyPage();
    void wideAndWhole();
    void wideShowsWhatIsPrinted_data();
    void wideShowsWhatIsPrinted();
    void wideByKey();
    void keysOfAWidePage();
    void leaving_data();
    void leaving();
    void goesWithItsOpener();
    void openedTwice();
    void keepsItsRows();
    void printsOneJob();
    void printsWhatIsShown();
    void aScanPrintsNothing();
    void twoTapsPrintOnce();
    void failures_data();
    void failures();

private:
    Report& report() const { return screen<Report>(); }
    PrintPreview& open(int products = 60);
    PageView& view() const { return *screen<PrintPreview>().ui.sayfalar; }
    DrawnButton& button(const char* name) const {
        return *screen<PrintPreview>().findChild<DrawnButton*>(QLatin1StringView(name));
    }
    QString label() const { return screen<PrintPreview>().ui.sayfa->caption(); }
    static void press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
    QString jobs() const { return m_shop->file(u"yazilan"_s); }
    QStringList printed() const { return QDir(jobs()).entryList(QDir::Files); }

    std::unique_ptr<ShopFixture> m_shop;
};

void TestPrintPreview::init() {
    m_shop = std::make_unique<ShopFixture>();
    m_shop->openShop();
    qputenv("KOVANIX_PRINTER", "pdf:" + QFile::encodeName(jobs()));
}

void TestPrintPreview::cleanup() {
    QVERIFY(allAnswered(m_shop->boxes));
    m_shop.reset();
}

PrintPreview& TestPrintPreview::open(int products) {
    m_shop->run(
        u"INSERT INTO urunler (urun, satis) WITH RECURSIVE n(i) AS (VALUES (1) UNION ALL SELECT i + 1 "
        u"FROM n WHERE i < %1) SELECT 'Ürün ' || i, i + 0.5 FROM n WHERE i <= %1"_s.arg(products));
    showInFront(report());
    report().resize(1024, 768);
    if (!QTest::qWaitForWindowActive(&report()))
        qFatal("the report doesn't become active");
    printPreview(report().grid, report());
    auto& preview = screen<PrintPreview>();
    preview.setWindowState(Qt::WindowNoState);
    preview.resize(1024, 768);
    if (!QTest::qWaitFor([&preview] { return preview.isActiveWindow(); }))
        qFatal("the preview doesn't become active");
    QCoreApplication::processEvents();
    return preview;
}

void TestPrintPreview::opens() {
    const PrintPreview& preview = open();
    QCOMPARE(preview.windowTitle(), u"Rapor"_s);
    QCOMPARE(preview.windowModality(), Qt::NonModal);
    QCOMPARE(label(), u"Toplam 2 sayfa  1  sayfadasınız."_s);
    QCOMPARE(button("yazdir").caption(), u"Yazdır"_s);
    QCOMPARE(button("kapat").caption(), u"Kapat"_s);
    QVERIFY(button("kapat").hasFocus());
    QVERIFY(!view().isWide());
    QVERIFY(view().rect().contains(view().pageRect()));
    QVERIFY(report().isVisible());
}

void TestPrintPreview::turning_data() {
    QTest::addColumn<TurnRow>("row");
    for (const TurnRow& row : QList<TurnRow>{
             {"Page Down", 0, {Qt::Key_PageDown}, 1},
             {"Page Up", 2, {Qt::Key_PageUp}, 1},
             {"right", 0, {Qt::Key_Right, Qt::Key_Right}, 2},
             {"left", 2, {Qt::Key_Left}, 1},
             {"down", 0, {Qt::Key_Down}, 1},
             {"up", 2, {Qt::Key_Up}, 1},
             {"End", 0, {Qt::Key_End}, 3},
             {"Home", 3, {Qt::Key_Home}, 0},
             {"beyond the last", 3, {Qt::Key_PageDown}, 3},
             {"before the first", 0, {Qt::Key_PageUp}, 0},
         })
        QTest::newRow(row.name) << row;
}

void TestPrintPreview::turning() {
    QFETCH(const TurnRow, row);
    open(140);
    view().turnTo(row.from);
    for (const Qt::Key key : row.keys)
        press(key);
    QCOMPARE(view().page(), row.page);
    QCOMPARE(label(), u"Toplam 4 sayfa  %1  sayfadasınız."_s.arg(row.page + 1));
}

void TestPrintPreview::turnsFromEveryControl() {
    open(300);
    int turned = 0;
    for (const char* name : {"yazdir", "kapat", "sonraki", "onceki"}) {
        button(name).setFocus();
        QVERIFY(button(name).hasFocus());
        press(Qt::Key_Right);
        QCOMPARE(view().page(), ++turned);
    }
    view().setFocus();
    press(Qt::Key_Right);
    QCOMPARE(view().page(), ++turned);
}

void TestPrintPreview::ends() {
    open();
    QVERIFY(!button("onceki").isEnabled());
    QVERIFY(button("sonraki").isEnabled());
    button("sonraki").setFocus();
    press(Qt::Key_Space);
    QCOMPARE(view().page(), 1);
    QVERIFY(button("onceki").isEnabled());
    QVERIFY(!button("sonraki").isEnabled());
    QVERIFY(view().hasFocus());  // and no button that prints
    QTest::mouseClick(&button("onceki"), Qt::LeftButton);
    QCOMPARE(view().page(), 0);
    QVERIFY(!button("onceki").isEnabled());
}

void TestPrintPreview::oneAndOnlyPage() {
    open(0);
    QCOMPARE(label(), u"Toplam 1 sayfa  1  sayfadasınız."_s);
    QVERIFY(!button("onceki").isEnabled());
    QVERIFY(!button("sonraki").isEnabled());
}

void TestPrintPreview::wideAndWhole() {
    open();
    const QRect whole = view().pageRect();
    QTest::mouseClick(&view(), Qt::LeftButton, {}, whole.center());
    QVERIFY(view().isWide());
    QCOMPARE(view().pageRect().width(), view().width());
    // What was touched is still in the middle.
    QVERIFY(std::abs(view().pageRect().center().y() - view().rect().center().y()) <= 2);
    QVERIFY(!button("sonraki").isVisible());

    QTest::mousePress(&view(), Qt::LeftButton, {}, {500, 400});
    QTest::mouseMove(&view(), {500, 300});
    QTest::mouseMove(&view(), {500, -5000});
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, {500, -5000});
    QVERIFY(view().isWide());
    QCOMPARE(view().pageRect().bottom(), view().rect().bottom());
    QTest::mousePress(&view(), Qt::LeftButton, {}, {500, 10});
    QTest::mouseMove(&view(), {500, 9000});
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, {500, 9000});
    QCOMPARE(view().pageRect().top(), 0);

    QTest::mouseClick(&view(), Qt::LeftButton, {}, {500, 300});
    QCOMPARE(view().pageRect(), whole);
    QVERIFY(button("sonraki").isVisible());
    QTest::mouseClick(&view(), Qt::LeftButton, {}, {5, 5});  // beside the page
    QVERIFY(!view().isWide());
}

void TestPrintPreview::wideShowsWhatIsPrinted_data() {
    QTest::addColumn<QSize>("display");
    for (const QSize size : {QSize(800, 600), QSize(1024, 768), QSize(1366, 768), QSize(1920, 1080)})
        QTest::addRow("%dx%d", size.width(), size.height()) << size;
}

/// Of two rows, wherever an empty part of the page is touched.
void TestPrintPreview::wideShowsWhatIsPrinted() {
    QFETCH(const QSize, display);
    open(2);
    view().window()->setWindowState(Qt::WindowNoState);
    view().window()->resize(display);
    QCoreApplication::processEvents();
    const QRect whole = view().pageRect();
    for (const double share : {0.3, 0.5, 0.9}) {
        const int touched = whole.top() + static_cast<int>(share * whole.height());
        QTest::mouseClick(&view(), Qt::LeftButton, {}, QPoint(whole.center().x(), touched));
        QVERIFY(view().isWide());
        const QImage shown = view().grab().toImage().convertToFormat(QImage::Format_Grayscale8);
        int ink = 0;
        for (int y = 20; y < shown.height() / 2; ++y) {
            for (int x = 20; x < shown.width() - 20; ++x)
                ink += qGray(shown.pixel(x, y)) < 100;
        }
        QVERIFY2(ink > 500, qPrintable(QString::number(ink)));
        QTest::mouseClick(&view(), Qt::LeftButton, {}, {500, 300});
    }
}

void TestPrintPreview::wideByKey() {
    open();
    view().setFocus();
    press(Qt::Key_Space);
    QVERIFY(view().isWide());
    press(Qt::Key_Return);
    QVERIFY(!view().isWide());
}

void TestPrintPreview::keysOfAWidePage() {
    open();
    view().setWide(true);
    QCOMPARE(view().pageRect().top(), 0);
    press(Qt::Key_Down);
    const int scrolled = view().pageRect().top();
    QVERIFY(scrolled < 0);
    press(Qt::Key_Up);
    QCOMPARE(view().pageRect().top(), 0);
    press(Qt::Key_Down);
    press(Qt::Key_PageDown);
    QCOMPARE(view().page(), 1);
    QVERIFY(view().isWide());
    QCOMPARE(view().pageRect().top(), 0);
}

void TestPrintPreview::leaving_data() {
    QTest::addColumn<LeaveRow>("row");
    for (const LeaveRow& row : QList<LeaveRow>{
             {"Escape", [](PrintPreview&) { press(Qt::Key_Escape); }},
             {"Kapat", [](PrintPreview& preview) { preview.ui.kapat->click(); }},
             {"the window's X", [](PrintPreview& preview) { preview.close(); }},
         })
        QTest::newRow(row.name) << row;
}

void TestPrintPreview::leaving() {
    QFETCH(const LeaveRow, row);
    // Where screens return to otherwise.
    Screen other;
    QLineEdit barcode(&other);
    other.show();
    setFocusReturn(barcode);
    row.leave(open());
    QVERIFY(!loaded<PrintPreview>());
    QVERIFY(loaded<Report>());
    QTRY_VERIFY(report().field.hasFocus());
    QVERIFY(!barcode.hasFocus());
}

void TestPrintPreview::goesWithItsOpener() {
    const QPointer<PrintPreview> preview(&open());
    unload<Report>();
    QTRY_VERIFY(!preview);
    QVERIFY(!loaded<PrintPreview>());
}

void TestPrintPreview::openedTwice() {
    const PrintPreview* const first = &open();
    view().turnTo(1);
    view().setWide(true);
    m_shop->run(u"DELETE FROM urunler WHERE no > 3"_s);
    report().showRows();
    printPreview(report().grid, report());
    QCOMPARE(&screen<PrintPreview>(), first);
    QCOMPARE(label(), u"Toplam 1 sayfa  1  sayfadasınız."_s);
    QVERIFY(!view().isWide());
}

void TestPrintPreview::keepsItsRows() {
    open();
    m_shop->run(u"DELETE FROM urunler WHERE no > 3"_s);  // nothing holds the file
    report().showRows();
    QCOMPARE(report().grid.model()->rowCount(), 3);
    button("yazdir").click();
    const QList<QStringList> pages = pagesOf(jobs() + u"/0001.pdf");
    QCOMPARE(pages.size(), 2);
    QVERIFY(pages[1].contains(u"60 Ürün 60 60,50"_s));
}

void TestPrintPreview::printsOneJob() {
    open();
    button("yazdir").setFocus();
    press(Qt::Key_Return);
    QCOMPARE(printed(), QStringList{u"0001.pdf"_s});
    const QList<QStringList> pages = pagesOf(jobs() + u"/0001.pdf");
    QCOMPARE(pages.size(), 2);
    QStringList rows;
    for (int page = 0; page < pages.size(); ++page) {
        QStringList lines = pages[page];
        QCOMPARE(lines.takeFirst(), u"Rapor4 Mayıs 2026 Pazartesi"_s);
        QCOMPARE(lines.takeFirst(), u"NO ÜRÜN ADI SATIŞ FİYATI"_s);
        QCOMPARE(lines.takeLast(), u"ACME International Co. Page %1 of 2"_s.arg(page + 1));
        rows << lines;
    }
    QCOMPARE(rows.takeLast(), u"TOPLAM 1.234,50"_s);
    QCOMPARE(rows.size(), 60);
    for (int row = 1; row <= 60; ++row)
        QCOMPARE(rows[row - 1], u"%1 Ürün %1 %1,50"_s.arg(row));
    QVERIFY(loaded<PrintPreview>());
    QVERIFY(!QGuiApplication::overrideCursor());
    QCOMPARE(outputOf(u"pdfinfo"_s, {jobs() + u"/0001.pdf"}).contains(u"(A4)"_s), true);
}

void TestPrintPreview::printsWhatIsShown() {
    showInFront(report());
    report().grid.column(1).setFilterText(u"5"_s);
    open(60);
    unload<PrintPreview>();
    report().showRows();
    report().data.setSort(u"no DESC"_s);
    report().grid.column(0).setWidth(0);
    printPreview(report().grid, report());
    button("yazdir").click();
    const QStringList lines = pagesOf(jobs() + u"/0001.pdf").constFirst();
    QCOMPARE(lines.mid(1, 3),
             (QStringList{u"ÜRÜN ADI SATIŞ FİYATI"_s, u"Ürün 59 59,50"_s, u"Ürün 58 58,50"_s}));
    QCOMPARE(lines.size(), 1 + 1 + 15 + 1 + 1);  // 5, 15, 25, 35, 45, 50 to 59
}

void TestPrintPreview::aScanPrintsNothing() {
    open();
    button("yazdir").setFocus();
    QTest::keyClicks(QApplication::focusWidget(), u"8690 000000012"_s);
    press(Qt::Key_Return);
    press(Qt::Key_Return);  // some scanners send two
    QCOMPARE(printed(), QStringList());
    QVERIFY(loaded<PrintPreview>());
    QElapsedTimer behind;
    behind.start();
    QTRY_VERIFY(behind.hasExpired(350));
    press(Qt::Key_Return);
    QCOMPARE(printed(), QStringList{u"0001.pdf"_s});
}

void TestPrintPreview::twoTapsPrintOnce() {
    open();
    button("yazdir").click();
    button("yazdir").click();
    QCOMPARE(printed(), QStringList{u"0001.pdf"_s});
    QElapsedTimer behind;
    behind.start();
    QTRY_VERIFY(behind.hasExpired(1050));
    button("yazdir").click();
    QCOMPARE(printed().size(), 2);
}

void TestPrintPreview::failures_data() {
    QTest::addColumn<FailureRow>("row");
    for (const FailureRow& row : QList<FailureRow>{
             {"no printer",
              {},
              false,
              false,
              u"Varsayılan yazıcı yok: sistem ayarlarından bir yazıcı seçin."_s},
             {"the folder can't be made", u"dosya/alt"_s},
             {"a full disk", u"yazilan"_s, true},
             {"a folder closed to us", u"kapali"_s, false, true},
         })
        QTest::newRow(row.name) << row;
}

void TestPrintPreview::failures() {
    QFETCH(const FailureRow, row);
    QFile file(m_shop->file(u"dosya"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(QDir().mkpath(m_shop->file(u"kapali"_s)));
    open();
    QVERIFY(QFile::setPermissions(m_shop->file(u"kapali"_s), QFile::ReadOwner | QFile::ExeOwner));
    if (row.printer.isEmpty()) {
        qunsetenv("KOVANIX_PRINTER");
        qputenv("CUPS_SERVER", "/nowhere/cups.sock");
    } else {
        qputenv("KOVANIX_PRINTER", "pdf:" + QFile::encodeName(m_shop->file(row.printer)));
    }
    QString told;
    m_shop->boxes.askFor([&told](const QMessageBox& box) {
        told = box.windowTitle() + u'|' + box.text();
        return 1;
    });
    {
        std::unique_ptr<FullDisk> full;
        std::unique_ptr<OrdinaryUser> user;
        if (row.fullDisk)
            full = std::make_unique<FullDisk>(4096);
        if (row.ordinaryUser)
            user = std::make_unique<OrdinaryUser>();
        button("yazdir").click();
    }
    QVERIFY2(told.startsWith(u"Hata|Yazdırılamadı. Yazıcıyı denetleyip yeniden deneyin.\n"_s + row.reason),
             qPrintable(told));
    QVERIFY(loaded<PrintPreview>());
    QCOMPARE(label(), u"Toplam 2 sayfa  1  sayfadasınız."_s);
    QVERIFY(!QGuiApplication::overrideCursor());
    QVERIFY(!screen<PrintPreview>().ui.sayfalar->window()->findChild<vkFrame*>()->progress());
    QCOMPARE(printed(), QStringList());
    QCOMPARE(QDir(m_shop->file(u"kapali"_s)).entryList(QDir::Files), QStringList());
}

int main(int argc, char** argv) {
    return runTests<TestPrintPreview>(argc, argv);
}

#include "test_printpreview.moc"
