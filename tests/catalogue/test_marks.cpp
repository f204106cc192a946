#include <QFile>

#include "app/modTrace.h"
#include "catalogue/urunbul.h"
#include "runtests.h"
#include "runtime/screenregistry.h"
#include "salesfixture.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

static_assert(!izkapali, "the trace is on in this program");

/// The marks that the product finder leaves in the trace.
class TestMarks : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("TEMP", m_temp.path().toLocal8Bit()); }

    void opening() {
        const SalesFixture shop;
        shop.ui().urunbulmak->click();
        QFile log(shop.file(u"kovanix_trace.log"_s));
        QVERIFY(log.open(QIODevice::ReadOnly));
        QStringList marks;
        for (const QString& line : QString::fromUtf8(log.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
            if (line.section(u"  "_s, 1).startsWith(u'U'))
                marks << line.section(u"  "_s, 1);
        }
        QCOMPARE(marks, (QStringList{u"UBTN urunbul ac"_s, u"UB01 Form_Load"_s, u"UB02 Form_Load bitti"_s,
                                     u"UBTN urunbul acildi"_s}));
    }

private:
    QTemporaryDir m_temp;
};

int main(int argc, char** argv) {
    return runTests<TestMarks>(argc, argv);
}

#include "test_marks.moc"
