#include <QCoreApplication>
#include <QScopedValueRollback>

#include "app/modTurkce.h"
#include "desktop/focus.h"
#include "desktop/messagebox.h"
#include "printing/printer.h"
#include "runtime/attempt.h"
#include "runtime/clock.h"
#include "sales/receipt.h"
#include "sales/satisekrani.h"

namespace kovanix {

using namespace Qt::StringLiterals;

void satisekrani::nakit_click() {
    if (m_printing)
        return;
    eksiltme = 0;
    const VSFlexGrid& grid = *ui.satisekrani1;
    if (grid.rows() == 2) {
        mesaj(u"ONCE_SATIS_YAP"_s, MessageBoxStyle::ok, QString());
        giveFocus(*ui.barkod);
        return;
    }
    const QScopedValueRollback printing(m_printing, true);
    std::vector<ReceiptRow> rows;
    for (int row = 1; row < grid.rows(); ++row)
        rows.push_back({grid.textMatrix(row, 2), grid.textMatrix(row, 3), grid.textMatrix(row, 4),
                        grid.textMatrix(row, 5)});
    // A hidden line edit keeps CR LF as they are, which the toolkit's multi-line editors don't.
    ui.Text33->setText(receiptText(rows, ui.toplam->caption(), Clock::now()));

    // A printer that fails doesn't stop the commit: the sale is then stored with no receipt.
    Printer printer;
    attempt([&] { printer.print(ui.Text33->text()); });
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    attempt([&] { printer.endDocument(); });
    ui.kaydet->click();
}

}  // namespace kovanix
