#include "sales/weighedlabel.h"

#include "runtime/runtimeerror.h"
#include "values/numbers.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype codeAt = 3;
constexpr qsizetype codeLength = 4;
constexpr qsizetype weightAt = 7;
constexpr qsizetype weightLength = 5;
constexpr double gramsPerKilogram = 1000;

[[noreturn]] void failByType() {
    throw RuntimeError(RuntimeError::typeMismatch, u"Type mismatch"_s);
}

}  // namespace

std::optional<WeighedLabel> splitWeighedLabel(const QString& barcode) {
    if (barcode.isEmpty())
        failByType();
    const double prefix = toNumber(barcode.left(2)).value_or(0);
    if (prefix != 27 && prefix != 28 && prefix != 29)
        return std::nullopt;
    const std::optional<double> grams = toNumber(barcode.mid(weightAt, weightLength));
    if (!grams)
        failByType();
    return WeighedLabel{barcode.mid(codeAt, codeLength), *grams / gramsPerKilogram};
}

}  // namespace kovanix
