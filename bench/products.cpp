// The products' screen in a catalogue of 20,000 and of a million: opening, adding, changing, deleting.

#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QTimer>

#include "app/frame.h"
#include "catalogue/urunler.h"
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
    OpeningTimes open;
    std::vector<double> check;  ///< of a barcode, when its field is left
    std::vector<double> edit;   ///< from the press to the filled frame
    std::vector<double> saveStored;
    std::vector<double> saveShown;
    std::vector<double> deleteStored;
    std::vector<double> deleteShown;
};

/// Answers every message box with its first button, too.
class Watch : public ListWatch {
public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* box = qobject_cast<QMessageBox*>(watched);
        if (box && event->type() == QEvent::Show) {
            boxes.push_back(milliseconds());
            QTimer::singleShot(0, box, [this, box] {
                answers.push_back(milliseconds());
                box->buttons().constFirst()->click();
            });
        }
        return ListWatch::eventFilter(watched, event);
    }

    void restart() {
        boxes.clear();
        answers.clear();
        m_timer.start();
    }
    double milliseconds() const { return static_cast<double>(m_timer.nsecsElapsed()) / 1e6; }

    std::vector<double> boxes;    ///< when each box was shown, since the restart
    std::vector<double> answers;  ///< and answered

private:
    QElapsedTimer m_timer;
};

void measure(Watch& watch, const QString& folder, Times& times) {
    openList(watch, folder, &Ui::satisekrani::vkCommand3, times.open);

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
    ui.Adodc2->setCurrent(before);
    ui.sutun2->setText(ui.TDBGrid1->column(0).value());
    watch.restart();
    ui.kisisil2->click();
    finishPosted();
    times.deleteStored.push_back(watch.boxes.at(1) - watch.answers.at(0));
    times.deleteShown.push_back(watch.milliseconds() - watch.answers.at(1));
    if (rows.totalCount() != before)
        giveUp("the product wasn't deleted");
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
    measureInTurns(folders.size(), figures.quick() ? 2 : 7, [&](qsizetype shop) {
        measure(watch, folders[shop], all[static_cast<std::size_t>(shop)]);
    });
    if (const int status = application.run([] {}); status != 0)
        return status;

    const std::vector<std::string> names{"20,000 products", "1,000,000 products"};
    for (std::size_t i = 0; i < names.size(); ++i) {
        const Times& times = all[i];
        const auto what = [&](const char* action) { return std::string(action) + ", " + names[i]; };
        const auto median = [](const std::vector<double>& sample) { return percentile(sample, 0.5); };
        times.open.tell(figures, "Products", names[i]);
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
