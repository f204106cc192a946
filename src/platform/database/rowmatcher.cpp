#include "database/rowmatcher.h"

#include <algorithm>
#include <utility>

#include "database/textsearch.h"
#include "runtime/runtimeerror.h"
#include "values/numbers.h"

namespace kovanix {

using namespace Qt::StringLiterals;

void failUnknownField(QStringView field) {
    throw RuntimeError(RuntimeError::databaseFailure, u"Item cannot be found in the collection: "_s + field);
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
                               u"Data type mismatch in criteria expression."_s);
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
        const std::size_t found = findText(bytes, wanted, place);
        if (found == std::string_view::npos)
            return;
        while (texts.start(row + 1) <= found)
            ++row;
        hits.set(row++);
    }
}

bool RowMatcher::matches(std::size_t row) const {
    return std::ranges::all_of(m_terms, [row](const Term& term) { return term.matches(row); });
}

RowBits RowMatcher::hits(RowBits among) const {
    for (const Term& term : m_terms) {
        RowBits hits(m_rows);
        // One search over all texts beats many in single ones as long as these are many.
        constexpr std::size_t few = 8;
        if (among.count() < m_rows / few) {
            among.forEach([&](std::size_t row) {
                if (term.matches(row))
                    hits.set(row);
            });
        } else {
            term.markHits(hits);
            hits &= among;
        }
        among = std::move(hits);
    }
    return among;
}

bool narrows(const RowFilter& filter, const RowFilter& former) {
    const auto implies = [](const RowFilter::Term& term, const RowFilter::Term& wider) {
        if (term.field != wider.field || term.comparison != wider.comparison)
            return false;
        if (term.pattern == wider.pattern)
            return true;
        if (term.comparison != RowFilter::Comparison::like)
            return false;
        const LikePattern pattern(term.pattern);
        const LikePattern widerPattern(wider.pattern);
        const auto text = pattern.containedText();
        const auto widerText = widerPattern.containedText();
        return text && widerText && text->find(*widerText) != std::string_view::npos;
    };
    return std::ranges::all_of(former.terms(), [&](const RowFilter::Term& wider) {
        return std::ranges::any_of(filter.terms(),
                                   [&](const RowFilter::Term& term) { return implies(term, wider); });
    });
}

}  // namespace kovanix
