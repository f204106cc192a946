// From the press on a theme's picture to the repainted sales screen, and what the themes add to the start.

#include <QElapsedTimer>
#include <QSet>
#include <QTimer>

#include "app/frame.h"
#include "appearance/modTema.h"
#include "appearance/tema.h"
#include "desktop/application.h"
#include "figures.h"
#include "runtime/screenregistry.h"
#include "till.h"

namespace {

using namespace kovanix;
using namespace kovanix::bench;

constexpr qsizetype ticketLines = 10;
constexpr qsizetype repaintedAtLeast = 60;  // controls: fewer would mean that not all of it was measured

class PaletteRun : public QObject {
public:
    PaletteRun(QString folder, int presses, int starts)
        : m_folder(std::move(folder)), m_presses(presses), m_starts(starts) {
        m_step.setInterval(0);
        connect(&m_step, &QTimer::timeout, this, &PaletteRun::step);
        m_step.start();
    }

    const std::vector<double>& repaints() const { return m_repaints; }
    const std::vector<double>& sequences() const { return m_sequences; }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            m_painted.insert(watched);
        return false;
    }

private:
    void step() {
        if (!m_sales) {
            m_sales = &openShop(m_folder);
            for (QWidget* control : m_sales->findChildren<QWidget*>())
                control->installEventFilter(this);
        } else if (m_repaints.empty() && !takesScans(*m_sales)) {
            return;  // not active yet
        } else if (m_sales->ui.satisekrani1->rows() < ticketLines + 2) {
            fillTicket();
        } else if (m_repaints.size() < static_cast<std::size_t>(m_presses)) {
            measureRepaint();
        } else if (m_sequences.size() < static_cast<std::size_t>(m_starts)) {
            measureStartSequence();
        } else {
            m_step.stop();
            closeShop();
            QCoreApplication::exit(0);
        }
    }

    void fillTicket() {
        for (const QString& barcode : drawBarcodes(ticketLines, 1)) {
            scan(*m_sales, barcode);
            finishPosted();
        }
        screen<tema>().ui.temaac->setChecked(false);
        // Presses sound a beep, which the display would answer.
        m_pictures = {screen<tema>().ui.resim2, screen<tema>().ui.resim3, screen<tema>().ui.resim4,
                      screen<tema>().ui.resim1};
    }

    void measureRepaint() {
        finishPosted();
        m_painted.clear();
        QAbstractButton* picture =
            m_pictures.at(static_cast<qsizetype>(m_repaints.size()) % m_pictures.size());
        QElapsedTimer timer;
        timer.start();
        picture->click();
        finishPosted();
        m_repaints.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        if (m_painted.size() < repaintedAtLeast)
            giveUp("the sales screen was not repainted");
    }

    void measureStartSequence() {
        unload<tema>();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QElapsedTimer timer;
        timer.start();
        temabaslangicuygula();
        m_sequences.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        finishPosted();
    }

    QString m_folder;
    int m_presses;
    int m_starts;
    QTimer m_step;
    satisekrani* m_sales = nullptr;
    QList<QAbstractButton*> m_pictures;
    QSet<const QObject*> m_painted;
    std::vector<double> m_repaints;
    std::vector<double> m_sequences;
};

}  // namespace

int main(int argc, char** argv) {
    Figures figures(argc, argv);
    const QString folder = QString::fromStdString(figures.option("small"));
    int none = 1;
    Application application(none, argv);
    prepareApplication();
    PaletteRun run(folder, figures.quick() ? 20 : 200, figures.quick() ? 10 : 50);
    if (const int status = application.run([] {}); status != 0)
        return status;

    figures.tell("Repaint by palette, press to painted, median", percentile(run.repaints(), 0.5), "ms");
    figures.atMost(50, "Repaint by palette, press to painted, slowest", percentile(run.repaints(), 1), "ms");
    figures.atMost(15, "Themes at start, median", percentile(run.sequences(), 0.5), "ms");
    return figures.status();
}
