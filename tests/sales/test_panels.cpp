#include <QLayout>

#include "rows.h"
#include "salestest.h"
#include "screencontract.h"

using namespace kovanix;

/// Where the panels stand that open above the ticket. The quick keys' own is tested beside them.
class PanelsTest : public SalesTest {
    Q_OBJECT

    struct PanelRow {
        QString panel;
        QString name;  ///< of the product that stands on the ticket
        QSize size;
    };

    QWidget& open(const QString& panel) const {
        if (panel == "urunislemleri")
            pressCell(1, 4);
        else if (panel == "fiyatgorframe")
            press(*ui().fiyatgor);
        else
            m_shop->scan(unknown);
        return *m_shop->sales().findChild<QWidget*>(panel);
    }
    QRect placeOf(const QWidget& control) const {
        return {control.mapTo(&m_shop->sales(), QPoint(0, 0)), control.size()};
    }

private Q_SLOTS:
    void theyFillTheTicketsPlace_data() {
        QTest::addColumn<PanelRow>("row");
        const std::tuple<const char*, QString, QString> panels[] = {
            {"a line", "urunislemleri", "Ekmek"},
            {"a line with a name of one word", "urunislemleri", QString(50, u'W')},
            {"a line with a long name", "urunislemleri",
             "Büyük Boy Kakaolu Fındık Kremalı Gofret 12 x 40 gr"},
            {"an unknown product", "urunbulunamadiframesi", "Ekmek"},
            {"the price check", "fiyatgorframe", "Ekmek"}};
        for (const auto& [name, panel, product] : panels) {
            for (const QSize size : displays())
                QTest::addRow("%s, %dx%d", name, size.width(), size.height())
                    << PanelRow{panel, product, size};
        }
    }
    void theyFillTheTicketsPlace() {
        QFETCH(const PanelRow, row);
        m_shop->addProduct("55", row.name, 1, 2);
        m_shop->scan("55");
        m_shop->sales().resize(row.size);
        const QRect ticket = placeOf(grid());
        const QWidget& panel = open(row.panel);
        QVERIFY(panel.isVisible());
        QCOMPARE(placeOf(grid()), ticket);
        QCOMPARE(placeOf(panel), ticket);
        QVERIFY(panel.layout()->minimumSize().width() <= ticket.width());
        QVERIFY(panel.layout()->minimumSize().height() <= ticket.height());
        QStringList faults = layoutFaults(m_shop->sales());
        faults.removeIf([](const QString& fault) { return fault.endsWith(u" lies on satisekrani1"); });
        QCOMPARE(faults, QStringList());
        if (row.panel == "urunislemleri") {
            const QImage painted = ui().urununadi->grab().toImage();
            QVERIFY(!painted.isNull());
            QCOMPARE(ui().urununadi->shown(), row.name);
            QCOMPARE(ui().urununadi->text(), row.name);
        }
        m_shop->sales().resize(1024, 768);
        QCOMPARE(placeOf(panel), placeOf(grid()));
    }

    void theyFollowTheTicket() {
        const QWidget& panel = open("fiyatgorframe");
        const QRect before = placeOf(grid());
        ui().tarih->setMinimumHeight(ui().tarih->height() + 40);
        QTRY_VERIFY(placeOf(grid()) != before);
        QCOMPARE(placeOf(panel), placeOf(grid()));
    }

    void nothingOfTheTicketShowsAround() {
        m_shop->scan(goods::bread);
        for (const char* panel : {"urunislemleri", "urunbulunamadiframesi", "fiyatgorframe"}) {
            QVERIFY(grid().mask().isEmpty());
            QWidget& opened = open(panel);
            QCOMPARE(grid().mask().boundingRect().size(), QSize(1, 1));
            opened.hide();
        }
        QVERIFY(grid().mask().isEmpty());
    }

    void theLastOfTwoBringsTheTicketBack() {
        m_shop->scan(unknown);
        press(*ui().fiyatgor);
        press(*ui().fiyargorkapat);
        QVERIFY(!grid().mask().isEmpty());
        press(*ui().urunbulunamadikapat);
        QVERIFY(grid().mask().isEmpty());
    }
};

int main(int argc, char** argv) {
    return runTests<PanelsTest>(argc, argv);
}

#include "test_panels.moc"
