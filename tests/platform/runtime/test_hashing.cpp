#include <QHash>
#include <QHashSeed>
#include <QTest>

#ifdef __x86_64__
#include <cpuid.h>
#endif

#include "runtime/process.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

#ifdef __x86_64__
/// Whether the processor tells which of its registers are in use.
bool tellsRegistersInUse() {
    unsigned a = 0;
    unsigned b = 0;
    unsigned c = 0;
    unsigned d = 0;
    constexpr unsigned extendedStates = 0xD;
    constexpr unsigned tellsInUse = 1U << 2;
    return __builtin_cpu_supports("avx") && __get_cpuid_count(extendedStates, 1, &a, &b, &c, &d) &&
           (a & tellsInUse);
}

bool wideRegistersInUse() {
    unsigned low = 0;
    unsigned high = 0;
    asm volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(1));
    constexpr unsigned upperHalves = 1U << 2;
    return low & upperHalves;
}

void freeWideRegisters() {
    asm volatile("vzeroupper" ::: "memory");
}
#endif

}  // namespace

class TestHashing : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void takesTheSeedAway() {
        QHashSeed::resetRandomGlobalSeed();
        QVERIFY(QHashSeed::globalSeed() != 0);
        hashInNarrowRegisters();
        QCOMPARE(std::size_t(QHashSeed::globalSeed()), std::size_t(0));
    }

    void leavesTheWideRegistersFree() {
#ifdef __x86_64__
        if (!tellsRegistersInUse())
            QSKIP("this processor doesn't tell");
        hashInNarrowRegisters();
        // Of every length that a hash may treat apart.
        for (int length = 1; length <= 300; ++length) {
            QHash<QString, int> table;
            const QString key(length, u'a');
            freeWideRegisters();
            table.insert(key, length);
            const bool inUse = wideRegistersInUse();
            QVERIFY2(!inUse, qPrintable(QString::number(length)));
        }
#else
        QSKIP("only processors of this family have such registers");
#endif
    }
};

QTEST_APPLESS_MAIN(TestHashing)
#include "test_hashing.moc"
