#include "aktar/barcodetext.h"

#include <algorithm>

namespace kovanix::aktar {

namespace {

// The longest one of a product. Beyond it blanks part two barcodes rather than the digits of one.
constexpr qsizetype mostDigits = 14;

bool isDigit(QChar letter) {
    return letter >= u'0' && letter <= u'9';
}

bool isLineEnd(QChar letter) {
    return letter == u'\n' || letter == u'\r';
}

/// Without the decimals of a whole number: ".0", ",0", ".00" or ",00".
QStringView withoutDecimals(QStringView text) {
    for (const QStringView decimals : {QStringView(u"0"), QStringView(u"00")}) {
        const QStringView rest = text.chopped(std::min(text.size(), decimals.size() + 1));
        if (!rest.isEmpty() && text.endsWith(decimals) &&
            (text[rest.size()] == u'.' || text[rest.size()] == u','))
            return rest;
    }
    return text;
}

}  // namespace

BarcodeReading readBarcode(QStringView cell) {
    const QStringView text = cell.trimmed();
    QStringView bare = text;
    while (bare.startsWith(u'\''))
        bare = bare.mid(1).trimmed();
    if (bare.isEmpty())
        return {text.toString()};
    const QStringView whole = withoutDecimals(bare);
    QString digits;
    for (const QChar letter : whole) {
        if (isDigit(letter))
            digits += letter;
        else if (!letter.isSpace())
            return {bare.toString(), bare.size() != text.size()};
    }
    const bool blanks = digits.size() != whole.size();
    const bool several =
        blanks && (digits.size() > mostDigits || std::any_of(whole.begin(), whole.end(), isLineEnd));
    return {digits, digits.size() != text.size(), several};
}

}  // namespace kovanix::aktar
