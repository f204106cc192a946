// The power is cut at random moments of a day of trade: what the shop's file holds afterwards.

#include <algorithm>
#include <map>
#include <random>

#include "disk.h"
#include "rows.h"
#include "runtests.h"
#include "shopday.h"
#include "wantedtimes.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr int salesOfTheDay = 200;

struct FileRow {
    QString password;
    bool rollbackJournal = false;
    int cuts = 2000;

    int wantedCuts() const { return wantedTimes("KOVANIX_CUTS", cuts); }
};

/// One day of each kind, traded once.
const ShopDay& dayOf(const FileRow& row) {
    static std::map<std::pair<QString, bool>, ShopDay> days;
    const auto found = days.find({row.password, row.rollbackJournal});
    if (found != days.end())
        return found->second;
    const DayPlan plan{row.password, row.rollbackJournal, salesOfTheDay, 20260503};
    return days.emplace(std::pair(row.password, row.rollbackJournal), tradeForADay(plan)).first->second;
}

/// What a moment of the day was left with.
struct Ruin {
    std::size_t step;
    qsizetype begun;
    qsizetype told;
    QString difference;
};

enum class End { powerCut, kill };

/// Ends the day at random moments, in order, and looks at what is left each time.
/// @return the moments whose files aren't as they must be
QList<Ruin> endTheDay(const ShopDay& day, const QString& password, End end, int times) {
    Disk::Random random(6);
    const std::vector<FileStep>& steps = day.trace.steps;
    std::vector<std::size_t> moments;
    for (int i = 0; i < times; ++i)
        moments.push_back(random() % steps.size());
    std::sort(moments.begin(), moments.end());

    QList<Ruin> ruins;
    Disk disk(day.trace);
    qsizetype begun = 0;
    qsizetype told = 0;
    std::size_t taken = 0;
    for (const std::size_t moment : moments) {
        for (; taken < moment; ++taken) {
            const FileStep& step = steps[taken];
            disk.take(step);
            if (step.kind == FileStep::Kind::begun)
                begun = step.place;
            if (step.kind == FileStep::Kind::told)
                told = step.place;
        }
        // Most of them scattered: the other ways are few.
        const std::array ways{Disk::Cut::lost, Disk::Cut::inOrder, Disk::Cut::scattered,
                              Disk::Cut::scattered};
        const FolderFiles left =
            end == End::kill ? disk.killed(steps[moment]) : disk.cut(ways[random() % ways.size()], random);
        const QString difference = day.book.difference(readShop(left, password), told, begun);
        if (!difference.isEmpty())
            ruins.append({moment, begun, told, difference});
    }
    return ruins;
}

QString describe(const QList<Ruin>& ruins, const ShopDay& day) {
    QString text = u"%1 moments:"_s.arg(ruins.size());
    for (const Ruin& ruin : ruins.first(std::min<qsizetype>(ruins.size(), 10)))
        text += u"\n  at step %1 of %2, %3 statements begun, %4 told: %5"_s.arg(ruin.step)
                    .arg(day.trace.steps.size())
                    .arg(ruin.begun)
                    .arg(ruin.told)
                    .arg(ruin.difference);
    return text;
}

}  // namespace

Q_DECLARE_METATYPE(FileRow)

class PowerCutTest : public QObject {
    Q_OBJECT

    static void addFiles() {
        addRows<FileRow>({
            {"a plain file", {{}, false, 2000}},
            {"a file with a password", {rawKey, false, 2000}},
            {"a plain file of a share", {{}, true, 300}},
            {"a file of a share with a password", {rawKey, true, 300}},
        });
    }

private Q_SLOTS:
    void theDayIsWorthIt_data() { addFiles(); }
    void theDayIsWorthIt() {
        QFETCH(const FileRow, row);
        const ShopDay& day = dayOf(row);
        std::map<FileStep::Kind, int> counts;
        for (const FileStep& step : day.trace.steps)
            ++counts[step.kind];
        qInfo("%d statements; %d writes, %d syncs, %d truncations, %d files made, %d removed",
              static_cast<int>(day.book.statements()), counts[FileStep::Kind::write],
              counts[FileStep::Kind::sync], counts[FileStep::Kind::truncate], counts[FileStep::Kind::create],
              counts[FileStep::Kind::remove]);
        QVERIFY(day.book.statements() > 4 * salesOfTheDay);
        Disk disk(day.trace);
        for (const FileStep& step : day.trace.steps)
            disk.take(step);
        const ShopContents end = readShop(disk.killed(day.trace.steps.back()), row.password);
        QCOMPARE(day.book.difference(end, day.book.statements(), day.book.statements()), QString());
    }

    void nothingThatWasToldIsLost_data() { addFiles(); }
    void nothingThatWasToldIsLost() {
        QFETCH(const FileRow, row);
        const ShopDay& day = dayOf(row);
        const QList<Ruin> ruins = endTheDay(day, row.password, End::powerCut, row.wantedCuts());
        QVERIFY2(ruins.isEmpty(), qPrintable(describe(ruins, day)));
    }

    void aKilledTillLosesNothing_data() { addFiles(); }
    void aKilledTillLosesNothing() {
        QFETCH(const FileRow, row);
        const ShopDay& day = dayOf(row);
        const QList<Ruin> ruins = endTheDay(day, row.password, End::kill, row.wantedCuts() / 2);
        QVERIFY2(ruins.isEmpty(), qPrintable(describe(ruins, day)));
    }

    /// The check itself: nobody keeps anything on a disk that says it has synced and hasn't.
    void aDiskThatLiesIsFound_data() { addFiles(); }
    void aDiskThatLiesIsFound() {
        QFETCH(const FileRow, row);
        ShopDay day = dayOf(row);
        std::erase_if(day.trace.steps,
                      [](const FileStep& step) { return step.kind == FileStep::Kind::sync; });
        QVERIFY(endTheDay(day, row.password, End::powerCut, 50).size() > 40);
    }
};

int main(int argc, char** argv) {
    return runTests<PowerCutTest>(argc, argv);
}

#include "test_powercut.moc"
