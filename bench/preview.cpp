// The preview of a list's printed pages: opening it up to its first painted page, and what a printed page
// takes.

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include "app/frame.h"
#include "data/baglanmamodulu.h"
#include "desktop/application.h"
#include "desktop/focus.h"
#include "figures.h"
#include "printing/gridpages.h"
#include "printing/printjob.h"
#include "runtime/runtimeerror.h"
#include "runtime/screenregistry.h"
#include "screens/pageview.h"
#include "screens/printpreview.h"
#include "widgets/adodc.h"
#include "widgets/tdbgrid.h"

namespace {

using namespace kovanix;
using namespace kovanix::bench;
using namespace Qt::StringLiterals;

constexpr double target = 300;  // milliseconds up to the first page, whatever the rows
constexpr double patience = 10000;
constexpr qsizetype printedRows = 20000;

double milliseconds(const QElapsedTimer& timer) {
    constexpr double nanosecondsAMillisecond = 1e6;
    return static_cast<double>(timer.nsecsElapsed()) / nanosecondsAMillisecond;
}

/// A screen that holds nothing but the list.
class ListOnly : public Screen {
public:
    ListOnly() {
        resize(1024, 768);
        grid.setGeometry(rect());
        for (const QString& field : {u"no"_s, u"barkod"_s, u"urun"_s, u"alis"_s, u"satis"_s, u"stok"_s})
            grid.addColumn(field, field, 150, field.endsWith(u"is"_s) ? u"#,##0.00 TL."_s : QString());
        PrintInfo& info = grid.printInfo();
        info.pageHeader = u"Rapor4 Mayıs 2026 Pazartesi"_s;
        info.pageHeaderFont = {.name = u"Times New Roman"_s, .size = 14, .bold = true, .italic = true};
        info.pageFooter = u"ACME International Co.\\t\\tPage \\p of \\P"_s;
        info.pageFooterFont = {.name = u"Times New Roman"_s, .italic = true};
        info.repeatColumnHeaders = true;
        info.margins = {720, 720, 720, 720};
        info.previewCaption = u"Rapor"_s;
        info.previewPageOf = u"Toplam \\P sayfa  \\p  sayfadasınız."_s;
    }

    Adodc source;
    TDBGrid grid{this};
};

/// Notices that what it watches is painted.
class PaintWatch : public QObject {
public:
    bool isPainted = false;
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        isPainted = isPainted || event->type() == QEvent::Paint;
        return false;
    }
};

double openedIn(ListOnly& list) {
    PaintWatch watch;
    QElapsedTimer timer;
    timer.start();
    printPreview(list.grid, list);
    auto& preview = screen<PrintPreview>();
    preview.ui.sayfalar->installEventFilter(&watch);
    while (!watch.isPainted && milliseconds(timer) < patience)
        QCoreApplication::processEvents();
    const double taken = milliseconds(timer);
    if (!watch.isPainted)
        giveUp("no page was painted");
    if (preview.ui.sayfalar->pages().pageCount() < 2)
        giveUp("there are no pages");
    unload<PrintPreview>();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    return taken;
}

void measure(Figures& figures, const std::string& folder) {
    ListOnly& list = screen<ListOnly>();
    list.source.setConnectionString(baglantimetniyap(QString::fromStdString(folder + "/kovanix.data")));
    list.source.setCommandType(Adodc::CommandType::table);
    list.source.setRecordSource(u"urunler"_s);
    list.grid.setDataSource(list.source);
    list.source.refresh();
    showInFront(list);
    QCoreApplication::processEvents();

    const std::string name = QString(u", %L1 rows"_s).arg(list.source.recordset().totalCount()).toStdString();
    const double first = openedIn(list);
    std::vector<double> later;
    for (int i = 0; i < (figures.quick() ? 5 : 20); ++i)
        later.push_back(openedIn(list));
    figures.atMost(target, "Preview, to the first page, first time" + name, first, "ms");
    figures.atMost(target, "Preview, to the first page, slowest later" + name, percentile(later, 1), "ms");

    const QTemporaryDir folderOfJobs;
    qputenv("KOVANIX_PRINTER", "pdf:" + QFile::encodeName(folderOfJobs.path()));
    PrintTable table = list.grid.printTable();
    const PrintInfo info = list.grid.printInfo();
    const QSizeF paper = PrintJob::paper().size(QPageSize::Point);
    const int all = GridPages(table, info, paper).pageCount();
    table.rowCount = std::min(table.rowCount, printedRows);
    const GridPages pages(table, info, paper);
    QElapsedTimer timer;
    timer.start();
    printPages(pages);
    const double page = milliseconds(timer) / pages.pageCount();
    figures.tell("Printing, a page" + name, page, "ms");
    figures.tell("Printing, all " + std::to_string(all) + " pages at that rate" + name, page * all / 1000,
                 "s");
    unload<ListOnly>();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

}  // namespace

int main(int argc, char** argv) {
    Figures figures(argc, argv);
    int none = 1;
    Application application(none, argv);
    prepareApplication();
    try {
        for (const char* shop : {"medium", "large"})
            measure(figures, figures.option(shop));
    } catch (const RuntimeError& error) {
        giveUp(error.what());
    }
    ScreenRegistry::clear();
    return figures.status();
}
