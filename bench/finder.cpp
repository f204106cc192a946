// The product finder in a catalogue of 20,000 and of a million: opening, filtering, sorting, coming back.

#include <QElapsedTimer>
#include <QLineEdit>
#include <QTimer>
#include <functional>

#include "app/frame.h"
#include "catalogue/urunbul.h"
#include "child.h"
#include "desktop/application.h"
#include "figures.h"
#include "runtime/screenregistry.h"
#include "till.h"

namespace {

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace kovanix::bench;

/// What was measured in one shop, in milliseconds.
struct Times {
    std::vector<double> open;
    std::vector<double> openRatio;  ///< against the engine's own interface
    std::vector<double> firstKey;
    std::vector<double> nextKey;
    std::vector<double> sort;
    std::vector<double> comeBack;
    std::vector<double> paste;
};

class FinderRun : public QObject {
public:
    FinderRun(QStringList folders, int rounds) : m_folders(std::move(folders)), m_rounds(rounds), m_times(2) {
        m_step.setInterval(0);
        connect(&m_step, &QTimer::timeout, this, &FinderRun::step);
        m_step.start();
    }

    const Times& times(std::size_t shop) const { return m_times.at(shop); }

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
        } else if (!m_sales) {
            // In turns, so that whatever else the machine does falls on both shops alike.
            m_sales = &openShop(m_folders.at(m_turn % 2));
        } else if (!loaded<urunbul>()) {
            if (takesScans(*m_sales))
                open();
        } else if (screen<urunbul>().isActiveWindow()) {
            measure();
            m_sales = nullptr;
            ++m_turn;
        }
    }

    Times& now() { return m_times[static_cast<std::size_t>(m_turn % 2)]; }

    /// From the start of an action until the rows are painted.
    double untilPainted(const std::function<void()>& action) {
        m_painted = false;
        QElapsedTimer timer;
        timer.start();
        action();
        finishPosted();
        const double time = static_cast<double>(timer.nsecsElapsed()) / 1e6;
        if (!m_painted)
            giveUp("the rows were not painted");
        return time;
    }

    void open() {
        m_painted = false;
        QElapsedTimer timer;
        timer.start();
        m_sales->ui.urunbulmak->click();
        screen<urunbul>().ui.TDBGrid1->viewport()->installEventFilter(this);
        while (!m_painted && timer.elapsed() < 60'000)
            QCoreApplication::processEvents();
        now().open.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        now().openRatio.push_back(now().open.back() / rawListRead(m_folders.at(m_turn % 2).toStdString()));
    }

    void measure() {
        urunbul& finder = screen<urunbul>();
        auto* cell = finder.findChild<QLineEdit*>(u"TDBGrid1_filter_2"_s);
        cell->setFocus();
        finishPosted();
        const auto key = [&](const QString& letter) { typeText(finder, letter); };
        now().firstKey.push_back(untilPainted([&] { key(u"a"_s); }));
        for (const QString& letter : {u"k"_s, u"x"_s})
            now().nextKey.push_back(untilPainted([&] { key(letter); }));
        // Shorter texts find more rows.
        for (int i = 0; i < 3; ++i)
            now().nextKey.push_back(untilPainted([&] { pressKey(finder, Qt::Key_Backspace, {}); }));
        now().paste.push_back(untilPainted([&] { cell->insert(QString(1'000'000, u'x')); }));
        untilPainted([&] { cell->clear(); });
        Q_EMIT finder.ui.TDBGrid1->filterChange();
        now().sort.push_back(untilPainted([&] { Q_EMIT finder.ui.TDBGrid1->headClick(2); }));
        QElapsedTimer timer;
        timer.start();
        finder.form_activate();
        now().comeBack.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        finder.ui.vkCommand4->click();
    }

    QStringList m_folders;
    int m_rounds;
    QTimer m_step;
    satisekrani* m_sales = nullptr;
    int m_turn = 0;
    bool m_painted = false;
    std::vector<Times> m_times;
};

}  // namespace

int main(int argc, char** argv) {
    Figures figures(argc, argv);
    const QStringList folders{QString::fromStdString(figures.option("medium")),
                              QString::fromStdString(figures.option("large"))};
    int none = 1;
    Application application(none, argv);
    prepareApplication();
    FinderRun run(folders, figures.quick() ? 2 : 7);
    if (const int status = application.run([] {}); status != 0)
        return status;

    struct Shop {
        std::string name;
        double keyLimit;
        double sortLimit;
    };
    const std::vector<Shop> shops{{"20,000 products", 2, 20}, {"1,000,000 products", 40, 800}};
    for (std::size_t i = 0; i < shops.size(); ++i) {
        const Times& times = run.times(i);
        const auto what = [&](const char* action) { return std::string(action) + ", " + shops[i].name; };
        figures.tell(what("Finder, press to first paint"), percentile(times.open, 0.5), "ms");
        figures.atMost(2.5, what("Finder, against reading through the C interface"),
                       percentile(times.openRatio, 0.5), "×");
        figures.atMost(150, what("First key in a filter cell, to repainted rows"),
                       percentile(times.firstKey, 0.5), "ms");
        figures.atMost(shops[i].keyLimit, what("Every further key, to repainted rows"),
                       percentile(times.nextKey, 0.5), "ms");
        figures.atMost(shops[i].sortLimit, what("Sort by name, to repainted rows"),
                       percentile(times.sort, 0.5), "ms");
        figures.atMost(1, what("Coming back to an unchanged list"), percentile(times.comeBack, 0.5), "ms");
        figures.atMost(2000, what("A million characters pasted into a filter cell"),
                       percentile(times.paste, 1), "ms");
    }
    return figures.status();
}
