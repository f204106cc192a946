#pragma once

#include <QLatin1StringView>
#include <QList>
#include <QString>
#include <QStringView>
#include <vector>

namespace kovanix {

/// A token of an SQL text. The texts of all tokens joined give the statement again, so a translation changes
/// `text` and leaves `original`, by which every later step still knows the token.
struct SqlToken {
    enum class Kind {
        Blank,   ///< white space and comments
        Word,    ///< keyword or bare name
        Number,  ///< without its sign
        Text,    ///< 'literal', quotes included
        Name,    ///< [name], "name" or `name`, quotes included
        Date,    ///< #literal#, signs included
        Sign     ///< one character of anything else
    };
    Kind kind;
    QString original;
    QString text;
};

/// A statement as tokens, counted without the blanks between them.
class SqlTokens {
public:
    /// @throws RuntimeError (databaseFailure) for a date literal without an end. Other literals without an
    /// end are one token to the end of the text: the engine has its own words for them.
    explicit SqlTokens(const QString& sql);

    qsizetype count() const { return static_cast<qsizetype>(m_marks.size()); }
    SqlToken& operator[](qsizetype index) { return m_tokens[m_marks[static_cast<size_t>(index)]]; }
    const SqlToken& operator[](qsizetype index) const {
        return m_tokens[m_marks[static_cast<size_t>(index)]];
    }

    /// Whether the token at an index is that keyword, in any case; false outside of them.
    bool isWord(qsizetype index, QLatin1StringView word) const;
    /// Whether the token at an index is that sign; false outside of them.
    bool isSign(qsizetype index, char16_t sign) const;
    /// Whether the token at an index can name a table or a column; false behind the end.
    bool isName(qsizetype index) const;
    /// A name without its brackets or quotes.
    QString name(qsizetype index) const;

    /// Whether a blank follows the token at an index.
    bool blankBehind(qsizetype index) const;
    /// Takes away the blank that follows the token at an index.
    void dropBlankBehind(qsizetype index);

    QString text() const;

private:
    QString m_sql;  // whose letters the tokens' texts are, as long as they stand unchanged
    QList<SqlToken> m_tokens;
    std::vector<qsizetype> m_marks;
};

/// A name between double quotes, as the engine takes any name.
QString quotedSqlName(const QString& name);

}  // namespace kovanix
