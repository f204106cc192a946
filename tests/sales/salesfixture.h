#pragma once

#include <QStringList>
#include <QtTest>

#include "desktop/messagebox.h"
#include "sales/satisekrani.h"
#include "shopfixture.h"

namespace kovanix {

/// A stocked shop with the sales screen open on it, driven as a cashier does it.
class SalesFixture : public ShopFixture {
public:
    /// @param password  of the database file; empty for a plain one
    explicit SalesFixture(const QString& password = {});

    satisekrani& sales() const;
    SalesControls& ui() const { return sales().ui; }

    /// Types a text into what has the focus, then Enter, as a scanner does.
    void scan(const QString& code) const;
    /// Types into what has the focus.
    void type(const QString& text) const;
    void key(Qt::Key key) const;
    /// Gives a control the focus and types into it.
    void typeInto(QWidget& field, const QString& text) const;
    void press(Image& picture) const;

    /// The texts of a ticket row, columns 1 to 5.
    QStringList line(int row) const;
    /// How many sale lines stand on the ticket; the entry row doesn't count.
    int lines() const;

    QString toplam() const { return ui().toplam->caption(); }
    QString verilen() const { return ui().verilen->caption(); }
    QString kalan() const { return ui().kalan->caption(); }
    QString ver2() const { return ui().ver2->text(); }
};

/// Products that every case finds: bread 10,00; milk 32,50; tea 1.234,50; a free bag; tomatoes by weight
/// (0012) 40,00.
namespace goods {
inline const QString bread = QStringLiteral("8690000000012");
inline const QString milk = QStringLiteral("8690000000029");
inline const QString tea = QStringLiteral("8690000000036");
inline const QString bag = QStringLiteral("8690000000043");
inline const QString tomatoes = QStringLiteral("0012");
}  // namespace goods

}  // namespace kovanix
