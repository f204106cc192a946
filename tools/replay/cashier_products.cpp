// The unknown product and the price check.

#include <QLocale>

#include "cashier.h"
#include "desktop/messagebox.h"
#include "exactamounts.h"
#include "hands.h"
#include "player.h"
#include "values/numbers.h"
#include "widgets/controlarray.h"

namespace kovanix {

namespace {

constexpr qsizetype longestName = 50;
constexpr qsizetype longestField = 12;  // as far as this cashier goes; the fields take any length

QString capitals(const QString& text) {
    return QLocale(QLocale::Turkish, QLocale::Turkey).toUpper(text);
}

/// What the price field holds once a text has been typed into it: what is no number empties it.
QString priceAfterTyping(const QLineEdit& field, const QString& typed) {
    QString text = field.text();
    int place = field.cursorPosition();
    for (const QChar character : typed) {
        text.insert(place++, character);
        if (!isNumeric(text)) {
            text.clear();
            place = 0;
        }
    }
    return text;
}

}  // namespace

bool Cashier::bannerFocused() const {
    return atCounter() && ui().urunbuunamadibeklet->hasFocus();
}

bool Cashier::bannerPressable() const {
    return atCounter() && canPress(*ui().urunbuunamadibeklet);
}

bool Cashier::namePressable() const {
    return atCounter() && canPress(*ui().urunadi) && ui().urunadi->text().size() < longestName;
}

bool Cashier::pricePressable() const {
    return atCounter() && canPress(*ui().urunsatisi) && ui().urunsatisi->text().size() < longestField;
}

bool Cashier::priceKeysPressable() const {
    return atCounter() && canPress(*ui().bununamayanurunfiyat_12) &&
           ui().urunsatisi->text().size() < longestField;
}

bool Cashier::productSavable() const {
    return atCounter() && canPress(*ui().urunbuunamadikaydet) &&
           !m_ledger.knows(ui().bulunulamayaurun->text());
}

bool Cashier::unknownClosable() const {
    return atCounter() && canPress(*ui().urunbulunamadikapat);
}

bool Cashier::priceCheckPressable() const {
    return atCounter() && canPress(*ui().fiyatgor);
}

bool Cashier::priceCheckFocused() const {
    return atCounter() && ui().fiyargorbarkodu->hasFocus() && ui().fiyargorbarkodu->text().isEmpty();
}

bool Cashier::priceCheckClosable() const {
    return atCounter() && canPress(*ui().fiyargorkapat);
}

void Cashier::scanOnBanner() {
    const QString barcode = unknownBarcode();
    announce(u"scans " + barcode + u" while the banner has the focus");
    expectBox(QStringLiteral("URUN_KAYIT_YOK"), {MessageBoxAnswer::cancel, MessageBoxAnswer::tryAgain,
                                                 MessageBoxAnswer::goOn, BoxAnswers::escape});
    scan(barcode);
}

void Cashier::pressBanner() {
    expectBox(QStringLiteral("URUN_KAYIT_YOK"), {MessageBoxAnswer::cancel, MessageBoxAnswer::tryAgain,
                                                 MessageBoxAnswer::goOn, BoxAnswers::escape});
    pressButton(*ui().urunbuunamadibeklet);
}

void Cashier::escapeFromBanner() {
    announce(QStringLiteral("presses Escape on the banner"));
    m_deed.barcode.clear();
    m_deed.barcodeFocused = true;
    m_deed.also = []() -> QString {
        if (!ui().urunadi->text().isEmpty() || !ui().urunsatisi->text().isEmpty())
            return QStringLiteral("the fields of the unknown product kept their texts");
        return ui().urunbulunamadiframesi->isVisible() ? QString() : QStringLiteral("the panel went away");
    };
    sendKey(Qt::Key_Escape);
}

void Cashier::typeName() {
    const QString typed =
        anyOf({QStringLiteral("çilekli süt "), QStringLiteral("kızılcık ŞURUBU"),
               QStringLiteral("d'artagnan & oğlu"), QStringLiteral("i"), QStringLiteral("iğne, ıhlamur"),
               QStringLiteral("500 gr %100 "), QStringLiteral("\"x\" [no];--"), QStringLiteral(" ")});
    announce(u"types the name " + typed);
    pressOn(*ui().urunadi);
    willBe(*ui().urunadi, afterTyping(*ui().urunadi, capitals(typed)));
    typeText(typed);
}

void Cashier::typePrice() {
    const QString typed = number();
    announce(u"types the price " + typed);
    pressOn(*ui().urunsatisi);
    willBe(*ui().urunsatisi, priceAfterTyping(*ui().urunsatisi, typed));
    typeText(typed);
}

void Cashier::pressPriceKey() {
    const auto keys = controlArrayOf<DrawnButton>(till(), QStringLiteral("bununamayanurunfiyat"));
    DrawnButton& key = *keys.at(m_random.below(keys.size()));
    const QString text = ui().urunsatisi->text() + key.caption();
    willBe(*ui().urunsatisi, isNumeric(text) ? text : QString());
    pressButton(key);
}

void Cashier::saveProduct() {
    const QString price = ui().urunsatisi->text();
    const QString barcode = ui().bulunulamayaurun->text();
    if (price.isEmpty()) {
        expectBox(QStringLiteral("SATIS_FIYATI_GIR"), {MessageBoxAnswer::ok, BoxAnswers::escape},
                  QStringLiteral("    "));
        pressButton(*ui().urunbuunamadikaydet);
        return;
    }
    const QString name = capitals(ui().urunadi->text()).left(longestName);
    announce(u"saves the product " + barcode + u' ' + name + u" at " + price);
    m_deed.made = Deed::Made{barcode, name, valueOf(price)};
    const VSFlexGrid& grid = *ui().satisekrani1;
    if (grid.col() == 1) {
        // A press on the barcode cell of a line has left the till there: that line is sold anew.
        std::vector<TicketLine> lines = before().lines;
        const auto row = std::size_t(grid.row() - 1);
        if (row >= lines.size())
            lines.emplace_back();
        const QString mark = lines.at(row).mark;
        lines.at(row) = {
            mark, barcode, name.trimmed(), pressedQuantity(), format(valueOf(price), u"###,###,##0.00"), {}};
        m_deed.barcode.clear();
        m_deed.quantity.clear();
        willShow(std::move(lines));
    } else {
        // And on another cell, the sale is lost without a word.
        m_deed.barcode = barcode;
        m_deed.quantity = pressedQuantity();
    }
    m_deed.barcodeFocused = true;
    pressOn(*ui().urunbuunamadikaydet);
}

void Cashier::closeUnknown() {
    m_deed.barcodeFocused = true;
    pressButton(*ui().urunbulunamadikapat);
}

void Cashier::willOpenPriceCheck() {
    m_subtracting = false;
    m_deed.also = [] {
        return ui().fiyargorbarkodu->hasFocus() ? QString()
                                                : QStringLiteral("the price check hasn't the focus");
    };
}

void Cashier::openPriceCheckByKey() {
    announce(QStringLiteral("presses F4"));
    willOpenPriceCheck();
    sendKey(Qt::Key_F4);
}

void Cashier::openPriceCheck() {
    willOpenPriceCheck();
    pressButton(*ui().fiyatgor);
}

void Cashier::checkKnown() {
    if (m_ledger.barcodes().isEmpty())
        return checkNothing();
    const QString barcode = anyOf(m_ledger.barcodes());
    announce(u"asks for the price of " + barcode);
    const ShopLedger::Product product = m_ledger.product(barcode);
    const QString expected =
        barcode + u' ' + product.name.trimmed() + u' ' + format(product.sale, u"#,##0.00");
    m_deed.also = [expected]() -> QString {
        const QString said = ui().fiyargorbarkodu2->text() + u' ' + ui().fiyargoradi->text() + u' ' +
                             ui().fiyargorfiyati->text();
        if (said != expected)
            return u"the price check says " + said + u", not " + expected;
        return ui().fiyargorbarkodu->hasFocus() ? QString()
                                                : QStringLiteral("the price check lost the focus");
    };
    scan(barcode);
}

void Cashier::checkMissing(const QString& code) {
    announce(u"asks for the price of the unknown " + code);
    expectNotice(QStringLiteral("URUN_BULUNAMADI"));
    m_deed.also = [] {
        const bool empty = ui().fiyargorbarkodu2->text().isEmpty() && ui().fiyargoradi->text().isEmpty() &&
                           ui().fiyargorfiyati->text().isEmpty() && ui().fiyargorbarkodu->text().isEmpty();
        return empty ? QString() : QStringLiteral("the price check says something of an unknown barcode");
    };
    scan(code);
}

void Cashier::checkUnknown() {
    checkMissing(unknownBarcode());
}

/// A scale's label isn't split here.
void Cashier::checkLabel() {
    const QString label = QStringLiteral("27") + digits(11);
    if (m_ledger.knows(label))
        return checkNothing();
    checkMissing(label);
}

void Cashier::checkNothing() {
    announce(QStringLiteral("asks for the price of nothing"));
    expectNotice(QStringLiteral("ONCE_BARKOD_OKUT"));
    sendEnter();
}

void Cashier::willClosePriceCheck() {
    m_deed.barcodeFocused = true;
    m_deed.also = [] {
        return ui().fiyatgorframe->isVisible() ? QStringLiteral("the price check is still there") : QString();
    };
}

void Cashier::escapeFromPriceCheck() {
    announce(QStringLiteral("presses Escape in the price check"));
    willClosePriceCheck();
    sendKey(Qt::Key_Escape);
}

void Cashier::closePriceCheck() {
    willClosePriceCheck();
    pressButton(*ui().fiyargorkapat);
}

}  // namespace kovanix
