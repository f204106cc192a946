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
// Controls: to and from the dark palette nearly all of them change, between the others some.
constexpr qsizetype manyRepainted = 60;
constexpr qsizetype someRepainted = 5;

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
        if (event->type() == QEvent::Paint) {
            m_painted.insert(watched);
            m_lastPaint = m_timer.isValid() ? static_cast<double>(m_timer.nsecsElapsed()) / 1e6 : 0;
        }
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
        } else if (m_pressed) {
            takeRepaint();
        } else if (m_repaints.size() < static_cast<std::size_t>(m_presses)) {
            pressPicture();
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
        screen<tema>().ui.resim1->click();  // the shop keeps the choice of the last run
        m_pictures = {screen<tema>().ui.resim2, screen<tema>().ui.resim3, screen<tema>().ui.resim4,
                      screen<tema>().ui.resim1};
    }

    void pressPicture() {
        m_painted.clear();
        m_pressed = m_pictures.at(static_cast<qsizetype>(m_repaints.size()) % m_pictures.size());
        m_timer.start();
        m_pressed->click();
    }

    /// A turn of the event loop or more later: what was painted, and when the last of it was.
    void takeRepaint() {
        constexpr double atMost = 1000;  // milliseconds
        const bool dark = m_pressed == screen<tema>().ui.resim3 || m_pressed == screen<tema>().ui.resim4;
        if (m_painted.size() < (dark ? manyRepainted : someRepainted)) {
            if (static_cast<double>(m_timer.nsecsElapsed()) / 1e6 > atMost)
                giveUp("the sales screen was not repainted: " + std::to_string(m_painted.size()) +
                       " controls");
            return;
        }
        m_repaints.push_back(m_lastPaint);
        m_pressed = nullptr;
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
    QAbstractButton* m_pressed = nullptr;
    QElapsedTimer m_timer;
    double m_lastPaint = 0;
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
