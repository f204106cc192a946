#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <initializer_list>
#include <map>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "boxanswers.h"
#include "demoshop/random.h"
#include "sales/satisekrani.h"
#include "shopledger.h"
#include "tillview.h"

namespace kovanix {

/// One action, and what it must leave behind.
struct Deed {
    struct Made {
        QString barcode;
        QString name;
        double price;  ///< lira
    };

    QString what;
    TillView before;
    std::vector<TicketLine> lines;       ///< the ticket afterwards, but for the lines' totals
    double cash = 0;                     ///< the cash afterwards, before rounding to kuruş
    std::optional<double> belowNothing;  ///< what it came to where it was clamped to nothing
    QString quantity;                    ///< what waits in the quantity afterwards
    QString barcode;                     ///< and in the barcode
    bool stores = false;                 ///< the lines before are in the file afterwards
    bool prints = false;                 ///< and on a receipt
    std::optional<Made> made;            ///< a product that is in the file afterwards
    bool barcodeFocused = false;         ///< the next scan arrives
    std::function<QString()> also;       ///< what else must hold: says what doesn't
    std::function<bool()> until;  ///< what the window system brings about by and by, where it takes part
};

/// A cashier who acts by chance: each action is one that the screen allows at that moment, with known
/// consequences, and none of those that end the process by design (Enter in an empty quantity, a scale's
/// label that is too short, a yes to the question at the end).
class Cashier {
public:
    /// @param told  hears of each action just before it is made
    Cashier(quint64 seed, ShopLedger& ledger, BoxAnswers& boxes, std::function<void(const QString&)> told);

    /// Makes the next action.
    const Deed& act();

    /// The kinds of action that there are, and those that were never made so far.
    static int kinds();
    QStringList neverMade() const;

private:
    struct Choice {
        const char16_t* kind;
        int weight;  ///< how often, beside the others that are possible
        bool (Cashier::*possible)() const;
        void (Cashier::*make)();
    };
    static std::span<const Choice> choices();

    static satisekrani& till();
    static SalesControls& ui() { return till().ui; }
    const TillView& before() const { return m_deed.before; }

    // What every action is told by.
    void announce(const QString& what);
    int expectBox(const QString& textKey, std::initializer_list<int> answers, const QString& title = {});
    void expectNotice(const QString& textKey);
    void willShow(std::vector<TicketLine> lines);
    void willEmpty();
    void willBe(QLineEdit& field, const QString& text);
    void pressButton(QWidget& control);

    QString anyOf(const QStringList& texts) {
        return texts.at(qsizetype(m_random.below(quint64(texts.size()))));
    }
    QString digits(int count);
    QString number();
    QString pressedQuantity() const;

    // Where things stand. What asks for nothing else is possible at the counter only: while no other screen
    // is in front.
    bool atCounter() const;
    bool readyToScan() const;
    bool readyWithLines() const;
    bool barcodeFocused() const;
    bool barcodeLeftOver() const;
    bool barcodePressable() const;
    bool gridFocused() const;
    bool backgroundPressable() const;
    bool keysPressable() const;
    bool quantityPressable() const;
    bool quantityHasRoom() const;
    bool quantityEnterable() const;
    bool bannerFocused() const;
    bool bannerPressable() const;
    bool namePressable() const;
    bool pricePressable() const;
    bool priceKeysPressable() const;
    bool productSavable() const;
    bool unknownClosable() const;
    bool cellPressable() const;
    bool fieldPressable() const;
    bool fieldFocused() const;
    bool lineKeysPressable() const;
    bool lineApplicable() const;
    bool lineLeavable() const;
    bool lineRemovable() const;
    bool moneyPressable() const;
    bool subtractPressable() const;
    bool cashPressable() const;
    bool cashFocused() const;
    bool cashClearable() const;
    bool quantityAsCashPressable() const;
    bool displayPressable() const;
    bool storePressable() const;
    bool printPressable() const;
    bool cancelPressable() const;
    bool priceCheckPressable() const;
    bool priceCheckFocused() const;
    bool priceCheckClosable() const;
    bool endPressable() const;
    bool totalPressable() const;
    bool menuPressable() const;
    bool aboutPressable() const;
    bool clockPressable() const;
    bool otherScreenInFront() const;

    // Entry: cashier_entry.cpp
    void scanKnown();
    void scanOfTicket();
    void scanLabel();
    void scanUnknown();
    void scanZeros();
    void enterNothing();
    void typeAndTakeBack();
    void takeBackBarcode();
    void scanPastBarcode();
    void pressBarcode();
    void pressBackground();
    void pressQuantityKey();
    void typeQuantity();
    void typeNinthCharacter();
    void enterInQuantity();
    void pressTab();
    void sell(const QString& barcode, const QString& quantity);
    void scan(const QString& code);
    void willAskForUnknown(const QString& barcode);
    QString unknownBarcode();

    // The unknown product and the price check: cashier_products.cpp
    void scanOnBanner();
    void pressBanner();
    void escapeFromBanner();
    void typeName();
    void typePrice();
    void pressPriceKey();
    void saveProduct();
    void closeUnknown();
    void openPriceCheckByKey();
    void openPriceCheck();
    void checkKnown();
    void checkUnknown();
    void checkLabel();
    void checkNothing();
    void escapeFromPriceCheck();
    void closePriceCheck();
    void willOpenPriceCheck();
    void willClosePriceCheck();
    void checkMissing(const QString& code);

    // Lines: cashier_lines.cpp
    void pressLine();
    void pressOtherCell();
    void moveInGrid();
    void pressField();
    void typeInField();
    void pressLineKey();
    void applyLine();
    void overflowLine();
    void overflowLineLater();
    void typeBeyondScreen(QLineEdit& field);
    void leaveLine();
    void escapeFromLine();
    void removeLine();
    void willApply();
    std::vector<std::pair<int, int>> pressableCells(int firstColumn, int lastColumn) const;
    void pressCell(int row, int column);

    // Cash and the end of a sale: cashier_cash.cpp
    void pressMoney();
    void pressSubtract();
    void pressCash();
    void typeCash();
    void enterInCash();
    void clearCash();
    void takeQuantityAsCash();
    void pressDisplay();
    void storeByKey();
    void store();
    void printByKey();
    void print();
    void cancelByKey();
    void cancel();
    void willStore();
    void willCancel();
    bool willRefuseEmpty();

    // Screens: cashier_screens.cpp
    void endByKey();
    void end();
    void minimiseByKey();
    void minimise();
    void openMenuByKey();
    void openMenu();
    void openAboutByKey();
    void openAbout();
    void openTotalThemes();
    void openClock();
    void closeOtherScreen();
    void willAskForEnd();
    void willOpenScreen();

    demoshop::Random m_random;
    ShopLedger& m_ledger;
    BoxAnswers& m_boxes;
    std::function<void(const QString&)> m_told;
    Deed m_deed;
    bool m_subtracting = false;
    std::map<const Choice*, int> m_made;
};

}  // namespace kovanix
