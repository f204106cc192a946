#include "app/modTurkce.h"
#include "appearance/mdlMonitors.h"
#include "data/baglanmamodulu.h"
#include "desktop/focus.h"
#include "desktop/messagebox.h"
#include "runtime/runtimeerror.h"
#include "sales/modSatis.h"
#include "sales/satisekrani.h"
#include "sales/totalfont.h"
#include "values/numbers.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype overflowingTotal = 26;  // characters
constexpr int largestCounter = 32767;       // 16 bits, and the count goes one past the last row

const QString& nothing() {
    static const QString text = u"0,00"_s;
    return text;
}

}  // namespace

void satisekrani::toplamhesapla() {
    VSFlexGrid& grid = *ui.satisekrani1;
    if (grid.rows() - 1 >= largestCounter)
        throw RuntimeError(RuntimeError::overflow, u"Overflow"_s);
    // The sum is built from line totals that are rounded already, and is rounded again at each addition.
    QString total = nothing();
    for (int row = 1; row < grid.rows(); ++row) {
        const QString line =
            format(sayicevir(grid.textMatrix(row, 3)) * sayicevir(grid.textMatrix(row, 4)), u"##0.00");
        grid.setTextMatrix(row, 5, line);
        total = format(sayicevir(total) + sayicevir(line), u"##0.00");
    }
    const qsizetype length = total.trimmed().size();
    if (length >= overflowingTotal) {
        satistemizle();
        ui.toplam->setCaption(nothing());
        mesaj(u"BASAMAK_LIMIT"_s, MessageBoxStyle::ok, QString());
        return;
    }
    ui.toplam->setCaption(total);
    toplamyazisi(static_cast<int>(length));
    const double given = sayicevir(ui.verilen->caption());
    const double change = given - sayicevir(total);
    ui.verilen->setCaption(format(given, u"###,###,##0.00"));
    ui.kalan->setCaption(format(change, u"###,###,##0.00"));
    giveFocus(*ui.barkod);
}

void satisekrani::toplamyazisi(int length) {
    int measured = length;
    if (measured < 0) {
        measured = static_cast<int>(ui.toplam->caption().trimmed().size());
        if (measured < 1)
            measured = 4;
    }
    monitorlerioku();
    ui.toplam->setFontsize(totalFontSize(Monitors.front().width, measured));
}

void satisekrani::satistemizle() {
    ui.toplam->setCaption(nothing());
    ui.barkod->setText({});
    ui.adet->setText({});
    ui.verilen->setCaption(nothing());
    setCashQuietly(ui.verilen->caption());  // its change would leave a bare "0" in verilen
    ui.kalan->setCaption(nothing());
    gridhazirla(*ui.satisekrani1);
    m_editedLine.reset();
    goToEntryRow();
    eksiltme = 0;
    toplamyazisi(-1);
    giveFocus(*ui.barkod);
}

}  // namespace kovanix
