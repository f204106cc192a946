#include "cashier.h"

#include <QApplication>
#include <QPointer>
#include <array>
#include <utility>

#include "app/modTurkce.h"
#include "desktop/messagebox.h"
#include "exactamounts.h"
#include "hands.h"
#include "player.h"
#include "runtime/screen.h"
#include "runtime/screenregistry.h"
#include "values/numbers.h"

namespace kovanix {

std::span<const Cashier::Choice> Cashier::choices() {
    using C = Cashier;
    // What needs a control that is not there yet, or dead, is never possible and costs nothing: a new screen
    // or button gets its row here.
    static constexpr std::array table{
        Choice{u"scan", 170, &C::readyToScan, &C::scanKnown},
        Choice{u"scan of the ticket", 60, &C::readyWithLines, &C::scanOfTicket},
        Choice{u"scale label", 45, &C::readyToScan, &C::scanLabel},
        Choice{u"unknown barcode", 22, &C::readyToScan, &C::scanUnknown},
        Choice{u"barcode of zeros", 5, &C::readyToScan, &C::scanZeros},
        Choice{u"Enter in an empty barcode", 5, &C::readyToScan, &C::enterNothing},
        Choice{u"typed and taken back", 8, &C::readyToScan, &C::typeAndTakeBack},
        Choice{u"barcode taken back", 200, &C::barcodeLeftOver, &C::takeBackBarcode},
        Choice{u"scan past the barcode", 80, &C::gridFocused, &C::scanPastBarcode},
        Choice{u"press on the barcode", 40, &C::barcodePressable, &C::pressBarcode},
        Choice{u"press on the background", 15, &C::backgroundPressable, &C::pressBackground},
        Choice{u"quantity key", 60, &C::keysPressable, &C::pressQuantityKey},
        Choice{u"typed quantity", 30, &C::quantityHasRoom, &C::typeQuantity},
        Choice{u"ninth character", 6, &C::quantityPressable, &C::typeNinthCharacter},
        Choice{u"Enter in the quantity", 12, &C::quantityEnterable, &C::enterInQuantity},
        Choice{u"Tab", 3, &C::atCounter, &C::pressTab},

        Choice{u"scan on the banner", 50, &C::bannerFocused, &C::scanOnBanner},
        Choice{u"press on the banner", 8, &C::bannerPressable, &C::pressBanner},
        Choice{u"Escape on the banner", 50, &C::bannerFocused, &C::escapeFromBanner},
        Choice{u"typed name", 40, &C::namePressable, &C::typeName},
        Choice{u"typed price", 40, &C::pricePressable, &C::typePrice},
        Choice{u"price key", 30, &C::priceKeysPressable, &C::pressPriceKey},
        Choice{u"KAYDET of the unknown product", 50, &C::productSavable, &C::saveProduct},
        Choice{u"KAPAT of the unknown product", 15, &C::unknownClosable, &C::closeUnknown},

        Choice{u"F4", 10, &C::barcodeFocused, &C::openPriceCheckByKey},
        Choice{u"price check", 6, &C::priceCheckPressable, &C::openPriceCheck},
        Choice{u"price of a product", 250, &C::priceCheckFocused, &C::checkKnown},
        Choice{u"price of an unknown barcode", 60, &C::priceCheckFocused, &C::checkUnknown},
        Choice{u"price of a scale label", 40, &C::priceCheckFocused, &C::checkLabel},
        Choice{u"price of nothing", 40, &C::priceCheckFocused, &C::checkNothing},
        Choice{u"Escape from the price check", 40, &C::priceCheckFocused, &C::escapeFromPriceCheck},
        Choice{u"KAPAT of the price check", 20, &C::priceCheckClosable, &C::closePriceCheck},

        Choice{u"press on a line", 55, &C::cellPressable, &C::pressLine},
        Choice{u"press on another cell", 20, &C::cellPressable, &C::pressOtherCell},
        Choice{u"arrow key", 60, &C::gridFocused, &C::moveInGrid},
        Choice{u"press on a field of the line", 30, &C::fieldPressable, &C::pressField},
        Choice{u"typed into the line", 150, &C::fieldFocused, &C::typeInField},
        Choice{u"key of the line", 40, &C::lineKeysPressable, &C::pressLineKey},
        Choice{u"TAMAM", 80, &C::lineApplicable, &C::applyLine},
        Choice{u"amount beyond the screen", 4, &C::lineApplicable, &C::overflowLine},
        Choice{u"amount beyond the screen later", 4, &C::lineApplicable, &C::overflowLineLater},
        Choice{u"VAZGEÇ", 12, &C::lineLeavable, &C::leaveLine},
        Choice{u"Escape from the line", 20, &C::fieldFocused, &C::escapeFromLine},
        Choice{u"line removed", 20, &C::lineRemovable, &C::removeLine},

        Choice{u"money", 70, &C::moneyPressable, &C::pressMoney},
        Choice{u"subtract mode", 15, &C::subtractPressable, &C::pressSubtract},
        Choice{u"press on the typed cash", 15, &C::cashPressable, &C::pressCash},
        Choice{u"typed cash", 100, &C::cashFocused, &C::typeCash},
        Choice{u"Enter in the cash", 40, &C::cashFocused, &C::enterInCash},
        Choice{u"cash cleared", 8, &C::cashClearable, &C::clearCash},
        Choice{u"quantity as cash", 12, &C::quantityAsCashPressable, &C::takeQuantityAsCash},
        Choice{u"press on an amount", 10, &C::displayPressable, &C::pressDisplay},
        Choice{u"F1", 22, &C::barcodeFocused, &C::storeByKey},
        Choice{u"KAYDET", 10, &C::storePressable, &C::store},
        Choice{u"F2", 6, &C::barcodeFocused, &C::printByKey},
        Choice{u"KAYDET VE YAZDIR", 3, &C::printPressable, &C::print},
        Choice{u"F3", 10, &C::barcodeFocused, &C::cancelByKey},
        Choice{u"SATIŞ İPTAL", 6, &C::cancelPressable, &C::cancel},

        Choice{u"F9", 4, &C::barcodeFocused, &C::endByKey},
        Choice{u"KAPAT", 3, &C::endPressable, &C::end},
        Choice{u"F10", 3, &C::barcodeFocused, &C::minimiseByKey},
        Choice{u"press on the total", 3, &C::totalPressable, &C::minimise},
        Choice{u"F7", 3, &C::barcodeFocused, &C::openMenuByKey},
        Choice{u"MENÜ", 2, &C::menuPressable, &C::openMenu},
        Choice{u"F8", 3, &C::barcodeFocused, &C::openAboutByKey},
        Choice{u"Kovanix", 2, &C::aboutPressable, &C::openAbout},
        Choice{u"right press on the total", 3, &C::totalPressable, &C::openTotalThemes},
        Choice{u"double press on the clock", 3, &C::clockPressable, &C::openClock},
        Choice{u"screen closed", 100, &C::otherScreenInFront, &C::closeOtherScreen},
    };
    return table;
}

Cashier::Cashier(quint64 seed, ShopLedger& ledger, BoxAnswers& boxes,
                 std::function<void(const QString&)> told)
    : m_random(seed), m_ledger(ledger), m_boxes(boxes), m_told(std::move(told)) {}

int Cashier::kinds() {
    return int(choices().size());
}

QStringList Cashier::neverMade() const {
    QStringList kinds;
    for (const Choice& choice : choices()) {
        if (!m_made.contains(&choice))
            kinds.append(QString::fromUtf16(choice.kind));
    }
    return kinds;
}

const Deed& Cashier::act() {
    m_deed = {};
    m_deed.before = viewOf(till());
    m_deed.lines = m_deed.before.lines;
    m_deed.cash = valueOf(m_deed.before.cash);
    m_deed.quantity = m_deed.before.quantity;
    m_deed.barcode = m_deed.before.barcode;

    std::vector<const Choice*> possible;
    quint64 weights = 0;
    for (const Choice& choice : choices()) {
        if (choice.weight > 0 && (this->*choice.possible)()) {
            possible.push_back(&choice);
            weights += quint64(choice.weight);
        }
    }
    if (possible.empty()) {
        announce(QStringLiteral("does nothing"));
        m_deed.also = [] { return QStringLiteral("there was nothing that a cashier could do"); };
        return m_deed;
    }
    quint64 drawn = m_random.below(weights);
    for (const Choice* choice : possible) {
        if (drawn < quint64(choice->weight)) {
            ++m_made[choice];
            (this->*choice->make)();
            break;
        }
        drawn -= quint64(choice->weight);
    }
    return m_deed;
}

satisekrani& Cashier::till() {
    return screen<satisekrani>();
}

void Cashier::announce(const QString& what) {
    m_deed.what = what;
    m_told(what);
}

/// Expects a box with a text of the catalogue and draws its answer.
/// @param title  the usual one where none is given
int Cashier::expectBox(const QString& textKey, std::initializer_list<int> answers, const QString& title) {
    const int answer = std::data(answers)[m_random.below(answers.size())];
    m_boxes.expect(title.isEmpty() ? metin(QStringLiteral("BILGI")) : title, metin(textKey), answer);
    return answer;
}

/// Expects a box that only tells something.
void Cashier::expectNotice(const QString& textKey) {
    expectBox(textKey, {MessageBoxAnswer::ok, BoxAnswers::escape});
}

/// What the ticket comes to with these lines; a total that is too long for the screen wipes it.
void Cashier::willShow(std::vector<TicketLine> lines) {
    if (!overflows(lines)) {
        m_deed.lines = std::move(lines);
        return;
    }
    expectNotice(QStringLiteral("BASAMAK_LIMIT"));
    willEmpty();
}

void Cashier::willEmpty() {
    m_deed.lines.clear();
    m_deed.cash = 0;
    m_deed.quantity.clear();
    m_deed.barcode.clear();
    m_subtracting = false;
}

void Cashier::willBe(QLineEdit& field, const QString& text) {
    m_deed.also = [shown = QPointer<QLineEdit>(&field), text]() -> QString {
        if (!shown || shown->text() == text)
            return {};
        return shown->objectName() + u" holds \"" + shown->text() + u"\", not \"" + text + u'"';
    };
}

void Cashier::pressButton(QWidget& control) {
    announce(u"presses " + control.objectName());
    pressOn(control);
}

QString Cashier::digits(int count) {
    QString text;
    for (int place = 0; place < count; ++place)
        text += QChar(u'0' + char16_t(m_random.below(10)));
    return text;
}

/// A number as cashiers type it: mostly sensible, at times not one at all.
QString Cashier::number() {
    switch (m_random.below(8)) {
        case 0:
        case 1:
            return digits(1);
        case 2:
            return digits(2);
        case 3:
            return digits(1) + u',' + digits(1);
        case 4:
            return digits(2) + u',' + digits(2);
        case 5:
            return digits(1) + u',' + digits(3);
        case 6:
            return QStringLiteral("0,") + digits(4);
        default:
            return anyOf({QStringLiteral("0"), QStringLiteral(","), QStringLiteral(",5"),
                          QStringLiteral("12,"), QStringLiteral("1,,2"), QStringLiteral("007"), digits(4),
                          digits(6)});
    }
}

/// What the next sale takes for its quantity.
QString Cashier::pressedQuantity() const {
    return isNumeric(before().quantity) ? before().quantity : QStringLiteral("1");
}

bool Cashier::otherScreenInFront() const {
    const auto* active = qobject_cast<Screen*>(QApplication::activeWindow());
    return active && active != &till();
}

bool Cashier::atCounter() const {
    return !otherScreenInFront();
}

bool Cashier::barcodeFocused() const {
    return atCounter() && ui().barkod->hasFocus();
}

bool Cashier::readyToScan() const {
    return barcodeFocused() && ui().barkod->text().isEmpty();
}

bool Cashier::readyWithLines() const {
    return readyToScan() && !before().lines.empty();
}

bool Cashier::barcodeLeftOver() const {
    return barcodeFocused() && !ui().barkod->text().isEmpty();
}

bool Cashier::gridFocused() const {
    return atCounter() && ui().satisekrani1->hasFocus();
}

}  // namespace kovanix
