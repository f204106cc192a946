// Changing and removing lines.

#include "cashier.h"
#include "exactamounts.h"
#include "hands.h"
#include "player.h"
#include "values/numbers.h"
#include "widgets/controlarray.h"

namespace kovanix {

namespace {

constexpr qsizetype longestField = 14;  // as far as this cashier goes; the fields take any length

int editedRow(const SalesControls& ui) {
    return ui.satir->text().toInt();
}

QLineEdit& activeField(const SalesControls& ui) {
    return ui.nereye->text() == u"2" ? *ui.fiyatdegis : *ui.adetdegis;
}

}  // namespace

/// The cells of the ticket that a pointer can get at, the heading's and the entry row's included.
std::vector<std::pair<int, int>> Cashier::pressableCells(int firstColumn, int lastColumn) const {
    const VSFlexGrid& grid = *ui().satisekrani1;
    std::vector<std::pair<int, int>> cells;
    for (int row = 0; row < grid.rows(); ++row) {
        for (int column = firstColumn; column <= lastColumn; ++column) {
            const QPoint middle = grid.cellRect(row, column).center();
            const bool underHeading = row > 0 && middle.y() < grid.rowHeight();
            if (!underHeading && canPress(*grid.viewport(), middle))
                cells.emplace_back(row, column);
        }
    }
    return cells;
}

bool Cashier::cellPressable() const {
    return atCounter() && !pressableCells(2, 3).empty();
}

bool Cashier::fieldPressable() const {
    return atCounter() && canPress(*ui().adetdegis);
}

bool Cashier::fieldFocused() const {
    const QLineEdit* field = ui().adetdegis->hasFocus() ? ui().adetdegis : ui().fiyatdegis;
    return atCounter() && field->hasFocus() && field->text().size() < longestField;
}

bool Cashier::lineKeysPressable() const {
    return atCounter() && canPress(*ui().duzenlemetusu_12) && activeField(ui()).text().size() < longestField;
}

/// Not where the line has gone since and the entry row stands in its place: the till writes name, quantity
/// and price into it all the same, where the total counts them and no sale stores them.
bool Cashier::lineApplicable() const {
    return atCounter() && canPress(*ui().urunislemlerikapat) &&
           editedRow(ui()) != ui().satisekrani1->rows() - 1;
}

bool Cashier::lineLeavable() const {
    return atCounter() && canPress(*ui().vazgecc);
}

bool Cashier::lineRemovable() const {
    return atCounter() && canPress(*ui().urunsil);
}

/// A press on a cell, and what it opens or marks.
void Cashier::pressCell(int row, int column) {
    announce(QStringLiteral("presses the cell %1, %2").arg(row).arg(column));
    const bool onLine = row >= 1 && std::size_t(row) <= before().lines.size();
    if (onLine && column == 1) {
        QString& mark = m_deed.lines.at(std::size_t(row - 1)).mark;
        mark = mark == u"-1" ? QStringLiteral("0") : QStringLiteral("-1");
    }
    if (onLine && column >= 3) {
        const TicketLine line = before().lines.at(std::size_t(row - 1));
        m_deed.also = [line, column]() -> QString {
            if (ui().urununadi->text() != line.name || ui().adetdegis->text() != line.quantity ||
                ui().fiyatdegis->text() != line.price)
                return QStringLiteral("the panel shows another line");
            const QLineEdit& field = column == 3 ? *ui().adetdegis : *ui().fiyatdegis;
            return field.hasFocus() ? QString() : QStringLiteral("the field of the panel hasn't the focus");
        };
    }
    VSFlexGrid& grid = *ui().satisekrani1;
    pressOn(*grid.viewport(), grid.cellRect(row, column).center());
}

void Cashier::pressLine() {
    const auto cells = pressableCells(3, 5);
    if (cells.empty())
        return pressOtherCell();
    const auto [row, column] = cells.at(m_random.below(cells.size()));
    pressCell(row, column);
}

void Cashier::pressOtherCell() {
    const auto cells = pressableCells(1, 2);
    if (cells.empty()) {
        announce(QStringLiteral("looks at the ticket"));
        return;
    }
    const auto [row, column] = cells.at(m_random.below(cells.size()));
    pressCell(row, column);
}

void Cashier::moveInGrid() {
    const std::initializer_list<Qt::Key> keys{Qt::Key_Up,   Qt::Key_Down, Qt::Key_Left,   Qt::Key_Right,
                                              Qt::Key_Home, Qt::Key_End,  Qt::Key_PageUp, Qt::Key_PageDown};
    announce(QStringLiteral("moves in the list"));
    sendKey(std::data(keys)[m_random.below(keys.size())]);
}

void Cashier::pressField() {
    QLineEdit& field = m_random.chance(0.6) ? *ui().adetdegis : *ui().fiyatdegis;
    willBe(field, QString());
    pressButton(field);
}

void Cashier::typeInField() {
    QLineEdit& field = ui().adetdegis->hasFocus() ? *ui().adetdegis : *ui().fiyatdegis;
    if (m_random.chance(0.1) && !field.text().isEmpty()) {
        announce(u"takes a character back from " + field.objectName());
        willBe(field, field.text().chopped(1));
        sendKey(Qt::Key_End);
        sendKey(Qt::Key_Backspace, QStringLiteral("\b"));
        return;
    }
    // A scan that lands here stays here.
    const QString typed = m_random.chance(0.03) ? unknownBarcode() : number();
    announce(u"types " + typed + u" into " + field.objectName());
    willBe(field, afterTyping(field, typed));
    scan(typed);
}

void Cashier::pressLineKey() {
    constexpr int clearKey = 23;
    const auto keys = controlArrayOf<DrawnButton>(till(), QStringLiteral("duzenlemetusu"));
    DrawnButton& key = *keys.at(m_random.below(keys.size()));
    QLineEdit& field = activeField(ui());
    willBe(field, controlIndex(key) == clearKey ? QString() : field.text() + key.caption());
    pressButton(key);
}

/// What the panel's line becomes.
void Cashier::willApply() {
    std::vector<TicketLine> lines = before().lines;
    const int row = editedRow(ui());
    if (row >= 1 && std::size_t(row) <= lines.size()) {
        TicketLine& line = lines.at(std::size_t(row - 1));
        line.name = ui().urununadi->text();
        if (isNumeric(ui().adetdegis->text()))
            line.quantity = ui().adetdegis->text();
        if (isNumeric(ui().fiyatdegis->text()))
            line.price = format(valueOf(ui().fiyatdegis->text()), u"###,###,##0.00");
    }
    m_deed.barcode.clear();
    m_deed.barcodeFocused = true;
    willShow(std::move(lines));
}

void Cashier::applyLine() {
    willApply();
    pressButton(*ui().urunislemlerikapat);
}

/// An amount with so many digits that no total can be shown.
void Cashier::typeBeyondScreen(QLineEdit& field) {
    pressOn(field);
    typeText(QString(m_random.between(22, 25), u'9'));
}

void Cashier::overflowLine() {
    QLineEdit& field = m_random.chance(0.5) ? *ui().adetdegis : *ui().fiyatdegis;
    announce(u"types 22 nines or more into " + field.objectName() + u" and applies it");
    typeBeyondScreen(field);
    willApply();
    pressOn(*ui().urunislemlerikapat);
}

/// A line of nothing at a price beyond the screen: fine, until it is sold once more.
void Cashier::overflowLineLater() {
    announce(QStringLiteral("types 0 into adetdegis and 22 nines or more into fiyatdegis and applies it"));
    pressOn(*ui().adetdegis);
    typeText(QStringLiteral("0"));
    typeBeyondScreen(*ui().fiyatdegis);
    willApply();
    pressOn(*ui().urunislemlerikapat);
}

void Cashier::leaveLine() {
    m_deed.barcodeFocused = true;
    pressButton(*ui().vazgecc);
}

void Cashier::escapeFromLine() {
    announce(QStringLiteral("presses Escape in the line"));
    m_deed.barcodeFocused = true;
    sendKey(Qt::Key_Escape);
}

/// Removes the line that the list stands on, which needn't be the panel's any more.
void Cashier::removeLine() {
    const auto row = std::size_t(ui().satisekrani1->row());
    if (row >= 1 && row <= before().lines.size() && !before().lines.at(row - 1).name.isEmpty())
        m_deed.lines.erase(m_deed.lines.begin() + std::ptrdiff_t(row - 1));
    m_deed.quantity.clear();
    m_deed.barcode.clear();
    m_deed.barcodeFocused = true;
    pressButton(*ui().urunsil);
}

}  // namespace kovanix
