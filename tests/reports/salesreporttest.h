#pragma once

#include <QAbstractButton>
#include <QLineEdit>

#include "app/session.h"
#include "data/baglanmamodulu.h"
#include "desktop/focus.h"
#include "reports/satisraporlar.h"
#include "runtime/screenregistry.h"
#include "salestest.h"

namespace kovanix {

/// A sold line as a case wants it; what it leaves out is like any other's.
struct Sold {
    QString moment = QStringLiteral("2026-05-04 10:00:00");
    QString name = QStringLiteral("Ekmek");
    QString quantity = QStringLiteral("1");
    QString total = QStringLiteral("10");
    QString profit = QStringLiteral("3");
    QString barcode = goods::bread;
    QString price = QStringLiteral("10");
};

/// The base of the sales report's test programs: a manager's shop on the fourth of May, without sales.
class SalesReportTest : public SalesTest {
protected:
    satisraporlar& form() const { return screen<satisraporlar>(); }
    Ui::satisraporlar& report() const { return form().ui; }
    TDBGrid& rows() const { return *report().TDBGrid1; }
    QWidget& control(const QString& name) const { return *form().findChild<QWidget*>(name); }
    QAbstractButton& cell(int index) const {
        return *form().findChild<QAbstractButton*>("Label1_" + QString::number(index));
    }

    /// In place of init.
    void openManagersShop() {
        SalesTest::init();
        girisyetki = 1;
        m_shop->setNow(QDateTime(QDate(2026, 5, 4), QTime(10, 24, 36)));
    }
    void sell(const Sold& line = {}) const {
        const auto text = [](const QString& value) { return QString("'" + sqlmetin(value) + "'"); };
        m_shop->run("INSERT INTO satislar (tarih, barkod, urun, adet, fiyat, toplam, kar) VALUES (" +
                    QStringList{text(line.moment), text(line.barcode), text(line.name), line.quantity,
                                line.price, line.total, line.profit}
                        .join(", ") +
                    ")");
    }
    void open() const {
        showInFront(form());
        activate();
        form().setWindowState(Qt::WindowNoState);
        form().resize(1024, 768);
        QCoreApplication::processEvents();
    }
    /// Where a message box has closed, as a window manager does.
    void activate() const {
        form().activateWindow();
        if (!QTest::qWaitFor([this] { return form().isActiveWindow(); }))
            qFatal("the report doesn't become active");
    }
    void setDays(const QDate& from, const QDate& to) const {
        report().ilktarih1->setDate(from);
        report().ilktarih2->setDate(to);
        Q_EMIT report().ilktarih2->closeUp();
    }
    void typeTime(QLineEdit& field, const QString& text) const {
        field.selectAll();
        m_shop->typeInto(field, text);
    }

    QStringList shown(int column) const {
        QStringList texts;
        for (int row = 0; row < rows().model()->rowCount(); ++row)
            texts << rows().model()->index(row, column).data().toString();
        return texts;
    }
    QStringList names() const { return shown(3); }
    QStringList footers() const { return rows().footerTexts().mid(5); }
    QStringList times() const {
        const auto text = [](const QLineEdit* field) { return field->text(); };
        const Ui::satisraporlar& ui = report();
        return {text(ui.saat1), text(ui.saat),  text(ui.Text2), text(ui.Text3),
                text(ui.saat2), text(ui.Text6), text(ui.Text5), text(ui.Text4)};
    }
    QString words() const { return report().Label10->titleNote(); }
    void notice(const QString& text) const { m_shop->boxes.expect("UYARI", text, MessageBoxAnswer::ok); }
};

inline const QStringList noSums{"0 Adet", "0,00 TL.", "0,00 TL."};
inline const QStringList wholeDay{"00:00:00", "00", "00", "00", "23:59:59", "23", "59", "59"};

}  // namespace kovanix
