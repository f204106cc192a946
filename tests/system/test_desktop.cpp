// The sales screen on a display with a window manager: where the keyboard goes.

#include <QElapsedTimer>
#include <QLineEdit>
#include <QMessageBox>
#include <functional>

#include "access/kullanicilar.h"
#include "app/session.h"
#include "appearance/menu.h"
#include "appearance/saatt.h"
#include "catalogue/liste.h"
#include "catalogue/urunbul.h"
#include "desktop/focus.h"
#include "desktop/singleinstance.h"
#include "reports/raporlarmenu.h"
#include "reports/satisraporlar.h"
#include "rows.h"
#include "runtests.h"
#include "runtime/screenregistry.h"
#include "salesfixture.h"
#include "screens/printpreview.h"
#include "virtualdisplay.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr int soon = 10000;  // milliseconds

const QString closeTitle = u"Program kapatma"_s;
const QString closeText = u"PROGRAMI KAPATMAK İSTEDİĞİNİZE EMİNMİSİNİZ?"_s;
const QString infoTitle = u"Bilgi"_s;

bool hasKeyboard(const QWidget& control) {
    return QApplication::focusWidget() == &control && control.isActiveWindow();
}

/// Presses real keys once the next box is active.
void answerByKeys(BoxAnswers& boxes, QObject& context, const std::function<void()>& press) {
    QObject::connect(
        &boxes, &BoxAnswers::opened, &context,
        [press](QMessageBox& box) {
            // The box itself, that is: its window counts as active while the one below it is.
            if (!QTest::qWaitFor([&box] { return box.isActiveWindow(); }, soon))
                qFatal("the box doesn't become active");
            press();
        },
        Qt::SingleShotConnection);
}

}  // namespace

class DesktopTest : public QObject {
    Q_OBJECT

    using Step = std::function<void(SalesFixture&)>;
    struct AClosedBoxGivesTheKeyboardBackRow {
        Step open;
        QString title, text, answer, expected;
    };

private Q_SLOTS:
    void initTestCase() {
        if (!displayTrouble().isEmpty())
            QSKIP(qPrintable(displayTrouble()));
    }

    void init() { m_shop = std::make_unique<SalesFixture>(); }

    void cleanup() {
        if (m_shop)
            QVERIFY(allAnswered(m_shop->boxes));
        m_shop.reset();
    }

