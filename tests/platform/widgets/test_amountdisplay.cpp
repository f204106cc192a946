#include <QTest>

#include "rows.h"
#include "widgets/amountdisplay.h"
#include "widgets/look.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

class TestAmountDisplay : public QObject {
    Q_OBJECT

    struct OwedAmountRow {
        QString caption;
        QString note;
        bool owed;
    };

private Q_SLOTS:
    void owedAmount_data() {
        addRows<OwedAmountRow>({{"nothing", {u"0,00"_s, u"EKSİK"_s, false}},
                                {"change", {u"12,50"_s, u"EKSİK"_s, false}},
                                {"owed", {u"-641,80"_s, u"EKSİK"_s, true}},
                                {"a kuruş", {u"-0,01"_s, u"EKSİK"_s, true}},
                                {"a minus before nothing", {u"-0,00"_s, u"EKSİK"_s, false}},
                                {"no words for it", {u"-641,80"_s, QString(), false}}});
    }
    void owedAmount() {
        QFETCH(const OwedAmountRow, row);
        AmountDisplay display;
        display.resize(210, 70);
        display.setBackcolor1(Qt::white);
        display.setBackcolor2(Qt::white);
        display.setOwedNote(row.note);
        display.setCaption(row.caption);
        QCOMPARE(display.isOwed(), row.owed);
        QCOMPARE(display.accessibleDescription(), row.owed ? row.note : QString());
        const QColor rim = display.grab().toImage().pixelColor(105, 1);
        QCOMPARE(rim == roleColor(ColorRole::owed), row.owed);
    }

    void labelIsPaintedAndTold() {
        AmountDisplay display;
        display.resize(420, 120);
        display.setCaption(u"0,00"_s);
        const QImage bare = display.grab().toImage();
        display.setLabel(u"TOPLAM"_s);
        QCOMPARE(display.accessibleDescription(), u"TOPLAM"_s);
        QCOMPARE(display.accessibleName(), u"0,00"_s);
        const QImage labelled = display.grab().toImage();
        const QRect corner(8, 6, 80, 20);
        QVERIFY(labelled.copy(corner) != bare.copy(corner));
        const QRect amount(210, 30, 200, 85);
        QCOMPARE(labelled.copy(amount), bare.copy(amount));
    }
};

QTEST_MAIN(TestAmountDisplay)
#include "test_amountdisplay.moc"
