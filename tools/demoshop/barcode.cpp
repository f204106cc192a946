#include "barcode.h"

#include <algorithm>

namespace kovanix::demoshop {

using namespace Qt::StringLiterals;

int checkDigit(QStringView digits) {
    int sum = 0;
    int weight = 3;
    for (auto digit = digits.crbegin(); digit != digits.crend(); ++digit) {
        sum += weight * (digit->unicode() - u'0');
        weight = 4 - weight;
    }
    return (10 - sum % 10) % 10;
}

QString ean13(quint64 serial) {
    QString code = u"869"_s + QString::number(serial).rightJustified(9, u'0');
    code += QChar(u'0' + checkDigit(code));
    return code;
}

bool isEan13(QStringView text) {
    const auto isDigit = [](QChar sign) { return sign >= u'0' && sign <= u'9'; };
    return text.size() == 13 && std::all_of(text.begin(), text.end(), isDigit) &&
           text.back() == QChar(u'0' + checkDigit(text.chopped(1)));
}

}  // namespace kovanix::demoshop
