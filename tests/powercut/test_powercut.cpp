// The power is cut at random moments of a day of trade: what the shop's file holds afterwards.

#include <algorithm>
#include <map>
#include <random>
#include <tuple>

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
    bool leavesLog = false;

    int wantedCuts() const { return wantedTimes("KOVANIX_CUTS", cuts); }
};

/// One day of each kind, traded once.
const ShopDay& dayOf(const FileRow& row) {
    using Kind = std::tuple<QString, bool, bool>;
    static std::map<Kind, ShopDay> days;
    const Kind kind(row.password, row.rollbackJournal, row.leavesLog);
    const auto found = days.find(kind);
    if (found != days.end())
        return found->second;
    const DayPlan plan{row.password, row.rollbackJournal, row.leavesLog, salesOfTheDay, 20260503};
    return days.emplace(kind, tradeForADay(plan)).first->second;
}

/// What a moment of the day was left with.
struct Ruin {
    std::size_t step;
    qsizetype begun;
    qsizetype told;
    QString difference;
};

enum class End { powerCut, kill };

/// So many random moments of a day, in order.
std::vector<std::size_t> momentsOf(const ShopDay& day, int times) {
    Disk::Random random(6);
    std::vector<std::size_t> moments;
    for (int i = 0; i < times; ++i)
        moments.push_back(random() % day.trace.steps.size());
    std::sort(moments.begin(), moments.end());
    return moments;
}

/// Ends the day at moments, which come in order, and looks at what is left each time.
/// @return the moments whose files aren't as they must be
QList<Ruin> endTheDay(const ShopDay& day, const QString& password, End end,
                      const std::vector<std::size_t>& moments) {
    Disk::Random random(7);
    const std::vector<FileStep>& steps = day.trace.steps;
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

/// Whether the log goes for good, and a rollback journal is written, in the steps that are to leave it.
bool logIsLeft(const ShopDay& day) {
    const auto [first, last] = day.leaving;
    bool hasLog = true;
    bool hasJournal = false;
    for (std::size_t i = first; i < day.trace.steps.size(); ++i) {
        const FileStep& step = day.trace.steps[i];
        const QString name = step.file < 0 ? QString() : day.trace.files[step.file].name;
        if (name.endsWith(u"-wal"_s))
            hasLog = step.kind != FileStep::Kind::remove && step.kind != FileStep::Kind::syncFolder;
        hasJournal = hasJournal || (i < last && name.endsWith(u"-journal"_s));
    }
    return !hasLog && hasJournal;
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
            {"a plain file whose log is left at noon", {{}, false, 300, true}},
            {"a file with a password whose log is left at noon", {rawKey, false, 300, true}},
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
        if (row.leavesLog)
            QVERIFY(logIsLeft(day));
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
        const QList<Ruin> ruins =
            endTheDay(day, row.password, End::powerCut, momentsOf(day, row.wantedCuts()));
        QVERIFY2(ruins.isEmpty(), qPrintable(describe(ruins, day)));
    }

    void aKilledTillLosesNothing_data() { addFiles(); }
    void aKilledTillLosesNothing() {
        QFETCH(const FileRow, row);
        const ShopDay& day = dayOf(row);
        const QList<Ruin> ruins =
            endTheDay(day, row.password, End::kill, momentsOf(day, row.wantedCuts() / 2));
        QVERIFY2(ruins.isEmpty(), qPrintable(describe(ruins, day)));
    }

    void aLogThatIsLeftLosesNothing_data() {
        addRows<FileRow>({
            {"a plain file", {{}, false, 4, true}},
            {"a file with a password", {rawKey, false, 4, true}},
        });
    }
    void aLogThatIsLeftLosesNothing() {
        QFETCH(const FileRow, row);
        const ShopDay& day = dayOf(row);
        const auto [first, last] = day.leaving;
        std::vector<std::size_t> moments;
        for (std::size_t step = first; step < last; ++step)
            moments.insert(moments.end(), wantedTimes("KOVANIX_CUTS_A_STEP", row.cuts), step);
        qInfo("%d steps, %d cuts", static_cast<int>(last - first), static_cast<int>(moments.size()));
        for (const End end : {End::powerCut, End::kill}) {
            const QList<Ruin> ruins = endTheDay(day, row.password, end, moments);
            QVERIFY2(ruins.isEmpty(), qPrintable(describe(ruins, day)));
        }
    }

    /// The check itself: nobody keeps anything on a disk that says it has synced and hasn't.
    void aDiskThatLiesIsFound_data() { addFiles(); }
    void aDiskThatLiesIsFound() {
        QFETCH(const FileRow, row);
        ShopDay day = dayOf(row);
        std::erase_if(day.trace.steps,
                      [](const FileStep& step) { return step.kind == FileStep::Kind::sync; });
        QVERIFY(endTheDay(day, row.password, End::powerCut, momentsOf(day, 50)).size() > 40);
    }
};

int main(int argc, char** argv) {
    return runTests<PowerCutTest>(argc, argv);
}

#include "test_powercut.moc"
