// The products' screen in a catalogue of 20,000 and of a million: opening, adding, changing, deleting.

#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QTimer>

#include "app/frame.h"
#include "catalogue/urunler.h"
#include "child.h"
#include "desktop/application.h"
#include "figures.h"
#include "runtime/screenregistry.h"
#include "till.h"
#include "widgets/adodc.h"
#include "widgets/tdbgrid.h"

namespace {

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace kovanix::bench;

/// What was measured in one shop, in milliseconds.
struct Times {
    std::vector<double> open;
    std::vector<double> openRatio;  ///< against the engine's own interface
    std::vector<double> check;      ///< of a barcode, when its field is left
    std::vector<double> edit;       ///< from the press to the filled frame
    std::vector<double> saveStored;
    std::vector<double> saveShown;
    std::vector<double> deleteStored;
    std::vector<double> deleteShown;
};

/// Sees when the rows are painted, and answers every message box with its first button.
class Watch : public QObject {
public:
    Watch() { qApp->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint && watched->parent() &&
            watched->parent()->objectName() == u"TDBGrid1")
            painted = true;
        auto* box = qobject_cast<QMessageBox*>(watched);
        if (box && event->type() == QEvent::Show) {
            boxes.push_back(milliseconds());
            QTimer::singleShot(0, box, [this, box] {
                answers.push_back(milliseconds());
                box->buttons().constFirst()->click();
            });
        }
        return false;
    }

    void restart() {
        boxes.clear();
        answers.clear();
        m_timer.start();
    }
    double milliseconds() const { return static_cast<double>(m_timer.nsecsElapsed()) / 1e6; }

    bool painted = false;
    std::vector<double> boxes;    ///< when each box was shown, since the restart
    std::vector<double> answers;  ///< and answered

private:
    QElapsedTimer m_timer;
};

template <class Condition>
void await(Condition condition) {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > 60'000)
            giveUp("a screen doesn't come");
        QCoreApplication::processEvents();
    }
}

void measure(Watch& watch, const QString& folder, Times& times) {
    satisekrani& sales = openShop(folder);
    await([&] { return takesScans(sales); });
    watch.painted = false;
    watch.restart();
    sales.ui.vkCommand3->click();
    await([&] { return watch.painted; });
    times.open.push_back(watch.milliseconds());
    times.openRatio.push_back(times.open.back() / rawListRead(folder.toStdString()));

    urunler& screen = kovanix::screen<urunler>();
    Ui::urunler& ui = screen.ui;
    await([&] { return screen.isActiveWindow(); });
    const qsizetype before = ui.Adodc2->recordset().totalCount();
    ui.Adodc2->setCurrent(before / 2);
    ui.sutun2->setText(ui.TDBGrid1->column(0).value());
    watch.restart();
    ui.duzenle2->click();
    times.edit.push_back(watch.milliseconds());

    ui.kisiekleme2->click();
    finishPosted();
    ui.barkod2->setText(u"no product's"_s);
    watch.restart();
    ui.urun2->setFocus();
    times.check.push_back(watch.milliseconds());
    ui.urun2->setText(u"ÖLÇÜ"_s);
    ui.fiyat->setText(u"1"_s);
    finishPosted();
    watch.restart();
    ui.kayit->click();
    finishPosted();
    times.saveStored.push_back(watch.boxes.at(0));
    times.saveShown.push_back(watch.milliseconds() - watch.answers.at(0));

    const RowSet& rows = ui.Adodc2->recordset();
    if (rows.totalCount() != before + 1)
        giveUp("the product wasn't added");
    ui.sutun2->setText(rows.text(before, 0));
    watch.restart();
    ui.kisisil2->click();
    finishPosted();
    times.deleteStored.push_back(watch.boxes.at(1) - watch.answers.at(0));
    times.deleteShown.push_back(watch.milliseconds() - watch.answers.at(1));
    if (rows.totalCount() != before)
        giveUp("the product wasn't deleted");
    closeShop();
}

}  // namespace

int main(int argc, char** argv) {
    Figures figures(argc, argv);
    const QStringList folders{QString::fromStdString(figures.option("medium")),
                              QString::fromStdString(figures.option("large"))};
    int none = 1;
    Application application(none, argv);
    prepareApplication();
    Watch watch;
    std::vector<Times> all(2);
    QTimer::singleShot(0, [&] {
        // In turns, so that whatever else the machine does falls on both shops alike.
        for (int round = 0; round < (figures.quick() ? 2 : 7); ++round) {
            for (qsizetype shop = 0; shop < folders.size(); ++shop)
                measure(watch, folders[shop], all[static_cast<std::size_t>(shop)]);
        }
        QCoreApplication::exit(0);
    });
    if (const int status = application.run([] {}); status != 0)
        return status;

    const std::vector<std::string> names{"20,000 products", "1,000,000 products"};
    for (std::size_t i = 0; i < names.size(); ++i) {
        const Times& times = all[i];
        const auto what = [&](const char* action) { return std::string(action) + ", " + names[i]; };
        const auto median = [](const std::vector<double>& sample) { return percentile(sample, 0.5); };
        figures.tell(what("Products, press to first paint"), median(times.open), "ms");
        figures.atMost(2.5, what("Products, against reading through the C interface"),
                       median(times.openRatio), "×");
        figures.atMost(5, what("Check of a typed barcode"), median(times.check), "ms");
        figures.atMost(20, what("Change of a product, press to filled frame"), median(times.edit), "ms");
        figures.tell(what("Save of a product, press to notice"), median(times.saveStored), "ms");
        figures.tell(what("Save of a product, notice to repainted list"), median(times.saveShown), "ms");
        figures.tell(what("Deletion of a product, answer to notice"), median(times.deleteStored), "ms");
        figures.tell(what("Deletion of a product, notice to repainted list"), median(times.deleteShown),
                     "ms");
    }
    return figures.status();
}
