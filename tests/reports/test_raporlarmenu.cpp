#include "app/session.h"
#include "desktop/focus.h"
#include "reports/raporlarmenu.h"
#include "reports/satisraporlar.h"
#include "reports/stokraporu.h"
#include "reports/zparogu.h"
#include "rows.h"
#include "runtime/screenregistry.h"
#include "salestest.h"

using namespace kovanix;

/// The menu of the reports, opened above the sales screen.
class ReportsMenuTest : public SalesTest {
    Q_OBJECT

    struct CaptionRow {
        QString name, caption;
    };
    struct OpensRow {
        QString button;
        bool (*isOpen)();
        Screen& (*opened)();
        bool menuStays;
    };

    static raporlarmenu& shown() {
        raporlarmenu& menu = screen<raporlarmenu>();
        if (!QTest::qWaitFor([&] { return menu.isActiveWindow(); }))
            qFatal("the menu doesn't become active");
        return menu;
    }
    raporlarmenu& open() const {
        m_shop->key(Qt::Key_F5);
        return shown();
    }
    template <class S>
    static Screen& theScreen() {
        return screen<S>();
    }

private Q_SLOTS:
    void opensByButtonAndKey_data() { addRows<bool>({{"button", true}, {"F5", false}}); }
    void opensByButtonAndKey() {
        QFETCH(const bool, row);
        m_shop->sales().eksiltme = 1;
        if (row)
            press(*m_shop->ui().vkCommand2);
        else
            m_shop->key(Qt::Key_F5);
        QCOMPARE(m_shop->sales().eksiltme, 0);
        QVERIFY(shown().isVisible());
        QCOMPARE(shown().windowModality(), Qt::NonModal);
    }

    /// The login closes the button to cashiers.
    void aClosedButtonLeavesTheKeyDead() {
        m_shop->ui().vkCommand2->setEnabled(false);
        m_shop->key(Qt::Key_F5);
        QVERIFY(!loaded<raporlarmenu>());
    }

    void captions_data() {
        addRows<CaptionRow>({{"frame", {"vkFrame1", "RAPORLAR"}},
                             {"sales", {"fiyatgor", "SATIŞ RAPORU"}},
                             {"stock", {"vkCommand1", "STOK RAPORU"}},
                             {"Z", {"vkCommand2", "Z RAPORU"}},
                             {"leave", {"vkCommand3", "KAPAT"}}});
    }
    void captions() {
        QFETCH(const CaptionRow, row);
        const auto* control = open().findChild<QWidget*>(row.name);
        QVERIFY(control);
        QCOMPARE(control->property("caption").toString(), row.caption);
        QCOMPARE(control->accessibleName(), row.caption);
    }

    void opens_data() {
        addRows<OpensRow>({
            {"sales", {"fiyatgor", loaded<satisraporlar>, theScreen<satisraporlar>, false}},
            {"stock", {"vkCommand1", loaded<stokraporu>, theScreen<stokraporu>, true}},
            {"Z", {"vkCommand2", loaded<zparogu>, theScreen<zparogu>, true}},
        });
    }
    /// Only the sales report takes the menu's place. Whoever is logged in may open them all.
    void opens() {
        QFETCH(const OpensRow, row);
        for (const int role : {1, 0}) {
            girisyetki = role;
            auto* button = open().findChild<QAbstractButton*>(row.button);
            QVERIFY(button->isEnabled());
            press(*button);
            QVERIFY(row.isOpen());
            QCOMPARE(row.opened().windowModality(), Qt::NonModal);
            QTRY_VERIFY(row.opened().isActiveWindow());
            QCOMPARE(loaded<raporlarmenu>(), row.menuStays);
            if (row.menuStays)
                QVERIFY(screen<raporlarmenu>().isVisible());
            unloadAllButSales();
        }
    }

    /// A report that closes leaves the menu open behind the sales screen, and pressing again shows it.
    void aReportGivesTheKeyboardToTheCounter() {
        press(*open().ui.vkCommand1);
        QTRY_VERIFY(screen<stokraporu>().isActiveWindow());
        press(*screen<stokraporu>().ui.vkCommand3);
        QVERIFY(!loaded<stokraporu>());
        QVERIFY(loaded<raporlarmenu>());
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
        QVERIFY(open().isVisible());
    }

private:
    void unloadAllButSales() const {
        for (Screen* other : ScreenRegistry::all()) {
            if (other != &m_shop->sales())
                ScreenRegistry::unload(*other);
        }
        m_shop->sales().activateWindow();
        QTRY_VERIFY(m_shop->sales().isActiveWindow());
        m_shop->ui().barkod->setFocus();
    }
};

int main(int argc, char** argv) {
    return runTests<ReportsMenuTest>(argc, argv);
}

#include "test_raporlarmenu.moc"
