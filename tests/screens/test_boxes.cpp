#include <QMessageBox>
#include <functional>

#include "desktop/messagebox.h"
#include "runtests.h"
#include "runtime/runtimeerror.h"
#include "screens/boxes.h"
#include "shopfixture.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct Answer {
    int answer;
    bool closes;
};

struct Failure {
    std::function<void()> tell;
    QString text;
};

}  // namespace

Q_DECLARE_METATYPE(Answer)
Q_DECLARE_METATYPE(Failure)

class BoxesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void closingTheProgram_data() {
        QTest::addColumn<Answer>("row");
        QTest::newRow("Yes") << Answer{MessageBoxAnswer::yes, true};
        QTest::newRow("No") << Answer{MessageBoxAnswer::no, false};
        QTest::newRow("Escape") << Answer{BoxAnswers::escape, false};
    }
    void closingTheProgram() {
        QFETCH(const Answer, row);
        ShopFixture shop;
        QString byDefault;
        connect(&shop.boxes, &BoxAnswers::opened, this,
                [&](const QMessageBox& box) { byDefault = box.defaultButton()->text(); });
        shop.boxes.expect(u"Program kapatma"_s, u"PROGRAMI KAPATMAK İSTEDİĞİNİZE EMİNMİSİNİZ?"_s, row.answer);
        QCOMPARE(askToCloseProgram(), row.closes);
        QCOMPARE(byDefault, u"Hayır"_s);
        QVERIFY(allAnswered(shop.boxes));
    }

    void databaseFailures_data() {
        QTest::addColumn<Failure>("row");
        QTest::newRow("no connection")
            << Failure{[] { tellNoDatabase(); }, u"Veritabanı baılantısı kurulamadı"_s};
        QTest::newRow("with the engine's words")
            << Failure{[] { tellDatabaseFailure(RuntimeError(5, u"database is locked"_s)); },
                       u"Veritabanı baılantısı kurulamadı: database is locked"_s};
        QTest::newRow("with no words") << Failure{[] { tellDatabaseFailure(RuntimeError(5, QString())); },
                                                  u"Veritabanı baılantısı kurulamadı: "_s};
    }
    void databaseFailures() {
        QFETCH(const Failure, row);
        ShopFixture shop;
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        connect(&shop.boxes, &BoxAnswers::opened, this, [&](const QMessageBox& box) { icon = box.icon(); });
        shop.boxes.expect(u"Hata"_s, row.text, MessageBoxAnswer::ok);
        row.tell();
        QCOMPARE(icon, QMessageBox::Critical);
        QVERIFY(allAnswered(shop.boxes));
    }
};

int main(int argc, char** argv) {
    return runTests<BoxesTest>(argc, argv);
}
#include "test_boxes.moc"
