#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "demoshop/random.h"
#include "invariants.h"
#include "sales/satisekrani.h"
#include "shopledger.h"
#include "windows.h"

class QMessageBox;

namespace kovanix {

/// A cashier who acts by chance: each action is one that the screen allows at that moment, one that was never
/// made so far more readily than the others, and none of those that end the process by design (Enter in an
/// empty quantity, a scale's label that is too short, a yes to the question at the end).
class Cashier {
public:
    /// @param told  hears of each action just before it is made
    Cashier(quint64 seed, const ShopLedger& ledger, const std::vector<WindowRow>& windows,
            std::function<void(const QString&)> told);

    /// Makes the next action.
    const Deed& act();

    /// Answers a message box by chance. @return a MessageBoxAnswer or BoxAnswers::escape; nothing for a box
    /// that the running action can't bring
    std::optional<int> answer(const QMessageBox& box);

    /// The kinds of action that there are, and those that were never made so far.
    int kinds() const { return int(m_actions.size()); }
    QStringList neverMade() const;
    /// The windows that were never opened so far.
    const QStringList& neverOpened() const { return m_unopened; }

private:
    using Test = std::function<bool()>;
    using Make = std::function<void()>;
    /// What an action may change, and whether the barcode gets the focus back.
    enum May { aLine = 1, theCash = 2, toBarcode = 4 };
    struct Action {
        QString kind;
        int weight;  ///< how often, beside the others that are possible
        int may;     ///< of May
        Test possible;
        Make make;
        int made = 0;
    };

    void add(const QString& kind, int weight, int may, Test possible, Make make) {
        m_actions.push_back({kind, weight, may, std::move(possible), std::move(make)});
    }
    void addEntry();
    void addPanels();
    void addQuickKeys();
    void addLines();
    void addCash();
    void addSaleEnd();
    void addWindows(const std::vector<WindowRow>& rows);
    void addWindow(const WindowRow& row);
    void addPad(const WindowRow& row);
    void addProducts();

    bool atCounter() const;
    bool sellsOverALine() const;
    Test can(QWidget* control) const;
    Test focused(const QLineEdit* field, qsizetype room = 1'000'000) const;
    Test writable(QLineEdit* field, qsizetype room) const;
    Make press(QWidget* control);
    Make pressAnyOf(const QString& array);
    Make key(int key, const QString& box = {});
    void typeInto(QLineEdit* field, const QString& text);
    void scan(const QString& barcode);
    void expectSold(const QString& barcode);

    QString anyOf(const QStringList& texts) {
        return texts.at(qsizetype(m_random.below(quint64(texts.size()))));
    }
    QString digits(int count);
    QString number();
    QString hostile();
    QString unknownBarcode();

    demoshop::Random m_random;
    const ShopLedger& m_ledger;
    std::function<void(const QString&)> m_announce;
    satisekrani& m_till;
    SalesControls& ui;
    std::vector<Action> m_actions;
    QStringList m_unopened;  // windows
    Deed m_deed;
};

}  // namespace kovanix
