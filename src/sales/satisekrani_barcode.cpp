#include "app/modTurkce.h"
#include "data/baglanmamodulu.h"
#include "desktop/focus.h"
#include "desktop/messagebox.h"
#include "runtime/attempt.h"
#include "sales/satisekrani.h"
#include "sales/weighedlabel.h"
#include "screens/boxes.h"
#include "values/numbers.h"
#include "widgets/controlarray.h"
#include "widgets/fieldedits.h"
#include "widgets/keyfilter.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {
constexpr int clearKey = 11;
constexpr qsizetype longestQuantity = 8;
}  // namespace

void satisekrani::tus_click(int index) {
    if (index == clearKey) {
        ui.adet->setText({});
    } else {
        const auto keys = controlArrayOf<vkCommand>(*this, u"tus"_s);
        giveFocus(*ui.adet);
        ui.adet->setText(withKey(ui.adet->text(), keys.at(static_cast<std::size_t>(index))->caption()));
    }
    giveFocus(*ui.barkod);
}

int satisekrani::adet_keypress(int code) {
    // The text is measured as it stands before the key, whatever the key is.
    if (ui.adet->text().size() >= longestQuantity) {
        mesaj(u"ADET_LIMIT"_s, MessageBoxStyle::ok, QString());
        ui.adet->setText({});
        giveFocus(*ui.barkod);
        return 0;
    }
    return onlyCharacters(u",0123456789")(code);
}

void satisekrani::adet_keydown(int key) {
    if (key != Qt::Key_Return)
        return;
    // A scan that lands here is a barcode; a short number is barcode and quantity at once.
    ui.barkod->setText(ui.adet->text());
    splitLabelInEntry();
    goToEntryRow();
    urunekle();
    ui.adet->setText({});
    giveFocus(*ui.barkod);
}

void satisekrani::splitLabelInEntry() {
    const std::optional<WeighedLabel> label = splitWeighedLabel(ui.barkod->text());
    if (!label)
        return;
    ui.adet->setText(numberText(label->kilograms));
    ui.barkod->setText(label->code);
}

void satisekrani::goToEntryRow() {
    VSFlexGrid& grid = *ui.satisekrani1;
    grid.setRow(grid.rows() - 1);
    grid.setCol(1);
}

// Here as everywhere on this screen by setText: QLineEdit::clear() keeps each letter to be undone, and a till
// that scans all day never lets go of any.
void satisekrani::clearEntry() {
    ui.barkod->setText({});
    ui.adet->setText({});
    toplamhesapla();
    goToEntryRow();
}

void satisekrani::urunkayitkapat() {
    attempt([this] { urunkayit.close(); });
}

void satisekrani::urunekle() {
    if (!baglantihazir()) {
        tellNoDatabase();
        return;
    }
    try {
        if (!isNumeric(ui.adet->text()))
            ui.adet->setText(u"1"_s);
        if (ui.satisekrani1->col() != 1) {
            goToEntryRow();
            toplamhesapla();
            giveFocus(*ui.barkod);
            return;
        }
        sellBarcode();
    } catch (const RuntimeError& error) {
        endLookUp(error);
    }
}

/// Ends the look-up that failed and says why.
void satisekrani::endLookUp(const RuntimeError& error) {
    urunkayitkapat();
    tellDatabaseFailure(error);
}

void satisekrani::sellBarcode() {
    VSFlexGrid& grid = *ui.satisekrani1;
    urunkayitkapat();
    urunkayit.open(u"select * FROM urunler where barkod='" + sqlmetin(ui.barkod->text().trimmed()) + u'\'',
                   baglanti());
    if (urunkayit.atEnd()) {
        urunkayit.close();
        if (sayicevir(ui.barkod->text()) != 0)
            showUnknownProduct();
        else
            clearEntry();
        return;
    }
    if (mergeIntoLine(ui.barkod->text()))
        return;

    // All is read before anything is written: half a product would stay in the entry row.
    const QString barcode = nullmetin(urunkayit.field(u"barkod"_s));
    const QString name = nullmetin(urunkayit.field(u"urun"_s));
    const double price = sayicevir(urunkayit.field(u"satis"_s));
    const int row = grid.row();
    grid.setTextMatrix(row, 1, barcode);
    grid.setTextMatrix(row, 2, name);
    grid.setTextMatrix(row, 3, ui.adet->text());
    grid.setTextMatrix(row, 4, format(price, u"###,###,##0.00"));
    grid.setTextMatrix(
        row, 5,
        format(sayicevir(grid.textMatrix(row, 3)) * sayicevir(grid.textMatrix(row, 4)), u"###,###,##0.00"));
    if (row == grid.rows() - 1)
        grid.setRows(grid.rows() + 1);
    urunkayit.close();
    goToEntryRow();
    grid.ensureRowVisible(grid.row());
    ui.barkod->setText({});
    toplamhesapla();
    ui.adet->setText({});
    giveFocus(*ui.barkod);
}

bool satisekrani::mergeIntoLine(const QString& barcode) {
    VSFlexGrid& grid = *ui.satisekrani1;
    if (grid.rows() <= 2)
        return false;
    for (int row = 1; row < grid.rows(); ++row) {
        // The text as typed against the trimmed one of the cell: a trailing blank finds the product but no
        // line.
        if (row == grid.row() || grid.textMatrix(row, 1) != barcode)
            continue;
        const double quantity = sayicevir(ui.adet->text()) + sayicevir(grid.textMatrix(row, 3));
        grid.setTextMatrix(row, 3, numberText(quantity));
        grid.setTextMatrix(grid.row(), 3, QString());
        urunkayit.close();
        clearEntry();
        if (row < grid.rows())  // a total grown too long has wiped the ticket
            grid.ensureRowVisible(row);
        return true;
    }
    return false;
}

}  // namespace kovanix
