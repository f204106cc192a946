// The product finder in a catalogue of 20,000 and of a million: opening, filtering, sorting, coming back.

#include <QElapsedTimer>
#include <QLineEdit>
#include <functional>

#include "app/frame.h"
#include "catalogue/urunbul.h"
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
    OpeningTimes open;
    std::vector<double> firstKey;
    std::vector<double> nextKey;
    std::vector<double> sort;
    std::vector<double> comeBack;
    std::vector<double> paste;
};

/// From the start of an action until the rows are painted.
double untilPainted(ListWatch& watch, const std::function<void()>& action) {
    watch.painted = false;
    QElapsedTimer timer;
    timer.start();
    action();
    finishPosted();
    const double time = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    if (!watch.painted)
        giveUp("the rows were not painted");
    return time;
}

void measure(ListWatch& watch, const QString& folder, Times& times) {
    openList(watch, folder, &Ui::satisekrani::urunbulmak, times.open);
    urunbul& finder = screen<urunbul>();
    await([&] { return finder.isActiveWindow(); });
    const auto taken = [&](const std::function<void()>& action) { return untilPainted(watch, action); };
    auto* cell = finder.findChild<QLineEdit*>(u"TDBGrid1_filter_2"_s);
    cell->setFocus();
    finishPosted();
    const auto key = [&](const QString& letter) { typeText(finder, letter); };
    times.firstKey.push_back(taken([&] { key(u"a"_s); }));
    for (const QString& letter : {u"k"_s, u"x"_s})
        times.nextKey.push_back(taken([&] { key(letter); }));
    // Shorter texts find more rows.
    for (int i = 0; i < 3; ++i)
        times.nextKey.push_back(taken([&] { pressKey(finder, Qt::Key_Backspace, {}); }));
    times.paste.push_back(taken([&] { cell->insert(QString(1'000'000, u'x')); }));
    taken([&] { cell->clear(); });
    Q_EMIT finder.ui.TDBGrid1->filterChange();
    times.sort.push_back(taken([&] { Q_EMIT finder.ui.TDBGrid1->headClick(2); }));
    QElapsedTimer timer;
    timer.start();
    finder.form_activate();
    times.comeBack.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    finder.ui.vkCommand4->click();
}

}  // namespace

int main(int argc, char** argv) {
    Figures figures(argc, argv);
    const QStringList folders{QString::fromStdString(figures.option("medium")),
                              QString::fromStdString(figures.option("large"))};
    int none = 1;
    Application application(none, argv);
    prepareApplication();
    ListWatch watch;
    std::vector<Times> all(2);
    measureInTurns(folders.size(), figures.quick() ? 2 : 7, [&](qsizetype shop) {
        measure(watch, folders[shop], all[static_cast<std::size_t>(shop)]);
    });
    if (const int status = application.run([] {}); status != 0)
        return status;

    struct Shop {
        std::string name;
        double keyLimit;
        double sortLimit;
    };
    const std::vector<Shop> shops{{"20,000 products", 2, 20}, {"1,000,000 products", 40, 800}};
    for (std::size_t i = 0; i < shops.size(); ++i) {
        const Times& times = all[i];
        const auto what = [&](const char* action) { return std::string(action) + ", " + shops[i].name; };
        times.open.tell(figures, "Finder", shops[i].name);
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
