#include "data/baglanmamodulu.h"
#include "rows.h"
#include "salestest.h"
#include "values/numbers.h"

using namespace kovanix;

/// Cash and change: notes and coins, subtract mode, typed cash.
class PaymentTest : public SalesTest {
    Q_OBJECT

    struct PicturesOfMoneyRow {
        QString picture, once, twice;
    };
    struct QuantityAsCashRow {
        QString typed, verilen, kalan;
    };
    struct EditedCashRow {
        int caret;
        QList<Qt::Key> keys;
        QString text, verilen;
    };

    void compareAmounts(const QString& verilen, const QString& kalan, const QString& ver2) const {
        QCOMPARE(m_shop->verilen(), verilen);
        QCOMPARE(m_shop->kalan(), kalan);
        QCOMPARE(m_shop->ver2(), ver2);
    }
    static QList<QColor> face(const DrawnButton& button) {
        return {button.backcolor1(), button.backcolor2(), button.backcolorpushed1(),
                button.backcolorpushed2()};
    }

private Q_SLOTS:
    void picturesOfMoney_data() {
        addRows<PicturesOfMoneyRow>({{"200", {"resim2", "200,00", "400,00"}},
                                     {"100", {"resim3", "100,00", "200,00"}},
                                     {"50", {"resim4", "50,00", "100,00"}},
                                     {"20", {"resim1", "20,00", "40,00"}},
                                     {"10", {"Resim5", "10,00", "20,00"}},
                                     {"5", {"Resim6", "5,00", "10,00"}},
                                     {"1", {"Image1", "1,00", "2,00"}},
                                     {"0.50", {"Image2", "0,50", "1,00"}},
                                     {"0.25", {"Image3", "0,25", "0,50"}}});
    }
    void picturesOfMoney() {
        QFETCH(const PicturesOfMoneyRow, row);
        auto* image = m_shop->sales().findChild<Image*>(row.picture);
        QVERIFY(image);
        // Before any line is scanned the change is all of the cash.
        m_shop->ui().adet->setFocus();
        m_shop->press(*image);
        compareAmounts(row.once, row.once, row.once);
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
        m_shop->press(*image);
        compareAmounts(row.twice, row.twice, row.twice);
    }

    void changeFollowsTheTicket() {
        m_shop->press(*m_shop->ui().resim4);
        m_shop->scan(goods::milk);
        compareAmounts("50,00", "17,50", "50,00");
        m_shop->scan(goods::bread);
        compareAmounts("50,00", "7,50", "50,00");
    }

    void shortMoneyIsNegative() {
        m_shop->scan(goods::tea);
        m_shop->press(*m_shop->ui().resim2);
        compareAmounts("200,00", "-1.034,50", "200,00");
        for (int note = 0; note < 9; ++note)
            m_shop->press(*m_shop->ui().resim2);
        compareAmounts("2.000,00", "765,50", "2.000,00");
    }

    void coinsAddExactly() {
        for (int coin = 0; coin < 7; ++coin)
            m_shop->press(*m_shop->ui().Image3);
        m_shop->press(*m_shop->ui().Image2);
        compareAmounts("2,25", "2,25", "2,25");
    }

    void subtractModeTakesOffOnce() {
        const QList<QColor> adding{QColor(0xF0F0F0), QColor(0xFFFF00), QColor(0xF0F0F0), QColor(0xC0C000)};
        const QList<QColor> subtracting(4, QColor(0xC0C000));
        m_shop->scan(goods::bread);
        m_shop->press(*m_shop->ui().resim4);
        m_shop->ui().vkCommand5->click();
        QCOMPARE(m_shop->sales().eksiltme, 1);
        QVERIFY(m_shop->ui().Shape1->isVisible());
        QCOMPARE(face(*m_shop->ui().vkCommand5), subtracting);
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
        m_shop->press(*m_shop->ui().resim1);
        compareAmounts("30,00", "20,00", "30,00");
        QCOMPARE(m_shop->sales().eksiltme, 0);
        QVERIFY(!m_shop->ui().Shape1->isVisible());
        QCOMPARE(face(*m_shop->ui().vkCommand5), adding);
        m_shop->press(*m_shop->ui().resim1);
        compareAmounts("50,00", "40,00", "50,00");
    }

    void cashBelowNothingIsClamped() {
        m_shop->scan(goods::bread);
        m_shop->press(*m_shop->ui().Resim6);
        m_shop->ui().vkCommand5->click();
        m_shop->press(*m_shop->ui().resim1);
        // The change keeps the negative amount that was worked out before.
        compareAmounts("0,00", "-25,00", "0,00");
        m_shop->press(*m_shop->ui().resim1);
        compareAmounts("20,00", "10,00", "20,00");
    }

    void otherButtonsEndTheModeButNotItsMarks_data() {
        QTest::addColumn<QString>("button");
        QTest::newRow("kaydet") << "kaydet";
        QTest::newRow("nakit") << "nakit";
        QTest::newRow("satisiptal") << "satisiptal";
    }
    void otherButtonsEndTheModeButNotItsMarks() {
        QFETCH(QString, button);
        m_shop->ui().vkCommand5->click();
        m_shop->boxes.expect("Bilgi", "önce satış yapın", MessageBoxAnswer::ok);
        m_shop->sales().findChild<QAbstractButton*>(button)->click();
        QCOMPARE(m_shop->sales().eksiltme, 0);
        QVERIFY(m_shop->ui().Shape1->isVisible());
        QCOMPARE(face(*m_shop->ui().vkCommand5), QList<QColor>(4, QColor(0xC0C000)));
        // The next picture adds, and leaves the marks as well: only the end of a subtraction takes them away.
        m_shop->press(*m_shop->ui().Resim5);
        compareAmounts("10,00", "10,00", "10,00");
    }

