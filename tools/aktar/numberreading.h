#pragma once

#include <QString>
#include <QStringView>
#include <optional>

namespace kovanix::aktar {

// Numbers of files from anywhere: "1.234,50", "1,234.50" and "1 234,50", with "TL" or "₺" ahead or behind, in
// a column whose decimal sign has to be found out.

enum class DecimalSign { comma, dot };

/// Which decimal sign the numbers of a column speak for. "12,50" and "1.234.567" speak for the comma; "1.234"
/// and "1250" for neither.
class DecimalVote {
public:
    void add(QStringView text);
    void add(const DecimalVote& other);

    bool isSilent() const { return m_commas == 0 && m_dots == 0; }
    /// Whether both signs have numbers that speak for them.
    bool isSplit() const { return m_commas > 0 && m_dots > 0; }
    /// The sign that all of those that speak are for.
    std::optional<DecimalSign> sign() const;

private:
    qint64 m_commas = 0;
    qint64 m_dots = 0;
};

enum class NumberFault {
    none,
    noNumber,
    ambiguous,  ///< "1.234" in a column that writes both ways
};

struct NumberReading {
    double value = 0;
    NumberFault fault = NumberFault::none;
};

/// Reads a number. One that can be read in one way only is read so, whatever the column's sign.
/// @param sign  of the column; none where it is split
NumberReading readNumber(QStringView text, std::optional<DecimalSign> sign);

/// A number as a spreadsheet keeps it, at the 15 digits that it shows: "12.499999999999998" is 12.5.
std::optional<double> readSpreadsheetNumber(QStringView text);

}  // namespace kovanix::aktar
