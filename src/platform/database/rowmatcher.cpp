#include "database/rowmatcher.h"

#include <algorithm>
#include <cstring>

#include "runtime/runtimeerror.h"
#include "values/numbers.h"

namespace kovanix {

void failUnknownField(QStringView field) {
    throw RuntimeError(RuntimeError::databaseFailure,
                       QStringLiteral("Item cannot be found in the collection: ") + field);
}

RowMatcher::RowMatcher(const RowTable& table, const RowFilter& filter) : m_rows(table.count()) {
    for (const RowFilter::Term& term : filter.terms()) {
        const int field = table.indexOf(term.field);
        if (field < 0)
            failUnknownField(term.field);
        m_terms.push_back(makeTerm(table.columns[static_cast<std::size_t>(field)], term));
    }
}

RowMatcher::Term RowMatcher::makeTerm(const RowColumn& column, const RowFilter::Term& term) {
    const bool isNumber = column.type() == ColumnType::number;
    if ((isNumber || column.type() == ColumnType::counter) && !term.hasWildcards()) {
        const std::optional<double> number = toNumberWithDot(term.literal());
        if (isNumber && !number) {
            throw RuntimeError(RuntimeError::databaseFailure,
                               QStringLiteral("Data type mismatch in criteria expression."));
        }
        return {&column, number, {}, {}};
    }
    if (!term.hasWildcards())
        return {&column, {}, foldedText(term.literal()), {}};
    return {&column, {}, {}, LikePattern(term.pattern)};
}

bool RowMatcher::Term::matches(std::size_t row) const {
    if (number)
        return column->number(row) == *number;
    if (wholeText)
        return column->searchTexts()[row] == *wholeText;
    return pattern && pattern->matches(column->searchTexts()[row]);
}

void RowMatcher::Term::markHits(RowBits& hits) const {
    if (const auto contained = pattern ? pattern->containedText() : std::nullopt;
        contained && !contained->empty() && contained->find('\0') == std::string_view::npos) {
        markContaining(hits, column->searchTexts(), *contained);
        return;
    }
    for (std::size_t row = 0; row < hits.rows(); ++row) {
        if (matches(row))
            hits.set(row);
    }
}

/// One search over all texts at once: no hit reaches over the zero byte behind a text.
void RowMatcher::markContaining(RowBits& hits, const TextStore& texts, std::string_view wanted) {
    const std::string_view bytes = texts.bytes();
    std::size_t row = 0;
    for (std::size_t place = 0; place < bytes.size(); place = texts.start(row)) {
        const void* const hit =
            memmem(bytes.data() + place, bytes.size() - place, wanted.data(), wanted.size());
        if (!hit)
            return;
        const auto found = static_cast<std::size_t>(static_cast<const char*>(hit) - bytes.data());
        while (texts.start(row + 1) <= found)
            ++row;
        hits.set(row++);
    }
}

bool RowMatcher::matches(std::size_t row) const {
    return std::ranges::all_of(m_terms, [row](const Term& term) { return term.matches(row); });
}

RowBits RowMatcher::hits() const {
    if (m_terms.empty())
        return RowBits(m_rows, true);
    RowBits first(m_rows);
    m_terms.front().markHits(first);
    if (m_terms.size() == 1)
        return first;
    RowBits all(m_rows);
    first.forEach([&](std::size_t row) {
        if (std::all_of(m_terms.begin() + 1, m_terms.end(),
                        [row](const Term& term) { return term.matches(row); }))
            all.set(row);
    });
    return all;
}

}  // namespace kovanix
