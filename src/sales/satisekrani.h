#pragma once

#include <array>
#include <optional>

#include "database/connection.h"
#include "database/recordset.h"
#include "runtime/runtimeerror.h"
#include "runtime/screen.h"
#include "ui_lineediting.h"
#include "ui_pricecheck.h"
#include "ui_quicksale.h"
#include "ui_satisekrani.h"
#include "ui_unknownproduct.h"
#include "widgets/timer.h"

namespace kovanix {

class QuickKeyMap;

/// The controls of the sales screen: those of the sale and those of the four panels that open above its
/// ticket.
struct SalesControls : Ui::satisekrani,
                       Ui::LineEditingPanel,
                       Ui::UnknownProductPanel,
                       Ui::PriceCheckPanel,
                       Ui::QuickSalePanel {
    void setupUi(QWidget* screen);
};

/// The sales screen: ticket, barcode and quantity entry, cash and change, receipt, commit.
///
/// The state is the text of the controls: the ticket is the grid's cells and nothing else, cash and totals
/// are captions. Row rows-1 of the grid is the entry row, always there and always empty; two rows are an
/// empty ticket.
class satisekrani : public Screen {
    Q_OBJECT

public:
    satisekrani();
    ~satisekrani() override;

    void form_load() override;
    void form_activate() override;

    /// Sells what stands in `barkod`, `adet` times: the barcode entry of the whole system.
    void urunekle();
    /// Recomputes every line's total, the grand total and the change, and gives `barkod` the focus.
    /// @throws RuntimeError (overflow) for a ticket of more lines than are counted
    void toplamhesapla();
    /// Empties the ticket and all amounts.
    void satistemizle();
    /// Sizes the ticket's columns and rows for the screen's width.
    void sizeGrid();
    /// Sets the font size of `toplam` for a text of that many characters; a negative length measures its
    /// caption.
    void toplamyazisi(int length);

    /// A left press on a cell of the ticket: marks a line, or opens the panel that changes it.
    void hucrebasildi(int row, int column);

    /// Adds a note or coin to the cash given, or takes it off once in subtract mode. Amount in lira.
    void paraekle(double amount);
    void paraeksiltbitir();
    /// Cash below nothing becomes nothing.
    void paradenetle();

    /// Opens the screen's own connection for its writes where it isn't open. @return whether it is open.
    bool satisbaglantiac();
    /// Stores one row for each line of the ticket; no transaction binds them. @throws RuntimeError
    void satiskaydet();
    /// Takes the quantities off stock. @throws RuntimeError
    void stokguncelle();

    /// Reads the captions of the quick keys from the settings: the four pages' names and the eight items of
    /// the page that was used last.
    void kisayolyukle();

    /// Closes the look-up if it is open; never fails.
    void urunkayitkapat();

    SalesControls ui;
    Timer Timer1;     ///< clock and date on the screen
    Timer kontorsat;  ///< hands a product chosen elsewhere to the ticket: set to an interval, it fires once

    /// 0: the pictures of money add to the cash; 1: the next one takes off.
    int eksiltme = 0;

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void connectControls();
    void connectLineEditing();
    void connectUnknownProduct();
    void connectPriceCheck();
    void connectQuickKeys();
    void pressKeys(const QString& array, void (satisekrani::*procedure)(int));
    QString panelKey(const QString& array, int index) const;
    std::array<DrawnButton*, 11> commandRow() const;
    void countItems(int rows);
    void showPanel(QWidget& panel);
    void placePanels();
    void panelChanges(const QObject& panel, QEvent::Type change);
    void maskTicket();
    std::array<vkFrame*, 4> panels() const;

    void barkod_keydown(int key);
    void adet_keydown(int key);
    int adet_keypress(int code);
    void tus_click(int index);
    void Timer1_tick();
    void kontorsat_tick();
    void toplam_click();
    void kapat_click();
    void vkCommand1_click();
    void vkCommand2_click();
    void vkCommand3_click();
    void vkCommand4_click();
    void vkCommand6_click();
    void urunbulmak_click();
    void satisiptal_click();

    void toggleMark(int row);
    void openLineEditing(int row, int column);
    QLineEdit* editedField() const;
    void lineField_mousedown(QLineEdit& field);
    void duzenlemetusu_click(int index);
    bool isEditedLine(int row) const;
    void writeEditedLine(int row);
    void urunislemlerikapat_click();
    void vazgecc_click();
    void urunsil_click();

    void urunbuunamadibeklet_click();
    void urunbuunamadibeklet_keydown(int key);
    void urunsatisi_change();
    void bununamayanurunfiyat_click(int index);
    void urunbuunamadikaydet_click();
    void urunbulunamadikapat_click();
    void createProduct();

    void fiyatgor_click();
    void fiyargorbarkodu_keydown(int key);
    void fiyargorkapat_click();
    void showPriceOf(const QString& barcode);
    void clearPriceCheck();

    void kisayolkat_click(int category);
    void kisayolkat_mousedown(int category, Qt::MouseButton button);
    void kisayol_click(int index);
    void kisayol_mousedown(int index, Qt::MouseButton button);
    void kisayolurunbul_click();
    void kisayolklavye_click();
    void kisayolkaydet_click();
    void kisayolsil_click();
    void kisayolkapat_click();
    void storeQuickKey(const QString& edited);
    void headQuickPanel(const QString& stored, int points);
    void showQuickPanel();
    void closeQuickPanel();
    void colorQuickPanel();
    void showClock();
    void markEditedKey();

    void setCashQuietly(const QString& text);
    void ver2_change();
    void ver3_click();
    void vsil_click();
    void vkCommand5_click();
    void verilen_click();

    void nakit_click();
    void kaydet_click();

    void splitLabelInEntry();
    void goToEntryRow();
    void sellBarcode();
    bool mergeIntoLine(const QString& barcode);
    void showUnknownProduct();
    void clearEntry();
    bool isSaleLine(int row) const;
    QString numberOrOne(int row);
    void endLookUp(const RuntimeError& error);
    void reportCommitFailure(const RuntimeError& error);

    Recordset urunkayit;
    Connection satisbaglanti;
    std::optional<QString> m_editedLine;  // the barcode of the panel's line; none once its ticket is gone
    QuickKeyMap* m_quickKeyMap = nullptr;
    bool m_printing = false;
    bool m_quietCash = false;
};

}  // namespace kovanix
