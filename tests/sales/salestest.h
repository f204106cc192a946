#pragma once

#include <QMap>
#include <QMessageBox>
#include <memory>

#include "runtests.h"
#include "salesfixture.h"

namespace kovanix {

/// What a message box looked like while it stood open.
struct BoxLook {
    QString title;
    QString text;
    QStringList buttons;  ///< captions, from left to right
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QString defaultButton;
};

/// A barcode that no product has.
inline const QString unknown = QStringLiteral("8699999999999");

/// What every screen says that has no connection, as the letter transcription leaves it.
inline const QString noDatabase = QStringLiteral("Veritabanı baılantısı kurulamadı");

/// The base of the test programs of the sales screen: every case gets a shop of its own with the screen open
/// on it, and at the case's end each message box must have come as it was expected.
///
/// A program that prepares more has its own init or cleanup and calls these in it.
class SalesTest : public QObject {
    Q_OBJECT

protected:
    /// Opens the shop anew, with an untouched file.
    /// @param password  of the database file; empty for a plain one
    void openShop(const QString& password = {});
    /// Closes it, and keeps in mind whether its message boxes came as expected.
    void closeShop();

    SalesControls& ui() const { return m_shop->ui(); }
    VSFlexGrid& grid() const { return *ui().satisekrani1; }

    /// Presses a cell of the ticket where it is seen.
    void pressCell(int row, int column, Qt::MouseButton button = Qt::LeftButton) const;
    /// Presses a control in its middle.
    void press(QWidget& control, Qt::MouseButton button = Qt::LeftButton) const;
    /// Presses members of a control array, one after the other.
    void pressKeys(const QString& array, const QList<int>& indices) const;
    /// Puts a text into a field by the clipboard, in place of what stands in it.
    void paste(QLineEdit& field, const QString& text) const;
    /// Writes a composed text into what has the focus, as an input method does.
    void compose(const QString& text) const;

    /// Scans a barcode that nobody knows, then types name and price of the new product.
    void fillInUnknown(const QString& name, const QString& price) const;

    /// The shared connection is lost, and the file can't be opened until it is back.
    void loseDatabase() const;
    void bringDatabaseBack() const;

    /// The caption of a control, by its name.
    QString captionOf(const QString& control) const;
    /// The captions of a control array in the order of its indices.
    QStringList captionsOf(const QString& array) const;

    /// Every row of every table, read through a connection of the test's own.
    QMap<QString, QList<QVariantList>> tables() const { return m_shop->tables(); }
    /// The columns barkod, urun, alis, satis, stok of the products with that barcode.
    QList<QVariantList> products(const QString& barcode) const;
    /// The columns barkod, urun, adet, fiyat, alis, kar, toplam of all sales.
    QList<QVariantList> soldLines() const;

    /// All texts and captions that the screen shows or keeps, the ticket's cells and its current one among
    /// them; without those of one panel.
    QMap<QString, QString> texts(const QWidget* without = nullptr) const;

    std::unique_ptr<SalesFixture> m_shop;
    QList<BoxLook> m_boxes;  ///< the boxes that came since the shop opened

protected Q_SLOTS:
    void init();
    void cleanup();

private:
    bool m_answered = true;
};

}  // namespace kovanix
