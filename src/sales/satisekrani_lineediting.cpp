#include "data/baglanmamodulu.h"
#include "desktop/focus.h"
#include "runtime/attempt.h"
#include "sales/modSatis.h"
#include "sales/satisekrani.h"
#include "screens/clicks.h"
#include "values/numbers.h"
#include "widgets/fieldedits.h"
#include "widgets/keyfilter.h"

// Every failure in here is passed over, and the next step runs.

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int clearKey = 23;
constexpr QStringView money = u"###,###,##0.00";

// What `nereye` holds: the field that the keys write into.
const QString& quantityField() {
    static const QString code = u"1"_s;
    return code;
}

const QString& priceField() {
    static const QString code = u"2"_s;
    return code;
}

}  // namespace

void satisekrani::hucrebasildi(int row, int column) {
    if (row <= 0)
        return;
    VSFlexGrid& grid = *ui.satisekrani1;
    attempt([&] { grid.setRow(row); });
    attempt([&] { grid.setCol(column); });
    ui.satir->setText(QString::number(row));
    switch (column) {
        case 1:
            toggleMark(row);
            break;
        case 3:
        case 4:
        case 5:
            openLineEditing(row, column);
            break;
        default:
            break;
    }
}

/// The mark in the hidden first column; nothing reads it.
void satisekrani::toggleMark(int row) {
    VSFlexGrid& grid = *ui.satisekrani1;
    const QString set = u"-1"_s;
    attempt([&] {
        if (isSaleLine(row))
            grid.setTextMatrix(row, 0, grid.textMatrix(row, 0) == set ? u"0"_s : set);
    });
}

void satisekrani::openLineEditing(int row, int column) {
    const VSFlexGrid& grid = *ui.satisekrani1;
    if (grid.textMatrix(row, 1).isEmpty())
        return;
    m_editedLine = grid.textMatrix(row, 1);
    ui.urununadi->setText(grid.textMatrix(row, 2));
    ui.urununadi->setAccessibleName({});  // from now on it is named by its text
    ui.adetdegis->setText(grid.textMatrix(row, 3));
    ui.fiyatdegis->setText(grid.textMatrix(row, 4));
    ui.nereye->setText(column == 3 ? quantityField() : priceField());
    showPanel(*ui.urunislemleri);
    giveFocus(column == 3 ? *ui.adetdegis : *ui.fiyatdegis);
}

/// The field that the panel's keys write into; none before a line was opened.
QLineEdit* satisekrani::editedField() const {
    if (ui.nereye->text() == quantityField())
        return ui.adetdegis;
    return ui.nereye->text() == priceField() ? ui.fiyatdegis : nullptr;
}

/// A press in one of the panel's fields empties it for the new number.
void satisekrani::lineField_mousedown(QLineEdit& field) {
    ui.nereye->setText(&field == ui.adetdegis ? quantityField() : priceField());
    giveFocus(field);
    field.clear();
}

void satisekrani::duzenlemetusu_click(int index) {
    QLineEdit* field = editedField();
    if (!field)
        return;
    if (index == clearKey) {
        field->clear();
    } else {
        field->setText(withKey(field->text(), panelKey(u"duzenlemetusu"_s, index)));
        field->end(false);
    }
    giveFocus(*field);
}

/// Whether a row still holds the line that the panel was opened on: its ticket may be sold or cancelled by
/// now, and the row be the entry row or a line of the next customer's.
bool satisekrani::isEditedLine(int row) const {
    const VSFlexGrid& grid = *ui.satisekrani1;
    return m_editedLine && row > 0 && row < grid.rows() - 1 && grid.textMatrix(row, 1) == *m_editedLine;
}

/// Writes what the panel's fields hold into that row.
void satisekrani::writeEditedLine(int row) {
    VSFlexGrid& grid = *ui.satisekrani1;
    attempt([&] { grid.setTextMatrix(row, 2, ui.urununadi->text()); });
    if (isNumeric(ui.adetdegis->text()))
        attempt([&] { grid.setTextMatrix(row, 3, ui.adetdegis->text()); });
    if (isNumeric(ui.fiyatdegis->text()))
        attempt([&] { grid.setTextMatrix(row, 4, format(sayicevir(ui.fiyatdegis->text()), money)); });
    attempt([&] {
        grid.setTextMatrix(
            row, 5, format(sayicevir(grid.textMatrix(row, 3)) * sayicevir(grid.textMatrix(row, 4)), money));
    });
}

void satisekrani::urunislemlerikapat_click() {
    const int row = ui.satir->text().toInt();
    if (isEditedLine(row))
        writeEditedLine(row);
    attempt([this] { toplamhesapla(); });
    ui.urunislemleri->hide();
    ui.barkod->setText({});
    ui.satir->setText({});
    attempt([this] { goToEntryRow(); });
    attempt([this] { toplamhesapla(); });
    ui.barkod->setText({});
    giveFocus(*ui.barkod);
    ui.nereye->setText(quantityField());
}

void satisekrani::vazgecc_click() {
    ui.urunislemleri->hide();
    giveFocus(*ui.barkod);
}

void satisekrani::urunsil_click() {
    VSFlexGrid& grid = *ui.satisekrani1;
    if (grid.textMatrix(grid.row(), 2).isEmpty()) {
        giveFocus(*ui.barkod);
    } else {
        if (grid.rows() == 2) {
            ui.toplam->setCaption(u"0,00"_s);
            attempt([this] { satistemizle(); });
            attempt([&] { gridhazirla(grid); });
        } else {
            attempt([&] { grid.removeItem(grid.row()); });
        }
        attempt([this] { toplamhesapla(); });
        attempt([this] { goToEntryRow(); });
    }
    ui.adet->setText({});
    ui.urunislemleri->hide();
    ui.nereye->setText(quantityField());
    ui.toplam->update();
    giveFocus(*ui.barkod);
    ui.barkod->setText({});
}

void satisekrani::connectLineEditing() {
    // Only a left press takes the focus: after any other one the next scan must still reach its field.
    ui.satisekrani1->setFocusPolicy(Qt::TabFocus);
    connect(ui.satisekrani1, &VSFlexGrid::mousedown, this, [this](Qt::MouseButton button) {
        if (button != Qt::LeftButton)
            return;
        giveFocus(*ui.satisekrani1);
        hucrebasildi(ui.satisekrani1->mouseRow(), ui.satisekrani1->mouseCol());
    });
    ui.urununadi->setAccessibleName(u"Ürün adı"_s);
    pressKeys(u"duzenlemetusu"_s, &satisekrani::duzenlemetusu_click);
    clicks(this, {{ui.urunislemlerikapat, &satisekrani::urunislemlerikapat_click},
                  {ui.vazgecc, &satisekrani::vazgecc_click},
                  {ui.urunsil, &satisekrani::urunsil_click}});
    for (QLineEdit* field : {ui.adetdegis, ui.fiyatdegis}) {
        field->installEventFilter(this);
        new KeyFilter(
            *field,
            [this](int key) {
                if (key == Qt::Key_Escape)
                    ui.vazgecc->click();
            },
            onlyCharacters(u",0123456789"));
    }
}

}  // namespace kovanix
