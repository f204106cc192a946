#include "database/rowtable.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "database/likepattern.h"
#include "values/dates.h"
#include "values/numbers.h"

namespace kovanix {

namespace {

constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

bool isWhole(const QVariant& cell) {
    return cell.typeId() == QMetaType::LongLong || cell.typeId() == QMetaType::Int;
}

bool isNumber(const QVariant& cell) {
    return cell.typeId() == QMetaType::Double || isWhole(cell);
}

QString bareText(const QVariant& cell) {
    if (cell.typeId() == QMetaType::Double)
        return numberText(cell.toDouble());
    return cell.typeId() == QMetaType::QByteArray ? QString::fromUtf8(cell.toByteArray()) : cell.toString();
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

/// Takes a cell of the type that its column's cells have, which nearly all are; tells whether it was one.
bool RowColumn::appendUsual(const QVariant& cell) {
    const int type = cell.typeId();
    if (m_type == ColumnType::number && type == QMetaType::Double && !cell.isNull()) {
        m_numbers.append(*static_cast<const double*>(cell.constData()));
        return true;
    }
    if (m_type == ColumnType::text && type == QMetaType::QByteArray && !cell.isNull()) {
        const auto& bytes = *static_cast<const QByteArray*>(cell.constData());
        m_texts.append({bytes.constData(), static_cast<std::size_t>(bytes.size())});
        return true;
    }
    return false;
}

void RowColumn::append(const QVariant& cell) {
    if (appendUsual(cell))
        return;
    if (!m_type && !cell.isNull())
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

void RowColumn::decideType(const QVariant& cell) {
    m_type = isNumber(cell) ? ColumnType::number : ColumnType::text;
    if (m_type == ColumnType::number) {
        for (std::size_t row = 0; row < m_texts.count(); ++row)
            m_numbers.append(noNumber);
        m_texts = {};
        m_nulls = {};
    }
}

void RowColumn::keepApart(const QVariant& cell) {
    m_oddCells.emplace_back(static_cast<std::uint32_t>(count()), cell);
}

void RowColumn::appendText(const QVariant& cell) {
    if (cell.isNull()) {
        m_nulls.resize(m_texts.count());
        m_nulls.push_back(true);
        m_texts.append({});
    } else if (isNumber(cell)) {
        keepApart(cell);
        m_texts.append({});
    } else {
        const QByteArray bytes =
            cell.typeId() == QMetaType::QByteArray ? cell.toByteArray() : cell.toString().toUtf8();
        m_texts.append({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    }
}

void RowColumn::appendNumber(const QVariant& cell) {
    constexpr qint64 largestExact = qint64{1} << std::numeric_limits<double>::digits;
    const bool tooLong = isWhole(cell) && std::abs(cell.toDouble()) > static_cast<double>(largestExact);
    if (isNumber(cell) && !tooLong) {
        m_numbers.append(cell.toDouble());
        return;
    }
    if (!cell.isNull())
        keepApart(cell);
    m_numbers.append(noNumber);
}

void RowColumn::appendCounter(const QVariant& cell) {
    if (!isWhole(cell))
        keepApart(cell);
    m_counters->append(isWhole(cell) ? cell.toLongLong() : 0);
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
