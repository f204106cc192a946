#include "database/rowtable.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "database/likepattern.h"
#include "values/dates.h"
#include "values/numbers.h"

namespace kovanix {

namespace {

using engine::Cell;

constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

bool isNumber(const QVariant& cell) {
    return cell.typeId() == QMetaType::Double || cell.typeId() == QMetaType::LongLong;
}

bool isNumber(const Cell& cell) {
    return cell.type == Cell::Type::real || cell.type == Cell::Type::whole;
}

QString bareText(const QVariant& cell) {
    return cell.typeId() == QMetaType::Double ? numberText(cell.toDouble()) : cell.toString();
}

QString decoded(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

RowColumn::RowColumn(QString name, std::optional<ColumnType> type)
    : m_name(std::move(name)), m_type(type), m_counters(std::make_shared<PlainArray<qint64>>()) {}

RowColumn::RowColumn(QString name, std::shared_ptr<PlainArray<qint64>> identities)
    : m_name(std::move(name)),
      m_type(ColumnType::counter),
      m_isIdentity(true),
      m_counters(std::move(identities)) {}

// Identities never change, so that all copies have them in common. What is searched in is prepared anew.
RowColumn::RowColumn(const RowColumn& other)
    : m_name(other.m_name),
      m_type(other.m_type),
      m_isIdentity(other.m_isIdentity),
      m_texts(other.m_texts),
      m_nulls(other.m_nulls),
      m_numbers(other.m_numbers),
      m_counters(m_isIdentity ? other.m_counters : std::make_shared<PlainArray<qint64>>(*other.m_counters)),
      m_oddCells(other.m_oddCells) {}

void RowColumn::append(const Cell& cell) {
    if (!m_type && cell.type != Cell::Type::null)
        decideType(cell);
    switch (type()) {
        case ColumnType::text:
        case ColumnType::moment:
            appendText(cell);
            break;
        case ColumnType::number:
            appendNumber(cell);
            break;
        case ColumnType::counter:
            appendCounter(cell);
            break;
    }
}

void RowColumn::decideType(const Cell& cell) {
    m_type = isNumber(cell) ? ColumnType::number : ColumnType::text;
    if (m_type == ColumnType::number) {
        for (std::size_t row = 0; row < m_texts.count(); ++row)
            m_numbers.append(noNumber);
        m_texts = {};
        m_nulls = {};
    }
}

void RowColumn::keepApart(const Cell& cell) {
    const QVariant value = cell.type == Cell::Type::whole  ? QVariant(cell.whole)
                           : cell.type == Cell::Type::real ? QVariant(cell.real)
                                                           : QVariant(decoded(cell.bytes));
    m_oddCells.emplace_back(static_cast<std::uint32_t>(count()), value);
}

void RowColumn::appendText(const Cell& cell) {
    if (cell.type == Cell::Type::null) {
        m_nulls.resize(m_texts.count());
        m_nulls.push_back(true);
    } else if (isNumber(cell)) {
        keepApart(cell);
    }
    m_texts.append(cell.bytes);
}

void RowColumn::appendNumber(const Cell& cell) {
    constexpr qint64 largestExact = qint64{1} << std::numeric_limits<double>::digits;
    const bool tooLong =
        cell.type == Cell::Type::whole && (cell.whole > largestExact || cell.whole < -largestExact);
    if (isNumber(cell) && !tooLong) {
        m_numbers.append(cell.type == Cell::Type::real ? cell.real : static_cast<double>(cell.whole));
        return;
    }
    if (cell.type != Cell::Type::null)
        keepApart(cell);
    m_numbers.append(noNumber);
}

void RowColumn::appendCounter(const Cell& cell) {
    if (cell.type != Cell::Type::whole && cell.type != Cell::Type::null)
        keepApart(cell);
    m_counters->append(cell.whole);
}

bool RowColumn::replace(std::size_t row, const Cell& cell) {
    const QVariant former = value(row);
    RowColumn one(m_name, m_type);
    one.append(cell);
    const QVariant fresh = one.value(0);
    // Of two types, equal values may be written differently.
    if (m_type == one.m_type && fresh.typeId() == former.typeId() && fresh == former)
        return false;
    if (!m_type && one.m_type)
        decideType(cell);
    std::erase_if(m_oddCells, [row](const auto& odd) { return odd.first == row; });
    if (const QVariant* const odd = one.oddCell(0)) {
        const auto place =
            std::ranges::lower_bound(m_oddCells, row, {}, &std::pair<std::uint32_t, QVariant>::first);
        m_oddCells.emplace(place, static_cast<std::uint32_t>(row), *odd);
    }
    if (isText()) {
        m_texts.replace(row, one.m_texts[0]);
        m_nulls.resize(m_texts.count());
        m_nulls[row] = !one.m_nulls.empty();
    } else if (type() == ColumnType::number) {
        m_numbers.set(row, one.m_numbers[0]);
    } else {
        m_counters->set(row, (*one.m_counters)[0]);
    }
    m_searchTexts.reset();
    m_searchable = false;
    return true;
}

void RowColumn::finish() {
    m_texts.finish();
    m_numbers.squeeze();
    m_counters->squeeze();
    m_oddCells.shrink_to_fit();
}

std::size_t RowColumn::count() const {
    return isText() ? m_texts.count() : type() == ColumnType::number ? m_numbers.size() : m_counters->size();
}

const QVariant* RowColumn::oddCell(std::size_t row) const {
    if (m_oddCells.empty())
        return nullptr;
    const auto cell =
        std::ranges::lower_bound(m_oddCells, row, {}, &std::pair<std::uint32_t, QVariant>::first);
    return cell != m_oddCells.cend() && cell->first == row ? &cell->second : nullptr;
}

QVariant RowColumn::value(std::size_t row) const {
    if (const QVariant* const odd = oddCell(row))
        return *odd;
    switch (type()) {
        case ColumnType::number:
            return std::isnan(m_numbers[row]) ? QVariant() : QVariant(m_numbers[row]);
        case ColumnType::counter:
            return (*m_counters)[row];
        default:
            return row < m_nulls.size() && m_nulls[row] ? QVariant() : QVariant(decoded(m_texts[row]));
    }
}

QString RowColumn::text(std::size_t row) const {
    if (const QVariant* const odd = oddCell(row))
        return bareText(*odd);
    switch (type()) {
        case ColumnType::number:
            return std::isnan(m_numbers[row]) ? QString() : numberText(m_numbers[row]);
        case ColumnType::counter:
            return QString::number((*m_counters)[row]);
        case ColumnType::moment: {
            const QString stored = decoded(m_texts[row]);
            return shownMoment(stored).value_or(stored);
        }
        default:
            return decoded(m_texts[row]);
    }
}

double RowColumn::number(std::size_t row) const {
    if (const QVariant* const odd = oddCell(row))
        return isNumber(*odd) ? odd->toDouble() : noNumber;
    switch (type()) {
        case ColumnType::number:
            return m_numbers[row];
        case ColumnType::counter:
            return static_cast<double>((*m_counters)[row]);
        default:
            return noNumber;
    }
}

const TextStore& RowColumn::searchTexts() const {
    if (!m_searchable) {
        const bool plain = type() == ColumnType::text && m_oddCells.empty();
        if (!plain) {
            m_searchTexts = std::make_unique<TextStore>();
            for (std::size_t row = 0; row < count(); ++row)
                m_searchTexts->append(foldedText(text(row)));
            m_searchTexts->finish();
        } else if (!m_texts.isFolded()) {
            m_searchTexts = std::make_unique<TextStore>(m_texts.folded());
        }
        m_searchable = true;
    }
    return m_searchTexts ? *m_searchTexts : m_texts;
}

int RowTable::indexOf(QStringView field) const {
    const auto column = std::ranges::find_if(columns, [field](const RowColumn& each) {
        return field.compare(each.name(), Qt::CaseInsensitive) == 0;
    });
    return column == columns.cend() ? -1 : static_cast<int>(column - columns.cbegin());
}

std::optional<std::size_t> RowTable::rowOf(qint64 identity) const {
    const auto found = std::ranges::lower_bound(*identities, identity);
    if (found == identities->end() || *found != identity)
        return std::nullopt;
    return static_cast<std::size_t>(found - identities->begin());
}

}  // namespace kovanix
