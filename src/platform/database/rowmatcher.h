#pragma once

#include <optional>
#include <string>
#include <vector>

#include "database/likepattern.h"
#include "database/rowfilter.h"
#include "database/rowtable.h"

namespace kovanix {

/// A filter made ready for the rows of one table, which must outlive it.
class RowMatcher {
public:
    /// @throws RuntimeError (databaseFailure) for an unknown field, and for a term on a number column that
    /// has no wildcard and is no number
    RowMatcher(const RowTable& table, const RowFilter& filter);

    bool matches(std::size_t row) const;

    /// The rows that match among those given.
    RowBits hits(RowBits among) const;

private:
    struct Term {
        const RowColumn* column;
        // One of them, or none where nothing can match.
        std::optional<double> number;
        std::optional<std::string> wholeText;
        std::optional<LikePattern> pattern;

        bool matches(std::size_t row) const;
        void markHits(RowBits& hits) const;
    };

    static Term makeTerm(const RowColumn& column, const RowFilter::Term& term);
    static void markContaining(RowBits& hits, const TextStore& texts, std::string_view wanted);

    std::size_t m_rows;
    std::vector<Term> m_terms;
};

/// Whether every row that matches a filter matches the former one too, as when a typist has gone on; may say
/// no where they do.
bool narrows(const RowFilter& filter, const RowFilter& former);

/// Why a field can't be found.
[[noreturn]] void failUnknownField(QStringView field);

}  // namespace kovanix
