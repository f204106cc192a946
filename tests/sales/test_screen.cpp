#include "data/baglanmamodulu.h"
#include "rows.h"
#include "runtime/process.h"
#include "runtime/runtimeerror.h"
#include "runtime/screenregistry.h"
#include "sales/totalfont.h"
#include "sales/weighedlabel.h"
#include "salestest.h"

using namespace kovanix;

/// Load, activation, closing, cancelling, the size of the total; the pieces below the screen.
class ScreenTest : public SalesTest {
    Q_OBJECT

    struct ClosingByTheButtonRow {
        int answer;
        bool ends;
    };
    struct CancellingTheTicketRow {
        int answer, lines;
    };
    struct SizeOfTheTotalRow {
        int width;
        QList<int> sizes;  ///< of lengths 1, 8, 9, 10, 11, 12, 13, 14, 15, 17, 18, 20, 21, 25
    };
    struct SizeOfTheTotalByItsCaptionRow {
        QString caption;
        int size;
    };
    struct ScaleLabelsRow {
        QString barcode;
        bool isLabel;
        int error;
    };

    std::optional<int> m_ended;

private Q_SLOTS:
    void init() {
        SalesTest::init();
        m_ended.reset();
        setProcessEnd([this](int status) { m_ended = status; });
    }

    void closingByTheButton_data() {
        addRows<ClosingByTheButtonRow>({{"yes", {MessageBoxAnswer::yes, true}},
                                        {"no", {MessageBoxAnswer::no, false}},
                                        {"Escape", {BoxAnswers::escape, false}}});
    }
    void closingByTheButton() {
        QFETCH(const ClosingByTheButtonRow, row);
        m_shop->scan(goods::bread);
        m_shop->sales().eksiltme = 1;
        m_shop->boxes.expect("Program kapatma", "PROGRAMI KAPATMAK İSTEDİĞİNİZE EMİNMİSİNİZ?", row.answer);
        m_shop->key(Qt::Key_F9);
        QCOMPARE(m_ended.has_value(), row.ends);
        QCOMPARE(m_shop->sales().eksiltme, 0);
        QVERIFY(m_shop->sales().isVisible());
        QCOMPARE(m_shop->lines(), 1);
    }

    void closingByRequest_data() { closingByTheButton_data(); }
    void closingByRequest() {
        QFETCH(const ClosingByTheButtonRow, row);
        m_shop->boxes.expect("Program kapatma", "PROGRAMI KAPATMAK İSTEDİĞİNİZE EMİNMİSİNİZ?", row.answer);
        m_shop->sales().close();
        QCOMPARE(m_ended.has_value(), row.ends);
        QVERIFY(!m_shop->sales().isVisible());  // after a No too: the request isn't cancelled
    }

    void cancellingTheTicket_data() {
        addRows<CancellingTheTicketRow>(
            {{"yes", {MessageBoxAnswer::yes, 0}}, {"no", {MessageBoxAnswer::no, 1}}});
    }
    void cancellingTheTicket() {
        QFETCH(const CancellingTheTicketRow, row);
        m_shop->scan(goods::bread);
        m_shop->boxes.expect("UYARI", "SATIŞ İPTAL EDİLSİN Mİ?", row.answer);
        m_shop->key(Qt::Key_F3);
        QCOMPARE(m_shop->lines(), row.lines);
        QCOMPARE(m_shop->rows("SELECT * FROM satislar").size(), 0);
    }

    void activationGivesTheFocus() {
        m_shop->ui().ver2->setFocus();
        m_shop->sales().form_activate();
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
    }

    void aMessageBoxIsNoActivation() {
        m_shop->ui().ver2->setFocus();
        m_shop->boxes.expectAny(MessageBoxAnswer::no);
        m_shop->ui().kapat->click();
        m_shop->sales().activateWindow();
        QTRY_VERIFY(m_shop->ui().ver2->hasFocus());
    }

    void noDatabaseAtLoad() {
        closeShop();
        ShopFixture shop;
        shop.boxes.expectAny(MessageBoxAnswer::ok);  // the open's own box
        shop.boxes.expect("Hata", "Veritabanı baılantısı kurulamadı: ", MessageBoxAnswer::ok);
        satisekrani& sales = screen<satisekrani>();
        QVERIFY(allAnswered(shop.boxes));
        QCOMPARE(sales.ui.toplam->caption(), "0,00");
        sales.show();
        QVERIFY(QTest::qWaitForWindowActive(&sales));
        // The file comes back: the next scan works on the screen as it stands.
        shop.makeDatabase();
        sales.ui.barkod->setText("0");
        QTest::keyClick(sales.ui.barkod, Qt::Key_Return);
        QCOMPARE(sales.ui.satisekrani1->rows(), 2);
        openShop();
    }

