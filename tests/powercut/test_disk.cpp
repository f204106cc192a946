// The disk that is made up: what a cut may take from it, and what not.

#include <set>

#include "disk.h"
#include "runtests.h"

using namespace kovanix;
using namespace Qt::StringLiterals;
using Kind = FileStep::Kind;

namespace {

const QString name = u"kovanix.data"_s;
const QByteArray old(1024, 'a');
const QByteArray fresh(1024, 'b');

/// A file of two sectors, with a second one that may be made beside it.
struct Bench {
    FileTrace trace{{{name, old, true}, {u"log"_s, {}, false}}, {}};
    Disk::Random random{1};

    /// All that scattered cuts leave of a file behind these steps; a missing one is null.
    std::set<QByteArray> left(std::vector<FileStep> steps, const QString& file) {
        trace.steps = std::move(steps);
        Disk disk(trace);
        for (const FileStep& step : trace.steps)
            disk.take(step);
        std::set<QByteArray> found;
        for (int i = 0; i < 400; ++i)
            found.insert(disk.cut(Disk::Cut::scattered, random).value(file, "none"));
        return found;
    }
};

}  // namespace

class DiskTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsSyncedStays() {
        Bench bench;
        QCOMPARE(bench.left({{Kind::write, 0, 0, fresh}, {Kind::sync, 0, 0, {}}}, name),
                 std::set<QByteArray>{fresh});
    }

    void eachSectorGoesByItself() {
        Bench bench;
        const QByteArray a(512, 'a');
        const QByteArray b(512, 'b');
        QCOMPARE(bench.left({{Kind::write, 0, 0, fresh}}, name),
                 (std::set<QByteArray>{a + a, a + b, b + a, b + b}));
    }

    void aSectorHoldsNothingThatItNeverHeld() {
        Bench bench;
        // The second write in a sector comes with the first, or not at all.
        const auto sector = [](const char* start) -> QByteArray {
            return start + QByteArray(508, 'a') + QByteArray(512, 'a');
        };
        QCOMPARE(bench.left({{Kind::write, 0, 0, "bb"}, {Kind::write, 0, 2, "cc"}}, name),
                 (std::set<QByteArray>{sector("aaaa"), sector("bbaa"), sector("bbcc")}));
    }

    void aSizeGoesByItself() {
        Bench bench;
        const std::set<QByteArray> left = bench.left({{Kind::write, 0, 1024, QByteArray(512, 'b')}}, name);
        QCOMPARE(left, (std::set<QByteArray>{old, old + QByteArray(512, '\0'), old + QByteArray(512, 'b')}));
    }

    void aTruncatedFileMayBeLong() {
        Bench bench;
        QVERIFY(bench.left({{Kind::truncate, 0, 512, {}}}, name).contains(old));
        QCOMPARE(bench.left({{Kind::truncate, 0, 512, {}}, {Kind::sync, 0, 0, {}}}, name),
                 std::set<QByteArray>{QByteArray(512, 'a')});
    }

    void aNameNeedsItsFoldersSync() {
        Bench bench;
        const FileStep create{Kind::create, 1, 0, {}};
        const FileStep write{Kind::write, 1, 0, "log"};
        const FileStep sync{Kind::sync, 1, 0, {}};
        QCOMPARE(bench.left({create, write, sync}, u"log"_s), (std::set<QByteArray>{"none", "log"}));
        QCOMPARE(bench.left({create, write, sync, {Kind::syncFolder, 1, 0, {}}}, u"log"_s),
                 std::set<QByteArray>{"log"});
    }

    void aRemovedFileMayComeBack() {
        Bench bench;
        const FileStep remove{Kind::remove, 0, 0, {}};
        QCOMPARE(bench.left({remove}, name), (std::set<QByteArray>{"none", old}));
        QCOMPARE(bench.left({remove, {Kind::syncFolder, 0, 0, {}}}, name), std::set<QByteArray>{"none"});
    }

    void inOrderNothingOvertakes() {
        Bench bench;
        bench.trace.steps = {{Kind::write, 0, 0, "b"}, {Kind::write, 0, 512, "c"}};
        Disk disk(bench.trace);
        for (const FileStep& step : bench.trace.steps)
            disk.take(step);
        std::set<QByteArray> found;
        for (int i = 0; i < 100; ++i) {
            const QByteArray left = disk.cut(Disk::Cut::inOrder, bench.random).value(name);
            found.insert(left.mid(0, 1) + left.mid(512, 1));
        }
        QCOMPARE(found, (std::set<QByteArray>{"aa", "ba", "bc"}));
    }

    void aKillBreaksAWriteBetweenPages() {
        Bench bench;
        bench.trace.steps = {{Kind::write, 0, 0, fresh}};
        Disk disk(bench.trace);
        disk.take(bench.trace.steps[0]);
        const FileStep next{Kind::write, 0, 1024, QByteArray(4096, 'c')};
        QCOMPARE(disk.killed(next).value(name), fresh + QByteArray(3072, 'c'));
        QCOMPARE(disk.killed({Kind::sync, 0, 0, {}}).value(name), fresh);
    }
};

int main(int argc, char** argv) {
    return runTests<DiskTest>(argc, argv);
}

#include "test_disk.moc"
