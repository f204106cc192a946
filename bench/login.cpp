// From the press on the login button to a sales screen that is painted and takes a scan, in a small and in a
// large catalogue.

#include <QElapsedTimer>
#include <QTimer>

#include "access/firstscreen.h"
#include "access/frmLogin.h"
#include "app/frame.h"
#include "app/shopfolder.h"
#include "data/baglanmamodulu.h"
#include "desktop/application.h"
#include "figures.h"
#include "runtime/screenregistry.h"
#include "till.h"

namespace {

using namespace kovanix;
using namespace kovanix::bench;

class LoginRun : public QObject {
public:
    LoginRun(QStringList folders, int rounds) : m_folders(std::move(folders)), m_rounds(rounds), m_times(2) {
        m_step.setInterval(0);
        connect(&m_step, &QTimer::timeout, this, &LoginRun::step);
        m_step.start();
    }

    const std::vector<double>& times(std::size_t shop) const { return m_times.at(shop); }

    bool eventFilter(QObject*, QEvent* event) override {
        m_painted = m_painted || event->type() == QEvent::Paint;
        return false;
    }

private:
    void step() {
        if (m_turn == 2 * m_rounds) {
            m_step.stop();
            closeShop();
            QCoreApplication::exit(0);
        } else if (!m_open) {
            openLogin();
        } else if (!m_pressed) {
            if (screen<frmLogin>().isActiveWindow() && screen<frmLogin>().ui.sifre->hasFocus())
                press();
        } else if (m_painted && takesScans(screen<satisekrani>())) {
            m_times[static_cast<std::size_t>(m_turn % 2)].push_back(
                static_cast<double>(m_timer.nsecsElapsed()) / 1e6);
            m_open = m_pressed = m_painted = false;
            ++m_turn;
        }
    }

    void openLogin() {
        // In turns, so that whatever else the machine does falls on both shops alike.
        closeShop();
        prepareShopFolder(m_folders.at(m_turn % 2));
        if (!veritabaninibagla())
            giveUp("the shop doesn't open");
        showFirstScreen();
        m_open = true;
    }

    void press() {
        m_pressed = true;
        m_timer.start();
        screen<frmLogin>().ui.cmdOK->click();
        if (!loaded<satisekrani>())
            giveUp("the login was refused");
        screen<satisekrani>().ui.satisekrani1->viewport()->installEventFilter(this);
        screen<satisekrani>().update();
        m_painted = false;
        screen<satisekrani>().ui.satisekrani1->viewport()->update();
    }

    QStringList m_folders;
    int m_rounds;
    QTimer m_step;
    QElapsedTimer m_timer;
    int m_turn = 0;
    bool m_open = false;
    bool m_pressed = false;
    bool m_painted = false;
    std::vector<std::vector<double>> m_times;
};

}  // namespace

int main(int argc, char** argv) {
    Figures figures(argc, argv);
    const QStringList folders{QString::fromStdString(figures.option("small")),
                              QString::fromStdString(figures.option("large"))};
    int none = 1;
    Application application(none, argv);
    prepareApplication();
    LoginRun run(folders, figures.quick() ? 4 : 20);
    if (const int status = application.run([] {}); status != 0)
        return status;

    const double small = percentile(run.times(0), 0.5);
    const double large = percentile(run.times(1), 0.5);
    figures.tell("Login to ready for a scan, 1,000 products, median", small, "ms");
    figures.tell("Login to ready for a scan, 1,000,000 products, median", large, "ms");
    figures.atMost(300, "Login to ready for a scan, 1,000,000 products, slowest", percentile(run.times(1), 1),
                   "ms");
    figures.atMost(1.2, "Login, 1,000,000 against 1,000 products", large / small, "×");
    return figures.status();
}
