#pragma once

#include <QList>
#include <QString>
#include <QStringView>

namespace kovanix {

/// A filter or search criterion as the screens write it, parsed: terms joined by AND, each a field, "=" or
/// "LIKE" in any case, and a text between single quotes in which every apostrophe stands doubled.
///
///     urun LIKE '%süt%' AND satis LIKE '12.5'
///     barkod = '8690000000012'
///     no like '17'
///
/// In a LIKE pattern "%" stands for any characters and "_" for one; "[%]", "[_]" and "[[]" for the bare sign.
/// The text without any term lets every row through.
class RowFilter {
public:
    enum class Comparison { equal, like };

    struct Term {
        QString field;
        Comparison comparison = Comparison::equal;
        /// What stood between the quotes, apostrophes no longer doubled.
        QString pattern;

        /// Whether the pattern has a wildcard that stands for something.
        bool hasWildcards() const;
        /// The pattern as bare text, the brackets around signs taken away; only for one without wildcards.
        QString literal() const;
    };

    /// @throws RuntimeError (databaseFailure) for a text that is no filter
    static RowFilter parse(QStringView text);

    const QList<Term>& terms() const { return m_terms; }
    bool isEmpty() const { return m_terms.isEmpty(); }

    /// Whether a text matches a LIKE pattern from end to end, letter case compared in the Turkish way both
    /// ways (i/İ and ı/I are pairs).
    static bool matches(QStringView text, QStringView pattern);

private:
    QList<Term> m_terms;
};

}  // namespace kovanix
