// Cash, change and the end of a sale.

#include <array>

#include "cashier.h"
#include "desktop/messagebox.h"
#include "exactamounts.h"
#include "hands.h"
#include "player.h"
#include "values/numbers.h"

namespace kovanix {

namespace {

constexpr qsizetype longestCash = 12;  // as far as this cashier goes; the field takes any length

bool isWhollySelected(const QLineEdit& field) {
    return field.selectedText() == field.text();
}

}  // namespace

bool Cashier::moneyPressable() const {
    return atCounter() && canPress(*ui().resim2);
}

bool Cashier::subtractPressable() const {
    return atCounter() && canPress(*ui().vkCommand5);
}

bool Cashier::cashPressable() const {
    return atCounter() && canPress(*ui().ver2);
}

bool Cashier::cashFocused() const {
    return atCounter() && ui().ver2->hasFocus() &&
           (isWhollySelected(*ui().ver2) || ui().ver2->text().size() < longestCash);
}

bool Cashier::cashClearable() const {
    return atCounter() && canPress(*ui().vsil);
}

bool Cashier::quantityAsCashPressable() const {
    return atCounter() && canPress(*ui().ver3);
}

bool Cashier::displayPressable() const {
    return atCounter() && canPress(*ui().verilen) && canPress(*ui().kalan);
}

bool Cashier::storePressable() const {
    return atCounter() && canPress(*ui().kaydet);
}

bool Cashier::printPressable() const {
    return atCounter() && canPress(*ui().nakit);
}

bool Cashier::cancelPressable() const {
    return atCounter() && canPress(*ui().satisiptal);
}

void Cashier::pressMoney() {
    const std::array<std::pair<Image*, double>, 9> money{{{ui().resim2, 200},
                                                          {ui().resim3, 100},
                                                          {ui().resim4, 50},
                                                          {ui().resim1, 20},
                                                          {ui().Resim5, 10},
                                                          {ui().Resim6, 5},
                                                          {ui().Image1, 1},
                                                          {ui().Image2, 0.5},
                                                          {ui().Image3, 0.25}}};
    const auto& [picture, amount] = money.at(m_random.below(money.size()));
    m_deed.cash += m_subtracting ? -amount : amount;
    const double rounded = valueOf(format(m_deed.cash, u"##0.00"));
    if (rounded < 0) {
        m_deed.belowNothing = rounded;
        m_deed.cash = 0;
    }
    m_subtracting = false;
    m_deed.barcodeFocused = true;
    pressButton(*picture);
}

void Cashier::pressSubtract() {
    m_subtracting = true;
    m_deed.barcodeFocused = true;
    m_deed.also = [] {
        return ui().Shape1->isVisible() ? QString()
                                        : QStringLiteral("the mark of the subtract mode isn't there");
    };
    pressButton(*ui().vkCommand5);
}

void Cashier::pressCash() {
    pressButton(*ui().ver2);
}

void Cashier::typeCash() {
    const QString typed = number();
    announce(u"types the cash " + typed);
    QLineEdit& field = *ui().ver2;
    for (qsizetype length = 1; length <= typed.size(); ++length) {
        const QString shown = afterTyping(field, typed.left(length));
        if (isNumeric(shown))
            m_deed.cash = valueOf(shown);
    }
    willBe(field, afterTyping(field, typed));
    typeText(typed);
}

void Cashier::enterInCash() {
    announce(QStringLiteral("presses Enter in the cash"));
    m_deed.barcodeFocused = true;
    sendEnter();
}

void Cashier::clearCash() {
    m_deed.cash = 0;
    m_deed.barcodeFocused = true;
    pressButton(*ui().vsil);
}

void Cashier::takeQuantityAsCash() {
    if (isNumeric(before().quantity)) {
        m_deed.cash = valueOf(before().quantity);
        m_deed.quantity.clear();
        m_subtracting = false;
    }
    m_deed.barcodeFocused = true;
    pressButton(*ui().ver3);
}

void Cashier::pressDisplay() {
    m_deed.barcodeFocused = true;
    pressButton(m_random.chance(0.5) ? *ui().verilen : *ui().kalan);
}

/// An empty ticket can be neither stored nor cancelled.
bool Cashier::willRefuseEmpty() {
    m_subtracting = false;
    if (!before().lines.empty())
        return false;
    expectNotice(QStringLiteral("ONCE_SATIS_YAP"));
    m_deed.barcodeFocused = true;
    return true;
}

void Cashier::willStore() {
    if (willRefuseEmpty())
        return;
    m_deed.stores = true;
    m_deed.barcodeFocused = true;
    willEmpty();
}

void Cashier::storeByKey() {
    announce(QStringLiteral("presses F1"));
    willStore();
    sendKey(Qt::Key_F1);
}

void Cashier::store() {
    willStore();
    pressButton(*ui().kaydet);
}

void Cashier::printByKey() {
    announce(QStringLiteral("presses F2"));
    willStore();
    m_deed.prints = m_deed.stores;
    sendKey(Qt::Key_F2);
}

void Cashier::print() {
    willStore();
    m_deed.prints = m_deed.stores;
    pressButton(*ui().nakit);
}

void Cashier::willCancel() {
    if (willRefuseEmpty())
        return;
    const int answer =
        expectBox(QStringLiteral("MSG_SATIS_IPTAL_SOR"),
                  {MessageBoxAnswer::yes, MessageBoxAnswer::no, BoxAnswers::escape}, QStringLiteral("UYARI"));
    if (answer != MessageBoxAnswer::yes)
        return;
    m_deed.barcodeFocused = true;
    willEmpty();
}

void Cashier::cancelByKey() {
    announce(QStringLiteral("presses F3"));
    willCancel();
    m_deed.barcodeFocused = true;
    sendKey(Qt::Key_F3);
}

void Cashier::cancel() {
    willCancel();
    pressButton(*ui().satisiptal);
}

}  // namespace kovanix
