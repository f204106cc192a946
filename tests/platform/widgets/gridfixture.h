#pragma once

#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include "databasefile.h"
#include "widgets/adodc.h"
#include "widgets/tdbgrid.h"

namespace kovanix {

/// A product list on a file of its own: number, barcode, name, two prices and stock.
struct ProductList {
    static constexpr int no = 0;
    static constexpr int barcode = 1;
    static constexpr int name = 2;
    static constexpr int price = 4;

    DatabaseFile file{QString()};
    Adodc source;
    TDBGrid grid;

    /// @param rows  so many numbered products ("Ürün 7", barcode 8690000000007, price 7.5)
    explicit ProductList(int rows = 0) {
        file.execute(
            {QStringLiteral("CREATE TABLE urunler (no COUNTER, barkod TEXT(50), urun TEXT(50), "
                            "alis DOUBLE, satis DOUBLE, stok DOUBLE)")});
        if (rows > 0)
            run(QStringLiteral(
                    "INSERT INTO urunler (barkod, urun, alis, satis, stok) WITH RECURSIVE c(n) AS "
                    "(SELECT 1 UNION ALL SELECT n + 1 FROM c WHERE n < %1) SELECT "
                    "'869' || substr('0000000000' || n, -10), 'Ürün ' || n, n + 0.25, n + 0.5, n FROM c")
                    .arg(rows));
        source.setConnectionString(file.connectionString());
        source.setCommandType(Adodc::CommandType::table);
        source.setRecordSource(QStringLiteral("urunler"));
        grid.setObjectName(QStringLiteral("TDBGrid1"));
        grid.addColumn(QStringLiteral("NO"), QStringLiteral("no"), 114);
        grid.addColumn(QStringLiteral("BARKOD"), QStringLiteral("barkod"), 158);
        grid.addColumn(QStringLiteral("ÜRÜN ADI"), QStringLiteral("urun"), 292);
        grid.addColumn(QStringLiteral("ALIŞ FİYAT"), QStringLiteral("alis"), 140);
        grid.addColumn(QStringLiteral("SATIŞ FİYATI"), QStringLiteral("satis"), 150,
                       QStringLiteral("#,##0.00 "));
        grid.addColumn(QStringLiteral("STOK"), QStringLiteral("stok"), 50);
        grid.setScanColumn(barcode);
        grid.setNameColumn(name);
        grid.setDataSource(source);
        source.refresh();
    }

    /// A statement of the engine itself, past everything of ours.
    void run(const QString& sql) const {
        RawDatabase raw(file.path(), {});
        if (!raw.run(sql))
            qFatal("statement failed: %s", qPrintable(sql));
    }

    void add(const QString& barcodeText, const QString& nameText, double priceValue) const {
        run(QStringLiteral(
                "INSERT INTO urunler (barkod, urun, alis, satis, stok) VALUES ('%1', '%2', 1, %3, 1)")
                .arg(barcodeText, QString(nameText).replace(u'\'', QStringLiteral("''")))
                .arg(QString::number(priceValue, 'f', 2)));
    }

    /// Filters as a screen does: text columns by what they contain, number columns whole.
    void filterAsTyped() {
        QStringList terms;
        for (int index = 0; index < grid.columnCount(); ++index) {
            const QString text = grid.column(index).filterText();
            if (text.trimmed().isEmpty())
                continue;
            QString pattern = text;
            pattern.replace(u'[', QStringLiteral("[[]"));
            pattern.replace(u'%', QStringLiteral("[%]")).replace(u'_', QStringLiteral("[_]"));
            pattern.replace(u'\'', QStringLiteral("''"));
            pattern = grid.column(index).isNumber() ? pattern.replace(u',', u'.') : u'%' + pattern + u'%';
            terms << QStringLiteral("%1 LIKE '%2'").arg(grid.column(index).dataField(), pattern);
        }
        source.setFilter(terms.join(QStringLiteral(" AND ")));
        grid.setEditActive(true);
    }

    void show(QSize size = {1008, 632}) {
        grid.resize(size);
        grid.show();
        grid.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&grid));
        grid.setFocus();
    }

    QLineEdit* cell(int index) const {
        return grid.findChild<QLineEdit*>(QStringLiteral("TDBGrid1_filter_%1").arg(index));
    }

    QStringList shown(int index) const {
        QStringList texts;
        for (int row = 0; row < grid.model()->rowCount(); ++row)
            texts << grid.model()->index(row, index).data().toString();
        return texts;
    }

    QPoint middleOf(int row, int index) const {
        return grid.visualRect(grid.model()->index(row, index)).center();
    }
};

}  // namespace kovanix