    void loadingLeavesFormattedAmounts() {
        // The typed cash first: its change writes plain numbers into the displays.
        m_shop->ui().ver2->setText("5");
        m_shop->sales().form_load();
        QCOMPARE(m_shop->ver2(), "0,00");
        QCOMPARE(m_shop->verilen(), "0,00");
        QCOMPARE(m_shop->kalan(), "0,00");
    }

    void sizeOfTheTotal_data() {
        const QList<int> from1500{68, 68, 120, 110, 100, 90, 80, 80, 70, 70, 60, 60, 50, 50};
        const QList<int> from1280{64, 64, 100, 90, 80, 70, 60, 60, 50, 50, 40, 40, 40, 40};
        const QList<int> from800{60, 60, 80, 70, 60, 50, 40, 40, 32, 32, 22, 22, 22, 22};
        const QList<int> at640{56, 56, 80, 70, 60, 50, 40, 40, 30, 30, 20, 20, 20, 20};
        const QList<int> other(14, 24);
        addRows<SizeOfTheTotalRow>({{"1920", {1920, from1500}},
                                    {"1500", {1500, from1500}},
                                    {"1499", {1499, from1280}},
                                    {"1280", {1280, from1280}},
                                    {"1279", {1279, from800}},
                                    {"1024", {1024, from800}},
                                    {"800", {800, from800}},
                                    {"799", {799, other}},
                                    {"640", {640, at640}},
                                    {"641", {641, other}},
                                    {"320", {320, other}}});
    }
    void sizeOfTheTotal() {
        QFETCH(const SizeOfTheTotalRow, row);
        QList<int> found;
        for (const int length : {1, 8, 9, 10, 11, 12, 13, 14, 15, 17, 18, 20, 21, 25})
            found.append(totalFontSize(row.width, length));
        QCOMPARE(found, row.sizes);
        m_shop->setScreenWidth(row.width);
        m_shop->sales().toplamyazisi(9);
        QCOMPARE(m_shop->ui().toplam->fontsize(), row.sizes.at(2));
    }

    void sizeOfTheTotalByItsCaption_data() {
        addRows<SizeOfTheTotalByItsCaptionRow>({{"short", {"0,00", 60}},
                                                {"nine characters", {"123456,00", 80}},
                                                {"blanks don't count", {"  0,00    ", 60}},
                                                {"none counts as four", {"", 60}}});
    }
    void sizeOfTheTotalByItsCaption() {
        QFETCH(const SizeOfTheTotalByItsCaptionRow, row);
        m_shop->ui().toplam->setCaption(row.caption);
        m_shop->sales().toplamyazisi(-1);
        QCOMPARE(m_shop->ui().toplam->fontsize(), row.size);
    }

    void sizeFollowsTheTicket() {
        m_shop->addProduct("91", "Pahalı", 0, 123456);
        m_shop->scan("91");
        QCOMPARE(m_shop->toplam(), "123456,00");
        QCOMPARE(m_shop->ui().toplam->fontsize(), 80);
    }

    void scaleLabels_data() {
        addRows<ScaleLabelsRow>(
            {{"27", {"2712345006789", true, 0}},
             {"26 is none", {"2612345006789", false, 0}},
             {"30 is none", {"3012345006789", false, 0}},
             {"prefix that is no number", {"ab12345006789", false, 0}},
             {"one character", {"2", false, 0}},
             {"empty ends the process", {"", false, RuntimeError::typeMismatch}},
             {"two characters end the process", {"27", false, RuntimeError::typeMismatch}},
             {"seven characters end the process", {"2700012", false, RuntimeError::typeMismatch}},
             {"eight characters", {"27000125", true, 0}},
             {"a weight that is no number", {"2700012abcde", false, RuntimeError::typeMismatch}}});
    }
    void scaleLabels() {
        QFETCH(const ScaleLabelsRow, row);
        int raised = 0;
        bool split = false;
        try {
            split = splitWeighedLabel(row.barcode).has_value();
        } catch (const RuntimeError& failure) {
            raised = failure.number();
        }
        QCOMPARE(raised, row.error);
        QCOMPARE(split, row.isLabel);
    }
};

int main(int argc, char** argv) {
    return runTests<ScreenTest>(argc, argv);
}

#include "test_screen.moc"
