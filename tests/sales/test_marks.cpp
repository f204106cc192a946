#include <QFile>

#include "app/modTrace.h"
#include "database/engineerror.h"
#include "runtests.h"
#include "runtime/screenregistry.h"
#include "salesfixture.h"

using namespace kovanix;

static_assert(!izkapali, "the trace is on in this program");

/// The marks that the sales screen leaves in the trace.
class MarksTest : public QObject {
    Q_OBJECT

    static QStringList marks(const ShopFixture& shop) {
        QFile log(shop.file("kovanix_trace.log"));
        if (!log.open(QIODevice::ReadOnly))
            return {};
        QStringList found;
        for (const QString& line : QString::fromUtf8(log.readAll()).split('\n', Qt::SkipEmptyParts)) {
            const QString text = line.section("  ", 1);
            if (text.startsWith("SAT"))
                found.append(text);
        }
        return found;
    }

private Q_SLOTS:
    void initTestCase() { qputenv("TEMP", m_temp.path().toLocal8Bit()); }

    void loadAndActivation() {
        const SalesFixture shop;
        QTRY_COMPARE(marks(shop),
                     (QStringList{"SAT01 Form_Load", "SAT02 preDB", "SAT03 dbOK", "SAT04 Form_Load bitti",
                                  "SAT05 Form_Activate", "SAT06 Form_Activate bitti"}));
    }

    void loadWithoutADatabase() {
        ShopFixture shop;
        shop.boxes.expectAny(MessageBoxAnswer::ok);
        shop.boxes.expect("Hata", "Veritabanı baılantısı kurulamadı: ", MessageBoxAnswer::ok);
        screen<satisekrani>();
        QVERIFY(allAnswered(shop.boxes));
        QCOMPARE(marks(shop), (QStringList{"SAT01 Form_Load", "SAT02 preDB", "SATERR db: "}));
    }

    void aFailedCommit() {
        SalesFixture shop;
        shop.refuse("INSERT", "satislar", "dolu");
        shop.scan(goods::bread);
        shop.boxes.expectAny(MessageBoxAnswer::ok);
        shop.key(Qt::Key_F1);
        QCOMPARE(
            marks(shop).constLast(),
            QString("SATERR kaydet: " + describeFailure(DatabaseError::Kind::value, "dolu") + " - satislar"));
    }

private:
    QTemporaryDir m_temp;
};

int main(int argc, char** argv) {
    return runTests<MarksTest>(argc, argv);
}

#include "test_marks.moc"
