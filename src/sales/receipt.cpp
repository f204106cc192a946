#include "sales/receipt.h"

#include "app/modTurkce.h"
#include "data/baglanmamodulu.h"
#include "values/dates.h"
#include "values/numbers.h"

namespace kovanix {

QString receiptText(const std::vector<ReceiptRow>& rows, const QString& total, const QDateTime& now) {
    const QString newLine = QStringLiteral("\r\n");
    const auto lira = [](const QString& cell) { return format(sayicevir(cell), u"###,###,##0.00 T.L."); };

    QString text;
    text += newLine + metin(QStringLiteral("FIS_TARIH")) + dateText(now.date());
    text += newLine + metin(QStringLiteral("FIS_SAAT")) + timeText(now.time());
    text += newLine + metin(QStringLiteral("FIS_MUSTERI")) + metin(QStringLiteral("PESIN_MUSTERI"));
    text += newLine + newLine;
    for (const ReceiptRow& row : rows) {
        text += row.name + newLine;
        text += numberText(sayicevir(row.quantity)) + u" X " + lira(row.price) + u" = " + lira(row.total) +
                newLine;
    }
    text += newLine + u"\tTOPLAM TUTAR  :\t" + total;
    text += newLine;
    text += newLine + u'\t' + metin(QStringLiteral("FIS_TESEKKUR"));
    return text;
}

}  // namespace kovanix
