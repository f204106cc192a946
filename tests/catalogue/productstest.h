#pragma once

#include "catalogue/urunler.h"
#include "salestest.h"

namespace kovanix {

/// The base of the test programs of the products' screen: every case opens it in a shop of its own, above the
/// sales screen.
class ProductsTest : public SalesTest {
    Q_OBJECT

protected:
    /// Opens the screen by its button.
    urunler& open();
    urunler& catalogue() const;
    Ui::urunler& form() const { return catalogue().ui; }

    /// Presses a row of the list where it is seen.
    void choose(int row) const;
    /// The texts of a row of the list, by columns.
    QStringList listed(int row) const;
    /// The names in the list.
    QStringList names() const;

    /// Types into what has the focus, on this screen where a box has closed.
    void type(const QString& text) const;
    void key(Qt::Key key) const;

    /// Puts texts into the five fields: barcode, name, purchase price, sale price, stock.
    void fill(const QStringList& texts) const;
    QStringList fields() const;
    /// Opens the frame and puts texts into it.
    void addNew(const QStringList& texts);

    /// A notice will come with that key's text.
    void expectNotice(const QString& key) const;
    /// The database's failure will be shown, with its words.
    void expectFailure(const QString& words) const;
    void expectQuestion(int answer) const;

    /// The columns barkod, urun, alis, satis, stok of all products, in order of entry.
    QList<QVariantList> stored() const;
    /// How many rows a select gives in a plain copy of the file, without its log.
    qsizetype rowsInCopy(const QString& sql) const;

    /// From now on the shop's own connection doesn't wait for a locked file.
    void dontWaitForLocks() const;

protected Q_SLOTS:
    void init();

private:
    void activate() const;
};

}  // namespace kovanix
