#include <QDir>

#include "app/modTrace.h"
#include "runtests.h"
#include "shopfixture.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

static_assert(izkapali, "a delivered build has the trace switched off");

class TestTraceDelivered : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void writesNothing_data() {
        QTest::addColumn<QString>("mark");
        QTest::newRow("sales screen") << u"SAT01 Form_Load"_s;
        QTest::newRow("failure") << u"SATERR db: unable to open database file"_s;
        QTest::newRow("finder") << u"UB01 Form_Load"_s;
        QTest::newRow("login") << u"CMD sifre uyusmadi uid=1 storedlen=71"_s;
        QTest::newRow("schema") << u"DB schema: kontrol tamam (satislar.satis OK)"_s;
        QTest::newRow("empty") << QString();
        QTest::newRow("line break") << u"a\nb"_s;
    }
    void writesNothing() {
        QFETCH(const QString, mark);
        const ShopFixture fixture;
        const QTemporaryDir temp;
        qputenv("TEMP", QFile::encodeName(temp.path()));
        izyaz(mark);
        qunsetenv("TEMP");
        QCOMPARE(QDir(fixture.folder()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
        QCOMPARE(QDir(temp.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
    }
};

int main(int argc, char** argv) {
    return runTests<TestTraceDelivered>(argc, argv);
}
#include "test_trace_delivered.moc"