    void theKeyboardIsInBarkodAtTheStart() {
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*ui().barkod), soon);
        // What is typed on the keyboard arrives there.
        typeKeys(u"12a3"_s);
        QTRY_COMPARE(ui().barkod->text(), u"123"_s);
    }

    void aScanBecomesALine() {
        typeKeys(goods::milk + u'\n');
        QTRY_COMPARE(m_shop->lines(), 1);
        QCOMPARE(m_shop->line(1).first(), goods::milk);
        QCOMPARE(m_shop->toplam(), u"32,50"_s);
    }

    void fOneStoresTheSale() {
        typeKeys(goods::bread + u'\n');
        pressKeys({u"F1"_s});
        QTRY_COMPARE(m_shop->lines(), 0);
        QCOMPARE(m_shop->rows(u"SELECT barkod, adet FROM satislar"_s),
                 (QList<QVariantList>{{goods::bread, 1.0}}));
        QVERIFY(hasKeyboard(*ui().barkod));
    }

    void aBurstOfScans() {
        constexpr int scans = 66;
        const QStringList codes{goods::bread, goods::milk, goods::tea};
        QString keys;
        for (int i = 0; i < scans; ++i)
            keys += codes.at(i % codes.size()) + u'\n';
        QElapsedTimer clock;
        clock.start();
        typeKeys(keys);
        const auto scanned = [this] {
            double sum = 0;
            for (int row = 1; row <= m_shop->lines(); ++row)
                sum += m_shop->line(row).at(2).toDouble();
            return sum;
        };
        QTRY_COMPARE_WITH_TIMEOUT(scanned(), static_cast<double>(scans), soon);
        qInfo("%.1f scans a second", scans * 1000.0 / static_cast<double>(clock.elapsed()));
        QCOMPARE(m_shop->lines(), 3);
        for (int row = 1; row <= 3; ++row) {
            QCOMPARE(m_shop->line(row).at(0), codes.at(row - 1));
            QCOMPARE(m_shop->line(row).at(2), QString::number(scans / 3));
        }
        QVERIFY(!ui().urunbulunamadiframesi->isVisible());
        QCOMPARE(ui().barkod->text(), QString());
    }

    void theFinderTakesAScanAndHandsItOver() {
        openFinder();
        typeKeys(goods::tea + u'\n');
        QTRY_COMPARE_WITH_TIMEOUT(m_shop->lines(), 1, soon);
        QCOMPARE(m_shop->line(1).first(), goods::tea);
        QVERIFY(!loaded<urunbul>());
        // The next customer's scan goes to the ticket.
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*ui().barkod), soon);
        typeKeys(goods::milk + u'\n');
        QTRY_COMPARE(m_shop->lines(), 2);
    }

    void leavingTheFinderGivesTheKeyboardBack_data() {
        addRows<QString>({{"Escape", u"Escape"_s}, {"the window's X", u"alt+F4"_s}});
    }
    void leavingTheFinderGivesTheKeyboardBack() {
        QFETCH(const QString, row);
        openFinder();
        pressKeys({row});
        QTRY_VERIFY_WITH_TIMEOUT(!loaded<urunbul>(), soon);
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*ui().barkod), soon);
        QCOMPARE(m_shop->lines(), 0);
    }

    void aClosedBoxGivesTheKeyboardBack_data() {
        QTest::addColumn<AClosedBoxGivesTheKeyboardBackRow>("row");
        const auto pressKapat = [](QWidget* (*focused)(const Ui::satisekrani&)) {
            return Step([focused](SalesFixture& shop) {
                giveFocus(*focused(shop.ui()));
                shop.ui().kapat->click();
            });
        };
        const QString escape = u"Escape"_s;
        const QString enter = u"Return"_s;
        // The activation procedure would have moved it to barkod.
        QTest::newRow("to ver2, by Escape") << AClosedBoxGivesTheKeyboardBackRow{
            pressKapat([](const Ui::satisekrani& ui) -> QWidget* { return ui.ver2; }), closeTitle, closeText,
            escape, u"ver2"_s};
        QTest::newRow("to ver2, by Enter") << AClosedBoxGivesTheKeyboardBackRow{
            pressKapat([](const Ui::satisekrani& ui) -> QWidget* { return ui.ver2; }), closeTitle, closeText,
            enter, u"ver2"_s};
        QTest::newRow("to adet, by Escape") << AClosedBoxGivesTheKeyboardBackRow{
            pressKapat([](const Ui::satisekrani& ui) -> QWidget* { return ui.adet; }), closeTitle, closeText,
            escape, u"adet"_s};
        QTest::newRow("to barkod after F9") << AClosedBoxGivesTheKeyboardBackRow{
            Step([](SalesFixture&) { pressKeys({u"F9"_s}); }), closeTitle, closeText, enter, u"barkod"_s};
        QTest::newRow("to barkod after F1 on an empty ticket")
            << AClosedBoxGivesTheKeyboardBackRow{Step([](SalesFixture&) { pressKeys({u"F1"_s}); }), infoTitle,
                                                 u"önce satış yapın"_s, u"space"_s, u"barkod"_s};
        QTest::newRow("to barkod from a quantity of nine digits") << AClosedBoxGivesTheKeyboardBackRow{
            Step([](SalesFixture& shop) {
                giveFocus(*shop.ui().adet);
                typeKeys(u"123456789"_s);
            }),
            infoTitle, u"Adet miktarı 8 basamaktan fazla olamaz"_s, enter, u"barkod"_s};
    }

    void aClosedBoxGivesTheKeyboardBack() {
        QFETCH(const AClosedBoxGivesTheKeyboardBackRow, row);
        m_shop->boxes.expect(row.title, row.text, BoxAnswers::byHand);
        answerByKeys(m_shop->boxes, *this, [row] { pressKeys({row.answer}); });
        row.open(*m_shop);
        QTRY_COMPARE(m_shop->boxes.answered(), 1);
        QTRY_VERIFY_WITH_TIMEOUT(!QApplication::activeModalWidget(), soon);
        auto* control = sales().findChild<QWidget*>(row.expected);
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*control), soon);
    }

    void anotherProgramsWindowLeavesTheKeyboardWhereItWas() {
        giveFocus(*ui().ver2);
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*ui().ver2), soon);
        {
            QWidget other;  // no screen of ours
            other.resize(300, 200);
            other.show();
            QVERIFY(QTest::qWaitForWindowActive(&other));
        }
        QTRY_VERIFY_WITH_TIMEOUT(sales().isActiveWindow(), soon);
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*ui().ver2), soon);
    }

    void keysGoToTheOpenBox() {
        m_shop->boxes.expect(closeTitle, closeText, BoxAnswers::byHand);
        bool stayedOpen = false;
        answerByKeys(m_shop->boxes, *this, [&] {
            // A scan while the question stands goes nowhere; a person's Enter, later, answers with the
            // default, No.
            typeKeys(goods::bread + u'\n');
            QElapsedTimer pause;
            pause.start();
            stayedOpen = QTest::qWaitFor([&pause] { return pause.hasExpired(350); }) &&
                         QApplication::activeModalWidget();
            pressKeys({u"Return"_s});
        });
        pressKeys({u"F9"_s});
        QTRY_COMPARE(m_shop->boxes.answered(), 1);
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*ui().barkod), soon);
        QVERIFY(stayedOpen);
        QCOMPARE(ui().barkod->text(), QString());
        QCOMPARE(m_shop->lines(), 0);
    }

    void aCustomerIsAdded() {
        ui().vkCommand6->click();
        const Ui::liste& list = screen<liste>().ui;
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*list.TDBGrid1), soon);
        list.kisiekleme2->click();
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*list.txtMusteri), soon);
        m_shop->boxes.expect(u"UYARI"_s, u"Eklendi"_s, BoxAnswers::byHand);
        answerByKeys(m_shop->boxes, *this, [] { pressKeys({u"Return"_s}); });
        typeKeys(u"fidan\nsokak"_s);
        pressKeys({u"Tab"_s, u"space"_s});
        QTRY_COMPARE_WITH_TIMEOUT(m_shop->rows(u"SELECT adi, adres FROM musteri"_s),
                                  (QList<QVariantList>{{u"fidan"_s, u"SOKAK"_s}}), soon);
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*list.TDBGrid1), soon);
        // Escape closes the frame while the keyboard is in it, else the screen.
        list.kisiekleme2->click();
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*list.txtMusteri), soon);
        pressKeys({u"Escape"_s});
        QTRY_VERIFY_WITH_TIMEOUT(!list.kisiekle2->isVisible(), soon);
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*list.TDBGrid1), soon);
        pressKeys({u"Escape"_s});
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*ui().barkod), soon);
        QVERIFY(!loaded<liste>());
    }

    void theClockLeavesTheKeyboardInBarkod() {
        QTRY_VERIFY(hasKeyboard(*ui().barkod));
        QTest::mouseDClick(ui().tarih, Qt::LeftButton);
        QTRY_VERIFY(loaded<saatt>() && screen<saatt>().isVisible());
        typeKeys(goods::milk + u'\n');
        QTRY_COMPARE(m_shop->lines(), 1);
        const QPoint middle = screen<saatt>().mapToGlobal(screen<saatt>().rect().center());
        xdotool({u"mousemove"_s, QString::number(middle.x()), QString::number(middle.y()), u"mousedown"_s,
                 u"1"_s});
        typeKeys(goods::milk + u'\n');
        QTRY_COMPARE(m_shop->line(1).at(2), u"2"_s);
        QVERIFY(loaded<saatt>());
        xdotool({u"mouseup"_s, u"1"_s});
        QTRY_VERIFY(!loaded<saatt>());
        typeKeys(goods::tea + u'\n');
        QTRY_COMPARE(m_shop->lines(), 2);
    }

    // Also where the screen was opened from another one, which the window manager would make active next.
    void aScreenOfTheMenusGivesTheKeyboardBack() {
        constexpr int closings = 8;
        for (int closing = 0; closing < closings; ++closing) {
            girisyetki = 1;
            ui().vkCommand1->click();
            screen<menu>().ui.vkCommand3->click();
            QTRY_VERIFY_WITH_TIMEOUT(
                loaded<kullanicilar>() && hasKeyboard(*screen<kullanicilar>().ui.TDBGrid1), soon);
            pressKeys({u"Escape"_s});
            QTRY_VERIFY_WITH_TIMEOUT(!loaded<kullanicilar>(), soon);
            QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*ui().barkod), soon);
            // Whatever is still to come from the window manager comes before the next letter.
            typeKeys(QString::number(closing));
            QTRY_VERIFY_WITH_TIMEOUT(ui().barkod->text().endsWith(QString::number(closing)), soon);
        }
    }

    void thePreviewGivesTheKeyboardBackToItsReport() {
        girisyetki = 1;
        pressKeys({u"F5"_s});
        QTRY_VERIFY_WITH_TIMEOUT(loaded<raporlarmenu>() && hasKeyboard(*screen<raporlarmenu>().ui.vkCommand3),
                                 soon);
        screen<raporlarmenu>().ui.fiyatgor->click();
        const Ui::satisraporlar& report = screen<satisraporlar>().ui;
        for (int closing = 0; closing < 5; ++closing) {
            QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*report.TDBGrid1), soon);
            report.yazdir->click();
            QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*screen<PrintPreview>().ui.kapat), soon);
            pressKeys({u"Escape"_s});
        }
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*report.TDBGrid1), soon);
        pressKeys({u"Escape"_s});
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*ui().barkod), soon);
    }

    void fTenHidesAndTheNextStartBringsBack() {
        typeKeys(goods::bread + u'\n');
        QTRY_COMPARE(m_shop->lines(), 1);
        pressKeys({u"F10"_s});
        QTRY_VERIFY_WITH_TIMEOUT(sales().isMinimized(), soon);
        QTRY_VERIFY_WITH_TIMEOUT(!sales().isActiveWindow(), soon);
        raiseApplication();
        QTRY_VERIFY_WITH_TIMEOUT(!sales().isMinimized(), soon);
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*ui().barkod), soon);
        QCOMPARE(m_shop->lines(), 1);
    }

private:
    void openFinder() {
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*ui().barkod), soon);
        ui().urunbulmak->click();
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*screen<urunbul>().ui.TDBGrid1), soon);
    }

    satisekrani& sales() const { return m_shop->sales(); }
    Ui::satisekrani& ui() const { return m_shop->ui(); }

    std::unique_ptr<SalesFixture> m_shop;
};

int main(int argc, char** argv) {
    if (displayTrouble().isEmpty() && !isOnVirtualDisplay())
        return runOnVirtualDisplay(argc, argv);
    return runTests<DesktopTest>(argc, argv);
}

#include "test_desktop.moc"
