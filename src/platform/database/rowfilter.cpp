#include "database/rowfilter.h"

#include "database/likepattern.h"
#include "database/sqltokens.h"
#include "runtime/runtimeerror.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;

[[noreturn]] void refuse() {
    throw RuntimeError(RuntimeError::databaseFailure,
                       u"Arguments are of the wrong type, are out of acceptable range, or are in conflict "
                       u"with one another."_s);
}

/// The text of a literal without its quotes.
QString unquoted(QStringView literal) {
    QString text;
    text.reserve(literal.size());
    for (qsizetype i = 1; i < literal.size(); ++i) {
        if (literal[i] == u'\'') {
            ++i;
            if (i == literal.size())
                return text;
        }
        text += literal[i];
    }
    refuse();  // the closing quote is missing
}

RowFilter::Term termAt(const SqlTokens& tokens, qsizetype index) {
    const bool like = tokens.isWord(index + 1, "LIKE"_L1);
    if (!tokens.isName(index) || !(like || tokens.isSign(index + 1, u'=')) || index + 2 >= tokens.count() ||
        tokens[index + 2].kind != SqlToken::Kind::Text)
        refuse();
    return {tokens.name(index), like ? RowFilter::Comparison::like : RowFilter::Comparison::equal,
            unquoted(tokens[index + 2].original)};
}

}  // namespace

bool RowFilter::Term::hasWildcards() const {
    if (comparison == Comparison::equal)
        return false;
    for (qsizetype place = 0; place < pattern.size();) {
        if (PatternSign::next(pattern, place).kind != PatternSign::Kind::character)
            return true;
    }
    return false;
}

QString RowFilter::Term::literal() const {
    if (comparison == Comparison::equal)
        return pattern;
    QString text;
    text.reserve(pattern.size());
    for (qsizetype place = 0; place < pattern.size();)
        text += QChar(PatternSign::next(pattern, place).character);
    return text;
}

RowFilter RowFilter::parse(QStringView text) {
    const SqlTokens tokens(text.toString());
    RowFilter filter;
    constexpr qsizetype tokensOfATerm = 3;
    for (qsizetype i = 0; i < tokens.count(); i += tokensOfATerm) {
        if (i > 0 && !tokens.isWord(i++, "AND"_L1))
            refuse();
        filter.m_terms.append(termAt(tokens, i));
    }
    return filter;
}

bool RowFilter::matches(QStringView text, QStringView pattern) {
    return LikePattern(pattern).matches(foldedText(text));
}

}  // namespace kovanix
