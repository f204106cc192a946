#include "sales/modSatis.h"

#include "app/modTurkce.h"
#include "data/baglanmamodulu.h"
#include "database/recordset.h"
#include "widgets/vsflexgrid.h"

namespace kovanix {

using namespace Qt::StringLiterals;

void gridhazirla(VSFlexGrid& grid) {
    grid.clear();
    grid.setRows(2);
    grid.setCols(6);
    grid.setColAlignment(1, Qt::AlignLeft | Qt::AlignVCenter);
    gridbasliklari(grid);
}

double alisfiyati(const QString& barcode) {
    const QString trimmed = barcode.trimmed();
    if (trimmed.isEmpty() || !baglantihazir())
        return 0;
    Recordset products;
    products.open(u"SELECT alis FROM urunler WHERE barkod='" + sqlmetin(trimmed) + u'\'', baglanti());
    return products.atEnd() ? 0 : sayicevir(products.field(u"alis"_s));
}

void stokdegeri(double& purchaseTotal, double& saleTotal, int& count) {
    count = 0;
    if (!baglantihazir())
        return;
    RowWalk(baglanti(), u"SELECT alis, satis, stok FROM urunler"_s).forEach([&](const RowWalk::Row& product) {
        const double stock = sayicevir(product, 2);
        purchaseTotal += sayicevir(product, 0) * stock;
        saleTotal += sayicevir(product, 1) * stock;
        ++count;
    });
}

}  // namespace kovanix
