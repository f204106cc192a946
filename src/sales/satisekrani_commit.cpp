#include "app/modTrace.h"
#include "app/modTurkce.h"
#include "data/baglanmamodulu.h"
#include "data/schema.h"
#include "database/press.h"
#include "desktop/focus.h"
#include "desktop/messagebox.h"
#include "runtime/attempt.h"
#include "runtime/clock.h"
#include "sales/modSatis.h"
#include "sales/satisekrani.h"
#include "screens/boxes.h"
#include "values/numbers.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int noConnectionToStore = -2147216403;
constexpr int noConnectionToStock = -2147216402;
const QStringView noConnection = u"DB baglantisi yok";

QString quoted(const QString& cell) {
    return u'\'' + sqlmetin(cell.trimmed()) + u'\'';
}

}  // namespace

bool satisekrani::satisbaglantiac() {
    if (satisbaglanti.isOpen())
        return true;
    attempt([this] {
        satisbaglanti.open(baglantiyazisi(), Connection::Handle::shared);
        semakontrol(satisbaglanti);
    });
    return satisbaglanti.isOpen();
}

bool satisekrani::isSaleLine(int row) const {
    return !ui.satisekrani1->textMatrix(row, 1).trimmed().isEmpty();
}

/// The quantity of a line; one that is no number becomes 1 on the ticket too.
QString satisekrani::numberOrOne(int row) {
    VSFlexGrid& grid = *ui.satisekrani1;
    if (!isNumeric(grid.textMatrix(row, 3)))
        grid.setTextMatrix(row, 3, u"1"_s);
    return grid.textMatrix(row, 3);
}

void satisekrani::satiskaydet() {
    const QString source = u"satislar"_s;
    if (!satisbaglantiac())
        throw RuntimeError(noConnectionToStore, noConnection.toString(), source);
    const VSFlexGrid& grid = *ui.satisekrani1;
    try {
        const bool hasNewestColumn = kolonvar(satisbaglanti, source, u"satis"_s);
        for (int row = 1; row <= grid.rows() - 2; ++row) {
            if (!isSaleLine(row))
                continue;
            const QString barcode = grid.textMatrix(row, 1);
            const double adet = sayicevir(numberOrOne(row));
            const double fiyat = sayicevir(grid.textMatrix(row, 4));
            const double alis = alisfiyati(barcode);
            const double toplam = adet * fiyat;
            const double kar = toplam - adet * alis;
            QString columns = u"tarih,barkod,urun,adet,fiyat,alis,kar,toplam"_s;
            QString values = sqltarih(Clock::now()) + u',' + quoted(barcode) + u',' +
                             quoted(grid.textMatrix(row, 2)) + u',' + sqlsayi(adet) + u',' + sqlsayi(fiyat) +
                             u',' + sqlsayi(alis) + u',' + sqlsayi(kar) + u',' + sqlsayi(toplam);
            if (hasNewestColumn) {
                columns += u",satis";
                values +=
                    u',' + sqlsayi(kar);  // the profit once more, not the sale price: the reports rest on it
            }
            satisbaglanti.execute(u"INSERT INTO satislar (" + columns + u") VALUES (" + values + u')');
        }
    } catch (const RuntimeError& error) {
        throw RuntimeError(error.number(), error.description(), source);
    }
}

void satisekrani::stokguncelle() {
    const QString source = u"stokguncelle"_s;
    if (!satisbaglantiac())
        throw RuntimeError(noConnectionToStock, noConnection.toString(), source);
    const VSFlexGrid& grid = *ui.satisekrani1;
    try {
        for (int row = 1; row <= grid.rows() - 2; ++row) {
            if (!isSaleLine(row))
                continue;
            const QString quantity = sqlsayi(sayicevir(numberOrOne(row)));
            satisbaglanti.execute(u"UPDATE urunler SET stok = IIF(stok IS NULL, 0, stok) - " + quantity +
                                  u" WHERE barkod=" + quoted(grid.textMatrix(row, 1)));
        }
    } catch (const RuntimeError& error) {
        throw RuntimeError(error.number(), error.description(), source);
    }
}

void satisekrani::kaydet_click() {
    eksiltme = 0;
    if (ui.satisekrani1->rows() == 2) {
        mesaj(u"ONCE_SATIS_YAP"_s, MessageBoxStyle::ok, QString());
        giveFocus(*ui.barkod);
        return;
    }
    if (!satisbaglantiac()) {
        tellNoDatabase();
        return;
    }
    urunkayitkapat();
    restWhenIdle();  // behind a failure too
    try {
        // Inside the handler's reach: a file that has gone is told like any failure, and a box that tells of
        // one comes behind the end of the press.
        Press press(satisbaglanti);
        satiskaydet();
        stokguncelle();
        press.finish();
        satistemizle();
        giveFocus(*ui.barkod);
    } catch (const RuntimeError& error) {
        reportCommitFailure(error);
    }
}

void satisekrani::reportCommitFailure(const RuntimeError& error) {
    QString text = error.description().trimmed();
    if (text.isEmpty() && error.number() != 0)
        text = u"Hata kodu: " + QString::number(error.number());
    const QString source = error.source().trimmed();
    if (!source.isEmpty())
        text += (text.isEmpty() ? QString() : u" - "_s) + source;
    if (text.isEmpty())
        text = metin(u"MSG_SATIS_KAYIT_HATA"_s);
    izyaz(u"SATERR kaydet: " + text);
    mesaj(metin(u"MSG_SATIS_KAYIT_HATA"_s) + u": " + text, MessageBoxStyle::critical, metin(u"HATA"_s));
}

}  // namespace kovanix
