// From the press on the picture to the painted number pad, and from the press of its key to the painted
// character; the same for the keyboard of letters.

#include <QElapsedTimer>
#include <QTimer>

#include "app/frame.h"
#include "appearance/keyboard.h"
#include "appearance/keyboardfield.h"
#include "appearance/keyboardscreen.h"
#include "appearance/mdlMonitors.h"
#include "desktop/application.h"
#include "figures.h"
#include "runtime/screenregistry.h"
#include "till.h"
#include "widgets/drawnbutton.h"

namespace {

using namespace kovanix;
using namespace kovanix::bench;

constexpr int atMost = 10'000;  // milliseconds

class KeyboardRun : public QObject {
public:
    KeyboardRun(QString folder, int rounds) : m_folder(std::move(folder)), m_rounds(rounds) {
        m_step.setInterval(0);
        connect(&m_step, &QTimer::timeout, this, &KeyboardRun::step);
        m_step.start();
    }

    struct Times {
        std::vector<double> open;
        std::vector<double> key;
    };
    const Times& pad() const { return m_pad; }
    const Times& letters() const { return m_letters; }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint && watched == m_awaited)
            m_painted = true;
        return false;
    }

private:
    void step() {
        if (!m_sales) {
            m_sales = &openShop(m_folder);
            monitorlerioku();
        } else if (!takesScans(*m_sales)) {
            return;
        } else if (m_round < m_rounds) {
            measure(
                m_pad, [this] { m_sales->ui.Image4->click(); }, 7);
            closeWithout();
            measure(
                m_letters, [this] { openKeyboard(19, *m_sales); }, 63);
            closeWithout();
            ++m_round;
        } else {
            m_step.stop();
            closeShop();
            QCoreApplication::exit(0);
        }
    }

    /// The keyboard that stands open.
    static KeyboardScreen& open() {
        for (Screen* shown : ScreenRegistry::all()) {
            if (auto* keyboard = qobject_cast<KeyboardScreen*>(shown))
                return *keyboard;
        }
        giveUp("no keyboard stands open");
    }

    static void closeWithout() {
        open().kapat_click();
        finishPosted();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void waitForPaint(const QElapsedTimer& timer) {
        while (!m_painted && timer.elapsed() < atMost)
            QCoreApplication::processEvents();
        if (!m_painted)
            giveUp("the keyboard was not painted");
    }

    void measure(Times& times, const std::function<void()>& press, int index) {
        QElapsedTimer timer;
        timer.start();
        m_painted = false;
        press();
        KeyboardScreen& keyboard = open();
        m_awaited = keyboard.ui.yazilan;
        m_awaited->installEventFilter(this);
        waitForPaint(timer);
        times.open.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        while (!keyboard.isActiveWindow() && timer.elapsed() < atMost)
            QCoreApplication::processEvents();
        auto* key = keyboard.findChild<DrawnButton*>(u"vkCommand1_" + QString::number(index));
        for (int i = 0; i < 10; ++i) {
            m_painted = false;
            timer.start();
            key->click();
            waitForPaint(timer);
            times.key.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        }
    }

    QString m_folder;
    int m_rounds;
    QTimer m_step;
    satisekrani* m_sales = nullptr;
    int m_round = 0;
    QWidget* m_awaited = nullptr;
    bool m_painted = false;
    Times m_pad;
    Times m_letters;
};

}  // namespace

int main(int argc, char** argv) {
    Figures figures(argc, argv);
    const QString folder = QString::fromStdString(figures.option("small"));
    int none = 1;
    Application application(none, argv);
    prepareApplication();
    KeyboardRun run(folder, figures.quick() ? 10 : 50);
    if (const int status = application.run([] {}); status != 0)
        return status;

    for (const auto& [name, times] :
         {std::pair("Number pad", &run.pad()), std::pair("Keyboard", &run.letters())}) {
        const std::string board = name;
        figures.tell(board + ", press to first paint, median", percentile(times->open, 0.5), "ms");
        figures.atMost(50, board + ", press to first paint, slowest", percentile(times->open, 1), "ms");
        figures.tell(board + ", key to painted character, median", percentile(times->key, 0.5), "ms");
        figures.atMost(16, board + ", key to painted character, slowest", percentile(times->key, 1), "ms");
    }
    return figures.status();
}