    void quantityAsCash_data() {
        addRows<QuantityAsCashRow>({{"a whole amount", {"50", "50,00", "40,00"}},
                                    {"an amount with cents", {"12,5", "12,50", "2,50"}},
                                    {"thousands", {"1234", "1.234,00", "1.224,00"}},
                                    {"zero", {"0", "0,00", "-10,00"}}});
    }
    void quantityAsCash() {
        QFETCH(const QuantityAsCashRow, row);
        m_shop->scan(goods::bread);
        m_shop->press(*m_shop->ui().resim2);  // is replaced, not added to
        m_shop->typeInto(*m_shop->ui().adet, row.typed);
        m_shop->ui().ver3->click();
        compareAmounts(row.verilen, row.kalan, row.verilen);
        QCOMPARE(m_shop->ui().adet->text(), "");
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
    }

    void quantityThatIsNoNumberIsNoCash() {
        m_shop->press(*m_shop->ui().Resim5);
        m_shop->ui().adet->setText(",");
        m_shop->ui().ver3->click();
        compareAmounts("10,00", "10,00", "10,00");
        QCOMPARE(m_shop->ui().adet->text(), ",");
    }

    void quantityAsCashEndsSubtractMode() {
        m_shop->scan(goods::bread);
        m_shop->ui().vkCommand5->click();
        m_shop->ui().adet->setText("30");
        m_shop->ui().ver3->click();
        compareAmounts("30,00", "20,00", "30,00");
        QCOMPARE(m_shop->sales().eksiltme, 0);
        QVERIFY(!m_shop->ui().Shape1->isVisible());
    }

    void typedCash_data() {
        addRows<QuantityAsCashRow>({{"plain numbers until the next format", {"20", "20", "10"}},
                                    {"cents", {"12,75", "12,75", "2,75"}},
                                    {"a comma still to be followed", {"12,", "12", "2"}},
                                    {"no number changes nothing", {"12,,5", "12", "2"}}});
    }
    void typedCash() {
        QFETCH(const QuantityAsCashRow, row);
        m_shop->scan(goods::bread);
        m_shop->typeInto(*m_shop->ui().ver2, row.typed);  // replaces the 0,00 that stands there
        compareAmounts(row.verilen, row.kalan, row.typed);
    }

    void editedCash_data() {
        const Qt::Key back = Qt::Key_Backspace;
        addRows<EditedCashRow>(
            {{"a cent less", {8, {back}, "1.200,0", "1200"}},
             {"the zero of a group", {8, {back, back, back, back}, "120", "120"}},
             {"and a digit behind", {8, {back, back, back, back, Qt::Key_7}, "1207", "1207"}},
             {"a digit into a group", {3, {Qt::Key_5}, "12500,00", "12500"}}});
    }
    void editedCash() {
        // What is shown is what counts, also where the dots of 1.200,00 no longer fit.
        QFETCH(const EditedCashRow, row);
        m_shop->ui().adet->setText("1200");
        m_shop->ui().ver3->click();
        QLineEdit& cash = *m_shop->ui().ver2;
        QCOMPARE(cash.text(), "1.200,00");
        cash.setFocus();
        cash.setCursorPosition(row.caret);
        for (const Qt::Key key : row.keys)
            m_shop->key(key);
        compareAmounts(row.verilen, row.verilen, row.text);
        QTest::keyClick(&cash, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(m_shop->verilen(), numberText(sayicevir(cash.text())));
    }

    void pastedCashStays() {
        m_shop->ui().adet->setText("1200");
        m_shop->ui().ver3->click();
        paste(*m_shop->ui().ver2, "1.20");
        compareAmounts("1.200,00", "1.200,00", "1.20");
    }

    void emptiedCashBecomesZero() {
        m_shop->scan(goods::bread);
        m_shop->press(*m_shop->ui().resim1);
        m_shop->ui().ver2->setFocus();
        QTest::keyClick(m_shop->ui().ver2, Qt::Key_Delete);
        compareAmounts("0", "-10", "0,00");
        m_shop->type("7");  // replaces the zero again
        compareAmounts("7", "-3", "7");
    }

    void enterInTypedCashGivesTheFocusBack() {
        m_shop->ui().ver2->setFocus();
        m_shop->key(Qt::Key_Return);
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
    }

    void aScanFormatsTypedCash() {
        m_shop->typeInto(*m_shop->ui().ver2, "12,5");
        QCOMPARE(m_shop->verilen(), "12,5");
        m_shop->ui().barkod->setFocus();
        m_shop->scan(goods::bread);
        compareAmounts("12,50", "2,50", "12,5");
    }

    void clearingTheCash() {
        m_shop->scan(goods::tea);
        m_shop->press(*m_shop->ui().resim2);
        m_shop->ui().vsil->click();
        compareAmounts("0,00", "-1.234,50", "0,00");
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
    }

    void aPressOnTheDisplaysCopiesTheCash() {
        for (vkToggleButton* display : {m_shop->ui().verilen, m_shop->ui().kalan}) {
            m_shop->ui().verilen->setCaption("7,00");
            m_shop->ui().adet->setFocus();
            display->click();
            QCOMPARE(m_shop->ver2(), "7,00");
            QCOMPARE(m_shop->verilen(), "7");  // the change of ver2 leaves plain numbers
            QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
            m_shop->ui().ver2->setText("1");
        }
    }
};

int main(int argc, char** argv) {
    return runTests<PaymentTest>(argc, argv);
}

#include "test_payment.moc"
