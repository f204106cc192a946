#pragma once

#include <QString>
#include <QStringView>
#include <optional>

namespace kovanix {

// The amounts that stand on the screen, worked out in whole numbers: a second opinion on the till's own
// arithmetic, which is in doubles. What needs more than 15 digits has none.

/// digits / 10^places.
struct ExactNumber {
    qint64 digits = 0;
    int places = 0;
};

/// Reads a number with a comma for decimals and dots between groups; nothing for anything else.
std::optional<ExactNumber> readExactly(QStringView text);

/// Quantity times price in kuruş, rounded half away from zero.
std::optional<qint64> lineInKurus(QStringView quantity, QStringView price);

/// An amount of at most two decimals in kuruş.
std::optional<qint64> inKurus(QStringView amount);

/// Kuruş as an amount with two decimals and no groups: 123450 is "1234,50".
QString amountText(qint64 kurus);

/// The number that a text of the screen stands for; 0 where it is none.
double valueOf(QStringView text);

}  // namespace kovanix
