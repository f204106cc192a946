// Barcodes and quantities.

#include "cashier.h"
#include "desktop/messagebox.h"
#include "exactamounts.h"
#include "hands.h"
#include "player.h"
#include "values/numbers.h"
#include "widgets/controlarray.h"

namespace kovanix {

namespace {

constexpr int longestTyped = 8;          // characters of a quantity
constexpr qsizetype longestByKeys = 11;  // as far as this cashier goes; the field takes any length
constexpr int fewestWithWeight = 8;      // characters of a scale's label

bool isLabel(const QString& code) {
    const double prefix = toNumber(code.left(2)).value_or(0);
    return prefix == 27 || prefix == 28 || prefix == 29;
}

QString labelCode(const QString& label) {
    return label.mid(3, 4);
}

/// The weight on a label, as a quantity in kilograms; nothing where it is none.
std::optional<QString> labelQuantity(const QString& label) {
    const std::optional<double> grams = toNumber(label.mid(7, 5));
    return grams ? std::optional(numberText(*grams / 1000)) : std::nullopt;
}

bool isZero(const QString& barcode) {
    return valueOf(barcode) == 0;
}

}  // namespace

bool Cashier::barcodePressable() const {
    return atCounter() && !ui().barkod->hasFocus() && canPress(*ui().barkod);
}

bool Cashier::backgroundPressable() const {
    return atCounter() && canPress(*ui().korumaresmi2);
}

bool Cashier::keysPressable() const {
    return atCounter() && ui().adet->text().size() < longestByKeys && canPress(*ui().tus_0);
}

bool Cashier::quantityPressable() const {
    return atCounter() && canPress(*ui().adet);
}

bool Cashier::quantityHasRoom() const {
    return quantityPressable() && ui().adet->text().size() < longestTyped;
}

/// Enter in the quantity makes a barcode of it; empty, or with the prefix of a label and no weight, it ends
/// the process.
bool Cashier::quantityEnterable() const {
    if (!atCounter() || !ui().adet->hasFocus())
        return false;
    const QString text = ui().adet->text();
    if (text.isEmpty())
        return false;
    return !isLabel(text) || (text.size() >= fewestWithWeight && labelQuantity(text));
}

/// What the ticket looks like once a product has been sold by the keyboard's way.
void Cashier::sell(const QString& barcode, const QString& quantity) {
    std::vector<TicketLine> lines = before().lines;
    const auto merged = lineOf(lines, barcode);
    if (merged != lines.end()) {
        merged->quantity = numberText(valueOf(quantity) + valueOf(merged->quantity));
    } else {
        const ShopLedger::Product product = m_ledger.product(barcode);
        lines.push_back(
            {{}, barcode, product.name.trimmed(), quantity, format(product.sale, u"###,###,##0.00"), {}});
    }
    m_deed.quantity.clear();
    m_deed.barcodeFocused = true;
    willShow(std::move(lines));
}

void Cashier::willAskForUnknown(const QString& barcode) {
    m_deed.quantity.clear();
    m_deed.also = [barcode]() -> QString {
        if (!ui().urunbulunamadiframesi->isVisible())
            return u"the panel for the unknown " + barcode + u" isn't there";
        if (ui().bulunulamayaurun->text() != barcode)
            return u"the panel asks for " + ui().bulunulamayaurun->text() + u", not for " + barcode;
        return {};
    };
}

void Cashier::scan(const QString& code) {
    typeText(code);
    sendEnter();
}

void Cashier::scanKnown() {
    if (m_ledger.barcodes().isEmpty())
        return enterNothing();
    const QString barcode = anyOf(m_ledger.barcodes());
    announce(u"scans " + barcode);
    sell(barcode, pressedQuantity());
    scan(barcode);
}

void Cashier::scanOfTicket() {
    const TicketLine line = before().lines.at(m_random.below(before().lines.size()));
    if (!m_ledger.barcodes().contains(line.barcode))
        return scanKnown();
    announce(u"scans again " + line.barcode);
    sell(line.barcode, pressedQuantity());
    scan(line.barcode);
}

void Cashier::scanLabel() {
    const bool known = !m_ledger.labelCodes().isEmpty() && !m_random.chance(0.08);
    const QString code = known ? anyOf(m_ledger.labelCodes()) : digits(4);
    const int grams = m_random.chance(0.03) ? 0 : m_random.between(1, m_random.chance(0.1) ? 99999 : 3000);
    const QString label = anyOf({QStringLiteral("27"), QStringLiteral("28"), QStringLiteral("29")}) +
                          digits(1) + code + QString::number(grams).rightJustified(5, u'0') + digits(1);
    announce(u"scans the scale label " + label);
    if (m_ledger.knows(code))
        sell(code, *labelQuantity(label));
    else if (!isZero(code))
        willAskForUnknown(code);
    else
        m_deed.quantity.clear();
    scan(label);
}

/// A barcode that no product has and no scale prints.
QString Cashier::unknownBarcode() {
    for (;;) {
        const QString barcode = QString::number(m_random.between(3, 9)) + digits(m_random.between(1, 13));
        if (!m_ledger.knows(barcode))
            return barcode;
    }
}

void Cashier::scanUnknown() {
    const QString barcode = unknownBarcode();
    announce(u"scans the unknown " + barcode);
    willAskForUnknown(barcode);
    scan(barcode);
}

void Cashier::scanZeros() {
    const QString zeros(m_random.between(1, 13), u'0');
    announce(u"scans " + zeros);
    m_deed.quantity.clear();
    m_deed.barcodeFocused = true;
    scan(zeros);
}

void Cashier::enterNothing() {
    announce(QStringLiteral("presses Enter in the empty barcode"));
    m_deed.barcodeFocused = true;
    sendEnter();
}

void Cashier::typeAndTakeBack() {
    const QString typed = digits(m_random.between(1, 13));
    announce(u"types " + typed + u" and takes it back");
    m_deed.barcodeFocused = true;
    typeText(typed + u"x.-ş");
    for (qsizetype left = typed.size(); left > 0; --left)
        sendKey(Qt::Key_Backspace, QStringLiteral("\b"));
}

void Cashier::takeBackBarcode() {
    announce(u"takes back " + before().barcode);
    m_deed.barcode.clear();
    m_deed.barcodeFocused = true;
    sendKey(Qt::Key_End);
    for (qsizetype left = before().barcode.size(); left > 0; --left)
        sendKey(Qt::Key_Backspace, QStringLiteral("\b"));
}

void Cashier::scanPastBarcode() {
    const QString barcode = m_ledger.barcodes().isEmpty() ? unknownBarcode() : anyOf(m_ledger.barcodes());
    announce(u"scans " + barcode + u" while the list has the focus");
    scan(barcode);
}

void Cashier::pressBarcode() {
    m_deed.barcodeFocused = true;
    pressButton(*ui().barkod);
}

void Cashier::pressBackground() {
    m_deed.barcodeFocused = true;
    pressButton(m_random.chance(0.5) || !canPress(*ui().korumaresmi) ? *ui().korumaresmi2
                                                                     : *ui().korumaresmi);
}

void Cashier::pressQuantityKey() {
    constexpr int clearKey = 11;
    const auto keys = controlArrayOf<DrawnButton>(till(), QStringLiteral("tus"));
    const std::size_t index = m_random.chance(0.15) ? clearKey : m_random.below(clearKey);
    m_deed.quantity = index == clearKey ? QString() : before().quantity + keys.at(index)->caption();
    m_deed.barcodeFocused = true;
    pressButton(*keys.at(index));
}

void Cashier::typeQuantity() {
    const qsizetype room = longestTyped - before().quantity.size();
    const QString typed = number().left(room);
    announce(u"types the quantity " + typed);
    pressOn(*ui().adet);
    m_deed.quantity = afterTyping(*ui().adet, typed);
    typeText(typed);
}

void Cashier::typeNinthCharacter() {
    const qsizetype room = std::max<qsizetype>(longestTyped - before().quantity.size(), 0);
    const QString typed = digits(int(room) + 1);
    announce(u"types " + typed + u" into the quantity, one character too many");
    expectNotice(QStringLiteral("ADET_LIMIT"));
    m_deed.quantity.clear();
    m_deed.barcodeFocused = true;
    pressOn(*ui().adet);
    typeText(typed);
}

void Cashier::enterInQuantity() {
    const QString typed = before().quantity;
    announce(u"presses Enter in the quantity " + typed);
    const bool label = isLabel(typed);
    const QString barcode = label ? labelCode(typed) : typed;
    m_deed.barcode.clear();
    if (m_ledger.knows(barcode))
        sell(barcode, label ? *labelQuantity(typed) : pressedQuantity());
    else if (!isZero(barcode))
        willAskForUnknown(barcode);
    m_deed.quantity.clear();
    m_deed.barcodeFocused = true;
    sendEnter();
}

void Cashier::pressTab() {
    announce(QStringLiteral("presses Tab"));
    sendKey(Qt::Key_Tab, QStringLiteral("\t"));
}

}  // namespace kovanix
